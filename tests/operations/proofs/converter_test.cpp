#include "operations/sample_rate_converter.h"
#include "platform/soxr/soxr_converter.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace dravik {
namespace {

std::vector<float> converted(const std::vector<float>& in, double from, double to, std::size_t block = 4096) {
    const auto converter = makeSoxrConverters()->make(from, to);
    std::vector<float> out;
    std::vector<float> buffer(static_cast<std::size_t>(static_cast<double>(block) * to / from) + 2);
    const auto keep = [&](const SampleRateConverter::Step& step) {
        out.insert(out.end(), buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(step.made));
        return step;
    };
    std::span<const float> rest = in;
    while (!rest.empty())
        rest = rest.subspan(keep(converter->convert(rest.first(std::min(block, rest.size())), buffer)).used);
    while (keep(converter->drain(buffer)).status != SampleRateConverter::Status::endOfStream) {
    }
    return out;
}

std::vector<float> tone(double hertz, double rate, std::size_t frames) {
    std::vector<float> samples(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        samples[i] = static_cast<float>(0.5 * std::sin(2 * std::numbers::pi * hertz / rate * static_cast<double>(i)));
    }
    return samples;
}

/// The part of the samples in `from` to `to` that is no sine of that frequency, and the level of the sine.
struct Fit {
    double amplitude = 0, residual = 0;
};
Fit fitted(const std::vector<float>& samples, double hertz, double rate, std::size_t from, std::size_t to) {
    double ss = 0, cc = 0, sc = 0, xs = 0, xc = 0;
    const auto angle = [&](std::size_t i) { return 2 * std::numbers::pi * hertz / rate * static_cast<double>(i); };
    for (std::size_t i = from; i < to; ++i) {
        const double s = std::sin(angle(i)), c = std::cos(angle(i)), x = static_cast<double>(samples[i]);
        ss += s * s, cc += c * c, sc += s * c, xs += x * s, xc += x * c;
    }
    const double determinant = ss * cc - sc * sc;
    const double a = (xs * cc - xc * sc) / determinant, b = (xc * ss - xs * sc) / determinant;
    double rest = 0;
    for (std::size_t i = from; i < to; ++i) {
        const double error = static_cast<double>(samples[i]) - a * std::sin(angle(i)) - b * std::cos(angle(i));
        rest += error * error;
    }
    return {std::hypot(a, b), std::sqrt(rest / static_cast<double>(to - from))};
}

double decibel(double ratio) { return 20 * std::log10(std::max(ratio, 1e-30)); }

struct Rates {
    double from, to;
};
constexpr Rates common[] = {{48000, 44100},  {44100, 48000}, {96000, 48000}, {48000, 96000},
                            {192000, 44100}, {88200, 48000}, {48000, 88200}, {44100, 192000}};

TEST(SoxrConverter, GivesTheRoundedNumberOfSamplesAtEveryRatio) {
    constexpr double rates[] = {8000, 11025, 32000, 44056, 44100, 47952, 48000, 48048, 88200, 96000, 192000};
    for (const double from : rates) {
        for (const double to : rates) {
            if (from == to) continue;
            for (const std::size_t frames : {1U, 2U, 147U, 1000U, 4801U}) {
                EXPECT_EQ(converted(std::vector<float>(frames, 0.1F), from, to).size(),
                          convertedFrames(static_cast<std::int64_t>(frames), from, to))
                    << frames << " from " << from << " to " << to;
            }
        }
    }
}

TEST(SoxrConverter, DoesNotDependOnHowTheInputIsCut) {
    const std::vector<float> in = tone(997, 48000, 20000);
    EXPECT_EQ(converted(in, 48000, 44100, 37), converted(in, 48000, 44100, 16384));
}

TEST(SoxrConverter, KeepsEverySampleAtItsMoment) {
    // A bump that both rates resolve: what comes out is the same bump, read at the other rate's moments.
    for (const auto& [from, to] : common) {
        const auto bump = [](double seconds) { return std::exp(-std::pow((seconds - 0.1) / 0.002, 2)); };
        std::vector<float> in;
        for (std::size_t i = 0; i < static_cast<std::size_t>(from / 5); ++i)
            in.push_back(static_cast<float>(bump(static_cast<double>(i) / from)));
        const std::vector<float> out = converted(in, from, to);
        double worst = 0;
        for (std::size_t i = 0; i < out.size(); ++i)
            worst = std::max(worst, std::fabs(static_cast<double>(out[i]) - bump(static_cast<double>(i) / to)));
        EXPECT_LT(worst, 1e-6) << from << " to " << to;
    }
}

TEST(SoxrConverter, AddsNothingAbove145DecibelsBelowASweep) {
    // In steps through the band: what remains beside each tone is image, alias and rounding.
    for (const auto& [from, to] : common) {
        const double band = std::min(from, to) / 2 * 0.97;
        double worst = -400;
        for (int step = 1; step <= 12; ++step) {
            const double hertz = band * step / 12;
            const std::vector<float> out = converted(tone(hertz, from, 16384), from, to);
            const Fit fit = fitted(out, hertz, to, out.size() / 4, out.size() * 3 / 4);
            worst = std::max(worst, decibel(fit.residual * std::numbers::sqrt2 / 1.0));
        }
        EXPECT_LT(worst, -145) << from << " to " << to;
        RecordProperty(fmt::format("residual {} to {}", from, to), fmt::format("{:.1f} dB", worst));
    }
}

TEST(SoxrConverter, IsFlatUpTo97PercentOfTheLowerHalfRate) {
    for (const auto& [from, to] : common) {
        double worst = 0;
        for (const double part : {0.01, 0.3, 0.6, 0.8, 0.9, 0.95, 0.96, 0.97}) {
            const double hertz = std::min(from, to) / 2 * part;
            const std::vector<float> out = converted(tone(hertz, from, 32768), from, to);
            const Fit fit = fitted(out, hertz, to, out.size() / 4, out.size() * 3 / 4);
            worst = std::max(worst, std::fabs(decibel(fit.amplitude / 0.5)));
        }
        EXPECT_LT(worst, 0.01) << from << " to " << to;
        RecordProperty(fmt::format("ripple {} to {}", from, to), fmt::format("{:.2g} dB", worst));
    }
}

TEST(SoxrConverter, LeavesNothingOfWhatTheLowerRateCannotHold) {
    for (const auto& [from, to] : common) {
        if (to > from) continue;
        double worst = -400;
        for (const double part : {1.001, 1.05, 1.3, 1.8}) {
            const double hertz = to / 2 * part;
            if (hertz >= from / 2) continue;
            const std::vector<float> out = converted(tone(hertz, from, 32768), from, to);
            double power = 0;
            for (std::size_t i = out.size() / 4; i < out.size() * 3 / 4; ++i)
                power += static_cast<double>(out[i]) * static_cast<double>(out[i]);
            const double left = decibel(std::sqrt(power / static_cast<double>(out.size() / 2)) * std::numbers::sqrt2);
            EXPECT_LT(left, -145) << hertz << " Hz from " << from << " to " << to;
            worst = std::max(worst, left);
        }
        RecordProperty(fmt::format("left {} to {}", from, to), fmt::format("{:.1f} dB", worst));
    }
}

}  // namespace
}  // namespace dravik
