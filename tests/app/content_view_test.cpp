#include "app/content_view.h"

#include "app/table_edits.h"
#include "app/text.h"
#include "editing/cue_writer.h"
#include "tests/app/main_window_stage.h"
#include "tests/support/files.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using test::MainWindowStage;
using test::namesIn;
using test::readFile;
using test::recorderFile;
using test::WavBuilder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Two poly takes and a mono set of three.
class ContentViewTest : public testing::Test, public MainWindowStage {
  protected:
    ContentViewTest() {
        for (int i = 1; i <= 3; ++i) {
            const std::string n = std::to_string(i);
            recorderFile({.scene = "1", .tracks = {{i, 1, "Mic " + n}}}, {}, 4800, static_cast<unsigned>(i))
                .write(folder / ("A_T0" + n + ".wav"));
        }
        recorderFile({.scene = "2"}, {.channels = 2}, 4800).write(folder / "B.wav");
        recorderFile({.scene = "3"}, {.channels = 2}, 4800).write(folder / "C.wav");
    }
    void discardAll() {
        content->rows().discardAll();
        ASSERT_FALSE(content->hasUnsavedChanges());
    }
};

TEST_F(ContentViewTest, AsksNothingWhileNothingIsUnsaved) {
    open();
    ASSERT_EQ(rowCount(), 3U);
    content->selectionnerLigne(1);
    settle();
    EXPECT_EQ(content->fichierSelectionne(), folder / "B.wav");
    EXPECT_EQ(content->metadata()->scene, "2");
    content->gererActionProtegee(OuvrirFichier{folder / "C.wav"});
    settle();
    EXPECT_EQ(content->fichierSelectionne(), folder / "C.wav");
    termination.applicationShouldTerminate();
    EXPECT_TRUE(terminated);
    EXPECT_THAT(dialogs.asked, IsEmpty());
}

TEST_F(ContentViewTest, AsksInItsOwnWordsBeforeUnsavedChangesWouldBeLost) {
    test::TempFolder other;
    const ActionEnAttente actions[] = {OuvrirFichier{folder / "C.wav"}, OuvrirDossier{other.path()},
                                       OuvrirGroupe{{folder / "C.wav"}},
                                       OuvrirDepotFichiers{{folder / "C.wav"}, folder.path()}, QuitterApp{}};
    for (const ActionEnAttente& action : actions) {
        open();
        edit(1, RowField::scene, "2A");
        dialogs.asked.clear();
        const bool quits = std::holds_alternative<QuitterApp>(action);
        if (quits) {
            termination.applicationShouldTerminate();
        } else {
            content->gererActionProtegee(action);
        }
        ASSERT_THAT(dialogs.asked, SizeIs(1));
        EXPECT_EQ(dialogs.asked[0].title, QStringLiteral("Unsaved modifications"));
        EXPECT_EQ(dialogs.asked[0].text, quits ? QStringLiteral("Do you want to save your changes before quitting?")
                                               : QStringLiteral("Do you want to save your changes before continuing?"));
        EXPECT_EQ(dialogs.asked[0].buttons, QStringList({"Save", "Discard changes", "Cancel"}));
        EXPECT_TRUE(content->actionEnAttente().has_value());
        dialogs.answer(2);
        EXPECT_FALSE(content->actionEnAttente().has_value());
        EXPECT_TRUE(content->hasUnsavedChanges());
        EXPECT_EQ(row(1).groupe.scene, "2A");
        EXPECT_FALSE(terminated);
        discardAll();
    }
}

TEST_F(ContentViewTest, CancellingTheQuitDialogKeepsTheProgramRunning) {
    open();
    edit(1, RowField::scene, "2A");
    QSignalSpy replied(&commands, &Commands::dravikProtectedTerminationDidReply);
    termination.applicationShouldTerminate();
    termination.applicationShouldTerminate();  // a second Quit while the dialog is open
    ASSERT_THAT(dialogs.asked, SizeIs(1));
    dialogs.answer(2);
    EXPECT_FALSE(terminated);
    EXPECT_FALSE(termination.isPending());
    EXPECT_EQ(replied.count(), 1);
    EXPECT_TRUE(content->hasUnsavedChanges());
}

