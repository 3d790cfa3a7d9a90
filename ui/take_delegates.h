#pragma once

#include "app/take_columns.h"
#include "ui/theme.h"

#include <QPersistentModelIndex>
#include <QStyledItemDelegate>
#include <functional>

namespace dravik {

/// Where the current cell goes when an edit is done.
enum class CellMove { stay, down, up, next, previous };

/// How the cells of the take table look, and how they are edited: a line of text, for frame rates a menu. It decides
/// nothing: what was typed is checked by `check` and told by signals. Main thread; one editor at a time.
class TakeDelegate : public QStyledItemDelegate {
    Q_OBJECT
  public:
    explicit TakeDelegate(const Theme& theme, QObject* parent = nullptr);

    /// Why the text cannot be the cell's value; empty when it can.
    std::function<QString(const QModelIndex&, const QString&)> check;
    /// Is this the take that is loaded?
    std::function<bool(const QModelIndex&)> isLoaded;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void destroyEditor(QWidget* editor, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
    bool eventFilter(QObject* object, QEvent* event) override;

  signals:
    void editorOpened() const;
    void editorClosed() const;
    /// A value to write; `toAll` into every selected row.
    void committed(const QModelIndex& index, const QString& text, bool toAll) const;
    /// What was typed was no value, and is lost because the user has gone on to something else.
    void dropped(const QString& why) const;
    /// The editor is done with; it is to be closed, and the current cell moved.
    void left(QWidget* editor, const QModelIndex& index, CellMove move) const;

  private:
    [[nodiscard]] static QString textIn(const QWidget* editor);
    [[nodiscard]] bool wasTouched(const QWidget* editor) const;
    /// When the text is no value the editor stays, and says why.
    void finish(QWidget* editor, CellMove move, bool toAll) const;
    void showProblem(QWidget* editor, const QString& why) const;
    void paintFlag(QPainter& painter, const QRect& cell, const QColor& colour, const QModelIndex& index,
                   bool hovered) const;

    const Theme& theme_;
    mutable QPersistentModelIndex edited_;  ///< the cell of the open editor
    mutable QString initial_;
    mutable bool filled_ = false;  ///< what is typed is not to be overwritten when the row changes elsewhere
};

}  // namespace dravik
