#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace dravik::test {

/// Real recordings for tests: the folder that DRAVIK_SAMPLES names, else "shared/samples" beside the source tree. They
/// are not part of the project; a test that needs them says so and is skipped where they are absent.
[[nodiscard]] std::optional<std::filesystem::path> sampleFolder();
/// All files of the collection with that extension (".wav", any case), in order.
[[nodiscard]] std::vector<std::filesystem::path> samplesOf(std::string_view extension);

}  // namespace dravik::test

// NOLINTNEXTLINE: the skip has to return from the test itself
#define DRAVIK_NEEDS_SAMPLES()         \
    if (!dravik::test::sampleFolder()) \
    GTEST_SKIP() << "The sample recordings are not here: set DRAVIK_SAMPLES, or put them in ../shared/samples."
