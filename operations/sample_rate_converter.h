#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <span>

namespace dravik {

/// Frames that `frames` become at another rate: round(frames x ratio), halves upwards. Exact for whole rates.
[[nodiscard]] std::uint64_t convertedFrames(std::int64_t frames, double inputRate, double outputRate) noexcept;

/// A converter that cannot be made or does not do its work. Not for the user: each export has its own words for it.
class SampleRateConverterFailure : public std::exception {
  public:
    enum class Case {
        unavailable,         ///< there is none for these rates
        qualityUnavailable,  ///< there is one, but not of mastering quality
        failed,              ///< it reports an error
    };
    explicit SampleRateConverterFailure(Case failureCase) noexcept : case_(failureCase) {}
    [[nodiscard]] Case failureCase() const noexcept { return case_; }
    [[nodiscard]] const char* what() const noexcept override { return "sample-rate conversion"; }

  private:
    Case case_;
};

/// One channel on its way to another sample rate: linear phase, no shift (the first sample stays where it was), as many
/// samples in all as round(input x ratio). The result does not depend on how the input is cut. One thread at a time.
class SampleRateConverter {
  public:
    enum class Status {
        hasData,      ///< there may be more
        endOfStream,  ///< the input has ended and everything was given out
    };
    struct Step {
        std::size_t used = 0;  ///< samples of the input
        std::size_t made = 0;  ///< samples at the start of the output
        Status status = Status::hasData;
    };

    virtual ~SampleRateConverter() = default;
    /// Takes as much of `in` and gives as much into `out` as it can. Throws SampleRateConverterFailure.
    [[nodiscard]] virtual Step convert(std::span<const float> in, std::span<float> out) = 0;
    /// The input has ended: gives out what is left, call by call until `endOfStream`. Throws likewise.
    [[nodiscard]] virtual Step drain(std::span<float> out) = 0;
};

/// Where converters come from: the best that there is, set for mastering.
class SampleRateConverters {
  public:
    virtual ~SampleRateConverters() = default;
    /// Rates in Hz. Any thread. Throws SampleRateConverterFailure.
    [[nodiscard]] virtual std::unique_ptr<SampleRateConverter> make(double inputRate, double outputRate) const = 0;
};

}  // namespace dravik
