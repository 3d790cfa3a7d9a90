#include "report/pdf/pdf_report.h"

#include "base/error.h"
#include "report/pdf/report_fonts.h"
#include "report/report_layout.h"

#include <QBuffer>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

namespace dravik {
namespace {

QString toQt(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

QColor colourOf(Grey grey) {
    return QColor::fromRgbF(static_cast<float>(grey), static_cast<float>(grey), static_cast<float>(grey));
}

/// "Sound Report" in the title bar of a viewer, rather than a file name.
QString titleOf(const ReportDocument& document) {
    return toQt(oneLine(document.title + (document.subject.empty() ? "" : " - ") + document.subject));
}

void paint(const ReportPage& page, const ReportFonts& fonts, QPainter& painter) {
    const double scale = fonts.scale();
    for (const PlacedFill& fill : page.fills) {
        painter.fillRect(QRectF(fill.x * scale, fill.y * scale, fill.width * scale, fill.height * scale),
                         colourOf(fill.grey));
    }
    painter.setPen(QPen(Qt::black, ringLine * scale));
    for (const PlacedRing& ring : page.rings) {
        const double radius = ring.height * scale / 2;
        painter.drawRoundedRect(QRectF(ring.x * scale, ring.y * scale, ring.width * scale, ring.height * scale), radius,
                                radius);
    }
    for (const PlacedText& text : page.texts) {
        painter.setFont(fonts.font(text.style));
        painter.setPen(colourOf(text.grey));
        painter.drawText(QPointF(text.x * scale, text.baseline * scale), toQt(text.text));
    }
}

class QtPdfRenderer final : public PdfRenderer {
  public:
    [[nodiscard]] Bytes render(const ReportDocument& document, const PageSetup& setup,
                               const TaskContext& task) const override {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        {
            QPdfWriter writer(&buffer);
            writer.setTitle(titleOf(document));
            writer.setCreator(QStringLiteral("Dravik"));
            const ReportFonts fonts(writer);
            const ReportLayout layout = layOut(document, setup, fonts);
            const QPageSize size(QSizeF(layout.width, layout.height), QPageSize::Point, QString(),
                                 QPageSize::ExactMatch);
            writer.setPageLayout(QPageLayout(size, QPageLayout::Portrait, QMarginsF()));
            QPainter painter;
            if (!painter.begin(&writer)) throw Error("The PDF cannot be made: its pages cannot be painted.");
            for (std::size_t i = 0; i < layout.pages.size(); ++i) {
                task.checkCancelled();
                if (i > 0 && !writer.newPage()) throw Error("The PDF cannot be made: its pages cannot be painted.");
                paint(layout.pages[i], fonts, painter);
            }
            if (!painter.end()) throw Error("The PDF cannot be made: its pages cannot be painted.");
        }
        return toBytes({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    }
};

}  // namespace

std::unique_ptr<PdfRenderer> makePdfRenderer() { return std::make_unique<QtPdfRenderer>(); }

}  // namespace dravik
