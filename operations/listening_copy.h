#pragma once

#include "base/safe_file.h"
#include "operations/export_configuration.h"
#include "operations/export_pcm_reader.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace dravik::OperationsAudio {

/// What MP3 and M4A exports share.

/// One or two tracks by name; "all tracks" is not for a listening copy.
[[nodiscard]] bool isMonoOrStereo(const OperationAudioExportRouting& routing) noexcept;
[[nodiscard]] bool hasExtension(std::string_view name, std::string_view extension) noexcept;
/// More than a stream of that bit rate takes, for the check of free space: a second more, and the container.
[[nodiscard]] std::uint64_t roomForStream(int kilobitsPerSecond, std::int64_t frames, double sampleRate) noexcept;
/// Behind the line of an export: what has to be told of a source that ends before its header says. Mostly empty.
[[nodiscard]] std::string cutShortNote(const ExportPCMReader& reader);

}  // namespace dravik::OperationsAudio
