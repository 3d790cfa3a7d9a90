#pragma once

#include "cli/exit_code.h"
#include "cli/services.h"

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace dravik {

struct SetOptions {
    std::vector<std::filesystem::path> paths;
    std::optional<std::string> project, scene, take, tape, note;
    std::optional<bool> circled, wild;
    std::optional<std::string> timecode, framerate;   ///< as typed
    std::vector<std::pair<int, std::string>> tracks;  ///< track of the take (from 1), name
    std::vector<std::pair<int, int>> channels;        ///< track of the take (from 1), recorder's channel number
    std::optional<std::string> name;                  ///< new name of the take, without extension
    bool group = true;
    bool dryRun = false;
    bool json = false;

    [[nodiscard]] bool edits() const noexcept {
        return project || scene || take || tape || note || circled || wild || timecode || framerate ||
               !tracks.empty() || !channels.empty() || name;
    }
};

/// Edits and saves takes. Everything that can be checked is checked for all of them before the first file is touched.
[[nodiscard]] ExitCode runSet(const SetOptions& options, Services& services);

}  // namespace dravik
