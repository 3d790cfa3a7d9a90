#pragma once

#include "cli/track_commands.h"
#include "operations/export_choice.h"

#include <cstdint>
#include <optional>
#include <string>

namespace dravik {

struct ExportOptions : OperationOptions {
    ExportAudioFormat format = ExportAudioFormat::wav;
    std::optional<OperationAudioExportRouting> route;  ///< absent: all tracks for WAV, the first two else
    std::optional<int> rate;                           ///< Hz; absent: as the source
    std::optional<std::string> depth;                  ///< "16", "24", "32f"; WAV only; absent: 24
    std::optional<int> bitRate;                        ///< kbit/s; not for WAV; absent: 256
    std::optional<std::uint64_t> ditherSeed;           ///< WAV only
    std::optional<std::string> name;                   ///< of the new file, with or without its extension
};

/// Throws UsageError for options that do not go together.
[[nodiscard]] ExitCode runExport(const ExportOptions& options, Services& services);

}  // namespace dravik
