#include "ui/folder_tree.h"

#include "ui/folder_tree_model.h"
#include "ui/list_looks.h"
#include "ui/metrics.h"
#include "ui/shortcuts.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QToolTip>

namespace dravik {
namespace {

using metrics::iconSide;
constexpr int margin = metrics::cellPadding;

/// Not letters: they may be the begin of a name, typed before the field for it is there.
bool movesAbout(int key) {
    switch (key) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Home:
        case Qt::Key_End:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            return true;
        default:
            return false;
    }
}

class FolderDelegate final : public QStyledItemDelegate {
  public:
    explicit FolderDelegate(FolderTree& tree) : QStyledItemDelegate(&tree), tree_(tree) {}

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return {QStyledItemDelegate::sizeHint(option, index).width(), metrics::rowHeight};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QStyleOptionViewItem row = option;
        initStyleOption(&row, index);
        const QString name = std::exchange(row.text, {});
        // The ground of the whole row first, then the name in what the number and the button leave of it.
        const QWidget* widget = option.widget;
        QStyle& style = widget != nullptr ? *widget->style() : *QApplication::style();
        style.drawControl(QStyle::CE_ItemViewItem, &row, painter, widget);
        // Worked out from left to right, and turned round where texts run from right to left.
        const auto turned = [&](const QRect& rect) { return QStyle::visualRect(option.direction, option.rect, rect); };
        QRect text = turned(style.subElementRect(QStyle::SE_ItemViewItemText, &row, widget));
        text.setRight(option.rect.right() - margin);

        const bool selected = (option.state & QStyle::State_Selected) != 0;
        const QPalette& palette = option.palette;
        painter->save();
        if (index.data(FolderTreeModel::ejectableRole).toBool()) {
            const QRect button = FolderTree::ejectRect(option.rect, option.direction);
            tree_.ejectIcon().paint(painter, button);
            text.setRight(turned(button).left() - margin);
        } else if (const int files = index.data(FolderTreeModel::audioFilesRole).toInt(); files > 0) {
            QFont small = option.font;
            small.setPixelSize(metrics::smallText);
            painter->setFont(small);
            painter->setPen(selected ? palette.color(QPalette::HighlightedText) : tree_.dimmed());
            const QString number = QString::number(files);
            painter->drawText(turned(text), textFlags(Qt::AlignRight | Qt::AlignVCenter, option.direction, number),
                              number);
            text.setRight(text.right() - QFontMetrics(small).horizontalAdvance(number) - margin);
        }
        painter->setFont(row.font);
        painter->setPen(palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
        painter->drawText(turned(text), textFlags(Qt::AlignLeft | Qt::AlignVCenter, option.direction, name),
                          QFontMetrics(row.font).elidedText(name, Qt::ElideMiddle, text.width()));
        painter->restore();
    }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex&) const override {
        auto* line = new QLineEdit(parent);
        line->setPalette(QApplication::palette());  // selected text as in other fields
        line->setAccessibleName(FolderTree::tr("Name of the folder"));
        tree_.typingStarted();
        return line;
    }

  private:
    FolderTree& tree_;
};

}  // namespace

FolderTree::FolderTree(QWidget* parent) : QTreeView(parent) {
    setItemDelegate(new FolderDelegate(*this));
    setHeaderHidden(true);
    setFrameShape(QFrame::NoFrame);
    setUniformRowHeights(true);
    setIndentation(14);
    setIconSize({iconSide, iconSide});
    setEditTriggers(NoEditTriggers);
    setExpandsOnDoubleClick(true);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideMiddle);
}

void FolderTree::setLook(const QColor& dimmed, const QIcon& eject) {
    dimmed_ = dimmed;
    eject_ = eject;
    viewport()->update();
}

QRect FolderTree::ejectRect(const QRect& row, Qt::LayoutDirection direction) {
    const QRect atItsEnd(row.right() - margin - iconSide, row.center().y() - iconSide / 2, iconSide, iconSide);
    return QStyle::visualRect(direction, row, atItsEnd);
}

QModelIndex FolderTree::ejectAt(const QPoint& where) const {
    const QModelIndex index = indexAt(where);
    const bool hit = index.isValid() && index.data(FolderTreeModel::ejectableRole).toBool() &&
                     ejectRect(visualRect(index), layoutDirection()).adjusted(-3, -3, 3, 3).contains(where);
    return hit ? index : QModelIndex();
}

QAction* FolderTree::actionFor(const QKeyEvent& key) const {
    const auto pressed = QKeySequence(key.keyCombination());
    for (QAction* action : hooks_.actions()) {
        if (action->shortcut() == pressed) return action;
    }
    return nullptr;
}

bool FolderTree::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && !isTyping() && hooks_.actions) {
        // Here these keys are the tree's, whatever the window's menus use them for.
        if (actionFor(*static_cast<QKeyEvent*>(event)) != nullptr) {
            event->accept();
            return true;
        }
    }
    return QTreeView::event(event);
}

bool FolderTree::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        auto* help = static_cast<QHelpEvent*>(event);
        if (ejectAt(help->pos()).isValid()) {
            QToolTip::showText(help->globalPos(), tr("Eject (%1)").arg(keyText(KeyId::ejectVolume)), this);
            return true;
        }
    }
    return QTreeView::viewportEvent(event);
}

void FolderTree::keyPressEvent(QKeyEvent* event) {
    if (movesAbout(event->key())) hooks_.touched();
    if ((event->key() == Qt::Key_Enter || event->key() == Qt::Key_Return) && state() == EditingState) {
        // It ends the typing of a name, and goes on to here.
        event->accept();
    } else if (event->key() == Qt::Key_Enter) {
        hooks_.open(currentIndex());
    } else if (QAction* action = actionFor(*event)) {
        action->trigger();  // does nothing while it is disabled
    } else {
        QTreeView::keyPressEvent(event);
    }
}

void FolderTree::mousePressEvent(QMouseEvent* event) {
    hooks_.touched();
    pressed_ = event->button() == Qt::LeftButton ? ejectAt(event->position().toPoint()) : QModelIndex();
    if (!pressed_.isValid()) QTreeView::mousePressEvent(event);
}

void FolderTree::mouseReleaseEvent(QMouseEvent* event) {
    const QPoint where = event->position().toPoint();
    if (pressed_.isValid()) {
        const QModelIndex index = std::exchange(pressed_, QPersistentModelIndex());
        if (ejectAt(where) == index) hooks_.eject(index);
        return;
    }
    QTreeView::mouseReleaseEvent(event);
    // Not on the arrow, which only unfolds.
    const QModelIndex index = indexAt(where);
    if (event->button() == Qt::LeftButton && event->modifiers() == Qt::NoModifier && index.isValid() &&
        visualRect(index).contains(where) && index == currentIndex() && !isTyping()) {
        hooks_.open(index);
    }
}

void FolderTree::rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) {
    // Of a folder that goes the one is left in which it lay. Its neighbour, which views mark by themselves, would be
    // the next to be moved to the trash.
    for (QModelIndex at = currentIndex(); at.isValid(); at = at.parent()) {
        if (at.parent() != parent || at.row() < first || at.row() > last) continue;
        selectionModel()->setCurrentIndex(parent, QItemSelectionModel::ClearAndSelect);
        if (!parent.isValid()) selectionModel()->clear();
        break;
    }
    QTreeView::rowsAboutToBeRemoved(parent, first, last);
}

void FolderTree::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    QTreeView::closeEditor(editor, hint);
    hooks_.typing(false);
}

}  // namespace dravik
