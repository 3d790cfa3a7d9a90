#include "ui/operations/export_form.h"

#include "ui/list_looks.h"
#include "ui/metrics.h"
#include "ui/operations/elided_box.h"

#include <QFormLayout>
#include <QStandardItemModel>
#include <QVBoxLayout>
#include <algorithm>

namespace dravik {
namespace {

constexpr int noTrack = -1;
/// Boxes are as wide as their usual texts; long names of tracks are cut.
constexpr int usualLetters = 18;

/// The entry of that value becomes the current one.
void choose(QComboBox& box, const QVariant& value) { box.setCurrentIndex(box.findData(value)); }

template <typename Enum>
Enum chosen(const QComboBox& box) {
    return static_cast<Enum>(box.currentData().toInt());
}

QFormLayout* formOf(QWidget* page) {
    auto* form = new QFormLayout(page);
    form->setContentsMargins({});
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->setVerticalSpacing(metrics::fieldSpacing);
    form->setHorizontalSpacing(metrics::panelMargin);
    return form;
}

QLabel* hint(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

}  // namespace

ExportForm::ExportForm(QWidget* parent)
    : QWidget(parent),
      channels_(box(tr("Channels"), tr("What becomes of the tracks"))),
      format_(box(tr("Format"), tr("Format of the new files"))),
      depth_(box(tr("Bit depth"), tr("How exactly samples are stored"))),
      bitRate_(box(tr("Bit rate"), tr("More is better, and larger"))),
      rate_(box(tr("Sample rate"), {})),
      depthLabel_(new QLabel(this)),
      depthOrRate_(new QStackedWidget(this)),
      trackPages_(new QStackedWidget(this)) {
    for (const ExportAudioFormat one : allExportAudioFormats)
        format_->addItem(label(one), int(one));
    for (const ExportAudioChannelMode one : allExportAudioChannelModes)
        channels_->addItem(label(one), int(one));
    for (const ExportWAVBitDepth one : allExportWAVBitDepths)
        depth_->addItem(inItsOwnDirection(label(one), layoutDirection()), int(one));
    depthOrRate_->addWidget(depth_);
    depthOrRate_->addWidget(bitRate_);
    depthOrRate_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);

