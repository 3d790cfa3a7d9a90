#include "operations/run_preview.h"

#include "base/paths.h"

#include <algorithm>

namespace dravik {

std::vector<std::filesystem::path> PreviewedTake::destinations() const {
    std::vector<std::filesystem::path> paths;
    for (const PreviewedFile& file : files)
        paths.push_back(file.destination);
    return paths;
}

std::vector<FileToMake> RunPreview::files() const {
    std::vector<FileToMake> all;
    for (const PreviewedTake& take : takes) {
        for (const PreviewedFile& file : take.files)
            all.push_back({file.destination, file.bytes});
    }
    return all;
}

std::uint64_t RunPreview::bytes() const {
    std::uint64_t sum = 0;
    for (const FileToMake& file : files())
        sum += file.bytes;
    return sum;
}

std::size_t RunPreview::failed() const {
    return static_cast<std::size_t>(
        std::count_if(takes.begin(), takes.end(), [](const PreviewedTake& take) { return !take.error.empty(); }));
}

namespace OperationsAudio {

RunPreview previewTracks(FileOps& ops, const std::vector<GroupeFichiers>& groupes, const GroupPlanner& planner,
                         const TaskContext& task) {
    RunPreview preview;
    for (const PlannedGroup& planned : planGroups(ops, groupes, planner, task)) {
        PreviewedTake& take = preview.takes.emplace_back();
        take.note = planned.plan.note;
        take.error = planned.error;
        if (planned.plan.outputs.empty()) take.message = planned.plan.message;
        for (const PlannedOutput& output : planned.plan.outputs) {
            PreviewedFile& file = take.files.emplace_back();
            file.destination = output.destination;
            file.bytes = output.size();
            for (const OutputTrack& track : output.tracks)
                file.tracks.push_back(trackLabel(track));
        }
    }
    preview.foldersShort = foldersShortOfRoom(ops, preview.files());
    return preview;
}

RunPreview previewExports(const std::vector<ExportJob>& jobs, const ExportServices& services, const TaskContext& task) {
    RunPreview preview;
    for (const ExportJob& job : jobs) {
        task.checkCancelled();
        PreviewedTake& take = preview.takes.emplace_back();
        try {
            const FileToMake planned = planExport(job, services);
            take.files.push_back({planned.destination, planned.bytes, true, {}});
        } catch (const Cancelled&) {
            throw;
        } catch (const std::exception& error) {
            take.error = userText(error);
        }
    }
    preview.foldersShort = foldersShortOfRoom(services.ops, preview.files());
    return preview;
}

}  // namespace OperationsAudio
}  // namespace dravik
