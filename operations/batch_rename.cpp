#include "operations/batch_rename.h"

#include "base/file_copy.h"
#include "base/paths.h"
#include "base/temp_name.h"
#include "operations/operation_audio_error.h"

#include <algorithm>
#include <map>
#include <set>

#include <fmt/format.h>

namespace dravik::OperationsAudio {
namespace {

/// Hidden names that are tried for one file.
constexpr int temporaryNameAttempts = 1000;
constexpr std::string_view unchanged = "Unchanged";

bool moves(const PlanRenommageBatch& entry) {
    return fileNameText(entry.sourceURL) != fileNameText(entry.destinationURL);
}

OperationAudioResult resultFor(const PlanRenommageBatch& entry) {
    OperationAudioResult result;
    result.id = Uuid::random();
    result.sourceName = fileNameText(entry.sourceURL);
    return result;
}

/// The outcome of a run in which every file that was to move has failed, each for a reason of its own.
template <typename Reason>
RunOutcome failedOutcome(const std::vector<PlanRenommageBatch>& plan, Reason reasonFor) {
    RunOutcome outcome;
    for (const PlanRenommageBatch& entry : plan) {
        OperationAudioResult result = resultFor(entry);
        result.success = !moves(entry);
        result.message = result.success ? std::string(unchanged) : reasonFor(entry);
        outcome.results.push_back(std::move(result));
    }
    return outcome;
}

std::string notRenamed(std::string_view why) { return fmt::format("Not renamed. {}", why); }

RunOutcome outcomeOf(const TwoPhaseRenameError& error, const std::vector<PlanRenommageBatch>& plan) {
    RunOutcome outcome = failedOutcome(plan, [&](const PlanRenommageBatch& entry) {
        std::string sentences;
        for (const TwoPhaseRenameError::Stray& stray : error.strays()) {
            if (stray.source == entry.sourceURL) sentences.append(sentences.empty() ? "" : " ").append(stray.sentence);
        }
        return sentences.empty() ? notRenamed(error.what()) : fmt::format("{} ({})", sentences, error.what());
    });
    if (error.reason() == TwoPhaseRenameError::Reason::rollbackFailed) return outcome;
    outcome.refused =
        static_cast<std::size_t>(std::count_if(outcome.results.begin(), outcome.results.end(),
                                               [](const OperationAudioResult& result) { return !result.success; }));
    return outcome;
}

RunOutcome renameInPlace(FileOps& ops, const std::vector<PlanRenommageBatch>& plan, const TaskContext& task) {
    const std::vector<RenameMove> planned = movesOf(plan, freshToken());
    RunOutcome outcome;
    try {
        runTwoPhaseRename(ops, planned, task);
    } catch (const TwoPhaseRenameError& error) {
        outcome = outcomeOf(error, plan);
        outcome.cancelled = task.token != nullptr && task.token->isCancelled();
        return outcome;
    } catch (const Cancelled&) {
        outcome.cancelled = true;
        return outcome;
    } catch (const std::exception& error) {
        // Everything is back where it was.
        const std::string text = userText(error);
        return failedOutcome(plan, [&](const PlanRenommageBatch&) { return notRenamed(text); });
    }
    for (const PlanRenommageBatch& entry : plan) {
        OperationAudioResult& result = outcome.results.emplace_back(resultFor(entry));
        result.success = true;
        result.message = moves(entry) ? "Renamed to " + fileNameText(entry.destinationURL) : std::string(unchanged);
        result.destinationURL = entry.destinationURL;
        result.destinationURLs = {entry.destinationURL};
    }
    return outcome;
}

/// The folder itself, or the nearest one above it that is there: it lies on the same volume.
std::filesystem::path nearestFolder(std::filesystem::path folder) {
    std::error_code none;
    folder = std::filesystem::absolute(folder, none).lexically_normal();
    while (!pathExists(folder) && folder.has_relative_path())
        folder = folder.parent_path();
    return folder;
}

/// Makes the folder and those above it, so that their names are on the medium.
void makeFolder(FileOps& ops, const std::filesystem::path& folder) {
    std::error_code none;
    const std::filesystem::path there = nearestFolder(folder);
    std::filesystem::path made = std::filesystem::absolute(folder, none).lexically_normal();
    std::filesystem::create_directories(made);
    while (made != there && made.has_relative_path()) {
        made = made.parent_path();
        ops.syncFolder(made);
    }
}

/// Why no file can be made in the folder; empty when one can.
std::string creationProblem(FileOps& ops, const std::filesystem::path& folder) {
    std::error_code none;
    const std::error_code error = std::filesystem::is_directory(folder, none)
                                      ? ops.creationError(folder)
                                      : std::make_error_code(std::errc::not_a_directory);
    return error ? fmt::format("{}: {}.", pathText(folder), error.message()) : std::string();
}

RunOutcome copyAndRename(FileOps& ops, const std::vector<PlanRenommageBatch>& plan,
                         const std::filesystem::path& destination, const TaskContext& task) {
    std::vector<OperationItem> items;
    std::uint64_t all = 0;
    for (const PlanRenommageBatch& entry : plan) {
        const std::uint64_t bytes = std::filesystem::file_size(entry.sourceURL);
        all += bytes;
        items.push_back({fileNameText(entry.sourceURL), bytes, [&entry, bytes](const OperationContext& context) {
                             context.begun = true;
                             context.folders.add(
                                 copyFile(context.ops, entry.sourceURL, entry.destinationURL, bytes, context.task));
                             context.completed.push_back(entry.destinationURL);
                             return "Created " + fileNameText(entry.destinationURL);
                         }});
    }
    task.checkCancelled();
    ensureRoom(ops, nearestFolder(destination) / fileNameText(plan.front().destinationURL), all);
    makeFolder(ops, destination);
    return runOperation(ops, items, task);
}

}  // namespace

std::vector<RenameMove> movesOf(const std::vector<PlanRenommageBatch>& plan, std::string_view runToken) {
    std::vector<RenameMove> result;
    FolderNames onDisk;
    std::set<std::string> reserved;
    for (const PlanRenommageBatch& entry : plan) {
        if (!moves(entry)) continue;
        const std::string name = fileNameText(entry.sourceURL);
        std::filesystem::path temp;
        for (int attempt = 0; temp.empty(); ++attempt) {
            if (attempt == temporaryNameAttempts) {
                throw OperationAudioError::groupeIncompatible("Unable to create a temporary rename name for " + name);
            }
            std::filesystem::path candidate = folderOf(entry.sourceURL) / batchRenameName(runToken, name, attempt);
            if (!onDisk.holds(candidate) && reserved.insert(normalisedPath(candidate)).second) {
                temp = std::move(candidate);
            }
        }
        result.push_back({entry.sourceURL, std::move(temp), entry.destinationURL});
    }
    return result;
}

std::vector<std::string> renameProblems(FileOps& ops, const std::vector<InfoFichier>& fichiers,
                                        const BatchRenameChoice& choice, const RenamePreview& preview) {
    const bool copies = choice.mode == OperationAudioBatchRenameMode::copyAndRename;
    if (preview.changes() == 0 || (copies && choice.destination.empty())) return {};
    std::set<std::filesystem::path> folders;
    std::uint64_t bytes = 0;
    for (std::size_t at = 0; at < fichiers.size(); ++at) {
        if (!preview.rows.at(at).changes()) continue;
        folders.insert(copies ? nearestFolder(choice.destination) : folderOf(fichiers[at].url));
        bytes += fichiers[at].taille;
    }
    std::vector<std::string> problems;
    for (const std::filesystem::path& folder : folders) {
        if (std::string problem = creationProblem(ops, folder); !problem.empty())
            problems.push_back(std::move(problem));
    }
    if (copies && problems.empty() && !reportsRoom(ops, *folders.begin() / "copy", bytes))
        problems.push_back(roomText({choice.destination, bytes}));
    if (!problems.empty() || preview.conflicts() > 0) return problems;
    try {
        (void)planBatchRename(itemsOf(fichiers, preview), choice.mode, choice.destination);
    } catch (const OperationAudioError& error) {
        problems.emplace_back(error.what());
    }
    return problems;
}

RunOutcome runBatchRename(FileOps& ops, const std::vector<OperationAudioBatchRenameItem>& items,
                          OperationAudioBatchRenameMode mode, const std::filesystem::path& destination,
                          const TaskContext& task) {
    const std::vector<PlanRenommageBatch> plan = planBatchRename(items, mode, destination);
    return mode == OperationAudioBatchRenameMode::renameInPlace ? renameInPlace(ops, plan, task)
                                                                : copyAndRename(ops, plan, destination, task);
}

}  // namespace dravik::OperationsAudio