TEST_F(ContentViewTest, SavesOrDiscardsAndThenDoesWhatWasAsked) {
    open();
    edit(1, RowField::scene, "2A");
    dialogs.answers = {{0, false}};
    content->gererActionProtegee(OuvrirGroupe{{folder / "C.wav"}});
    settle();
    EXPECT_EQ(onDisk().at(1).scene, "2A");
    EXPECT_EQ(content->fichierSelectionne(), folder / "C.wav");
    EXPECT_FALSE(content->hasUnsavedChanges());

    edit(1, RowField::scene, "2B");
    dialogs.answers = {{1, false}};
    termination.applicationShouldTerminate();
    settle();
    EXPECT_TRUE(terminated);
    EXPECT_EQ(onDisk().at(1).scene, "2A");
}

TEST_F(ContentViewTest, DoesNotGoOnWhenTheSaveFailed) {
    open();
    content->selectionnerLigne(0);
    edit(1, RowField::scene, "2A");
    const Bytes before = readFile(folder / "B.wav");
    files.failAt({.kinds = {test::Call::sync}});
    files.syncing = true;
    dialogs.answers = {{0, false}};
    termination.applicationShouldTerminate();
    settle();
    ASSERT_THAT(dialogs.asked, SizeIs(2));
    EXPECT_EQ(dialogs.asked[1].title, QStringLiteral("Save Failed"));
    EXPECT_EQ(dialogs.asked[1].buttons, QStringList({"OK"}));
    EXPECT_FALSE(terminated);
    EXPECT_EQ(row(1).groupe.scene, "2A");
    EXPECT_TRUE(content->hasUnsavedChanges());
    EXPECT_EQ(readFile(folder / "B.wav"), before);
    EXPECT_EQ(content->selectedRow(), 0);
}

TEST_F(ContentViewTest, TellsForTwoSecondsHowManyFilesWereSaved) {
    open();
    const auto save = [&] {
        content->saveAll();
        EXPECT_TRUE(content->sauvegardeEnCours());
        settle();
        return content->messageSuccesSauvegarde();
    };
    edit(1, RowField::scene, "2A");
    EXPECT_EQ(save(), QStringLiteral("Saved"));
    edit(0, RowField::note, "three mono files");
    EXPECT_EQ(save(), QStringLiteral("Saved 3 files"));
    clock.pass(std::chrono::milliseconds(1999));
    EXPECT_EQ(content->messageSuccesSauvegarde(), QStringLiteral("Saved 3 files"));
    clock.pass(std::chrono::milliseconds(1));
    EXPECT_EQ(content->messageSuccesSauvegarde(), QString());
    EXPECT_THAT(dialogs.asked, IsEmpty());
}

TEST_F(ContentViewTest, OffersToDiscardWhatNoFormatCanHold) {
    for (const char* name : {"x.mp3", "y.aif", "z.MP3"})
        recorderFile().write(folder / name);
    open();
    ASSERT_EQ(rowCount(), 6U);
    const auto editAll = [&](const std::vector<int>& rows) {
        for (const int at : rows)
            edit(at, RowField::scene, "9");
        dialogs.asked.clear();
    };
    editAll({1, 3, 4, 5});
    content->saveAll();
    ASSERT_THAT(dialogs.asked, SizeIs(1));
    EXPECT_EQ(dialogs.asked[0].title, QStringLiteral("Format Not Supported for Editing"));
    EXPECT_EQ(dialogs.asked[0].text, QStringLiteral("Changes cannot be saved to these file formats: AIF, MP3."
                                                    "\n\nWould you like to discard your changes?"));
    EXPECT_EQ(dialogs.asked[0].buttons, QStringList({"Discard", "Cancel"}));
    dialogs.answer(1);
    settle();
    EXPECT_THAT(content->rows().editedRows(), SizeIs(4)) << "Cancel keeps every change";
    EXPECT_EQ(onDisk().at(1).scene, "2");

    content->saveAll();
    dialogs.answer(0);
    settle();
    EXPECT_THAT(content->rows().editedRows(), IsEmpty());
    EXPECT_EQ(onDisk().at(1).scene, "9") << "what can be saved is";

    editAll({4});
    content->saveAll();
    EXPECT_EQ(dialogs.asked[0].text,
              QStringLiteral("Dravik can open AIF files, but changes cannot be saved to this format."
                             "\n\nWould you like to discard your changes?"));
    dialogs.answer(0);
}

