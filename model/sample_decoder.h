#pragma once

#include "model/audio_file_reader.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <span>
#include <string_view>

namespace dravik {

/// One audio file being decoded from its start to its end. One thread at a time.
class SampleStream {
  public:
    virtual ~SampleStream() = default;
    /// Channels and rate are those of every frame that follows. The length is the exact one where the format tells it,
    /// and never less than what `read` gives in all.
    [[nodiscard]] virtual const AudioFormat& format() const noexcept = 0;
    /// The codec by its short name, "aac"; empty where it is not asked for.
    [[nodiscard]] virtual std::string_view codec() const noexcept { return {}; }
    /// Decodes up to into.size() / channels frames, interleaved, full scale at 1; returns how many frames. 0 only at
    /// the end. Throws std::filesystem::filesystem_error.
    [[nodiscard]] virtual std::size_t read(std::span<float> into) = 0;
    /// Goes on at this frame, which lies before the end; false, and nothing changes, where the format cannot be sought
    /// exactly.
    [[nodiscard]] virtual bool skipTo(std::int64_t /*frame*/) { return false; }
};

/// Decodes what is not a linear WAV file, by way of the codec libraries. Those are read by our own chunk walk.
class SampleDecoder {
  public:
    virtual ~SampleDecoder() = default;
    /// Throws std::filesystem::filesystem_error when the file cannot be read as audio. Any thread.
    [[nodiscard]] virtual std::unique_ptr<SampleStream> open(const std::filesystem::path& file) const = 0;
};

}  // namespace dravik
