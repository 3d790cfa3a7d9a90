#include "cli/rename_command.h"

#include "base/paths.h"
#include "cli/display_text.h"
#include "cli/opened_folder.h"
#include "cli/operation_command.h"
#include "cli/progress_bar.h"
#include "cli/take_selection.h"
#include "operations/batch_rename.h"

#include <set>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace dravik {
namespace {

constexpr std::string_view nothingChanged = "No files were changed.";

class RenameRun {
  public:
    RenameRun(const RenameOptions& options, Services& services) : options_(options), services_(services) {
        choice_.pattern = options.pattern;
        choice_.emptyTokens = options.keepSeparators ? OperationsAudio::EmptyTokens::leaveSeparators
                                                     : OperationsAudio::EmptyTokens::takeSeparatorsAlong;
        choice_.keepBoth = options.keepBoth;
        if (!options.copyTo) return;
        choice_.mode = OperationAudioBatchRenameMode::copyAndRename;
        choice_.destination = *options.copyTo;
    }

    ExitCode run() {
        if (options_.copyTo && options_.copyTo->empty()) throw UsageError(std::string(noDestinationFolder));
        TakeSelection selection = selectTakes(options_.paths, options_.group, !options_.dryRun, services_);
        for (const PathProblem& problem : selection.problems) {
            services_.console.message(problem.sentence);
            refused_.push_back({problem.path, {}, false, problem.sentence});
        }
        if (options_.copyTo && pathExists(*options_.copyTo)) {
            if (const std::string problem = folderProblem(*options_.copyTo); !problem.empty()) {
                services_.console.message(problem);
                refused_.push_back({*options_.copyTo, {}, false, problem});
            }
        }
        if (!refused_.empty()) return refuse();
        chooseFiles(selection);
        if (fichiers_.empty()) {
            services_.console.message("No Compatible Files to Rename. Give files or folders that contain audio files.");
            if (options_.json) services_.console.print(operationJson({}));
            return ExitCode::done;
        }
        FolderNames onDisk;
        preview_ = OperationsAudio::previewBatchRename(fichiers_, choice_, onDisk);
        const ExitCode code = options_.dryRun ? rehearse() : preview_.conflicts() > 0 ? refuseConflicts() : perform();
        return code == ExitCode::done && !selection.recovered ? ExitCode::someFailed : code;
    }

  private:
    /// What cannot be read as audio has nothing to make a name of; asked for by name, it is tried.
    void chooseFiles(const TakeSelection& selection) {
        std::set<std::string> named;
        for (const std::filesystem::path& path : options_.paths)
            named.insert(normalisedPath(path));
        std::vector<std::string> passed;
        for (const GroupeFichiers& groupe : selection.groupes) {
            for (const InfoFichier& fichier : groupe.fichiers) {
                if (fichier.channels > 0 || named.contains(normalisedPath(fichier.url))) {
                    fichiers_.push_back(fichier);
                } else {
                    passed.push_back(printable(fileNameText(fichier.url)));
                }
            }
        }
        if (passed.empty()) return;
        services_.console.message(
            fmt::format("Passed over: {}. They cannot be read as audio.", fmt::join(passed, ", ")));
    }

    ExitCode refuse() {
        services_.console.message(nothingChanged);
        if (options_.json) services_.console.print(operationJson(refused_));
        return ExitCode::refused;
    }

    /// What the preview says about a file, for the document.
    [[nodiscard]] OperationLine plannedLine(std::size_t at) const {
        const RenamePreviewRow& row = preview_.rows[at];
        if (row.conflict) return {fichiers_[at].url, {}, false, row.explanation()};
        std::string message = "Unchanged";
        if (!row.unchanged) message = (options_.copyTo ? "Would create " : "Would rename to ") + row.newName;
        return {fichiers_[at].url, {row.destination}, true, std::move(message)};
    }

