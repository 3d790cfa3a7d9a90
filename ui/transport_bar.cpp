#include "ui/transport_bar.h"

#include "app/text.h"
#include "ui/shortcuts.h"

#include <QActionGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

namespace dravik {
namespace {

/// What the boost offers, in dB: enough to hear a whispered take, not enough to hurt by accident.
constexpr int boostMinimum = -12;
constexpr int boostMaximum = 24;

/// A slider that goes to 0 dB on a double click.
class BoostSlider final : public QSlider {
  public:
    using QSlider::QSlider;

  protected:
    void mouseDoubleClickEvent(QMouseEvent*) override { setValue(0); }
};

}  // namespace

TransportBar::TransportBar(TakePlayback& playback, UserDefaults& defaults, const Theme& theme, Form form,
                           QWidget* parent)
    : QWidget(parent), playback_(playback), defaults_(defaults), theme_(theme) {
    setAccessibleName(tr("Transport"));
    using Direction = LecteurCoreAudio::Direction;
    back_ = button(QStringLiteral("return"), tr("Return to beginning"), [this] { playback_.returnToBeginning(); });
    nudgeBack_ =
        button(QStringLiteral("nudge_back"), tr("Nudge backward"), [this] { playback_.nudge(Direction::backward); });
    play_ = button(QStringLiteral("play"), tr("Play"), [this] { playback_.togglePlay(); });
    nudgeForward_ =
        button(QStringLiteral("nudge_forward"), tr("Nudge forward"), [this] { playback_.nudge(Direction::forward); });
    needTake_ = {back_, nudgeBack_, play_, nudgeForward_};
    for (QToolButton* nudge : {nudgeBack_, nudgeForward_}) {
        nudge->setAutoRepeat(true);
        nudge->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(nudge, &QWidget::customContextMenuRequested, this, &TransportBar::chooseNudge);
    }
    toggle(QStringLiteral("solo"), tr("Solo mode (S)"), tr("Toggle solo mode"), &TakePlayback::addsSolos,
           &TakePlayback::toggleSoloMode);
    toggle(QStringLiteral("loop"), tr("Loop playback (L)"), tr("Loop playback"), &TakePlayback::loops,
           &TakePlayback::toggleLoop);
    toggle(QStringLiteral("follow"), tr("Playback page/scroll (F)"),
           tr("Toggle follow playhead: by pages, or scrolling under it"), &TakePlayback::scrollsWithPlayhead,
           &TakePlayback::togglePageOrScroll);
    toggle(QStringLiteral("insertion"), tr("Insertion Follows Playback (N)"),
           tr("Pausing leaves the position where it is, rather than going back to where it began"),
           &TakePlayback::insertionFollows, &TakePlayback::toggleInsertionFollows);
    counter_ = new CounterView(playback_, defaults_, this);
    layOut(form, makeBoost());

    const LecteurCoreAudio& player = playback_.player();
    connect(&player, &LecteurCoreAudio::pretChanged, this, &TransportBar::refresh);
    connect(&player, &LecteurCoreAudio::enLectureChanged, this, &TransportBar::refresh);
    connect(&player, &LecteurCoreAudio::lectureEnBoucleChanged, this, &TransportBar::refresh);
    connect(&defaults_, &UserDefaults::changed, this, &TransportBar::refresh);
    connect(&theme_, &Theme::changed, this, &TransportBar::refreshIcons);
    refreshIcons();
    refresh();
}

QToolButton* TransportBar::button(const QString& icon, const QString& name, std::function<void()> run) {
    auto* made = new QToolButton(this);
    made->setAutoRaise(true);
    made->setAccessibleName(name);
    made->setToolTip(name);
    made->setFocusPolicy(Qt::TabFocus);
    connect(made, &QToolButton::clicked, this, [run = std::move(run)] { run(); });
    icons_.emplace_back(made, icon);
    return made;
}

QToolButton* TransportBar::toggle(const QString& icon, const QString& name, const QString& help,
                                  bool (TakePlayback::*isOn)() const, void (TakePlayback::*run)()) {
    QToolButton* made = button(icon, name, [this, run] {
        (playback_.*run)();
        refresh();
    });
    made->setCheckable(true);
    made->setToolTip(help == name ? name : QStringLiteral("%1\n%2").arg(name, help));
    toggles_.push_back({made, isOn});
    return made;
}

QWidget* TransportBar::makeBoost() {
    auto* group = new QWidget(this);
    auto* row = new QHBoxLayout(group);
    row->setContentsMargins({});
    row->setSpacing(6);
    auto* caption = new QLabel(tr("Boost"), group);
    auto* slider = new BoostSlider(Qt::Horizontal, group);
    slider->setLayoutDirection(Qt::LeftToRight);  // louder is right, as on the meters
    slider->setRange(boostMinimum, boostMaximum);
    slider->setPageStep(3);
    slider->setFixedWidth(110);
    slider->setAccessibleName(tr("Output boost"));
    slider->setToolTip(tr("Makes the output louder or quieter, not the files. Double click for 0 dB."));
    auto* label = new QLabel(group);
    label->setMinimumWidth(QFontMetrics(label->font()).horizontalAdvance(QStringLiteral("+24 dB")) + 4);
    row->addWidget(caption);
    row->addWidget(slider);
    row->addWidget(label);
    connect(slider, &QSlider::valueChanged, this,
            [this](int dB) { playback_.player().setBoost(static_cast<float>(dB)); });
    const auto show = [this, slider, label] {
        const QSignalBlocker quiet(slider);
        slider->setValue(static_cast<int>(playback_.player().volumeBoost()));
        label->setText(toQt(playback_.player().labelVolume()));
    };
    connect(&playback_.player(), &LecteurCoreAudio::volumeBoostChanged, this, show);
    show();
    return group;
}

void TransportBar::layOut(Form form, QWidget* boost) {
    const bool large = form == Form::large;
    const QSize icon = large ? QSize(26, 26) : QSize(18, 18);
    for (const auto& [made, name] : icons_)
        made->setIconSize(icon);
    auto* order = new QWidget(this);
    order->setLayoutDirection(Qt::LeftToRight);  // backward is left, as on the waveform
    auto* buttons = new QHBoxLayout(order);
    buttons->setContentsMargins({});
    buttons->setSpacing(large ? 6 : 2);
    for (QToolButton* made : {back_, nudgeBack_, play_, nudgeForward_})
        buttons->addWidget(made);
    auto* options = new QHBoxLayout;
    options->setSpacing(2);
    for (const Toggle& one : toggles_)
        options->addWidget(one.button);
    if (!large) {
        auto* row = new QHBoxLayout(this);
        row->setContentsMargins(8, 3, 8, 3);
        row->setSpacing(12);
        row->addWidget(order);
        row->addWidget(counter_);
        row->addLayout(options);
        row->addStretch(1);
        row->addWidget(boost);
        return;
    }
    counter_->setGrowing(true);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(12, 10, 12, 12);
    column->setSpacing(10);
    column->addWidget(counter_, 1);
    auto* row = new QHBoxLayout;
    row->addLayout(options);
    row->addStretch(1);
    row->addWidget(order);
    row->addStretch(1);
    row->addWidget(boost);
    column->addLayout(row);
}

void TransportBar::chooseNudge() {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    auto* group = new QActionGroup(menu);
    const QString now = defaults_.value(settings::nudgeValeur);
    for (const auto& [value, text] : {std::pair("1f", tr("Nudge by 1 Frame")), std::pair("1s", tr("Nudge by 1 Second")),
                                      std::pair("5s", tr("Nudge by 5 Seconds"))}) {
        QAction* one = menu->addAction(text);
        one->setCheckable(true);
        one->setChecked(now == QLatin1String(value));
        group->addAction(one);
        connect(one, &QAction::triggered, this,
                [this, value = value] { defaults_.set(settings::nudgeValeur, QString::fromLatin1(value)); });
    }
    menu->popup(QCursor::pos());
}

void TransportBar::refresh() {
    const LecteurCoreAudio& player = playback_.player();
    for (QToolButton* made : needTake_)
        made->setEnabled(player.pret());
    const QString name = player.enLecture() ? tr("Pause") : tr("Play");
    play_->setAccessibleName(name);
    play_->setToolTip(QStringLiteral("%1 (%2)").arg(name, keyText(KeyId::playPause)));
    play_->setIcon(theme_.icon(player.enLecture() ? QStringLiteral("pause") : QStringLiteral("play")));
    back_->setToolTip(tr("Return to beginning (Home)"));
    const QString amount = playback_.nudgeAmount();
    nudgeBack_->setToolTip(tr("Nudge backward: %1\nRight click to choose how far").arg(amount));
    nudgeForward_->setToolTip(tr("Nudge forward: %1\nRight click to choose how far").arg(amount));
    for (const Toggle& one : toggles_)
        one.button->setChecked((playback_.*one.isOn)());
}

void TransportBar::refreshIcons() {
    for (const auto& [made, name] : icons_)
        made->setIcon(theme_.icon(name));
    refresh();
}

}  // namespace dravik