TEST_F(ContentViewTest, CallsAFileWithoutExtensionThisFile) {
    recorderFile().write(folder / "noext");
    open();
    GroupeFichiers odd = row(1).groupe;
    odd.fichiers.edit([&](auto& fichiers) { fichiers.front().url = folder / "noext"; });
    content->rows().load({odd});
    edit(0, RowField::scene, "9");
    content->saveAll();
    ASSERT_THAT(dialogs.asked, SizeIs(1));
    EXPECT_EQ(dialogs.asked[0].text,
              QStringLiteral("Dravik can open this file files, but changes cannot be saved to this format."
                             "\n\nWould you like to discard your changes?"));
}

TEST_F(ContentViewTest, KeepsTheTakeSelectedUnderItsNewName) {
    open();
    content->selectionnerLigne(0);
    settle();
    edit(0, RowField::name, "Z");
    content->saveAll();
    settle();
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("B.wav", "C.wav", "Z_T01.wav", "Z_T02.wav", "Z_T03.wav"));
    EXPECT_EQ(content->selectedRow(), 2);
    EXPECT_EQ(row(2).groupe.nom, "Z");
    EXPECT_FALSE(content->hasUnsavedChanges());
}

TEST_F(ContentViewTest, SaysWhenFilesCouldNotBePutBack) {
    open();
    edit(1, RowField::name, "B2");
    edit(2, RowField::name, "C2");
    files.failAt({.kinds = {test::Call::renameNoReplace}, .nth = 3, .allLater = true});
    content->saveAll();
    settle();
    ASSERT_THAT(dialogs.asked, testing::Not(IsEmpty()));
    EXPECT_EQ(dialogs.asked[0].title, QStringLiteral("Critical Rename Recovery Needed"));
    EXPECT_TRUE(content->hasUnsavedChanges());
}

TEST_F(ContentViewTest, ShowsOneEditInTheTableAndInTheFields) {
    open();
    content->selectionnerLigne(1);
    settle();
    ModificationsEnCours& fields = content->modifications();
    fields.setScene("2A");
    EXPECT_EQ(row(1).groupe.scene, "2A");
    edit(1, RowField::prise, "7");
    EXPECT_EQ(fields.prise(), "7");
    EXPECT_EQ(fields.scene(), "2A");
    EXPECT_TRUE(fields.aDesModifications());
    fields.setTrackName(2, "Lav & co");
    EXPECT_EQ(tracksOfGroup(row(1).groupe).at(1).nom, "Lav & co");

    content->selectionnerLigne(2);
    settle();
    EXPECT_EQ(fields.scene(), "3");
    EXPECT_FALSE(fields.aDesModifications());
    content->selectionnerLigne(1);
    settle();
    EXPECT_EQ(fields.scene(), "2A") << "the edits stayed with their row";
    EXPECT_EQ(fields.nomsPistes().at(2), "Lav & co");

    content->saveAll();
    settle();
    EXPECT_FALSE(fields.aDesModifications());
    const GroupeFichiers saved = onDisk().at(1);
    EXPECT_EQ(saved.scene, "2A");
    EXPECT_EQ(saved.prise, "7");
    EXPECT_EQ(tracksOfGroup(saved).at(1).nom, "Lav & co");
}

TEST_F(ContentViewTest, AsksBeforeAnotherTakeWhereTheUserWantsIt) {
    open();
    content->selectionnerLigne(1);
    settings.set(settings::confirmBeforeSelectingAnotherTake, true);
    edit(1, RowField::scene, "2A");
    QSignalSpy selection(content.get(), &ContentView::selectionChanged);
    content->selectionnerLigne(2);
    ASSERT_THAT(dialogs.asked, SizeIs(1));
    dialogs.answer(2);
    EXPECT_EQ(content->selectedRow(), 1);
    EXPECT_GE(selection.count(), 1) << "the table is told to show the loaded take again";
}

