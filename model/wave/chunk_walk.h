#pragma once

#include "base/byte_source.h"
#include "base/bytes.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dravik {

/// The RIFF container (RIFF, RF64 after EBU Tech 3306, BW64 after ITU-R BS.2088): where its chunks lie. Knows offsets
/// and sizes, not what a chunk means. Stands every file: a damaged one gives the chunks up to the damage.

/// Four bytes that name a chunk or form, exactly as found.
struct FourCC {
    std::array<char, 4> letters{};

    FourCC() = default;
    constexpr FourCC(const char (&text)[5])
        : letters{text[0], text[1], text[2], text[3]} {}  // NOLINT: a literal is one
    [[nodiscard]] static FourCC at(const std::byte* bytes) noexcept;

    [[nodiscard]] std::string_view view() const noexcept { return {letters.data(), letters.size()}; }
    friend bool operator==(const FourCC&, const FourCC&) = default;
};

/// Bytes of "id" and "size" before every payload.
inline constexpr std::uint64_t chunkHeaderBytes = 8;
/// Bytes of form id, form size and form type before the first chunk.
inline constexpr std::uint64_t riffHeaderBytes = 12;
/// A size field that says "the real size is in ds64".
inline constexpr std::uint32_t sizeInDs64 = 0xFFFFFFFFU;
/// The walk ends here: real files have some dozen chunks, but a region of zeros reads as an endless row of empty ones.
inline constexpr std::size_t maxChunks = 512;

/// One chunk of a file.
struct Chunk {
    FourCC id;
    std::uint64_t offset = 0;       ///< of its header
    std::uint64_t claimedSize = 0;  ///< payload bytes as the file says (ds64 already looked up)
    std::uint64_t size = 0;         ///< payload bytes that are really there
    std::uint32_t sizeField = 0;    ///< the 32 bits in the header
    bool padInFile = false;         ///< an odd payload is followed by its pad byte

    [[nodiscard]] std::uint64_t payload() const noexcept { return offset + chunkHeaderBytes; }
    [[nodiscard]] std::uint64_t end() const noexcept { return payload() + size + (padInFile ? 1U : 0U); }
    [[nodiscard]] bool truncated() const noexcept { return claimedSize > size; }
    friend bool operator==(const Chunk&, const Chunk&) = default;
};

/// What a walk found.
struct ChunkTable {
    FourCC form;  ///< "RIFF", "RF64", "BW64", or whatever the first four bytes are
    FourCC type;  ///< "WAVE"
    std::uint64_t fileSize = 0;
    std::vector<Chunk> chunks;  ///< in file order, without gaps from offset 12 on
    std::uint64_t end = 0;      ///< behind the last chunk; bytes from here to fileSize belong to none

    [[nodiscard]] const Chunk* first(FourCC id) const noexcept;
    /// The one form that is written to in place: RF64 and BW64 count their sizes elsewhere.
    [[nodiscard]] bool isRiffWave() const noexcept { return form == FourCC("RIFF") && type == FourCC("WAVE"); }
    [[nodiscard]] std::uint64_t bytesBehind() const noexcept { return fileSize - end; }
};

/// Walks the chunks of a little-endian form ("RIFF", "RF64", "BW64"); absent for a file shorter than a form header or
/// of another kind. The form type is not checked. Reads headers only (and the ds64 chunk). A chunk that claims more
/// bytes than the file has is the last one, with what is there. An odd chunk written without its pad byte is recognised
/// when no plausible header stands behind the pad's place but one stands in it.
[[nodiscard]] std::optional<ChunkTable> walkChunks(const ByteSource& source);

}  // namespace dravik
