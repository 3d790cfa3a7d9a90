#include "ui/operations/track_order_list.h"

#include "ui/metrics.h"
#include "ui/operations/track_order_view.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <numeric>

namespace dravik {
namespace {

std::vector<int> originalOrder(std::size_t tracks) {
    std::vector<int> order(tracks);
    std::iota(order.begin(), order.end(), 0);
    return order;
}

}  // namespace

TrackOrderList::TrackOrderList(const Theme& theme, QWidget* parent)
    : QWidget(parent),
      model_(new TrackOrderModel(theme, this)),
      view_(new TrackOrderView(*model_, theme, this)),
      up_(new QPushButton(tr("Up"), this)),
      down_(new QPushButton(tr("Down"), this)),
      original_(new QPushButton(tr("Original Order"), this)) {
    up_->setToolTip(tr("Move the track up (Alt+Up)"));
    down_->setToolTip(tr("Move the track down (Alt+Down)"));
    original_->setToolTip(tr("Put the tracks back into the order that they have"));
    for (QPushButton* button : {up_, down_, original_}) {
        button->setAutoDefault(false);
        button->setAccessibleName(button->text());
    }
    connect(up_, &QPushButton::clicked, this, [this] { view_->moveCurrent(-1); });
    connect(down_, &QPushButton::clicked, this, [this] { view_->moveCurrent(1); });
    connect(original_, &QPushButton::clicked, model_, &TrackOrderModel::restore);
    connect(view_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &TrackOrderList::showButtons);
    connect(model_, &TrackOrderModel::orderChanged, this, [this] {
        showButtons();
        emit orderChanged(order());
    });
    connect(&theme, &Theme::changed, view_->viewport(), qOverload<>(&QWidget::update));

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(metrics::fieldSpacing);
    buttons->addWidget(up_);
    buttons->addWidget(down_);
    buttons->addStretch();
    buttons->addWidget(original_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(metrics::fieldSpacing);
    layout->addWidget(view_, 1);
    layout->addLayout(buttons);
    showButtons();
}

void TrackOrderList::setTracks(std::vector<TrackName> tracks, std::vector<int> order) {
    const std::vector<int> original = originalOrder(tracks.size());
    if (!std::is_permutation(order.begin(), order.end(), original.begin(), original.end())) order = original;
    model_->show(std::move(tracks), std::move(order));
    if (!view_->currentIndex().isValid() && model_->rowCount() > 0) {
        view_->setCurrentIndex(model_->index(0, TrackOrderModel::name));
    }
    showButtons();
}

const std::vector<int>& TrackOrderList::order() const noexcept { return model_->order(); }

void TrackOrderList::showButtons() {
    const int row = view_->currentIndex().row();
    up_->setEnabled(row > 0);
    down_->setEnabled(row >= 0 && row + 1 < model_->rowCount());
    original_->setEnabled(!model_->isOriginal());
}

}  // namespace dravik