TEST_F(ContentViewTest, TypingInOneFieldIsOneStep) {
    open();
    content->selectionnerLigne(1);
    settle();
    for (const char* text : {"2A", "2AB", "2ABC"})
        content->modifications().setScene(text);
    content->modifications().setPrise("8");
    EXPECT_EQ(content->rows().undoName(), QStringLiteral("Edit Take"));
    content->undo();
    EXPECT_EQ(content->modifications().scene(), "2ABC");
    content->undo();
    EXPECT_EQ(content->modifications().scene(), "2");
    EXPECT_FALSE(content->hasUnsavedChanges());
    EXPECT_FALSE(content->canUndo());
    content->redo();
    EXPECT_EQ(row(1).groupe.scene, "2ABC");
}

TEST_F(ContentViewTest, KeepsEditsAndSelectionWhenTheFolderChangesOutside) {
    open();
    content->selectionnerLigne(1);
    edit(1, RowField::scene, "2A");
    edit(2, RowField::note, "kept");
    recorderFile({.scene = "0"}, {.channels = 2}).write(folder / "AA.wav");
    content->reload();
    settle();
    ASSERT_EQ(rowCount(), 4U);
    EXPECT_EQ(content->fichierSelectionne(), folder / "B.wav");
    EXPECT_EQ(row(2).groupe.scene, "2A");
    EXPECT_EQ(row(3).groupe.notes, "kept");
    EXPECT_EQ(content->rows().editedRows(), (std::set<int>{2, 3}));
    content->undo();
    EXPECT_EQ(row(3).groupe.notes, std::nullopt) << "steps follow their rows";
}

TEST_F(ContentViewTest, EditsOfATakeThatVanishedStayUntilItIsBackOrDiscarded) {
    open();
    content->selectionnerLigne(1);
    edit(1, RowField::scene, "2A");
    edit(2, RowField::note, "saved");
    std::filesystem::rename(folder / "B.wav", folder / "B.away");
    content->reload();
    settle();
    ASSERT_EQ(rowCount(), 3U);
    EXPECT_EQ(row(2).groupe.scene, "2A") << "behind the takes that are there";
    EXPECT_EQ(content->rows().missingRows(), std::set<int>{2});
    EXPECT_FALSE(content->rows().canEdit(2));
    EXPECT_EQ(content->fichierSelectionne(), folder / "B.wav");

    std::filesystem::rename(folder / "B.away", folder / "B.wav");
    content->reload();
    settle();
    EXPECT_EQ(row(1).groupe.scene, "2A");
    EXPECT_THAT(content->rows().missingRows(), IsEmpty());

    std::filesystem::remove(folder / "B.wav");
    content->reload();
    settle();
    content->saveAll();
    ASSERT_THAT(dialogs.asked, SizeIs(1));
    EXPECT_EQ(dialogs.asked[0].title, QStringLiteral("Takes Are Gone"));
    dialogs.answer(0);
    settle();
    EXPECT_EQ(rowCount(), 2U);
    EXPECT_EQ(onDisk().at(1).notes, "saved");
    EXPECT_FALSE(content->hasUnsavedChanges());
}

TEST_F(ContentViewTest, OneFileThatCannotBeWrittenDoesNotKeepTheOthersFromBeingSaved) {
    // It ends inside a chunk, behind which nothing can be put without losing what the chunk promised.
    WavBuilder().fmt().audio(4800).chunkClaiming("LIST", test::audioBytes(20), 400).write(folder / "C.wav");
    WavBuilder("RF64").ds64(4800).fmt().audio(4800).write(folder / "D.wav");
    open();
    EXPECT_TRUE(content->rows().canEdit(2));
    EXPECT_FALSE(content->rows().canEdit(3)) << "RF64 under the name of a WAV file";
    edit(1, RowField::scene, "2A");
    edit(2, RowField::scene, "3A");
    content->saveAll();
    settle();
    ASSERT_THAT(dialogs.asked, SizeIs(1));
    EXPECT_EQ(dialogs.asked[0].title, QStringLiteral("Save Failed"));
    EXPECT_TRUE(dialogs.asked[0].text.contains(QStringLiteral("C.wav"))) << dialogs.asked[0].text.toStdString();
    EXPECT_EQ(dialogs.asked[0].buttons, QStringList({"OK", "Save the Others"}));
    EXPECT_EQ(onDisk().at(1).scene, "2");
    dialogs.answer(1);
    settle();
    EXPECT_EQ(onDisk().at(1).scene, "2A");
    EXPECT_EQ(content->rows().editedRows(), std::set<int>{2}) << "what was refused stays pending";
}

