#pragma once

#include <string>

namespace dravik {

/// A function of the module that holds the codec libraries, loaded when the first one is asked for. The module stands
/// beside the program in a build and in lib/dravik where it is installed.
struct MediaFunction {
    void* address = nullptr;  ///< null when the module or the function is not there
    std::string reason;       ///< why, in the system's words
};
[[nodiscard]] MediaFunction mediaFunction(const char* name);

}  // namespace dravik
