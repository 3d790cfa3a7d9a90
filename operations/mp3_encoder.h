#pragma once

#include "base/bytes.h"
#include "base/error.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace dravik {

/// What an MP3 encoder is set to.
struct MP3EncoderConfiguration {
    int sampleRate = 48000;  ///< Hz: 44100 or 48000
    int channels = 2;        ///< 1 or 2
    int bitRate = 256;       ///< kbit/s, constant: 128, 192, 256 or 320

    [[nodiscard]] bool isValid() const noexcept;
};

/// Why MP3 could not be encoded.
class MP3EncoderError : public Error {
  public:
    enum class Case { initializationFailed, encodingFailed, flushingFailed, unavailable, invalidConfiguration };

    [[nodiscard]] static MP3EncoderError initializationFailed(int code);
    [[nodiscard]] static MP3EncoderError encodingFailed(int code);
    [[nodiscard]] static MP3EncoderError flushingFailed(int code);
    [[nodiscard]] static MP3EncoderError unavailable();
    [[nodiscard]] static MP3EncoderError invalidConfiguration();

    [[nodiscard]] Case errorCase() const noexcept { return case_; }

  private:
    MP3EncoderError(Case errorCase, std::string message) : Error(std::move(message)), case_(errorCase) {}

    Case case_;
};

/// One MP3 stream being made. One thread at a time; everything throws MP3EncoderError. Closed by the destructor.
class MP3Encoder {
  public:
    virtual ~MP3Encoder() = default;
    virtual void initialise(const MP3EncoderConfiguration& configuration) = 0;
    /// The next bytes of the stream, perhaps none. `samples` has `frames` frames, interleaved.
    [[nodiscard]] virtual Bytes encode(std::span<const std::int16_t> samples, std::size_t frames) = 0;
    /// The last bytes; nothing can be encoded afterwards.
    [[nodiscard]] virtual Bytes flush() = 0;
    /// The frame that tells players how long the stream is and where its first sample lies, known after the flush. It
    /// takes the place of the stream's first bytes. Empty when there is none.
    [[nodiscard]] virtual Bytes headerFrame() = 0;
    virtual void close() noexcept = 0;
};

/// Where encoders come from.
class MP3Encoders {
  public:
    virtual ~MP3Encoders() = default;
    [[nodiscard]] virtual std::unique_ptr<MP3Encoder> make() const = 0;
};

}  // namespace dravik
