#include "tests/support/samples.h"

#include "base/text.h"

#include <algorithm>
#include <cstdlib>

namespace dravik::test {

std::optional<std::filesystem::path> sampleFolder() {
    const char* named = std::getenv("DRAVIK_SAMPLES");
    const std::filesystem::path folder = named != nullptr
                                             ? std::filesystem::path(named)
                                             : std::filesystem::path(DRAVIK_SOURCE_DIR) / ".." / "shared" / "samples";
    std::error_code none;
    return std::filesystem::is_directory(folder, none) ? std::optional(folder.lexically_normal()) : std::nullopt;
}

std::vector<std::filesystem::path> samplesOf(std::string_view extension) {
    std::vector<std::filesystem::path> files;
    const auto folder = sampleFolder();
    if (!folder) return files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(*folder)) {
        if (entry.is_regular_file() && equalsIgnoringAsciiCase(entry.path().extension().native(), extension)) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace dravik::test
