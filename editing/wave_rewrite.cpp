#include "editing/wave_rewrite.h"

#include "model/wave/chunk_bytes.h"

#include <algorithm>
#include <limits>

namespace dravik {

WaveFile::WaveFile(const std::filesystem::path& path) : path_(path), handle_(FileHandle::openForReading(path)) {
    walk();
}

WaveFile::WaveFile(FileOps& ops, const std::filesystem::path& path)
    : path_(path), handle_(FileHandle::openForReading(path)), stamp_(ops.stampOf(handle_, path)) {
    walk();
}

void WaveFile::walk() {
    const FileSource source(handle_);
    table_ = walkChunks(source);
    if (source.error()) throw std::filesystem::filesystem_error("cannot read", path_, source.error());
}

bool WaveFile::isRiffWave() const noexcept {
    return table_ && table_->form == FourCC("RIFF") && table_->type == FourCC("WAVE");
}

bool WaveFile::isUnchanged(FileOps& ops) const noexcept { return stamp_ && ops.stampAt(path_) == stamp_; }

Bytes WaveFile::payload(const Chunk& chunk) const {
    const FileSource source(handle_);
    Bytes bytes = source.read(chunk.payload(), chunk.size);
    if (source.error() || bytes.size() != chunk.size) {
        throw std::filesystem::filesystem_error(
            "cannot read", path_, source.error() ? source.error() : std::make_error_code(std::errc::io_error));
    }
    return bytes;
}

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

std::optional<FilePlan> WaveRewrite::plan() const {
    const ChunkTable& table = source_.table();
    const std::uint64_t length = riffHeaderBytes + chunks_.size() + table.bytesBehind();
    if (length - chunkHeaderBytes > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
    FilePlan plan;
    Bytes header;
    appendFormHeader(header, table.form, table.type, length - riffHeaderBytes);
    plan.add(std::move(header));
    for (const FilePlan::Piece& piece : chunks_.pieces()) {
        std::visit([&](const auto& content) { plan.add(content); }, piece);
    }
    plan.add(SourceRange{table.end, table.bytesBehind()});
    return plan;
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

RewriteOutcome replaceWith(FileOps& ops, WaveFile& source, const WaveRewrite& rewrite, const FilePlan& plan,
                           TempKind kind, const TaskContext& task, FolderSyncs& folders) {
    // Two saves of one file at the same time would each replace what the other has just written. The lock is on the
    // file as it was opened: whoever comes second finds another file under the name.
    if (ops.tryLock(source.handle()) == FileOps::Lock::heldByAnother || !source.isUnchanged(ops)) {
        return RewriteOutcome::sourceChanged;
    }
    SafeFile output(ops, source.path(), kind);
    output.write(plan, source.handle(), task, SafeFile::Source::replaced);

    const FileSource written(output.file());
    const std::optional<ChunkTable> table = walkChunks(written);
    if (written.error()) throw std::filesystem::filesystem_error("cannot read back", source.path(), written.error());
    const auto same = [](const Chunk& chunk, const WaveRewrite::Expected& expected) {
        return chunk.id == expected.id && chunk.size == expected.size;
    };
    if (!table || table->fileSize != plan.size() || table->chunks.size() < rewrite.expected().size() ||
        !std::equal(rewrite.expected().begin(), rewrite.expected().end(), table->chunks.begin(),
                    [&](const auto& expected, const Chunk& chunk) { return same(chunk, expected); })) {
        return RewriteOutcome::structureMismatch;
    }
    output.copyAttributesFrom(source.handle());
    output.sync();
    if (!source.isUnchanged(ops)) return RewriteOutcome::sourceChanged;
    folders.add(output.commit(SafeFile::Existing::replace));
    ops.closeReplaced(source.takeHandle());
    return RewriteOutcome::done;
}

}  // namespace dravik
