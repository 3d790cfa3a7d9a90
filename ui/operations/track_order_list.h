#pragma once

#include "ui/theme.h"
#include "ui/track_name.h"

#include <QPushButton>
#include <QWidget>
#include <vector>

namespace dravik {

class TrackOrderModel;
class TrackOrderView;

/// The tracks of a take in the order that they are to have. Rows are dragged, or moved by Alt+Up and Alt+Down.
class TrackOrderList : public QWidget {
    Q_OBJECT
  public:
    explicit TrackOrderList(const Theme& theme, QWidget* parent = nullptr);

    /// Tells nobody. `order`: at each place the position, from 0, of the track in `tracks`; empty for the order as it
    /// is. One that is no order of these tracks counts as empty.
    void setTracks(std::vector<TrackName> tracks, std::vector<int> order = {});
    [[nodiscard]] const std::vector<int>& order() const noexcept;
    [[nodiscard]] TrackOrderView& view() noexcept { return *view_; }

  signals:
    /// The user has changed it.
    void orderChanged(const std::vector<int>& order);

  private:
    void showButtons();

    TrackOrderModel* model_;  // children, all of them
    TrackOrderView* view_;
    QPushButton* up_;
    QPushButton* down_;
    QPushButton* original_;
};

}  // namespace dravik
