#pragma once

#include "app/take_rows.h"

#include <QString>
#include <utility>
#include <vector>

namespace dravik {

/// Why these rows cannot get these names; empty when they can. Two takes of one folder cannot have one name, whatever
/// its letter case, unless their files are of different kinds. What else makes a name impossible is not asked here.
/// Rows that cannot be edited keep the names they have.
[[nodiscard]] QString whyNotNames(const TakeRows& rows, const std::vector<std::pair<int, QString>>& names);

}  // namespace dravik