    ExitCode rehearse() {
        std::vector<OperationLine> lines;
        std::string text;
        const bool colour = services_.console.outputHasColour();
        for (std::size_t at = 0; at < fichiers_.size(); ++at) {
            const RenamePreviewRow& row = preview_.rows[at];
            const OperationLine& line = lines.emplace_back(plannedLine(at));
            if (row.unchanged && line.ok) {
                text += fmt::format("{}: Unchanged\n", shown(line.source));
                continue;
            }
            const std::string target = row.newName.empty() ? "(no name)" : printable(row.newName);
            text += fmt::format("{} -> {}", shown(line.source), target);
            if (row.conflict) text += "  " + styled(printable(row.explanation()), Style::bad, colour);
            text += "\n";
        }
        const std::string sum = preview_.conflicts() > 0 ? preview_.conflictsText()
                                : options_.copyTo        ? counted(preview_.changes(), "file") + " would be made"
                                                         : toBeRenamedText(preview_.changes());
        text += fmt::format("\nDry run: {}. {}\n", sum, nothingChanged);
        const std::vector<std::string> problems =
            OperationsAudio::renameProblems(services_.files, fichiers_, choice_, preview_);
        if (preview_.conflicts() > 0 || !problems.empty()) {
            // All or none: the document says of each file what that of the run would.
            for (OperationLine& line : lines) {
                if (line.ok) line = {line.source, {}, false, std::string(nothingChanged)};
            }
        }
        services_.console.print(options_.json ? operationJson(lines) : text);
        for (const std::string& problem : problems)
            services_.console.message(printable(problem));
        if (preview_.conflicts() > 0) tellConflictCount();
        return preview_.conflicts() == 0 && problems.empty() ? ExitCode::done : ExitCode::refused;
    }

    void tellConflictCount() {
        const bool numbersHelp = !options_.keepBoth && preview_.collisions() > 0;
        services_.console.message(fmt::format("{}: the run {} refused.{}", preview_.conflictsText(),
                                              options_.dryRun ? "would be" : "is",
                                              numbersHelp ? " --keep-both numbers names that collide." : ""));
    }

    ExitCode refuseConflicts() {
        std::vector<OperationLine> lines;
        for (std::size_t at = 0; at < fichiers_.size(); ++at) {
            OperationLine& line = lines.emplace_back(plannedLine(at));
            if (line.ok) {
                line = {line.source, {}, false, std::string(nothingChanged)};
                continue;
            }
            services_.console.message(fmt::format("{}: {}", shown(line.source), line.message));
        }
        tellConflictCount();
        services_.console.message(nothingChanged);
        if (options_.json) services_.console.print(operationJson(lines));
        return ExitCode::refused;
    }

    ExitCode perform() {
        RunOutcome outcome;
        try {
            ProgressBar bar(services_.console, options_.copyTo ? "Copying" : "Renaming");
            outcome =
                OperationsAudio::runBatchRename(services_.files, OperationsAudio::itemsOf(fichiers_, preview_),
                                                choice_.mode, choice_.destination, {&services_.token, bar.sink()});
        } catch (const Cancelled&) {
            outcome.cancelled = true;
        } catch (const std::exception& error) {
            return abandon(error);
        }
        return tell(outcome);
    }

    /// Thrown before anything was touched.
    ExitCode abandon(const std::exception& error) {
        const std::string text = userText(error);
        services_.console.message(text);
        services_.console.message(nothingChanged);
        if (options_.json) {
            for (const InfoFichier& fichier : fichiers_)
                refused_.push_back({fichier.url, {}, false, text});
            services_.console.print(operationJson(refused_));
        }
        return ExitCode::refused;
    }

    ExitCode tell(const RunOutcome& outcome) {
        std::vector<OperationLine> lines;
        std::string text;
        std::size_t failed = 0;
        std::size_t changed = 0;
        for (std::size_t at = 0; at < outcome.results.size(); ++at) {
            const OperationAudioResult& result = outcome.results[at];
            lines.push_back({fichiers_[at].url, result.destinationURLs, result.success, result.message});
            const std::string line = fmt::format("{}: {}", shown(fichiers_[at].url), printable(result.message));
            if (result.success) {
                changed += preview_.rows[at].unchanged ? 0U : 1U;
                text += line + "\n";
            } else {
                ++failed;
                services_.console.message(line);
            }
        }
        if (outcome.cancelled) {
            services_.console.message(
                options_.copyTo ? fmt::format("Cancelled. {} made, nothing is half-written.", counted(changed, "file"))
                : failed == 0   ? fmt::format("Cancelled. {}", nothingChanged)
                                : std::string("Cancelled, but not every file has its old name back."));
        } else if (failed == 0 && !options_.copyTo) {
            text += renamedSuccessfully(changed) + "\n";
        }
        services_.console.print(options_.json ? operationJson(lines) : text);
        if (outcome.cancelled) return ExitCode::interrupted;
        if (failed == 0) return ExitCode::done;
        return outcome.refused == failed && changed == 0 ? ExitCode::refused : ExitCode::someFailed;
    }

    const RenameOptions& options_;
    Services& services_;
    BatchRenameChoice choice_;
    std::vector<InfoFichier> fichiers_;
    RenamePreview preview_;
    std::vector<OperationLine> refused_;
};

}  // namespace

ExitCode runRename(const RenameOptions& options, Services& services) { return RenameRun(options, services).run(); }

}  // namespace dravik
