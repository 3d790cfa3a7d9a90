#pragma once

#include "cli/exit_code.h"
#include "cli/services.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace dravik {

struct CuesOptions {
    struct Added {
        std::int64_t frame = 0;
        std::optional<std::string> label;
    };
    struct Renamed {
        std::size_t number = 0;
        std::string label;
    };

    std::filesystem::path file;
    std::vector<Added> added;
    std::vector<std::size_t> removed;  ///< numbers before the edit, from 1
    std::vector<Renamed> renamed;      ///< likewise
    bool clear = false;
    bool dryRun = false;
    bool json = false;

    [[nodiscard]] bool edits() const noexcept {
        return clear || !added.empty() || !removed.empty() || !renamed.empty();
    }
};

/// Lists the cue markers of one file, or edits and saves them.
[[nodiscard]] ExitCode runCues(const CuesOptions& options, Services& services);

}  // namespace dravik
