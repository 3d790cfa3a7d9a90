#pragma once

#include "app/take_columns.h"

#include <optional>
#include <string>
#include <vector>

namespace dravik {

/// Which rows of the take table are shown, and in which order: vectors of indices into groupesTableau. Pure functions
/// on values; fast enough for every key typed into the filter over 20,000 rows.

struct TakeSort {
    std::optional<TakeColumn> column;  ///< absent: as the folder was listed
    bool descending = false;
};

/// All rows in order. Stable: equal ones stay as listed, whichever the direction; rows without a value come last.
/// Texts in natural order, numbers by their value; of the flags the marked ones first.
[[nodiscard]] std::vector<int> sortedRows(const std::vector<RowState>& rows, const TakeSort& sort);

/// The words that a row must hold, each somewhere in its texts, ignoring case.
class TakeFilter {
  public:
    TakeFilter() = default;
    explicit TakeFilter(const QString& text);

    [[nodiscard]] bool isEmpty() const noexcept { return words_.empty(); }
    /// `searchable` as from searchableText.
    [[nodiscard]] bool matches(const std::string& searchable) const;

  private:
    std::vector<std::string> words_;
};

/// What the filter looks through: name, scene, take, tape, project, note, track names, format and the files' names.
[[nodiscard]] std::string searchableText(const GroupeFichiers& groupe);

}  // namespace dravik
