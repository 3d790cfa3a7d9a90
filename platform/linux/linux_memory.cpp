#include "platform/linux/linux_memory.h"

#include "base/text.h"

#include <algorithm>
#include <fstream>
#include <string>
#include <string_view>

namespace dravik {
namespace {

std::optional<std::uint64_t> unsignedOf(std::string_view text) {
    const std::optional<std::int64_t> value = parseInteger(trimmed(text));
    if (!value || *value < 0) return std::nullopt;
    return static_cast<std::uint64_t>(*value);
}

/// The number behind "<name> " or "<name>:" at the start of a line.
std::optional<std::uint64_t> field(const std::filesystem::path& file, std::string_view name) {
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        const std::string_view text = line;
        if (!text.starts_with(name) || text.size() <= name.size()) continue;
        std::string_view rest = text.substr(name.size());
        if (rest.front() != ':' && rest.front() != ' ') continue;
        rest = trimmed(rest.substr(1));
        const bool kibibytes = rest.ends_with(" kB");
        const std::optional<std::uint64_t> value = unsignedOf(rest.substr(0, rest.find(' ')));
        return value && kibibytes ? std::optional(*value * 1024) : value;
    }
    return std::nullopt;
}

std::optional<std::uint64_t> number(const std::filesystem::path& file) {
    std::ifstream content(file);
    std::string line;
    std::getline(content, line);
    return unsignedOf(line);  // "max" is none: no limit
}

/// What the groups (version 2) around this process leave; each may have a limit of its own.
std::optional<std::uint64_t> leftByGroups(const std::filesystem::path& root) {
    std::ifstream membership(root / "proc/self/cgroup");
    std::filesystem::path group;
    for (std::string line; std::getline(membership, line);) {
        if (line.starts_with("0::/")) group = line.substr(4);
    }
    const std::filesystem::path top = root / "sys/fs/cgroup";
    std::optional<std::uint64_t> least;
    for (;; group = group.parent_path()) {
        const std::filesystem::path here = top / group;
        const std::optional<std::uint64_t> limit = number(here / "memory.max");
        const std::optional<std::uint64_t> used = number(here / "memory.current");
        if (limit && used) {
            // Pages of files that nobody uses count as used, but are given up first.
            const std::uint64_t held =
                *used - std::min(*used, field(here / "memory.stat", "inactive_file").value_or(0));
            const std::uint64_t left = *limit - std::min(*limit, held);
            least = std::min(least.value_or(left), left);
        }
        if (group.empty()) return least;
    }
}

}  // namespace

std::optional<std::uint64_t> linuxAvailableMemory(const std::filesystem::path& root) {
    const std::optional<std::uint64_t> machine = field(root / "proc/meminfo", "MemAvailable");
    const std::optional<std::uint64_t> groups = leftByGroups(root);
    if (machine && groups) return std::min(*machine, *groups);
    return machine ? machine : groups;
}

}  // namespace dravik
