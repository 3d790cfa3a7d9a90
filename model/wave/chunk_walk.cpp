#include "model/wave/chunk_walk.h"

#include <algorithm>

namespace dravik {
namespace {

/// The payload of a ds64 chunk: three 64-bit sizes (form, data, samples), the number of entries, the entries, each an
/// id and its 64-bit size.
constexpr std::size_t ds64DataSizeOffset = 8;
constexpr std::size_t ds64DataSizeEnd = 16;
constexpr std::size_t ds64CountOffset = 24;
constexpr std::size_t ds64FixedBytes = 28;
constexpr std::size_t ds64EntrySizeOffset = 4;
constexpr std::size_t ds64EntryBytes = 12;
/// Entries for chunks other than data; ours are looked up linearly, real files have none.
constexpr std::size_t maxDs64Entries = 64;

struct LargeSizes {
    std::optional<std::uint64_t> data;
    std::vector<std::pair<FourCC, std::uint64_t>> others;

    [[nodiscard]] std::optional<std::uint64_t> of(FourCC id) const {
        if (id == FourCC("data")) return data;
        const auto found =
            std::find_if(others.begin(), others.end(), [&](const auto& entry) { return entry.first == id; });
        return found == others.end() ? std::nullopt : std::optional(found->second);
    }
};

LargeSizes readDs64(const ByteSource& source, const Chunk& chunk) {
    LargeSizes sizes;
    const Bytes raw = source.read(
        chunk.payload(), std::min<std::uint64_t>(chunk.size, ds64FixedBytes + maxDs64Entries * ds64EntryBytes));
    if (raw.size() < ds64DataSizeEnd) return sizes;
    sizes.data = readLE<std::uint64_t>(raw.data() + ds64DataSizeOffset);
    if (raw.size() < ds64FixedBytes) return sizes;
    const std::size_t count = std::min<std::size_t>(readLE<std::uint32_t>(raw.data() + ds64CountOffset),
                                                    (raw.size() - ds64FixedBytes) / ds64EntryBytes);
    for (std::size_t i = 0; i < count; ++i) {
        const std::byte* entry = raw.data() + ds64FixedBytes + i * ds64EntryBytes;
        sizes.others.emplace_back(FourCC::at(entry), readLE<std::uint64_t>(entry + ds64EntrySizeOffset));
    }
    return sizes;
}

/// Ids that stand in files of recorders, workstations and editors: they settle the question where a header begins.
bool isCommonId(FourCC id) noexcept {
    static constexpr FourCC common[] = {"fmt ", "data", "bext", "iXML", "LIST", "list", "cue ", "smpl", "inst",
                                        "fact", "JUNK", "junk", "PAD ", "FLLR", "axml", "chna", "umid", "minf",
                                        "regn", "elm1", "levl", "cart", "ID3 ", "id3 ", "iXTC", "DGDA", "plst",
                                        "link", "aXML", "_PMX", "Fake", "ovwf", "dbmd", "AFAn", "acid", "strc"};
    return std::find(std::begin(common), std::end(common), id) != std::end(common);
}

bool isPrintableId(FourCC id) noexcept {
    return id.letters[0] != ' ' &&
           std::all_of(id.letters.begin(), id.letters.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

/// Where the chunk behind an odd payload that ends at `payloadEnd` begins: is there a pad byte between the two?
bool hasPadByte(const ByteSource& source, std::uint64_t payloadEnd) {
    std::array<std::byte, 1 + chunkHeaderBytes> around{};
    const std::size_t got = source.readAt(payloadEnd, around);
    if (got == 0) return false;  // the file ends with the payload
    if (around[0] == std::byte{0} || got < chunkHeaderBytes) return true;
    const std::uint64_t rest = source.size() - payloadEnd - chunkHeaderBytes;
    const auto fits = [&](const std::byte* header, std::uint64_t available) {
        return isPrintableId(FourCC::at(header)) && readLE<std::uint32_t>(header + 4) <= available;
    };
    // A common id is a header whatever its size says: audio of an RF64 or of an interrupted recording claims more bytes
    // than there are.
    const bool unpaddedIsCommon = isCommonId(FourCC::at(around.data()));
    if (!unpaddedIsCommon && !fits(around.data(), rest)) return true;
    if (got < around.size()) return !unpaddedIsCommon;
    return fits(around.data() + 1, rest - 1) && (!unpaddedIsCommon || isCommonId(FourCC::at(around.data() + 1)));
}

}  // namespace

FourCC FourCC::at(const std::byte* bytes) noexcept {
    FourCC id;
    std::memcpy(id.letters.data(), bytes, id.letters.size());
    return id;
}

const Chunk* ChunkTable::first(FourCC id) const noexcept {
    const auto found = std::find_if(chunks.begin(), chunks.end(), [&](const Chunk& chunk) { return chunk.id == id; });
    return found == chunks.end() ? nullptr : &*found;
}

std::optional<ChunkTable> walkChunks(const ByteSource& source) {
    std::array<std::byte, riffHeaderBytes> head{};
    if (source.readAt(0, head) < head.size()) return std::nullopt;
    ChunkTable table;
    table.form = FourCC::at(head.data());
    table.type = FourCC::at(head.data() + 8);
    table.fileSize = source.size();
    table.end = riffHeaderBytes;
    const bool large = table.form == FourCC("RF64") || table.form == FourCC("BW64");
    if (!large && table.form != FourCC("RIFF")) return std::nullopt;

    LargeSizes largeSizes;
    while (table.chunks.size() < maxChunks && table.fileSize - table.end >= chunkHeaderBytes) {
        std::array<std::byte, chunkHeaderBytes> header{};
        if (source.readAt(table.end, header) < header.size()) break;
        Chunk chunk;
        chunk.id = FourCC::at(header.data());
        chunk.offset = table.end;
        chunk.sizeField = readLE<std::uint32_t>(header.data() + 4);
        chunk.claimedSize = chunk.sizeField;
        if (large && chunk.sizeField == sizeInDs64)
            chunk.claimedSize = largeSizes.of(chunk.id).value_or(chunk.sizeField);
        // By subtraction: the claim may be anything up to 2^64 - 1.
        const std::uint64_t available = table.fileSize - chunk.payload();
        chunk.size = std::min(chunk.claimedSize, available);
        if (!chunk.truncated() && chunk.size % 2 == 1)
            chunk.padInFile = hasPadByte(source, chunk.payload() + chunk.size);
        if (large && chunk.id == FourCC("ds64") && !largeSizes.data) largeSizes = readDs64(source, chunk);
        table.end = chunk.end();
        table.chunks.push_back(chunk);
        if (chunk.truncated()) break;
    }
    return table;
}

}  // namespace dravik
