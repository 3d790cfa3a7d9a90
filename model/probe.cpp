#include "model/probe.h"

#include "base/paths.h"
#include "base/text.h"
#include "model/wave/ixml_document.h"
#include "model/wave/linear_samples.h"
#include "model/wave/timecode.h"
#include "model/wave/walked_file.h"

#include <algorithm>
#include <array>

namespace dravik {
namespace {

/// The chunks in which metadata is looked for: all, but none behind the first whose size does not fit 32 bits (it is
/// the audio).
std::span<const Chunk> metadataChunks(const ChunkTable& table) {
    if (table.form != FourCC("RIFF") && table.form != FourCC("RF64")) return {};
    const auto large = std::find_if(table.chunks.begin(), table.chunks.end(),
                                    [](const Chunk& chunk) { return chunk.sizeField == sizeInDs64; });
    return {table.chunks.begin(), large == table.chunks.end() ? large : large + 1};
}

/// Programs that write into a pipe, or that were killed, have put a length there that no file has: the largest that
/// some integer holds, or a little less.
bool isUnknownLength(std::uint64_t claimed) {
    constexpr std::uint64_t headBytes = 128;  // some count the heads of the file; with them none is this long
    constexpr std::array<std::uint64_t, 3> halves = {0x7FFFF000, 0x7FFFFFFF, 0x80000000};
    return (claimed <= sizeInDs64 && sizeInDs64 - claimed <= headBytes) || claimed > UINT64_MAX / 2 ||
           std::find(halves.begin(), halves.end(), claimed) != halves.end();
}

/// A recorder writes a file a track, and few have more than a hundred. What claims more is damage.
constexpr std::uint32_t maxFilesOfFamily = 256;

std::optional<std::string> owned(std::optional<std::string_view> text) {
    return text ? std::optional<std::string>(std::in_place, *text) : std::nullopt;
}

}  // namespace

std::optional<RecordingDate> recordingDateIn(const ByteSource& source, const ChunkTable& table) {
    for (const Chunk& chunk : metadataChunks(table)) {
        if (chunk.id != FourCC("bext") || chunk.claimedSize < bext::dateMinimumBytes) continue;
        const Bytes date = source.read(chunk.payload() + bext::originationDateOffset, bext::originationDateBytes);
        return date.size() == bext::originationDateBytes ? parseOriginationDate(asText(date)) : std::nullopt;
    }
    return std::nullopt;
}

std::optional<std::string> ixmlTextIn(const ByteSource& source, const ChunkTable& table) {
    for (const Chunk& chunk : metadataChunks(table)) {
        if (chunk.id != FourCC("iXML")) continue;
        if (chunk.size > maxIxmlBytes) return std::nullopt;
        return decodeIxml(asText(source.read(chunk.payload(), chunk.size)));
    }
    return std::nullopt;
}

std::optional<AudioFormat> linearFormatIn(const ByteSource& source, const ChunkTable& table) {
    const std::optional<LinearAudio> audio = linearAudioIn(source, table);
    if (!audio) return std::nullopt;
    const WaveFormat& format = audio->format;
    return AudioFormat{format.channels, static_cast<double>(format.sampleRate), format.bits, audio->frames};
}

std::uint64_t missingAudioBytesIn(const ByteSource& source, const ChunkTable& table) {
    const Chunk* data = table.first("data");
    if (data == nullptr || !data->truncated() || isUnknownLength(data->claimedSize)) return 0;
    const std::optional<LinearAudio> audio = linearAudioIn(source, table);
    if (!audio) return 0;
    // The size of odd audio may count its pad byte, and that may not be there.
    const std::uint64_t frame = audio->format.blockAlign;
    const bool lacksFrames = data->claimedSize / frame > data->size / frame;
    return lacksFrames ? data->claimedSize - data->size : 0;
}

void fillFromIxml(InfoFichier& info, std::string_view ixml) {
    const IxmlDocument document(ixml);
    info.project = owned(document.literalValue("PROJECT"));
    info.scene = owned(document.literalValue("SCENE"));
    info.tape = owned(document.literalValue("TAPE"));
    info.prise = owned(document.literalValue("TAKE"));
    if (const auto note = document.literalValue("NOTE"); note && !note->empty()) info.notes = owned(note);
    info.circled = lireCircled(document);
    info.wild = lireWild(document);
    const std::vector<IxmlTrack> tracks = document.tracks();
    info.nomsPistes = lireNomsPistes(tracks);
    info.numerosTracks = lireNumerosTracks(tracks);
    if (const auto family = document.value("FAMILY_UID"); family && !family->empty()) info.familleUID = owned(family);

    if (const auto total = document.value("TOTAL_FILES")) {
        const std::optional<std::uint32_t> files = parseUnsigned32(trimmed(*total));
        if (files && *files <= maxFilesOfFamily) info.filesOfFamily = static_cast<int>(*files);
    }
    if (const auto index = document.value("FILE_SET_INDEX"); index && !trimmed(*index).empty())
        info.indexInFamily = std::string(trimmed(*index));

    const auto rateText = document.value("TIMECODE_RATE");
    if (!rateText) return;
    const double rate = rateFromIxml(*rateText);
    info.framerate = framerateLabel(rate, document.value("TIMECODE_FLAG"));
    const auto low = document.value("TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO");
    if (!low) return;
    const auto high = document.value("TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI");
    const std::uint64_t samples = parseUnsigned32(*low).value_or(0) +
                                  (static_cast<std::uint64_t>(high ? parseUnsigned32(*high).value_or(0) : 0) << 32U);
    info.timecode = timecodeFromSamples(samples, rate, info.sampleRate);
}

InfoFichier analyserFichier(const std::filesystem::path& file, const AudioFileReader& codecs) {
    InfoFichier info;
    info.id = Uuid::random();
    info.url = file;
    info.nom = baseNameText(file);
    if (const std::string extension = file.extension().native(); !extension.empty()) {
        info.format = extension.substr(1);
        std::transform(info.format.begin(), info.format.end(), info.format.begin(),
                       [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    }
    const WalkedFile opened(FileHandle::tryOpenForReading(file));
    if (!opened.isOpen()) {
        std::error_code unknown;
        const std::uintmax_t size = std::filesystem::file_size(file, unknown);
        if (!unknown) info.taille = size;
        return info;
    }
    const FileSource& source = opened.source();
    info.taille = source.size();

    const std::optional<ChunkTable>& table = opened.table();
    info.estRiff = table && table->isRiffWave();
    std::optional<AudioFormat> audio;
    if (table) {
        info.recordingDate = recordingDateIn(source, *table);
        info.missingAudioBytes = missingAudioBytesIn(source, *table);
        audio = linearFormatIn(source, *table);
    }
    // Without bytes there is nothing to ask for: the codec libraries would wait for ever on a named pipe.
    if (!audio && source.size() > 0) audio = codecs.format(file);
    if (audio) {
        info.channels = audio->channels;
        info.sampleRate = audio->sampleRate;
        info.bits = audio->bits;
        if (audio->sampleRate > 0) info.dureeSecondes = static_cast<double>(audio->frames) / audio->sampleRate;
    }
    if (table) {
        if (const std::optional<std::string> ixml = ixmlTextIn(source, *table)) fillFromIxml(info, *ixml);
    }
    return info;
}

std::optional<RecordingDate> lireDateEnregistrement(const std::filesystem::path& file) {
    const WalkedFile opened(FileHandle::tryOpenForReading(file));
    return opened.table() ? recordingDateIn(opened.source(), *opened.table()) : std::nullopt;
}

std::optional<std::string> lireChunkIXML(const std::filesystem::path& file) {
    const WalkedFile opened(FileHandle::tryOpenForReading(file));
    return opened.table() ? ixmlTextIn(opened.source(), *opened.table()) : std::nullopt;
}

}  // namespace dravik
