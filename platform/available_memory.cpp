#include "platform/available_memory.h"

#include <unistd.h>

#ifdef __linux__
#include "platform/linux/linux_memory.h"
#endif

namespace dravik {

std::optional<std::uint64_t> availableMemory() {
#ifdef __linux__
    if (const std::optional<std::uint64_t> known = linuxAvailableMemory("/")) return known;
#endif
#ifdef _SC_AVPHYS_PAGES
    // Does not count what the system could give up at once, and so says too little.
    const long pages = ::sysconf(_SC_AVPHYS_PAGES);
    const long pageBytes = ::sysconf(_SC_PAGESIZE);
    if (pages > 0 && pageBytes > 0) return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageBytes);
#endif
    return std::nullopt;
}

}  // namespace dravik
