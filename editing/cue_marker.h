#pragma once

#include "base/uuid.h"

#include <cstdint>
#include <optional>
#include <string>

namespace dravik {

/// A named position in a take.
struct CueMarker {
    Uuid id;                 ///< identity in the editor, made anew at each reading
    std::int64_t frame = 0;  ///< sample frames from the start of the audio
    std::optional<std::string> label;
};

}  // namespace dravik
