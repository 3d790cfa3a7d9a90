#include "editing/save_check.h"

#include "base/paths.h"
#include "base/safe_file.h"
#include "editing/cue_writer.h"
#include "editing/metadata_writer.h"
#include "editing/planned_source.h"
#include "editing/rename_takes.h"

#include <set>

#include <fmt/format.h>

namespace dravik {
namespace {

std::string joined(const std::vector<SaveProblem>& problems) {
    std::string text;
    for (const SaveProblem& problem : problems)
        text.append(problem.sentence).append("\n");
    return text + "No files were changed.";
}

/// Plans what the item's writers will write; the markers on what the metadata will have left. Throws what they throw.
void planItem(const SaveItem& item) {
    const std::filesystem::path& url = item.fichier.url;
    const WaveFile file(resolvedTarget(url));
    const WaveView now = file.viewAs(url);
    if (!item.valeurs) {
        static_cast<void>(planCues(now, *item.cues));
        return;
    }
    const PlannedRewrite withMetadata = planMetadata(now, *item.valeurs);
    if (!item.cues) return;
    const PlannedSource then(now.source, withMetadata.content);
    const std::optional<ChunkTable> table = walkChunks(then);
    static_cast<void>(planCues({url, then, table}, *item.cues));
}

std::vector<SaveProblem> folderProblems(FileOps& ops, const std::vector<SaveItem>& items) {
    std::set<std::filesystem::path> folders;
    for (const SaveItem& item : items) {
        if (item.newName) folders.insert(folderOf(item.fichier.url));
        if (!item.valeurs && !item.cues) continue;
        try {
            folders.insert(folderOf(resolvedTarget(item.fichier.url)));
        } catch (const std::filesystem::filesystem_error&) {
            continue;  // a link that leads nowhere: the file's own problem
        }
    }
    std::vector<SaveProblem> problems;
    for (const std::filesystem::path& folder : folders) {
        const std::error_code error = ops.creationError(folder);
        if (!error) continue;
        problems.push_back(
            {folder, fmt::format("{}: no file can be made in this folder ({}).", pathText(folder), error.message())});
    }
    return problems;
}

}  // namespace

SaveRefused::SaveRefused(std::vector<SaveProblem> problems) : Error(joined(problems)), problems_(std::move(problems)) {}

std::vector<MainSaveRenamePlanEntry> checkSave(FileOps& ops, const std::vector<SaveItem>& items,
                                               const TaskContext& task) {
    task.checkCancelled();
    std::vector<RenameRequest> renames;
    for (const SaveItem& item : items) {
        if (item.newName) renames.push_back({item.fichier, *item.newName});
    }
    std::vector<MainSaveRenamePlanEntry> plan = planRenames(renames);
    checkTakes(items);

    std::vector<SaveProblem> problems = folderProblems(ops, items);
    for (const SaveItem& item : items) {
        if (!item.valeurs && !item.cues) continue;
        task.checkCancelled();
        const std::filesystem::path& url = item.fichier.url;
        try {
            planItem(item);
        } catch (const Error& error) {
            problems.push_back({url, error.what()});
        } catch (const std::exception& error) {
            problems.push_back({url, fmt::format("{} cannot be saved: {}.", fileNameText(url), systemText(error))});
        }
    }
    if (!problems.empty()) throw SaveRefused(std::move(problems));
    return plan;
}

}  // namespace dravik
