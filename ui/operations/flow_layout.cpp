#include "ui/operations/flow_layout.h"

#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace dravik {

FlowLayout::FlowLayout(int horizontalGap, int verticalGap, QWidget* parent)
    : QLayout(parent), horizontalGap_(horizontalGap), verticalGap_(verticalGap) {
    setContentsMargins({});
}

FlowLayout::~FlowLayout() = default;

void FlowLayout::arrange(const std::vector<QWidget*>& order) {
    const auto place = [&](const std::unique_ptr<QLayoutItem>& item) {
        return std::find(order.begin(), order.end(), item->widget()) - order.begin();
    };
    std::stable_sort(items_.begin(), items_.end(), [&](const auto& a, const auto& b) { return place(a) < place(b); });
    invalidate();
}

void FlowLayout::addItem(QLayoutItem* item) { items_.emplace_back(item); }

QLayoutItem* FlowLayout::itemAt(int index) const {
    return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
    if (index < 0 || index >= count()) return nullptr;
    std::unique_ptr<QLayoutItem> taken = std::move(items_[static_cast<std::size_t>(index)]);
    items_.erase(items_.begin() + index);
    invalidate();
    return taken.release();  // the caller's, as layouts have it
}

int FlowLayout::heightForWidth(int width) const { return lay(QRect(0, 0, width, 0), false); }

void FlowLayout::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    lay(rect, true);
}

QSize FlowLayout::minimumSize() const {
    QSize least;
    for (const std::unique_ptr<QLayoutItem>& item : items_)
        least = least.expandedTo(item->minimumSize());
    return least.grownBy(contentsMargins());
}

int FlowLayout::lay(const QRect& rect, bool place) const {
    const QRect room = rect.marginsRemoved(contentsMargins());
    const Qt::LayoutDirection direction =
        parentWidget() != nullptr ? parentWidget()->layoutDirection() : Qt::LeftToRight;
    int x = room.left(), y = room.top(), lineHeight = 0;
    for (const std::unique_ptr<QLayoutItem>& item : items_) {
        if (item->isEmpty()) continue;
        QSize size = item->sizeHint();
        size.setWidth(std::max(std::min(size.width(), room.width()), item->minimumSize().width()));
        if (lineHeight > 0 && x + size.width() > room.left() + room.width()) {
            x = room.left();
            y += lineHeight + verticalGap_;
            lineHeight = 0;
        }
        if (place) item->setGeometry(QStyle::visualRect(direction, rect, QRect(QPoint(x, y), size)));
        x += size.width() + horizontalGap_;
        lineHeight = std::max(lineHeight, size.height());
    }
    return y + lineHeight - rect.top() + contentsMargins().bottom();
}

}  // namespace dravik