TEST_F(ContentViewTest, NothingCanBeEditedWhileItIsWritten) {
    open();
    content->selectionnerLigne(1);
    edit(1, RowField::scene, "2A");
    content->saveAll();
    ASSERT_TRUE(content->sauvegardeEnCours());
    edit(1, RowField::scene, "lost");
    content->modifications().setNote("lost");
    content->rows().undo();
    content->cues().add(100);
    content->discardAll();
    settle();
    EXPECT_FALSE(content->hasUnsavedChanges());
    EXPECT_EQ(row(1).groupe.scene, "2A");
    EXPECT_EQ(content->modifications().note(), "");
    EXPECT_EQ(onDisk().at(1).scene, "2A");
}

TEST_F(ContentViewTest, AsksBeforeEverythingIsDiscarded) {
    open();
    edit(1, RowField::scene, "2A");
    content->discardAll();
    ASSERT_THAT(dialogs.asked, SizeIs(1));
    EXPECT_EQ(dialogs.asked[0].title, QStringLiteral("Discard All Unsaved Changes?"));
    EXPECT_EQ(dialogs.asked[0].text,
              QStringLiteral("Dravik will revert all pending metadata, track name and cue changes. "
                             "This cannot be undone."));
    EXPECT_TRUE(content->hasUnsavedChanges());
    dialogs.answer(0);
    EXPECT_FALSE(content->hasUnsavedChanges());
    EXPECT_EQ(row(1).groupe.scene, "2");
}

TEST_F(ContentViewTest, ChangesTheGroupingOnlyWhileNothingIsUnsaved) {
    open();
    edit(1, RowField::scene, "2A");
    content->setRegrouperFichiersMono(false);
    ASSERT_THAT(dialogs.asked, SizeIs(1));
    EXPECT_EQ(dialogs.asked[0].text, QStringLiteral("Save changes before changing mono grouping."));
    EXPECT_TRUE(content->regrouperFichiersMono());
    discardAll();

    dialogs.asked.clear();
    dialogs.waiting.clear();
    content->setRegrouperFichiersMono(false);
    ASSERT_THAT(dialogs.asked, SizeIs(1));
    EXPECT_EQ(dialogs.asked[0].title, QStringLiteral("Mono Group Detection Disabled"));
    EXPECT_EQ(dialogs.asked[0].checkBox, QStringLiteral("Don't show again"));
    dialogs.answer(0, true);
    settle();
    EXPECT_EQ(rowCount(), 5U);
    content->setRegrouperFichiersMono(true);
    content->setRegrouperFichiersMono(false);
    settle();
    EXPECT_THAT(dialogs.asked, SizeIs(1)) << "not shown again";
}

TEST_F(ContentViewTest, OpensPanelsWhereTheUserIs) {
    open();
    dialogs.choices = {folder / "C.wav", std::nullopt};
    emit commands.dravikLoadFile();
    settle();
    EXPECT_EQ(content->fichierSelectionne(), folder / "C.wav");
    emit commands.dravikLoadFolder();
    ASSERT_THAT(dialogs.panels, SizeIs(2));
    EXPECT_EQ(dialogs.panels[0].title, QStringLiteral("Load File"));
    EXPECT_EQ(dialogs.panels[1].title, QStringLiteral("Load Folder"));
    for (const OpenPanel& panel : dialogs.panels) {
        EXPECT_EQ(panel.prompt, QStringLiteral("Load"));
        EXPECT_EQ(panel.start, folder.path());
    }
    EXPECT_TRUE(dialogs.panels[1].folders);
}

