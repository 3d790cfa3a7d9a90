#pragma once

#include "base/folder_names.h"
#include "operations/renamed_name.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace dravik {

/// What a batch rename would do, worked out before anything is touched: for the eye (a row a file, with its conflict)
/// and for the run (paths, all checked). Files keep their bytes and their extensions, only names change. Names that
/// differ in letter case alone are one name, except that a file may be given another case of its own.

enum class OperationAudioBatchRenameMode {
    renameInPlace,
    copyAndRename,  ///< needs a destination folder
};
[[nodiscard]] std::string_view label(OperationAudioBatchRenameMode mode) noexcept;  ///< "Rename in Place"
inline constexpr std::string_view noDestinationFolder = "Choose a destination folder.";

/// A file and the name it is to get, with its extension.
struct OperationAudioBatchRenameItem {
    InfoFichier fichier;
    std::string destinationName;
};

/// An item whose name was checked.
struct PlanRenommageBatch {
    InfoFichier fichier;
    std::filesystem::path sourceURL, destinationURL;
};

/// Why a new name cannot be had.
struct RenameConflictCause {
    enum class Kind { invalidName, duplicateFilename, existingFile };
    Kind kind = Kind::invalidName;
    std::string name;

    [[nodiscard]] std::string text() const;
    friend bool operator==(const RenameConflictCause&, const RenameConflictCause&) = default;
};

/// What the user has chosen.
struct BatchRenameChoice {
    RenamePattern pattern;
    OperationAudioBatchRenameMode mode = OperationAudioBatchRenameMode::renameInPlace;
    std::filesystem::path destination = {};  ///< of copies; empty: not chosen yet, and only names can be compared
    OperationsAudio::EmptyTokens emptyTokens = OperationsAudio::EmptyTokens::takeSeparatorsAlong;
    bool keepBoth = false;                             ///< number every name that collides
    std::set<std::filesystem::path> keepBothFor = {};  ///< or those of these files
};

/// One line of the preview.
struct RenamePreviewRow {
    std::string newName;  ///< empty where the pattern gives nothing for this file
    bool unchanged = false;
    std::optional<RenameConflictCause> conflict;
    std::filesystem::path destination;  ///< where it would be; the name alone while the folder of copies is not chosen

    [[nodiscard]] bool changes() const noexcept { return !unchanged && !conflict; }
    /// Is the name good, but another's? A number would help.
    [[nodiscard]] bool isCollision() const noexcept;
    /// Why the file cannot have the name, for the user; empty when it can.
    [[nodiscard]] std::string explanation() const;
};
struct RenamePreview {
    std::vector<RenamePreviewRow> rows;  ///< in the order of the files

    [[nodiscard]] std::size_t conflicts() const noexcept;
    [[nodiscard]] std::size_t collisions() const noexcept;
    [[nodiscard]] std::size_t changes() const noexcept;  ///< files that would be renamed or copied
    [[nodiscard]] std::string conflictsText() const;     ///< "1 filename conflict", "3 filename conflicts"
};

[[nodiscard]] std::string toBeRenamedText(std::size_t files);      ///< "1 file will be renamed"
[[nodiscard]] std::string selectedText(std::size_t files);         ///< "1 file selected"
[[nodiscard]] std::string renamedSuccessfully(std::size_t files);  ///< "3 renamed successfully."

namespace OperationsAudio {

/// The new names of the files that take part, in their order. `onDisk` is what stands in the folders; kept between two
/// calls it saves the listing, and what has changed since shows in the run. Names of "Keep Both" are base_1, base_2...,
/// the first that neither a file of the run gets nor anything on disk has; a file that has such a name already keeps
/// it.
[[nodiscard]] RenamePreview previewBatchRename(const std::vector<InfoFichier>& fichiers,
                                               const BatchRenameChoice& choice, FolderNames& onDisk);

/// The items of a preview without conflicts.
[[nodiscard]] std::vector<OperationAudioBatchRenameItem> itemsOf(const std::vector<InfoFichier>& fichiers,
                                                                 const RenamePreview& preview);

/// Checks a run whole. Looks at the folders, changes nothing. Throws OperationAudioError with the first thing that is
/// wrong.
[[nodiscard]] std::vector<PlanRenommageBatch> planBatchRename(const std::vector<OperationAudioBatchRenameItem>& items,
                                                              OperationAudioBatchRenameMode mode,
                                                              const std::filesystem::path& destination);

}  // namespace OperationsAudio
}  // namespace dravik
