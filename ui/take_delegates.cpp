#include "ui/take_delegates.h"

#include "app/text.h"
#include "model/wave/timecode.h"
#include "ui/colours.h"
#include "ui/list_looks.h"
#include "ui/metrics.h"
#include "ui/shortcuts.h"
#include "ui/take_table_model.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QTimer>
#include <QToolTip>
#include <algorithm>

namespace dravik {
namespace {

using metrics::cellPadding;
constexpr double flagRadius = 4.5;
constexpr int warningSign = 12;  ///< width and height

TakeColumn columnOf(const QModelIndex& index) { return static_cast<TakeColumn>(index.column()); }

/// A triangle with an exclamation mark, as high as a small letter's line.
void paintWarning(QPainter& painter, const QRect& place, const QColor& colour) {
    const QPointF centre = QRectF(place).center();
    constexpr double half = warningSign / 2.0;
    QPainterPath triangle;
    triangle.moveTo(centre + QPointF(0, -half + 0.5));
    triangle.lineTo(centre + QPointF(half - 0.5, half - 1));
    triangle.lineTo(centre + QPointF(-half + 0.5, half - 1));
    triangle.closeSubpath();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(triangle);
    painter.drawLine(centre + QPointF(0, -1.5), centre + QPointF(0, 1.5));
    painter.drawPoint(centre + QPointF(0, 3.4));
    painter.setRenderHint(QPainter::Antialiasing, false);
}

Qt::Alignment alignmentOf(TakeColumn column) {
    return Qt::AlignVCenter | (isNumberColumn(column) ? Qt::AlignRight : Qt::AlignLeft);
}

}  // namespace

TakeDelegate::TakeDelegate(const Theme& theme, QObject* parent) : QStyledItemDelegate(parent), theme_(theme) {}

// --- Looks ---------------------------------------------------------------------------------------------------------

QSize TakeDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const int sign = index.data(TakeTableModel::DamagedRole).toBool() ? warningSign + cellPadding : 0;
    const int width = option.fontMetrics.horizontalAdvance(index.data().toString()) + sign + 2 * cellPadding + 2;
    return {width, std::max(metrics::rowHeight, option.fontMetrics.height() + 6)};
}

void TakeDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QPalette& palette = option.palette;
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const auto group = option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    const TakeColumn column = columnOf(index);
    const QColor background = palette.color(group, selected ? QPalette::Highlight : QPalette::Base);

    painter->save();
    if (selected) painter->fillRect(option.rect, background);

    const bool member = index.data(TakeTableModel::MemberRole).toBool();
    const bool readOnly = index.data(TakeTableModel::ReadOnlyRole).toBool();
    const bool pending = index.data(TakeTableModel::PendingRole).toBool();
    const bool isMixed = index.data(TakeTableModel::MixedRole).toBool();
    QColor colour = palette.color(group, QPalette::Text);
    // What is only told stands back behind what is edited.
    if (!fieldOf(column)) colour = mixed(background, colour, 0.72);
    if (readOnly || member || isMixed) colour = legibleOn(background, theme_.dimmed());
    if (pending) colour = legibleOn(background, theme_.pending());

    const QVariant flag = index.data(TakeTableModel::FlagRole);
    if (flag.isValid()) {
        paintFlag(*painter, option.rect, colour, index, option.state.testFlag(QStyle::State_MouseOver));
    } else {
        QFont font = option.font;
        font.setItalic(isMixed);
        if (column == TakeColumn::name && isLoaded && isLoaded(index)) font.setBold(true);
        painter->setFont(font);
        painter->setPen(colour);
        QRect inside = option.rect.adjusted(cellPadding, 0, -cellPadding, 0);
        if (index.data(TakeTableModel::DamagedRole).toBool()) {
            const int place = warningSign + cellPadding;
            const QRect sign(inside.left(), inside.top(), warningSign, inside.height());
            paintWarning(*painter, QStyle::visualRect(option.direction, inside, sign),
                         legibleOn(background, theme_.error()));
            inside = QStyle::visualRect(option.direction, inside, inside.adjusted(place, 0, 0, 0));
            painter->setPen(colour);
        }
        const QFontMetrics metrics(font);
        const QString text = index.data().toString().replace(QLatin1Char('\n'), QLatin1Char(' '));
        painter->drawText(inside, textFlags(alignmentOf(column), option.direction, text) | Qt::TextSingleLine,
                          metrics.elidedText(text, Qt::ElideRight, inside.width()));
    }
    if (pending) {
        // A folded corner, so that the mark does not hang on the colour alone.
        constexpr int corner = 6;
        const QPoint top = option.rect.topRight() + QPoint(1, 0);
        QPainterPath path(top);
        path.lineTo(top + QPoint(-corner, 0));
        path.lineTo(top + QPoint(0, corner));
        painter->setRenderHint(QPainter::Antialiasing);
        painter->fillPath(path, theme_.pending());
        painter->setRenderHint(QPainter::Antialiasing, false);
    }
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        painter->setPen(QPen(theme_.accent(), 1));
        painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
    }
    painter->restore();
}

