#pragma once

#include "cli/display_text.h"

#include <optional>
#include <string>
#include <vector>

namespace dravik {

/// A text table that fits a terminal: what is long is shortened, what matters least is left out, no line is wrapped.
/// A value; knows no console.
class Table {
  public:
    enum class Align { left, right };
    struct Column {
        std::string title;
        int importance = 0;  ///< the lowest is left out first; columns of equal importance go together
        Align align = Align::left;
        std::optional<int> leastWidth;  ///< may be shortened down to it; absent: never shortened
    };
    struct Cell {
        std::string text;  ///< any bytes; shown through `printable`
        Style style = Style::plain;
    };

    explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}
    /// One cell a column.
    void add(std::vector<Cell> row);

    /// Header, rule and rows, each line ended. Columns without any text are left out. `width` absent: nothing is
    /// shortened.
    [[nodiscard]] std::string render(std::optional<int> width, bool colour) const;

  private:
    struct Fitted {
        std::size_t column = 0;
        int width = 0;
    };
    [[nodiscard]] std::vector<Fitted> fit(std::optional<int> width) const;

    std::vector<Column> columns_;
    std::vector<std::vector<Cell>> rows_;
};

}  // namespace dravik
