#pragma once

#include "base/bytes.h"
#include "base/file_handle.h"
#include "model/sample_decoder.h"
#include "model/wave/linear_samples.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <vector>

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
    /// One claim of a worker: large enough that claiming costs nothing, small enough that all workers end together and
    /// that something is seen at once.
    static constexpr std::uint64_t workBytes = 4U * 1024U * 1024U;
    /// One read: it stays in a core's own cache until it is worked on.
    static constexpr std::uint64_t blockBytes = 256U * 1024U;

    /// Reads these frames of a linear file and hands them on in pieces: take(frame, bytes). Behind the bytes are
    /// `slack` more that may be looked at. `block` is room to be used again. Any thread. Throws as readFrames does.
    template <typename Take>
    void eachBlock(std::int64_t from, std::int64_t count, std::size_t slack, Bytes& block, Take take) const {
        const auto most = static_cast<std::int64_t>(std::max<std::uint64_t>(1, blockBytes / linear->frameBytes));
        for (const std::int64_t end = from + count; from < end;) {
            const std::int64_t now = std::min(most, end - from);
            const auto bytes = static_cast<std::size_t>(bytesOf(now));
            block.resize(bytes + slack);
            readFrames(from, std::span(block).first(bytes));
            take(from, ByteSpan(block).first(bytes));
            from += now;
        }
    }
    /// Decodes a file that is not linear from where its stream stands, no further than the frames it has announced:
    /// take(frame, interleaved). Returns the frames that came.
    template <typename Take>
    std::int64_t eachDecoded(Take take) const {
        const auto channels = static_cast<std::size_t>(format.channels);
        std::vector<float> block(std::max<std::size_t>(1, blockBytes / sizeof(float) / channels) * channels);
        std::int64_t done = 0;
        while (done < format.frames) {
            const auto wanted = static_cast<std::size_t>(
                std::min<std::uint64_t>(block.size() / channels, static_cast<std::uint64_t>(format.frames - done)));
            const std::size_t count = stream->read(std::span(block).first(wanted * channels));
            if (count == 0) break;
            take(done, std::span<const float>(block).first(count * channels));
            done += static_cast<std::int64_t>(count);
        }
        return done;
    }

    /// Fills `into` with whole frames of a linear file from `frame` on. Any thread. Throws when they are not there.
    void readFrames(std::int64_t frame, std::span<std::byte> into) const;
};

}  // namespace dravik
