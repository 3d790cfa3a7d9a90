#pragma once

#include "ui/take_delegates.h"
#include "ui/take_table_model.h"

#include <QPersistentModelIndex>
#include <QTreeView>
#include <optional>
#include <vector>

class QMenu;

namespace dravik {

/// What keys and menus ask of the take table.
enum class TakeCommand {
    edit,
    fillDown,
    copyColumn,
    copyRows,
    paste,
    clear,
    toggleCircled,
    toggleWild,
    incrementTakes,
    numberTakes,
    find,
    leaveFilter
};
/// "Ctrl+D" as the system writes it; empty for commands without keys.
[[nodiscard]] QString shortcutText(TakeCommand command);

/// The tree of takes with the manners of a spreadsheet: whole rows are selected, one cell is the current one; typing
/// edits it, Tab and Enter go on. It turns keys and clicks into signals and writes nothing itself. While it has the
/// focus its keys win over shortcuts of the window. Main thread.
class TakeTableView : public QTreeView {
    Q_OBJECT
  public:
    TakeTableView(TakeTableModel& model, const Theme& theme, QWidget* parent = nullptr);

    [[nodiscard]] TakeDelegate& delegate() noexcept { return *delegate_; }
    [[nodiscard]] bool isEditing() const noexcept { return editing_; }
    /// Writes what is typed, as if another cell had been clicked.
    void commitEditing();

    /// Takes of the selection, as indices into groupesTableau, in the order in which they are shown.
    [[nodiscard]] std::vector<int> selectedTakes() const;
    /// Makes the cell current and its row the selection; within the current row the selection stays.
    void goTo(const QModelIndex& index);
    /// Columns as they are shown, from the left.
    [[nodiscard]] std::vector<TakeColumn> visibleColumns() const;
    void editCell(const QModelIndex& index);
    void unfold(const QModelIndexList& sets);
    /// A check mark for each column, which shows and hides it.
    void addColumnActions(QMenu& menu);

    /// Notes are as wide as there is room beside the other columns, until a column is given another width.
    void giveRoomToNotes(int leastWidth);
    [[nodiscard]] bool givesRoomToNotes() const noexcept { return givesRoom_; }

    /// What an empty table says.
    void setPlaceholder(const QString& text, const QString& hint);

  signals:
    void asked(TakeCommand command);
    /// A click or Space on a flag.
    void flagAsked(const QModelIndex& index);
    /// An edit was tried where nothing can be edited.
    void refused(const QModelIndex& index);
    void menuAsked(const QPoint& globalPosition);
    void editingEnded();

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QList<int>& roles) override;
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                                       const QEvent* event) const override;
    /// Typing edits; it does not jump to rows.
    void keyboardSearch(const QString&) override {}

  private:
    void onEditorLeft(QWidget* editor, const QModelIndex& index, CellMove move);
    void onEditorClosed();
    void keepPlaceDuringLayouts();
    void giveRoom();
    void applyColours();
    [[nodiscard]] QModelIndex rowBeside(const QModelIndex& index, int step) const;
    [[nodiscard]] QModelIndex nextEditable(const QModelIndex& from, int step) const;
    /// The flag that the pointer is on.
    [[nodiscard]] QModelIndex flagAt(const QMouseEvent& event) const;

    TakeTableModel& model_;
    const Theme& theme_;
    TakeDelegate* delegate_;
    QString placeholder_, placeholderHint_;
    bool editing_ = false;
    bool givesRoom_ = false;
    bool givingRoom_ = false;
    int noteWidth_ = 0;       ///< without the room
    bool clickDone_ = false;  ///< the click was a flag's: what follows of it is not the selection's
    QPersistentModelIndex anchor_;
    int anchorTop_ = 0;
};

}  // namespace dravik
