#include "editing/save_undo.h"

#include "base/folder_recovery.h"
#include "editing/row_edits.h"
#include "model/folder_scan.h"
#include "tests/support/fake_codecs.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <fstream>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using test::namesIn;
using test::readFile;
using testing::ElementsAre;
using testing::HasSubstr;

/// A mono set, and a poly file with markers and without iXML.
class SaveUndo : public testing::Test {
  protected:
    SaveUndo() {
        ops.syncing = false;
        test::recorderFile({.tracks = {{1, 1, "Boom"}}}, {}, 5000, 1).write(folder / "A_T01.wav");
        test::recorderFile({.tracks = {{2, 1, "Lav"}}}, {}, 5000, 2).write(folder / "A_T02.wav");
        test::WavBuilder()
            .fmt({.channels = 2})
            .audio(4000)
            .cues({{1, 100, "one"}, {2, 200, {}}})
            .chunk("xtra", "kept")
            .write(folder / "B.wav");
    }
    /// Edits every field of every take, and its name; saves.
    SaveSnapshot save() {
        std::vector<SaveItem> items;
        for (const GroupeFichiers& original : scanFolder(folder.path(), test::FakeCodecs(), true, {})) {
            RowState row{original, std::vector<CueMarker>{{Uuid::random(), 50, "new"}}};
            for (const RowField field : {RowField::project, RowField::scene, RowField::prise, RowField::tape}) {
                EXPECT_TRUE(setText(row.groupe, field, "new <value>"));
            }
            setFlag(row.groupe, RowField::circled, true);
            setTrackName(row.groupe, 1, "Renamed");
            EXPECT_TRUE(setText(row.groupe, RowField::name, "New " + original.nom));
            for (SaveItem& item : planSave(row, original))
                items.push_back(std::move(item));
        }
        SaveSnapshot snapshot = takeSnapshot(ops, items);
        const SaveReport report = runSave(ops, items, {});
        EXPECT_FALSE(report.failed());
        noteSaved(ops, snapshot, report);
        return snapshot;
    }
    std::map<std::string, Bytes> contents() {
        std::map<std::string, Bytes> all;
        for (const std::string& name : namesIn(folder.path()))
            all[name] = readFile(folder / name);
        return all;
    }
    test::TempFolder folder;
    test::FaultyFileOps ops;
};

TEST_F(SaveUndo, PutsEveryByteAndEveryNameBack) {
    const auto before = contents();
    const SaveSnapshot snapshot = save();
    ASSERT_THAT(namesIn(folder.path()), ElementsAre("New A_T01.wav", "New A_T02.wav", "New B.wav"));
    const SaveReport report = undoSave(ops, snapshot, {});
    EXPECT_FALSE(report.failed());
    EXPECT_EQ(report.moved.at(folder / "New B.wav"), folder / "B.wav");
    EXPECT_EQ(contents(), before);
}

TEST_F(SaveUndo, RefusesWhenAFileHasChangedSince) {
    const SaveSnapshot snapshot = save();
    const auto refusal = [&] {
        const auto before = contents();
        try {
            static_cast<void>(undoSave(ops, snapshot, {}));
            ADD_FAILURE() << "it was undone";
            return std::string();
        } catch (const Error& error) {
            EXPECT_EQ(contents(), before);
            return std::string(error.what());
        }
    };
    test::recorderFile().write(folder / "A_T02.wav");
    EXPECT_THAT(refusal(), HasSubstr("already exists")) << "an old name that is taken";
    std::filesystem::remove(folder / "A_T02.wav");
    std::ofstream(folder / "New A_T02.wav", std::ios::app) << "more";
    EXPECT_THAT(refusal(), HasSubstr("New A_T02.wav has been changed since it was saved. Nothing was undone."));
    std::filesystem::remove(folder / "New A_T02.wav");
    EXPECT_THAT(refusal(), HasSubstr("is not there any more"));
}

TEST_F(SaveUndo, AFailureLeavesEachFileAsSavedOrAsBefore) {
    const auto before = contents();
    for (int nth = 1;; ++nth) {
        const SaveSnapshot snapshot = save();
        const auto saved = contents();
        ops.failAt({.nth = nth});
        bool failed = false;
        try {
            failed = undoSave(ops, snapshot, {}).failed();
        } catch (const std::exception&) {
            failed = true;
        }
        const bool met = ops.failures() > 0;
        ops.failAt({.nth = 1'000'000});
        static_cast<void>(recoverFolder(ops, folder.path()));  // what a call that failed may leave hidden
        for (const auto& [name, bytes] : contents()) {
            const bool isSaved = saved.contains(name) && saved.at(name) == bytes;
            const std::string old = name.starts_with("New ") ? name.substr(4) : name;
            EXPECT_TRUE(isSaved || before.at(old) == bytes) << name << " at call " << nth;
        }
        if (!failed) {
            EXPECT_EQ(contents(), before) << "nothing was said of call " << nth;
        }
        // As at first, for the next round.
        for (const std::string& name : namesIn(folder.path()))
            std::filesystem::remove(folder / name);
        for (const auto& [name, bytes] : before)
            test::writeFile(folder / name, bytes);
        if (!met) break;
    }
}

}  // namespace
}  // namespace dravik
