#pragma once

#include "app/content_view.h"
#include "ui/theme.h"

#include <QLineEdit>
#include <QPointer>
#include <QTableView>
#include <filesystem>
#include <optional>

namespace dravik {

class TrackModel;

/// The tracks of the loaded take: position, recorder's channel number and name, of which the last two are edited in
/// place. Each keystroke in a name is an edit; a number is one when its field is left, since on the way to 12 it is the
/// 1 that another track may have. Enter and Tab go on downwards in the column; several lines are pasted downwards.
class TrackList : public QTableView {
    Q_OBJECT
  public:
    TrackList(ContentView& content, const Theme& theme, QWidget* parent = nullptr);
    ~TrackList() override;
    enum Column { number, channel, name };

  signals:
    /// A key has undone or redone a step.
    void stepReplayed();

  public:
    /// Shows the loaded take's tracks as they are now.
    void refresh(bool editable);
    /// Takes over the number that is being typed.
    void commitPending();

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
    void reset() override;

  private:
    void goOn(int steps);
    void setTyping(bool typing);
    void copyCells();
    void pasteFrom(int row);
    void pasteNumbers(int row, const QStringList& lines);
    [[nodiscard]] Column column() const;  ///< in which keys edit

    ContentView& content_;
    TrackModel* model_;                           ///< a child
    QPointer<QLineEdit> field_;                   ///< the open one
    std::optional<std::filesystem::path> shown_;  ///< a file of the take that is shown
    bool typing_ = false;
};

}  // namespace dravik
