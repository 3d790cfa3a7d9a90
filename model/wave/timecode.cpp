#include "model/wave/timecode.h"

#include "base/text.h"

#include <array>
#include <cmath>

#include <fmt/compile.h>

namespace dravik {
namespace {

constexpr double defaultRate = 25;
/// Rates above it are damage, not video: it keeps the arithmetic of a label far from overflow.
constexpr double largestRate = 1'000'000;
constexpr double defaultSampleRate = 48000;
constexpr double twoTo63 = 9223372036854775808.0;
constexpr double twoTo64 = 18446744073709551616.0;

double sampleRateOr48k(double sampleRate) noexcept { return sampleRate > 0 ? sampleRate : defaultSampleRate; }

/// The next piece of `text` before `separator`, empty pieces passed over; absent at the end.
std::optional<std::string_view> nextPiece(std::string_view& text, char separator) noexcept {
    while (text.starts_with(separator))
        text.remove_prefix(1);
    if (text.empty()) return std::nullopt;
    const std::size_t end = std::min(text.find(separator), text.size());
    const std::string_view piece = text.substr(0, end);
    text.remove_prefix(end);
    return piece;
}

/// total * factor + term; false when it does not fit.
bool multiplyAdd(std::int64_t& total, std::int64_t factor, std::int64_t term) noexcept {
    return !__builtin_mul_overflow(total, factor, &total) && !__builtin_add_overflow(total, term, &total);
}

/// Decimal digits, at least two, in a field that a display pads to two.
std::optional<std::uint32_t> typedField(std::string_view text, std::size_t mostDigits) noexcept {
    if (text.size() < 2 || text.size() > mostDigits || !isAsciiDigit(text.front())) return std::nullopt;
    return parseUnsigned32(text);
}

}  // namespace

double rateFromIxml(std::string_view timecodeRate) noexcept {
    const std::optional<std::string_view> dividend = nextPiece(timecodeRate, '/');
    const std::optional<std::string_view> divisor = nextPiece(timecodeRate, '/');
    double rate = (dividend ? parseDouble(*dividend) : std::nullopt).value_or(defaultRate);
    if (divisor) rate /= parseDouble(*divisor).value_or(1.0);
    return std::isfinite(rate) && rate > 0 ? rate : defaultRate;
}

std::string framerateLabel(double framesPerSecond, std::optional<std::string_view> timecodeFlag) {
    struct Range {
        double low, high;
        std::string_view label;
    };
    static constexpr std::array ranges = {Range{23.97, 23.98, "23.976"}, Range{23.99, 24.01, "24"},
                                          Range{24.99, 25.01, "25"}, Range{29.96, 29.98, "29.97"},
                                          Range{29.99, 30.01, "30"}};
    std::string label;
    for (const Range& range : ranges) {
        if (range.low <= framesPerSecond && framesPerSecond <= range.high) {
            label = range.label;
            break;
        }
    }
    if (label.empty()) label = shortestDouble(framesPerSecond);
    if (timecodeFlag && equalsIgnoringAsciiCase(*timecodeFlag, "DF")) label += " DF";
    return label;
}

double actualRate(std::string_view label) noexcept {
    if (label.starts_with("23.976")) return rate23976;
    if (label.starts_with("29.97")) return rate2997;
    if (label.ends_with(" DF")) label.remove_suffix(3);
    const double rate = parseDouble(label).value_or(defaultRate);
    return rate > 0 && rate <= largestRate ? rate : defaultRate;
}

std::int64_t nominalRate(std::string_view label) noexcept {
    const double rate = actualRate(label);
    if (rate == rate23976) return 24;
    if (rate == rate2997) return 30;
    return std::max<std::int64_t>(1, static_cast<std::int64_t>(rate));
}

bool isDropFrame(std::string_view label) noexcept { return label.find("DF") != std::string_view::npos; }

std::string ixmlRateText(std::string_view label) {
    if (label.starts_with("23.976")) return "24000/1001";
    if (label.starts_with("29.97")) return "30000/1001";
    return fmt::format("{}/1", nominalRate(label));
}

std::string speedText(std::string_view label) { return fmt::format("{:07.3f}", actualRate(label)); }

std::string_view flagText(std::string_view label) noexcept { return isDropFrame(label) ? "DF" : "NDF"; }

std::optional<std::string> timecodeFromSamples(std::uint64_t samples, double framesPerSecond, double sampleRate) {
    const double exact = std::round(framesPerSecond * static_cast<double>(samples) / sampleRateOr48k(sampleRate));
    if (!(framesPerSecond > 0) || !(exact < twoTo63)) return std::nullopt;
    double nominal = std::trunc(framesPerSecond);
    if (23.97 <= framesPerSecond && framesPerSecond <= 23.98) nominal = 24;
    if (29.96 <= framesPerSecond && framesPerSecond <= 29.98) nominal = 30;
    constexpr double secondsPerHour = 3600;
    if (nominal < 1 || nominal * secondsPerHour >= twoTo63) return std::nullopt;

    const auto frames = static_cast<std::int64_t>(exact);
    const auto perSecond = static_cast<std::int64_t>(nominal);
    return fmt::format(FMT_COMPILE("{:02}:{:02}:{:02}:{:02}"), frames / (perSecond * 3600),
                       frames / (perSecond * 60) % 60, frames / perSecond % 60, frames % perSecond);
}

std::uint64_t samplesFromTimecode(std::string_view timecode, std::string_view label, double sampleRate) {
    std::array<std::int64_t, 4> fields{};
    std::size_t count = 0;
    while (const std::optional<std::string_view> piece = nextPiece(timecode, ':')) {
        const std::optional<std::int64_t> value = parseInteger(*piece);
        if (!value) continue;
        if (count == fields.size()) return 0;
        fields[count++] = *value;
    }
    if (count != fields.size()) return 0;

    std::int64_t frames = fields[0];
    if (!multiplyAdd(frames, 60, fields[1]) || !multiplyAdd(frames, 60, fields[2]) ||
        !multiplyAdd(frames, nominalRate(label), fields[3]) || frames < 0) {
        return 0;
    }
    const double samples = std::round(sampleRateOr48k(sampleRate) * static_cast<double>(frames) / actualRate(label));
    return samples < twoTo64 ? static_cast<std::uint64_t>(samples) : 0;
}

bool isWritableLabel(std::string_view label) {
    return framerateLabel(rateFromIxml(ixmlRateText(label)), flagText(label)) == label;
}

std::optional<std::string> parseTypedTimecode(std::string_view typed, std::string_view label) {
    constexpr std::size_t mostHourDigits = 2;
    constexpr std::size_t mostFrameDigits = 3;  // rates above 100
    std::array<std::string_view, 4> parts;
    if (typed.find(':') == std::string_view::npos) {
        if (typed.size() != 8) return std::nullopt;
        for (std::size_t i = 0; i < parts.size(); ++i)
            parts[i] = typed.substr(2 * i, 2);
    } else {
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const std::size_t end = i + 1 < parts.size() ? typed.find(':') : typed.size();
            if (end == std::string_view::npos) return std::nullopt;
            parts[i] = typed.substr(0, end);
            typed.remove_prefix(std::min(end + 1, typed.size()));
        }
    }
    const std::optional<std::uint32_t> hours = typedField(parts[0], mostHourDigits);
    const std::optional<std::uint32_t> minutes = typedField(parts[1], 2);
    const std::optional<std::uint32_t> seconds = typedField(parts[2], 2);
    const std::optional<std::uint32_t> frames = typedField(parts[3], mostFrameDigits);
    if (!hours || !minutes || !seconds || !frames) return std::nullopt;
    if (*minutes >= 60 || *seconds >= 60 || *frames >= nominalRate(label)) return std::nullopt;
    return fmt::format("{:02}:{:02}:{:02}:{:02}", *hours, *minutes, *seconds, *frames);
}

}  // namespace dravik
