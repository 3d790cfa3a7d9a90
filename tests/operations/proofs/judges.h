#pragma once

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace dravik::test {

/// Programs that judge our files; none of them was written here.

[[nodiscard]] inline bool isInstalled(const std::string& program) {
    return std::system(("command -v " + program + " >/dev/null 2>&1").c_str()) == 0;  // NOLINT: a test's own words
}

/// What a program prints, standard error thrown away; an empty text when it fails.
[[nodiscard]] inline std::string said(const std::string& command) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(::popen((command + " 2>/dev/null").c_str(), "r"),
                                                               ::pclose);
    std::string out;
    std::array<char, 4096> buffer{};
    while (const std::size_t got = pipe ? std::fread(buffer.data(), 1, buffer.size(), pipe.get()) : 0)
        out.append(buffer.data(), got);
    return out;
}

[[nodiscard]] inline std::string quoted(const std::filesystem::path& path) { return "'" + path.native() + "'"; }

}  // namespace dravik::test

// NOLINTNEXTLINE: the skip has to return from the test itself
#define DRAVIK_NEEDS_JUDGES()                                                                     \
    for (const char* program : {"ffprobe", "ffmpeg", "sox", "soxi", "sndfile-info", "mediainfo"}) \
        if (!dravik::test::isInstalled(program)) GTEST_SKIP() << program << " is not installed: scripts/deps.sh test"
