#include "playback/take_source.h"

#include "base/file_error.h"
#include "model/wave/walked_file.h"
#include "playback/playback_error.h"

namespace dravik {

TakeSource TakeSource::open(const std::filesystem::path& path, const SampleDecoder& decoder) {
    TakeSource source{path, FileHandle::openForReading(path), {}, {}, {}};
    const FileSource bytes(source.handle);
    if (const std::optional<ChunkTable> table = walkChunks(bytes)) source.linear = linearLayoutIn(bytes, *table);
    if (source.linear) {
        source.format = {source.linear->channels, source.linear->sampleRate, 0, source.linear->frames};
    } else {
        source.stream = decoder.open(path);
        source.format = source.stream->format();
    }
    if (source.format.channels <= 0 || !(source.format.sampleRate > 0)) throw PlaybackError::noAudio(path);
    return source;
}

std::uint64_t TakeSource::bytesOf(std::int64_t frames) const noexcept {
    const std::uint64_t frameBytes =
        linear ? linear->frameBytes : static_cast<std::uint64_t>(format.channels) * sizeof(float);
    return static_cast<std::uint64_t>(frames) * frameBytes;
}

void TakeSource::readFrames(std::int64_t frame, std::span<std::byte> into) const {
    const FileSource bytes(handle);
    if (bytes.readAt(linear->offset + bytesOf(frame), into) == into.size()) return;
    if (bytes.error()) throw std::filesystem::filesystem_error("read", path, bytes.error());
    throw FileError("it became shorter while it was read", path, std::errc::io_error);
}

}  // namespace dravik
