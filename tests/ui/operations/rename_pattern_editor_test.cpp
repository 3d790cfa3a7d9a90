#include "ui/operations/rename_pattern_editor.h"

#include "app/rename_patterns.h"
#include "tests/ui/operations/widget_stage.h"
#include "ui/operations/pattern_row.h"

#include <QAction>
#include <QMenu>
#include <QSignalSpy>

namespace dravik {
namespace {

class PatternEditor : public test::WidgetStage {
  protected:
    void show(std::string_view pattern, const QSize& size = {560, 300}) {
        editor.setPattern(parsePattern(pattern));
        WidgetStage::show(editor, size);
    }
    [[nodiscard]] std::string text() const { return patternText(editor.pattern()); }
    [[nodiscard]] PatternChip& chip(std::size_t at) { return *editor.row().chips().at(at); }
    /// The place of the block with the keyboard; -1 for none.
    [[nodiscard]] int focused() {
        const auto& chips = editor.row().chips();
        const auto found = std::find_if(chips.begin(), chips.end(), [](const PatternChip* one) {
            return one->hasFocus() || (one->field() != nullptr && one->field()->hasFocus());
        });
        return found == chips.end() ? -1 : static_cast<int>(found - chips.begin());
    }
    /// Chooses in the menu as it is when it opens.
    void choose(const QString& action, const QString& subMenu = {}) {
        auto* menu = editor.findChild<QMenu*>();
        emit menu->aboutToShow();
        for (QAction* one : menu->actions()) {
            if (!subMenu.isEmpty() && one->text() == subMenu) menu = one->menu();
        }
        for (QAction* one : menu->actions()) {
            if (one->text() == action) {
                ASSERT_TRUE(one->isEnabled());
                one->trigger();
                return;
            }
        }
        FAIL() << "no " << action.toStdString();
    }

