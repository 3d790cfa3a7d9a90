#include "report/pdf/report_fonts.h"

#include "base/error.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QPaintDevice>
#include <QStringList>

namespace dravik {
namespace {

/// The first that is installed: the named one of the paper, then what comes with the program.
QString familyOf(bool bold) {
    const QStringList installed = QFontDatabase::families();
    static const QStringList wanted = {QStringLiteral("Helvetica Neue"), QStringLiteral("DejaVu Sans Condensed"),
                                       QStringLiteral("DejaVu Sans"), QStringLiteral("Liberation Sans"),
                                       QStringLiteral("Arial")};
    for (const QString& family : wanted) {
        if (installed.contains(family) && (!bold || QFontDatabase::bold(family, QStringLiteral("Bold")))) return family;
    }
    for (const QString& family : wanted) {
        if (installed.contains(family)) return family;
    }
    return QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
}

QFont fontOf(TextStyle style) {
    const TextFace face = faceOf(style);
    QFont font(familyOf(face.bold));
    font.setPointSizeF(face.points);
    font.setBold(face.bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    // Letters that are spaced at all are not joined to ligatures, which a search for "fi" would not find.
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0.02);
    return font;
}

}  // namespace

ReportFonts::ReportFonts(QPaintDevice& device) : scale_(device.logicalDpiX() / 72.0) {
    for (int style = 0; style <= static_cast<int>(lastTextStyle); ++style) {
        const QFont font = fontOf(static_cast<TextStyle>(style));
        // Boxes would be drawn instead of letters, and nothing said.
        if (QFontInfo(font).family().isEmpty()) throw Error("The PDF cannot be made: no font is installed.");
        faces_.push_back({font, QFontMetricsF(font, &device)});
    }
}

double ReportFonts::width(TextStyle style, std::string_view text) const {
    const QString unicode = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    return faces_[static_cast<std::size_t>(style)].metrics.horizontalAdvance(unicode) / scale_;
}

}  // namespace dravik
