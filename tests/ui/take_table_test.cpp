#include "ui/take_table.h"

#include "app/text.h"
#include "tests/app/main_window_stage.h"
#include "ui/take_table_model.h"
#include "ui/take_table_view.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTextDocument>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

InfoFichier file(const std::string& name) {
    InfoFichier fichier;
    fichier.url = "/day/" + name;
    fichier.nom = name.substr(0, name.find('.'));
    fichier.format = name.ends_with("mp3") ? "MP3" : "WAV";
    fichier.channels = 1;
    fichier.sampleRate = 48000;
    fichier.framerate = "25";
    fichier.timecode = "10:00:00:00";
    fichier.dureeSecondes = 2;
    return fichier;
}

GroupeFichiers take(const std::vector<InfoFichier>& fichiers, const std::string& name, const std::string& scene) {
    GroupeFichiers groupe;
    groupe.nom = name;
    groupe.estPoly = fichiers.size() == 1;
    std::vector<InfoFichier> own = fichiers;
    for (InfoFichier& fichier : own) {
        if (!fichier.scene) fichier.scene = scene;
        fichier.prise = "1";
    }
    groupe.fichiers = own;
    mergeMetadata(groupe);
    return groupe;
}

/// Three plain takes, a set of two whose files disagree on the note, and one that cannot be written.
std::vector<GroupeFichiers> day() {
    std::vector<InfoFichier> set = {file("D_T1.wav"), file("D_T2.wav")};
    set[1].notes = "noisy";
    return {take({file("A.wav")}, "A", "3"), take({file("B.wav")}, "B", "10"), take({file("C.wav")}, "C", "1"),
            take(set, "D", "2"), take({file("E.mp3")}, "E", "5")};
}

class TakeTableTest : public testing::Test, public test::MainWindowStage {
  protected:
    TakeTableTest() {
        table.resize(1400, 400);
        table.show();
        QApplication::setActiveWindow(&table);
        view = table.findChild<TakeTableView*>();
        filter = table.findChild<QLineEdit*>();
        content->rows().load(day());
        view->setFocus();
        connect();
    }
    void connect() {
        QObject::connect(content.get(), &ContentView::notice, view, [this](const QString& text) { told << text; });
    }

    [[nodiscard]] QModelIndex cell(int row, TakeColumn column) const {
        return view->model()->index(row, static_cast<int>(column));
    }
    [[nodiscard]] std::string text(int row, TakeColumn column) const {
        return cell(row, column).data().toString().toStdString();
    }
    [[nodiscard]] std::vector<std::string> texts(TakeColumn column) const {
        std::vector<std::string> all;
        for (int row = 0; row < view->model()->rowCount(); ++row)
            all.push_back(text(row, column));
        return all;
    }
    [[nodiscard]] std::vector<std::string> selected() const {
        std::vector<std::string> names;
        for (const int at : table.selectedRows())
            names.push_back(row(at).groupe.nom);
        return names;
    }
    [[nodiscard]] std::string loaded() const {
        const auto url = content->fichierSelectionne();
        return url ? url->filename().string() : "";
    }
    void click(int row, TakeColumn column, Qt::KeyboardModifiers modifiers = {}) {
        const QModelIndex index = cell(row, column);
        view->scrollTo(index);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, modifiers, view->visualRect(index).center());
        QApplication::processEvents();
    }
    void doubleClick(int row, TakeColumn column) {
        click(row, column);
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(cell(row, column)).center());
        QApplication::processEvents();
    }
    void key(int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
        QApplication::processEvents();
    }
    void type(const char* keys) {
        // One by one: the first key opens the editor that the others are for.
        for (; *keys != '\0'; ++keys)
            QTest::keyClick(QApplication::focusWidget(), *keys);
        QApplication::processEvents();
    }
    /// Texts that begin with a letter: the letters alone are the transport's.
    void enter(const char* text) {
        key(Qt::Key_F2);
        type(text);
    }
    [[nodiscard]] QString current() const {
        return QStringLiteral("%1 %2").arg(view->currentIndex().siblingAtColumn(0).data().toString(),
                                           columnTitle(static_cast<TakeColumn>(view->currentIndex().column())));
    }

    Theme theme{settings};
    TakeTable table{*content, settings, theme};
    TakeTableView* view = nullptr;
    QLineEdit* filter = nullptr;
    QStringList told;
};

