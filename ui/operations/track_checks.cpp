#include "ui/operations/track_checks.h"

#include "ui/metrics.h"
#include "ui/operations/check_table.h"

#include <QAbstractTableModel>
#include <QVBoxLayout>
#include <functional>

namespace dravik {
namespace {

/// A check box and a number of two digits.
constexpr int numberWidth = 46;

}  // namespace

/// The rows: the pair if it is offered, then the tracks.
class TrackChecksModel final : public QAbstractTableModel {
  public:
    enum Column { number, name };
    TrackChecksModel(TrackChecks::Meaning meaning, const Theme& theme, QObject* parent)
        : QAbstractTableModel(parent), meaning_(meaning), theme_(theme) {}

    std::function<void()> userChanged;

    void setStereoOffered(bool offered) {
        beginResetModel();
        stereoOffered_ = offered;
        endResetModel();
    }
    void setTracks(std::vector<TrackName> tracks) {
        if (tracks == tracks_) return;
        const bool sameCount = tracks.size() == tracks_.size();
        if (!sameCount) beginResetModel();
        tracks_ = std::move(tracks);
        checked_.erase(checked_.lower_bound(static_cast<int>(tracks_.size())), checked_.end());
        sameCount ? allChanged() : endResetModel();
    }
    void setChecked(const std::set<int>& positions, bool stereo) {
        checked_.clear();
        for (const int position : positions) {
            if (position >= 0 && position < static_cast<int>(tracks_.size())) checked_.insert(position);
        }
        stereo_ = stereo;
        allChanged();
    }
    void setAll(bool checked) {
        checked_.clear();
        stereo_ = checked;
        for (int position = 0; checked && position < static_cast<int>(tracks_.size()); ++position)
            checked_.insert(position);
        allChanged();
        userChanged();
    }
    [[nodiscard]] const std::set<int>& checked() const noexcept { return checked_; }
    [[nodiscard]] const std::vector<TrackName>& tracks() const noexcept { return tracks_; }
    [[nodiscard]] bool stereoPossible() const noexcept { return stereoOffered_ && tracks_.size() > 1; }
    [[nodiscard]] bool stereoChecked() const noexcept { return stereoPossible() && stereo_; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(tracks_.size()) + firstTrack();
    }
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 2; }
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& at) const override {
        Qt::ItemFlags flags = Qt::ItemNeverHasChildren | Qt::ItemIsSelectable;
        if (at.row() >= firstTrack() || stereoPossible()) flags |= Qt::ItemIsEnabled;
        return at.column() == number ? flags | Qt::ItemIsUserCheckable : flags;
    }
    [[nodiscard]] QVariant data(const QModelIndex& at, int role) const override {
        const bool on = isChecked(at.row());
        const bool struck = on && meaning_ == TrackChecks::Meaning::removed;
        switch (role) {
            case Qt::DisplayRole:
                return text(at.row(), at.column());
            case Qt::TextAlignmentRole:
                return int((at.column() == number && at.row() >= firstTrack() ? Qt::AlignRight : Qt::AlignLeft) |
                           Qt::AlignVCenter);
            case Qt::ToolTipRole:
                return at.row() < firstTrack() && !stereoPossible() ? TrackChecks::tr("Needs two tracks")
                                                                    : text(at.row(), name);
            case Qt::CheckStateRole:
                return at.column() == number ? QVariant(int(on ? Qt::Checked : Qt::Unchecked)) : QVariant();
            case Qt::ForegroundRole:
                if (struck) return theme_.error();
                return isUnnamed(at.row()) && at.column() == name ? QVariant(theme_.dimmed()) : QVariant();
            case Qt::FontRole: {
                if (!struck) return {};
                QFont font;
                font.setStrikeOut(true);
                return font;
            }
            case Qt::AccessibleTextRole:
                return struck ? TrackChecks::tr("%1, will be deleted").arg(text(at.row(), at.column()))
                              : text(at.row(), at.column());
            default:
                return {};
        }
    }
    bool setData(const QModelIndex& at, const QVariant& value, int role) override {
        if (role != Qt::CheckStateRole || at.column() != number || !(flags(at) & Qt::ItemIsEnabled)) return false;
        const bool on = value.toInt() == Qt::Checked;
        if (on == isChecked(at.row())) return true;
        const int position = at.row() - firstTrack();
        if (position < 0) {
            stereo_ = on;
        } else if (on) {
            checked_.insert(position);
        } else {
            checked_.erase(position);
        }
        emit dataChanged(at, at.siblingAtColumn(name));
        userChanged();
        return true;
    }

  private:
    [[nodiscard]] int firstTrack() const noexcept { return stereoOffered_ ? 1 : 0; }
    [[nodiscard]] bool isChecked(int row) const {
        return row < firstTrack() ? stereoChecked() : checked_.contains(row - firstTrack());
    }
    [[nodiscard]] const TrackName& track(int row) const {
        return tracks_.at(static_cast<std::size_t>(row - firstTrack()));
    }
    [[nodiscard]] bool isUnnamed(int row) const { return row >= firstTrack() && track(row).nom.isEmpty(); }
    [[nodiscard]] QString text(int row, int column) const {
        if (row < firstTrack()) return TrackChecks::tr("Stereo — Tracks 1 + 2");
        const TrackName& one = track(row);
        if (column == number) return QString::number(one.numero);
        return one.label();
    }
    void allChanged() {
        if (rowCount() > 0) emit dataChanged(index(0, number), index(rowCount() - 1, name));
    }

    const TrackChecks::Meaning meaning_;
    const Theme& theme_;
    std::vector<TrackName> tracks_;
    std::set<int> checked_;
    bool stereoOffered_ = false, stereo_ = false;
};

TrackChecks::TrackChecks(Meaning meaning, const Theme& theme, QWidget* parent)
    : QWidget(parent),
      model_(new TrackChecksModel(meaning, theme, this)),
      table_(new CheckTable(*model_, theme, meaning == Meaning::removed ? tr("Tracks to delete") : tr("Tracks"),
                            {numberWidth}, this)),
      bar_(new CheckBar(Noun::track, this)) {
    model_->userChanged = [this] {
        refresh();
        emit checkedChanged(model_->checked(), stereoChecked());
    };
    const auto checkAll = [this](bool checked) { model_->setAll(checked); };
    connect(bar_, &CheckBar::allRequested, this, checkAll);
    connect(table_, &CheckTable::allRequested, this, checkAll);
    connect(&theme, &Theme::changed, table_->viewport(), qOverload<>(&QWidget::update));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(metrics::fieldSpacing);
    layout->addWidget(bar_);
    layout->addWidget(table_, 1);
    refresh();
}

void TrackChecks::setStereoOffered(bool offered) {
    model_->setStereoOffered(offered);
    table_->clearSpans();
    if (offered) table_->setSpan(0, 0, 1, 2);
    refresh();
}

void TrackChecks::setTracks(std::vector<TrackName> tracks) {
    model_->setTracks(std::move(tracks));
    refresh();
}

void TrackChecks::setChecked(const std::set<int>& positions, bool stereo) {
    model_->setChecked(positions, stereo);
    refresh();
}

std::set<int> TrackChecks::checked() const { return model_->checked(); }

bool TrackChecks::stereoChecked() const noexcept { return model_->stereoChecked(); }

void TrackChecks::refresh() {
    const std::size_t all = model_->tracks().size(), on = model_->checked().size();
    const bool pair = model_->stereoChecked();
    bar_->setCount(on, all);
    bar_->enable(on < all || (model_->stereoPossible() && !pair), on > 0 || pair);
}

}  // namespace dravik
