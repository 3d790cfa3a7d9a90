#include "ui/mixer_strip.h"

#include "app/text.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace dravik {
namespace {

constexpr int stripWidth = 84;
constexpr int smallPixels = 11;

const QColor soloColour(0xE0, 0xB6, 0x3A);
const QColor muteColour(0xD9, 0x5B, 0x50);
const QColor polarityColour(0x5B, 0x8D, 0xD9);

QFont smaller(const QWidget& widget) {
    QFont font = widget.font();
    font.setPixelSize(smallPixels);
    return font;
}

/// A button that is lit in its own colour while it is on.
class LitButton final : public QToolButton {
  public:
    LitButton(const QColor& lit, QWidget* parent) : QToolButton(parent), lit_(lit) { setCheckable(true); }

  protected:
    void paintEvent(QPaintEvent* event) override {
        if (!isChecked()) {
            QToolButton::paintEvent(event);
            return;
        }
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(lit_);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 3, 3);
        painter.setPen(QColor(0x14, 0x14, 0x14));
        QFont bold = font();
        bold.setBold(true);
        painter.setFont(bold);
        painter.drawText(rect(), Qt::AlignCenter, text());
        if (hasFocus()) {
            painter.setBrush(Qt::NoBrush);
            painter.setPen(QPen(palette().color(QPalette::WindowText), 1));
            painter.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), 3, 3);
        }
    }

  private:
    QColor lit_;
};

}  // namespace

MixerStrip::MixerStrip(TakePlayback& playback, const UserDefaults& defaults, const Theme& theme, int index,
                       bool hasNeighbour, QWidget* parent)
    : QWidget(parent), playback_(playback), theme_(theme), index_(index), hasNeighbour_(hasNeighbour) {
    setFixedWidth(stripWidth);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(6, 8, 6, 6);
    column->setSpacing(5);
    name_ = new QLabel(this);
    name_->setFont(smaller(*this));
    name_->setTextFormat(Qt::PlainText);
    column->addWidget(name_);

    pan_ = new PanControl(theme, this);
    connect(pan_, &PanControl::moved, this, [this](double pan) { player().setPan(index_, static_cast<float>(pan)); });
    column->addWidget(pan_);

    auto* switches = new QHBoxLayout;
    switches->setSpacing(2);
    const auto lit = [&](const QColor& colour, const QString& text, const QString& help, const QString& title) {
        auto* made = new LitButton(colour, this);
        made->setText(text);
        made->setToolTip(help);
        made->setAccessibleName(title);
        made->setFont(smaller(*this));
        made->setFixedHeight(20);
        made->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        switches->addWidget(made);
        return made;
    };
    mute_ = lit(muteColour, tr("M"), tr("Mute"), tr("Mute"));
    solo_ = lit(soloColour, tr("S"), tr("Solo\nShift + Click Solo: Add/remove Solo in OR mode"), tr("Solo"));
    polarity_ = lit(polarityColour, QStringLiteral("\u00D8"), tr("Reverse Polarity"), tr("Reverse Polarity"));
    connect(mute_, &QToolButton::clicked, this, [this] { player().toggleMute(index_); });
    connect(solo_, &QToolButton::clicked, this, [this] {
        player().toggleSolo(index_, QApplication::keyboardModifiers() & Qt::ShiftModifier);
        refresh();  // a solo that goes to another channel leaves this button as it was
    });
    connect(polarity_, &QToolButton::clicked, this, [this] { player().toggleReversePolarity(index_); });
    column->addLayout(switches);

    auto* levels = new QHBoxLayout;
    levels->setSpacing(8);
    fader_ = new Fader(theme, this);
    connect(fader_, &Fader::moved, this, [this](double dB) { player().setFader(index_, dB); });
    meter_ = new LevelMeter(defaults, theme, Qt::Vertical, this);
    connect(meter_, &LevelMeter::clipClicked, this, [this] { player().resetMeters(true); });
    levels->addStretch(1);
    levels->addWidget(fader_);
    levels->addWidget(meter_);
    levels->addStretch(1);
    column->addLayout(levels, 1);

    value_ = new QLineEdit(this);
    value_->setAlignment(Qt::AlignCenter);
    value_->setFont(smaller(*this));
    value_->setToolTip(tr("Fader in dB; type a value"));
    value_->setFrame(false);
    connect(value_, &QLineEdit::editingFinished, this, &MixerStrip::typeDB);
    column->addWidget(value_);
    column->addWidget(makePairCard());
}

