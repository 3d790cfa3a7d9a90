#include "editing/save_transaction.h"

#include "base/paths.h"
#include "editing/cue_writer.h"
#include "model/folder_scan.h"
#include "tests/support/fake_codecs.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace dravik {
namespace {

using test::Call;
using test::FaultyFileOps;
using test::namesIn;
using test::readFile;
using test::stateOf;
using test::TempFolder;
using test::WavBuilder;
using testing::ElementsAre;
using testing::HasSubstr;

/// A folder with one mono set of three files that disagree in their notes, and start off a frame.
class SaveTransaction : public testing::Test {
  protected:
    static constexpr std::uint64_t start = 1'728'000'777;

    SaveTransaction() {
        ops.syncing = false;
        for (int i = 1; i <= 3; ++i) {
            const std::string n = std::to_string(i);
            test::recorderFile({.note = "note " + n, .samples = start, .tracks = {{i, 1, "Mic " + n}}}, {}, 20'000,
                               static_cast<unsigned>(i))
                .write(folder / ("SC12_T0" + n + ".wav"));
        }
        load();
    }
    void load() {
        const auto groupes = scanFolder(folder.path(), test::FakeCodecs(), true, {});
        ASSERT_EQ(groupes.size(), 1U);
        groupe = groupes.front();
        edits.charger(summary(groupe), tracksOfGroup(groupe), 48000);
    }
    std::vector<SaveItem> items(const std::optional<std::string>& name = {}) {
        return planSave(groupe, edits.fields(), edits.originals(), name);
    }
    SaveReport save(const std::optional<std::string>& name = {}, const TaskContext& task = {}) {
        return runSave(ops, items(name), task);
    }
    std::vector<Bytes> contents() {
        std::vector<Bytes> all;
        for (const std::string& name : namesIn(folder.path()))
            all.push_back(readFile(folder / name));
        return all;
    }

    TempFolder folder;
    FaultyFileOps ops;
    GroupeFichiers groupe;
    ModificationsEnCours edits;
};

TEST_F(SaveTransaction, RenamesTheSetAndWritesEveryFileOfItAtItsNewPlace) {
    edits.setScene("13 & 14");
    edits.setTrackName(2, "Lav & Boom");
    const SaveReport report = save("SC13");
    EXPECT_NO_THROW(report.throwIfFailed());
    EXPECT_EQ(report.written(), 3U);
    EXPECT_EQ(report.moved.at(folder / "SC12_T02.wav"), folder / "SC13_T02.wav");
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("SC13_T01.wav", "SC13_T02.wav", "SC13_T03.wav"));
    load();
    EXPECT_EQ(groupe.nom, "SC13");
    EXPECT_EQ(groupe.scene, "13 & 14");
    for (std::size_t i = 0; i < 3; ++i) {
        const InfoFichier& info = groupe.fichiers[i];
        EXPECT_EQ(info.notes, "note " + std::to_string(i + 1)) << "not edited: each file keeps its own";
        EXPECT_EQ(info.nomsPistes.at(1), i == 1 ? "Lav &amp; Boom" : "Mic " + std::to_string(i + 1));
        EXPECT_EQ(info.timecode, "10:00:00:00");
    }
    const Bytes first = readFile(folder / "SC13_T01.wav");
    EXPECT_THAT(std::string(asText(first)), HasSubstr("_LO>1728000777<")) << "the recorder's own count survives";
}

TEST_F(SaveTransaction, TouchesNoFileWithoutAnEdit) {
    const auto before = stateOf(folder.path());
    edits.setScene("13");
    edits.setScene("12A");
    const SaveReport report = save();
    EXPECT_EQ(report.written(), 0U);
    EXPECT_EQ(report.results.size(), 3U);
    EXPECT_EQ(stateOf(folder.path()), before);
    EXPECT_EQ(ops.calls(), 0);
    edits.setTrackName(3, "Lav");
    EXPECT_EQ(save().written(), 1U) << "one name is in one file";
    const auto after = stateOf(folder.path());
    EXPECT_EQ(after.at("SC12_T01.wav"), before.at("SC12_T01.wav"));
    EXPECT_NE(after.at("SC12_T03.wav"), before.at("SC12_T03.wav"));
}

