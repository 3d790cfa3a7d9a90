#include "ui/preferences_window.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

namespace dravik {
namespace {

struct Accent {
    const char* name;
    const char* colour;
};
constexpr Accent accents[] = {{QT_TRANSLATE_NOOP("dravik::PreferencesWindow", "Amber"), "#E8912D"},
                              {QT_TRANSLATE_NOOP("dravik::PreferencesWindow", "Blue"), "#4A90E2"},
                              {QT_TRANSLATE_NOOP("dravik::PreferencesWindow", "Green"), "#3FA66B"},
                              {QT_TRANSLATE_NOOP("dravik::PreferencesWindow", "Red"), "#D9534F"},
                              {QT_TRANSLATE_NOOP("dravik::PreferencesWindow", "Purple"), "#9B6DD6"},
                              {QT_TRANSLATE_NOOP("dravik::PreferencesWindow", "Graphite"), "#7A8594"}};

/// Below the text of a check box, not below its box.
constexpr int hintIndent = 20;

QIcon swatch(const QColor& colour) {
    QPixmap pixmap(28, 28);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(colour);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(4, 4, 20, 20);
    return QIcon(pixmap);
}

QLabel* hint(const QString& text) {
    auto* label = new QLabel(text);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setContentsMargins(hintIndent, 0, 0, 0);
    return label;
}

}  // namespace

PreferencesWindow::PreferencesWindow(UserDefaults& settings, Commands& commands, const Theme& theme, bool updatesExist)
    : settings_(settings),
      commands_(commands),
      theme_(theme),
      updatesExist_(updatesExist),
      tabs_(new QTabWidget(this)) {
    setWindowTitle(tr("Preferences"));
    setObjectName(QStringLiteral("preferences"));
    tabs_->setDocumentMode(true);
    tabs_->setAccessibleName(tr("Groups of settings"));
    tabs_->addTab(appearanceTab(), tr("Appearance"));
    tabs_->addTab(filesTab(), tr("Files and Editing"));
    tabs_->addTab(listeningTab(), tr("Listening"));
    tabs_->addTab(metersTab(), tr("Meters"));
    tabs_->addTab(warningsTab(), tr("Questions"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    // Return in a field takes its value over, and no more.
    buttons->button(QDialogButtonBox::Close)->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs_);
    layout->addWidget(buttons);
    const QMargins around = layout->contentsMargins();
    setMinimumWidth(std::max(560, tabs_->tabBar()->sizeHint().width() + around.left() + around.right()));
    setSizeGripEnabled(false);
}

void PreferencesWindow::present() {
    const bool wasVisible = isVisible();
    show();
    raise();
    activateWindow();
    if (!wasVisible) emit commands_.dravikPreferencesWindowDidOpen();
}

void PreferencesWindow::showTab(int tab) { tabs_->setCurrentIndex(tab); }

void PreferencesWindow::done(int result) {
    QDialog::done(result);
    emit commands_.dravikPreferencesWindowDidClose();
}

QWidget* PreferencesWindow::checkBox(const QString& text, const Setting<bool>& setting, bool inverted) {
    auto* box = new QCheckBox(text, this);
    box->setObjectName(QString::fromLatin1(setting.key));
    box->setChecked(settings_.value(setting) != inverted);
    connect(box, &QCheckBox::toggled, this,
            [this, setting, inverted](bool on) { settings_.set(setting, on != inverted); });
    connect(&settings_, &UserDefaults::changed, box, [this, box, setting, inverted](const QString& key) {
        if (key == QLatin1String(setting.key)) box->setChecked(settings_.value(setting) != inverted);
    });
    return box;
}

QWidget* PreferencesWindow::appearanceTab() {
    auto* tab = new QWidget(this);
    auto* form = new QFormLayout(tab);

    auto* appearance = new QComboBox(tab);
    appearance->setObjectName(QString::fromLatin1(settings::appearance.key));
    appearance->addItem(tr("As the system"), QStringLiteral("system"));
    appearance->addItem(tr("Light"), QStringLiteral("light"));
    appearance->addItem(tr("Dark"), QStringLiteral("dark"));
    appearance->setCurrentIndex(std::max(0, appearance->findData(settings_.value(settings::appearance))));
    connect(appearance, &QComboBox::currentIndexChanged, this,
            [this, appearance] { settings_.set(settings::appearance, appearance->currentData().toString()); });
    form->addRow(tr("&Appearance:"), appearance);

    auto* accent = new QComboBox(tab);
    accent->setObjectName(QString::fromLatin1(settings::couleurAccent.key));
    for (const Accent& one : accents) {
        accent->addItem(swatch(QColor(one.colour)), tr(one.name), QString::fromLatin1(one.colour));
    }
    const QString current = settings_.value(settings::couleurAccent);
    if (accent->findData(current) < 0) accent->addItem(swatch(QColor(current)), tr("Own"), current);
    accent->setCurrentIndex(accent->findData(current));
    connect(accent, &QComboBox::currentIndexChanged, this,
            [this, accent] { settings_.set(settings::couleurAccent, accent->currentData().toString()); });
    auto* other = new QToolButton(tab);
    other->setText(tr("Other..."));
    connect(other, &QToolButton::clicked, this, [this, accent] {
        auto* dialog = new QColorDialog(theme_.accent(), this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(dialog, &QColorDialog::colorSelected, this, [accent](const QColor& colour) {
            const QString name = colour.name().toUpper();
            if (accent->findData(name) < 0) accent->addItem(swatch(colour), tr("Own"), name);
            accent->setCurrentIndex(accent->findData(name));
        });
        dialog->open();
    });
    auto* line = new QHBoxLayout;
    line->addWidget(accent, 1);
    line->addWidget(other);
    auto* label = new QLabel(tr("A&ccent colour:"), tab);
    label->setBuddy(accent);
    form->addRow(label, line);
    return tab;
}

QWidget* PreferencesWindow::filesTab() {
    auto* tab = new QWidget(this);
    auto* layout = new QVBoxLayout(tab);
    layout->addWidget(checkBox(tr("&Open the last folder when Dravik starts"), settings::reopenLastFolder));
    QWidget* updates = checkBox(tr("Check for &updates automatically"), settings::verifierMisesAJourAutomatiquement);
    if (!updatesExist_) {
        updates->setEnabled(false);
        updates->setToolTip(tr("This build of Dravik was made without an update server."));
    }
    layout->addWidget(updates);
    layout->addWidget(
        checkBox(tr("&Ask to save before another take is selected"), settings::confirmBeforeSelectingAnotherTake));
    layout->addWidget(hint(tr("Otherwise unsaved changes stay with their rows, marked, until Save All.")));
    layout->addStretch();
    return tab;
}

QComboBox* PreferencesWindow::choice(const Setting<const char*>& setting,
                                     const std::vector<std::pair<const char*, const char*>>& choices) {
    auto* box = new QComboBox(this);
    box->setObjectName(QString::fromLatin1(setting.key));
    for (const auto& [value, text] : choices)
        box->addItem(tr(text), QString::fromLatin1(value));
    // What is none of them counts as the first.
    const auto show = [this, box, setting] {
        box->setCurrentIndex(std::max(0, box->findData(settings_.value(setting))));
    };
    show();
    connect(box, &QComboBox::activated, this,
            [this, box, setting] { settings_.set(setting, box->currentData().toString()); });
    connect(&settings_, &UserDefaults::changed, box, [setting, show](const QString& key) {
        if (key == QLatin1String(setting.key)) show();
    });
    return box;
}

QSpinBox* PreferencesWindow::number(const Setting<int>& setting, int least, int most, const QString& unit) {
    auto* box = new QSpinBox(this);
    box->setObjectName(QString::fromLatin1(setting.key));
    box->setRange(least, most);
    box->setSuffix(unit);
    box->setKeyboardTracking(false);
    box->setValue(settings_.value(setting));
    connect(box, &QSpinBox::valueChanged, this, [this, setting](int value) { settings_.set(setting, value); });
    return box;
}

QWidget* PreferencesWindow::listeningTab() {
    auto* tab = new QWidget(this);
    auto* form = new QFormLayout(tab);
    form->addRow(tr("When &paused:"),
                 choice(settings::pauseComportement, {{"", QT_TR_NOOP("stay where the playhead is")},
                                                      {"retour", QT_TR_NOOP("go back to where playback began")}}));
    form->addRow(tr("&Solo:"), choice(settings::soloComportement, {{"OR", QT_TR_NOOP("one channel, more with Shift")},
                                                                   {"X", QT_TR_NOOP("every click adds a channel")}}));
    form->addRow(tr("&Nudge by:"), choice(settings::nudgeValeur, {{"1f", QT_TR_NOOP("1 frame")},
                                                                  {"1s", QT_TR_NOOP("1 second")},
                                                                  {"5s", QT_TR_NOOP("5 seconds")}}));
    form->addRow(checkBox(tr("&Loop the take or the selection"), settings::lectureEnBoucle));
    form->addRow(checkBox(tr("&Keep the playhead in the middle of the waveform"), settings::suiviLectureCentre));
    form->addRow(checkBox(tr("Show &elapsed time instead of timecode"), settings::counterShowsElapsedTime));
    constexpr int mostMegabytes = 1'000'000;
    form->addRow(tr("Room for &waveforms:"), number(settings::peakCacheMegabytes, 0, mostMegabytes, tr(" MB")));
    form->addRow(
        hint(tr("Waveforms are kept so that a take shows at once the next time; those that were "
                "not used for the longest time go first.")));
    return tab;
}

QWidget* PreferencesWindow::metersTab() {
    auto* tab = new QWidget(this);
    auto* form = new QFormLayout(tab);
    const QString unit = tr(" dB");
    form->addRow(tr("&Bottom of the scale:"), number(settings::meterPlancher, -120, -12, unit));
    form->addRow(tr("&Warning from:"), number(settings::meterSeuilJaune, -60, 0, unit));
    form->addRow(tr("&Alarm from:"), number(settings::meterSeuilRouge, -60, 0, unit));
    form->addRow(
        checkBox(tr("Show the &scale in the mixer of the main window"), settings::afficherEchelleDBFSMixerPrincipal));
    return tab;
}

QWidget* PreferencesWindow::warningsTab() {
    auto* tab = new QWidget(this);
    auto* layout = new QVBoxLayout(tab);
    layout->addWidget(checkBox(tr("Ask before a cue is &deleted"), settings::confirmerSuppressionCues));
    layout->addWidget(checkBox(tr("Warn when mono &grouping is switched off"),
                               settings::masquerAvertissementDesactivationGroupesMono, true));
    layout->addStretch();
    return tab;
}

}  // namespace dravik
