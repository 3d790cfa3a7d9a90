#pragma once

#include "base/byte_source.h"
#include "base/file_ops.h"
#include "base/file_plan.h"
#include "base/progress.h"
#include "base/safe_file.h"
#include "model/wave/chunk_walk.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace dravik {

/// What the metadata writer and the cue writer share: a RIFF/WAVE file that comes into being anew, chunk by chunk, out
/// of the old one, and takes its place when it is whole.

/// A recording as the writers plan on it: the bytes and chunks of a file on disk, or of one that is planned. Refers to
/// what its owner keeps.
struct WaveView {
    std::filesystem::path url;  ///< the name that the user knows, for sentences
    const ByteSource& source;
    const std::optional<ChunkTable>& table;

    /// At least 12 bytes, "RIFF" and "WAVE": the only form that is ever written.
    [[nodiscard]] bool isRiffWave() const noexcept;
    /// Payload of one of the table's chunks. Throws std::filesystem::filesystem_error when it cannot be read whole.
    [[nodiscard]] Bytes payload(const Chunk& chunk) const;
};

/// An open RIFF/WAVE file and its chunks. Stays where it is.
class WaveFile {
  public:
    /// Opens and walks, to look. Throws std::filesystem::filesystem_error when the file cannot be opened or read.
    explicit WaveFile(const std::filesystem::path& path);
    /// The same for a file that will be replaced: remembers what it was when it was opened.
    WaveFile(FileOps& ops, const std::filesystem::path& path);
    WaveFile(const WaveFile&) = delete;
    WaveFile& operator=(const WaveFile&) = delete;
    ~WaveFile() = default;

    [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }
    /// `url` is the name by which the user called the file.
    [[nodiscard]] WaveView viewAs(const std::filesystem::path& url) const { return {url, source_, table_}; }
    [[nodiscard]] bool isRiffWave() const noexcept { return viewAs({}).isRiffWave(); }
    [[nodiscard]] const FileHandle& handle() const noexcept { return handle_; }
    /// Gives the handle away, for closing; nothing can be read afterwards.
    [[nodiscard]] FileHandle takeHandle() noexcept { return std::move(handle_); }
    /// Does the path still lead to the file that was opened, in its size and modification time of then? False when
    /// another program wrote to it or put another file in its place since, and for a file opened only to look.
    [[nodiscard]] bool isUnchanged(FileOps& ops) const noexcept;

  private:
    void walk();

    std::filesystem::path path_;
    FileHandle handle_;
    std::optional<FileStamp> stamp_;  ///< taken before the first byte is read
    FileSource source_;
    std::optional<ChunkTable> table_;
};

/// A chunk that a new file must show when it is read back.
struct ExpectedChunk {
    FourCC id;
    std::uint64_t size = 0;
};

/// What a writer decided on: the new file as a plan, and the chunks that prove it whole.
struct PlannedRewrite {
    FilePlan content;
    std::vector<ExpectedChunk> expected;
};

/// Puts a new file together. Chunks are given in their order; every odd payload gets its pad byte.
class WaveRewrite {
  public:
    explicit WaveRewrite(const ChunkTable& source) : source_(source) {}

    /// The chunk as it stands, to the byte.
    void keep(const Chunk& chunk);
    void put(FourCC id, ByteSpan payload);

    /// Form header, chunks, then the bytes that belong to no chunk. Absent when the length does not fit the form's
    /// 32-bit size.
    [[nodiscard]] std::optional<PlannedRewrite> plan() const;

  private:
    const ChunkTable& source_;
    FilePlan chunks_;
    std::vector<ExpectedChunk> expected_;
};

/// Why a plan on that source (absent: too large) must not be written, as the rest of a sentence that begins with the
/// file's name; empty when the file would read back whole.
[[nodiscard]] std::string_view planProblem(const ByteSource& source, const std::optional<PlannedRewrite>& planned);

/// Why no chunk can be added behind the last one so that it is found there: not behind a chunk that claims more bytes
/// than the file has, nor behind more chunks than are ever walked. The reason as the rest of a sentence that begins
/// with the file's name; empty when it can.
[[nodiscard]] std::string_view appendProblem(const ChunkTable& table) noexcept;

enum class RewriteOutcome {
    done,
    structureMismatch,  ///< the new file did not read back as planned; it was discarded
    sourceChanged,      ///< another program wrote to the file meanwhile; the new one was discarded
};

/// Other formats are shown read-only, whatever their first bytes say; the rest of a sentence as above.
inline constexpr std::string_view onlyWavAndBwf = "is read-only: only WAV and BWF files can be edited.";
/// What a RIFF size of 32 bits cannot hold, as the rest of a sentence that begins with the file's name.
inline constexpr std::string_view tooLarge = "would grow beyond the 4 GiB of a RIFF/WAVE file.";
/// The outcome as the rest of such a sentence; empty when done.
[[nodiscard]] std::string_view outcomeProblem(RewriteOutcome outcome) noexcept;

/// Writes the plan beside the file, reads its structure back, and puts it in the file's place. `path` behind links.
/// Throws std::filesystem::filesystem_error or Cancelled, with the file untouched.
[[nodiscard]] RewriteOutcome replaceWith(FileOps& ops, WaveFile& source, const PlannedRewrite& planned, TempKind kind,
                                         const TaskContext& task, FolderSyncs& folders);

}  // namespace dravik
