#pragma once

#include "model/folder_scan.h"
#include "operations/delete_tracks.h"
#include "operations/merge_tracks.h"
#include "operations/operation_run.h"
#include "operations/reorder_tracks.h"
#include "operations/split_tracks.h"
#include "tests/support/fake_codecs.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

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

/// A file taken apart by its headers, with nothing of the code under test: id and payload of every chunk.
struct PlainChunk {
    std::string id, payload;
    friend bool operator==(const PlainChunk&, const PlainChunk&) = default;
};
inline std::vector<PlainChunk> chunksOf(const Bytes& file) {
    std::vector<PlainChunk> chunks;
    for (std::size_t at = 12; at + 8 <= file.size();) {
        const std::size_t size = readLE<std::uint32_t>(file.data() + at + 4);
        const ByteSpan payload = ByteSpan(file).subspan(at + 8, std::min(size, file.size() - at - 8));
        chunks.push_back({std::string(asText(ByteSpan(file).subspan(at, 4))), std::string(asText(payload))});
        at += 8 + size + size % 2;
    }
    return chunks;
}
inline std::string payloadOf(const Bytes& file, std::string_view id) {
    for (const PlainChunk& chunk : chunksOf(file)) {
        if (chunk.id == id) return chunk.payload;
    }
    return {};
}
inline std::string payloadOf(const std::filesystem::path& file, std::string_view id) {
    return payloadOf(readFile(file), id);
}

/// One channel picked out of interleaved audio, byte by byte.
inline std::string channelOf(std::string_view audio, std::size_t channels, std::size_t sampleBytes,
                             std::size_t channel) {
    std::string out;
    for (std::size_t at = channel * sampleBytes; at + sampleBytes <= audio.size(); at += channels * sampleBytes)
        out += audio.substr(at, sampleBytes);
    return out;
}

}  // namespace dravik::test
