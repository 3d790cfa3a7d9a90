#include "report/report_layout.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

namespace dravik {
namespace {

struct Size {
    double width = 0, height = 0;
};
Size sizeOf(Paper paper) noexcept { return paper == Paper::a4 ? Size{595, 842} : Size{612, 792}; }

/// Below it a page holds no table, above it no printer prints it; PDF itself ends at 14,400.
constexpr double leastPageWidth = 240;
constexpr double mostPageWidth = 2400;

constexpr Grey black = 0;
constexpr Grey dark = 0.25;
constexpr Grey middle = 0.42;
constexpr Grey light = 0.72;
constexpr Grey band = 0.95;

constexpr double strongRule = 1.4;
constexpr double rule = 0.7;
constexpr double hairline = 0.35;

constexpr double rowHeight = 14.5;
constexpr double rowBaseline = 10.0;
constexpr double headHeight = 16;
constexpr double headBaseline = 10.6;
constexpr double totalsHeight = 20;
constexpr double totalsBaseline = 13;
constexpr double footerHeight = 18;
constexpr double noteLine = 11.5;

struct Field {
    std::string_view label;
    const std::string& value;
};

class LayoutMaker {
  public:
    LayoutMaker(const ReportDocument& document, const PageSetup& setup, const TextRuler& ruler)
        : document_(document), ruler_(ruler) {
        const ColumnNeeds needs = columnNeeds(document, ruler);
        const Size upright = sizeOf(setup.paper);
        Size page = upright;
        if (setup.width) {
            page.width = std::clamp(*setup.width, leastPageWidth, mostPageWidth);
            if (page.width > upright.width) page.height = upright.width;
        } else if (needs.comfortableSum() > upright.width - 2 * pageMargin) {
            page = {upright.height, upright.width};
        }
        layout_.width = page.width;
        layout_.height = page.height;
        left_ = pageMargin;
        right_ = page.width - pageMargin;
        bottom_ = page.height - pageMargin - footerHeight;
        layout_.columns = placeColumns(document, needs, left_, right_ - left_);
    }

    ReportLayout make() && {
        layout_.pages.emplace_back();
        y_ = pageMargin;
        heading();
        notes();
        table();
        for (std::size_t i = 0; i < layout_.pages.size(); ++i)
            footer(layout_.pages[i], i + 1);
        return std::move(layout_);
    }

  private:
    ReportPage& page() { return layout_.pages.back(); }

    void text(double x, double baseline, TextStyle style, Grey grey, std::string content) {
        if (!content.empty()) page().texts.push_back({x, baseline, style, grey, std::move(content)});
    }
    void textToRight(double right, double baseline, TextStyle style, Grey grey, const std::string& content) {
        text(right - ruler_.width(style, content), baseline, style, grey, content);
    }
    void line(double y, double thickness, Grey grey) {
        page().fills.push_back({left_, y, right_ - left_, thickness, grey});
    }

    void heading() {
        const double baseline = y_ + 14;
        const double dateWidth = ruler_.width(TextStyle::date, document_.date);
        const std::string label = "Date";
        textToRight(right_, baseline, TextStyle::date, black, document_.date);
        const double labelRight = right_ - dateWidth - 5;
        textToRight(labelRight, baseline, TextStyle::label, middle, label);
        const double room = labelRight - ruler_.width(TextStyle::label, label) - 12 - left_;
        text(left_, baseline, TextStyle::title, black, fittedText(document_.title, TextStyle::title, room, ruler_));
        y_ = baseline + 5;
        if (!document_.subject.empty()) {
            y_ += 11;
            text(left_, y_, TextStyle::subject, dark,
                 fittedText(document_.subject, TextStyle::subject, right_ - left_, ruler_));
            y_ += 4;
        }
        y_ += 3;
        line(y_, strongRule, black);
        y_ += strongRule + 6;
        fields();
    }

