#include "app/operation_request.h"

#include "app/take_rows.h"
#include "app/text.h"
#include "base/paths.h"
#include "model/audio_metadata.h"
#include "operations/batch_rename.h"
#include "operations/delete_tracks.h"
#include "operations/merge_tracks.h"
#include "operations/run_preview.h"
#include "operations/split_tracks.h"
#include "report/report_place.h"

#include <QCoreApplication>
#include <algorithm>
#include <numeric>
#include <stdexcept>

namespace dravik {
namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(dravik::OperationPreview)
};

using OperationsAudio::DestinationNames;

TrackChoices choicesOf(const OperationRequest& request, const GroupeFichiers& groupe) {
    const auto found = request.choices.find(TakeRows::keyOf(groupe));
    return found == request.choices.end() ? TrackChoices::standard(groupe) : found->second;
}

std::vector<std::filesystem::path> filesAt(const GroupeFichiers& groupe, const std::set<int>& members) {
    std::vector<std::filesystem::path> files;
    for (const int member : members) {
        const auto at = static_cast<std::size_t>(member);
        const std::size_t readable = groupe.fichiers.size();
        if (at < readable) {
            files.push_back(groupe.fichiers[at].url);
        } else if (at - readable < groupe.unreadableTracks.size()) {
            files.push_back(groupe.unreadableTracks[at - readable].url);
        }
    }
    return files;
}

OperationsAudio::GroupPlanner plannerOf(const OperationRequest& request, FileOps& files) {
    return [&request, &files](const GroupeFichiers& groupe, DestinationNames& names) {
        const TrackChoices choices = choicesOf(request, groupe);
        switch (request.tab) {
            case OperationsTab::merge:
                return OperationsAudio::planMerge(files, groupe, filesAt(groupe, choices.exclus), request.destination,
                                                  names);
            case OperationsTab::split:
                return OperationsAudio::planSplit(files, {groupe, choices.monoCanaux, choices.stereoTracks12},
                                                  request.destination, names);
            case OperationsTab::deleteTracks:
                return OperationsAudio::planDeleteTracks(files, groupe, choices.supprimes, request.destination, names);
            case OperationsTab::reorderTracks:
                return OperationsAudio::planReorder(files, groupe, choices.ordre, request.destination,
                                                    request.preserveTrackNumbers, names);
            case OperationsTab::rename:
            case OperationsTab::export_:
            case OperationsTab::report:
                break;  // are no operations on tracks
        }
        throw std::logic_error("no operation on tracks");
    };
}

std::vector<ExportJob> jobsOf(const OperationRequest& request) {
    return OperationsAudio::exportJobs(request.groupes, choiceOf(request.exportState), request.destination);
}

QString nameOf(const std::filesystem::path& file) { return toQt(fileNameText(file)); }

QString filesText(std::size_t files, std::uint64_t bytes) {
    return Texts::tr("%Ln file(s), about %1", nullptr, pluralOf(files)).arg(toQt(sizeText(bytes)));
}

/// The rows of takes, one a file, and what they come to together.
OperationPreview shownPreview(const RunPreview& planned, const std::vector<GroupeFichiers>& takes) {
    OperationPreview preview;
    for (std::size_t at = 0; at < planned.takes.size(); ++at) {
        const PreviewedTake& take = planned.takes[at];
        const QString source = toQt(takes[at].nom);
        if (!take.error.empty()) {
            preview.rows.push_back({source, {}, toQt(take.error)});
        } else if (take.files.empty()) {
            preview.rows.push_back({source, toQt(take.message), {}, true});
        }
        for (const PreviewedFile& file : take.files)
            preview.rows.push_back({source, nameOf(file.destination), {}, false, false, toQt(take.note)});
    }
    const std::size_t files = planned.files().size();
    preview.summary = files > 0 ? filesText(files, planned.bytes()) : Texts::tr("Nothing would be made");
    QStringList problems;
    if (const std::size_t failed = planned.failed(); failed > 0) {
        problems << Texts::tr("%n take(s) cannot be used.", nullptr, pluralOf(failed));
    }
    for (const FileToMake& folder : planned.foldersShort)
        problems << toQt(OperationsAudio::roomText(folder));
    preview.problems = problems.join(QLatin1Char(' '));
    preview.canRun = files > 0 && planned.foldersShort.empty();
    return preview;
}

