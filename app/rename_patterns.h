#pragma once

#include "app/user_defaults.h"
#include "operations/rename_pattern.h"

#include <QString>
#include <vector>

namespace dravik {

/// Patterns that have a name: those that come with the program, and those that a user has kept.
struct NamedRenamePattern {
    QString name;
    RenamePattern pattern;
};

/// To start from: "Scene_Take" and the like.
[[nodiscard]] std::vector<NamedRenamePattern> builtInRenamePatterns();

/// The user's own, sorted by name. One whose text cannot be read any more is left out, and stays where it is kept.
[[nodiscard]] std::vector<NamedRenamePattern> savedRenamePatterns(const UserDefaults& settings);
/// White space around the name goes, and several in it are one; a pattern of that name, in any letter case, is
/// replaced. Nothing is kept without a name or without blocks.
void saveRenamePattern(UserDefaults& settings, const QString& name, const RenamePattern& pattern);
void removeRenamePattern(UserDefaults& settings, const QString& name);

/// The pattern as it was when the program was last used; empty at first.
[[nodiscard]] RenamePattern rememberedRenamePattern(const UserDefaults& settings);
void rememberRenamePattern(UserDefaults& settings, const RenamePattern& pattern);

}  // namespace dravik