    void fields() {
        const std::array all = {Field{"Production", document_.production},
                                Field{"Work Title", document_.workTitle},
                                Field{"Director", document_.director},
                                Field{"Sound Mixer", document_.soundMixer},
                                Field{"Tape", document_.tape},
                                Field{"Reference", document_.reference},
                                Field{"Frame Rate", document_.frameRate},
                                Field{"Sample Rate / Bit Depth", document_.sampleRateBits},
                                Field{"File Type", document_.fileType}};
        // Five to a line on a wide page, three on a narrow one: no line is left with a single field.
        const std::size_t perLine = right_ - left_ > 600 ? 5 : 3;
        constexpr double gap = 14;
        const double width = (right_ - left_ + gap) / static_cast<double>(perLine) - gap;
        for (std::size_t i = 0; i < all.size(); ++i) {
            const double x = left_ + static_cast<double>(i % perLine) * (width + gap);
            if (i > 0 && i % perLine == 0) y_ += 27;
            text(x, y_ + 7, TextStyle::label, middle, std::string(all[i].label));
            text(x, y_ + 18.5, TextStyle::value, black, fittedText(all[i].value, TextStyle::value, width, ruler_));
            // What is not known yet can be filled in by hand.
            page().fills.push_back({x, y_ + 22, width, hairline, light});
        }
        y_ += 22 + hairline + 12;
    }

    void notes() {
        if (document_.notes.empty()) return;
        const std::string lead = "Notes: ";
        const double indent = ruler_.width(TextStyle::notesLead, lead);
        const std::vector<std::string> lines =
            wrappedText(document_.notes, TextStyle::notes, right_ - left_, indent, ruler_);
        bool first = true;
        for (const std::string& each : lines) {
            if (y_ + noteLine > bottom_) newPage();
            y_ += noteLine;
            if (first) text(left_, y_ - 3, TextStyle::notesLead, black, lead);
            text(left_ + (first ? indent : 0), y_ - 3, TextStyle::notes, black, each);
            first = false;
        }
        y_ += 8;
    }

    /// With a line that says what the sheet is of, should it come away from the others.
    void newPage() {
        layout_.pages.emplace_back();
        y_ = pageMargin;
        const double baseline = y_ + 6;
        const double dateWidth = ruler_.width(TextStyle::small, document_.date);
        textToRight(right_, baseline, TextStyle::small, dark, document_.date);
        std::string rest;
        for (const std::string& part : {document_.subject, document_.workTitle, document_.tape}) {
            if (!part.empty()) rest.append(rest.empty() ? "" : "   ").append(part);
        }
        const double room = right_ - left_ - dateWidth - 12;
        const std::string title = fittedText(document_.title, TextStyle::smallStrong, room, ruler_);
        text(left_, baseline, TextStyle::smallStrong, dark, title);
        const double x = left_ + ruler_.width(TextStyle::smallStrong, title) + 10;
        text(x, baseline, TextStyle::small, dark,
             fittedText(rest, TextStyle::small, right_ - dateWidth - 12 - x, ruler_));
        y_ += 14;
    }

    void cell(const ColumnPlace& place, double baseline, TextStyle style, Grey grey, std::string_view content) {
        const double room = place.width - 2 * columnPadding;
        // Of a ring that touches the next column, a tenth of a point says nothing.
        constexpr double tolerance = 0.1;
        std::string shown = fittedText(content, style, room + tolerance, ruler_);
        if (shown.empty()) return;
        const double width = ruler_.width(style, shown);
        double x = place.x + columnPadding;
        if (place.side == TextSide::right) x += room - width;
        if (place.side == TextSide::centre) x += (room - width) / 2;
        if (place.side == TextSide::point) {
            // A head stands over the ends of the numbers; so does a number that had to be cut.
            const bool isNumber = style != TextStyle::head && shown == content;
            const double behind = isNumber ? ruler_.width(style, atPoint(shown).fraction) : place.fraction;
            x += std::max(0.0, room - width - (place.fraction - behind));
        }
        text(x, baseline, style, grey, std::move(shown));
    }

