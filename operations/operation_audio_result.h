#pragma once

#include "base/uuid.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace dravik {

/// What became of one group in a run: one line in the list of results, also when it failed.
struct OperationAudioResult {
    Uuid id;
    std::string sourceName;                               ///< the group's name as shown
    std::optional<std::filesystem::path> destinationURL;  ///< the main output
    std::vector<std::filesystem::path> destinationURLs;  ///< every output that is complete, in the order they were made
    std::string message;                                 ///< the line that the user reads
    bool success = false;
};

}  // namespace dravik
