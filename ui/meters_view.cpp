#include "ui/meters_view.h"

#include "ui/shown_track.h"

#include <QGridLayout>
#include <QVBoxLayout>

namespace dravik {
namespace {

constexpr int nameWidth = 120;

}  // namespace

MetersView::MetersView(ContentView& content, TakePlayback& playback, const UserDefaults& defaults, const Theme& theme,
                       QWidget* parent)
    : QWidget(parent), content_(content), playback_(playback), defaults_(defaults), theme_(theme) {
    setAccessibleName(tr("Meters"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(12, 10, 12, 10);
    const LecteurCoreAudio& player = playback_.player();
    connect(&player, &LecteurCoreAudio::pretChanged, this, &MetersView::rebuild);
    connect(&player, &LecteurCoreAudio::metersChanged, this, [this] {
        if (!isVisible()) return;
        const LecteurCoreAudio& levels = playback_.player();
        for (std::size_t at = 0; at < std::min(meters_.size(), levels.niveauxDB().size()); ++at)
            meters_[at]->show(levels.niveauxDB()[at], levels.meterPeakDB()[at], levels.meterClipHeld()[at]);
    });
    connect(&playback_, &TakePlayback::stateChanged, this, &MetersView::refreshHint);
    connect(&content_, &ContentView::takeChanged, this, &MetersView::refreshNames);
    rebuild();
}

void MetersView::rebuild() {
    delete page_;
    hint_ = nullptr;
    meters_.clear();
    names_.clear();
    page_ = new QWidget(this);
    auto* grid = new QGridLayout(page_);
    grid->setContentsMargins({});
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(4);
    const int channels = playback_.player().pret() ? playback_.player().nbCanaux() : 0;
    for (int index = 0; index < channels; ++index) {
        names_.push_back(new QLabel(page_));
        names_.back()->setFixedWidth(nameWidth);
        names_.back()->setTextFormat(Qt::PlainText);
        meters_.push_back(new LevelMeter(defaults_, theme_, Qt::Horizontal, page_));
        meters_.back()->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        meters_.back()->setMinimumHeight(6);
        connect(meters_.back(), &LevelMeter::clipClicked, this, [this] { playback_.player().resetMeters(true); });
        grid->addWidget(names_.back(), index, 0);
        grid->addWidget(meters_.back(), index, 1);
    }
    if (channels == 0) {
        hint_ = new QLabel(page_);
        hint_->setAlignment(Qt::AlignCenter);
        hint_->setWordWrap(true);
        hint_->setTextFormat(Qt::PlainText);
        grid->addWidget(hint_, 0, 0);
        refreshHint();
    }
    layout()->addWidget(page_);
    refreshNames();
}

void MetersView::refreshHint() {
    if (hint_) hint_->setText(playbackHint(playback_, tr("Select a take to see its levels.")));
}

void MetersView::refreshNames() {
    const std::vector<Piste>& pistes = content_.pistes();
    for (std::size_t at = 0; at < names_.size(); ++at) {
        const TrackName track = shownTrack(pistes, at);
        const QString text = track.text();
        names_[at]->setText(names_[at]->fontMetrics().elidedText(text, Qt::ElideRight, nameWidth));
        names_[at]->setToolTip(track.label());
        meters_[at]->setAccessibleName(tr("Level of %1").arg(text));
    }
}

}  // namespace dravik
