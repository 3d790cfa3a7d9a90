#pragma once

#include "base/error.h"
#include "base/file_ops.h"
#include "base/progress.h"
#include "base/safe_file.h"
#include "editing/cue_marker.h"
#include "editing/wave_rewrite.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace dravik {

/// Why a file's cue markers could not be written. They are as they were.
class CueError : public Error {
  public:
    static constexpr std::string_view domain = "Dravik";
    static constexpr int notRiffWave = 20;
    /// Too large, too many markers, damaged at its end, or written to meanwhile.
    static constexpr int notWritable = 21;

    CueError(int code, std::string message) : Error(std::move(message)), code_(code) {}
    [[nodiscard]] int code() const noexcept { return code_; }

  private:
    int code_;
};

/// The markers of a file in ascending frame order, with their labels and the other entries of their list, out of all
/// chunks that hold some. Empty when there are none or the file cannot be read; never throws. Any thread.
[[nodiscard]] std::vector<CueMarker> lireCues(const std::filesystem::path& url);

/// What a save of these markers makes of the file, with everything checked that can be before it is written; absent
/// when there is nothing to write. Throws CueError or std::filesystem::filesystem_error. Any thread.
[[nodiscard]] std::optional<PlannedRewrite> planCues(const WaveView& file, const std::vector<CueMarker>& marqueurs);

/// Replaces a file's cue information by the given markers, numbered 1, 2, 3 … in ascending frame order, in one chunk of
/// points and one list. The list keeps the entries that each marker brings along, and those in the file that belong to
/// no marker. All other chunks are copied. All cue writes of the process are serialised. Blocks; not for the main
/// thread.
class CueWriter {
  public:
    explicit CueWriter(FileOps& ops) : ops_(ops) {}

    /// An empty list removes the cue information; where there is none already, the file is left alone. A file with
    /// more markers than are read (see cue_bytes.h) is refused whatever the list: the rest would be lost unseen.
    /// Throws CueError, std::filesystem::filesystem_error or Cancelled; then the file is untouched.
    void ecrireCues(const std::filesystem::path& url, const std::vector<CueMarker>& marqueurs, const TaskContext& task,
                    FolderSyncs& folders);

  private:
    FileOps& ops_;
};

}  // namespace dravik
