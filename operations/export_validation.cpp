#include "operations/export_validation.h"

#include "base/text.h"
#include "model/wave/chunk_walk.h"
#include "model/wave/ixml_document.h"
#include "model/wave/ixml_tags.h"
#include "model/wave/wave_format.h"
#include "operations/ixml_elements.h"
#include "operations/operation_audio_error.h"
#include "operations/xml_text.h"

#include <algorithm>
#include <optional>
#include <string>

#include <fmt/format.h>

namespace dravik::OperationsAudio {
namespace {

[[noreturn]] void refuse(std::string message) { throw OperationAudioError::groupeIncompatible(std::move(message)); }

/// Nothing is cut short, no pad byte is missing, and the form's size is that of the file.
void checkChunks(const ByteSource& file, const ChunkTable& table) {
    constexpr std::uint64_t sizeFieldOffset = 4;
    const Bytes size = file.read(sizeFieldOffset, sizeof(std::uint32_t));
    bool whole = table.end == table.fileSize && size.size() == sizeof(std::uint32_t) &&
                 readLE<std::uint32_t>(size.data()) == table.fileSize - chunkHeaderBytes;
    for (const Chunk& chunk : table.chunks)
        whole = whole && !chunk.truncated() && (chunk.size % 2 == 0 || chunk.padInFile);
    if (!whole) refuse("The exported WAV contains an invalid metadata chunk.");
}

void checkNumber(std::string_view document, std::string_view name, double expected) {
    visitValues(document, name, [&](std::string_view value) {
        const std::string_view text = trimmed(value);
        // An element that says nothing says nothing wrong.
        if (!text.empty() && parseDouble(text) != expected) {
            refuse(fmt::format("The exported iXML {} does not match the WAV audio format.", name));
        }
    });
}

void checkIxml(std::string_view document, const WaveFormat& format, std::string_view outputName) {
    checkNumber(document, "FILE_SAMPLE_RATE", format.sampleRate);
    checkNumber(document, "TIMESTAMP_SAMPLE_RATE", format.sampleRate);
    checkNumber(document, "AUDIO_BIT_DEPTH", format.bits);
    visitValues(document, "CURRENT_FILENAME", [&](std::string_view value) {
        if (unescapedXml(value) != outputName && unescapedXml(trimmed(value)) != outputName) {
            refuse("The exported iXML CURRENT_FILENAME does not describe the output file.");
        }
    });
    if (findOpeningTag(document, "MIXER_SETTINGS") != noTag || findClosingTag(document, "MIXER_SETTINGS", 0) != noTag) {
        refuse("The exported iXML still contains mixer automation metadata.");
    }
}

}  // namespace

void validateWavExport(const ByteSource& file, std::uint32_t sampleRate, const ExportSampleFormat& format,
                       std::string_view outputName) {
    const std::optional<ChunkTable> table = walkChunks(file);
    const Chunk* fmt = table && table->isRiffWave() ? table->first("fmt ") : nullptr;
    const std::optional<WaveFormat> found =
        fmt != nullptr ? parseWaveFormat(file.read(fmt->payload(), std::min<std::uint64_t>(fmt->size, maximumFmtBytes)))
                       : std::nullopt;
    if (!found) refuse("The exported file is not a readable RIFF/WAVE file.");
    const std::uint16_t encoding = format.isFloat ? WaveFormat::ieeeFloat : WaveFormat::pcm;
    if (found->sampleRate != sampleRate || found->bits != format.bitDepth || found->encoding != encoding ||
        found->blockAlign != found->channels * format.sampleBytes()) {
        refuse("The exported WAV format does not match the requested sample rate or bit depth.");
    }
    checkChunks(file, *table);
    for (const Chunk& chunk : table->chunks) {
        if (chunk.id != FourCC("iXML") || chunk.size > maxIxmlBytes) continue;
        checkIxml(asText(file.read(chunk.payload(), chunk.size)), *found, outputName);
    }
}

}  // namespace dravik::OperationsAudio
