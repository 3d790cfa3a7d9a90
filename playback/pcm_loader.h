#pragma once

#include "base/progress.h"
#include "model/sample_decoder.h"
#include "playback/pcm_buffer.h"
#include "playback/playback_error.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace dravik {

/// Bytes of memory that a program can take now before the machine begins to swap; absent when nobody knows.
using AvailableMemory = std::function<std::optional<std::uint64_t>()>;

/// Reads a whole take into memory: one poly file, or the files of a mono set in track order. All files at once, and a
/// large one in several places at once. Blocking; stops within a moment of a cancel. Throws PlaybackError (before
/// anything is allocated when it would not fit), Cancelled, std::filesystem::filesystem_error; nothing is kept then.
[[nodiscard]] std::shared_ptr<const PcmTake> loadTake(const std::vector<std::filesystem::path>& files, bool estPoly,
                                                      const SampleDecoder& decoder, const AvailableMemory& available,
                                                      const TaskContext& task);

}  // namespace dravik
