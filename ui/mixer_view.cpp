#include "ui/mixer_view.h"

#include "ui/shown_track.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <utility>

namespace dravik {

MixerView::MixerView(ContentView& content, TakePlayback& playback, UserDefaults& defaults, const Theme& theme,
                     Scale scale, QWidget* parent)
    : QWidget(parent), content_(content), playback_(playback), defaults_(defaults), theme_(theme), scale_(scale) {
    setAccessibleName(tr("Mixer"));
    hint_ = new QLabel(this);
    hint_->setAlignment(Qt::AlignCenter);
    hint_->setWordWrap(true);
    scroll_ = new QScrollArea(this);
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    scroll_->setFocusPolicy(Qt::NoFocus);
    pages_ = new QStackedLayout(this);
    pages_->addWidget(hint_);
    pages_->addWidget(scroll_);

    const LecteurCoreAudio& player = playback_.player();
    connect(&player, &LecteurCoreAudio::pretChanged, this, &MixerView::rebuild);
    for (const auto changed : {&LecteurCoreAudio::muteParCanalChanged, &LecteurCoreAudio::soloParCanalChanged,
                               &LecteurCoreAudio::panParCanalChanged, &LecteurCoreAudio::faderDBParCanalChanged,
                               &LecteurCoreAudio::reversePolarityParCanalChanged,
                               &LecteurCoreAudio::pairesMSMonitoringChanged, &LecteurCoreAudio::pairesABLinkChanged}) {
        connect(&player, changed, this, &MixerView::refresh);
    }
    connect(&player, &LecteurCoreAudio::metersChanged, this, [this] {
        if (!isVisible()) return;
        for (MixerStrip* strip : strips_)
            strip->refreshMeter();
    });
    connect(&content_, &ContentView::takeChanged, this, &MixerView::refreshNames);
    connect(&playback_, &TakePlayback::stateChanged, this, &MixerView::refreshHint);
    connect(&defaults_, &UserDefaults::changed, this, &MixerView::showScales);
    rebuild();
}

bool MixerView::eventFilter(QObject* watched, QEvent* event) {
    // The scales stand level with the meters, whatever is above and below these.
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move) placeScales();
    return QWidget::eventFilter(watched, event);
}

void MixerView::placeScales() {
    if (strips_.empty()) return;
    const LevelMeter& meter = strips_.front()->meter();
    const int top = meter.mapTo(strips_.front(), QPoint(0, 0)).y();
    for (MixerMeterScaleView* scale : scales_)
        scale->setMeters(top, meter.height());
}

void MixerView::showScales() {
    const bool shown = scale_ == Scale::always || defaults_.value(settings::afficherEchelleDBFSMixerPrincipal);
    for (MixerMeterScaleView* scale : scales_)
        scale->setVisible(shown);
}

void MixerView::rebuild() {
    const int channels = playback_.player().pret() ? playback_.player().nbCanaux() : 0;
    if (channels != static_cast<int>(strips_.size()) || channels == 0) {
        strips_.clear();
        scales_.clear();
        auto* page = new QWidget;
        page->setLayoutDirection(Qt::LeftToRight);  // the channels stand as they are panned
        auto* row = new QHBoxLayout(page);
        row->setContentsMargins(6, 0, 6, 0);
        row->setSpacing(0);
        for (int index = 0; index < channels; ++index) {
            if (index % meterScaleRepeatInterval == 0) {
                scales_.push_back(new MixerMeterScaleView(defaults_, theme_, page));
                row->addWidget(scales_.back());
            }
            strips_.push_back(new MixerStrip(playback_, defaults_, theme_, index, index + 1 < channels, page));
            row->addWidget(strips_.back());
        }
        row->addStretch(1);
        if (!strips_.empty()) strips_.front()->meter().installEventFilter(this);
        scroll_->setWidget(page);  // and the old one goes
        placeScales();
        showScales();
    }
    refreshNames();
    refresh();
    refreshHint();
    for (MixerStrip* strip : strips_)
        strip->refreshMeter();
}

void MixerView::refreshNames() {
    const std::vector<Piste>& pistes = content_.pistes();
    for (std::size_t at = 0; at < strips_.size(); ++at) {
        strips_[at]->setTrack(shownTrack(pistes, at));
    }
}

void MixerView::refresh() {
    const bool pairs = !playback_.player().mixer().activePairesMS().empty();
    for (MixerStrip* strip : strips_) {
        strip->keepWidthRoom(pairs);
        strip->refresh();
    }
}

void MixerView::refreshHint() {
    pages_->setCurrentIndex(strips_.empty() ? 0 : 1);
    hint_->setText(playbackHint(playback_, tr("Select a take to hear it.")));
}

}  // namespace dravik
