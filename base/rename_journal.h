#pragma once

#include "base/file_ops.h"
#include "base/safe_file.h"
#include "base/two_phase_rename.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dravik {

/// A small hidden file beside the files of a rename, written before the first move and removed after the last: a
/// process killed in between leaves behind what the next one needs to put the names right. Its own name tells the
/// phase, so that one atomic rename moves from "taking away" to "putting in place". Layout:
/// docs/format-rename-journal.md.

/// One move as the journal holds it: file names within the journal's folder.
struct JournalEntry {
    std::string source, temp, destination;
    friend bool operator==(const JournalEntry&, const JournalEntry&) = default;
};

enum class JournalPhase {
    takingAway = 1,      ///< sources are being moved to their hidden names
    puttingInPlace = 2,  ///< every source has its hidden name; they are being moved to their destinations
    puttingBack = 3,     ///< the rename failed: whatever has a hidden name is on its way back to its source
};

/// The journal's text, and back; absent when it is damaged or names paths outside its folder.
[[nodiscard]] std::string journalText(const std::vector<JournalEntry>& entries);
[[nodiscard]] std::optional<std::vector<JournalEntry>> parseJournal(std::string_view text);

/// ".dravik_journal_" token ".1", ".2" or ".3"
[[nodiscard]] std::string journalName(std::string_view token, JournalPhase phase);
struct JournalName {
    std::string token;
    JournalPhase phase = JournalPhase::takingAway;
};
[[nodiscard]] std::optional<JournalName> parseJournalName(std::string_view fileName);

/// The journals of one rename, one in every folder concerned, held (and locked) by the process that renames.
class RenameJournal {
  public:
    /// Writes them and syncs the folders. Throws TwoPhaseRenameError::journalNotWritten; then none is left.
    RenameJournal(FileOps& ops, const std::vector<RenameMove>& moves);
    RenameJournal(const RenameJournal&) = delete;
    RenameJournal& operator=(const RenameJournal&) = delete;
    ~RenameJournal() = default;

    /// All moves so far are done: syncs the folders and says that those of another phase begin. Throws.
    void enter(JournalPhase phase);
    /// The names in the folders are on the medium. Throws.
    void syncFolders();
    /// Every file is where it belongs: removes the journals, once the folders are synced. A journal that cannot be
    /// removed does no harm, as no hidden name of its is in use; the next opening of the folder drops it.
    void retire() noexcept;

  private:
    struct Place {
        std::filesystem::path folder;
        std::unique_ptr<SafeFile> file;  ///< kept for its lock
        JournalPhase phase = JournalPhase::takingAway;
    };
    [[nodiscard]] std::filesystem::path pathOf(const Place& place) const;

    FileOps& ops_;
    std::string token_;
    std::vector<Place> places_;
};

}  // namespace dravik
