#pragma once

#include "platform/module.h"

namespace dravik {

/// A function of the module that holds the codec libraries.
using MediaFunction = ModuleFunction;
[[nodiscard]] MediaFunction mediaFunction(const char* name);

}  // namespace dravik
