#include "operations/export_metadata.h"

#include "base/text.h"
#include "model/wave/bext.h"
#include "model/wave/chunk_bytes.h"
#include "model/wave/ixml_document.h"
#include "model/wave/ixml_editor.h"
#include "operations/ixml_elements.h"
#include "operations/operation_audio_error.h"
#include "operations/xml_text.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <set>

#include <fmt/format.h>

namespace dravik::OperationsAudio {
namespace {

constexpr std::uint64_t lowHalf = 0xFFFFFFFFU;

/// A number of samples since midnight that a document keeps in two halves.
struct SplitTime {
    std::string_view low, high;
};
constexpr SplitTime splitTimes[] = {
    {"TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO", "TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI"},
    // The block in which some recorders repeat what the bext chunk says.
    {"BWF_TIME_REFERENCE_LOW", "BWF_TIME_REFERENCE_HIGH"},
};

/// The elements that say what the file's format is get the number, also where they say it in another way ("24bit",
/// "48000.0"): beside the new audio every such value is wrong. Blanks around a value stay, and so does one that has
/// tags in it: it may not end where it seems to.
void setNumber(std::string& document, std::string_view name, std::uint32_t number) {
    document = withValues(document, name, [&](std::string_view value) -> std::optional<std::string> {
        const std::string_view text = trimmed(value);
        if (text.empty() || text.find('<') != std::string_view::npos ||
            parseDouble(text) == double{static_cast<double>(number)}) {
            return std::nullopt;
        }
        const auto before = static_cast<std::size_t>(text.data() - value.data());
        return fmt::format("{}{}{}", value.substr(0, before), number, value.substr(before + text.size()));
    });
}

/// Only the digits of a value are replaced: blanks around them stay, and so does what is no number.
void replaceDigits(std::string& document, std::string_view name, std::uint64_t number) {
    document = withValues(document, name, [&](std::string_view value) -> std::optional<std::string> {
        const std::string_view digits = trimmed(value);
        if (digits.empty() || !std::all_of(digits.begin(), digits.end(), isAsciiDigit)) return std::nullopt;
        const auto before = static_cast<std::size_t>(digits.data() - value.data());
        return fmt::format("{}{}{}", value.substr(0, before), number, value.substr(before + digits.size()));
    });
}

void rescaleTime(std::string& document, const SplitTime& time, const ExportAdaptation& adaptation) {
    const auto half = [&](std::string_view name) {
        return parseUnsigned32(valeurTag(name, document).value_or(std::string()));
    };
    const std::optional<std::uint32_t> low = half(time.low);
    if (!low) return;
    const std::optional<std::uint32_t> high = half(time.high);
    const std::uint64_t samples =
        rescaledSamples(std::uint64_t{high.value_or(0)} << 32U | *low, adaptation.inputRate, adaptation.outputRate);
    replaceDigits(document, time.low, samples & lowHalf);
    if (high) {
        replaceDigits(document, time.high, samples >> 32U);
    } else if (samples > lowHalf) {
        document = definirTag(document, time.high, std::to_string(samples >> 32U));
    }
}

/// One point: where it is and how long what it marks lasts, in samples.
std::string rescaledSyncPoint(std::string_view point, const ExportAdaptation& adaptation) {
    constexpr std::string_view duration = "SYNC_POINT_EVENT_DURATION";
    std::string out(point);
    rescaleTime(out, {"SYNC_POINT_LOW", "SYNC_POINT_HIGH"}, adaptation);
    if (const auto samples = parseUnsigned32(valeurTag(duration, out).value_or(std::string()))) {
        replaceDigits(out, duration, rescaledSamples(*samples, adaptation.inputRate, adaptation.outputRate));
    }
    return out;
}

Bytes adaptedIxml(ByteSpan payload, const ExportAdaptation& adaptation) {
    if (payload.empty()) return {};
    // What cannot be read cannot be made to agree with the new file, and would say wrong things of it.
    const std::optional<std::string> text = decodeIxml(asText(payload));
    if (!text) {
        throw OperationAudioError::groupeIncompatible(
            fmt::format("The iXML metadata of the source of {} cannot be read, so it cannot be brought up to date.",
                        adaptation.outputName));
    }
    std::string document(asText(ixmlWithTracks(asBytes(*text), adaptation.tracks)));
    document = withoutElements(document, "MIXER_SETTINGS");
    if (adaptation.inputRate != adaptation.outputRate) {
        for (const SplitTime& time : splitTimes)
            rescaleTime(document, time, adaptation);
        document = withValues(document, "SYNC_POINT", [&](std::string_view point) {
            return std::optional<std::string>(rescaledSyncPoint(point, adaptation));
        });
    }
    setNumber(document, "FILE_SAMPLE_RATE", adaptation.outputRate);
    setNumber(document, "TIMESTAMP_SAMPLE_RATE", adaptation.outputRate);
    setNumber(document, "AUDIO_BIT_DEPTH", static_cast<std::uint32_t>(adaptation.bitDepth));
    for (const std::string_view name : {"FILE_NAME", "FILENAME", "CURRENT_FILENAME"}) {
        document = withValues(document, name, [&](std::string_view) { return escapedXml(adaptation.outputName); });
    }
    // Bytes that nothing had to be changed in stay as they are, whatever their encoding.
    if (document == *text) return {payload.begin(), payload.end()};
    declareUtf8(document);
    return toBytes(document);
}

Bytes adaptedBext(ByteSpan payload, const ExportAdaptation& adaptation) {
    Bytes out = bextWithTracks(payload, adaptation.tracks, adaptation.source, adaptation.own);
    if (out.size() < bext::timeReferenceEnd) return out;
    std::byte* at = out.data() + bext::timeReferenceOffset;
    writeLE(at, rescaledSamples(readLE<std::uint64_t>(at), adaptation.inputRate, adaptation.outputRate));
    return out;
}

/// A 32-bit position in place; what would be beyond its end is at its end.
void rescalePosition(std::byte* at, const ExportAdaptation& adaptation) {
    writeLE(at, static_cast<std::uint32_t>(std::min(
                    lowHalf, rescaledSamples(readLE<std::uint32_t>(at), adaptation.inputRate, adaptation.outputRate))));
}

Bytes adaptedCues(ByteSpan payload, const ExportAdaptation& adaptation) {
    constexpr std::size_t countBytes = 4, pointBytes = 24, positionOffset = 4, sampleOffset = 20;
    Bytes out(payload.begin(), payload.end());
    if (out.size() < countBytes) return out;
    const std::size_t points =
        std::min<std::size_t>(readLE<std::uint32_t>(out.data()), (out.size() - countBytes) / pointBytes);
    for (std::size_t i = 0; i < points; ++i) {
        std::byte* point = out.data() + countBytes + i * pointBytes;
        rescalePosition(point + positionOffset, adaptation);
        rescalePosition(point + sampleOffset, adaptation);
    }
    return out;
}

/// What belongs to the markers: of a labelled stretch the length, in samples.
Bytes adaptedList(ByteSpan payload, const ExportAdaptation& adaptation) {
    constexpr std::size_t typeBytes = 4, lengthOffset = 4, lengthEnd = 8;
    Bytes out(payload.begin(), payload.end());
    if (!asText(payload).starts_with("adtl")) return out;
    for (std::size_t at = typeBytes; out.size() - at >= chunkHeaderBytes;) {
        const std::size_t size = readLE<std::uint32_t>(out.data() + at + sizeof(std::uint32_t));
        const bool isStretch = asText(out).substr(at).starts_with("ltxt");
        at += chunkHeaderBytes;
        if (isStretch && std::min(size, out.size() - at) >= lengthEnd) {
            rescalePosition(out.data() + at + lengthOffset, adaptation);
        }
        if (size > out.size() - at) break;
        at += size;
        if (size % 2 != 0 && at < out.size()) ++at;
    }
    return out;
}

/// The number of frames that a coded format, and a float one, has beside its data size.
Bytes adaptedFact(ByteSpan payload, const ExportAdaptation& adaptation) {
    Bytes out(payload.begin(), payload.end());
    if (out.size() >= sizeof(std::uint32_t)) rescalePosition(out.data(), adaptation);
    return out;
}

}  // namespace

std::vector<SourceTrack> tracksOfFile(const GroupeFichiers& groupe, std::size_t source) {
    if (groupe.estPoly) return tracksOfPoly(groupe.fichiers.front());
    return {tracksOfMonoSet(groupe).at(source)};
}

std::vector<OutputTrack> exportTracks(const GroupeFichiers& groupe, const ExportPCMReader& reader) {
    const std::vector<SourceTrack> sources =
        groupe.estPoly ? tracksOfPoly(groupe.fichiers.front()) : tracksOfMonoSet(groupe);
    std::vector<OutputTrack> tracks;
    std::set<int> numbers;
    for (const int position : reader.positions()) {
        const auto at = static_cast<std::size_t>(position);
        // The list is of what the folder showed; the file may have more channels by now.
        const SourceTrack source = at < sources.size() ? sources[at] : SourceTrack{position + 1, {}};
        OutputTrack track;
        track.source = groupe.estPoly ? 0 : at;
        track.canal = groupe.estPoly ? at : 0;
        track.numeroSource = source.numero;
        track.numero = source.numero;
        track.nom = source.nom;
        tracks.push_back(track);
        numbers.insert(track.numero);
    }
    if (reader.averages()) {
        tracks.front().nom = fmt::format("{} + {}", trackLabel(tracks[0]), trackLabel(tracks[1]));
        tracks.resize(1);
    } else if (numbers.size() != tracks.size()) {
        for (std::size_t i = 0; i < tracks.size(); ++i)
            tracks[i].numero = static_cast<int>(i) + 1;
    }
    return tracks;
}

std::uint64_t rescaledSamples(std::uint64_t samples, std::uint32_t inputRate, std::uint32_t outputRate) noexcept {
    if (inputRate == 0 || inputRate == outputRate) return samples;
    // Whole seconds and the rest apart, so that nothing overflows on the way.
    const std::uint64_t seconds = samples / inputRate;
    const std::uint64_t rest = (samples % inputRate * outputRate + inputRate / 2) / inputRate;
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    if (seconds > (most - rest) / std::max<std::uint32_t>(1, outputRate)) return most;
    return seconds * outputRate + rest;
}

std::vector<RIFFChunk> adaptedForExport(const std::vector<RIFFChunk>& chunks, const ExportAdaptation& adaptation) {
    const bool converts = adaptation.inputRate != adaptation.outputRate;
    return adapted(chunks, [&](FourCC id, Bytes payload) -> std::optional<Bytes> {
        if (id == FourCC("ds64")) return std::nullopt;
        if (id == FourCC("iXML")) return adaptedIxml(payload, adaptation);
        if (id == FourCC("bext")) return adaptedBext(payload, adaptation);
        if (converts && id == FourCC("cue ")) return adaptedCues(payload, adaptation);
        if (converts && id == FourCC("LIST")) return adaptedList(payload, adaptation);
        if (converts && id == FourCC("fact")) return adaptedFact(payload, adaptation);
        return payload;
    });
}

}  // namespace dravik::OperationsAudio
