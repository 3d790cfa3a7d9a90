#pragma once

#include "base/progress.h"
#include "model/sample_decoder.h"
#include "playback/peaks.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <vector>

namespace dravik {

/// Receives coarse columns as they are found, on any thread, one call at a time, in no order; the first message of each
/// file comes before any column.
using CoarsePeaksSink = std::function<void(CoarsePeaks)>;

/// One file whose peaks are to be found, and its place in the take.
struct PeakRequest {
    std::filesystem::path file;
    std::size_t place = 0;
};

/// Reads files from start to end once and finds their peaks at all resolutions: all files at once, a large one in
/// several places at once, in blocks of a few hundred kilobytes; what it holds beside them is the result. Blocking;
/// stops within a moment of a cancel. The results are in the order of the requests. Throws PlaybackError, Cancelled,
/// std::filesystem::filesystem_error.
[[nodiscard]] std::vector<FilePeaks> computePeaks(const std::vector<PeakRequest>& requests,
                                                  const SampleDecoder& decoder, const CoarsePeaksSink& sink,
                                                  const TaskContext& task);

}  // namespace dravik
