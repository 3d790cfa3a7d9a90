#pragma once

#include "operations/sample_rate_converter.h"

#include <memory>

namespace dravik {

/// libsoxr at its most exact recipe: 32 bits, linear phase, the steep filter, computed in double precision. The pass
/// band reaches 0.98 of the lower half rate; what lies above it is gone.
[[nodiscard]] std::unique_ptr<SampleRateConverters> makeSoxrConverters();

}  // namespace dravik
