// Any bytes as a file: the walk must end, stay inside the file, leave no gap, and find the same chunks again in the
// file that a save would write. The same bytes are also read through a file and its window, which must not change a
// thing.

#include "base/byte_source.h"
#include "fuzz/require.h"
#include "model/wave/chunk_walk.h"

#include <algorithm>
#include <cstdint>

#include <sys/mman.h>
#include <unistd.h>

namespace {

using namespace dravik;

void checkTable(const ChunkTable& table, ByteSpan file) {
    const bool large = table.form == FourCC("RF64") || table.form == FourCC("BW64");
    require(large || table.form == FourCC("RIFF"));
    require(table.fileSize == file.size());
    require(table.chunks.size() <= maxChunks);
    std::uint64_t at = riffHeaderBytes;
    for (const Chunk& chunk : table.chunks) {
        require(chunk.offset == at);
        require(chunk.end() >= chunk.payload() && chunk.end() <= file.size());
        require(FourCC::at(file.data() + chunk.offset) == chunk.id);
        require(readLE<std::uint32_t>(file.data() + chunk.offset + 4) == chunk.sizeField);
        require(chunk.size <= chunk.claimedSize);
        require(chunk.claimedSize == chunk.sizeField || (large && chunk.sizeField == sizeInDs64));
        require(!chunk.truncated() || (&chunk == &table.chunks.back() && chunk.end() == file.size()));
        require(!chunk.padInFile || (chunk.size % 2 == 1 && !chunk.truncated()));
        require(table.first(chunk.id) != nullptr && table.first(chunk.id) <= &chunk);
        at = chunk.end();
    }
    require(table.end == at);
    // The walk gives up for no other reason than these.
    require(table.bytesBehind() < chunkHeaderBytes || table.chunks.size() == maxChunks);
}

/// The file as a save that changes nothing would write it: every chunk as it stands, missing pads added.
Bytes rebuilt(const ChunkTable& table, ByteSpan file) {
    Bytes out;
    append(out, file.first(riffHeaderBytes));
    for (const Chunk& chunk : table.chunks) {
        append(out, file.subspan(chunk.offset, chunk.end() - chunk.offset));
        if (chunk.size % 2 == 1 && !chunk.padInFile && !chunk.truncated()) out.push_back(std::byte{0});
    }
    append(out, file.subspan(table.end));
    return out;
}

void checkRebuilt(const ChunkTable& table, ByteSpan file) {
    const Bytes again = rebuilt(table, file);
    const std::optional<ChunkTable> found = walkChunks(MemorySource(again));
    require(found.has_value());
    checkTable(*found, again);
    // A pad byte that is not zero may be a header's first letter: which of the two it is depends on the file's length,
    // which the added pads change. (A save compares and refuses.)
    const bool oddPads = std::any_of(table.chunks.begin(), table.chunks.end(), [&](const Chunk& chunk) {
        return chunk.padInFile && file[chunk.end() - 1] != std::byte{0};
    });
    if (oddPads) return;
    require(std::equal(found->chunks.begin(), found->chunks.end(), table.chunks.begin(), table.chunks.end(),
                       [](const Chunk& a, const Chunk& b) {
                           return a.id == b.id && a.size == b.size && a.claimedSize == b.claimedSize &&
                                  a.sizeField == b.sizeField;
                       }));
    require(found->bytesBehind() == table.bytesBehind());
    require(rebuilt(*found, again) == again);
}

void checkThroughFile(const std::optional<ChunkTable>& expected, ByteSpan bytes) {
    static const FileHandle file(::memfd_create("fuzz", MFD_CLOEXEC));
    require(file.isOpen() && ::ftruncate(file.descriptor(), static_cast<off_t>(bytes.size())) == 0);
    require(::pwrite(file.descriptor(), bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));
    const FileSource source(file);
    const std::optional<ChunkTable> found = walkChunks(source);
    require(!source.error());
    require(found.has_value() == expected.has_value());
    if (found) require(found->chunks == expected->chunks && found->end == expected->end);
    require(source.bytesRead() <= 32U * 1024U);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteSpan file = std::as_bytes(std::span(data, size));
    const std::optional<ChunkTable> table = walkChunks(MemorySource(file));
    checkThroughFile(table, file);
    if (!table) return 0;
    checkTable(*table, file);
    checkRebuilt(*table, file);
    return 0;
}
