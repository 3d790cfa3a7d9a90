#pragma once

#include <string>

namespace dravik {

/// A function of a module of the program: what brings many shared objects with it is loaded when it is first asked for.
/// Modules stand beside the program in a build and where they are installed in the folder that the installation
/// has for them, lib/dravik/modules; none is ever unloaded.
struct ModuleFunction {
    void* address = nullptr;  ///< null when the module or the function is not there
    std::string reason;       ///< why, in the system's words
};
/// `module` is its name without the ending, which differs from system to system.
[[nodiscard]] ModuleFunction moduleFunction(const std::string& module, const char* function);

}  // namespace dravik
