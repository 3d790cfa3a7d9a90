#include "bench/measure.h"

#include <cstdlib>
#include <fstream>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace dravik::bench {
namespace {

/// The number behind "name:" in a file of /proc.
std::uint64_t procNumber(const char* file, std::string_view name) {
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with(name)) return std::strtoull(line.c_str() + name.size(), nullptr, 10);
    }
    return 0;
}

}  // namespace

PeakMemory::PeakMemory() { std::ofstream("/proc/self/clear_refs") << 5; }
double PeakMemory::mebibytes() const { return static_cast<double>(procNumber("/proc/self/status", "VmHWM:")) / 1024; }

ReadBytes::ReadBytes() {
    const std::uint64_t first = procNumber("/proc/self/io", "rchar:");
    before_ = procNumber("/proc/self/io", "rchar:");
    cost_ = before_ - first;
}
std::uint64_t ReadBytes::count() const { return procNumber("/proc/self/io", "rchar:") - before_ - cost_; }

void dropFromCache(const std::vector<std::filesystem::path>& files) {
    for (const std::filesystem::path& file : files) {
        const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
        if (descriptor < 0) continue;
        static_cast<void>(::posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED));
        ::close(descriptor);
    }
    std::ofstream("/proc/sys/vm/drop_caches") << 3;  // not open to everyone: then the data alone is cold
}

void runProgram(const std::vector<std::string>& arguments) {
    std::vector<char*> raw;
    for (const std::string& argument : arguments)
        raw.push_back(const_cast<char*>(argument.c_str()));
    raw.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const int error = ::posix_spawnp(&child, raw.front(), &actions, nullptr, raw.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    if (error != 0 || ::waitpid(child, &status, 0) != child || status != 0) {
        fmt::print(stderr, "{} failed: {}\n", arguments.front(),
                   error != 0 ? std::generic_category().message(error) : fmt::format("status {}", status));
        std::exit(1);
    }
}

}  // namespace dravik::bench
