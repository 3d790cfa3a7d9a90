#pragma once

#include "ui/theme.h"
#include "ui/track_name.h"

#include <QAbstractTableModel>
#include <QTableView>
#include <optional>
#include <vector>

namespace dravik {

/// The tracks in their new order.
class TrackOrderModel final : public QAbstractTableModel {
    Q_OBJECT
  public:
    enum Column { position, name, before };
    TrackOrderModel(const Theme& theme, QObject* parent) : QAbstractTableModel(parent), theme_(theme) {}

    /// `order`: a permutation of the positions.
    void show(std::vector<TrackName> tracks, std::vector<int> order);
    [[nodiscard]] const std::vector<int>& order() const noexcept { return order_; }
    [[nodiscard]] bool isOriginal() const;
    void restore();
    /// To the place it has afterwards.
    void move(int from, int to);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 3; }
    [[nodiscard]] QVariant data(const QModelIndex& at, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  signals:
    /// By `restore` and `move`.
    void orderChanged();

  private:
    const Theme& theme_;
    std::vector<TrackName> tracks_;
    std::vector<int> order_;
};

/// Their list, in which rows are dragged.
class TrackOrderView : public QTableView {
    Q_OBJECT
  public:
    TrackOrderView(TrackOrderModel& model, const Theme& theme, QWidget* parent);

    /// The current row, which stays the current one.
    void moveCurrent(int by);

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    /// Between which rows a row that is let go at this height would stand: before the one of that place.
    [[nodiscard]] int gapAt(int y) const;
    void endDrag();

    TrackOrderModel& model_;
    const Theme& theme_;
    QPoint pressed_;
    int pressedRow_ = -1;
    std::optional<int> gap_;  ///< while a row is dragged
};

}  // namespace dravik
