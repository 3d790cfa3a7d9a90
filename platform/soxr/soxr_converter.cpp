#include "platform/soxr/soxr_converter.h"

#include <string_view>
#include <utility>

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
    explicit SoxrConverter(Soxr converter) : converter_(std::move(converter)) {}

    [[nodiscard]] Step convert(std::span<const float> in, std::span<float> out) override {
        Step step;
        // An empty input would be taken for the end.
        if (in.empty()) return step;
        process(in.data(), in.size(), out, step);
        return step;
    }

    [[nodiscard]] Step drain(std::span<float> out) override {
        Step step;
        process(nullptr, 0, out, step);
        // The library gives nothing more only when it has nothing more.
        if (step.made == 0 && !out.empty()) step.status = Status::endOfStream;
        return step;
    }

  private:
    void process(const float* in, std::size_t length, std::span<float> out, Step& step) {
        const char* failure =
            ::soxr_process(converter_.get(), in, length, &step.used, out.data(), out.size(), &step.made);
        if (failure != nullptr) throw SampleRateConverterFailure(Case::failed);
    }

    Soxr converter_;
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
        return std::make_unique<SoxrConverter>(std::move(converter));
    }
};

}  // namespace

std::unique_ptr<SampleRateConverters> makeSoxrConverters() { return std::make_unique<SoxrConverters>(); }

}  // namespace dravik
