#pragma once

#include "base/bytes.h"
#include "model/wave/chunk_walk.h"

#include <cstdint>

namespace dravik {

/// How a chunk is put down, as chunk_walk.h finds it again; entries inside a LIST have the same form. The caller sees
/// to it that a size fits its 32 bits: what is put into a file is checked as a whole, against the form's own size.

/// Id and size; the payload follows, and a zero byte where the size is odd.
inline void appendChunkHeader(Bytes& out, FourCC id, std::uint64_t payloadBytes) {
    append(out, id.view());
    appendLE(out, static_cast<std::uint32_t>(payloadBytes));
}

/// A whole chunk, with its pad byte.
inline void appendChunk(Bytes& out, FourCC id, ByteSpan payload) {
    appendChunkHeader(out, id, payload.size());
    append(out, payload);
    if (payload.size() % 2 != 0) out.push_back(std::byte{0});
}

/// The form header before the first chunk: `behindHeader` bytes of chunks follow it.
inline void appendFormHeader(Bytes& out, FourCC form, FourCC type, std::uint64_t behindHeader) {
    appendChunkHeader(out, form, type.view().size() + behindHeader);
    append(out, type.view());
}

}  // namespace dravik