TEST_F(ContentViewTest, ShowsFilesOfSeveralFoldersTogether) {
    test::TempFolder other;
    recorderFile({.scene = "7"}, {.channels = 2}).write(other / "G.wav");
    router.route({folder / "B.wav", other / "G.wav"});
    settle();
    EXPECT_EQ(rowCount(), 2U);
    EXPECT_EQ(content->folderLabel(), QStringLiteral("Multiple folders"));
    content->setLignesSelectionnees({0});
    EXPECT_EQ(content->folderLabel().toStdString(), folder.path().native());
    content->setLignesSelectionnees({0, 1});
    EXPECT_EQ(content->folderLabel(), QStringLiteral("Multiple folders"));
    EXPECT_EQ(content->fichierSelectionne(), folder / "B.wav");
    edit(1, RowField::name, "H");
    content->saveAll();
    settle();
    EXPECT_THAT(namesIn(other.path()), ElementsAre("H.wav"));
    EXPECT_EQ(rowCount(), 2U);
    EXPECT_FALSE(content->hasUnsavedChanges());
}

TEST_F(ContentViewTest, EditsCuesAsStepsAndSavesThem) {
    open();
    content->selectionnerLigne(1);
    settle();
    content->cues().add(1000);
    EXPECT_EQ(content->rows().undoName(), QStringLiteral("Add Cue"));
    content->cues().add(500);
    content->cues().add(99'999'999);
    ASSERT_THAT(content->cueMarkers(), SizeIs(3));
    EXPECT_EQ(content->cueMarkers().back().frame, 4800) << "not behind the end of the take";
    EXPECT_TRUE(content->modifications().modifCues());

    dialogs.typed = {QStringLiteral("Clap")};
    content->cues().rename(content->cueMarkers()[0].id);
    EXPECT_EQ(dialogs.texts[0].title, QStringLiteral("Edit Cue Name"));
    content->cues().beginDrag(content->cueMarkers()[1].id);
    for (const std::int64_t frame : {1100, 1200, 300})
        content->cues().drag(frame);
    content->cues().endDrag();
    EXPECT_EQ(content->cueMarkers()[0].frame, 300);
    content->undo();
    EXPECT_EQ(content->cueMarkers()[1].frame, 1000) << "a drag is one step";
    content->redo();

    content->cues().remove(content->cueMarkers()[1].id);
    ASSERT_THAT(dialogs.asked, SizeIs(1));
    EXPECT_EQ(dialogs.asked[0].title, QStringLiteral("Delete Cue?"));
    EXPECT_TRUE(dialogs.asked[0].text.startsWith(QStringLiteral("Delete Cue \"Clap\"?")));
    EXPECT_EQ(dialogs.asked[0].checkBox, QStringLiteral("Do not ask again"));
    dialogs.answer(0, true);
    ASSERT_THAT(content->cueMarkers(), SizeIs(2));

    content->saveAll();
    settle();
    const std::vector<CueMarker> saved = lireCues(folder / "B.wav");
    ASSERT_THAT(saved, SizeIs(2));
    EXPECT_EQ(saved[0].frame, 300);
    ASSERT_THAT(content->cueMarkers(), SizeIs(2)) << "read back";
    content->cues().remove(content->cueMarkers()[0].id);
    EXPECT_THAT(dialogs.asked, SizeIs(1)) << "not asked again";
    EXPECT_THAT(content->cueMarkers(), SizeIs(1));
    content->undo();
    EXPECT_FALSE(content->hasUnsavedChanges());
}

TEST_F(ContentViewTest, UndoesTheLastSaveWhenNothingIsPending) {
    const Bytes before = readFile(folder / "B.wav");
    open();
    content->selectionnerLigne(1);
    settle();
    edit(1, RowField::scene, "2A");
    edit(1, RowField::name, "New");
    content->saveAll();
    settle();
    EXPECT_EQ(content->undoName(), QStringLiteral("Save of 1 File"));
    edit(0, RowField::scene, "1A");
    EXPECT_EQ(content->undoName(), QStringLiteral("Edit")) << "what is pending comes first";
    content->undo();
    content->undo();
    ASSERT_THAT(dialogs.asked, SizeIs(1));
    dialogs.answer(0);
    settle();
    EXPECT_EQ(readFile(folder / "B.wav"), before);
    EXPECT_EQ(content->fichierSelectionne(), folder / "B.wav");
    EXPECT_EQ(row(1).groupe.scene, "2");
    EXPECT_FALSE(content->canUndo());
}

