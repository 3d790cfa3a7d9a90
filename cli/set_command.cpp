#include "cli/set_command.h"

#include "base/paths.h"
#include "cli/change_list.h"
#include "cli/display_text.h"
#include "cli/failure.h"
#include "cli/json_output.h"
#include "cli/progress_bar.h"
#include "cli/set_edits.h"
#include "cli/take_selection.h"
#include "cli/writable_file.h"

#include <algorithm>
#include <map>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace dravik {
namespace {

constexpr std::string_view nothingChanged = "No files were changed.";

/// The path as the user would write it: a file named without a folder stays so.
std::filesystem::path asCalled(const std::filesystem::path& newPath, const std::filesystem::path& oldPath) {
    return oldPath.has_parent_path() ? newPath : newPath.filename();
}

class SetRun {
  public:
    SetRun(const SetOptions& options, Services& services) : options_(options), services_(services), edits_(options) {}

    ExitCode run() {
        TakeSelection selection = selectTakes(options_.paths, options_.group, !options_.dryRun, services_);
        if (options_.name && selection.groupes.size() > 1) {
            throw UsageError("--name is for one take at a time: takes under one name would become one.");
        }
        std::map<std::filesystem::path, std::string> readOnly;
        for (const GroupeFichiers& groupe : selection.groupes) {
            for (const InfoFichier& fichier : groupe.fichiers) {
                results_.push_back({fichier.url, fichier.url, true, "Unchanged"});
                if (std::string problem = writeProblem(fichier.url); !problem.empty()) {
                    readOnly.emplace(fichier.url, std::move(problem));
                }
            }
        }
        if (!selection.problems.empty() || !readOnly.empty()) return refuse(selection.problems, readOnly);
        results_.clear();
        for (const GroupeFichiers& groupe : selection.groupes) {
            for (SaveItem& item : edits_.itemsFor(groupe)) {
                results_.push_back({item.fichier.url, item.fichier.url, true, "Unchanged"});
                items_.push_back(std::move(item));
            }
        }
        tellUntouched(selection.groupes);
        tellSameNames(selection.groupes);
        const ExitCode code = options_.dryRun ? rehearse() : save();
        return code == ExitCode::done && !selection.recovered ? ExitCode::someFailed : code;
    }

  private:
    /// A take that is not whole keeps old values in the files that are missing from it.
    void tellUntouched(const std::vector<GroupeFichiers>& groupes) {
        for (const GroupeFichiers& groupe : groupes) {
            for (const UnreadableTrack& track : groupe.unreadableTracks) {
                const auto item = std::find_if(items_.begin(), items_.end(),
                                               [&](const SaveItem& one) { return one.fichier.url == track.url; });
                if (item != items_.end() && item->groupe != groupe.id) continue;  // selected by itself
                services_.console.message(
                    fmt::format("{}: cannot be read as audio. It is {} with the take {}.", shown(track.url),
                                item == items_.end() ? "not touched" : "renamed, but no more,", printable(groupe.nom)));
            }
        }
    }

    void tellSameNames(const std::vector<GroupeFichiers>& groupes) {
        if (!options_.name) return;
        for (const GroupeFichiers& groupe : groupes) {
            for (std::size_t i = 0; i < groupe.fichiers.size() && !keepsItsName_; ++i) {
                const std::string wanted = newBaseName(groupe, i, *options_.name);
                keepsItsName_ = wanted != groupe.fichiers[i].nom && isSameName(wanted, groupe.fichiers[i].nom);
            }
            if (!keepsItsName_) continue;
            services_.console.message(fmt::format(
                "{} keeps its name: names that differ only in letter case are one name.", printable(groupe.nom)));
        }
    }

    ExitCode refuse(const std::vector<PathProblem>& problems,
                    const std::map<std::filesystem::path, std::string>& readOnly) {
        for (SetResult& result : results_) {
            const auto found = readOnly.find(result.path);
            result.ok = false;
            result.message = found == readOnly.end() ? std::string(nothingChanged) : found->second;
            if (found != readOnly.end()) services_.console.message(found->second);
        }
        for (const PathProblem& problem : problems) {
            services_.console.message(problem.sentence);
            results_.push_back({problem.path, problem.path, false, problem.sentence});
        }
        services_.console.message(nothingChanged);
        if (options_.json) services_.console.print(setJson(0, results_));
        return ExitCode::refused;
    }

    ExitCode abandon(const std::exception& error) {
        const std::string text = userText(error);
        services_.console.message(text);
        const auto* refused = dynamic_cast<const SaveRefused*>(&error);
        for (SetResult& result : results_) {
            result.ok = false;
            result.message = refused == nullptr ? text : reasonFor(result.path, *refused);
        }
        if (options_.json) services_.console.print(setJson(0, results_));
        return exitCodeFor(error);
    }

