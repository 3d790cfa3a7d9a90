#include "platform/module.h"

#include <filesystem>
#include <optional>

#include <dlfcn.h>

namespace dravik {
namespace {

#ifdef __APPLE__
constexpr const char* ending = ".bundle";
#else
constexpr const char* ending = ".so";
#endif

/// Folder of the running program or test, wherever it was started from.
std::filesystem::path programFolder() {
    Dl_info info{};
    if (::dladdr(reinterpret_cast<const void*>(&programFolder), &info) == 0 || info.dli_fname == nullptr) return {};
    std::error_code none;
    // For the main program the name may be as typed on the command line; the system knows the real one.
    std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", none);
    if (none) self = std::filesystem::weakly_canonical(info.dli_fname, none);
    return self.parent_path();
}

}  // namespace

ModuleFunction moduleFunction(const std::string& module, const char* function) {
    const std::string moduleName = module + ending;
    std::optional<std::string> reason;
    const std::filesystem::path folder = programFolder();
    for (const std::filesystem::path& place :
         {folder / moduleName, folder / DRAVIK_MODULES_FROM_PROGRAMS / moduleName}) {
        // Never unloaded: the libraries keep threads and tables of their own.
        void* library = ::dlopen(place.c_str(), RTLD_NOW | RTLD_LOCAL);
        void* symbol = library != nullptr ? ::dlsym(library, function) : nullptr;
        if (symbol != nullptr) return {symbol, {}};
        // A module that is there and does not load is what is wrong, not that there is none in the other place.
        const char* said = ::dlerror();
        std::error_code none;
        if (!reason && said != nullptr && std::filesystem::exists(place, none)) reason = said;
    }
    return {nullptr, reason.value_or(moduleName + " was not found.")};
}

}  // namespace dravik