TEST_F(TakeTableTest, TypingOverwritesTheCellAndEnterGoesToTheRowBelow) {
    click(0, TakeColumn::scene);
    type("7x");
    EXPECT_TRUE(view->isEditing());
    EXPECT_TRUE(content->enSaisie());
    key(Qt::Key_Return);
    EXPECT_FALSE(view->isEditing());
    EXPECT_FALSE(content->enSaisie());
    EXPECT_EQ(text(0, TakeColumn::scene), "7x");
    EXPECT_EQ(current(), "B Scene");
    EXPECT_EQ(content->rows().undoName(), "Edit Scene");
    key(Qt::Key_F2);
    type("8");
    key(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(text(1, TakeColumn::scene), "8");
    EXPECT_EQ(current(), "A Scene");
}

TEST_F(TakeTableTest, EscapeKeepsTheOldValueAndAnEnterWithoutTypingIsNoEdit) {
    doubleClick(0, TakeColumn::scene);
    ASSERT_TRUE(view->isEditing());
    type("99");
    key(Qt::Key_Escape);
    EXPECT_FALSE(view->isEditing());
    EXPECT_EQ(text(0, TakeColumn::scene), "3");
    click(3, TakeColumn::note);
    key(Qt::Key_F2);
    key(Qt::Key_Return);
    EXPECT_EQ(text(3, TakeColumn::note), "mixed");
    EXPECT_FALSE(content->hasUnsavedChanges());
}

TEST_F(TakeTableTest, TabGoesThroughTheEditableCellsOfOneRowAfterTheOther) {
    click(0, TakeColumn::fps);
    click(0, TakeColumn::startTimecode);
    key(Qt::Key_F2);
    type("11:00:00:00");
    key(Qt::Key_Tab);
    EXPECT_EQ(text(0, TakeColumn::startTimecode), "11:00:00:00");
    EXPECT_EQ(current(), "A fps");
    key(Qt::Key_Escape);  // the menu of the frame rates
    view->editCell(cell(0, TakeColumn::startTimecode));
    key(Qt::Key_Backtab);
    EXPECT_EQ(current(), "A Note");
    for (const char* expected : {"A Project", "A Tape", "A Take", "A Scene", "A Name"}) {
        key(Qt::Key_Backtab);
        EXPECT_EQ(current(), expected);
        EXPECT_TRUE(view->isEditing());
    }
    key(Qt::Key_Backtab);  // there is nothing before the first cell
    EXPECT_EQ(current(), "A Name");
    view->setColumnHidden(static_cast<int>(TakeColumn::fps), true);
    view->editCell(cell(0, TakeColumn::startTimecode));
    key(Qt::Key_Tab);
    EXPECT_EQ(current(), "B Name");
}

TEST_F(TakeTableTest, AnInvalidValueKeepsTheEditorOpenAndSaysWhy) {
    click(0, TakeColumn::startTimecode);
    type("10:00:00:25");
    key(Qt::Key_Return);
    ASSERT_TRUE(view->isEditing());
    auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->toolTip(), "Invalid Timecode");
    key(Qt::Key_Backspace);
    type("4");
    EXPECT_EQ(editor->toolTip(), "");
    key(Qt::Key_Return);
    EXPECT_EQ(text(0, TakeColumn::startTimecode), "10:00:00:24");

    click(1, TakeColumn::name);
    enter("a/b");
    key(Qt::Key_Tab);
    EXPECT_TRUE(view->isEditing());
    key(Qt::Key_Escape);
    EXPECT_EQ(text(1, TakeColumn::name), "B");

    // Going on with the mouse traps nobody: the value is dropped, and that is told.
    click(1, TakeColumn::name);
    enter("a/b");
    click(2, TakeColumn::scene);
    EXPECT_FALSE(view->isEditing());
    EXPECT_EQ(text(1, TakeColumn::name), "B");
    EXPECT_THAT(told.join(QLatin1Char(' ')).toStdString(), HasSubstr("/"));
}

