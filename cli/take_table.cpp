#include "cli/take_table.h"

#include "cli/table.h"
#include "model/audio_metadata.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace dravik {
namespace {

constexpr std::string_view mixedText = "‹mixed›";

const std::vector<Table::Column>& columns() {
    using enum Table::Align;
    static const std::vector<Table::Column> all = {
        {"Name", 100, left, 24},  {"Scene", 95, left, 12},  {"Take", 90, left, 6},     {"Mark", 80, left, {}},
        {"Start", 85, left, {}},  {"FPS", 60, left, {}},    {"Length", 75, right, {}}, {"Tape", 40, left, 8},
        {"Audio", 30, left, {}},  {"Format", 10, left, {}}, {"Size", 20, right, {}},   {"Trk", 55, right, {}},
        {"Tracks", 35, left, 26}, {"Note", 50, left, 15},
    };
    return all;
}

bool isMixed(const GroupeFichiers& groupe, MetadataField field) { return groupe.mixedFields.contains(field); }

Table::Cell field(const GroupeFichiers& groupe, MetadataField field, const std::optional<std::string>& value) {
    if (isMixed(groupe, field)) return {std::string(mixedText), Style::dim};
    return {value.value_or("")};
}

Table::Cell marks(const GroupeFichiers& groupe) {
    if (isMixed(groupe, MetadataField::circled) || isMixed(groupe, MetadataField::wild)) {
        return {std::string(mixedText), Style::dim};
    }
    if (groupe.circled) return {groupe.wild ? "● wild" : "●", Style::good};
    return {groupe.wild ? "wild" : "", Style::special};
}

std::string trackNames(const GroupeFichiers& groupe) {
    std::vector<std::string> names;
    for (const Piste& piste : tracksOfGroup(groupe)) {
        if (!piste.nom.empty()) names.push_back(piste.nom);
    }
    return fmt::format("{}", fmt::join(names, ", "));
}

Table::Cell audio(const InfoFichier& fichier) {
    if (fichier.channels == 0) return {"unreadable", Style::bad};
    const std::string rate = fmt::format("{:g}k", fichier.sampleRate / 1000);
    return {fichier.bits > 0 ? fmt::format("{}/{}", rate, fichier.bits) : rate};
}

/// "WAV", "4 × WAV"; "3 of 4 × WAV" when a file of the take cannot be read.
Table::Cell format(const GroupeFichiers& groupe) {
    const std::size_t files = groupe.fichiers.size();
    const std::string& kind = groupe.fichiers.front().format;
    if (const std::size_t lost = groupe.unreadableTracks.size(); lost > 0) {
        return {fmt::format("{} of {} × {}", files, files + lost, kind), Style::bad};
    }
    return {files > 1 ? fmt::format("{} × {}", files, kind) : kind};
}

bool isCutOff(const GroupeFichiers& groupe) {
    return std::any_of(groupe.fichiers.begin(), groupe.fichiers.end(),
                       [](const InfoFichier& fichier) { return fichier.missingAudioBytes > 0; });
}

double lengthOf(const GroupeFichiers& groupe) {
    double longest = 0;
    for (const InfoFichier& fichier : groupe.fichiers)
        longest = std::max(longest, fichier.dureeSecondes);
    return longest;
}

Table::Cell length(const GroupeFichiers& groupe) {
    if (groupe.fichiers.front().channels == 0) return {""};
    const std::string text = shortDuration(lengthOf(groupe));
    if (isCutOff(groupe)) return {"cut off " + text, Style::bad};
    return {text};
}

std::uint64_t sizeOf(const GroupeFichiers& groupe) {
    std::uint64_t size = 0;
    for (const InfoFichier& fichier : groupe.fichiers)
        size += fichier.taille;
    return size;
}

}  // namespace

std::string takeTable(const std::vector<GroupeFichiers>& groupes, std::optional<int> width, bool colour) {
    Table table(columns());
    for (const GroupeFichiers& groupe : groupes) {
        const InfoFichier& premier = groupe.fichiers.front();
        const bool readable = premier.channels > 0;
        table.add({
            {groupe.nom, Style::strong},
            field(groupe, MetadataField::scene, groupe.scene),
            field(groupe, MetadataField::prise, groupe.prise),
            marks(groupe),
            field(groupe, MetadataField::timecode, groupe.timecode),
            field(groupe, MetadataField::framerate, groupe.framerate),
            length(groupe),
            field(groupe, MetadataField::tape, groupe.tape),
            audio(premier),
            format(groupe),
            {sizeText(sizeOf(groupe))},
            {readable ? fmt::format("{}", tracksOfGroup(groupe).size()) : ""},
            {trackNames(groupe)},
            field(groupe, MetadataField::note, groupe.notes),
        });
    }
    return table.render(width, colour);
}

std::string takeSummary(const std::vector<GroupeFichiers>& groupes) {
    std::size_t files = 0;
    double length = 0;
    std::uint64_t size = 0;
    std::set<RecordingDate> days;
    std::set<std::string> projects;
    for (const GroupeFichiers& groupe : groupes) {
        files += groupe.fichiers.size();
        length += lengthOf(groupe);
        size += sizeOf(groupe);
        for (const InfoFichier& fichier : groupe.fichiers) {
            if (fichier.recordingDate) days.insert(*fichier.recordingDate);
            if (fichier.project && !fichier.project->empty()) projects.insert(*fichier.project);
        }
    }
    std::string out = fmt::format("{}, {}, {}, {}", counted(groupes.size(), "take"), counted(files, "file"),
                                  shortDuration(length), sizeText(size));
    if (!days.empty()) out += ", recorded " + formatRecordingDate(*days.begin());
    if (days.size() > 1) out += " to " + formatRecordingDate(*days.rbegin());
    if (projects.size() == 1) out += fmt::format(", project {}", printable(*projects.begin()));
    return out;
}

}  // namespace dravik