QWidget* MixerStrip::makePairCard() {
    auto* card = new QWidget(this);
    auto* column = new QVBoxLayout(card);
    column->setContentsMargins({});
    column->setSpacing(2);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(2);
    const auto add = [&](const QString& text, const QString& help) {
        auto* made = new LitButton(theme_.accent(), card);
        made->setText(text);
        made->setToolTip(help);
        made->setFont(smaller(*this));
        made->setFixedHeight(20);
        made->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        made->setVisible(hasNeighbour_);
        buttons->addWidget(made);
        return made;
    };
    link_ = add(tr("Link"), tr("Hear this channel left and the next one right, faders together"));
    ms_ = add(QStringLiteral("MS"), tr("M/S monitoring - Option-click to activate SM or switch MS/SM"));
    column->addLayout(buttons);
    width_ = new QSlider(Qt::Horizontal, card);
    width_->setRange(0, 100);
    widthText_ = new QLabel(card);
    widthText_->setAlignment(Qt::AlignCenter);
    widthText_->setFont(smaller(*this));
    column->addWidget(width_);
    column->addWidget(widthText_);
    QSizePolicy policy = link_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    link_->setSizePolicy(policy);
    ms_->setSizePolicy(policy);

    connect(link_, &QToolButton::clicked, this, [this] {
        player().mixer().linkOf(index_) == std::optional(std::pair(index_, index_ + 1))
            ? player().removeLinkAB(index_, index_ + 1)
            : static_cast<void>(player().makeLinkAB(index_, index_ + 1));
        refresh();
    });
    connect(ms_, &QToolButton::clicked, this, [this] {
        const bool option = QApplication::keyboardModifiers() & Qt::AltModifier;
        using Orientation = OrientationMonitoringMS;
        for (const PaireMonitoringMS& pair : player().mixer().activePairesMS()) {
            if (!pair.joins(index_, index_ + 1)) continue;
            if (option) {
                const auto other = pair.orientation == Orientation::ms ? Orientation::sm : Orientation::ms;
                player().setPaireMS(index_, index_ + 1, other, pair.width);
            } else {
                player().removePaireMS(index_, index_ + 1);
            }
            return;
        }
        player().setPaireMS(index_, index_ + 1, option ? Orientation::sm : Orientation::ms, 1.0F);
        refresh();
    });
    connect(width_, &QSlider::valueChanged, this,
            [this](int percent) { player().setWidth(index_, index_ + 1, static_cast<float>(percent) / 100.0F); });
    return card;
}

void MixerStrip::setTrack(const TrackName& track) {
    const QString shown = track.label();
    name_->setText(QFontMetrics(name_->font()).elidedText(track.text(), Qt::ElideRight, stripWidth - 14));
    name_->setToolTip(shown);
    setAccessibleName(shown);
    for (const auto& [widget, what] :
         {std::pair<QWidget*, QString>(pan_, tr("Pan")), std::pair<QWidget*, QString>(mute_, tr("Mute")),
          std::pair<QWidget*, QString>(solo_, tr("Solo")),
          std::pair<QWidget*, QString>(polarity_, tr("Reverse Polarity")),
          std::pair<QWidget*, QString>(fader_, tr("Fader")), std::pair<QWidget*, QString>(value_, tr("Fader value")),
          std::pair<QWidget*, QString>(link_, tr("Link")), std::pair<QWidget*, QString>(ms_, tr("M/S")),
          std::pair<QWidget*, QString>(width_, tr("Width of the M/S pair")),
          std::pair<QWidget*, QString>(meter_, tr("Level"))}) {
        widget->setAccessibleName(QStringLiteral("%1: %2").arg(shown, what));
    }
}

void MixerStrip::keepWidthRoom(bool keep) {
    for (QWidget* widget : {static_cast<QWidget*>(width_), static_cast<QWidget*>(widthText_)}) {
        QSizePolicy policy = widget->sizePolicy();
        policy.setRetainSizeWhenHidden(keep);
        widget->setSizePolicy(policy);
    }
}

