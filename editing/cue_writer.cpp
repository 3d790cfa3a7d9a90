#include "editing/cue_writer.h"

#include "base/paths.h"
#include "editing/wave_rewrite.h"
#include "model/info_fichier.h"
#include "model/wave/cue_bytes.h"

#include <algorithm>
#include <mutex>

#include <fmt/format.h>

namespace dravik {
namespace {

/// No list of names is larger; a damaged size must not fill the memory.
constexpr std::uint64_t maxListBytes = 16U * 1024U * 1024U;

std::mutex& cueWrites() {
    static std::mutex lock;
    return lock;
}

CueError refused(int code, const std::filesystem::path& file, std::string_view why) {
    return {code, fmt::format("{} {} Its markers were not changed.", fileNameText(file), why)};
}

/// A LIST of type adtl; some recorders write the id in lower case.
bool isLabelChunk(const ByteSource& source, const Chunk& chunk) {
    constexpr std::uint64_t typeBytes = 4;
    return (chunk.id == FourCC("LIST") || chunk.id == FourCC("list")) &&
           isLabelList(source.read(chunk.payload(), std::min(chunk.size, typeBytes)));
}

bool isCueChunk(const ByteSource& source, const Chunk& chunk) {
    return chunk.id == FourCC("cue ") || isLabelChunk(source, chunk);
}

std::vector<CuePoint> numbered(std::vector<CueMarker> marqueurs) {
    std::stable_sort(marqueurs.begin(), marqueurs.end(),
                     [](const CueMarker& a, const CueMarker& b) { return a.frame < b.frame; });
    std::vector<CuePoint> points;
    points.reserve(marqueurs.size());
    for (CueMarker& marqueur : marqueurs) {
        points.push_back({static_cast<std::uint32_t>(points.size()) + 1, marqueur.frame, std::move(marqueur.label)});
    }
    return points;
}

}  // namespace

std::vector<CueMarker> lireCues(const std::filesystem::path& url) {
    const FileHandle handle = FileHandle::tryOpenForReading(url);
    if (!handle.isOpen()) return {};
    const FileSource source(handle);
    const std::optional<ChunkTable> table = walkChunks(source);
    const Chunk* cue = table ? table->first("cue ") : nullptr;
    if (cue == nullptr) return {};
    const Bytes cuePayload = source.read(cue->payload(), std::min(cue->size, maxListBytes));
    std::vector<Bytes> lists;
    for (const Chunk& chunk : table->chunks) {
        if (isLabelChunk(source, chunk))
            lists.push_back(source.read(chunk.payload(), std::min(chunk.size, maxListBytes)));
    }
    std::vector<CueMarker> marqueurs;
    for (CuePoint& point : readCuePoints(cuePayload, std::vector<ByteSpan>(lists.begin(), lists.end()))) {
        marqueurs.push_back({Uuid::random(), point.frame, std::move(point.label)});
    }
    return marqueurs;
}

void CueWriter::ecrireCues(const std::filesystem::path& url, const std::vector<CueMarker>& marqueurs,
                           const TaskContext& task, FolderSyncs& folders) {
    const std::scoped_lock lock(cueWrites());
    task.checkCancelled();
    WaveFile file(resolvedTarget(url));
    if (!isEditable(url)) throw refused(CueError::notWritable, url, onlyWavAndBwf);
    if (!file.isRiffWave()) throw refused(CueError::notRiffWave, url, "is not a RIFF/WAVE file.");
    if (marqueurs.size() > maxCuePoints) throw refused(CueError::notWritable, url, "cannot hold that many markers.");
    const ChunkTable& table = file.table();

    WaveRewrite rewrite(file);
    bool hadCues = false;
    {
        const FileSource source(file.handle());
        for (const Chunk& chunk : table.chunks) {
            if (isCueChunk(source, chunk)) {
                if (chunk.truncated()) throw refused(CueError::notWritable, url, "ends inside its markers.");
                hadCues = true;
            } else {
                rewrite.keep(chunk);
            }
        }
        if (source.error()) throw std::filesystem::filesystem_error("cannot read", url, source.error());
    }
    if (marqueurs.empty() && !hadCues) return;
    if (!marqueurs.empty()) {
        if (const std::string_view problem = appendProblem(table); !problem.empty()) {
            throw refused(CueError::notWritable, url, problem);
        }
        const std::vector<CuePoint> points = numbered(marqueurs);
        rewrite.put("cue ", cueChunkPayload(points));
        if (const Bytes labels = labelListPayload(points); !labels.empty()) rewrite.put("LIST", labels);
    }
    const std::optional<FilePlan> plan = rewrite.plan();
    if (!plan) throw refused(CueError::notWritable, url, tooLarge);
    const std::string_view problem =
        outcomeProblem(replaceWith(ops_, file, rewrite, *plan, TempKind::cues, task, folders));
    if (!problem.empty()) throw refused(CueError::notWritable, url, problem);
}

}  // namespace dravik
