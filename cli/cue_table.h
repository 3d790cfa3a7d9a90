#pragma once

#include "cli/table.h"
#include "editing/cue_marker.h"

#include <vector>

namespace dravik {

/// Cue markers for people, numbered from 1 in their order. `sampleRate` in Hz, 0 when unknown.
[[nodiscard]] Table cueTable(const std::vector<CueMarker>& cues, double sampleRate);

}  // namespace dravik
