#pragma once

#include "app/background.h"
#include "app/clock.h"
#include "app/dialogs.h"
#include "app/file_moves.h"
#include "app/take_rows.h"
#include "base/file_ops.h"
#include "base/progress.h"
#include "editing/save_undo.h"

#include <QObject>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace dravik {

/// Brings what is pending in the rows to disk: the questions before, the work on another thread with the rows locked,
/// and what is told afterwards. Remembers the saves of this run, so that they can be undone. One save at a time. Main
/// thread only.
class SaveFlow : public QObject {
    Q_OBJECT
  public:
    /// All of it outlives the flow.
    struct Services {
        TakeRows& rows;
        Dialogs& dialogs;
        Clock& clock;
        Background& background;
        FileOps& files;
    };
    explicit SaveFlow(const Services& services) : services_(services) {}
    ~SaveFlow() override;

    [[nodiscard]] bool isRunning() const noexcept { return running_ != nullptr; }
    /// "Saved", for two seconds after it was.
    [[nodiscard]] const QString& messageSucces() const noexcept { return messageSucces_; }

    /// Saves everything pending; `saved` is called with whether it is all on disk, also when there was nothing to save.
    void saveAll(std::function<void(bool)> saved);
    void cancel();

    /// The last save of this run, as a step that can be undone; empty when there is none.
    [[nodiscard]] QString undoName() const;
    /// These files were renamed by other means: what a save did to them cannot be undone any more.
    void forgetUndoOf(const FileMoves& moved);
    /// Puts its files back as they were, after a question.
    void undoLast();

  signals:
    void runningChanged();
    void messageChanged();
    void progressed(std::uint64_t doneBytes, std::uint64_t allBytes, const QString& name);
    void notice(const QString& text);
    /// The rows are still to be told.
    void filesMoved(const FileMoves& moved);
    /// What these rows hold is on disk; they still show it as pending.
    void rowsWritten(const std::set<int>& rows);
    /// The threads are done; `touched` when files may be others than before. The rows can be edited again.
    void ended(bool touched);
    void saveUndone();

  private:
    /// What came of a save, brought back to the main thread.
    struct End;

    void offerDiscard(Alert alert, std::set<int> rows, std::function<void(bool)> goOn);
    void checkMissing(std::function<void(bool)> goOn);
    void checkFormats(std::function<void(bool)> goOn);
    void start(std::set<int> planned, std::function<void(bool)> saved);
    void runInBackground(std::function<void(End&, const TaskContext&)> write, std::function<void(End)> then);
    void finish(End end, const std::set<int>& planned, const std::function<void(bool)>& saved);
    void endUndo(const End& end, const SaveSnapshot& undone, const FileStates& states);
    void tellFailure(const End& end, const std::set<int>& planned);
    void tellSuccess(std::size_t written);
    void remember(SaveSnapshot snapshot);

    Services services_;
    std::shared_ptr<CancellationToken> running_;
    std::vector<SaveSnapshot> saves_;  ///< of this run that can be undone, the last one behind
    QString messageSucces_;
    int messageNumber_ = 0;
};

}  // namespace dravik
