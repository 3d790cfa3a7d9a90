#pragma once

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

/// An open RIFF/WAVE file and its chunks.
class WaveFile {
  public:
    /// Opens and walks, to look. Throws std::filesystem::filesystem_error when the file cannot be opened or read.
    explicit WaveFile(const std::filesystem::path& path);
    /// The same for a file that will be replaced: remembers what it was when it was opened.
    WaveFile(FileOps& ops, const std::filesystem::path& path);

    [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }
    /// At least 12 bytes, "RIFF" and "WAVE": the only form that is ever written.
    [[nodiscard]] bool isRiffWave() const noexcept;
    [[nodiscard]] const ChunkTable& table() const noexcept { return *table_; }  ///< only when isRiffWave()
    [[nodiscard]] const FileHandle& handle() const noexcept { return handle_; }
    /// Gives the handle away, for closing; nothing can be read afterwards.
    [[nodiscard]] FileHandle takeHandle() noexcept { return std::move(handle_); }
    /// Payload of one of the table's chunks. Throws std::filesystem::filesystem_error when it cannot be read whole.
    [[nodiscard]] Bytes payload(const Chunk& chunk) const;
    /// Does the path still lead to the file that was opened, in its size and modification time of then? False when
    /// another program wrote to it or put another file in its place since, and for a file opened only to look.
    [[nodiscard]] bool isUnchanged(FileOps& ops) const noexcept;

  private:
    void walk();

    std::filesystem::path path_;
    FileHandle handle_;
    std::optional<FileStamp> stamp_;  ///< taken before the first byte is read
    std::optional<ChunkTable> table_;
};

/// The new file as a plan. Chunks are given in their order; every odd payload gets its pad byte.
class WaveRewrite {
  public:
    explicit WaveRewrite(const WaveFile& source) : source_(source) {}

    /// The chunk as it stands, to the byte.
    void keep(const Chunk& chunk);
    void put(FourCC id, ByteSpan payload);

    /// The finished plan: form header, chunks, then the bytes that belong to no chunk. Absent when the length does not
    /// fit the form's 32-bit size.
    [[nodiscard]] std::optional<FilePlan> plan() const;
    /// The chunks that the new file must show when it is read back.
    struct Expected {
        FourCC id;
        std::uint64_t size = 0;
    };
    [[nodiscard]] const std::vector<Expected>& expected() const noexcept { return expected_; }

  private:
    const WaveFile& source_;
    FilePlan chunks_;
    std::vector<Expected> expected_;
};

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
[[nodiscard]] RewriteOutcome replaceWith(FileOps& ops, WaveFile& source, const WaveRewrite& rewrite,
                                         const FilePlan& plan, TempKind kind, const TaskContext& task,
                                         FolderSyncs& folders);

}  // namespace dravik
