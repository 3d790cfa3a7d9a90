#pragma once

#include "cli/exit_code.h"
#include "cli/services.h"

#include <cstdint>
#include <filesystem>

namespace dravik {

struct DemoOptions {
    /// Scene numbers and rolls stay plausible up to here, and nobody needs more.
    static constexpr int mostTakes = 10'000;

    std::filesystem::path folder;
    int takes = 24;
    std::uint64_t seed = 1;
};

/// Writes a made-up recording day into the folder. Refused when a file of that day is there already.
[[nodiscard]] ExitCode runDemo(const DemoOptions& options, Services& services);

}  // namespace dravik
