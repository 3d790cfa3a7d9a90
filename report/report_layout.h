#pragma once

#include "report/column_widths.h"
#include "report/pdf_renderer.h"
#include "report/report_document.h"
#include "report/text_ruler.h"

#include <string>
#include <vector>

namespace dravik {

/// The pages of a report as values: what stands where. Points, from the upper left corner of the page. Painting them
/// decides nothing any more.

/// Darkness of what is drawn: 0 is black, 1 is paper.
using Grey = double;

struct PlacedText {
    double x = 0, baseline = 0;  ///< left end
    TextStyle style = TextStyle::cell;
    Grey grey = 0;
    std::string text;
};
/// A filled area: a band behind a row, or a rule.
struct PlacedFill {
    double x = 0, y = 0, width = 0, height = 0;
    Grey grey = 0;
};
/// The line around a circled take: an ellipse that becomes a lozenge around longer texts.
struct PlacedRing {
    double x = 0, y = 0, width = 0, height = 0;
};

struct ReportPage {
    std::vector<PlacedFill> fills;
    std::vector<PlacedRing> rings;
    std::vector<PlacedText> texts;
};

struct ReportLayout {
    double width = 0, height = 0;
    std::vector<ColumnPlace> columns;
    std::vector<ReportPage> pages;  ///< never none
};

inline constexpr double pageMargin = 36;
inline constexpr double ringLine = 0.7;  ///< how thick the ring is

/// Upright or turned, as the columns need it; where a width is given, as that is.
[[nodiscard]] ReportLayout layOut(const ReportDocument& document, const PageSetup& setup, const TextRuler& ruler);

}  // namespace dravik
