#include "cli/json_output.h"

#include "base/build_info.h"
#include "base/paths.h"
#include "cli/display_text.h"
#include "cli/json_writer.h"

#include <set>

namespace dravik {
namespace {

std::optional<std::string> dateText(const std::optional<RecordingDate>& date) {
    return date ? std::optional(formatRecordingDate(*date)) : std::nullopt;
}

std::string_view fieldName(MetadataField field) noexcept {
    switch (field) {
        case MetadataField::project:
            return "project";
        case MetadataField::scene:
            return "scene";
        case MetadataField::prise:
            return "take";
        case MetadataField::tape:
            return "tape";
        case MetadataField::note:
            return "note";
        case MetadataField::circled:
            return "circled";
        case MetadataField::wild:
            return "wild";
        case MetadataField::timecode:
            return "timecode";
        case MetadataField::framerate:
            return "framerate";
    }
    return "";
}

std::string_view recordingDateStatusText(GroupeFichiers::RecordingDateStatus status) noexcept {
    switch (status) {
        case GroupeFichiers::RecordingDateStatus::consistent:
            return "consistent";
        case GroupeFichiers::RecordingDateStatus::none:
            return "none";
        case GroupeFichiers::RecordingDateStatus::mixed:
            return "mixed";
    }
    return "";
}

/// The members of a file's record, in an object that is open.
void fileMembers(JsonWriter& json, const InfoFichier& fichier) {
    json.member("path", pathText(fichier.url));
    json.member("name", fichier.nom);
    json.member("format", fichier.format);
    json.member("channels", fichier.channels);
    json.member("sampleRate", fichier.sampleRate);
    json.member("bits", fichier.bits);
    json.member("duration", fichier.dureeSecondes);
    json.member("size", fichier.taille);
    json.member("project", fichier.project);
    json.member("scene", fichier.scene);
    json.member("take", fichier.prise);
    json.member("tape", fichier.tape);
    json.member("note", fichier.notes);
    json.member("circled", fichier.circled);
    json.member("wild", fichier.wild);
    json.member("timecode", fichier.timecode);
    json.member("framerate", fichier.framerate);
    json.member("recordingDate", dateText(fichier.recordingDate));
    json.key("trackNames");
    json.beginObject();
    for (const auto& [track, name] : fichier.nomsPistes)
        json.member(std::to_string(track), displayName(name));
    json.endObject();
    json.key("trackNumbers");
    json.beginObject();
    for (const auto& [track, channel] : fichier.numerosTracks)
        json.member(std::to_string(track), channel);
    json.endObject();
    json.member("familyUID", fichier.familleUID);
    json.member("missingAudioBytes", fichier.missingAudioBytes);
}

void groupObject(JsonWriter& json, const GroupeFichiers& groupe) {
    const auto flag = [&](MetadataField field, bool value) {
        return groupe.mixedFields.contains(field) ? std::nullopt : std::optional(value);
    };
    json.beginObject();
    json.member("name", groupe.nom);
    json.member("poly", groupe.estPoly);
    json.key("mixed");
    json.beginArray();
    for (const MetadataField field : groupe.mixedFields)
        json.value(fieldName(field));
    json.endArray();
    json.member("project", groupe.project);
    json.member("scene", groupe.scene);
    json.member("take", groupe.prise);
    json.member("tape", groupe.tape);
    json.member("note", groupe.notes);
    json.member("circled", flag(MetadataField::circled, groupe.circled));
    json.member("wild", flag(MetadataField::wild, groupe.wild));
    json.member("timecode", groupe.timecode);
    json.member("framerate", groupe.framerate);
    json.member("recordingDate", dateText(groupe.recordingDate()));
    json.member("recordingDateStatus", recordingDateStatusText(groupe.recordingDateStatus()));
    // Two unreadable files may claim one number.
    std::set<int> missing;
    for (const UnreadableTrack& track : groupe.unreadableTracks)
        missing.insert(track.numero);
    json.key("missing");
    json.beginArray();
    for (const int numero : missing)
        json.value(numero);
    json.endArray();
    json.member("filesWritten", groupe.filesWritten > 0 ? std::optional(groupe.filesWritten) : std::nullopt);
    json.member("filesNotThere", groupe.filesNotThere);
    json.key("files");
    json.beginArray();
    for (const InfoFichier& fichier : groupe.fichiers) {
        json.beginObject();
        fileMembers(json, fichier);
        json.endObject();
    }
    json.endArray();
    json.endObject();
}

void cueMember(JsonWriter& json, const std::vector<CueMarker>& cues) {
    json.key("cues");
    json.beginArray();
    std::size_t number = 0;
    for (const CueMarker& cue : cues) {
        json.beginObject();
        json.member("number", ++number);
        json.member("frame", cue.frame);
        json.member("label", cue.label);
        json.endObject();
    }
    json.endArray();
}

/// A document: the program's version, then what `members` writes.
template <typename Members>
std::string document(Members members) {
    JsonWriter json;
    json.beginObject();
    json.member("version", buildInfo().version);
    members(json);
    json.endObject();
    return std::move(json).text();
}

}  // namespace

std::string scanJson(const std::optional<std::filesystem::path>& folder, const std::vector<GroupeFichiers>& groupes) {
    return document([&](JsonWriter& json) {
        json.member("folder", folder ? std::optional(pathText(*folder)) : std::nullopt);
        json.key("groups");
        json.beginArray();
        for (const GroupeFichiers& groupe : groupes)
            groupObject(json, groupe);
        json.endArray();
    });
}

std::string showJson(const InfoFichier& fichier, const std::vector<Chunk>& chunks, const std::vector<CueMarker>& cues) {
    return document([&](JsonWriter& json) {
        fileMembers(json, fichier);
        json.key("chunks");
        json.beginArray();
        for (const Chunk& chunk : chunks) {
            json.beginObject();
            json.member("id", escapedId(chunk.id.view()));
            json.member("offset", chunk.offset);
            json.member("size", chunk.size);
            json.endObject();
        }
        json.endArray();
        cueMember(json, cues);
    });
}

std::string setJson(std::size_t saved, const std::vector<SetResult>& results) {
    return document([&](JsonWriter& json) {
        json.member("saved", saved);
        json.key("results");
        json.beginArray();
        for (const SetResult& result : results) {
            json.beginObject();
            json.member("path", pathText(result.path));
            json.member("newPath", pathText(result.newPath));
            json.member("ok", result.ok);
            json.member("message", result.message);
            json.endObject();
        }
        json.endArray();
    });
}

std::string cuesJson(const std::filesystem::path& path, bool ok, const std::optional<std::string>& message,
                     const std::vector<CueMarker>& cues) {
    return document([&](JsonWriter& json) {
        json.member("path", pathText(path));
        json.member("ok", ok);
        json.member("message", message);
        cueMember(json, cues);
    });
}

}  // namespace dravik
