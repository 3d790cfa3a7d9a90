#pragma once

#include "base/bytes.h"
#include "base/file_handle.h"
#include "model/sample_decoder.h"
#include "model/wave/linear_samples.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

namespace dravik {

/// A file of a take, open for its audio: our own way where it is a linear WAV file, through the decoder otherwise.
struct TakeSource {
    std::filesystem::path path;
    FileHandle handle;
    std::optional<LinearLayout> linear;
    std::unique_ptr<SampleStream> stream;  ///< where it is not linear
    AudioFormat format;

    /// Throws std::filesystem::filesystem_error, and PlaybackError for a file without channels or sample rate.
    [[nodiscard]] static TakeSource open(const std::filesystem::path& path, const SampleDecoder& decoder);

    /// Bytes that so many frames take while they are read: of the file, or of what the decoder gives.
    [[nodiscard]] std::uint64_t bytesOf(std::int64_t frames) const noexcept;
    /// Fills `into` with whole frames of a linear file from `frame` on. Any thread. Throws when they are not there.
    void readFrames(std::int64_t frame, std::span<std::byte> into) const;
};

}  // namespace dravik
