#pragma once

#include "app/dialogs.h"
#include "app/user_defaults.h"
#include "operations/rename_pattern.h"
#include "ui/theme.h"

#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QWidget>
#include <vector>

namespace dravik {

class PatternRow;

/// The pattern of new names as a row of blocks, the palette from which blocks are taken, and the patterns that are kept
/// under a name. Edits a value; what it makes of a take is not its business.
class RenamePatternEditor : public QWidget {
    Q_OBJECT
  public:
    /// Patterns with names are kept in `settings`; their names are asked for by `dialogs`.
    RenamePatternEditor(UserDefaults& settings, Dialogs& dialogs, const Theme& theme, QWidget* parent = nullptr);
    ~RenamePatternEditor() override;

    /// Tells nobody. A block that is there already keeps its place for the keyboard.
    void setPattern(const RenamePattern& pattern);
    [[nodiscard]] const RenamePattern& pattern() const noexcept;

    [[nodiscard]] PatternRow& row() noexcept { return *row_; }

  signals:
    /// The user has changed it: with every letter typed.
    void patternChanged(const RenamePattern& pattern);

  private:
    [[nodiscard]] QWidget* makePalette();
    void fillMenu();
    void choose(const RenamePattern& pattern);
    void askName();
    void applyTheme();

    UserDefaults& settings_;
    Dialogs& dialogs_;
    const Theme& theme_;
    PatternRow* row_;  // children, all of them
    QPushButton* patterns_;
    QMenu* menu_;
    std::vector<QLabel*> headings_;
};

}  // namespace dravik
