#include "ui/list_looks.h"

#include "ui/colours.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>
#include <algorithm>

namespace dravik {

ListHeader::ListHeader(int padding, QWidget* parent) : QHeaderView(Qt::Horizontal, parent), padding_(padding) {
    setFocusPolicy(Qt::NoFocus);
    setHighlightSections(false);
    setMinimumSectionSize(24);
    setFont(metrics::smallFont(*this));
}

QSize ListHeader::sizeHint() const { return {QHeaderView::sizeHint().width(), metrics::headerHeight}; }

void ListHeader::paintSection(QPainter* painter, const QRect& rect, int section) const {
    const QPalette& colours = palette();
    const QColor line = colours.color(QPalette::Mid);
    const bool sorted = isSortIndicatorShown() && sortIndicatorSection() == section;
    painter->fillRect(rect, colours.color(QPalette::Window));
    painter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), line);
    // Where a column can be made wider.
    if (sectionResizeMode(section) == Interactive) {
        const int end = layoutDirection() == Qt::RightToLeft ? rect.left() : rect.right();
        painter->fillRect(QRect(end, rect.top() + 5, 1, rect.height() - 10), line);
    }
    QRect text = rect.adjusted(padding_, 0, -padding_, 0);
    painter->setPen(colours.color(sorted ? QPalette::WindowText : QPalette::PlaceholderText));
    if (sorted) {
        constexpr int arrow = 7;
        const bool up = sortIndicatorOrder() == Qt::AscendingOrder;
        const int middle = rect.center().y();
        const int tip = middle + (up ? -2 : 2);
        const int foot = middle + (up ? 2 : -2);
        const bool mirrored = layoutDirection() == Qt::RightToLeft;
        const int right = mirrored ? rect.left() + 4 + arrow : rect.right() - 4;
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setBrush(painter->pen().color());
        painter->drawPolygon(QPolygon({{right - arrow, foot}, {right, foot}, {right - arrow / 2, tip}}));
        painter->setRenderHint(QPainter::Antialiasing, false);
        mirrored ? text.setLeft(right + 3) : text.setRight(right - arrow - 3);
    }
    painter->setFont(metrics::smallFont(*this));
    const QVariant alignment = model()->headerData(section, orientation(), Qt::TextAlignmentRole);
    const int flags = alignment.isValid() ? alignment.toInt() : int(Qt::AlignLeft | Qt::AlignVCenter);
    const QString title = model()->headerData(section, orientation(), Qt::DisplayRole).toString();
    painter->drawText(text, flags | Qt::TextSingleLine,
                      painter->fontMetrics().elidedText(title, Qt::ElideRight, text.width()));
}

void makeDense(QTableView& table, const Theme& theme, const QString& accessibleName,
               std::initializer_list<int> widths) {
    auto* header = new ListHeader(metrics::listPadding, &table);
    table.setHorizontalHeader(header);
    header->setStretchLastSection(true);
    header->setSectionResizeMode(QHeaderView::Fixed);
    int column = 0;
    for (const int width : widths) {
        // For English these are the widths; a title of another language may need more.
        const QString title = table.model()->headerData(column, Qt::Horizontal).toString();
        const int needed = header->fontMetrics().horizontalAdvance(title) + 2 * metrics::listPadding;
        header->resizeSection(column++, std::max(width, needed));
    }
    table.setAccessibleName(accessibleName);
    table.verticalHeader()->hide();
    table.verticalHeader()->setMinimumSectionSize(metrics::rowHeight);
    table.verticalHeader()->setDefaultSectionSize(metrics::rowHeight);
    table.setShowGrid(false);
    table.setFrameShape(QFrame::NoFrame);
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setSelectionMode(QAbstractItemView::ExtendedSelection);
    table.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    table.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table.setWordWrap(false);
    table.setTabKeyNavigation(false);
    table.setPalette(listPalette(theme));
    QObject::connect(&theme, &Theme::changed, &table, [&table, &theme] { table.setPalette(listPalette(theme)); });
}

QPalette listPalette(const Theme& theme) {
    QPalette palette = QApplication::palette();
    const QColor base = palette.color(QPalette::Base);
    const QColor text = palette.color(QPalette::Text);
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
        palette.setColor(group, QPalette::HighlightedText, text);
    palette.setColor(QPalette::Active, QPalette::Highlight, mixed(base, theme.accent(), 0.24));
    palette.setColor(QPalette::Inactive, QPalette::Highlight, mixed(base, text, 0.13));
    return palette;
}

int textFlags(Qt::Alignment alignment, Qt::LayoutDirection direction, const QString& text) {
    const Qt::Alignment side = QStyle::visualAlignment(direction, alignment) | Qt::AlignAbsolute;
    return static_cast<int>(side) | (text.isRightToLeft() ? Qt::TextForceRightToLeft : Qt::TextForceLeftToRight);
}

QString inItsOwnDirection(const QString& text, Qt::LayoutDirection direction) {
    if (text.isEmpty() || text.isRightToLeft() == (direction == Qt::RightToLeft)) return text;
    constexpr QChar firstStrongIsolate(0x2068), popDirectionalIsolate(0x2069);
    return firstStrongIsolate + text + popDirectionalIsolate;
}

void stopListeningToChildren(QObject& widget) {
    for (QObject* child : widget.findChildren<QObject*>())
        child->disconnect(&widget);
}

}  // namespace dravik
