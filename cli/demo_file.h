#pragma once

#include "base/bytes.h"
#include "cli/demo_day.h"

#include <string>
#include <vector>

namespace dravik {

/// The files of a take as recorders write them: poly files with their metadata before the audio, mono files with the
/// iXML behind it. Bytes; nothing is written here.

/// Names of the take's files, with extension, in track order.
[[nodiscard]] std::vector<std::string> demoFileNames(const DemoTake& take);

/// The bytes of the file at that position. `tracks` are the signals of the whole take.
[[nodiscard]] Bytes demoFile(const DemoTake& take, std::size_t position, const std::vector<std::vector<float>>& tracks);

}  // namespace dravik
