#pragma once

#include "app/file_moves.h"
#include "editing/row_edits.h"

#include <QObject>
#include <QString>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace dravik {

/// Takes as they were read, twice: as what edits are compared with, and as what is edited; and where each is found.
/// Made where they are read, and let go on another thread, so that the main thread has nothing to copy or to free.
struct ReadRows {
    explicit ReadRows(std::vector<GroupeFichiers> read = {});
    std::vector<GroupeFichiers> originals;
    std::vector<RowState> rows;
    /// Row by the key of the take, and by the path of any of its files.
    std::unordered_map<std::string, int> byKey, byFile;
};

/// The rows of the take table: as shown, as read, and the steps between the two that can be undone. It touches no file
/// and asks no questions. Main thread only.
///
/// A row is known by the path of its first file, which survives a reading of the folder that other identities do not.
class TakeRows : public QObject {
    Q_OBJECT
  public:
    using QObject::QObject;

    [[nodiscard]] const std::vector<RowState>& groupesTableau() const noexcept { return rows_; }
    [[nodiscard]] const std::vector<GroupeFichiers>& groupesOriginauxTableau() const noexcept { return originals_; }
    [[nodiscard]] static const std::string& keyOf(const GroupeFichiers& groupe);
    /// Index of the row with this key, or of the row that holds the file; -1 when there is none.
    [[nodiscard]] int indexOf(const std::string& key) const;
    [[nodiscard]] int indexOfFile(const std::filesystem::path& file) const;

    /// Other takes altogether: nothing is pending, nothing can be undone.
    void load(ReadRows& read);
    void load(std::vector<GroupeFichiers> groupes) {
        ReadRows read(std::move(groupes));
        load(read);
    }
    /// Which rows those are that were read.
    enum class Reading {
        partial,  ///< of a folder that is being read for the first time: more will come
        last,     ///< all of it
        again,    ///< all of a folder that was read before
    };
    /// More rows of the same folder, or all of them read again. Pending edits and their steps stay with their rows.
    /// Edited takes that are not there any more stay, behind all others, until they are discarded or found again.
    /// What was shown before is left in `read`.
    void refresh(ReadRows& read, Reading reading);
    void refresh(std::vector<GroupeFichiers> groupes, Reading reading) {
        ReadRows read(std::move(groupes));
        refresh(read, reading);
    }
    /// An edited take whose files are not where they were read?
    [[nodiscard]] bool isMissing(int row) const { return missing_.contains(row); }
    [[nodiscard]] const std::set<int>& missingRows() const noexcept { return missing_; }

    /// While what is pending is being written no row can be edited, undone or discarded.
    void setLocked(bool locked) noexcept { locked_ = locked; }
    [[nodiscard]] bool isLocked() const noexcept { return locked_; }

    /// Can it be edited now: is it there, of a writable format, and not being written?
    [[nodiscard]] bool canEdit(int row) const;
    [[nodiscard]] bool isEdited(int row) const { return edited_.contains(row); }
    [[nodiscard]] const std::set<int>& editedRows() const noexcept { return edited_; }
    [[nodiscard]] bool hasEdits() const noexcept { return !edited_.empty(); }
    [[nodiscard]] std::set<RowField> editedFields(int row) const;

    /// One step: these rows become these states. `name` is what Undo shows. Steps that follow each other with the same
    /// `collapseKey` (not empty) are one. A step that changes nothing is none.
    void edit(const QString& name, std::vector<std::pair<int, RowState>> changes, const QString& collapseKey = {});
    /// The next edit starts a step of its own: the user has left the field.
    void endCollapsing() { collapse_.clear(); }

    [[nodiscard]] bool canUndo() const noexcept { return !undo_.empty(); }
    [[nodiscard]] bool canRedo() const noexcept { return !redo_.empty(); }
    [[nodiscard]] QString undoName() const { return undo_.empty() ? QString() : undo_.back().name; }
    [[nodiscard]] QString redoName() const { return redo_.empty() ? QString() : redo_.back().name; }
    void undo();
    void redo();

    /// These rows are again as they were read; those of missing takes go. No step; the steps go.
    void discard(const std::set<int>& rows);
    void discardAll() { discard(std::set<int>(edited_)); }
    /// What is pending in these rows was saved: what they show is what is on disk. The steps go.
    void accept(const std::set<int>& rows);
    /// Nothing can be undone or redone any more; what is pending stays.
    void forgetSteps();
    /// Files have other names now (old path -> new path); their rows and edits go with them.
    void filesMoved(const FileMoves& moved);

    /// Unfolds or folds a set. Not an edit.
    void setDeplie(int row, bool estDeplie);

  signals:
    /// Other rows, or another number of them; `renumbered` gives for each row before the row it is now, -1 for none.
    void rowsReset(const std::vector<int>& renumbered);
    /// Rows behind those that were there, which are as before.
    void rowsAppended(int first, int last);
    void rowsChanged(const std::vector<int>& rows);
    /// What is edited, or what can be undone, is another.
    void pendingChanged();

  private:
    /// A step holds each row as it is on its other side: to undo or redo it is to exchange the two.
    struct Change {
        std::string key;
        RowState other;
    };
    struct Step {
        QString name;
        std::vector<Change> changes;
    };
    void exchange(ReadRows& read);
    void append(ReadRows& read);
    void markEdited(int row);
    void dropOldSteps();
    void replay(Step& step);
    void forget();
    /// The steps of rows whose takes were read again become steps on what was read.
    void carrySteps(const ReadRows& before, const std::vector<int>& renumbered);
    [[nodiscard]] int keepMissing(const RowState& row, const GroupeFichiers& original);
    void dropMissing();

    std::vector<RowState> rows_;
    std::vector<GroupeFichiers> originals_;
    std::unordered_map<std::string, int> byKey_, byFile_;
    std::set<int> edited_, missing_;
    bool locked_ = false;
    std::vector<Step> undo_, redo_;
    QString collapse_;
};

}  // namespace dravik