TEST_F(TakeTableTest, TheFrameRateIsChosenFromTheOfferedOnes) {
    click(0, TakeColumn::fps);
    key(Qt::Key_F2);
    auto* rates = view->findChild<QComboBox*>();
    ASSERT_NE(rates, nullptr);
    QStringList labels;
    for (int at = 0; at < rates->count(); ++at)
        labels << rates->itemText(at);
    EXPECT_EQ(labels, QStringList({"23.976", "24", "25", "29.97", "29.97 DF", "30"}));
    EXPECT_EQ(rates->currentText(), "25");
    rates->setCurrentIndex(4);
    emit rates->activated(4);
    QApplication::processEvents();
    EXPECT_EQ(text(0, TakeColumn::fps), "29.97 DF");
    EXPECT_FALSE(view->isEditing());
}

TEST_F(TakeTableTest, ControlEnterWritesTheValueToTheWholeSelection) {
    click(0, TakeColumn::tape);
    click(2, TakeColumn::tape, Qt::ShiftModifier);
    enter("R2");
    key(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_THAT(texts(TakeColumn::tape), ElementsAre("R2", "R2", "R2", "", ""));
    EXPECT_THAT(selected(), ElementsAre("A", "B", "C"));
    content->undo();
    EXPECT_THAT(texts(TakeColumn::tape), ElementsAre("", "", "", "", ""));
}

TEST_F(TakeTableTest, FillDownPasteAndCountingActOnTheSelectionInOneStepEach) {
    click(0, TakeColumn::scene);
    click(4, TakeColumn::scene, Qt::ShiftModifier);
    key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_THAT(texts(TakeColumn::scene), ElementsAre("3", "3", "3", "3", "5"));
    EXPECT_THAT(told.join(QLatin1Char(' ')).toStdString(), HasSubstr("1 take left out"));
    content->undo();

    key(Qt::Key_I, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_THAT(texts(TakeColumn::take), ElementsAre("2", "2", "2", "2", "1"));
    table.numberTakes();
    EXPECT_THAT(texts(TakeColumn::take), ElementsAre("2", "3", "4", "5", "1"));

    QApplication::clipboard()->setText(QStringLiteral("21\tx\r\n22\ty\r\n"));
    click(1, TakeColumn::scene);
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_THAT(texts(TakeColumn::scene), ElementsAre("3", "21", "22", "2", "5"));
    content->undo();
    EXPECT_THAT(texts(TakeColumn::scene), ElementsAre("3", "10", "1", "2", "5"));

    QApplication::clipboard()->setText(QStringLiteral("one"));
    click(0, TakeColumn::project);
    click(2, TakeColumn::project, Qt::ShiftModifier);
    key(Qt::Key_V, Qt::ControlModifier);
    key(Qt::Key_Delete);
    EXPECT_EQ(content->rows().undoName(), "Edit Project");
    content->undo();
    EXPECT_THAT(texts(TakeColumn::project), ElementsAre("one", "one", "one", "", ""));
}

TEST_F(TakeTableTest, TwoTakesCannotGetOneName) {
    doubleClick(0, TakeColumn::name);
    enter("b");
    key(Qt::Key_Return);
    EXPECT_TRUE(view->isEditing()) << "B is there, whatever the letter case";
    auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->toolTip(), "Another take of this folder is called B.");
    editor->setText("E");  // an MP3 file, which does not stand in the way of a WAV file
    key(Qt::Key_Return);
    EXPECT_EQ(text(0, TakeColumn::name), "E");
    content->undo();

    const auto refuses = [&](const char* why) {
        EXPECT_EQ(texts(TakeColumn::name), (std::vector<std::string>{"A", "B", "C", "D", "E"}));
        ASSERT_FALSE(told.isEmpty());
        EXPECT_EQ(told.takeLast().toStdString(), std::string(why) + " Nothing was changed.");
    };
    click(0, TakeColumn::name);
    click(2, TakeColumn::name, Qt::ShiftModifier);
    key(Qt::Key_F2);
    enter("new");
    key(Qt::Key_Return, Qt::ControlModifier);
    refuses("Each take needs a name of its own: new would be the name of several.");
    click(0, TakeColumn::name);
    click(2, TakeColumn::name, Qt::ShiftModifier);
    table.fillDown();
    refuses("Each take needs a name of its own: A would be the name of several.");
    QApplication::clipboard()->setText("one");
    table.paste();
    refuses("Each take needs a name of its own: one would be the name of several.");
    QApplication::clipboard()->setText(QStringLiteral("one\ntwo\n") + QStringLiteral("D"));
    table.paste();
    refuses("Another take of this folder is called D.");
    QApplication::clipboard()->setText("B\nC\nA");
    table.paste();
    EXPECT_EQ(texts(TakeColumn::name), (std::vector<std::string>{"B", "C", "A", "D", "E"})) << "they change places";
}

TEST_F(TakeTableTest, TheLastChangeIsShownAlsoWhenTheFilterHidesIt) {
    std::vector<GroupeFichiers> many;
    for (int at = 0; at < 100; ++at) {
        const std::string name = "T" + std::to_string(100 + at);
        many.push_back(take({file(name + ".wav")}, name, "1"));
    }
    content->rows().load(many);
    QApplication::processEvents();
    const auto isInView = [&](int row) {
        return view->viewport()->rect().intersects(view->visualRect(view->model()->index(row, 0)));
    };
    edit(90, RowField::scene, "7");
    edit(95, RowField::scene, "7");
    content->undo();
    EXPECT_FALSE(isInView(95));
    table.showLastChange();
    EXPECT_TRUE(isInView(95));
    filter->setText("T101");
    ASSERT_TRUE(QTest::qWaitFor([&] { return table.visibleRows() == 1; }, 20'000));
    content->undo();
    table.showLastChange();
    EXPECT_EQ(table.visibleRows(), 100);
    EXPECT_TRUE(isInView(90));
}

TEST_F(TakeTableTest, AMixedFirstRowGivesNothingToFillDown) {
    content->rows().load({day()[3], day()[0]});
    click(0, TakeColumn::note);
    click(1, TakeColumn::note, Qt::ShiftModifier);
    key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_FALSE(content->hasUnsavedChanges());
    EXPECT_FALSE(told.isEmpty());
}

TEST_F(TakeTableTest, CopyTakesTheColumnOrWholeRows) {
    click(0, TakeColumn::scene);
    click(1, TakeColumn::scene, Qt::ShiftModifier);
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "3\n10");
    for (int column = static_cast<int>(TakeColumn::tape); column < takeColumnCount; ++column)
        view->setColumnHidden(column, true);
    key(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "A\t\t\t3\t1\nB\t\t\t10\t1");
}

TEST_F(TakeTableTest, AClickOnAMarkSwitchesItForAllSelectedRows) {
    click(0, TakeColumn::circled);
    EXPECT_TRUE(row(0).groupe.circled);
    click(0, TakeColumn::scene);
    click(3, TakeColumn::scene, Qt::ShiftModifier);
    click(1, TakeColumn::circled);
    EXPECT_THAT(selected(), ElementsAre("A", "B", "C", "D"));
    for (int at = 0; at < 4; ++at)
        EXPECT_TRUE(row(at).groupe.circled) << at;
    key(Qt::Key_Space);
    for (int at = 0; at < 4; ++at)
        EXPECT_FALSE(row(at).groupe.circled) << at;
    key(Qt::Key_K, Qt::ControlModifier);
    EXPECT_TRUE(row(2).groupe.circled);
}

TEST_F(TakeTableTest, WhatCannotBeSavedIsNotEditedAndSaysWhy) {
    click(4, TakeColumn::scene);
    type("7");
    EXPECT_FALSE(view->isEditing());
    ASSERT_FALSE(told.isEmpty());
    EXPECT_EQ(told.front(), "Dravik can open MP3 files, but changes cannot be saved to this format.");
    EXPECT_EQ(cell(4, TakeColumn::scene).data(Qt::ToolTipRole).toString(), told.front());
    click(4, TakeColumn::circled);
    EXPECT_FALSE(content->hasUnsavedChanges());
}

TEST_F(TakeTableTest, ADamagedTakeBearsASignAndSaysWhatIsWrong) {
    std::vector<InfoFichier> set = {file("D_T1.wav"), file("<b>D_T2.wav")};
    set[1].missingAudioBytes = 2'000'000;
    set[1].notes = "noisy";
    GroupeFichiers damaged = take(set, "D", "2");
    damaged.unreadableTracks = {{"/day/D_T3.wav", 3}};
    damaged.filesNotThere = 2;
    damaged.filesWritten = 5;
    InfoFichier unread = file("E.mp3");
    unread.channels = 0;
    content->rows().load({damaged, take({file("A.wav")}, "A", "3"), take({unread}, "E", "1")});
    EXPECT_EQ(text(0, TakeColumn::format), "2 of 3 × WAV");
    const auto tip = [this](int row, TakeColumn column) {
        QString said = cell(row, column).data(Qt::ToolTipRole).toString();
        if (Qt::mightBeRichText(said)) {
            QTextDocument document;
            document.setHtml(said);
            said = document.toPlainText();
        }
        return said;
    };
    const QString wrong = QStringLiteral(
        "<b>D_T2.wav is cut off: 2.0 MB of its audio is missing.\n"
        "D_T3.wav, a track of this take, cannot be read.\n"
        "2 files of this take not in the folder: the recorder says that it wrote 5.");
    EXPECT_EQ(tip(0, TakeColumn::name), wrong);
    EXPECT_EQ(tip(0, TakeColumn::note), "The files of this take do not agree. Unfold it to see them.");
    EXPECT_TRUE(cell(0, TakeColumn::name).data(Qt::AccessibleTextRole).toString().endsWith(wrong));
    const QModelIndex member = view->model()->index(1, 0, cell(0, TakeColumn::name));
    EXPECT_TRUE(member.data(TakeTableModel::DamagedRole).toBool());
    EXPECT_TRUE(member.data(Qt::AccessibleTextRole).toString().endsWith("is cut off: 2.0 MB of its audio is missing."));
    EXPECT_TRUE(tip(2, TakeColumn::scene).endsWith("\nE.mp3 cannot be read as audio."));
    const auto sign = [this](int row) {
        return cell(row, TakeColumn::name).data(TakeTableModel::DamagedRole).toBool();
    };
    EXPECT_TRUE(sign(0) && sign(2));
    EXPECT_FALSE(sign(1));
    EXPECT_FALSE(cell(0, TakeColumn::scene).data(TakeTableModel::DamagedRole).toBool());
}

TEST_F(TakeTableTest, SelectingARowLoadsItAndGoingAlongTheRowDoesNot) {
    click(1, TakeColumn::scene);
    EXPECT_EQ(loaded(), "B.wav");
    QSignalSpy loads(content.get(), &ContentView::takeChanged);
    key(Qt::Key_Right);
    key(Qt::Key_Left);
    EXPECT_THAT(loads, IsEmpty());
    key(Qt::Key_Down);
    EXPECT_EQ(loaded(), "C.wav");
    click(0, TakeColumn::scene, Qt::ShiftModifier);
    key(Qt::Key_Right);
    EXPECT_THAT(selected(), ElementsAre("A", "B", "C"));
}

TEST_F(TakeTableTest, CancelInTheGateShowsTheLoadedTakeAgain) {
    settings.set(settings::confirmBeforeSelectingAnotherTake, true);
    click(0, TakeColumn::scene);
    edit(0, RowField::scene, "4");
    dialogs.answers = {{2, false}};
    click(2, TakeColumn::note);
    EXPECT_EQ(dialogs.asked.size(), 1U);
    EXPECT_EQ(loaded(), "A.wav");
    EXPECT_THAT(selected(), ElementsAre("A"));
}

TEST_F(TakeTableTest, TheFilterCountsAndEscapeInItShowsEverythingAgain) {
    click(1, TakeColumn::scene);
    key(Qt::Key_F, Qt::ControlModifier);
    ASSERT_EQ(QApplication::focusWidget(), filter);
    EXPECT_TRUE(content->enSaisie());
    enter("noisy");
    QTRY_COMPARE(table.visibleRows(), 1);
    EXPECT_EQ(text(0, TakeColumn::name), "D");
    const auto labels = table.findChildren<QLabel*>();
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [](const QLabel* l) { return l->text() == "1 of 5"; }));
    key(Qt::Key_Escape);
    EXPECT_EQ(table.visibleRows(), 5);
    EXPECT_TRUE(view->hasFocus());
    EXPECT_THAT(selected(), ElementsAre("B"));
}

