#include "ui/operations/operation_overlay.h"

#include "tests/ui/operations/widget_stage.h"

#include <QClipboard>
#include <QLineEdit>
#include <QSignalSpy>

namespace dravik {
namespace {

OperationAudioResult result(const std::string& name, bool success, const std::string& message) {
    OperationAudioResult made;
    made.sourceName = name;
    made.success = success;
    made.message = message;
    if (success) made.destinationURL = "/day/" + name + "_new.wav";
    return made;
}

OperationCompletionInfo ended(std::vector<OperationAudioResult> results) {
    OperationCompletionInfo info;
    info.successTitle = QStringLiteral("Merge Complete");
    info.failedTitle = QStringLiteral("Merge Failed");
    info.successMessage = QStringLiteral("All well.");
    info.noun = Noun::take;
    info.results = std::move(results);
    return info;
}

/// Counts the keys that come through to a widget.
class Heard final : public QObject {
  public:
    int keys = 0;
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::KeyPress) ++keys;
        return false;
    }
};

class Overlay : public test::WidgetStage {
  protected:
    Overlay() {
        show(below, {640, 400});
        below.setAccessibleName(QStringLiteral("Below"));
        below.setFocus();
    }
    [[nodiscard]] QString line(int row) { return overlay.results().model()->index(row, 0).data().toString(); }

    QLineEdit below;
    OperationOverlay overlay{theme, &window};
    QSignalSpy cancelled{&overlay, &OperationOverlay::cancelRequested};
    QSignalSpy dismissed{&overlay, &OperationOverlay::dismissed};
    QSignalSpy revealed{&overlay, &OperationOverlay::revealRequested};
};

TEST_F(Overlay, ShowsHowFarTheWorkIsAndIsCancelledOnce) {
    OperationWorking working{QStringLiteral("Merging Files…"), {}, QStringLiteral("A.wav"), {}, false};
    EXPECT_FALSE(overlay.isVisible());
    overlay.setState(working);
    const auto& bar = named<QProgressBar>(QStringLiteral("Progress"));
    EXPECT_EQ(bar.maximum(), 0) << "busy while nobody can tell";
    working.fraction = 0.25;
    working.remaining = QStringLiteral("2 min left");
    overlay.setState(working);
    EXPECT_DOUBLE_EQ(double(bar.value()) / bar.maximum(), 0.25);
    EXPECT_TRUE(says(QStringLiteral("2 min left")));
    EXPECT_TRUE(says(QStringLiteral("A.wav")));
    window.resize(900, 500);
    EXPECT_EQ(overlay.size(), window.size()) << "covers whatever size its parent has";
    working.fileName = QString(3000, QLatin1Char('W'));
    overlay.setState(working);
    QTest::qWait(0);
    EXPECT_EQ(window.width(), 900) << "a long name is cut";

    key(Qt::Key_Space);
    EXPECT_EQ(cancelled.count(), 1);
    key(Qt::Key_Escape);
    EXPECT_EQ(cancelled.count(), 2);
    working.cancelling = true;
    overlay.setState(working);
    EXPECT_FALSE(named<QPushButton>(QStringLiteral("Cancelling…")).isEnabled());
    Heard heard;
    window.installEventFilter(&heard);
    key(Qt::Key_Escape);
    key(Qt::Key_X);
    EXPECT_EQ(cancelled.count(), 2);
    EXPECT_EQ(heard.keys, 0) << "keys do not reach what is covered";
}

