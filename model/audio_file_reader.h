#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace dravik {

/// Format and length of one audio file.
struct AudioFormat {
    int channels = 0;
    double sampleRate = 0;    ///< Hz
    int bits = 0;             ///< per channel; 0 for compressed formats, which have none
    std::int64_t frames = 0;  ///< length in sample frames
    friend bool operator==(const AudioFormat&, const AudioFormat&) = default;
};

/// Asks a codec library for a file's format and length. Not for plain PCM and float WAV files: those are read by our
/// own chunk walk, which stands files that the libraries misread.
class AudioFileReader {
  public:
    virtual ~AudioFileReader() = default;
    /// Absent when the file is not readable as audio. Blocking; any thread; never throws.
    [[nodiscard]] virtual std::optional<AudioFormat> format(const std::filesystem::path& file) const noexcept = 0;
};

}  // namespace dravik