TEST_F(TakeTableTest, ASetThatTheFilterHidForAWhileIsStillUnfolded) {
    click(3, TakeColumn::name);
    key(Qt::Key_Right);
    ASSERT_TRUE(view->isExpanded(cell(3, TakeColumn::name)));
    EXPECT_TRUE(row(3).groupe.estDeplie);
    filter->setText(QStringLiteral("mp3"));
    QTRY_COMPARE(table.visibleRows(), 1);
    filter->clear();
    QTRY_COMPARE(table.visibleRows(), 5);
    EXPECT_TRUE(view->isExpanded(cell(3, TakeColumn::name)));
    EXPECT_THAT(selected(), ElementsAre("D"));
    key(Qt::Key_Left);
    EXPECT_FALSE(row(3).groupe.estDeplie);
}

TEST_F(TakeTableTest, AnEditedRowKeepsItsPlaceUntilTheOrderIsAskedForAgain) {
    view->sortByColumn(static_cast<int>(TakeColumn::scene), Qt::AscendingOrder);
    EXPECT_THAT(texts(TakeColumn::scene), ElementsAre("1", "2", "3", "5", "10"));
    click(0, TakeColumn::scene);
    type("20");
    key(Qt::Key_Return);
    EXPECT_THAT(texts(TakeColumn::scene), ElementsAre("20", "2", "3", "5", "10"));
    EXPECT_EQ(current(), "D Scene");
    view->sortByColumn(static_cast<int>(TakeColumn::scene), Qt::DescendingOrder);
    EXPECT_THAT(texts(TakeColumn::scene), ElementsAre("20", "10", "5", "3", "2"));
    EXPECT_EQ(current(), "D Scene");
}