    /// The problem of the file or of its folder; the others are as they were because of it.
    static std::string reasonFor(const std::filesystem::path& file, const SaveRefused& refused) {
        for (const SaveProblem& problem : refused.problems()) {
            if (problem.path == file || problem.path == folderOf(file)) return problem.sentence;
        }
        return std::string(nothingChanged);
    }

    [[nodiscard]] bool nothingToDo() const {
        return std::all_of(items_.begin(), items_.end(), [](const SaveItem& item) { return item.empty(); });
    }

    ExitCode tellNothing() {
        if (options_.json) {
            services_.console.print(setJson(0, results_));
        } else {
            services_.console.print(results_.empty() ? "No audio files here.\n"
                                    : keepsItsName_  ? "Nothing to write.\n"
                                                     : "Nothing to write: the files have these values already.\n");
        }
        return ExitCode::done;
    }

    ExitCode rehearse() {
        std::map<std::filesystem::path, std::filesystem::path> destinations;
        try {
            for (const MainSaveRenamePlanEntry& entry : checkSave(services_.files, items_, {&services_.token, {}})) {
                destinations.emplace(entry.source, entry.destination);
            }
        } catch (const std::exception& error) {
            return abandon(error);
        }
        for (const std::filesystem::path& folder : foldersShortOfRoom(services_.files, items_)) {
            services_.console.message(fmt::format(
                "{}: the volume says that there is no room for a new file. Unless it can share blocks between "
                "files, which is not tried in a dry run, the save will be refused.",
                shown(folder)));
        }
        std::string text;
        std::size_t touched = 0;
        for (std::size_t i = 0; i < items_.size(); ++i) {
            SetResult& result = results_[i];
            const std::vector<std::string> changes = changesOf(items_[i]);
            if (const auto found = destinations.find(result.path); found != destinations.end()) {
                result.newPath = asCalled(found->second, result.path);
            }
            if (items_[i].empty()) {
                result.message = "Nothing to change";
            } else if (changes.empty()) {
                result.message = "Would be written with the values it has";
            } else {
                result.message = fmt::format("Would change {}", fmt::join(changes, "; "));
            }
            touched += items_[i].empty() ? 0U : 1U;
            text += styled(shown(result.path), Style::strong, services_.console.outputHasColour()) + "\n";
            for (const std::string& change : changes)
                text += fmt::format("    {}\n", printable(change));
            if (changes.empty()) text += fmt::format("    {}\n", result.message);
        }
        text += fmt::format("\nDry run: {} would be saved. {}\n", counted(touched, "file"), nothingChanged);
        services_.console.print(options_.json ? setJson(0, results_) : text);
        return ExitCode::done;
    }

    ExitCode save() {
        if (nothingToDo()) return tellNothing();
        SaveReport report;
        try {
            ProgressBar bar(services_.console, "Saving");
            report = runSave(services_.files, items_, {&services_.token, bar.sink()});
        } catch (const std::exception& error) {
            return abandon(error);
        }
        return tell(report);
    }

    ExitCode tell(const SaveReport& report) {
        std::size_t saved = 0;
        std::string renamed;
        std::string savedNames;
        for (std::size_t i = 0; i < report.results.size(); ++i) {
            const SaveResult& from = report.results[i];
            SetResult& to = results_[i];
            to.newPath = asCalled(from.newPath, from.path);
            to.ok = from.error.empty();
            if (!to.ok) {
                to.message = from.error;
                continue;
            }
            if (!from.written && !from.renamed) continue;
            ++saved;
            to.message = !from.renamed ? "Saved" : from.written ? "Renamed and saved" : "Renamed";
            savedNames.append("\n").append(shown(to.newPath));
            if (from.renamed) {
                renamed += fmt::format("{} -> {}\n", shown(to.path), shown(to.newPath.filename()));
            }
        }
        if (report.cancelled) {
            std::string text =
                fmt::format("Cancelled. {} saved, {} left unchanged.", counted(saved, "file"), results_.size() - saved);
            if (saved > 0) text += fmt::format(" Saved:{}", savedNames);
            services_.console.message(text);
        } else {
            tellFailures(report);
        }
        if (options_.json) {
            services_.console.print(setJson(saved, results_));
        } else if (saved > 0) {
            services_.console.print(renamed + (saved == 1 ? "Saved\n" : fmt::format("Saved {} files\n", saved)));
        }
        if (report.cancelled) return ExitCode::interrupted;
        return report.failed() ? ExitCode::someFailed : ExitCode::done;
    }

    void tellFailures(const SaveReport& report) {
        try {
            report.throwIfFailed();
        } catch (const Error& error) {
            services_.console.message(error.what());
        }
    }

    const SetOptions& options_;
    Services& services_;
    SetEdits edits_;
    std::vector<SaveItem> items_;
    std::vector<SetResult> results_;  ///< one for each item, in their order
    bool keepsItsName_ = false;       ///< the take, as the new one differs only in letter case
};

}  // namespace

ExitCode runSet(const SetOptions& options, Services& services) { return SetRun(options, services).run(); }

}  // namespace dravik