void MixerStrip::typeDB() {
    QString text = value_->text().trimmed();
    text.remove(QStringLiteral("dB"), Qt::CaseInsensitive).replace(QLatin1Char(','), QLatin1Char('.'));
    if (!value_->isModified()) return;
    value_->setModified(false);
    bool ok = false;
    const double dB = text.contains(QChar(0x221E)) || text == QLatin1String("-inf") ? MixerState::faderMinimumDB
                                                                                    : text.trimmed().toDouble(&ok);
    if (ok || dB == MixerState::faderMinimumDB) player().setFader(index_, dB);
    refresh();  // what was no number goes
}

void MixerStrip::refresh() {
    const MixerState& mixer = player().mixer();
    const auto at = static_cast<std::size_t>(index_);
    if (index_ >= mixer.nbCanaux) return;
    pan_->setPan(static_cast<double>(mixer.panParCanal[at]));
    mute_->setChecked(mixer.muteParCanal[at]);
    solo_->setChecked(mixer.soloParCanal[at]);
    polarity_->setChecked(mixer.reversePolarityParCanal[at]);
    fader_->setDB(mixer.faderDBParCanal[at]);
    if (!value_->hasFocus() || !value_->isModified()) value_->setText(Fader::textOf(mixer.faderDBParCanal[at]));
    refreshPairs();
    update();
}

void MixerStrip::refreshPairs() {
    const MixerState& mixer = player().mixer();
    const std::vector<PaireMonitoringMS> pairs = mixer.activePairesMS();
    const bool inMS = std::any_of(pairs.begin(), pairs.end(), [&](const auto& pair) { return pair.holds(index_); });
    pan_->setEnabled(!inMS);
    pan_->setToolTip(inMS ? tr("Pan disabled during M/S monitoring")
                          : tr("Pan: drag, with Shift finely; double click for the centre"));
    if (!hasNeighbour_) {
        width_->hide();
        widthText_->hide();
        return;
    }
    const auto own =
        std::find_if(pairs.begin(), pairs.end(), [&](const auto& pair) { return pair.joins(index_, index_ + 1); });
    const bool linked = mixer.linkOf(index_) == std::optional(std::pair(index_, index_ + 1));
    link_->setChecked(linked);
    ms_->setChecked(own != pairs.end());
    ms_->setText(toQt(rawValue(own == pairs.end() ? OrientationMonitoringMS::ms : own->orientation)));
    // Tried on a copy: the rules of what may be paired are the mixer's.
    MixerState tried = mixer;
    link_->setEnabled(linked || tried.makeLinkAB(index_, index_ + 1));
    tried = mixer;
    ms_->setEnabled(own != pairs.end() || tried.setPaireMS(index_, index_ + 1, OrientationMonitoringMS::ms, 1.0F));
    width_->setVisible(own != pairs.end());
    widthText_->setVisible(own != pairs.end());
    if (own == pairs.end()) return;
    const int percent = static_cast<int>(std::lround(own->width * 100));
    const QSignalBlocker quiet(width_);
    width_->setValue(percent);
    widthText_->setText(tr("Width %1%").arg(percent));
}

void MixerStrip::refreshMeter() {
    const auto at = static_cast<std::size_t>(index_);
    const LecteurCoreAudio& levels = player();
    if (at >= levels.niveauxDB().size()) return;
    meter_->show(levels.niveauxDB()[at], levels.meterPeakDB()[at], levels.meterClipHeld()[at]);
}

void MixerStrip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const MixerState& mixer = player().mixer();
    const auto tint = [&](bool leftEnd) {
        QColor colour = theme_.accent();
        painter.fillRect(QRect(leftEnd ? 4 : 0, 2, width() - 4, 3), colour);
    };
    if (const auto link = mixer.linkOf(index_)) tint(index_ == std::min(link->first, link->second));
    for (const PaireMonitoringMS& pair : mixer.activePairesMS()) {
        if (pair.holds(index_)) tint(index_ == std::min(pair.indexMid, pair.indexSide));
    }
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(width() - 1, 6, width() - 1, height() - 6);
}

}  // namespace dravik