TEST_F(TakeTableTest, RowsThatStreamInWaitForTheEditorAndDisturbNothing) {
    view->sortByColumn(static_cast<int>(TakeColumn::name), Qt::DescendingOrder);
    const QModelIndex set = cell(1, TakeColumn::name);
    ASSERT_EQ(set.data().toString(), "D");
    view->expand(set);
    click(3, TakeColumn::scene);
    ASSERT_EQ(current(), "B Scene");
    type("44");
    std::vector<GroupeFichiers> more = day();
    more.push_back(take({file("Z.wav")}, "Z", "9"));
    content->rows().refresh(more, TakeRows::Reading::partial);
    EXPECT_TRUE(view->isEditing());
    EXPECT_THAT(texts(TakeColumn::name), ElementsAre("E", "D", "C", "B", "A", "Z"));
    // Read again altogether, in another order.
    std::reverse(more.begin(), more.end());
    content->rows().refresh(more, TakeRows::Reading::again);
    EXPECT_TRUE(view->isEditing());
    EXPECT_THAT(texts(TakeColumn::name), ElementsAre("E", "D", "C", "B", "A", "Z"));
    key(Qt::Key_Return);
    EXPECT_EQ(row(content->rows().indexOf("/day/B.wav")).groupe.scene, "44");
    EXPECT_EQ(current(), "A Scene");
    EXPECT_THAT(texts(TakeColumn::name), ElementsAre("Z", "E", "D", "C", "B", "A"));
    EXPECT_THAT(selected(), ElementsAre("A"));
    EXPECT_TRUE(view->isExpanded(cell(2, TakeColumn::name)));
}