    void columnHeads() {
        line(y_, rule, black);
        for (const ColumnPlace& place : layout_.columns)
            cell(place, y_ + headBaseline, TextStyle::head, black, titleOf(place.column));
        y_ += headHeight;
        line(y_ - rule, rule, black);
    }

    /// The ring as it is drawn by hand: round for a number, longer for a longer text.
    void ring(const PlacedText& take, double top) {
        const double width = ruler_.width(take.style, take.text);
        constexpr double height = 11.8;
        const double across = std::max(height, width + 7);
        page().rings.push_back({take.x + width / 2 - across / 2, top + (rowHeight - height) / 2, across, height});
    }

    void row(const ReportRow& each, bool shaded) {
        if (shaded) page().fills.push_back({left_, y_, right_ - left_, rowHeight, band});
        for (std::size_t i = 0; i < layout_.columns.size(); ++i) {
            const ColumnPlace& place = layout_.columns[i];
            const std::size_t before = page().texts.size();
            cell(place, y_ + rowBaseline, styleOfCell(each, place.column), black, shownCell(document_, each, i));
            if (each.circled && place.column == ReportColumn::take && page().texts.size() > before) {
                ring(page().texts.back(), y_);
            }
        }
        y_ += rowHeight;
    }

    void table() {
        // Heads stand above at least two rows.
        if (y_ + headHeight + 2 * rowHeight + totalsHeight > bottom_) newPage();
        columnHeads();
        bool shaded = false;
        for (std::size_t i = 0; i < document_.rows.size(); ++i) {
            // The totals are never alone on a page.
            const double needed = rowHeight + (i + 1 == document_.rows.size() ? totalsHeight : 0);
            if (y_ + needed > bottom_) {
                line(y_, hairline, light);
                newPage();
                columnHeads();
                shaded = false;
            }
            row(document_.rows[i], shaded);
            shaded = !shaded;
        }
        totals();
    }

    /// What the marks mean, where the table itself does not say it.
    [[nodiscard]] std::string legendText() const {
        const bool anyCircled = std::any_of(document_.rows.begin(), document_.rows.end(),
                                            [](const ReportRow& each) { return each.circled; });
        const auto has = [&](ReportColumn column) {
            return std::find(document_.columns.begin(), document_.columns.end(), column) != document_.columns.end();
        };
        if (!anyCircled || has(ReportColumn::circled)) return {};
        return has(ReportColumn::take) ? "Ring: circled take" : "Bold: circled take";
    }

    void totals() {
        line(y_, rule, black);
        const std::string legend = legendText();
        const double legendWidth = ruler_.width(TextStyle::small, legend);
        textToRight(right_ - columnPadding, y_ + totalsBaseline, TextStyle::small, dark, legend);
        text(left_ + columnPadding, y_ + totalsBaseline, TextStyle::totals, black,
             fittedText(document_.totals, TextStyle::totals, right_ - left_ - 2 * columnPadding - legendWidth - 12,
                        ruler_));
        y_ += totalsHeight;
    }

    void footer(ReportPage& each, std::size_t number) {
        const double baseline = layout_.height - pageMargin;
        // With the word: of single digits between equal gaps alone, readers make "1/3" when the text is copied.
        const std::string count = fmt::format("Page {} / {}", number, layout_.pages.size());
        each.texts.push_back({left_, baseline, TextStyle::small, middle, "Generated by Dravik"});
        each.texts.push_back({right_ - ruler_.width(TextStyle::small, count), baseline, TextStyle::small, dark, count});
    }

    const ReportDocument& document_;
    const TextRuler& ruler_;
    ReportLayout layout_;
    double left_ = 0, right_ = 0, bottom_ = 0;
    double y_ = 0;
};

}  // namespace

ReportLayout layOut(const ReportDocument& document, const PageSetup& setup, const TextRuler& ruler) {
    return LayoutMaker(document, setup, ruler).make();
}

}  // namespace dravik
