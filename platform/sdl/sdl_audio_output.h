#pragma once

#include "playback/audio_output.h"

namespace dravik {

/// Outputs on the system's default device, through SDL's audio subsystem, which is started with the first of them and
/// lives as long as the returned function. SDL converts to the rate and the channels of the device. Used from one
/// thread, one started output at a time.
[[nodiscard]] MakeAudioOutput sdlAudioOutputs();

}  // namespace dravik