TEST_F(TakeTableTest, EverythingSelectedLeavesTheCurrentRowSelectedWhenRowsJoin) {
    std::vector<GroupeFichiers> many;
    for (int number = 100; number < 200; ++number)
        many.push_back(take({file("T" + std::to_string(number) + ".wav")}, "T" + std::to_string(number), "1"));
    content->rows().load({many.begin(), many.begin() + 90});
    click(3, TakeColumn::scene);
    view->selectAll();
    ASSERT_EQ(selected().size(), 90U);
    content->rows().refresh(many, TakeRows::Reading::last);
    EXPECT_THAT(selected(), testing::Contains("T103"));
    EXPECT_EQ(table.visibleRows(), 100);
}

TEST_F(TakeTableTest, FilesDroppedOnTheTableAreForTheWindow) {
    for (const QWidget* widget : table.findChildren<QWidget*>()) {
        EXPECT_FALSE(widget->acceptDrops()) << widget->metaObject()->className();
    }
}

TEST_F(TakeTableTest, RenamedFilesKeepTheSelection) {
    click(1, TakeColumn::scene);
    content->rows().filesMoved({{"/day/B.wav", "/day/B2.wav"}});
    EXPECT_EQ(view->currentIndex().row(), 1);
    EXPECT_EQ(current(), "B Scene");
}

