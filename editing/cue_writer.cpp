#include "editing/cue_writer.h"

#include "base/paths.h"
#include "model/info_fichier.h"

#include <algorithm>
#include <mutex>

#include <fmt/format.h>

namespace dravik {
namespace {

/// The points and names of one file are never more; a damaged size must not fill the memory.
constexpr std::uint64_t maxCueBytes = 16U * 1024U * 1024U;

constexpr std::string_view tooMany = "cannot hold that many markers.";

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

/// What all the chunks of points and all the lists of names say, in the order in which they stand.
CueContent cueContent(const ByteSource& source, const ChunkTable& table) {
    std::vector<Bytes> cues, lists;
    std::uint64_t room = maxCueBytes;
    bool whole = true;
    for (const Chunk& chunk : table.chunks) {
        if (!isCueChunk(source, chunk)) continue;
        Bytes payload = source.read(chunk.payload(), std::min(chunk.size, room));
        whole = whole && chunk.size <= room;
        room -= payload.size();
        (chunk.id == FourCC("cue ") ? cues : lists).push_back(std::move(payload));
    }
    CueContent content = readCues({cues.begin(), cues.end()}, {lists.begin(), lists.end()});
    content.complete = content.complete && whole;
    return content;
}

std::vector<CuePoint> numbered(std::vector<CueMarker> marqueurs) {
    std::stable_sort(marqueurs.begin(), marqueurs.end(),
                     [](const CueMarker& a, const CueMarker& b) { return a.frame < b.frame; });
    std::vector<CuePoint> points;
    points.reserve(marqueurs.size());
    for (CueMarker& marqueur : marqueurs) {
        points.push_back({static_cast<std::uint32_t>(points.size()) + 1, marqueur.frame, std::move(marqueur.label),
                          std::move(marqueur.entries)});
    }
    return points;
}

}  // namespace

std::vector<CueMarker> lireCues(const std::filesystem::path& url) {
    const FileHandle handle = FileHandle::tryOpenForReading(url);
    if (!handle.isOpen()) return {};
    const FileSource source(handle);
    const std::optional<ChunkTable> table = walkChunks(source);
    if (!table) return {};
    std::vector<CueMarker> marqueurs;
    for (CuePoint& point : cueContent(source, *table).points) {
        marqueurs.push_back({Uuid::random(), point.frame, std::move(point.label), std::move(point.entries)});
    }
    return marqueurs;
}

std::optional<PlannedRewrite> planCues(const WaveView& file, const std::vector<CueMarker>& marqueurs) {
    const std::filesystem::path& url = file.url;
    if (!isEditable(url)) throw refused(CueError::notWritable, url, onlyWavAndBwf);
    if (!file.isRiffWave()) throw refused(CueError::notRiffWave, url, "is not a RIFF/WAVE file.");
    if (marqueurs.size() > maxCuePoints) throw refused(CueError::notWritable, url, tooMany);
    const ChunkTable& table = *file.table;

    WaveRewrite rewrite(table);
    bool hadCues = false;
    for (const Chunk& chunk : table.chunks) {
        if (isCueChunk(file.source, chunk)) {
            if (chunk.truncated()) throw refused(CueError::notWritable, url, "ends inside its markers.");
            hadCues = true;
        } else {
            rewrite.keep(chunk);
        }
    }
    const CueContent before = cueContent(file.source, table);
    if (file.source.error()) throw std::filesystem::filesystem_error("cannot read", url, file.source.error());
    // What was never read was never shown either: nobody asked for it to go.
    if (!before.complete) throw refused(CueError::notWritable, url, "holds more markers than can be edited.");
    if (marqueurs.empty() && !hadCues) return std::nullopt;
    if (!marqueurs.empty()) {
        if (const std::string_view problem = appendProblem(table); !problem.empty()) {
            throw refused(CueError::notWritable, url, problem);
        }
        const std::vector<CuePoint> points = numbered(marqueurs);
        const Bytes cue = cueChunkPayload(points);
        const Bytes labels = labelListPayload(points, before.loose);
        if (cue.size() + labels.size() > maxCueBytes) throw refused(CueError::notWritable, url, tooMany);
        rewrite.put("cue ", cue);
        if (!labels.empty()) rewrite.put("LIST", labels);
    }
    std::optional<PlannedRewrite> planned = rewrite.plan();
    if (const std::string_view problem = planProblem(file.source, planned); !problem.empty()) {
        throw refused(CueError::notWritable, url, problem);
    }
    return planned;
}

void CueWriter::ecrireCues(const std::filesystem::path& url, const std::vector<CueMarker>& marqueurs,
                           const TaskContext& task, FolderSyncs& folders) {
    const std::scoped_lock lock(cueWrites());
    task.checkCancelled();
    WaveFile file(ops_, resolvedTarget(url));
    const std::optional<PlannedRewrite> planned = planCues(file.viewAs(url), marqueurs);
    if (!planned) return;
    const std::string_view problem = outcomeProblem(replaceWith(ops_, file, *planned, TempKind::cues, task, folders));
    if (!problem.empty()) throw refused(CueError::notWritable, url, problem);
}

}  // namespace dravik