void TakeDelegate::paintFlag(QPainter& painter, const QRect& cell, const QColor& colour, const QModelIndex& index,
                             bool hovered) const {
    const QPointF centre = QRectF(cell).center();
    const bool set = index.data(TakeTableModel::FlagRole).toBool();
    painter.setRenderHint(QPainter::Antialiasing);
    if (index.data(TakeTableModel::MixedRole).toBool()) {
        painter.setPen(QPen(colour, 1.6, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(centre - QPointF(3.5, 0), centre + QPointF(3.5, 0));
    } else if (columnOf(index) == TakeColumn::circled) {
        if (set || hovered) {
            painter.setOpacity(set ? 1 : 0.3);
            painter.setPen(QPen(colour, set ? 2 : 1.4));
            painter.drawEllipse(centre, flagRadius, flagRadius);
        }
    } else if (set || hovered) {
        painter.setOpacity(set ? 1 : 0.3);
        QFont font = painter.font();
        font.setBold(true);
        painter.setFont(font);
        painter.setPen(colour);
        painter.drawText(cell, Qt::AlignCenter, tr("W"));
    }
    painter.setOpacity(1);
    painter.setRenderHint(QPainter::Antialiasing, false);
}

bool TakeDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                             const QModelIndex& index) {
    if (event->type() == QEvent::ToolTip && index.isValid() && index.data(Qt::ToolTipRole).toString().isEmpty()) {
        // What does not fit is told whole.
        const QString text = index.data().toString();
        const bool fits = option.fontMetrics.horizontalAdvance(text) <= option.rect.width() - 2 * cellPadding;
        QToolTip::showText(event->globalPos(), fits ? QString() : text, view);
        return true;
    }
    return QStyledItemDelegate::helpEvent(event, view, option, index);
}

// --- Editing -------------------------------------------------------------------------------------------------------

QWidget* TakeDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const {
    const TakeColumn column = columnOf(index);
    edited_ = index;
    initial_ = index.data(Qt::EditRole).toString();
    filled_ = false;
    emit editorOpened();
    QWidget* editor = nullptr;
    if (column == TakeColumn::fps) {
        auto* rates = new QComboBox(parent);
        for (const std::string_view label : framerateLabels)
            rates->addItem(toQt(label));
        // Chosen from the list; stepping through the closed box with the arrows is not yet a choice.
        connect(rates, &QComboBox::activated, this, [this, rates] { finish(rates, CellMove::stay, false); });
        // Opened with the mouse, it is chosen from with the mouse.
        if (QApplication::mouseButtons() != Qt::NoButton) QTimer::singleShot(0, rates, &QComboBox::showPopup);
        editor = rates;
    } else {
        auto* line = new QLineEdit(parent);
        line->setFrame(false);
        line->setTextMargins(cellPadding - 2, 0, cellPadding - 2, 0);  // the line itself keeps 2 px
        line->setAlignment(alignmentOf(column));
        line->setAcceptDrops(false);
        connect(line, &QLineEdit::textEdited, this, [this, line](const QString& text) {
            // Once it was refused, it is told at once when it is right.
            const bool wasWrong = line->property("wrong").toBool();
            if (wasWrong && check(edited_, text).isEmpty()) showProblem(line, {});
        });
        editor = line;
    }
    editor->setAutoFillBackground(true);
    editor->setPalette(QApplication::palette());  // selected text as in other fields, not as rows are selected
    editor->setFont(option.font);
    editor->setAccessibleName(columnTitle(column));
    return editor;
}

void TakeDelegate::destroyEditor(QWidget* editor, const QModelIndex& index) const {
    edited_ = QPersistentModelIndex();
    emit editorClosed();
    QStyledItemDelegate::destroyEditor(editor, index);
}

void TakeDelegate::setEditorData(QWidget* editor, const QModelIndex&) const {
    if (filled_) return;
    filled_ = true;
    if (auto* line = qobject_cast<QLineEdit*>(editor)) {
        line->setText(initial_);
        line->selectAll();
    } else if (auto* rates = qobject_cast<QComboBox*>(editor)) {
        rates->setCurrentIndex(rates->findText(initial_));
    }
}

QString TakeDelegate::textIn(const QWidget* editor) {
    if (const auto* line = qobject_cast<const QLineEdit*>(editor)) return line->text();
    if (const auto* rates = qobject_cast<const QComboBox*>(editor)) return rates->currentText();
    return {};
}

bool TakeDelegate::wasTouched(const QWidget* editor) const {
    const auto* line = qobject_cast<const QLineEdit*>(editor);
    // Typed and taken back is a value as well: it empties a mixed cell.
    return line != nullptr && edited_.data(TakeTableModel::MixedRole).toBool() ? line->isModified()
                                                                               : textIn(editor) != initial_;
}

void TakeDelegate::finish(QWidget* editor, CellMove move, bool toAll) const {
    const QModelIndex index = edited_;
    const QString text = textIn(editor);
    if (index.isValid() && (toAll || wasTouched(editor))) {
        if (const QString why = check(index, text); !why.isEmpty()) {
            showProblem(editor, why);
            return;
        }
        edited_ = QPersistentModelIndex();  // losing the focus does not write it once more
        emit committed(index, text, toAll);
    }
    edited_ = QPersistentModelIndex();
    emit left(editor, index, move);
}

void TakeDelegate::setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const {
    if (!edited_.isValid() || !wasTouched(editor)) return;
    const QString text = textIn(editor);
    edited_ = QPersistentModelIndex();
    if (const QString why = check(index, text); !why.isEmpty()) {
        emit dropped(why);
    } else {
        emit committed(index, text, false);
    }
}

void TakeDelegate::showProblem(QWidget* editor, const QString& why) const {
    editor->setProperty("wrong", !why.isEmpty());
    QPalette palette = QApplication::palette();
    if (!why.isEmpty()) {
        const QColor base = mixed(palette.color(QPalette::Base), theme_.error(), 0.2);
        palette.setColor(QPalette::Base, base);
        palette.setColor(QPalette::Text, legibleOn(base, theme_.error()));
    }
    editor->setPalette(palette);
    editor->setToolTip(why);
    editor->setAccessibleDescription(why);
    if (why.isEmpty()) {
        QToolTip::hideText();
    } else {
        QToolTip::showText(editor->mapToGlobal(QPoint(0, editor->height())), why, editor);
    }
}

void TakeDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option, const QModelIndex&) const {
    QRect place = option.rect;
    if (qobject_cast<QComboBox*>(editor) != nullptr)
        place.setWidth(std::max(place.width(), editor->sizeHint().width()));
    editor->setGeometry(place);
}

bool TakeDelegate::eventFilter(QObject* object, QEvent* event) {
    auto* editor = qobject_cast<QWidget*>(object);
    if (editor == nullptr || event->type() != QEvent::KeyPress) return QStyledItemDelegate::eventFilter(object, event);
    const std::optional<KeyId> key = keyIn(KeyContext::cell, *static_cast<QKeyEvent*>(event));
    if (!key) return QStyledItemDelegate::eventFilter(object, event);
    switch (*key) {
        case KeyId::commitDown:
            finish(editor, CellMove::down, false);
            return true;
        case KeyId::commitUp:
            finish(editor, CellMove::up, false);
            return true;
        case KeyId::commitToAll:
            finish(editor, CellMove::stay, true);
            return true;
        case KeyId::commitNext:
            finish(editor, CellMove::next, false);
            return true;
        case KeyId::commitPrevious:
            finish(editor, CellMove::previous, false);
            return true;
        case KeyId::leaveCell: {
            const QModelIndex index = edited_;
            edited_ = QPersistentModelIndex();
            emit left(editor, index, CellMove::stay);
            return true;
        }
        default:
            return QStyledItemDelegate::eventFilter(object, event);
    }
}

}  // namespace dravik
