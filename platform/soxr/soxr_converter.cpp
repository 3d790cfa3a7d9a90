#include "platform/soxr/soxr_converter.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <soxr.h>

namespace dravik {
namespace {

using Case = SampleRateConverterFailure::Case;

struct Delete {
    void operator()(soxr* converter) const noexcept { ::soxr_delete(converter); }
};
using Soxr = std::unique_ptr<soxr, Delete>;

class SoxrConverter final : public SampleRateConverter {
  public:
    SoxrConverter(Soxr converter, double inputRate, double outputRate)
        : converter_(std::move(converter)), inputRate_(inputRate), outputRate_(outputRate) {}

    [[nodiscard]] Step convert(std::span<const float> in, std::span<float> out) override {
        Step step;
        // An empty input would be taken for the end.
        if (in.empty()) return step;
        process(in, out, step);
        taken_ += static_cast<std::int64_t>(step.used);
        given_ += step.made;
        return step;
    }

    [[nodiscard]] Step drain(std::span<float> out) override {
        // By itself the library is one sample short where the exact length lies halfway between two. So silence, which
        // it puts behind the end anyway, follows, and what comes out is cut.
        if (!wanted_) {
            wanted_ = convertedFrames(taken_, inputRate_, outputRate_);
            silence_.assign(static_cast<std::size_t>(std::ceil(inputRate_ / outputRate_)) + 1, 0.0F);
        }
        Step step;
        while (step.made == 0 && given_ < *wanted_ && !out.empty()) {
            Step part;
            const bool ends = silence_.empty();
            process(silence_, out, part);
            silence_.erase(silence_.begin(), silence_.begin() + static_cast<std::ptrdiff_t>(part.used));
            if (ends && part.made == 0) throw SampleRateConverterFailure(Case::failed);
            step.made = static_cast<std::size_t>(std::min<std::uint64_t>(part.made, *wanted_ - given_));
            given_ += step.made;
        }
        if (given_ >= *wanted_) step.status = Status::endOfStream;
        return step;
    }

  private:
    /// An empty input says that it has ended.
    void process(std::span<const float> in, std::span<float> out, Step& step) {
        const char* failure = ::soxr_process(converter_.get(), in.empty() ? nullptr : in.data(), in.size(), &step.used,
                                             out.data(), out.size(), &step.made);
        if (failure != nullptr) throw SampleRateConverterFailure(Case::failed);
    }

    Soxr converter_;
    double inputRate_, outputRate_;
    std::int64_t taken_ = 0;
    std::uint64_t given_ = 0;
    std::optional<std::uint64_t> wanted_;  ///< once the input has ended
    std::vector<float> silence_;
};

class SoxrConverters final : public SampleRateConverters {
  public:
    [[nodiscard]] std::unique_ptr<SampleRateConverter> make(double inputRate, double outputRate) const override {
        constexpr unsigned long recipe = SOXR_32_BITQ | SOXR_LINEAR_PHASE | SOXR_STEEP_FILTER;
        const soxr_quality_spec_t quality = ::soxr_quality_spec(recipe, SOXR_ROLLOFF_SMALL);
        constexpr double bits = 32, linearPhase = 50, leastPassband = 0.97;
        if (quality.precision < bits || quality.phase_response != linearPhase || quality.passband_end < leastPassband) {
            throw SampleRateConverterFailure(Case::qualityUnavailable);
        }
        const soxr_io_spec_t io = ::soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
        // One thread: channels are converted side by side already.
        const soxr_runtime_spec_t runtime = ::soxr_runtime_spec(1);
        const char* failure = nullptr;
        Soxr converter(::soxr_create(inputRate, outputRate, 1, &failure, &io, &quality, &runtime));
        if (!converter || failure != nullptr) throw SampleRateConverterFailure(Case::unavailable);
        // What it really computes with: the environment can make the library take its single-precision engine.
        const char* engine = ::soxr_engine(converter.get());
        if (engine == nullptr || !std::string_view(engine).starts_with("cr64")) {
            throw SampleRateConverterFailure(Case::qualityUnavailable);
        }
        return std::make_unique<SoxrConverter>(std::move(converter), inputRate, outputRate);
    }
};

}  // namespace

std::unique_ptr<SampleRateConverters> makeSoxrConverters() { return std::make_unique<SoxrConverters>(); }

}  // namespace dravik
