#pragma once

#include "model/folder_scan.h"
#include "operations/delete_tracks.h"
#include "operations/merge_tracks.h"
#include "operations/operation_run.h"
#include "operations/reorder_tracks.h"
#include "operations/split_tracks.h"
#include "tests/operations/plain_chunks.h"
#include "tests/support/fake_codecs.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace dravik::test {

/// A folder of takes, and operations on them.
struct OperationStage {
    TempFolder folder;
    FaultyFileOps ops;

    OperationStage() { ops.syncing = false; }

    /// The take of that name, as a scan of the folder gives it.
    [[nodiscard]] GroupeFichiers take(const std::string& name) const {
        for (const GroupeFichiers& groupe : scanFolder(folder.path(), FakeCodecs(), true, {})) {
            if (groupe.nom == name) return groupe;
        }
        throw std::runtime_error("there is no take " + name);
    }
    RunOutcome run(const std::vector<GroupeFichiers>& groupes, const OperationsAudio::GroupPlanner& planner,
                   const TaskContext& task = {}) {
        return OperationsAudio::runTrackOperation(ops, groupes, planner, task);
    }
    /// The one result of a run over one take.
    OperationAudioResult runOne(const std::string& name, const OperationsAudio::GroupPlanner& planner) {
        return run({take(name)}, planner).results.at(0);
    }

    OperationsAudio::GroupPlanner reorder(std::vector<int> mapping, bool preserve = false) {
        return [this, mapping, preserve](const GroupeFichiers& groupe, OperationsAudio::DestinationNames& names) {
            return OperationsAudio::planReorder(ops, groupe, mapping, {}, preserve, names);
        };
    }
    OperationsAudio::GroupPlanner deleteTracks(std::set<int> canaux) {
        return [this, canaux](const GroupeFichiers& groupe, OperationsAudio::DestinationNames& names) {
            return OperationsAudio::planDeleteTracks(ops, groupe, canaux, {}, names);
        };
    }
    OperationsAudio::GroupPlanner split(std::set<int> canaux, bool stereo = false) {
        return [this, canaux, stereo](const GroupeFichiers& groupe, OperationsAudio::DestinationNames& names) {
            return OperationsAudio::planSplit(ops, {groupe, canaux, stereo}, {}, names);
        };
    }
    OperationsAudio::GroupPlanner merge(std::vector<std::filesystem::path> exclus = {}) {
        return [this, exclus](const GroupeFichiers& groupe, OperationsAudio::DestinationNames& names) {
            return OperationsAudio::planMerge(ops, groupe, exclus, {}, names);
        };
    }
};

/// Was everything done?
[[nodiscard]] inline bool allDone(const RunOutcome& outcome) {
    return !outcome.cancelled && std::all_of(outcome.results.begin(), outcome.results.end(),
                                             [](const OperationAudioResult& result) { return result.success; });
}

}  // namespace dravik::test