/// Has something been chosen for the take? Splitting and deleting pass over the others.
bool isChosen(const OperationRequest& request, const GroupeFichiers& groupe) {
    const TrackChoices choices = choicesOf(request, groupe);
    if (request.tab == OperationsTab::split) return !choices.monoCanaux.empty() || choices.stereoTracks12;
    return request.tab != OperationsTab::deleteTracks || !choices.supprimes.empty();
}

std::vector<GroupeFichiers> chosenTakes(const OperationRequest& request) {
    std::vector<GroupeFichiers> chosen;
    std::copy_if(request.groupes.begin(), request.groupes.end(), std::back_inserter(chosen),
                 [&](const GroupeFichiers& groupe) { return isChosen(request, groupe); });
    return chosen;
}

OperationPreview previewOfTracks(const OperationRequest& request, FileOps& files, const TaskContext& task) {
    const std::vector<GroupeFichiers> takes = chosenTakes(request);
    if (takes.empty()) {
        OperationPreview nothing;
        nothing.problems = request.tab == OperationsTab::split ? Texts::tr("Select at least one split output.")
                                                               : Texts::tr("Select at least one track to remove.");
        nothing.waits = true;
        return nothing;
    }
    return shownPreview(OperationsAudio::previewTracks(files, takes, plannerOf(request, files), task), takes);
}

/// Is the folder of the copies still to be chosen?
bool lacksFolder(const BatchRenameChoice& choice) {
    return choice.mode == OperationAudioBatchRenameMode::copyAndRename && choice.destination.empty();
}

OperationPreview previewOfRenaming(const OperationRequest& request, FileOps& files) {
    FolderNames onDisk;
    const RenamePreview planned = OperationsAudio::previewBatchRename(request.fichiers, request.rename, onDisk);
    OperationPreview preview;
    for (std::size_t at = 0; at < planned.rows.size(); ++at) {
        const RenamePreviewRow& row = planned.rows[at];
        OperationPreviewRow& shown = preview.rows.emplace_back();
        shown.file = request.fichiers[at].url;
        shown.source = nameOf(shown.file);
        shown.target = toQt(row.newName);
        shown.unchanged = row.unchanged;
        if (row.unchanged) shown.remark = Texts::tr("keeps its name");
        shown.canKeepBoth = row.isCollision();
        shown.problem = toQt(row.explanation());
    }
    const bool copies = request.rename.mode == OperationAudioBatchRenameMode::copyAndRename;
    const std::size_t changed = planned.changes();
    preview.summary =
        copies ? Texts::tr("%Ln file(s) will be copied", nullptr, pluralOf(changed)) : toQt(toBeRenamedText(changed));
    if (request.fichiers.size() == 1)
        preview.summary = QStringLiteral("%1 · %2").arg(toQt(selectedText(1)), preview.summary);
    QStringList problems;
    if (planned.conflicts() > 0) problems << toQt(planned.conflictsText());
    for (const std::string& problem : OperationsAudio::renameProblems(files, request.fichiers, request.rename, planned))
        problems << toQt(problem);
    preview.problems = problems.join(QStringLiteral(". "));
    if (lacksFolder(request.rename)) {
        preview.problems = QString::fromUtf8(noDestinationFolder.data(), std::ssize(noDestinationFolder));
        preview.waits = true;
    }
    preview.canRun = changed > 0 && preview.problems.isEmpty();
    return preview;
}

