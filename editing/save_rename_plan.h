#pragma once

#include "base/error.h"
#include "model/groupe_fichiers.h"

#include <filesystem>
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
    };
    [[nodiscard]] static MainSaveRenameError duplicateDestination(std::string_view name);
    [[nodiscard]] static MainSaveRenameError destinationExists(const std::filesystem::path& path);
    [[nodiscard]] static MainSaveRenameError sourceMissing(const std::filesystem::path& path);
    [[nodiscard]] static MainSaveRenameError temporaryNameUnavailable(std::string_view name);
    [[nodiscard]] static MainSaveRenameError rollbackFailed(std::string_view original,
                                                            const std::vector<std::string>& failures);
    [[nodiscard]] static MainSaveRenameError metadataAfterRenameFailed(std::string_view message);

    [[nodiscard]] Reason reason() const noexcept { return reason_; }
    /// Raised before any file was touched?
    [[nodiscard]] bool nothingChanged() const noexcept { return reason_ <= Reason::temporaryNameUnavailable; }

  private:
    MainSaveRenameError(Reason reason, std::string message) : Error(std::move(message)), reason_(reason) {}
    Reason reason_;
};

/// A file and the base name (no extension) it is to get.
struct RenameRequest {
    InfoFichier fichier;
    std::string newName;
};

/// Can this text be a file's base name: not empty, no "/" or zero byte, not hidden, not too long for a folder?
[[nodiscard]] bool isValidName(std::string_view nom) noexcept;

/// New base name of the group's file at `position` when the group is renamed to `newName`: in a mono set the file
/// keeps its own track suffix. Pure.
[[nodiscard]] std::string newBaseName(const GroupeFichiers& groupe, std::size_t position, std::string_view newName);
/// Requests for all files of the group.
[[nodiscard]] std::vector<RenameRequest> renommerGroupe(const GroupeFichiers& groupe, std::string_view newName);

/// Checks everything that can be checked before a file is touched, and chooses the hidden names. Looks at the folders,
/// changes nothing. Throws MainSaveRenameError (the first four cases), or an Error for what cannot be a file's name.
[[nodiscard]] std::vector<MainSaveRenamePlanEntry> planRenames(const std::vector<RenameRequest>& requests);

}  // namespace dravik
