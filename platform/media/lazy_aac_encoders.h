#pragma once

#include "operations/aac_encoder.h"

#include <memory>

namespace dravik {

/// The AAC encoder of the codec libraries, loaded from the module beside the program when it is first asked for.
/// Without the module no sample rate applies.
[[nodiscard]] std::unique_ptr<AacEncoders> makeLazyAacEncoders();

/// What the module exports under the name "dravikMakeAacEncoders".
using MakeAacEncoders = AacEncoders* (*)();

}  // namespace dravik
