#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace dravik::OperationsAudio {

/// One line: does the new file hold as many bytes of audio as its sources together? Measured anew on the finished file.
/// Never throws: what cannot be measured is said to be so.
[[nodiscard]] std::string mergeVerification(const std::vector<std::filesystem::path>& sources,
                                            const std::filesystem::path& output);

}  // namespace dravik::OperationsAudio
