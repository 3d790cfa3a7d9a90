#include "ui/manual_page_view.h"

#include <QFontDatabase>
#include <QImage>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextTable>
#include <algorithm>
#include <utility>

namespace dravik {
namespace {

constexpr int pageMargin = 24;

/// The look of the blocks that stand in a text as they are typed in.
void shapeCode(QTextCursor& cursor, const QTextBlock& block, const QColor& ground) {
    QTextBlockFormat format = block.blockFormat();
    const auto isCode = [](const QTextBlock& other) {
        return other.isValid() && other.blockFormat().hasProperty(QTextFormat::BlockCodeFence);
    };
    format.setBackground(ground);
    format.setLeftMargin(0);
    format.setTopMargin(isCode(block.previous()) ? 0 : 8);
    format.setBottomMargin(isCode(block.next()) ? 0 : 8);
    cursor.setBlockFormat(format);
}

void shapeTable(QTextTable& table, const QColor& line) {
    QTextTableFormat format = table.format();
    format.setBorder(0);
    format.setCellPadding(5);
    format.setCellSpacing(0);
    format.setTopMargin(6);
    format.setBottomMargin(10);
    format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
    table.setFormat(format);
    for (int row = 0; row < table.rows(); ++row) {
        for (int column = 0; column < table.columns(); ++column) {
            QTextTableCell cell = table.cellAt(row, column);
            QTextTableCellFormat look = cell.format().toTableCellFormat();
            look.setBottomBorder(1);
            look.setBottomBorderBrush(line);
            look.setBottomBorderStyle(QTextFrameFormat::BorderStyle_Solid);
            cell.setFormat(look);
        }
    }
}

}  // namespace

ManualPageView::ManualPageView(const Theme& theme, QWidget* parent) : QTextBrowser(parent), theme_(theme) {
    setFrameShape(QFrame::NoFrame);
    setOpenLinks(false);
    document()->setDocumentMargin(pageMargin);
    connect(this, &QTextBrowser::sourceChanged, this, &ManualPageView::shape);
    connect(&theme_, &Theme::changed, this, &QTextBrowser::reload);
}

QVariant ManualPageView::loadResource(int type, const QUrl& name) {
    if (type != QTextDocument::ImageResource) return QTextBrowser::loadResource(type, name);
    const QImage drawn(u':' + source().resolved(name).path());
    if (drawn.isNull()) return {};
    constexpr int drawnScale = 2;  // two points a pixel
    const int wanted = std::min(pictureWidth(), drawn.width() / drawnScale);
    const qreal scale = devicePixelRatioF();
    // The few colours of the file are not enough for a smaller picture.
    QImage picture = drawn.convertToFormat(QImage::Format_RGB32)
                         .scaledToWidth(static_cast<int>(wanted * scale), Qt::SmoothTransformation);
    picture.setDevicePixelRatio(scale);
    return picture;
}

int ManualPageView::pictureWidth() const {
    constexpr int least = 100;
    const int room = std::min(columnWidth, width() - verticalScrollBar()->sizeHint().width());
    return std::max(least, room - 2 * pageMargin);
}

void ManualPageView::resizeEvent(QResizeEvent* event) {
    const int room = width() - verticalScrollBar()->sizeHint().width() - columnWidth;
    const int margin = std::max(0, room / 2);
    setViewportMargins(margin, 0, margin, 0);
    QTextBrowser::resizeEvent(event);
    if (std::exchange(picturesFor_, pictureWidth()) == pictureWidth() || source().isEmpty()) return;
    const int place = verticalScrollBar()->value();
    reload();
    verticalScrollBar()->setValue(place);
}

void ManualPageView::shape() {
    const QColor text = palette().color(QPalette::Text);
    QColor line = text, ground = text;
    line.setAlphaF(0.18F);
    ground.setAlphaF(0.07F);
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        cursor.setPosition(block.position());
        QTextBlockFormat format = block.blockFormat();
        if (format.hasProperty(QTextFormat::BlockCodeFence)) {
            shapeCode(cursor, block, ground);
            continue;
        }
        format.setLineHeight(135, QTextBlockFormat::ProportionalHeight);
        if (format.headingLevel() == 1) format.setBottomMargin(10);
        if (format.headingLevel() > 1) {
            format.setTopMargin(18);
            format.setBottomMargin(4);
        }
        const bool isPicture = block.text() == QChar(QChar::ObjectReplacementCharacter);
        if (isPicture) {
            // Its height is not to be stretched as that of a line of text is.
            format.setLineHeight(100, QTextBlockFormat::ProportionalHeight);
            format.setTopMargin(8);
            format.setBottomMargin(14);
        }
        cursor.setBlockFormat(format);
    }
    for (QTextFrame* frame : document()->rootFrame()->childFrames()) {
        if (auto* table = qobject_cast<QTextTable*>(frame)) shapeTable(*table, line);
    }
    cursor.endEditBlock();
    moveCursor(QTextCursor::Start);
}

}  // namespace dravik
