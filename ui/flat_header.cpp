#include "ui/flat_header.h"

#include <QPainter>

namespace dravik {
namespace {

constexpr int headerHeight = 20;
constexpr int rowHeight = 22;
constexpr int textPixels = 11;
constexpr int margin = 3;  // as the cells have it

}  // namespace

FlatHeader::FlatHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setFocusPolicy(Qt::NoFocus);
    setHighlightSections(false);
    setStretchLastSection(true);
    setMinimumSectionSize(24);
}

QSize FlatHeader::sizeHint() const { return {QHeaderView::sizeHint().width(), headerHeight}; }

void FlatHeader::paintSection(QPainter* painter, const QRect& rect, int section) const {
    painter->fillRect(rect, palette().color(QPalette::Base));
    painter->setPen(palette().color(QPalette::Mid));
    painter->drawLine(rect.bottomLeft(), rect.bottomRight());
    QFont small = font();
    small.setPixelSize(textPixels);
    painter->setFont(small);
    painter->setPen(palette().color(QPalette::PlaceholderText));
    const QVariant alignment = model()->headerData(section, orientation(), Qt::TextAlignmentRole);
    const int flags = alignment.isValid() ? alignment.toInt() : int(Qt::AlignLeft | Qt::AlignVCenter);
    painter->drawText(rect.adjusted(margin, 0, -margin, 0), flags,
                      model()->headerData(section, orientation(), Qt::DisplayRole).toString());
}

void makeDense(QTableView& table) {
    table.setHorizontalHeader(new FlatHeader(&table));
    table.verticalHeader()->hide();
    table.verticalHeader()->setMinimumSectionSize(rowHeight);
    table.verticalHeader()->setDefaultSectionSize(rowHeight);
    table.setShowGrid(false);
    table.setFrameShape(QFrame::NoFrame);
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setSelectionMode(QAbstractItemView::ExtendedSelection);
    table.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    table.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table.setWordWrap(false);
    table.setTabKeyNavigation(false);
}

}  // namespace dravik
