#include "ui/take_editor.h"

#include "app/text.h"
#include "tests/app/main_window_stage.h"
#include "tests/support/files.h"
#include "ui/cue_list.h"
#include "ui/track_list.h"

#include <QApplication>
#include <QClipboard>
#include <QPlainTextEdit>
#include <QTest>

#include <gtest/gtest.h>

namespace dravik::test {
namespace {

/// The editor alone in a window, over a folder with three takes: "a", with three tracks and a cue, "b", a set of two
/// files that disagree on the scene, and "c", an MP3 file.
class TakeEditorTest : public testing::Test {
  protected:
    void SetUp() override {
        Ixml a;
        a.tracks = {{1, 1, "Boom"}, {4, 2, "Lav"}, {5, 3, "Mix"}};
        const Pcm pcm{.channels = 3};
        WavBuilder()
            .bext({.timeReference = 1'728'000'000})
            .ixml(a)
            .fmt(pcm)
            .audio(48000)
            .cues({{1, 24000, "Slate"}})
            .write(stage.folder / "a.wav");
        for (const auto& [file, scene] : {std::pair("b_1.wav", "7"), std::pair("b_2.wav", "8")}) {
            Ixml b;
            b.scene = scene;
            b.familyUid = "set";
            recorderFile(b).write(stage.folder / file);
        }
        writeFile(stage.folder / "c.mp3", "not really");
        stage.settings.set(settings::appearance, QStringLiteral("dark"));
        theme = std::make_unique<Theme>(stage.settings);
        editor = std::make_unique<TakeEditor>(*stage.content, *theme);
        editor->resize(900, 260);
        editor->show();
        editor->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(editor.get()));
        stage.open();
        ASSERT_EQ(stage.rowCount(), 3U);
        select(0);
    }
    void TearDown() override { editor.reset(); }

    // The editor shows what has changed as soon as the events are done.
    static void type(QWidget* widget, const QString& text) {
        QTest::keyClicks(widget, text);
        QCoreApplication::processEvents();
    }
    static void press(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(widget, key, modifiers);
        QCoreApplication::processEvents();
    }
    void undo() {
        stage.content->undo();
        QCoreApplication::processEvents();
    }
    void select(int row) {
        stage.content->selectionnerLigne(row);
        stage.settle();
        QCoreApplication::processEvents();
    }
    template <typename Widget>
    [[nodiscard]] Widget& named(const QString& name) const {
        for (Widget* widget : editor->findChildren<Widget*>()) {
            if (widget->accessibleName() == name) return *widget;
        }
        throw std::runtime_error("no widget is called " + name.toStdString());
    }
    [[nodiscard]] QLineEdit& line(const QString& name) const { return named<QLineEdit>(name); }
    [[nodiscard]] bool shows(const QString& text) const {
        const auto labels = editor->findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(),
                           [&](const QLabel* label) { return label->isVisible() && label->text() == text; });
    }
    [[nodiscard]] QString trackName(int row) const {
        return editor->trackList().model()->index(row, TrackList::name).data().toString();
    }
    /// The field that is open in the track list.
    [[nodiscard]] QLineEdit* openName() const { return qobject_cast<QLineEdit*>(QApplication::focusWidget()); }

