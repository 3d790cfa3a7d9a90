#include "cli/table.h"

#include "base/text.h"

#include <algorithm>

namespace dravik {
namespace {

constexpr int gap = 2;

std::string repeated(std::string_view text, int times) {
    std::string out;
    for (int i = 0; i < times; ++i)
        out += text;
    return out;
}

}  // namespace

void Table::add(std::vector<Cell> row) {
    for (Cell& cell : row)
        cell.text = printable(cell.text);
    rows_.push_back(std::move(row));
}

std::vector<Table::Fitted> Table::fit(std::optional<int> width) const {
    std::vector<Fitted> shown;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        int widest = 0;
        for (const std::vector<Cell>& row : rows_)
            widest = std::max(widest, displayWidth(row[column].text));
        if (widest > 0) shown.push_back({column, std::max(widest, displayWidth(columns_[column].title))});
    }
    if (!width) return shown;

    const auto least = [&](const Fitted& fitted) {
        return std::min(fitted.width, columns_[fitted.column].leastWidth.value_or(fitted.width));
    };
    const auto total = [&](const auto& widthOf) {
        int sum = -gap;
        for (const Fitted& fitted : shown)
            sum += gap + widthOf(fitted);
        return sum;
    };
    while (shown.size() > 1 && total(least) > *width) {
        const auto importance = [&](const Fitted& fitted) { return columns_[fitted.column].importance; };
        int lowest = importance(shown.front());
        int highest = lowest;
        for (const Fitted& fitted : shown) {
            lowest = std::min(lowest, importance(fitted));
            highest = std::max(highest, importance(fitted));
        }
        if (lowest == highest) break;
        std::erase_if(shown, [&](const Fitted& fitted) { return importance(fitted) == lowest; });
    }
    // What is too much is taken from the widest, cell by cell, so that short columns stay whole. A last column that is
    // still too wide has to give what is needed.
    for (int excess = total([](const Fitted& fitted) { return fitted.width; }) - *width; excess > 0; --excess) {
        Fitted* widest = nullptr;
        for (Fitted& fitted : shown) {
            const bool mayGive = shown.size() == 1 || fitted.width > least(fitted);
            if (mayGive && (widest == nullptr || fitted.width > widest->width)) widest = &fitted;
        }
        if (widest == nullptr) break;
        --widest->width;
    }
    return shown;
}

std::string Table::render(std::optional<int> width, bool colour) const {
    const std::vector<Fitted> shown = fit(width);
    if (shown.empty()) return {};
    std::string out;
    const auto line = [&](const auto& cellOf) {
        std::string text;
        int pending = 0;  // blanks are written only before more text: no line ends in them
        for (const Fitted& column : shown) {
            const Cell& cell = cellOf(column.column);
            const std::string content = fitted(cell.text, column.width);
            const int blank = column.width - displayWidth(content);
            const bool right = columns_[column.column].align == Align::right;
            pending += right ? blank : 0;
            if (!content.empty()) {
                text += std::string(static_cast<std::size_t>(pending), ' ') + styled(content, cell.style, colour);
                pending = 0;
            }
            pending += (right ? 0 : blank) + gap;
        }
        out += text + "\n";
    };
    Cell title;
    line([&](std::size_t column) -> const Cell& {
        title = {columns_[column].title, Style::dim};
        return title;
    });
    int total = -gap;
    for (const Fitted& column : shown)
        total += gap + column.width;
    out += styled(repeated("─", total), Style::dim, colour) + "\n";
    for (const std::vector<Cell>& row : rows_) {
        line([&](std::size_t column) -> const Cell& { return row[column]; });
    }
    return out;
}

}  // namespace dravik
