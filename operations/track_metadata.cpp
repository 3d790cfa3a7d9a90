#include "operations/track_metadata.h"

#include "base/text.h"
#include "model/wave/bext.h"
#include "model/wave/ixml_document.h"
#include "model/wave/ixml_editor.h"
#include "operations/operation_audio_error.h"
#include "operations/track_lines.h"
#include "operations/xml_text.h"

#include <algorithm>
#include <map>
#include <set>

#include <fmt/format.h>

namespace dravik::OperationsAudio {
namespace {

std::optional<std::string> plainName(const std::map<int, std::string>& noms, int cle) {
    const auto found = noms.find(cle);
    if (found == noms.end()) return std::nullopt;
    std::string nom = unescapedXml(found->second);
    if (trimmed(nom).empty()) return std::nullopt;
    return nom;
}

/// Recorders that count inputs name the tracks of a file of two channels 5 and 6, without positions.
bool countsInputs(const InfoFichier& fichier) {
    return !fichier.nomsPistes.empty() && fichier.numerosTracks.empty() &&
           fichier.nomsPistes.begin()->first > fichier.channels &&
           fichier.nomsPistes.size() == static_cast<std::size_t>(fichier.channels);
}

}  // namespace

std::vector<SourceTrack> tracksOfPoly(const InfoFichier& fichier) {
    std::vector<SourceTrack> tracks;
    std::set<int> numbers;
    auto input = fichier.nomsPistes.begin();
    const bool inputs = countsInputs(fichier);
    for (int position = 1; position <= fichier.channels; ++position) {
        const int cle = inputs ? (input++)->first : position;
        const auto numero = fichier.numerosTracks.find(position);
        tracks.push_back(
            {numero == fichier.numerosTracks.end() ? cle : numero->second, plainName(fichier.nomsPistes, cle)});
        numbers.insert(tracks.back().numero);
    }
    if (numbers.size() != tracks.size()) {
        for (std::size_t at = 0; at < tracks.size(); ++at)
            tracks[at].numero = static_cast<int>(at) + 1;
    }
    return tracks;
}

std::vector<SourceTrack> tracksOfMonoSet(const GroupeFichiers& groupe) {
    std::vector<SourceTrack> tracks;
    for (const InfoFichier& fichier : groupe.fichiers) {
        // The one track of each file, under whatever number its recorder filed it.
        const int cle = fichier.nomsPistes.empty() ? 1 : fichier.nomsPistes.begin()->first;
        const int position = static_cast<int>(tracks.size()) + 1;
        tracks.push_back({fichier.numerosTracks.empty() ? position : fichier.numerosTracks.begin()->second,
                          plainName(fichier.nomsPistes, cle)});
    }
    return tracks;
}

std::string trackLabel(const OutputTrack& track) {
    return track.nom.value_or(fmt::format("Track {}", track.numeroSource));
}

std::string trackListElement(std::span<const OutputTrack> tracks) {
    std::string list = fmt::format("<TRACK_LIST>\n  <TRACK_COUNT>{}</TRACK_COUNT>\n", tracks.size());
    int position = 0;
    for (const OutputTrack& track : tracks) {
        list += fmt::format(
            "  <TRACK>\n    <CHANNEL_INDEX>{}</CHANNEL_INDEX>\n    <INTERLEAVE_INDEX>{}</INTERLEAVE_INDEX>\n"
            "    <NAME>{}</NAME>\n  </TRACK>\n",
            track.numero, ++position, escapedXml(trackLabel(track)));
    }
    return list += "</TRACK_LIST>";
}

namespace {

[[noreturn]] void refuseDocument(std::string_view why) {
    throw OperationAudioError::groupeIncompatible(
        fmt::format("The iXML metadata {}, so the new file would name its tracks wrongly. Nothing was created.", why));
}

/// The names that a reader finds in the new list.
std::map<int, std::string> namesToBeRead(std::span<const OutputTrack> tracks) {
    std::map<int, std::string> names;
    int position = 0;
    for (const OutputTrack& track : tracks) {
        ++position;
        const std::string name = escapedXml(trackLabel(track));
        if (const std::string_view read = trimmed(name); !read.empty()) names.emplace(position, read);
    }
    return names;
}

}  // namespace

Bytes ixmlWithTracks(ByteSpan payload, std::span<const OutputTrack> tracks) {
    std::string document(asText(payload));
    const bool converted = !isValidUtf8(document);
    if (converted) {
        std::optional<std::string> text = decodeIxml(document);
        if (!text) refuseDocument("cannot be read");
        document = std::move(*text);
    }
    if (document.size() > maxIxmlBytes) refuseDocument("is too large");
    const std::optional<IxmlElement> list = plageTag(document, "TRACK_LIST");
    if (!list) {
        if (!IxmlDocument(document).tracks().empty()) refuseDocument("has tracks outside a track list");
        return {payload.begin(), payload.end()};
    }
    const std::string element = trackListElement(tracks);
    document.replace(list->begin, list->end - list->begin, element);
    // The first element of the name may stand in a comment or a note, and another be the one that readers find.
    if (lireNomsPistes(IxmlDocument(document)) != namesToBeRead(tracks)) {
        refuseDocument("has a track list that cannot be replaced safely");
    }
    const auto isAscii = [](char c) { return (c & 0x80) == 0; };
    if (converted || !std::all_of(element.begin(), element.end(), isAscii)) declareUtf8(document);
    return toBytes(document);
}

Bytes bextWithTracks(ByteSpan payload, std::span<const OutputTrack> tracks, std::size_t source,
                     std::span<const SourceTrack> own) {
    Bytes out(payload.begin(), payload.end());
    if (payload.size() < bext::descriptionBytes) return out;
    const std::string_view before = descriptionText(payload);
    const std::string after = descriptionWithTracks(before, tracks, source, own, bext::descriptionBytes);
    if (after == before) return out;
    // Recorders leave stray bytes behind the text. They stay only as long as nothing is written there.
    std::fill_n(out.begin(), bext::descriptionBytes, std::byte{0});
    std::copy(asBytes(after).begin(), asBytes(after).end(), out.begin());
    return out;
}

ChunkAdapter trackMetadataAdapter(std::vector<OutputTrack> tracks, std::vector<SourceTrack> own, std::size_t source) {
    return
        [tracks = std::move(tracks), own = std::move(own), source](FourCC id, Bytes payload) -> std::optional<Bytes> {
            if (id == FourCC("iXML")) return ixmlWithTracks(payload, tracks);
            if (id == FourCC("bext")) return bextWithTracks(payload, tracks, source, own);
            return payload;
        };
}

}  // namespace dravik::OperationsAudio
