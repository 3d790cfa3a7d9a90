#pragma once

#include "base/bytes.h"
#include "model/wave/chunk_walk.h"

namespace dravik {

/// One chunk on its way from a source to an output.
struct RIFFChunk {
    FourCC id;      ///< exactly as found; case counts
    Bytes payload;  ///< without header and pad byte
    friend bool operator==(const RIFFChunk&, const RIFFChunk&) = default;
};

}  // namespace dravik
