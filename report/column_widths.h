#pragma once

#include "report/report_document.h"
#include "report/text_ruler.h"

#include <vector>

namespace dravik {

/// `point` has numbers stand under each other by their decimal point.
enum class TextSide { left, centre, right, point };

/// A column of the table on the page. `x` and `width` hold its padding as well.
struct ColumnPlace {
    ReportColumn column = ReportColumn::fileName;
    TextSide side = TextSide::left;
    double x = 0, width = 0;
    double fraction = 0;  ///< room behind the point: the widest fraction of the column
};
/// Blank at either side of a column's text.
inline constexpr double columnPadding = 3.5;

/// How a cell is shown: marks are drawn as what they mean.
[[nodiscard]] std::string shownCell(const ReportDocument& document, const ReportRow& row, std::size_t column);
/// What stands before and from the decimal point on: "44" and ".1".
struct PointedNumber {
    std::string_view whole, fraction;
};
[[nodiscard]] PointedNumber atPoint(std::string_view number) noexcept;
[[nodiscard]] TextStyle styleOfCell(const ReportRow& row, ReportColumn column) noexcept;

/// What the columns ask for.
struct ColumnNeeds {
    std::vector<double> wanted;       ///< so that nothing is cut
    std::vector<double> comfortable;  ///< so that only texts of unusual length are
    std::vector<double> least;
    std::vector<double> fraction;  ///< the widest, point included
    [[nodiscard]] double comfortableSum() const noexcept;
};
[[nodiscard]] ColumnNeeds columnNeeds(const ReportDocument& document, const TextRuler& ruler);

/// Divides the width among the columns: each as wide as its content; what is left over goes to the notes, or to
/// all alike where there are none; what is missing is taken from the texts, the widest first.
[[nodiscard]] std::vector<ColumnPlace> placeColumns(const ReportDocument& document, const ColumnNeeds& needs,
                                                    double left, double width);

}  // namespace dravik