    auto* choices = new QWidget(this);
    QFormLayout* form = formOf(choices);
    form->addRow(tr("&Format:"), format_);
    form->addRow(tr("C&hannels:"), channels_);
    form->addRow(depthLabel_, depthOrRate_);
    form->addRow(tr("Sample &rate:"), rate_);
    makeTracks();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(metrics::panelMargin + metrics::fieldSpacing);
    layout->addWidget(choices);
    layout->addWidget(trackPages_);
    layout->addStretch();
    alignLabels();
    refresh();
}

QComboBox* ExportForm::box(const QString& name, const QString& help) {
    auto* made = new ElidedBox(this);
    made->setAccessibleName(name);
    made->setToolTip(help);
    made->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    made->setMinimumContentsLength(usualLetters);
    connect(made, &QComboBox::activated, this, &ExportForm::takeOver);
    return made;
}

void ExportForm::makeTracks() {
    // In the order of the channel modes.
    auto* mono = new QWidget(trackPages_);
    QFormLayout* form = formOf(mono);
    mono1_ = box(tr("Track"), tr("The track that becomes the file"));
    mono2_ = box(tr("Mixed with"), tr("A second track, averaged with the first"));
    gain_ = box(tr("Level of the mix"), tr("Level of each of the two tracks in the mix"));
    for (const ExportMonoAverageGain one : allExportMonoAverageGains)
        gain_->addItem(inItsOwnDirection(label(one), layoutDirection()), int(one));
    form->addRow(tr("&Track:"), mono1_);
    form->addRow(tr("&Mixed with:"), mono2_);
    form->addRow(tr("&Level:"), gain_);
    trackPages_->addWidget(mono);

    auto* stereo = new QWidget(trackPages_);
    form = formOf(stereo);
    left_ = box(tr("Left"), tr("The track on the left"));
    right_ = box(tr("Right"), tr("The track on the right"));
    form->addRow(tr("&Left:"), left_);
    form->addRow(tr("R&ight:"), right_);
    oneTrack_ = hint(tr("A take of one track is exported as mono."), stereo);
    form->addRow(QString(), oneTrack_);
    trackPages_->addWidget(stereo);

    auto* poly = new QWidget(trackPages_);
    form = formOf(poly);
    form->addRow(tr("Tracks:"), hint(tr("All, in their order"), poly));
    trackPages_->addWidget(poly);
}

void ExportForm::alignLabels() {
    // Fields stand below each other in all pages.
    const QList<QLabel*> labels = findChildren<QLabel*>();
    depthLabel_->setText(tr("&Bit depth:"));
    int widest = 0;
    for (const QLabel* one : labels) {
        if (one->buddy() != nullptr || one == depthLabel_) widest = std::max(widest, one->sizeHint().width());
    }
    for (QFormLayout* form : findChildren<QFormLayout*>()) {
        for (int row = 0; row < form->rowCount(); ++row) {
            QLayoutItem* item = form->itemAt(row, QFormLayout::LabelRole);
            if (item != nullptr && item->widget() != nullptr) item->widget()->setMinimumWidth(widest);
        }
    }
}

void ExportForm::setState(const ExportAudioSessionState& state) {
    state_ = state;
    refresh();
}

void ExportForm::setTracks(std::vector<TrackName> tracks) {
    tracks_ = std::move(tracks);
    refresh();
}

void ExportForm::takeOver() {
    ExportAudioSessionState state = state_;
    state.format = chosen<ExportAudioFormat>(*format_);
    state.modeCanaux = chosen<ExportAudioChannelMode>(*channels_);
    state.profondeurWAV = chosen<ExportWAVBitDepth>(*depth_);
    state.gainMoyenneMono = chosen<ExportMonoAverageGain>(*gain_);
    if (state_.format != ExportAudioFormat::wav) state.debit = bitRate_->currentData().toInt();
    const int hertz = rate_->currentData().toInt();
    state.frequence = hertz > 0 ? ExportSampleRate::fixed(hertz) : ExportSampleRate::original();
    const int first = mono1_->currentData().toInt(), second = mono2_->currentData().toInt();
    // Left as it is, the first track is the first track of every take.
    if (first != state_.pisteMonoSource1.value_or(0)) state.pisteMonoSource1 = first;
    state.pisteMonoSource2 = second == noTrack ? std::nullopt : std::optional(second);
    state.pisteGauche = left_->currentData().toInt();
    state.pisteDroite = right_->currentData().toInt();
    state = state.allowed();
    if (state == state_) return;
    state_ = state;
    refresh();
    emit stateChanged(state_);
}

void ExportForm::fillTracks(QComboBox& box, std::optional<int> chosenTrack, bool optional) const {
    box.clear();
    if (optional) box.addItem(tr("None"), noTrack);
    int position = 0;
    for (const TrackName& track : tracks_)
        box.addItem(inItsOwnDirection(track.text(), layoutDirection()), position++);
    if (chosenTrack && *chosenTrack >= position) {
        const QString absent = TrackName{*chosenTrack + 1, {}}.label();
        box.addItem(tracks_.empty() ? absent : tr("%1 — not in this take").arg(absent), *chosenTrack);
    }
    choose(box, chosenTrack.value_or(noTrack));
}

void ExportForm::refresh() {
    const bool isWav = state_.format == ExportAudioFormat::wav;
    choose(*format_, int(state_.format));
    if (auto* modes = qobject_cast<QStandardItemModel*>(channels_->model())) {
        modes->item(channels_->findData(int(ExportAudioChannelMode::polyWAV)))->setEnabled(isWav);
    }
    choose(*channels_, int(state_.modeCanaux));
    choose(*depth_, int(state_.profondeurWAV));
    bitRate_->clear();
    for (const int rate : bitRatesFor(state_.format))
        bitRate_->addItem(inItsOwnDirection(bitRateLabel(rate), layoutDirection()), rate);
    choose(*bitRate_, state_.debit);
    depthOrRate_->setCurrentIndex(isWav ? 0 : 1);
    depthLabel_->setText(isWav ? tr("&Bit depth:") : tr("&Bit rate:"));
    depthLabel_->setBuddy(isWav ? depth_ : bitRate_);

    const std::vector<ExportSampleRate> rates = ratesFor(state_.format);
    rate_->clear();
    for (const ExportSampleRate& rate : rates)
        rate_->addItem(inItsOwnDirection(label(rate), layoutDirection()), rate.hertz.value_or(0));
    choose(*rate_, state_.frequence.hertz.value_or(0));
    rate_->setEnabled(rates.size() > 1);
    rate_->setToolTip(rates.size() > 1 ? tr("Sample rate of the new files")
                                       : tr("Files of this format keep the rate of the take"));

    fillTracks(*mono1_, state_.pisteMonoSource1.value_or(0), false);
    fillTracks(*mono2_, state_.pisteMonoSource2, true);
    fillTracks(*left_, state_.pisteGauche, false);
    fillTracks(*right_, state_.pisteDroite, false);
    choose(*gain_, int(state_.gainMoyenneMono));
    const bool several = tracks_.size() > 1;
    mono1_->setEnabled(several);
    mono2_->setEnabled(several);
    gain_->setEnabled(several && state_.pisteMonoSource2.has_value());
    left_->setEnabled(several);
    right_->setEnabled(several);
    oneTrack_->setText(tracks_.size() == 1 ? tr("A take of one track is exported as mono.") : QString());
    trackPages_->setCurrentIndex(static_cast<int>(state_.modeCanaux));
}

}  // namespace dravik
