#pragma once

#include "operations/rename_pattern.h"
#include "ui/operations/flow_layout.h"
#include "ui/operations/pattern_chip.h"
#include "ui/theme.h"

#include <QWidget>
#include <optional>
#include <vector>

namespace dravik {

/// The blocks of a pattern in a row that wraps: dragged or moved by keys, removed, typed.
class PatternRow : public QWidget, public SpokenControl {
    Q_OBJECT
  public:
    explicit PatternRow(const Theme& theme, QWidget* parent = nullptr);
    ~PatternRow() override;

    /// Tells nobody.
    void setPattern(const RenamePattern& pattern);
    [[nodiscard]] const RenamePattern& pattern() const noexcept { return pattern_; }
    /// As by the user: the keyboard goes into it when it is free text.
    void append(const BlocRenommage& block) { insert(pattern_.size(), block); }
    [[nodiscard]] const std::vector<PatternChip*>& chips() const noexcept { return chips_; }
    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::List; }
    /// The blocks by their names, or what to do while there are none.
    [[nodiscard]] QString spokenValue() const override;

  signals:
    /// By the user.
    void patternChanged();

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    void rebuild();
    [[nodiscard]] PatternChip* makeChip(const BlocRenommage& block);
    [[nodiscard]] std::size_t placeOf(const PatternChip& chip) const;
    void insert(std::size_t at, const BlocRenommage& block);
    void type(std::size_t at, const QString& text);
    void remove(const PatternChip& chip, int direction);
    void move(std::size_t from, std::size_t to);
    void focusPlace(std::ptrdiff_t place, int direction);
    /// Where a block that is let go here would stand: before the one of that place.
    [[nodiscard]] std::size_t gapAt(const QPoint& position) const;
    [[nodiscard]] QRect markAt(std::size_t gap) const;
    void endDrag();

    const Theme& theme_;
    RenamePattern pattern_;
    std::vector<PatternChip*> chips_;  // children, in the order of the pattern
    FlowLayout* flow_;                 // this one's layout
    PatternChip* dragged_ = nullptr;
    std::optional<QPoint> dragPosition_;
};

}  // namespace dravik