    RenamePatternEditor editor{settings, dialogs, theme};
};

TEST_F(PatternEditor, ThePaletteAppendsAndFreeTextIsTypedAtOnce) {
    show("");
    QSignalSpy changed(&editor, &RenamePatternEditor::patternChanged);
    click(QStringLiteral("Scene"));
    click(QStringLiteral("Separator"));
    click(QStringLiteral("Free Text"));
    type(QStringLiteral("a_b"));
    EXPECT_EQ(text(), "{scene}_{text:a_b}") << "a separator in free text is text";
    EXPECT_EQ(changed.count(), 6) << "with every letter";
    expectNamed();
}

TEST_F(PatternEditor, TheCursorStaysWhenTheCallerGivesThePatternBack) {
    show("{text:ab}{scene}");
    QObject::connect(&editor, &RenamePatternEditor::patternChanged, &editor,
                     [this](const RenamePattern& pattern) { editor.setPattern(RenamePattern(pattern)); });
    chip(0).field()->setFocus();
    chip(0).field()->setCursorPosition(1);
    type(QStringLiteral("xy"));
    EXPECT_EQ(text(), "axyb{scene}");
    EXPECT_EQ(chip(0).field()->cursorPosition(), 3);
}

TEST_F(PatternEditor, BlocksStandWhereTheyAreLetGo) {
    struct Case {
        std::size_t dragged;
        std::size_t over;
        bool rightHalf;
        const char* expected;
    };
    const Case cases[] = {{0, 2, false, "_{scene}{take}-"}, {0, 2, true, "_{take}{scene}-"},
                          {3, 0, false, "-{scene}_{take}"}, {1, 3, true, "{scene}{take}-_"},
                          {2, 2, true, "{scene}_{take}-"},  {2, 1, true, "{scene}_{take}-"}};
    show("{scene}_{take}-");
    for (const Case& one : cases) {
        editor.setPattern(parsePattern("{scene}_{take}-"));
        QTest::qWait(0);
        QSignalSpy changed(&editor, &RenamePatternEditor::patternChanged);
        PatternChip& moving = chip(one.dragged);
        const PatternChip& target = chip(one.over);
        const QPoint to = target.mapTo(&editor, QPoint(one.rightHalf ? target.width() - 3 : 3, 10));
        drag(moving, {4, 10}, moving.mapFrom(&editor, to));
        EXPECT_EQ(text(), one.expected) << one.dragged << " to " << one.over;
        EXPECT_EQ(changed.count(), text() == "{scene}_{take}-" ? 0 : 1);
    }
}

TEST_F(PatternEditor, EscapeLeavesADraggedBlockWhereItWas) {
    show("{scene}_{take}");
    PatternChip& moving = chip(0);
    drag(moving, {4, 10}, {300, 10}, false);
    key(Qt::Key_Escape);
    QTest::mouseRelease(&moving, Qt::LeftButton, {}, {300, 10});
    EXPECT_EQ(text(), "{scene}_{take}");
}

TEST_F(PatternEditor, KeysGoBetweenBlocksMoveAndRemoveThem) {
    show("{scene}_{text:ab}{take}");
    chip(0).setFocus();
    key(Qt::Key_Right);
    EXPECT_EQ(focused(), 1);
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    EXPECT_EQ(focused(), 2) << "through the letters of free text";
    key(Qt::Key_Right);
    EXPECT_EQ(focused(), 3) << "and out at its end";
    key(Qt::Key_Left, Qt::AltModifier);
    key(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(text(), "{scene}{take}_ab");
    EXPECT_EQ(focused(), 1) << "the keyboard goes with it";
    key(Qt::Key_Delete);
    EXPECT_EQ(text(), "{scene}_ab");
    EXPECT_EQ(focused(), 1) << "on the one behind";
    key(Qt::Key_Backspace);
    EXPECT_EQ(focused(), 0) << "on the one before";
    key(Qt::Key_Tab);
    EXPECT_EQ(focused(), 1);
    key(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(text(), "{scene}ab") << "it is the last one already";
    chip(1).field()->selectAll();
    key(Qt::Key_Backspace);
    EXPECT_EQ(text(), "{scene}{text:}") << "emptied first";
    key(Qt::Key_Backspace);
    EXPECT_EQ(text(), "{scene}");
    key(Qt::Key_Delete);
    EXPECT_EQ(text(), "");
    EXPECT_TRUE(editor.row().hasFocus()) << "what is typed now begins anew";
    type(QStringLiteral("x"));
    EXPECT_EQ(text(), "x");
}

TEST_F(PatternEditor, TypingOnABlockPutsTextOrASeparatorBehindIt) {
    show("{scene}{take}");
    chip(0).setFocus();
    key(Qt::Key_Space);
    EXPECT_EQ(text(), "{scene}{take}") << "Space is no text";
    type(QStringLiteral("_day-"));
    EXPECT_EQ(text(), "{scene}_{text:day-}{take}");
    QTest::mouseClick(&chip(1).cross(), Qt::LeftButton);
    EXPECT_EQ(text(), "{scene}{text:day-}{take}");
}

TEST_F(PatternEditor, NoTextMakesItWider) {
    show("{text:" + std::string(240, 'W') + "}{startTimecode}{recordingDate}", {320, 300});
    EXPECT_EQ(window.width(), 320);
    for (const PatternChip* one : editor.row().chips())
        EXPECT_TRUE(editor.row().rect().contains(one->geometry()));
}

TEST_F(PatternEditor, PatternsAreKeptChosenAndRemovedByName) {
    show("{scene}-{take}");
    dialogs.typed = {QStringLiteral("Day & Night"), std::nullopt};
    choose(QStringLiteral("Save Pattern…"));
    EXPECT_EQ(dialogs.texts.front().text, QStringLiteral("Scene-Take")) << "a name is proposed";
    choose(QStringLiteral("Save Pattern…"));
    ASSERT_EQ(savedRenamePatterns(settings).size(), 1U) << "cancelled is not saved";

    QSignalSpy changed(&editor, &RenamePatternEditor::patternChanged);
    choose(QStringLiteral("Scene_Take"));
    EXPECT_EQ(text(), "{scene}_{take}");
    choose(QStringLiteral("Day && Night"));
    EXPECT_EQ(text(), "{scene}-{take}");
    EXPECT_EQ(changed.count(), 2);
    choose(QStringLiteral("Day && Night"), QStringLiteral("Remove Pattern"));
    EXPECT_TRUE(savedRenamePatterns(settings).empty());
    EXPECT_EQ(text(), "{scene}-{take}") << "what is on screen stays";
}

}  // namespace
}  // namespace dravik