    MainWindowStage stage;
    std::unique_ptr<Theme> theme;
    std::unique_ptr<TakeEditor> editor;
};

TEST_F(TakeEditorTest, TypingIsOneStepOfTheTakeAndUndoTakesItBackInTheField) {
    QLineEdit& scene = line("Scene");
    scene.setFocus();
    EXPECT_TRUE(stage.content->enSaisie());
    scene.selectAll();
    type(&scene, "21C");
    EXPECT_EQ(stage.row(0).groupe.scene, "21C");
    press(&scene, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(scene.text(), "12A");
    EXPECT_FALSE(stage.content->hasUnsavedChanges());
    type(&scene, "x");
    press(&scene, Qt::Key_Tab);
    EXPECT_FALSE(stage.content->enSaisie() && QApplication::focusWidget() == &scene);
    press(&scene, Qt::Key_Tab, Qt::ShiftModifier);
    scene.setFocus();
    scene.deselect();
    type(&scene, "y");
    undo();  // leaving the field has ended the first step
    EXPECT_EQ(scene.text(), "12Ax");
}

TEST_F(TakeEditorTest, EditedFieldsAreMarkedUntilTheyAreAsRead) {
    QLineEdit& tape = line("Tape");
    tape.setFocus();
    type(&tape, "9");
    EXPECT_EQ(tape.accessibleDescription(), "not saved; was R001");
    press(&tape, Qt::Key_Backspace);
    EXPECT_EQ(tape.accessibleDescription(), "");
}

TEST_F(TakeEditorTest, ATimecodeIsTakenOverWhenItIsOneAndSaidToBeInvalidWhileItIsNot) {
    QLineEdit& timecode = line("Start timecode");
    timecode.setFocus();
    timecode.selectAll();
    type(&timecode, "11:00:00:25");
    EXPECT_TRUE(shows("Invalid Timecode"));
    press(&timecode, Qt::Key_Return);
    EXPECT_EQ(stage.row(0).groupe.timecode, "10:00:00:00");
    press(&timecode, Qt::Key_Escape);
    EXPECT_EQ(timecode.text(), "10:00:00:00");
    EXPECT_FALSE(shows("Invalid Timecode"));

    timecode.selectAll();
    type(&timecode, "11000024");
    EXPECT_EQ(stage.row(0).groupe.timecode, "10:00:00:00");  // not before it is entered
    line("Scene").setFocus();
    EXPECT_EQ(stage.row(0).groupe.timecode, "11:00:00:24");
    EXPECT_EQ(timecode.text(), "11:00:00:24");

    timecode.setFocus();
    timecode.selectAll();
    type(&timecode, "12000000");
    press(&timecode, Qt::Key_S, Qt::ControlModifier);  // a shortcut may save
    EXPECT_EQ(stage.row(0).groupe.timecode, "12:00:00:00");
}

TEST_F(TakeEditorTest, ATimecodeThatIsNoneIsToldOnceAndStaysWhileItsTakeIsShown) {
    QStringList told;
    QObject::connect(stage.content.get(), &ContentView::notice, editor.get(),
                     [&](const QString& text) { told << text; });
    QObject::connect(stage.content.get(), &ContentView::commitRequested, editor.get(), &TakeEditor::commitPending);
    QLineEdit& timecode = line("Start timecode");
    QLineEdit& scene = line("Scene");
    scene.setFocus();
    type(&scene, "B");
    timecode.setFocus();
    timecode.selectAll();
    type(&timecode, "11:00:00:25");
    stage.content->saveAll();
    stage.settle();
    QCoreApplication::processEvents();
    EXPECT_FALSE(stage.content->hasUnsavedChanges());
    EXPECT_EQ(told, QStringList{"11:00:00:25 is no timecode: the start timecode of a is as it was."});
    EXPECT_EQ(timecode.text(), "11:00:00:25") << "the folder is read again after a save";
    EXPECT_EQ(editor->invalidTimecode(), "11:00:00:25");
    select(1);
    EXPECT_EQ(told.size(), 1) << "once is enough";
    EXPECT_EQ(editor->invalidTimecode(), "");
    select(0);
    EXPECT_EQ(timecode.text(), "10:00:00:00");

    // Another take is selected while the cursor is in the field: what is valid is an edit of the take it was typed for.
    timecode.setFocus();
    timecode.selectAll();
    type(&timecode, "25");
    select(2);
    ASSERT_EQ(told.size(), 2);
    EXPECT_EQ(told.back(), "25 is no timecode: the start timecode of a is as it was.");
    select(0);
    timecode.setFocus();
    timecode.selectAll();
    type(&timecode, "11000024");
    select(1);
    EXPECT_EQ(stage.row(0).groupe.timecode, "11:00:00:24");
    EXPECT_EQ(stage.row(1).groupe.timecode, stage.content->rows().groupesOriginauxTableau()[1].timecode);
    EXPECT_EQ(told.size(), 2);
}

TEST_F(TakeEditorTest, ANoteKeepsItsCursorWhateverCharactersItHoldsAndTakesNoMoreThanItHasRoomFor) {
    auto& note = named<QPlainTextEdit>("Note");
    RowState state = stage.row(0);
    ASSERT_TRUE(setText(state.groupe, RowField::note, "one\u00A0two\r\nthree"));
    stage.content->rows().edit(QStringLiteral("Edit"), {{0, state}});
    QCoreApplication::processEvents();
    note.moveCursor(QTextCursor::End);
    const int end = note.textCursor().position();
    stage.edit(0, RowField::scene, "9");  // which refreshes all fields
    QCoreApplication::processEvents();
    EXPECT_EQ(note.textCursor().position(), end);
    EXPECT_EQ(stage.row(0).groupe.notes, "one\u00A0two\r\nthree") << "nobody has edited it";

    QString told;
    QObject::connect(stage.content.get(), &ContentView::notice, editor.get(),
                     [&](const QString& text) { told = text; });
    note.selectAll();
    QApplication::clipboard()->setText(QString(200'000, QLatin1Char('x')));
    note.paste();
    EXPECT_EQ(note.toPlainText().size(), longestTypedText);
    EXPECT_TRUE(told.contains("10,000")) << told.toStdString();
}

TEST_F(TakeEditorTest, TrackNamesAreTypedOneAfterTheOther) {
    TrackList& tracks = editor->trackList();
    EXPECT_EQ(tracks.model()->index(1, TrackList::channel).data().toInt(), 4);
    tracks.setFocus();
    press(&tracks, Qt::Key_Return);
    ASSERT_NE(openName(), nullptr);
    type(openName(), "Anna");
    EXPECT_EQ(trackName(0), "Anna");  // with every keystroke
    press(openName(), Qt::Key_Return);
    ASSERT_NE(openName(), nullptr);
    EXPECT_EQ(openName()->text(), "Lav");
    type(openName(), "Ben");
    press(openName(), Qt::Key_Tab);
    EXPECT_TRUE(stage.content->enSaisie());
    EXPECT_EQ(openName()->text(), "Mix");
    press(openName(), Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), &tracks);
    EXPECT_FALSE(stage.content->enSaisie());
    EXPECT_EQ(fieldsOf(stage.row(0).groupe).nomsPistes,
              (std::map<int, std::string>{{1, "Anna"}, {2, "Ben"}, {3, "Mix"}}));
    undo();
    EXPECT_EQ(trackName(1), "Lav");
    EXPECT_EQ(trackName(0), "Anna");
}

TEST_F(TakeEditorTest, LinesArePastedDownwardsAsOneStep) {
    TrackList& tracks = editor->trackList();
    tracks.setFocus();
    tracks.setCurrentIndex(tracks.model()->index(1, TrackList::name));
    QApplication::clipboard()->setText("Clara\tx\r\nDan\r\nToo many\r\n");
    press(&tracks, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(trackName(0), "Boom");
    EXPECT_EQ(trackName(1), "Clara");
    EXPECT_EQ(trackName(2), "Dan");
    undo();
    EXPECT_FALSE(stage.content->hasUnsavedChanges());
    press(&tracks, Qt::Key_Return);
    press(openName(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(trackName(2), "Dan");
}

TEST_F(TakeEditorTest, RecorderNumbersAreTypedDownwardsAndAreEditsWhenTheirFieldIsLeft) {
    TrackList& tracks = editor->trackList();
    const auto number = [&](int row) { return tracks.model()->index(row, TrackList::channel).data().toInt(); };
    QString told;
    QObject::connect(stage.content.get(), &ContentView::notice, editor.get(),
                     [&](const QString& text) { told = text; });
    QObject::connect(stage.content.get(), &ContentView::commitRequested, editor.get(), &TakeEditor::commitPending);
    tracks.setFocus();
    tracks.setCurrentIndex(tracks.model()->index(0, TrackList::name));
    press(&tracks, Qt::Key_Left);
    ASSERT_EQ(tracks.currentIndex().column(), TrackList::channel);
    press(&tracks, Qt::Key_Left);
    EXPECT_EQ(tracks.currentIndex().column(), TrackList::channel) << "positions are not for the keyboard";
    press(&tracks, Qt::Key_1);  // a digit begins a number
    ASSERT_NE(openName(), nullptr);
    type(openName(), "x2");
    EXPECT_EQ(openName()->text(), "12");
    EXPECT_FALSE(stage.content->hasUnsavedChanges());
    press(openName(), Qt::Key_Return);
    EXPECT_EQ(number(0), 12);
    ASSERT_NE(openName(), nullptr);
    EXPECT_EQ(openName()->text(), "4");
    type(openName(), "5");
    press(openName(), Qt::Key_Tab);  // the third track has it
    EXPECT_EQ(told, "Tracks 2 and 3 of a cannot both have the recorder number 5.");
    ASSERT_NE(openName(), nullptr);
    EXPECT_EQ(openName()->text(), "5") << "to be typed again";
    EXPECT_EQ(number(1), 4);
    type(openName(), "77");
    press(openName(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(number(0), 12) << "what is being typed goes first";
    openName()->selectAll();
    type(openName(), "6");
    press(openName(), Qt::Key_Tab);
    type(openName(), "9");
    press(openName(), Qt::Key_Escape);
    EXPECT_EQ(fieldsOf(stage.row(0).groupe).numerosPistes, (TrackNumbers{{1, 12}, {2, 6}, {3, 5}}));
    EXPECT_EQ(tracks.model()->index(1, TrackList::channel).data(Qt::AccessibleTextRole).toString(),
              "Recorder number of track 2: 6, not saved");

    // Another take is loaded, or all are saved, while one is typed.
    press(&tracks, Qt::Key_Return);
    type(openName(), "8");
    select(1);
    select(0);
    EXPECT_EQ(number(2), 8);
    tracks.setFocus();
    tracks.setCurrentIndex(tracks.model()->index(2, TrackList::channel));
    press(&tracks, Qt::Key_F2);
    openName()->selectAll();
    type(openName(), "9");
    stage.content->saveAll();
    stage.settle();
    QCoreApplication::processEvents();
    EXPECT_EQ(fieldsOf(stage.onDisk().at(0)).numerosPistes, (TrackNumbers{{1, 12}, {2, 6}, {3, 9}}));
}

TEST_F(TakeEditorTest, AColumnOfNumbersIsPastedAtOnceOrNotAtAll) {
    TrackList& tracks = editor->trackList();
    const auto numbers = [&] { return fieldsOf(stage.row(0).groupe).numerosPistes; };
    QString told;
    QObject::connect(stage.content.get(), &ContentView::notice, editor.get(),
                     [&](const QString& text) { told = text; });
    tracks.setFocus();
    const auto paste = [&](const char* lines) {
        tracks.setCurrentIndex(tracks.model()->index(0, TrackList::channel));
        QApplication::clipboard()->setText(lines);
        press(&tracks, Qt::Key_V, Qt::ControlModifier);
    };
    for (const char* lines : {"4\n", "9\n9\n", "9\nten\n", "1000\n"}) {
        told.clear();
        paste(lines);
        EXPECT_FALSE(told.isEmpty()) << lines;
        EXPECT_FALSE(stage.content->hasUnsavedChanges()) << lines;
    }
    press(&tracks, Qt::Key_Delete);
    EXPECT_TRUE(told.contains("cannot be emptied")) << told.toStdString();
    paste("4\tx\r\n1\r\n");
    EXPECT_EQ(numbers(), (TrackNumbers{{1, 4}, {2, 1}, {3, 5}})) << "two changed places";
    tracks.selectAll();
    press(&tracks, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "4\n1\n5");
    undo();
    EXPECT_FALSE(stage.content->hasUnsavedChanges());
    EXPECT_EQ(trackName(0), "Boom");
}

TEST_F(TakeEditorTest, CuesAreAddedAtATypedPositionNamedAndDeletedByKeys) {
    CueList& cues = editor->cueList();
    QLineEdit& position = cues.positionField();
    position.setFocus();
    type(&position, "10:00:02:00");  // behind the end
    press(&position, Qt::Key_Return);
    EXPECT_EQ(stage.content->cueMarkers().size(), 1U);
    position.selectAll();
    type(&position, "10:00:00:05");
    press(&position, Qt::Key_Return);
    ASSERT_EQ(stage.content->cueMarkers().size(), 2U);
    EXPECT_EQ(stage.content->cueMarkers().front().frame, 9600);
    EXPECT_EQ(position.text(), "");

    cues.table().setFocus();
    cues.table().setCurrentIndex(cues.table().model()->index(0, 0));
    stage.dialogs.typed.push_back("Clap");
    press(&cues.table(), Qt::Key_F2);
    EXPECT_EQ(cues.table().model()->index(0, 2).data().toString(), "Clap");
    cues.table().setCurrentIndex(cues.table().model()->index(1, 0));
    stage.dialogs.answers.push_back({0, false});
    press(&cues.table(), Qt::Key_Delete);
    ASSERT_EQ(stage.content->cueMarkers().size(), 1U);
    EXPECT_EQ(stage.content->cueMarkers().front().label, "Clap");
}

TEST_F(TakeEditorTest, AFieldOnWhichFilesDisagreeSaysSoUntilItIsDecided) {
    select(1);
    QLineEdit& scene = line("Scene");
    EXPECT_EQ(scene.text(), "");
    EXPECT_EQ(scene.placeholderText(), "mixed");
    scene.setFocus();
    type(&scene, "9");
    EXPECT_EQ(scene.placeholderText(), "");
    EXPECT_EQ(scene.accessibleDescription(), "not saved; was mixed");
    EXPECT_TRUE(named<QPlainTextEdit>("Files").toPlainText().startsWith("b_1.wav\nb_2.wav"));
}

TEST_F(TakeEditorTest, TheRateMenuHasTheOfferedRatesInTheirOrderAndIgnoresTheWheel) {
    auto& rate = named<QComboBox>("Frame rate");
    QStringList rates;
    for (int at = 0; at < rate.count(); ++at)
        rates << rate.itemText(at);
    EXPECT_EQ(rates, (QStringList{"23.976", "24", "25", "29.97", "29.97 DF", "30"}));
    EXPECT_EQ(rate.currentText(), "25");
    QWheelEvent wheel({5, 5}, rate.mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&rate, &wheel);
    EXPECT_FALSE(stage.content->hasUnsavedChanges());
    rate.setFocus();
    press(&rate, Qt::Key_Down);
    EXPECT_EQ(stage.row(0).groupe.framerate, "29.97");
}

TEST_F(TakeEditorTest, AReadOnlyFormatSaysWhyAndTakesNothing) {
    select(2);
    EXPECT_TRUE(
        shows("Dravik can open MP3 files, but changes cannot be saved to this format.\n"
              "c.mp3 cannot be read as audio."));
    for (const char* name : {"Scene", "Take", "Tape", "Project", "Start timecode", "Position of a new cue"})
        EXPECT_FALSE(line(name).isEnabled()) << name;
    EXPECT_FALSE(named<QPlainTextEdit>("Note").isEnabled());
    select(0);
    EXPECT_TRUE(line("Scene").isEnabled());
}

TEST_F(TakeEditorTest, WithoutATakeThereIsAHintAndNothingToEdit) {
    stage.content->gererActionProtegee(OuvrirDossier{stage.settingsFolder.path()});
    stage.settle();
    EXPECT_TRUE(shows("Select a take to see and edit its fields."));
    EXPECT_FALSE(line("Scene").isVisible());
}

}  // namespace
}  // namespace dravik::test