TEST_F(ContentViewTest, KeepsRowsAndEditsOfACardThatIsPulled) {
    open();
    edit(1, RowField::scene, "2A");
    const std::filesystem::path away = settingsFolder / "away";
    std::filesystem::rename(folder.path(), away);
    content->reload();
    settle();
    EXPECT_EQ(rowCount(), 3U);
    EXPECT_EQ(row(1).groupe.scene, "2A");
    EXPECT_THAT(dialogs.asked, IsEmpty());
    std::filesystem::rename(away, folder.path());
    content->reload();
    settle();
    EXPECT_THAT(content->rows().editedRows(), SizeIs(1));
}

TEST_F(ContentViewTest, UndoesOneSaveAfterTheOther) {
    const Bytes before = readFile(folder / "B.wav");
    open();
    for (const char* scene : {"2A", "2B"}) {
        edit(1, RowField::scene, scene);
        content->saveAll();
        settle();
    }
    dialogs.answers = {{0, false}, {0, false}};
    content->undo();
    settle();
    EXPECT_EQ(row(1).groupe.scene, "2A");
    content->undo();
    settle();
    EXPECT_EQ(readFile(folder / "B.wav"), before);
    EXPECT_FALSE(content->canUndo());
}

TEST_F(ContentViewTest, ARefusedSaveLeavesNothingToUndo) {
    open();
    edit(1, RowField::name, "C");  // which is there
    content->saveAll();
    settle();
    ASSERT_THAT(dialogs.asked, SizeIs(1));
    content->rows().discardAll();
    EXPECT_FALSE(content->canUndo());
}

TEST_F(ContentViewTest, UndoDoesNotBringBackWhatOthersHaveChangedSince) {
    open();
    edit(1, RowField::scene, "2A");
    recorderFile({.scene = "2", .note = "by another program"}, {.channels = 2}, 4800).write(folder / "B.wav");
    content->reload();
    settle();
    EXPECT_EQ(row(1).groupe.notes, "by another program");
    content->undo();
    EXPECT_EQ(row(1).groupe.notes, "by another program");
    EXPECT_EQ(row(1).groupe.scene, "2");
    EXPECT_FALSE(content->hasUnsavedChanges());
}

TEST_F(ContentViewTest, TypingThatIsTakenBackLeavesNoStep) {
    open();
    content->selectionnerLigne(1);
    settle();
    content->modifications().setScene("2x");
    content->modifications().setScene("2");
    EXPECT_FALSE(content->canUndo());
    EXPECT_FALSE(content->hasUnsavedChanges());
}

TEST_F(ContentViewTest, FilesFromOutsideWaitForAnOpenQuestion) {
    open();
    edit(1, RowField::scene, "2A");
    termination.applicationShouldTerminate();
    router.route({folder / "C.wav"});
    dialogs.answer(2);
    QCoreApplication::processEvents();
    ASSERT_THAT(dialogs.asked, SizeIs(2)) << "now about these files";
    dialogs.answer(1);
    settle();
    EXPECT_EQ(content->fichierSelectionne(), folder / "C.wav");
}

TEST_F(ContentViewTest, CanGoAwayInTheMiddleOfAReading) {
    for (int i = 0; i < 300; ++i)
        recorderFile({}, {.channels = 2}, 100).write(folder / ("D" + std::to_string(i) + ".wav"));
    content->gererActionProtegee(OuvrirDossier{folder.path()});
    content.reset();
    QCoreApplication::processEvents();
}

TEST_F(ContentViewTest, KeepsWhatIsOpenWhenAFolderIsNotThere) {
    open();
    open("/nowhere/at/all");
    ASSERT_THAT(dialogs.asked, SizeIs(1));
    EXPECT_EQ(content->dossierSelectionne(), folder.path());
    EXPECT_EQ(rowCount(), 3U);
}

}  // namespace
}  // namespace dravik
