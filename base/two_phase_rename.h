#pragma once

#include "base/error.h"
#include "base/file_ops.h"
#include "base/progress.h"

#include <filesystem>
#include <string>
#include <vector>

namespace dravik {

/// Gives many files of one or more folders new names as one: all or none. Names may be swapped, since every file takes
/// a hidden name first; a journal beside the files lets the next opening of a folder end what a kill has cut. Knows
/// nothing of what is in the files and chooses no name.

/// One file on its way. All three paths lie in the same folder; the hidden name is one that isRenameName() knows, and
/// free.
struct RenameMove {
    std::filesystem::path source;
    std::filesystem::path temp;  ///< hidden name between the two phases
    std::filesystem::path destination;
};

/// Why the files were not renamed, where it is no single move that failed. `what()` is a sentence without the state of
/// the files, which `reason` tells.
class TwoPhaseRenameError : public Error {
  public:
    enum class Reason {
        sourceInUse,        ///< nothing was moved
        journalNotWritten,  ///< nothing was moved
        rollbackFailed,     ///< a move failed, and some file could not be taken back to its old name
    };
    /// A file that is not where it was.
    struct Stray {
        std::filesystem::path source;  ///< its old name
        std::string sentence;          ///< why, and where it is now
    };

    [[nodiscard]] static TwoPhaseRenameError sourceInUse(const std::filesystem::path& source);
    [[nodiscard]] static TwoPhaseRenameError journalNotWritten(const std::filesystem::path& folder,
                                                               std::string_view why);
    /// `original` says what stopped the moves.
    [[nodiscard]] static TwoPhaseRenameError rollbackFailed(std::string original, std::vector<Stray> strays);

    [[nodiscard]] Reason reason() const noexcept { return reason_; }
    [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }  ///< the file or folder at fault
    [[nodiscard]] const std::vector<Stray>& strays() const noexcept { return strays_; }

  private:
    TwoPhaseRenameError(Reason reason, std::string message, std::filesystem::path path, std::vector<Stray> strays)
        : Error(std::move(message)), reason_(reason), path_(std::move(path)), strays_(std::move(strays)) {}
    Reason reason_;
    std::filesystem::path path_;
    std::vector<Stray> strays_;
};

/// Performs the moves: every file to its hidden name, then every file to its new one, under a journal. Any failure, and
/// a cancel, puts every file back, last first. No file is ever replaced. Progress counts moves, two a file.
///
/// Throws the error that stopped the moves (Cancelled included) once all files are back, naming the file by its old or
/// new name; or TwoPhaseRenameError. No moves are no work. Not re-entrant for the same files. Blocks.
void runTwoPhaseRename(FileOps& ops, const std::vector<RenameMove>& moves, const TaskContext& task);

}  // namespace dravik
