#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace dravik::OperationsAudio {

/// One line: does the new file hold as many bytes of audio as its sources, whose frames have `frameBytes`, together?
/// A part of a frame at the end of a source is no audio. Measured anew on the finished file.
/// Never throws: what cannot be measured is said to be so.
[[nodiscard]] std::string mergeVerification(const std::vector<std::filesystem::path>& sources, std::size_t frameBytes,
                                            const std::filesystem::path& output);

}  // namespace dravik::OperationsAudio