TEST_F(SaveTransaction, ChangesNothingWhenTheRenameIsRefusedOrUndone) {
    edits.setScene("13");
    const std::vector<Bytes> before = contents();
    test::writeFile(folder / "sc13_t02.WAV", "taken");
    EXPECT_THROW(static_cast<void>(save("SC13")), MainSaveRenameError);
    std::filesystem::remove(folder / "sc13_t02.WAV");
    ops.failAt({.kinds = {Call::renameNoReplace}, .nth = 6, .errorNumber = EACCES});
    EXPECT_THROW(static_cast<void>(save("SC13")), std::filesystem::filesystem_error);
    EXPECT_EQ(contents(), before);
    EXPECT_EQ(namesIn(folder.path()).front(), "SC12_T01.wav");
}

TEST_F(SaveTransaction, RefusesBeforeTheFirstChangeWhenThereIsNoRoom) {
    edits.setScene("13");
    ops.free = 1'000'000;
    try {
        static_cast<void>(save("SC13"));
        FAIL() << "expected an error";
    } catch (const std::filesystem::filesystem_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_space_on_device);
    }
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("SC12_T01.wav", "SC12_T02.wav", "SC12_T03.wav"));
    // A rehearsal tells as much as can be told without a trial file.
    const int calls = ops.calls();
    const auto items = planSave(groupe, edits.fields(), edits.originals(), std::nullopt);
    EXPECT_THAT(foldersShortOfRoom(ops, items), ElementsAre(folder.path()));
    EXPECT_EQ(ops.calls(), calls);
    edits.annuler();
    EXPECT_NO_THROW(static_cast<void>(save("SC13"))) << "names alone need no room";
}

TEST_F(SaveTransaction, LetsNoFileThatFailsStopTheOthers) {
    edits.setScene("13");
    ops.failAt({.kinds = {Call::sync}, .nth = 1, .andNth = 3, .errorNumber = ENOSPC});
    const Bytes third = readFile(folder / "SC12_T03.wav");
    const SaveReport report = save();
    EXPECT_EQ(report.written(), 1U);
    EXPECT_TRUE(report.failed());
    EXPECT_EQ(report.results[1].error, "");
    for (const std::size_t i : {0U, 2U}) {
        EXPECT_EQ(report.results[i].error,
                  "SC12_T0" + std::to_string(i + 1) +
                      ".wav was not saved: No space left on device. The file was not changed.");
    }
    EXPECT_EQ(readFile(folder / "SC12_T03.wav"), third);
    try {
        report.throwIfFailed();
        FAIL() << "expected an error";
    } catch (const MainSaveRenameError&) {
        FAIL() << "nothing was renamed";
    } catch (const Error& error) {
        EXPECT_EQ(error.what(), report.results[0].error + "\n" + report.results[2].error);
    }
}

