#include "cli/scan_command.h"

#include "base/paths.h"
#include "cli/display_text.h"
#include "cli/json_output.h"
#include "cli/opened_folder.h"
#include "cli/take_table.h"
#include "model/audio_metadata.h"
#include "model/folder_scan.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string_view>

#include <fmt/format.h>

namespace dravik {
namespace {

/// The takes under one heading: a folder, or the files named out of one.
struct Section {
    std::filesystem::path folder;
    bool wholeFolder = false;
    std::vector<std::filesystem::path> files;
};

std::vector<Section> sectionsOf(const std::vector<std::filesystem::path>& paths, Services& services, bool& failed) {
    std::vector<Section> sections;
    for (const std::filesystem::path& path : paths) {
        std::error_code none;
        if (std::filesystem::is_directory(path, none)) {
            if (const std::string problem = folderProblem(path); !problem.empty()) {
                services.console.message(problem);
                failed = true;
                continue;
            }
            if (!recoverAndTell(path, services)) failed = true;
            sections.push_back({path, true, filesIn(path)});
            continue;
        }
        std::string problem = fileProblem(path);
        if (problem.empty() && !isListed(path)) problem = shown(path) + ": is not a kind of audio file that is listed.";
        if (!problem.empty()) {
            services.console.message(problem);
            failed = true;
            continue;
        }
        const auto same = std::find_if(sections.begin(), sections.end(), [&](const Section& section) {
            return !section.wholeFolder && section.folder == folderOf(path);
        });
        Section& section = same == sections.end() ? sections.emplace_back(Section{folderOf(path), false, {}}) : *same;
        if (std::find(section.files.begin(), section.files.end(), path) == section.files.end()) {
            section.files.push_back(path);
        }
    }
    return sections;
}

/// Says which files cannot be read or are cut off, and which takes lack files. True when a file is damaged; a set from
/// which files were taken away on purpose is none of our business but to be told.
bool tellDamage(const std::vector<GroupeFichiers>& groupes, Services& services) {
    std::map<std::filesystem::path, std::string_view> lackedBy;
    for (const GroupeFichiers& groupe : groupes) {
        for (const UnreadableTrack& track : groupe.unreadableTracks)
            lackedBy.emplace(track.url, groupe.nom);
    }
    bool any = false;
    for (const GroupeFichiers& groupe : groupes) {
        if (const std::string lacking = lackingFilesText(groupe); !lacking.empty()) {
            const std::filesystem::path take = folderOf(groupe.fichiers.front().url) / groupe.nom;
            services.console.message(fmt::format("{}: {}", shown(take), lacking));
        }
        for (const InfoFichier& fichier : groupe.fichiers) {
            if (fichier.missingAudioBytes > 0) {
                services.console.message(fmt::format("{}: is cut off, {} of its audio is missing.", shown(fichier.url),
                                                     sizeText(fichier.missingAudioBytes)));
                any = true;
            }
            if (fichier.channels > 0) continue;
            std::string message = shown(fichier.url) + ": cannot be read as audio.";
            if (const auto take = lackedBy.find(fichier.url); take != lackedBy.end())
                message += fmt::format(" The take {} is shown without this track.", printable(take->second));
            services.console.message(message);
            any = true;
        }
    }
    return any;
}

std::string sectionText(const Section& section, const std::vector<GroupeFichiers>& groupes, bool heading,
                        const Console& console) {
    const bool colour = console.outputHasColour();
    std::string out;
    if (heading) out += styled(shown(section.folder), Style::strong, colour) + "\n\n";
    if (groupes.empty()) return out + "No audio files here.\n";
    out += takeTable(groupes, console.outputWidth(), colour);
    return fmt::format("{}\n{}\n", out, styled(takeSummary(groupes), Style::dim, colour));
}

}  // namespace

ExitCode runScan(const ScanOptions& options, Services& services) {
    bool failed = false;
    const std::vector<Section> sections = sectionsOf(options.paths, services, failed);
    std::vector<GroupeFichiers> all;
    std::string text;
    for (const Section& section : sections) {
        std::vector<GroupeFichiers> groupes = readTakes(section.files, options.group, services);
        // Of files that were named one by one the others may well be there.
        if (section.wholeFolder) countFilesNotThere(groupes);
        if (tellDamage(groupes, services)) failed = true;
        if (!options.json) {
            if (!text.empty()) text += "\n\n";
            text += sectionText(section, groupes, sections.size() > 1, services.console);
        }
        std::move(groupes.begin(), groupes.end(), std::back_inserter(all));
    }
    if (options.json) {
        const bool oneFolder = options.paths.size() == 1 && sections.size() == 1 && sections.front().wholeFolder;
        text = scanJson(oneFolder ? std::optional(sections.front().folder) : std::nullopt, all);
    }
    services.console.print(text);
    return failed ? ExitCode::someFailed : ExitCode::done;
}

}  // namespace dravik