OperationPreview previewOfReport(const OperationRequest& request) {
    OperationPreview preview;
    preview.summary = Texts::tr("%Ln file(s) in the report", nullptr, pluralOf(request.fichiers.size()));
    if (!request.destination) {
        preview.problems = toQt(noDestinationSelected);
        preview.waits = true;
        return preview;
    }
    const WrittenReport names = reportNames(request.fichiers, request.report, *request.destination);
    for (const NamedReportFile& file : filesOf(names))
        preview.rows.push_back({toQt(file.kind), nameOf(file.path), {}, false});
    preview.canRun = !preview.rows.empty() && !request.fichiers.empty();
    if (preview.rows.empty()) preview.problems = Texts::tr("Choose PDF, CSV, or both.");
    return preview;
}

OperationOutcome outcomeOf(RunOutcome outcome) {
    std::size_t made = 0;
    for (const OperationAudioResult& result : outcome.results)
        made += result.destinationURLs.size();
    return {
        std::move(outcome.results), outcome.cancelled, Texts::tr("Created %Ln file(s).", nullptr, pluralOf(made)), {}};
}

OperationOutcome renamed(const OperationRequest& request, FileOps& files, const TaskContext& task) {
    FolderNames onDisk;
    const RenamePreview planned = OperationsAudio::previewBatchRename(request.fichiers, request.rename, onDisk);
    RunOutcome run = OperationsAudio::runBatchRename(files, OperationsAudio::itemsOf(request.fichiers, planned),
                                                     request.rename.mode, request.rename.destination, task);
    if (request.rename.mode == OperationAudioBatchRenameMode::copyAndRename) return outcomeOf(std::move(run));
    OperationOutcome outcome;
    for (std::size_t at = 0; at < run.results.size(); ++at) {
        const std::filesystem::path& before = request.fichiers[at].url;
        const auto& now = run.results[at].destinationURL;
        if (run.results[at].success && now && *now != before) outcome.moved.emplace(before, *now);
    }
    outcome.message = toQt(renamedSuccessfully(outcome.moved.size()));
    outcome.results = std::move(run.results);
    outcome.cancelled = run.cancelled;
    return outcome;
}

OperationOutcome reported(const OperationRequest& request, const OperationServices& services, const TaskContext& task) {
    const WrittenReport written = genererRapport(request.fichiers, request.report, request.destination.value_or(""),
                                                 {services.exports.ops, services.pdf, today(), customaryPaper()}, task);
    OperationOutcome outcome;
    for (const NamedReportFile& file : filesOf(written)) {
        OperationAudioResult& result = outcome.results.emplace_back();
        result.id = Uuid::random();
        result.sourceName = fileNameText(file.path);
        result.destinationURL = file.path;
        result.destinationURLs = {file.path};
        result.message = file.createdLine();
        result.success = true;
    }
    outcome.message = toQt(successMessage(written));
    return outcome;
}

}  // namespace

TrackChoices TrackChoices::standard(const GroupeFichiers& groupe) {
    TrackChoices choices;
    choices.ordre.resize(static_cast<std::size_t>(trackCount(groupe)));
    std::iota(choices.ordre.begin(), choices.ordre.end(), 0);
    choices.monoCanaux = {choices.ordre.begin(), choices.ordre.end()};
    return choices;
}

OperationPreview previewOf(const OperationRequest& request, const OperationServices& services,
                           const TaskContext& task) {
    switch (request.tab) {
        case OperationsTab::export_:
            return shownPreview(OperationsAudio::previewExports(jobsOf(request), services.exports, task),
                                request.groupes);
        case OperationsTab::rename:
            return previewOfRenaming(request, services.exports.ops);
        case OperationsTab::report:
            return previewOfReport(request);
        default:
            return previewOfTracks(request, services.exports.ops, task);
    }
}

OperationOutcome perform(const OperationRequest& request, const OperationServices& services, const TaskContext& task) {
    FileOps& files = services.exports.ops;
    switch (request.tab) {
        case OperationsTab::export_:
            return outcomeOf(OperationsAudio::runExports(jobsOf(request), services.exports, task));
        case OperationsTab::rename:
            return renamed(request, files, task);
        case OperationsTab::report:
            return reported(request, services, task);
        default:
            return outcomeOf(
                OperationsAudio::runTrackOperation(files, chosenTakes(request), plannerOf(request, files), task));
    }
}

}  // namespace dravik
