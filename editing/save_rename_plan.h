#pragma once

#include "base/error.h"
#include "model/groupe_fichiers.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace dravik {

/// One file to rename. All three paths lie in the same folder.
struct MainSaveRenamePlanEntry {
    std::filesystem::path source;
    std::filesystem::path temp;  ///< hidden name between the two phases
    std::filesystem::path destination;
    InfoFichier fichier;  ///< the record of the file, as loaded

    /// Same path but for letter case: such a file is not moved.
    [[nodiscard]] bool moves() const;
};

/// Why files were not renamed, or not all saved. `what()` is the text for the user.
class MainSaveRenameError : public Error {
  public:
    enum class Reason {
        duplicateDestination,
        destinationExists,
        sourceMissing,
        temporaryNameUnavailable,
        rollbackFailed,
        metadataAfterRenameFailed,
        impossibleName,
        sourceInUse,
        takeWouldBreak,
        takesWouldMerge,
        journalNotWritten,
    };
    [[nodiscard]] static MainSaveRenameError duplicateDestination(std::string_view name);
    [[nodiscard]] static MainSaveRenameError destinationExists(const std::filesystem::path& path);
    [[nodiscard]] static MainSaveRenameError sourceMissing(const std::filesystem::path& path);
    [[nodiscard]] static MainSaveRenameError temporaryNameUnavailable(std::string_view name);
    [[nodiscard]] static MainSaveRenameError rollbackFailed(std::string_view original,
                                                            const std::vector<std::string>& failures);
    [[nodiscard]] static MainSaveRenameError metadataAfterRenameFailed(std::string_view message);
    [[nodiscard]] static MainSaveRenameError impossibleName(std::string_view name);
    [[nodiscard]] static MainSaveRenameError sourceInUse(std::string_view sentence);
    /// The files of the take would not be one take with the same track numbers under their new names.
    [[nodiscard]] static MainSaveRenameError takeWouldBreak(std::string_view take);
    /// A renamed file would become a part of that other take.
    [[nodiscard]] static MainSaveRenameError takesWouldMerge(std::string_view take);
    /// What makes the rename safe could not be written into the folder.
    [[nodiscard]] static MainSaveRenameError journalNotWritten(std::string_view sentence);

    [[nodiscard]] Reason reason() const noexcept { return reason_; }
    /// Raised before any file was touched?
    [[nodiscard]] bool nothingChanged() const noexcept {
        return reason_ != Reason::rollbackFailed && reason_ != Reason::metadataAfterRenameFailed;
    }

  private:
    MainSaveRenameError(Reason reason, std::string message) : Error(std::move(message)), reason_(reason) {}
    Reason reason_;
};

/// A file and the base name (no extension) it is to get.
struct RenameRequest {
    InfoFichier fichier;
    std::string newName;
};

/// Can this text be a file's base name: something but blanks, no "/", no control character, no "." in front (hidden
/// files), not too long for a folder with a track suffix and an extension behind it?
[[nodiscard]] bool isValidName(std::string_view nom) noexcept;

/// New base name of the group's file at `position` when the group is renamed to `newName`: in a mono set the file
/// keeps its own track suffix. Pure.
[[nodiscard]] std::string newBaseName(const GroupeFichiers& groupe, std::size_t position, std::string_view newName);
/// New base name of a file of the mono set that cannot be read: only where its own name is the set's base name and a
/// track suffix. Pure.
[[nodiscard]] std::optional<std::string> newUnreadableName(const GroupeFichiers& groupe, const UnreadableTrack& track,
                                                           std::string_view newName);
/// Names that differ only in letter case are one name on the volumes that recorders write: nothing to move.
[[nodiscard]] bool isSameName(std::string_view a, std::string_view b);
/// Requests for all files of the group.
[[nodiscard]] std::vector<RenameRequest> renommerGroupe(const GroupeFichiers& groupe, std::string_view newName);

/// Checks everything that can be checked before a file is touched, and chooses the hidden names. Looks at the folders,
/// changes nothing. Throws MainSaveRenameError: one of the first four cases, or impossibleName.
[[nodiscard]] std::vector<MainSaveRenamePlanEntry> planRenames(const std::vector<RenameRequest>& requests);

}  // namespace dravik
