#pragma once

#include "operations/track_metadata.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace dravik::OperationsAudio {

/// A bext Description with its track lines rebuilt, in at most `maxBytes`; see bextWithTracks, whose rule this is.
/// Pure; the text is what stands before the first zero byte.
[[nodiscard]] std::string descriptionWithTracks(std::string_view description, std::span<const OutputTrack> tracks,
                                                std::size_t source, std::span<const SourceTrack> own,
                                                std::size_t maxBytes);

}  // namespace dravik::OperationsAudio
