#pragma once

#include "operations/mp3_encoder.h"

#include <memory>

namespace dravik {

/// libmp3lame at constant bit rate. Its complaints are not printed.
[[nodiscard]] std::unique_ptr<MP3Encoders> makeLameEncoders();

}  // namespace dravik