TEST_F(SaveTransaction, IsRefusedBeforeTheFirstChangeForEveryFileThatCannotTakeIt) {
    const Bytes sound = readFile(folder / "SC12_T01.wav");
    const Bytes damaged = WavBuilder().fmt().chunkClaiming("data", test::audioBytes(99), 5000).bytes();
    WavBuilder full;  // an iXML or two chunks of markers find a place, not all of them
    for (std::size_t i = 2; i < maxChunks; ++i)
        full.chunk("JUNK", "");
    const std::vector<CueMarker> marker = {{{}, 1, "x"}};
    const struct {
        std::string rule, note;
        Bytes first, second;
        std::optional<std::vector<CueMarker>> cues;
        std::vector<std::string> says;
    } cases[] = {
        {"new chunks would be lost", "n", damaged, damaged, {}, {"SC12_T01.wav has a damaged", "SC12_T02.wav has a"}},
        {"a tag in a value", "</NOTE>", sound, sound, {}, {"SC12_T01.wav cannot take", "SC12_T03.wav cannot take"}},
        {"a control character", "a\x01", sound, sound, {}, {"SC12_T02.wav cannot take", "control character"}},
        {"too many markers", "n", sound, sound, std::vector<CueMarker>(70'000), {"SC12_T03.wav cannot hold"}},
        {"no longer a recording", "n", sound, toBytes("text"), {}, {"SC12_T02.wav is not a RIFF/WAVE file"}},
        {"markers behind the new iXML", "n", full.bytes(), sound, marker, {"SC12_T01.wav could not be rewritten so"}},
    };
    for (const auto& [rule, note, first, second, cues, says] : cases) {
        SCOPED_TRACE(rule);
        edits.annuler();
        edits.setNote(note);
        test::writeFile(folder / "SC12_T01.wav", first);
        test::writeFile(folder / "SC12_T02.wav", second);
        std::vector<SaveItem> all = items("SC13");
        for (SaveItem& item : all)
            item.cues = cues;
        const auto before = stateOf(folder.path());
        const int calls = ops.calls();
        try {
            static_cast<void>(runSave(ops, all, {}));
            FAIL() << "expected an error";
        } catch (const SaveRefused& error) {
            for (const std::string& text : says)
                EXPECT_THAT(error.what(), HasSubstr(text));
            EXPECT_TRUE(std::string(error.what()).ends_with("No files were changed."));
        }
        EXPECT_EQ(stateOf(folder.path()), before);
        EXPECT_EQ(ops.calls(), calls);
    }
}

TEST_F(SaveTransaction, NamesTheFolderInWhichNoFileCanBeMade) {
    edits.setScene("13");
    ops.readOnlyFolders = true;
    for (const std::optional<std::string>& name : {std::optional<std::string>(), std::optional<std::string>("SC13")}) {
        try {
            static_cast<void>(save(name));
            FAIL() << "expected an error";
        } catch (const SaveRefused& error) {
            EXPECT_EQ(error.what(), folder.path().string() +
                                        ": no file can be made in this folder (Permission denied).\n"
                                        "No files were changed.");
        }
    }
    EXPECT_EQ(ops.calls(), 0);
}

TEST_F(SaveTransaction, TakesAnUnreadableFileOfTheSetAlongUnderItsNewName) {
    test::writeFile(folder / "SC12_T04.wav", "no audio");
    test::writeFile(folder / "SC12_T04_T05.wav", "of another base name");
    groupe = scanFolder(folder.path(), test::FakeCodecs(), true, {}).front();
    ASSERT_EQ(groupe.unreadableTracks.size(), 1U);
    edits.setScene("13");
    EXPECT_EQ(items().size(), 3U) << "without a new name there is nothing to do to it";
    const SaveReport report = save("SC13");
    EXPECT_FALSE(report.failed());
    EXPECT_EQ(report.written(), 3U);
    EXPECT_EQ(asText(readFile(folder / "SC13_T04.wav")), "no audio");
    EXPECT_THAT(namesIn(folder.path()),
                ElementsAre("SC12_T04_T05.wav", "SC13_T01.wav", "SC13_T02.wav", "SC13_T03.wav", "SC13_T04.wav"));
}

TEST_F(SaveTransaction, KeepsTheNewNamesWhenMetadataFails) {
    edits.setScene("13");
    ops.failAt({.kinds = {Call::rename}, .nth = 1, .allLater = true, .errorNumber = EACCES});
    const SaveReport report = save("SC13");
    EXPECT_EQ(report.written(), 0U);
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("SC13_T01.wav", "SC13_T02.wav", "SC13_T03.wav"));
    try {
        report.throwIfFailed();
        FAIL() << "expected an error";
    } catch (const MainSaveRenameError& error) {
        EXPECT_EQ(error.reason(), MainSaveRenameError::Reason::metadataAfterRenameFailed);
        EXPECT_THAT(error.what(),
                    HasSubstr("SC13_T02.wav was not saved: Permission denied. The file was not changed."));
    }
}

TEST_F(SaveTransaction, DoesNotSpeakOfARenameThatChangedOnlyTheCase) {
    edits.setScene("13");
    ops.failAt({.kinds = {Call::rename}, .nth = 1});
    const SaveReport report = save("sc12");
    EXPECT_EQ(report.results[0].newPath, folder / "SC12_T01.wav");
    try {
        report.throwIfFailed();
        FAIL() << "expected an error";
    } catch (const Error& error) {
        EXPECT_STREQ(error.what(), "SC12_T01.wav was not saved: Input/output error. The file was not changed.");
    }
}

TEST_F(SaveTransaction, TellsMetadataThatWasSavedFromMarkersThatWereNot) {
    std::vector<SaveItem> all = items();
    all[0].valeurs = MetadataValues{};
    all[0].valeurs->scene = "13";
    all[0].cues = {{{}, 5, "x"}};
    all.resize(1);
    ops.failAt({.kinds = {Call::sync}, .nth = 2});
    const SaveReport failed = runSave(ops, all, {});
    EXPECT_EQ(failed.results[0].error,
              "The markers of SC12_T01.wav were not saved: Input/output error. Its metadata was.");
    EXPECT_TRUE(failed.results[0].written);
    all[0].cues = {{{}, 5, "x"}};
    EXPECT_FALSE(runSave(ops, all, {}).failed());
    EXPECT_EQ(lireCues(folder / "SC12_T01.wav").size(), 1U);
}

TEST_F(SaveTransaction, CanBeCancelledBeforeTheFirstChangeAndBetweenFiles) {
    edits.setScene("13");
    const std::vector<Bytes> before = contents();
    CancellationToken cancelled;
    cancelled.cancel();
    EXPECT_THROW(static_cast<void>(save("SC13", {&cancelled, {}})), Cancelled);
    EXPECT_EQ(contents(), before);

    CancellationToken token;
    TaskContext task{&token, [&](const Progress& progress) {
                         if (progress.currentName.starts_with("SC13_T02")) token.cancel();
                     }};
    const SaveReport report = save("SC13", task);
    EXPECT_TRUE(report.cancelled);
    EXPECT_EQ(report.written(), 1U);
    EXPECT_EQ(report.results[2].error, "SC13_T03.wav was not saved: cancelled. The file was not changed.");
    EXPECT_EQ(readFile(folder / "SC13_T02.wav"), before[1]);
    EXPECT_EQ(readFile(folder / "SC13_T03.wav"), before[2]);
    EXPECT_EQ(namesIn(folder.path()).size(), 3U);
}

TEST_F(SaveTransaction, ReportsProgressOverAllFilesAlsoWhenOneFails) {
    edits.setScene("13");
    ops.failAt({.kinds = {Call::create}, .nth = 1});
    std::vector<std::uint64_t> done;
    std::uint64_t all = 0;
    TaskContext task;
    task.report = [&](const Progress& progress) {
        done.push_back(progress.doneBytes);
        all = progress.allBytes;
    };
    EXPECT_EQ(save({}, task).written(), 2U);
    EXPECT_TRUE(std::is_sorted(done.begin(), done.end()));
    EXPECT_EQ(all, groupe.fichiers[0].taille + groupe.fichiers[1].taille + groupe.fichiers[2].taille);
    EXPECT_GE(done.front(), groupe.fichiers[0].taille);
    EXPECT_EQ(done.back(), all);
}

TEST_F(SaveTransaction, SyncsTheFolderOnceAndTellsWhenItCannot) {
    edits.setScene("13");
    EXPECT_EQ(save().written(), 3U);
    EXPECT_EQ(ops.calls(Call::syncFolder), 1);
    edits.setScene("14");
    ops.failAt({.kinds = {Call::syncFolder}, .nth = 1});
    const SaveReport report = save();
    EXPECT_EQ(report.written(), 3U);
    for (const SaveResult& result : report.results)
        EXPECT_THAT(result.error, HasSubstr("was saved, but"));
}

}  // namespace
}  // namespace dravik
