#pragma once

#include "model/sample_decoder.h"

#include <memory>

namespace dravik {

/// The codec libraries behind SampleDecoder, loaded as those of the reader are: from the module beside the program,
/// when the first file that needs them is opened. Without the module every file is refused with the reason.
[[nodiscard]] std::unique_ptr<SampleDecoder> makeLazySampleDecoder();

/// What the module exports under the name "dravikMakeSampleDecoder".
using MakeSampleDecoder = SampleDecoder* (*)();

}  // namespace dravik
