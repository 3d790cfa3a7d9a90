#pragma once

#include "ui/metrics.h"
#include "ui/theme.h"

#include <QHeaderView>
#include <QTableView>
#include <initializer_list>

namespace dravik {

/// The header of all lists and tables: no row of buttons, but small secondary text that stands exactly above its cells,
/// a line below, and an arrow where the list is sorted.
class ListHeader final : public QHeaderView {
    Q_OBJECT
  public:
    /// `padding`: between text and edges, as the cells have it.
    explicit ListHeader(int padding, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;

  private:
    int padding_;
};

/// How the small lists look: flat header, low rows, whole rows selected, no grid, no frame; Tab leaves them. The model
/// is set before. `widths` are those of the columns from the left; the last column takes what is left.
void makeDense(QTableView& table, const Theme& theme, const QString& accessibleName, std::initializer_list<int> widths);

/// Of lists and tables: a selection on which texts in the accent colour can be read, and that is quieter while the list
/// has not the keyboard.
[[nodiscard]] QPalette listPalette(const Theme& theme);

/// Flags for QPainter::drawText with which a value is drawn in a cell: on the side that its column has in the direction
/// of the window, but written in its own direction, so that "12-T01" does not become "T01-12" among texts that run from
/// right to left.
[[nodiscard]] int textFlags(Qt::Alignment alignment, Qt::LayoutDirection direction, const QString& text);
/// The same for texts that others draw: unchanged where both directions agree.
[[nodiscard]] QString inItsOwnDirection(const QString& text, Qt::LayoutDirection direction);

/// Children speak until they are gone: a field that goes while it has the keyboard says that it was left. Of use in the
/// destructor of a widget that listens to its children: from then on it hears nothing of them.
void stopListeningToChildren(QObject& widget);

}  // namespace dravik