TEST_F(Overlay, TellsFailuresFirstAndRevealsTheChosenFile) {
    overlay.setState(ended({result("A", true, "Created A_new.wav"), result("B", false, "No room.\nAt all."),
                            result("C", true, "Created C_new.wav")}));
    EXPECT_TRUE(says(QStringLiteral("Operation Completed with Errors")));
    EXPECT_TRUE(says(QStringLiteral("2 of 3 takes succeeded.")));
    QTableView& results = overlay.results();
    EXPECT_EQ(line(0), QStringLiteral("B"));
    EXPECT_EQ(results.model()->index(0, 1).data().toString(), QStringLiteral("No room. At all.")) << "one line";
    EXPECT_EQ(results.model()->index(0, 1).data(Qt::ToolTipRole).toString(), QStringLiteral("No room.\nAt all."));

    click(QStringLiteral("Reveal"));
    results.selectRow(2);
    click(QStringLiteral("Reveal"));
    ASSERT_EQ(revealed.count(), 2);
    EXPECT_EQ(revealed[0][0].value<std::filesystem::path>(), "/day/A_new.wav") << "the first that was made";
    EXPECT_EQ(revealed[1][0].value<std::filesystem::path>(), "/day/C_new.wav");
    results.selectRow(0);
    EXPECT_FALSE(named<QPushButton>(QStringLiteral("Reveal")).isEnabled()) << "nothing was made of it";

    results.setFocus();
    results.selectAll();
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(),
              QStringLiteral("B\tNo room.\nAt all.\nA\tCreated A_new.wav\nC\tCreated C_new.wav"));
    expectNamed();
}

TEST_F(Overlay, EachEndHasItsTitle) {
    OperationCompletionInfo stopped = ended({});
    stopped.cancelled = true;
    struct Case {
        OperationCompletionInfo info;
        const char* title;
        const char* text;
    };
    const Case cases[] = {{ended({result("A", true, "")}), "Merge Complete", "All well."},
                          {ended({result("A", false, "")}), "Merge Failed", nullptr},
                          {stopped, "Operation Cancelled", "Nothing was made."}};
    for (const Case& one : cases) {
        overlay.setState(one.info);
        EXPECT_TRUE(says(QString::fromLatin1(one.title)));
        EXPECT_EQ(overlay.accessibleName(), QString::fromLatin1(one.title));
        if (one.text != nullptr) {
            EXPECT_TRUE(says(QString::fromLatin1(one.text))) << one.title;
        }
    }
}

TEST_F(Overlay, WhatIsShownFitsWhateverWasShownBefore) {
    const std::vector<OperationAudioResult> many(40, result("A", true, "Created A_new.wav"));
    const OperationStatusOverlayState states[] = {
        ended(many), OperationWorking{QStringLiteral("Merging Files…"), 0.5, QStringLiteral("A.wav"), {}, false},
        ended({result("A", true, "Created A_new.wav")}), ended(many)};
    const auto& card = *overlay.findChild<QWidget*>(QStringLiteral("card"));
    for (const OperationStatusOverlayState& state : states) {
        overlay.setState(state);
        QTest::qWait(0);
        const QWidget& page = *overlay.findChild<QStackedWidget*>()->currentWidget();
        EXPECT_GE(page.height(), page.layout()->totalMinimumHeightForWidth(page.width())) << "nothing overlaps";
        EXPECT_TRUE(overlay.rect().contains(card.geometry()));
    }
}

TEST_F(Overlay, KeysStayInItAndGoBackWhereTheyWere) {
    overlay.setState(OperationWorking{QStringLiteral("Merging Files…"), 0.5, {}, {}, false});
    overlay.setState(ended({result("A", true, "Created A_new.wav")}));
    EXPECT_TRUE(named<QPushButton>(QStringLiteral("OK")).hasFocus());
    for (int tab = 0; tab < 7; ++tab) {
        key(Qt::Key_Tab, tab % 2 == 0 ? Qt::NoModifier : Qt::ShiftModifier);
        EXPECT_TRUE(overlay.isAncestorOf(window.focusWidget()));
        if (tab % 3 == 0) key(Qt::Key_Tab);
    }
    overlay.results().setFocus();
    key(Qt::Key_Return);
    EXPECT_EQ(dismissed.count(), 1);
    key(Qt::Key_Escape);
    EXPECT_EQ(dismissed.count(), 2);
    overlay.setState(std::nullopt);
    EXPECT_FALSE(overlay.isVisible());
    EXPECT_TRUE(below.hasFocus());
}

}  // namespace
}  // namespace dravik
