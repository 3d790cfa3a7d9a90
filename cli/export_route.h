#pragma once

#include "operations/export_configuration.h"

#include <optional>
#include <string_view>

namespace dravik {

/// Reads "poly", "mono:1", "mono:1+2", "mono:1+2@-6" or "stereo:1,2": tracks from 1, the gain in dB; absent when it is
/// none of them. Two tracks without a gain are added at -3 dB.
[[nodiscard]] std::optional<OperationAudioExportRouting> parseRoute(std::string_view text);

}  // namespace dravik
