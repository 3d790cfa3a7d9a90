#include "editing/wave_rewrite.h"

#include "base/file_error.h"
#include "editing/planned_source.h"
#include "model/wave/chunk_bytes.h"

#include <algorithm>
#include <limits>

namespace dravik {

namespace {

/// Does the file show the chunks that it was planned with?
bool readsBack(const ByteSource& file, const PlannedRewrite& planned) {
    const std::optional<ChunkTable> table = walkChunks(file);
    const std::vector<ExpectedChunk>& expected = planned.expected;
    return table && table->fileSize == planned.content.size() && table->chunks.size() >= expected.size() &&
           std::equal(expected.begin(), expected.end(), table->chunks.begin(),
                      [](const ExpectedChunk& wanted, const Chunk& chunk) {
                          return chunk.id == wanted.id && chunk.size == wanted.size;
                      });
}

}  // namespace

bool WaveView::isRiffWave() const noexcept { return table && table->isRiffWave(); }

Bytes WaveView::payload(const Chunk& chunk) const {
    Bytes bytes = source.read(chunk.payload(), chunk.size);
    if (source.error() || bytes.size() != chunk.size) {
        if (source.error()) throw std::filesystem::filesystem_error("cannot read", url, source.error());
        throw FileError("it ended while it was read", url, std::errc::io_error);
    }
    return bytes;
}

WaveFile::WaveFile(const std::filesystem::path& path)
    : path_(path), handle_(FileHandle::openForReading(path)), source_(handle_) {
    walk();
}

WaveFile::WaveFile(FileOps& ops, const std::filesystem::path& path)
    : path_(path), handle_(FileHandle::openForReading(path)), stamp_(ops.stampOf(handle_, path)), source_(handle_) {
    walk();
}

void WaveFile::walk() {
    table_ = walkChunks(source_);
    if (source_.error()) throw std::filesystem::filesystem_error("cannot read", path_, source_.error());
}

bool WaveFile::isUnchanged(FileOps& ops) const noexcept { return stamp_ && ops.stampAt(path_) == stamp_; }

void WaveRewrite::keep(const Chunk& chunk) {
    chunks_.add(SourceRange{chunk.offset, chunk.end() - chunk.offset});
    if (chunk.size % 2 == 1 && !chunk.padInFile && !chunk.truncated()) chunks_.add(Bytes(1));
    expected_.push_back({chunk.id, chunk.size});
}

void WaveRewrite::put(FourCC id, ByteSpan payload) {
    Bytes bytes;
    bytes.reserve(static_cast<std::size_t>(chunkHeaderBytes) + payload.size() + 1);
    appendChunk(bytes, id, payload);
    chunks_.add(std::move(bytes));
    expected_.push_back({id, payload.size()});
}

std::optional<PlannedRewrite> WaveRewrite::plan() const {
    const std::uint64_t length = riffHeaderBytes + chunks_.size() + source_.bytesBehind();
    if (length - chunkHeaderBytes > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
    PlannedRewrite planned;
    Bytes header;
    appendFormHeader(header, source_.form, source_.type, length - riffHeaderBytes);
    planned.content.add(std::move(header));
    for (const FilePlan::Piece& piece : chunks_.pieces()) {
        std::visit([&](const auto& content) { planned.content.add(content); }, piece);
    }
    planned.content.add(SourceRange{source_.end, source_.bytesBehind()});
    planned.expected = expected_;
    return planned;
}

std::string_view planProblem(const ByteSource& source, const std::optional<PlannedRewrite>& planned) {
    if (!planned) return tooLarge;
    return readsBack(PlannedSource(source, planned->content), *planned)
               ? std::string_view()
               : outcomeProblem(RewriteOutcome::structureMismatch);
}

std::string_view appendProblem(const ChunkTable& table) noexcept {
    if (table.chunks.size() >= maxChunks) return "has too many chunks: one more would not be found again.";
    if (!table.chunks.empty() && table.chunks.back().truncated()) {
        return "has a damaged last chunk, behind which new data would be lost.";
    }
    // An interrupted recording: its audio, whose size was never filled in, is walked as if it were chunks.
    const auto unprintable = [](const Chunk& chunk) {
        const std::string_view id = chunk.id.view();
        return std::any_of(id.begin(), id.end(), [](char c) { return c < ' ' || c > '~'; });
    };
    if (std::any_of(table.chunks.begin(), table.chunks.end(), unprintable)) {
        return "has audio without a length, behind which new data would be lost.";
    }
    return {};
}

std::string_view outcomeProblem(RewriteOutcome outcome) noexcept {
    switch (outcome) {
        case RewriteOutcome::done:
            return {};
        case RewriteOutcome::structureMismatch:
            return "could not be rewritten so that it reads back whole.";
        case RewriteOutcome::sourceChanged:
            return "was written to by another program during the save.";
    }
    return {};
}

RewriteOutcome replaceWith(FileOps& ops, WaveFile& source, const PlannedRewrite& planned, TempKind kind,
                           const TaskContext& task, FolderSyncs& folders) {
    // Two saves of one file at the same time would each replace what the other has just written. The lock is on the
    // file as it was opened: whoever comes second finds another file under the name.
    if (ops.tryLock(source.handle()) == FileOps::Lock::heldByAnother || !source.isUnchanged(ops)) {
        return RewriteOutcome::sourceChanged;
    }
    SafeFile output(ops, source.path(), kind);
    output.write(planned.content, source.handle(), task, SafeFile::Source::replaced);

    const FileSource written(output.file());
    const bool whole = readsBack(written, planned);
    if (written.error()) throw std::filesystem::filesystem_error("cannot read back", source.path(), written.error());
    if (!whole) return RewriteOutcome::structureMismatch;
    output.copyAttributesFrom(source.handle());
    output.sync();
    if (!source.isUnchanged(ops)) return RewriteOutcome::sourceChanged;
    folders.add(output.commit(SafeFile::Existing::replace));
    ops.closeReplaced(source.takeHandle());
    return RewriteOutcome::done;
}

}  // namespace dravik
