#pragma once

#include "base/uuid.h"
#include "model/wave/cue_bytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace dravik {

/// A named position in a take.
struct CueMarker {
    Uuid id;                 ///< identity in the editor, made anew at each reading
    std::int64_t frame = 0;  ///< sample frames from the start of the audio
    std::optional<std::string> label = {};
    /// Notes and texts that the file holds for it. Not for the editor: they go where the marker goes, and with it.
    std::vector<CueEntry> entries = {};
};

}  // namespace dravik
