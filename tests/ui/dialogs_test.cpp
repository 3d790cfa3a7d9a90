#include "app/text.h"
#include "base/build_info.h"
#include "tests/support/files.h"
#include "tests/ui/window_stage.h"
#include "ui/about_windows.h"
#include "ui/preferences_window.h"
#include "ui/qt_dialogs.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTabBar>
#include <algorithm>

#include <gmock/gmock.h>

namespace dravik {
namespace {

/// Real dialogs over the real window, answered with keys.
class DialogsTest : public testing::Test, public test::WindowStage {
  protected:
    struct Outcome {
        int button = -1;
        bool checked = false;
        QStringList order;  ///< of the buttons, from the left
    };
    Outcome answer(const Alert& question, Qt::Key key, bool check = false) {
        Outcome outcome;
        asking.ask(question, [&](AlertAnswer given) {
            outcome.button = given.button;
            outcome.checked = given.checked;
        });
        QTest::qWait(0);
        QMessageBox* box = alert();
        if (box == nullptr) {
            ADD_FAILURE() << "no alert";
            return outcome;
        }
        QList<QAbstractButton*> buttons = box->buttons();
        std::sort(buttons.begin(), buttons.end(), [](const QAbstractButton* a, const QAbstractButton* b) {
            return a->mapToGlobal(QPoint()).x() < b->mapToGlobal(QPoint()).x();
        });
        for (const QAbstractButton* button : buttons)
            outcome.order << button->text();
        if (check) QTest::mouseClick(box->checkBox(), Qt::LeftButton, {}, {8, box->checkBox()->height() / 2});
        QTest::keyClick(box, key);
        EXPECT_TRUE(QTest::qWaitFor([] { return alert() == nullptr; }, 20'000));
        return outcome;
    }
};

Alert question(QStringList buttons) {
    Alert alert;
    alert.title = QStringLiteral("Title <b>");
    alert.text = QStringLiteral("Text with <i>no</i> markup");
    alert.buttons = std::move(buttons);
    return alert;
}

TEST_F(DialogsTest, ButtonsStandInTheirOrderAndKeysPressTheRightOne) {
    const QStringList three{QStringLiteral("Save"), QStringLiteral("Discard changes"), QStringLiteral("Cancel")};
    const Outcome saved = answer(question(three), Qt::Key_Return);
    EXPECT_EQ(saved.order, three);
    EXPECT_EQ(saved.button, 0) << "Return is the first one";
    EXPECT_EQ(answer(question(three), Qt::Key_Escape).button, 2) << "Escape is the last one";

    Alert others = question({QStringLiteral("OK"), QStringLiteral("Save the Others")});
    others.cancelButton = 0;
    EXPECT_EQ(answer(others, Qt::Key_Escape).button, 0);

    Alert discard = question({QStringLiteral("Discard"), QStringLiteral("Cancel")});
    discard.destructive = true;
    EXPECT_EQ(answer(discard, Qt::Key_Return).button, 1) << "Return destroys nothing";

    Alert cue = question({QStringLiteral("Delete"), QStringLiteral("Cancel")});
    cue.checkBox = QStringLiteral("Do not ask again");
    const Outcome checked = answer(cue, Qt::Key_Return, true);
    EXPECT_EQ(checked.button, 0);
    EXPECT_TRUE(checked.checked);
}

TEST_F(DialogsTest, QuestionsWaitForEachOtherAndTextIsNoMarkup) {
    std::vector<int> answers;
    asking.ask(question({QStringLiteral("One"), QStringLiteral("Cancel")}), [&](AlertAnswer) { answers.push_back(1); });
    asking.ask(question({QStringLiteral("Two"), QStringLiteral("Cancel")}), [&](AlertAnswer) { answers.push_back(2); });
    QTRY_VERIFY(alert() != nullptr);
    EXPECT_EQ(alert()->findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"))->textFormat(), Qt::PlainText);
    press(QStringLiteral("One"));
    press(QStringLiteral("Two"));
    QTRY_COMPARE(answers.size(), std::size_t{2});
    EXPECT_THAT(answers, testing::ElementsAre(1, 2));
}

TEST_F(DialogsTest, ALineOfTextIsTakenWithReturnAndLeftWithEscape) {
    TextQuestion name;
    name.title = QStringLiteral("Edit Cue Name");
    name.text = QStringLiteral("Slate");
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        std::optional<QString> typed = QStringLiteral("not answered");
        asking.askText(name, [&](const std::optional<QString>& answer) { typed = answer; });
        auto* dialog = window->findChild<QDialog*>(QStringLiteral("textQuestion"));
        ASSERT_NE(dialog, nullptr);
        auto* field = dialog->findChild<QLineEdit*>();
        EXPECT_EQ(field->selectedText(), QStringLiteral("Slate"));
        QTest::keyClicks(field, QStringLiteral("Clap"));
        QTest::keyClick(field, key);
        QTRY_VERIFY(window->findChild<QDialog*>(QStringLiteral("textQuestion")) == nullptr);
        EXPECT_EQ(typed, key == Qt::Key_Return ? std::optional(QStringLiteral("Clap")) : std::nullopt);
    }
}

TEST_F(DialogsTest, PreferencesHoldAtOnceAndAreKept) {
    PreferencesWindow preferences(settings, commands, theme);
    QSignalSpy opened(&commands, &Commands::dravikPreferencesWindowDidOpen);
    QSignalSpy closed(&commands, &Commands::dravikPreferencesWindowDidClose);
    preferences.present();
    preferences.present();
    EXPECT_EQ(opened.count(), 1);

    auto* appearance = preferences.findChild<QComboBox*>(QLatin1String(settings::appearance.key));
    appearance->setFocus();
    QTest::keyClick(appearance, Qt::Key_End);
    EXPECT_EQ(settings.value(settings::appearance), QStringLiteral("dark"));
    EXPECT_TRUE(theme.isDark());
    auto* accent = preferences.findChild<QComboBox*>(QLatin1String(settings::couleurAccent.key));
    QTest::keyClick(accent, Qt::Key_Down);
    EXPECT_EQ(theme.accent(), QColor(settings.value(settings::couleurAccent)));
    EXPECT_NE(settings.value(settings::couleurAccent), QLatin1String(settings::couleurAccent.standard));

    const std::pair<const Setting<bool>*, int> boxes[] = {
        {&settings::reopenLastFolder, 1},
        {&settings::confirmBeforeSelectingAnotherTake, 1},
        {&settings::lectureEnBoucle, 2},
        {&settings::suiviLectureCentre, 2},
        {&settings::afficherEchelleDBFSMixerPrincipal, 3},
        {&settings::confirmerSuppressionCues, 4},
        {&settings::masquerAvertissementDesactivationGroupesMono, 4},
    };
    for (const auto& [setting, tab] : boxes) {
        preferences.showTab(tab);
        auto* box = preferences.findChild<QCheckBox*>(QLatin1String(setting->key));
        ASSERT_NE(box, nullptr) << setting->key;
        QTest::mouseClick(box, Qt::LeftButton, {}, {8, box->height() / 2});
        EXPECT_NE(settings.value(*setting), setting->standard) << setting->key;
    }
    preferences.showTab(2);
    auto* pause = preferences.findChild<QComboBox*>(QLatin1String(settings::pauseComportement.key));
    QTest::keyClick(pause, Qt::Key_Down);
    EXPECT_EQ(settings.value(settings::pauseComportement), QStringLiteral("retour"));
    preferences.showTab(3);
    auto* floor = preferences.findChild<QSpinBox*>(QLatin1String(settings::meterPlancher.key));
    floor->selectAll();
    QTest::keyClicks(floor, QStringLiteral("-48"));
    QTest::keyClick(floor, Qt::Key_Return);
    EXPECT_EQ(settings.value(settings::meterPlancher), -48);
    // "Do not ask again" in an alert shows in the window that is open.
    settings.set(settings::confirmerSuppressionCues, true);
    EXPECT_TRUE(preferences.findChild<QCheckBox*>(QLatin1String(settings::confirmerSuppressionCues.key))->isChecked());
    QTest::keyClick(&preferences, Qt::Key_Escape);
    EXPECT_EQ(closed.count(), 1);

    const UserDefaults later{settingsFolder / "settings.ini"};
    EXPECT_FALSE(later.value(settings::reopenLastFolder));
    EXPECT_EQ(later.value(settings::appearance), QStringLiteral("dark"));
}

/// Every control that takes keys says what it is.
void expectNamed(const QWidget& top) {
    for (const QWidget* widget : top.findChildren<QWidget*>()) {
        const bool takesKeys = widget->focusPolicy() != Qt::NoFocus && widget->isVisibleTo(&top);
        if (!takesKeys || widget->objectName().startsWith(QStringLiteral("qt_"))) continue;
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const auto* label = qobject_cast<const QLabel*>(widget);
        const auto hasBuddy = [&] {
            const auto labels = top.findChildren<QLabel*>();
            return std::any_of(labels.begin(), labels.end(), [&](const QLabel* one) { return one->buddy() == widget; });
        };
        const bool named = !widget->accessibleName().isEmpty() || (button != nullptr && !button->text().isEmpty()) ||
                           label != nullptr || qobject_cast<const QTabBar*>(widget) != nullptr || hasBuddy();
        EXPECT_TRUE(named) << top.windowTitle().toStdString() << ": " << widget->metaObject()->className() << " "
                           << widget->objectName().toStdString();
    }
}

TEST_F(DialogsTest, EveryControlOfEveryWindowHasAName) {
    test::recorderFile({.scene = "1"}, {.channels = 2}, 4800).write(folder / "A.wav");
    MainWindowStage::open();
    content->selectionnerLigne(0);
    settle();
    expectNamed(*window);
    PreferencesWindow preferences(settings, commands, theme);
    preferences.present();
    for (int tab = 0; tab < PreferencesWindow::tabCount; ++tab) {
        preferences.showTab(tab);
        expectNamed(preferences);
    }
    preferences.reject();
    for (const auto& show : {&showShortcuts, &showAbout, &showLicences}) {
        show(*window);
        QWidget* dialog = nullptr;
        ASSERT_TRUE(QTest::qWaitFor(
            [&] {
                dialog = QApplication::activeWindow();
                return dialog != nullptr && dialog != window.get();
            },
            20'000));
        expectNamed(*dialog);
        QTest::keyClick(dialog, Qt::Key_Escape);
        const QPointer<QWidget> closing(dialog);
        EXPECT_TRUE(QTest::qWaitFor([&] { return closing.isNull(); }, 20'000));
    }
    asking.ask(question({QStringLiteral("OK")}), [](AlertAnswer) {});
    QTRY_VERIFY(alert() != nullptr);
    expectNamed(*alert());
    press(QStringLiteral("OK"));
}

TEST_F(DialogsTest, AboutSaysWhichVersionItIs) {
    showAbout(*window);
    ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() != window.get(); }, 20'000));
    QDialog* about = qobject_cast<QDialog*>(QApplication::activeWindow());
    ASSERT_NE(about, nullptr);
    const auto labels = about->findChildren<QLabel*>();
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
        return label->text().contains(QStringLiteral("Dravik ") + toQt(buildInfo().version));
    }));
    QTest::mouseClick(about->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Close), Qt::LeftButton);
    const QPointer<QDialog> closing(about);
    EXPECT_TRUE(QTest::qWaitFor([&] { return closing.isNull(); }, 20'000));
}

}  // namespace
}  // namespace dravik
