#include "editing/save_undo.h"

#include "base/paths.h"
#include "base/safe_file.h"
#include "editing/rename_transaction.h"
#include "editing/wave_rewrite.h"

#include <algorithm>

#include <fmt/format.h>

namespace dravik {
namespace {

/// No recorder's text is larger; a chunk that is one is not kept, and its save cannot be undone.
constexpr std::uint64_t maxKeptChunkBytes = std::uint64_t{16} * 1024 * 1024;

bool isTouched(const WaveView& file, const Chunk& chunk) {
    if (chunk.id == FourCC("bext") || chunk.id == FourCC("iXML") || chunk.id == FourCC("cue ")) return true;
    if (chunk.id != FourCC("LIST") && chunk.id != FourCC("list")) return false;
    // Only the list of the markers' names; others hold what the recorder says of itself.
    if (chunk.size < 4 || chunk.size > maxKeptChunkBytes) return false;
    const Bytes payload = file.payload(chunk);
    return asText(payload).substr(0, 4) == "adtl";
}

/// The chunks of the file; absent when one that would have to be kept is too large or cut off.
std::optional<std::vector<SaveSnapshot::ChunkRecord>> recordsOf(const WaveView& file) {
    std::vector<SaveSnapshot::ChunkRecord> records;
    for (const Chunk& chunk : file.table->chunks) {
        SaveSnapshot::ChunkRecord record{chunk.id, chunk.size, std::nullopt};
        if (isTouched(file, chunk)) {
            if (chunk.truncated() || chunk.size > maxKeptChunkBytes) return std::nullopt;
            record.payload = file.payload(chunk);
        }
        records.push_back(std::move(record));
    }
    return records;
}

Error refused(const std::filesystem::path& file, std::string_view why) {
    return Error(fmt::format("{} {} Nothing was undone.", fileNameText(file), why));
}

/// The file with its chunks as they were, in their order.
PlannedRewrite planBack(const WaveView& file, const std::vector<SaveSnapshot::ChunkRecord>& records) {
    if (!file.isRiffWave()) throw Error(fmt::format("{} is not a RIFF/WAVE file any more.", fileNameText(file.url)));
    std::vector<const Chunk*> others;
    for (const Chunk& chunk : file.table->chunks) {
        if (!isTouched(file, chunk)) others.push_back(&chunk);
    }
    WaveRewrite rewrite(*file.table);
    auto next = others.begin();
    bool allPlaced = true;
    for (const SaveSnapshot::ChunkRecord& record : records) {
        if (record.payload) {
            rewrite.put(record.id, *record.payload);
        } else if (next != others.end() && (*next)->id == record.id && (*next)->size == record.size) {
            rewrite.keep(**next++);
        } else {
            allPlaced = false;
        }
    }
    if (!allPlaced || next != others.end()) {
        throw Error(fmt::format("{} has other chunks than it was saved with.", fileNameText(file.url)));
    }
    std::optional<PlannedRewrite> planned = rewrite.plan();
    if (const std::string_view problem = planProblem(file.source, planned); !problem.empty()) {
        throw Error(fmt::format("{} {}", fileNameText(file.url), problem));
    }
    return std::move(*planned);
}

void putBack(FileOps& ops, const SaveSnapshot::File& saved, const TaskContext& task, FolderSyncs& folders) {
    WaveFile file(ops, resolvedTarget(saved.after));
    const PlannedRewrite planned = planBack(file.viewAs(saved.after), saved.chunks);
    const std::string_view problem = outcomeProblem(replaceWith(ops, file, planned, TempKind::metadata, task, folders));
    if (!problem.empty()) throw Error(fmt::format("{} {}", fileNameText(saved.after), problem));
}

std::vector<MainSaveRenamePlanEntry> namesBack(const SaveSnapshot& snapshot) {
    std::vector<RenameRequest> requests;
    for (const SaveSnapshot::File& file : snapshot.files) {
        if (file.before == file.after) continue;
        InfoFichier fichier;
        fichier.url = file.after;
        fichier.nom = baseNameText(file.after);
        requests.push_back({std::move(fichier), baseNameText(file.before)});
    }
    return planRenames(requests);
}

}  // namespace

std::size_t SaveSnapshot::bytes() const noexcept {
    std::size_t sum = 0;
    for (const File& file : files) {
        for (const ChunkRecord& chunk : file.chunks)
            sum += sizeof(chunk) + (chunk.payload ? chunk.payload->size() : 0);
    }
    return sum;
}

SaveSnapshot takeSnapshot(FileOps& ops, const std::vector<SaveItem>& items) {
    SaveSnapshot snapshot;
    for (const SaveItem& item : items) {
        const std::optional<FileStamp> found = ops.stampAt(item.fichier.url);
        if (!found) continue;
        SaveSnapshot::File file{item.fichier.url, item.fichier.url, false, {}, *found, {}};
        if (item.valeurs || item.cues) {
            try {
                const WaveFile wave(resolvedTarget(item.fichier.url));
                if (!wave.isRiffWave()) continue;
                auto records = recordsOf(wave.viewAs(item.fichier.url));
                if (!records) continue;
                file.chunks = std::move(*records);
            } catch (const std::exception&) {
                continue;
            }
        }
        snapshot.files.push_back(std::move(file));
    }
    return snapshot;
}

void noteSaved(FileOps& ops, SaveSnapshot& snapshot, const SaveReport& report) {
    std::vector<SaveSnapshot::File> changed;
    for (SaveSnapshot::File& file : snapshot.files) {
        const auto result = std::find_if(report.results.begin(), report.results.end(),
                                         [&](const SaveResult& one) { return one.path == file.before; });
        if (result == report.results.end() || (!result->written && !result->renamed)) continue;
        file.after = result->newPath;
        file.written = result->written;
        const std::optional<FileStamp> stamp = ops.stampAt(file.after);
        if (!stamp) continue;
        file.saved = *stamp;
        changed.push_back(std::move(file));
    }
    snapshot.files = std::move(changed);
}

SaveReport undoSave(FileOps& ops, const SaveSnapshot& snapshot, const TaskContext& task) {
    std::uint64_t all = 0;
    for (const SaveSnapshot::File& file : snapshot.files) {
        const std::optional<FileStamp> now = ops.stampAt(file.after);
        if (!now) throw refused(file.after, "is not there any more.");
        if (*now != file.saved) throw refused(file.after, "has been changed since it was saved.");
        all += file.written ? now->size : 0;
    }
    // Old names that are taken are found before anything is written.
    static_cast<void>(namesBack(snapshot));
    task.checkCancelled();

    SaveReport report;
    FolderSyncs folders;
    std::uint64_t done = 0;
    for (const SaveSnapshot::File& file : snapshot.files) {
        SaveResult result{file.after, file.before, file.before != file.after, false, {}};
        if (file.written && !report.cancelled) {
            try {
                const TaskContext one{task.token, [&](const Progress& progress) {
                                          if (task.report) {
                                              task.report({done + progress.doneBytes, all, progress.currentName});
                                          }
                                      }};
                putBack(ops, file, one, folders);
                result.written = true;
            } catch (const Cancelled&) {
                report.cancelled = true;
            } catch (const std::exception& error) {
                result.error = userText(error);
            }
            done += file.saved.size;
        }
        report.results.push_back(std::move(result));
    }
    // A set of which a part keeps its new values keeps its new names, too: it is still the take that was saved.
    if (!report.cancelled && !report.failed()) report.moved = runRenames(ops, namesBack(snapshot));
    if (report.moved.empty()) {
        for (SaveResult& result : report.results) {
            result.newPath = result.path;
            result.renamed = false;
        }
    }
    folders.syncAll(ops);
    return report;
}

FileStates statesAfterUndo(FileOps& ops, const SaveSnapshot& undone) {
    FileStates states;
    for (const SaveSnapshot::File& file : undone.files) {
        if (const std::optional<FileStamp> now = ops.stampAt(file.before)) states.emplace(file.before, *now);
    }
    return states;
}

void restamp(SaveSnapshot& older, const SaveSnapshot& undone, const FileStates& states) {
    for (SaveSnapshot::File& file : older.files) {
        const auto same = std::find_if(undone.files.begin(), undone.files.end(),
                                       [&](const SaveSnapshot::File& one) { return one.before == file.after; });
        // Only where nobody had changed the file between the two saves.
        if (same == undone.files.end() || same->found != file.saved) continue;
        if (const auto now = states.find(file.after); now != states.end()) file.saved = now->second;
    }
}

}  // namespace dravik
