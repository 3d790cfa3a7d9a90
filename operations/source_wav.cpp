#include "operations/source_wav.h"

#include "base/file_error.h"
#include "base/paths.h"
#include "model/wave/wave_format.h"
#include "operations/operation_audio_error.h"

#include <string>

#include <fmt/format.h>

namespace dravik::OperationsAudio {
namespace {

OperationAudioError refusal(const std::filesystem::path& fichier, std::string_view what) {
    return OperationAudioError::groupeIncompatible(aboutFile(fichier, what));
}

/// The first whole chunk of that name: one that is cut short ends the walk and does not count.
const Chunk* firstWhole(const ChunkTable& table, FourCC id) noexcept {
    const Chunk* chunk = table.first(id);
    return chunk != nullptr && !chunk->truncated() ? chunk : nullptr;
}

/// The checks that do not depend on the number of channels, around the one that does.
template <typename Source, typename CheckChannels>
Source readSource(const std::filesystem::path& fichier, CheckChannels checkChannels) {
    const WalkedSource walked(fichier);
    if (!walked.isRiffWave()) throw refusal(fichier, " is not a RIFF/WAVE file.");
    const ChunkTable& table = *walked.table();
    if (const Chunk* data = table.first("data"); data != nullptr && data->truncated()) {
        throw unexpectedEnd(fichier);
    }
    Source source;
    source.fichier = fichier;
    const Chunk* fmtChunk = firstWhole(table, "fmt ");
    if (fmtChunk != nullptr && fmtChunk->size <= maximumFmtBytes) source.fmtPayload = walked.payload(*fmtChunk);
    const std::optional<WaveFormat> format = parseWaveFormat(source.fmtPayload);
    if (!format) throw refusal(fichier, " has no readable fmt chunk.");
    const Chunk* data = firstWhole(table, "data");
    if (data == nullptr) throw refusal(fichier, " has no readable audio data.");
    checkChannels(source, *format);
    if (format->tag != WaveFormat::pcm && format->tag != WaveFormat::ieeeFloat &&
        format->tag != WaveFormat::extensible) {
        throw refusal(fichier, " is not linear PCM.");
    }
    // A frame that is no whole number of samples cannot be taken apart.
    if (format->blockAlign == 0 || format->blockAlign % format->channels != 0) {
        throw refusal(fichier, " has invalid audio block alignment.");
    }
    source.audioFormat = format->tag;
    source.encoding = format->encoding;
    source.sampleRate = format->sampleRate;
    source.blockAlign = format->blockAlign;
    source.bits = format->bits;
    source.dataOffset = data->payload();
    source.dataSize = static_cast<std::int64_t>(data->size);
    source.nombreFrames = source.dataSize / format->blockAlign;
    return source;
}

}  // namespace

OperationAudioError unexpectedEnd(const std::filesystem::path& fichier) {
    return OperationAudioError::donneesAudioInaccessibles(aboutFile(fichier, ": Unexpected end of audio data."));
}

std::string aboutFile(const std::filesystem::path& fichier, std::string_view what) {
    return fileNameText(fichier).append(what);
}

WalkedSource::WalkedSource(const std::filesystem::path& fichier)
    : fichier_(fichier), file_(FileHandle::openForReading(fichier)) {
    if (source().error()) throw std::filesystem::filesystem_error("cannot read", fichier_, source().error());
}

Bytes WalkedSource::payload(const Chunk& chunk) const {
    Bytes bytes = source().read(chunk.payload(), chunk.size);
    if (source().error()) throw std::filesystem::filesystem_error("cannot read", fichier_, source().error());
    if (bytes.size() != chunk.size) throw FileError("it ended while it was read", fichier_, std::errc::io_error);
    return bytes;
}

SourceWAVPoly readPolySource(const std::filesystem::path& fichier) {
    auto source = readSource<SourceWAVPoly>(fichier, [&](SourceWAVPoly& poly, const WaveFormat& format) {
        if (format.channels < 2) throw refusal(fichier, " is not poly.");
        poly.channels = format.channels;
    });
    source.bytesParSample = source.blockAlign / source.channels;
    return source;
}

SourceWAVMono readMonoSource(const std::filesystem::path& fichier) {
    return readSource<SourceWAVMono>(fichier, [&](const SourceWAVMono&, const WaveFormat& format) {
        if (format.channels != 1) throw refusal(fichier, " is not mono.");
    });
}

std::uint64_t audioDataSize(const std::filesystem::path& fichier) {
    const WalkedSource walked(fichier);
    if (!walked.isRiffWave()) throw refusal(fichier, " is not a RIFF/WAVE file.");
    const Chunk* data = firstWhole(*walked.table(), "data");
    if (data == nullptr) throw refusal(fichier, " has no audio data chunk.");
    return data->size;
}

}  // namespace dravik::OperationsAudio
