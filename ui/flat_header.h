#pragma once

#include <QHeaderView>
#include <QTableView>

namespace dravik {

/// A header that is no row of buttons: small secondary text on the list's own ground, and a line below.
class FlatHeader : public QHeaderView {
    Q_OBJECT
  public:
    explicit FlatHeader(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;
};

/// How the small lists look: flat header, low rows, whole rows selected, no grid, no frame; Tab leaves them.
void makeDense(QTableView& table);

}  // namespace dravik
