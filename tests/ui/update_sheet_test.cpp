#include "ui/update_sheet.h"

#include "tests/ui/window_stage.h"
#include "ui/preferences_window.h"

#include <QCheckBox>
#include <QClipboard>
#include <QFile>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTextEdit>

#include <gmock/gmock.h>

namespace dravik {
namespace {

/// The sheet over the real window, used with keys.
class UpdateSheetTest : public testing::Test, public test::WindowStage {
  protected:
    static UpdatePresentation available() {
        return {QStringLiteral("Dravik <i>1.5</i> is available"),
                {QStringLiteral("You are <b>here</b>")},
                {QStringLiteral("<b>One</b> &amp; all"), QStringLiteral("Two")},
                QStringLiteral("https://dravik.example/get"),
                QStringLiteral("Download Update"),
                QStringLiteral("Later")};
    }
    static UpdatePresentation notesAlone() {
        UpdatePresentation notes = available();
        notes.downloadURL.reset();
        notes.downloadButton.clear();
        notes.closeButton = QStringLiteral("OK");
        return notes;
    }
    void open(const UpdatePresentation& presentation) {
        asking.show([&, presentation](QWidget* parent) {
            return makeUpdateSheet(
                presentation, [this](const QString& url) { downloads << url; }, parent);
        });
        QTRY_VERIFY(sheet() != nullptr && QApplication::activeWindow() == sheet());
    }
    [[nodiscard]] static QDialog* sheet() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->objectName() == QLatin1String("updateSheet") && widget->isVisible())
                return qobject_cast<QDialog*>(widget);
        }
        return nullptr;
    }
    void expectClosed() {
        EXPECT_TRUE(QTest::qWaitFor([] { return sheet() == nullptr; }, 20'000));
    }

    QStringList downloads;
};

TEST_F(UpdateSheetTest, ReturnDownloadsAndEscapeDoesNot) {
    struct Row {
        UpdatePresentation presentation;
        Qt::Key key;
        qsizetype downloads;
    };
    const Row rows[] = {{available(), Qt::Key_Return, 1},
                        {available(), Qt::Key_Escape, 0},
                        {notesAlone(), Qt::Key_Return, 0},
                        {notesAlone(), Qt::Key_Escape, 0}};
    for (const Row& row : rows) {
        downloads.clear();
        open(row.presentation);
        EXPECT_TRUE(sheet()->isModal());
        EXPECT_EQ(sheet()->windowModality(), Qt::WindowModal);
        key(row.key);
        expectClosed();
        EXPECT_EQ(downloads.size(), row.downloads);
    }
    open(available());
    sheet()->findChild<QTextEdit*>()->setFocus();
    key(Qt::Key_Return);
    expectClosed();
    EXPECT_EQ(downloads, QStringList{QStringLiteral("https://dravik.example/get")}) << "also from within the notes";
}

TEST_F(UpdateSheetTest, EveryButtonAndTheNotesAreReachedByTab) {
    open(available());
    QStringList reached;
    for (int steps = 0; steps < 3; ++steps) {
        const QWidget* focused = QApplication::focusWidget();
        const auto* button = qobject_cast<const QPushButton*>(focused);
        reached << (button != nullptr ? button->text() : focused->accessibleName());
        key(Qt::Key_Tab);
    }
    EXPECT_THAT(reached, testing::UnorderedElementsAre(QStringLiteral("Download Update"), QStringLiteral("Later"),
                                                       QStringLiteral("Release notes")));
    EXPECT_EQ(reached.front(), QStringLiteral("Release notes")) << "not a button, which a stray Space would press";
    sheet()->findChild<QTextEdit*>()->setFocus();
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("<b>One</b> &amp; all\nTwo")) << "no markup";
    for (const QLabel* label : sheet()->findChildren<QLabel*>()) {
        if (label->text().isEmpty()) continue;
        EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().toStdString();
    }
    key(Qt::Key_Escape);
    expectClosed();
}

TEST_F(UpdateSheetTest, WaitsForTheQuestionThatIsOpen) {
    Alert alert;
    alert.title = QStringLiteral("First");
    alert.buttons = {QStringLiteral("OK")};
    asking.ask(alert, [](AlertAnswer) {});
    bool made = false;
    asking.show([&](QWidget* parent) {
        made = true;
        return makeUpdateSheet(notesAlone(), {}, parent);
    });
    QTest::qWait(50);
    EXPECT_FALSE(made);
    press(QStringLiteral("OK"));
    QTRY_VERIFY(sheet() != nullptr);
    asking.ask(alert, [](AlertAnswer) {});
    EXPECT_EQ(WindowStage::alert(), nullptr);
    QTest::keyClick(sheet(), Qt::Key_Escape);
    press(QStringLiteral("OK"));
    expectClosed();
}

TEST_F(UpdateSheetTest, TheHelpMenuAsksForEachOfThem) {
    const std::pair<const char*, void (MainWindow::*)()> rows[] = {
        {"Check for Updates…", &MainWindow::checkForUpdatesRequested},
        {"What's New", &MainWindow::whatsNewRequested},
        {"Contact Support", &MainWindow::contactSupportRequested},
        {"Dravik Web Site", &MainWindow::webSiteRequested}};
    for (const auto& [text, signal] : rows) {
        const QSignalSpy asked(window.get(), signal);
        for (QAction* action : window->menuBar()->actions().constLast()->menu()->actions()) {
            if (action->text() == QString::fromUtf8(text)) action->trigger();
        }
        EXPECT_EQ(asked.count(), 1) << text;
    }
}

TEST_F(UpdateSheetTest, TheSettingIsOfNoUseWhereThereIsNoServer) {
    for (const bool updatesExist : {true, false}) {
        PreferencesWindow preferences(settings, commands, theme, updatesExist);
        auto* box = preferences.findChild<QCheckBox*>(QStringLiteral("verifierMisesAJourAutomatiquement"));
        ASSERT_NE(box, nullptr);
        EXPECT_TRUE(box->isChecked());
        EXPECT_EQ(box->isEnabled(), updatesExist);
        EXPECT_EQ(box->toolTip().isEmpty(), updatesExist) << "the reason";
        box->click();
        EXPECT_EQ(settings.value(settings::verifierMisesAJourAutomatiquement), !updatesExist);
        settings.set(settings::verifierMisesAJourAutomatiquement, true);
    }
}

TEST_F(UpdateSheetTest, TheProgramCarriesItsChangeLog) {
    QFile file(QStringLiteral(":/changes.md"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains("\n## "));
}

}  // namespace
}  // namespace dravik
