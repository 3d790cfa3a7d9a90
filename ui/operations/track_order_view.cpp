#include "ui/operations/track_order_view.h"

#include "ui/list_looks.h"
#include "ui/operations/row_delegate.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <numeric>

namespace dravik {

void TrackOrderModel::show(std::vector<TrackName> tracks, std::vector<int> order) {
    if (tracks == tracks_ && order == order_) return;
    const bool sameCount = tracks.size() == tracks_.size();
    if (!sameCount) beginResetModel();
    tracks_ = std::move(tracks);
    order_ = std::move(order);
    if (!sameCount) {
        endResetModel();
    } else if (rowCount() > 0) {
        emit dataChanged(index(0, 0), index(rowCount() - 1, before));
    }
}

bool TrackOrderModel::isOriginal() const { return std::is_sorted(order_.begin(), order_.end()); }

void TrackOrderModel::restore() {
    if (isOriginal()) return;
    std::sort(order_.begin(), order_.end());
    emit dataChanged(index(0, 0), index(rowCount() - 1, before));
    emit orderChanged();
}

void TrackOrderModel::move(int from, int to) {
    if (from == to || from < 0 || to < 0 || from >= rowCount() || to >= rowCount()) return;
    if (!beginMoveRows({}, from, from, {}, to > from ? to + 1 : to)) return;
    const auto at = [this](int place) { return order_.begin() + place; };
    from < to ? std::rotate(at(from), at(from + 1), at(to + 1)) : std::rotate(at(to), at(from), at(from + 1));
    endMoveRows();
    // Every row in between has another number.
    emit dataChanged(index(std::min(from, to), 0), index(std::max(from, to), before));
    emit orderChanged();
}

int TrackOrderModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(order_.size());
}

QVariant TrackOrderModel::data(const QModelIndex& at, int role) const {
    const int source = order_.at(static_cast<std::size_t>(at.row()));
    const TrackName& track = tracks_.at(static_cast<std::size_t>(source));
    const bool moved = source != at.row();
    switch (role) {
        case Qt::DisplayRole:
            if (at.column() == position) return at.row() + 1;
            if (at.column() == name) return track.label();
            return moved ? tr("was %1").arg(track.numero) : QString();
        case Qt::DecorationRole:
            return at.column() == position ? QVariant(theme_.icon(QStringLiteral("grip"))) : QVariant();
        case Qt::TextAlignmentRole:
            return int((at.column() == name ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
        case Qt::ForegroundRole:
            if (at.column() == before) return theme_.pendingText();
            return at.column() == position || track.nom.isEmpty() ? QVariant(theme_.dimmed()) : QVariant();
        case Qt::ToolTipRole:
            return tr("%1\nDrag to reorder, or Alt+Up and Alt+Down").arg(track.text());
        case Qt::AccessibleTextRole:
            if (at.column() != name) return {};
            if (moved) return tr("%1 %2, was %3").arg(at.row() + 1).arg(track.label()).arg(track.numero);
            return QStringLiteral("%1 %2").arg(at.row() + 1).arg(track.label());
        default:
            return {};
    }
}

QVariant TrackOrderModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return {};
    if (role == Qt::TextAlignmentRole)
        return int((section == position ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    if (role != Qt::DisplayRole) return {};
    const QString titles[] = {QStringLiteral("#"), tr("Name"), QString()};
    return titles[section];
}

TrackOrderView::TrackOrderView(TrackOrderModel& model, const Theme& theme, QWidget* parent)
    : QTableView(parent), model_(model), theme_(theme) {
    constexpr int positionWidth = 46, beforeWidth = 64;
    setModel(&model);
    makeDense(*this, theme, tr("Order of the tracks"), {positionWidth});
    setItemDelegate(new RowDelegate(-1, this));
    horizontalHeader()->setStretchLastSection(false);
    horizontalHeader()->setSectionResizeMode(TrackOrderModel::name, QHeaderView::Stretch);
    horizontalHeader()->resizeSection(TrackOrderModel::before, beforeWidth);
    setFrameShape(QFrame::StyledPanel);
    setIconSize({metrics::iconSide, metrics::iconSide});
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    viewport()->setCursor(Qt::OpenHandCursor);
}

void TrackOrderView::moveCurrent(int by) {
    const int from = currentIndex().row();
    if (from < 0) return;
    model_.move(from, from + by);  // the current index goes with it
    scrollTo(currentIndex());
}

bool TrackOrderView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = static_cast<QKeyEvent&>(*event);
        if (key.modifiers() == Qt::AltModifier && (key.key() == Qt::Key_Up || key.key() == Qt::Key_Down)) {
            event->accept();
            return true;
        }
    }
    return QTableView::event(event);
}

void TrackOrderView::keyPressEvent(QKeyEvent* event) {
    const bool up = event->key() == Qt::Key_Up, down = event->key() == Qt::Key_Down;
    if (gap_ && event->key() == Qt::Key_Escape) {
        endDrag();
    } else if ((up || down) && (event->modifiers() & Qt::AltModifier)) {
        moveCurrent(up ? -1 : 1);
    } else {
        QTableView::keyPressEvent(event);
    }
}

void TrackOrderView::mousePressEvent(QMouseEvent* event) {
    QTableView::mousePressEvent(event);
    pressed_ = event->position().toPoint();
    pressedRow_ = event->button() == Qt::LeftButton ? indexAt(pressed_).row() : -1;
}

void TrackOrderView::mouseMoveEvent(QMouseEvent* event) {
    // Not the base's, which would select what the mouse goes over.
    if (pressedRow_ < 0 || !(event->buttons() & Qt::LeftButton)) return;
    const QPoint at = event->position().toPoint();
    if (!gap_ && (at - pressed_).manhattanLength() < QApplication::startDragDistance()) return;
    viewport()->setCursor(Qt::ClosedHandCursor);
    QScrollBar& bar = *verticalScrollBar();
    if (at.y() < metrics::rowHeight / 2) bar.setValue(bar.value() - metrics::rowHeight / 2);
    if (at.y() > viewport()->height() - metrics::rowHeight / 2) bar.setValue(bar.value() + metrics::rowHeight / 2);
    gap_ = gapAt(at.y());
    viewport()->update();
}

void TrackOrderView::mouseReleaseEvent(QMouseEvent* event) {
    QTableView::mouseReleaseEvent(event);
    if (gap_ && event->button() == Qt::LeftButton) {
        const int from = pressedRow_;
        const int to = *gap_ > from ? *gap_ - 1 : *gap_;
        endDrag();
        model_.move(from, to);
    }
    pressedRow_ = -1;
}

void TrackOrderView::focusOutEvent(QFocusEvent* event) {
    QTableView::focusOutEvent(event);
    endDrag();
}

int TrackOrderView::gapAt(int y) const {
    for (int row = 0; row < model_.rowCount(); ++row) {
        if (y < rowViewportPosition(row) + rowHeight(row) / 2) return row;
    }
    return model_.rowCount();
}

void TrackOrderView::endDrag() {
    gap_.reset();
    pressedRow_ = -1;
    viewport()->setCursor(Qt::OpenHandCursor);
    viewport()->update();
}

void TrackOrderView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (!gap_) return;
    constexpr int thickness = 2;
    const int last = model_.rowCount() - 1;
    const int y = *gap_ <= last ? rowViewportPosition(*gap_) : rowViewportPosition(last) + rowHeight(last);
    QPainter painter(viewport());
    painter.fillRect(QRect(0, std::max(0, y - thickness / 2), viewport()->width(), thickness), theme_.accent());
}

}  // namespace dravik