TEST_F(TakeTableTest, NothingIsEditedWhileASaveRuns) {
    click(0, TakeColumn::scene);
    content->rows().setLocked(true);
    type("7");
    EXPECT_FALSE(view->isEditing());
    EXPECT_EQ(text(0, TakeColumn::scene), "3");
}

TEST_F(TakeTableTest, NotesTakeTheRoomThatIsLeftUntilAColumnIsGivenAWidth) {
    constexpr int note = static_cast<int>(TakeColumn::note);
    const int least = view->columnWidth(note);
    table.resize(2400, 400);
    QApplication::processEvents();
    EXPECT_GT(view->columnWidth(note), least);
    EXPECT_LE(view->header()->length(), view->viewport()->width());
    view->setColumnHidden(static_cast<int>(TakeColumn::date), true);
    table.resize(1400, 400);
    QApplication::processEvents();
    EXPECT_EQ(view->columnWidth(note), least);
    view->setColumnWidth(note, 200);
    table.resize(2400, 400);
    QApplication::processEvents();
    EXPECT_EQ(view->columnWidth(note), 200);
}

TEST_F(TakeTableTest, ColumnsAreAsTheyWereLeft) {
    view->header()->moveSection(0, 3);
    view->setColumnWidth(static_cast<int>(TakeColumn::note), 321);
    view->setColumnHidden(static_cast<int>(TakeColumn::wild), true);
    view->sortByColumn(static_cast<int>(TakeColumn::scene), Qt::DescendingOrder);
    QTRY_VERIFY(settings.stored(QStringLiteral("takeTableHeader")).isValid());
    QTest::qWait(350);
    TakeTable again(*content, settings, theme);
    const auto* other = again.findChild<TakeTableView*>();
    EXPECT_EQ(other->header()->visualIndex(0), 3);
    EXPECT_EQ(other->columnWidth(static_cast<int>(TakeColumn::note)), 321);
    EXPECT_TRUE(other->isColumnHidden(static_cast<int>(TakeColumn::wild)));
    EXPECT_EQ(other->model()->index(0, static_cast<int>(TakeColumn::scene)).data().toString(), "10");
}

TEST(TakeTableModel, IsAConsistentModelWhateverHappensToTheRows) {
    TakeRows rows;
    TakeTableModel model(rows);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    rows.load(day());
    model.sort(static_cast<int>(TakeColumn::scene), Qt::DescendingOrder);
    const QPersistentModelIndex member = model.index(1, 0, model.indexOfRow(3));
    ASSERT_EQ(member.data().toString(), "D_T2");
    model.setFilter(QStringLiteral("wav"));
    EXPECT_EQ(model.rowCount(), 4);
    std::vector<GroupeFichiers> more = day();
    more.insert(more.begin(), take({file("0.wav")}, "0", "0"));
    rows.refresh(more, TakeRows::Reading::again);
    EXPECT_EQ(member.data().toString(), "D_T2");
    EXPECT_EQ(member.parent().data().toString(), "D");
    setField(rows, {0}, RowField::scene, QStringLiteral("x"));
    model.setFilter(QStringLiteral("nothing of the kind"));
    EXPECT_FALSE(member.isValid());
    rows.load({});
    EXPECT_EQ(model.rowCount(), 0);
}

}  // namespace
}  // namespace dravik
