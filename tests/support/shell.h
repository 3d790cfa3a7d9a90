#pragma once

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace dravik::test {

/// Other programs, as a test asks them. Names and commands are the test's own words, never a user's.

[[nodiscard]] inline bool isInstalled(const std::string& program) {
    return std::system(("command -v " + program + " >/dev/null 2>&1").c_str()) == 0;  // NOLINT: a test's own words
}

/// What a command prints, standard error thrown away; an empty text when it cannot be started.
[[nodiscard]] inline std::string said(const std::string& command) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(::popen((command + " 2>/dev/null").c_str(), "r"),
                                                               ::pclose);
    std::string out;
    std::array<char, 4096> buffer{};
    while (const std::size_t got = pipe ? std::fread(buffer.data(), 1, buffer.size(), pipe.get()) : 0)
        out.append(buffer.data(), got);
    return out;
}

/// As one word of a command; the path holds no single quote.
[[nodiscard]] inline std::string quoted(const std::filesystem::path& path) { return "'" + path.native() + "'"; }

}  // namespace dravik::test
