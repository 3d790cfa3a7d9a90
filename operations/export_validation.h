#pragma once

#include "base/byte_source.h"
#include "operations/quantizer.h"

#include <cstdint>
#include <string_view>

namespace dravik::OperationsAudio {

/// Reads a finished WAV export, before it gets its name, and throws OperationAudioError when it is not what it says or
/// not what was asked for: its container, its format, its metadata chunks, and what its iXML says about the file.
void validateWavExport(const ByteSource& file, std::uint32_t sampleRate, const ExportSampleFormat& format,
                       std::string_view outputName);

}  // namespace dravik::OperationsAudio
