#include "platform/running_system.h"

#ifdef __APPLE__
#include <array>

#include <sys/sysctl.h>
#endif

namespace dravik {

std::optional<OperatingSystemVersion> runningMacOS() {
#ifdef __APPLE__
    std::array<char, 64> text{};
    std::size_t size = text.size() - 1;
    if (::sysctlbyname("kern.osproductversion", text.data(), &size, nullptr, 0) != 0) return OperatingSystemVersion{};
    return parseOperatingSystemVersion(text.data()).value_or(OperatingSystemVersion{});
#else
    return std::nullopt;
#endif
}

}  // namespace dravik
