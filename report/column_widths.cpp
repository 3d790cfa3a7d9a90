#include "report/column_widths.h"

#include "base/text.h"

#include <algorithm>
#include <numeric>

namespace dravik {
namespace {

/// What can be cut without being wrong; and how wide such texts are as a rule, in points.
double usualWidth(ReportColumn column) noexcept {
    switch (column) {
        case ReportColumn::fileName:
            return 150;
        case ReportColumn::notes:
            return 150;
        case ReportColumn::tape:
        case ReportColumn::scene:
            return 60;
        case ReportColumn::take:
            return 45;
        default:
            return 65;
    }
}

bool isText(ReportColumn column) noexcept {
    return column == ReportColumn::fileName || column == ReportColumn::notes || column == ReportColumn::tape ||
           column == ReportColumn::scene || column == ReportColumn::take;
}

TextSide sideOf(ReportColumn column) noexcept {
    switch (column) {
        case ReportColumn::take:
        case ReportColumn::circled:
        case ReportColumn::wild:
        // All alike in width: under each other in the middle as well, and away from the neighbours on both sides.
        case ReportColumn::duration:
        case ReportColumn::tcStart:
        case ReportColumn::tcEnd:
            return TextSide::centre;
        case ReportColumn::channel:
        case ReportColumn::bitDepth:
        case ReportColumn::size:
            return TextSide::right;
        case ReportColumn::sampleRate:
            return TextSide::point;
        default:
            return TextSide::left;
    }
}

double sum(const std::vector<double>& values) { return std::accumulate(values.begin(), values.end(), 0.0); }

/// The ring around a circled take needs more room than its number.
constexpr double ringRoom = 6;

/// With notes in the table most of what is spare is theirs: there is always something to be added by hand.
constexpr double mostBesideNotes = 14;

void spread(std::vector<double>& widths, const std::vector<ReportColumn>& columns, double spare) {
    const auto count = static_cast<double>(widths.size());
    const auto notes = std::find(columns.begin(), columns.end(), ReportColumn::notes);
    const bool hasNotes = notes != columns.end();
    const double each = hasNotes ? std::min(mostBesideNotes, spare / (2 * count)) : spare / count;
    for (double& width : widths)
        width += each;
    if (hasNotes) widths[static_cast<std::size_t>(notes - columns.begin())] += spare - each * count;
}

/// Makes the texts narrower until all fits the room: none is left wider than a limit, none gets narrower than its
/// least.
void squeeze(std::vector<double>& widths, const ColumnNeeds& needs, const std::vector<ReportColumn>& columns,
             double room) {
    const auto limited = [&](double limit) {
        std::vector<double> result = widths;
        for (std::size_t i = 0; i < result.size(); ++i) {
            if (isText(columns[i])) result[i] = std::min(result[i], std::max(limit, needs.least[i]));
        }
        return result;
    };
    double low = 0;
    double high = *std::max_element(widths.begin(), widths.end());
    constexpr int halvings = 40;
    for (int i = 0; i < halvings; ++i) {
        const double middle = (low + high) / 2;
        (sum(limited(middle)) <= room ? low : high) = middle;
    }
    widths = limited(low);
    // More columns than the page can hold: all of them get narrower alike.
    if (const double still = sum(widths); still > room) {
        for (double& width : widths)
            width *= room / still;
    }
}

}  // namespace

std::string shownCell(const ReportDocument& document, const ReportRow& row, std::size_t column) {
    const std::string& text = row.cells[column];
    if (text.empty()) return {};
    if (document.columns[column] == ReportColumn::circled) return "\u25CF";
    if (document.columns[column] == ReportColumn::wild) return "\u2713";
    return text;
}

TextStyle styleOfCell(const ReportRow& row, ReportColumn column) noexcept {
    if (column == ReportColumn::circled || column == ReportColumn::wild) return TextStyle::mark;
    const bool isName =
        column == ReportColumn::fileName || column == ReportColumn::scene || column == ReportColumn::take;
    return row.circled && isName ? TextStyle::strongCell : TextStyle::cell;
}

double ColumnNeeds::comfortableSum() const noexcept { return sum(comfortable); }

PointedNumber atPoint(std::string_view number) noexcept {
    const std::size_t point = std::min(number.find('.'), number.size());
    return {number.substr(0, point), number.substr(point)};
}

ColumnNeeds columnNeeds(const ReportDocument& document, const TextRuler& ruler) {
    // Nothing gets a column of more than this: what is longer is cut in any case.
    constexpr std::size_t mostBytes = 400;
    ColumnNeeds needs;
    for (std::size_t i = 0; i < document.columns.size(); ++i) {
        const ReportColumn column = document.columns[i];
        const double head = ruler.width(TextStyle::head, titleOf(column));
        double content = 0;
        double whole = 0;
        double fraction = 0;
        for (const ReportRow& row : document.rows) {
            const std::string text = oneLine(truncatedUtf8(shownCell(document, row, i), mostBytes));
            if (text.empty()) continue;
            const TextStyle style = styleOfCell(row, column);
            if (sideOf(column) == TextSide::point) {
                const PointedNumber number = atPoint(text);
                whole = std::max(whole, ruler.width(style, number.whole));
                fraction = std::max(fraction, ruler.width(style, number.fraction));
            } else {
                content = std::max(content, ruler.width(style, text));
            }
        }
        content = std::max(content, whole + fraction);
        if (column == ReportColumn::take) content += ringRoom;
        const double padding = 2 * columnPadding;
        const double wanted = std::max(head, content) + padding;
        needs.wanted.push_back(isText(column) ? wanted : std::min(wanted, usualWidth(column)));
        // Notes have their room on a day without any as well: reports of the same columns have the same form.
        const double usual = usualWidth(column);
        needs.comfortable.push_back(column == ReportColumn::notes ? usual
                                                                  : std::max(head + padding, std::min(wanted, usual)));
        needs.least.push_back(head + padding);
        needs.fraction.push_back(fraction);
    }
    return needs;
}

std::vector<ColumnPlace> placeColumns(const ReportDocument& document, const ColumnNeeds& needs, double left,
                                      double width) {
    std::vector<double> widths = needs.wanted;
    if (const double spare = width - sum(widths); spare >= 0) {
        spread(widths, document.columns, spare);
    } else {
        squeeze(widths, needs, document.columns, width);
    }
    std::vector<ColumnPlace> places;
    double x = left;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        places.push_back({document.columns[i], sideOf(document.columns[i]), x, widths[i], needs.fraction[i]});
        x += widths[i];
    }
    return places;
}

}  // namespace dravik
