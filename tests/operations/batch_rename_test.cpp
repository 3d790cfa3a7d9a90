#include "operations/batch_rename.h"

#include "base/folder_recovery.h"
#include "base/paths.h"
#include "base/temp_name.h"
#include "operations/operation_audio_error.h"
#include "tests/operations/operation_stage.h"
#include "tests/support/child.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

#include <cerrno>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <sys/resource.h>

namespace dravik {
namespace {

using namespace OperationsAudio;
using test::allDone;
using test::Call;
using test::namesIn;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Mode = OperationAudioBatchRenameMode;
using Kind = RenameConflictCause::Kind;
using Names = std::vector<std::pair<std::string, std::string>>;  // old -> new

/// A folder of files whose content is the name they had at first.
class BatchRename : public testing::Test {
  protected:
    BatchRename() { ops.syncing = false; }
    void have(const std::vector<std::string>& names) {
        for (const std::string& name : names)
            test::writeFile(folder / name, name);
    }
    [[nodiscard]] InfoFichier file(const std::string& name, const std::string& scene = {}) const {
        InfoFichier info;
        info.id = Uuid::random();
        info.url = folder / name;
        info.nom = baseNameText(info.url);
        if (!scene.empty()) info.scene = scene;
        return info;
    }
    [[nodiscard]] std::vector<OperationAudioBatchRenameItem> items(const Names& names) const {
        std::vector<OperationAudioBatchRenameItem> result;
        for (const auto& [from, to] : names)
            result.push_back({file(from), to});
        return result;
    }
    RunOutcome run(const Names& names, const TaskContext& task = {}) {
        return runBatchRename(ops, items(names), Mode::renameInPlace, {}, task);
    }
    RunOutcome copy(const Names& names, const std::filesystem::path& to, const TaskContext& task = {}) {
        return runBatchRename(ops, items(names), Mode::copyAndRename, to, task);
    }
    [[nodiscard]] std::vector<std::string> picture(std::filesystem::path where = {}) const {
        if (where.empty()) where = folder.path();
        std::vector<std::string> lines;
        for (const std::string& name : namesIn(where)) {
            if (std::filesystem::is_directory(where / name)) continue;
            lines.push_back(name + "=" + std::string(asText(test::readFile(where / name))));
        }
        return lines;
    }
    static std::vector<std::string> messages(const RunOutcome& outcome) {
        std::vector<std::string> lines;
        for (const OperationAudioResult& result : outcome.results)
            lines.push_back(result.sourceName + ": " + result.message);
        return lines;
    }
    template <typename Run>
    static std::string refusal(Run run) {
        try {
            static_cast<void>(run());
        } catch (const OperationAudioError& error) {
            EXPECT_EQ(error.errorCase(), OperationAudioError::Case::groupeIncompatible);
            return error.what();
        }
        return "done";
    }
    /// "new name", "new name!conflict" a row.
    std::vector<std::string> preview(const std::vector<InfoFichier>& files, BatchRenameChoice choice) {
        FolderNames onDisk;
        std::vector<std::string> lines;
        for (const RenamePreviewRow& row : previewBatchRename(files, choice, onDisk).rows)
            lines.push_back(row.newName + (row.unchanged ? " =" : "") +
                            (row.conflict ? "!" + row.conflict->text() : ""));
        return lines;
    }

    test::TempFolder folder;
    test::FaultyFileOps ops;
};

class BatchRenamePreview : public BatchRename {};
class BatchRenameCopy : public BatchRename {};

TEST_F(BatchRename, ExchangesNamesAndTellsOfEachFile) {
    have({"a.wav", "b.wav", "c.wav", "d.wav", "e.wav", "Case.wav"});
    const RunOutcome outcome = run({{"a.wav", "b.wav"},
                                    {"b.wav", "a.wav"},
                                    {"c.wav", "new.wav"},
                                    {"d.wav", "c.wav"},
                                    {"e.wav", "e.wav"},
                                    {"Case.wav", "case.wav"}});
    EXPECT_TRUE(allDone(outcome));
    EXPECT_THAT(messages(outcome),
                ElementsAre("a.wav: Renamed to b.wav", "b.wav: Renamed to a.wav", "c.wav: Renamed to new.wav",
                            "d.wav: Renamed to c.wav", "e.wav: Unchanged", "Case.wav: Renamed to case.wav"));
    EXPECT_THAT(picture(), ElementsAre("a.wav=b.wav", "b.wav=a.wav", "c.wav=d.wav", "case.wav=Case.wav", "e.wav=e.wav",
                                       "new.wav=c.wav"));
    EXPECT_EQ(outcome.results[0].destinationURL, folder / "b.wav");
}

TEST_F(BatchRename, OfUnchangedFilesTouchesNothing) {
    have({"a.wav"});
    const auto before = test::stateOf(folder.path());
    EXPECT_THAT(messages(run({{"a.wav", "a.wav"}})), ElementsAre("a.wav: Unchanged"));
    EXPECT_EQ(ops.calls(), 0);
    EXPECT_EQ(test::stateOf(folder.path()), before);
}

TEST_F(BatchRename, IsRefusedWholeForTheFirstThingThatIsWrong) {
    have({"a.wav", "b.wav", "c.wav"});
    const struct {
        Names names;
        std::string text;
    } cases[] = {
        {{}, "Select at least one file to rename."},
        {{{"a.wav", "/"}, {"gone.wav", "x.wav"}}, "Source file does not exist: " + (folder / "gone.wav").string()},
        {{{"a.wav", "x.wav"}, {"b.wav", "x.wav"}, {"c.wav", "s/c.wav"}}, "Invalid output name for c.wav"},
        {{{"a.wav", "."}}, "Invalid output name for a.wav"},
        {{{"a.wav", ""}}, "Invalid output name for a.wav"},
        {{{"a.wav", std::string(252, 'n') + ".wav"}}, "Invalid output name for a.wav"},
        {{{"a.wav", "c.wav"}, {"b.wav", "X.wav"}, {"c.wav", "x.wav"}}, "Duplicate output name: x.wav"},
        {{{"a.wav", "b.wav"}, {"b.wav", "b.wav"}}, "Duplicate output name: b.wav"},
        {{{"a.wav", "B.wav"}}, "A file already exists: B.wav"},
        {{{"a.wav", "x.wav"}, {"a.wav", "y.wav"}}, "A file is to be renamed twice: a.wav"},
    };
    const auto before = test::stateOf(folder.path());
    for (const auto& [names, text] : cases)
        EXPECT_EQ(refusal([&, &given = names] { return run(given); }), text);
    EXPECT_EQ(refusal([&] { return copy({{"a.wav", "x.wav"}}, {}); }), "Choose a destination folder.");
    EXPECT_EQ(ops.calls(), 0);
    EXPECT_EQ(test::stateOf(folder.path()), before);
}

TEST_F(BatchRename, ReplacesNoFileThatOnlyACaseSensitiveVolumeTellsApart) {
    have({"A.wav", "a.wav"});
    if (namesIn(folder.path()).size() < 2) GTEST_SKIP() << "this volume does not";
    EXPECT_EQ(refusal([&] { return run({{"A.wav", "a.wav"}}); }), "A file already exists: a.wav");
}

TEST_F(BatchRename, GoesByHiddenNamesThatCarryTheRunAndTheFile) {
    const std::string longName = std::string(250, 'l') + ".wav";
    const std::string token = freshToken();
    have({"a.wav", "b.wav", longName, batchRenameName(token, "a.wav", 0), batchRenameName(token, "a.wav", 1)});
    const auto planned = [&](const std::string& name) {
        const auto moves =
            movesOf(planBatchRename(items({{name, "new.wav"}, {"b.wav", "b.wav"}}), Mode::renameInPlace, {}), token);
        EXPECT_EQ(moves.size(), 1U);
        EXPECT_TRUE(isRenameName(fileNameText(moves[0].temp)));
        EXPECT_FALSE(isTemporaryName(fileNameText(moves[0].temp)));
        return fileNameText(moves[0].temp);
    };
    EXPECT_EQ(planned("a.wav"), ".dravik-renaming-" + token + "-a.wav-2");
    EXPECT_EQ(planned(longName).size(), maxFileNameBytes);
    for (int attempt = 2; attempt < 1000; ++attempt)
        test::writeFile(folder / batchRenameName(token, "a.wav", attempt), "x");
    EXPECT_EQ(refusal([&] { return planned("a.wav"); }), "Unable to create a temporary rename name for a.wav");
}

TEST_F(BatchRename, PutsEverythingBackWhereverItFails) {
    const Names names = {{"a.wav", "b.wav"}, {"b.wav", "a.wav"}, {"c.wav", "x.wav"}, {"d.wav", "d.wav"}};
    have({"a.wav", "b.wav", "c.wav", "d.wav"});
    const std::vector<std::string> before = picture();
    int failedRuns = 0;
    for (int nth = 1;; ++nth) {
        SCOPED_TRACE(nth);
        ASSERT_LT(nth, 100);
        ops.failAt({.nth = nth, .errorNumber = EACCES});
        const RunOutcome outcome = run(names);
        const bool met = ops.failures() > 0;
        ops.failAt({.nth = 0});
        EXPECT_THAT(recoverFolder(ops, folder.path()).failures, IsEmpty());
        ASSERT_EQ(outcome.results.size(), 4U);
        if (allDone(outcome)) {
            EXPECT_EQ(picture()[0], "a.wav=b.wav");
            EXPECT_EQ(picture().size(), 4U);
            if (!met) break;
            ASSERT_TRUE(allDone(run({{"a.wav", "b.wav"}, {"b.wav", "a.wav"}, {"x.wav", "c.wav"}})));
            continue;
        }
        ++failedRuns;
        EXPECT_EQ(picture(), before);
        for (std::size_t at = 0; at < 3; ++at)
            EXPECT_THAT(outcome.results[at].message,
                        testing::AllOf(testing::StartsWith("Not renamed. "), HasSubstr("Permission denied")));
        EXPECT_EQ(outcome.results[3].message, "Unchanged");
    }
    EXPECT_GT(failedRuns, 10);
}

TEST_F(BatchRename, SaysOfEachFileThatCouldNotBePutBackWhereItIs) {
    have({"a.wav", "b.wav"});
    // Everything is hidden; the first destination fails, and meanwhile a's name was taken.
    int moves = 0;
    ops.before([&](Call call, int) {
        if (call == Call::renameNoReplace && ++moves == 5) test::writeFile(folder / "a.wav", "another a");
    });
    ops.failAt({.kinds = {Call::renameNoReplace}, .nth = 5});  // journal, a, b, the journal's phase, a
    const RunOutcome outcome = run({{"a.wav", "x.wav"}, {"b.wav", "y.wav"}});
    ops.before({});
    EXPECT_EQ(outcome.refused, 0U);
    EXPECT_THAT(outcome.results[0].message,
                testing::AllOf(HasSubstr("Could not restore a.wav: original path already exists. Current file remains "
                                         "at " +
                                         (folder / ".dravik-renaming-").string()),
                               HasSubstr("(x.wav: Input/output error)")));
    EXPECT_EQ(outcome.results[1].message, "Not renamed. x.wav: Input/output error");
    std::filesystem::remove(folder / "a.wav");
    EXPECT_THAT(recoverFolder(ops, folder.path()).failures, IsEmpty());
    EXPECT_THAT(picture(), ElementsAre("a.wav=a.wav", "b.wav=b.wav"));
}

TEST_F(BatchRename, IsUndoneByACancelAtAnyMoment) {
    have({"a.wav", "b.wav"});
    const std::vector<std::string> before = picture();
    for (int at = 0;; ++at) {
        ASSERT_LT(at, 10);
        CancellationToken token;
        int reports = 0;
        std::uint64_t all = 0;
        const RunOutcome outcome =
            run({{"a.wav", "b.wav"}, {"b.wav", "a.wav"}}, {&token, [&](const Progress& progress) {
                                                               all = progress.allBytes;
                                                               if (reports++ == at) {
                                                                   token.cancel();
                                                               }
                                                           }});
        EXPECT_EQ(all, 4U);
        if (!outcome.cancelled) {
            EXPECT_TRUE(allDone(outcome));
            break;
        }
        EXPECT_THAT(outcome.results, IsEmpty());
        EXPECT_EQ(picture(), before);
    }
}

TEST_F(BatchRename, WaitsForNobodyWhoSavesAFile) {
    have({"a.wav", "b.wav"});
    const FileHandle saving = FileHandle::openForReading(folder / "b.wav");
    ASSERT_EQ(test::FaultyFileOps().tryLock(saving), FileOps::Lock::taken);
    const RunOutcome outcome = run({{"a.wav", "x.wav"}, {"b.wav", "y.wav"}});
    EXPECT_EQ(outcome.refused, 2U);
    EXPECT_EQ(outcome.results[0].message, "Not renamed. b.wav is being saved by another program.");
    EXPECT_THAT(picture(), ElementsAre("a.wav=a.wav", "b.wav=b.wav"));
}

TEST_F(BatchRename, TakesMoreFilesThanAProcessMayOpen) {
    Names names;
    std::vector<std::string> old;
    for (int i = 0; i < 1500; ++i) {
        old.push_back(std::to_string(i) + ".wav");
        names.emplace_back(old.back(), std::to_string((i + 1) % 1500) + ".wav");
    }
    have(old);
    EXPECT_EQ(test::inChild([&] {
                  const rlimit usual{1024, 1024};
                  return ::setrlimit(RLIMIT_NOFILE, &usual) == 0 && allDone(run(names)) ? 0 : 1;
              }),
              0);
    EXPECT_EQ(asText(test::readFile(folder / "0.wav")), "1499.wav");
    EXPECT_EQ(namesIn(folder.path()).size(), 1500U);
}

TEST_F(BatchRenamePreview, ShowsEveryNameWithItsConflict) {
    have({"a.wav", "b.wav", "c.wav", "d.wav", "e.wav", "taken.wav"});
    const std::vector<InfoFichier> files = {file("a.wav", "same"), file("b.wav", "SAME"), file("c.wav", "taken"),
                                            file("d.wav"), file("e.wav", "a")};
    BatchRenameChoice choice{.pattern = parsePattern("{scene}")};
    EXPECT_THAT(preview(files, choice),
                ElementsAre("same.wav!Duplicate filename: same.wav", "SAME.wav!Duplicate filename: SAME.wav",
                            "taken.wav!A file with this name already exists.", "!Invalid filename: ", "a.wav"));
    choice.keepBoth = true;
    EXPECT_THAT(preview(files, choice),
                ElementsAre("same.wav", "SAME_1.wav", "taken_1.wav", "!Invalid filename: ", "a.wav"));
    choice.keepBoth = false;
    choice.keepBothFor = {files[0].url};
    EXPECT_THAT(preview(files, choice),
                ElementsAre("same_1.wav", "SAME.wav", "taken.wav!A file with this name already exists.",
                            "!Invalid filename: ", "a.wav"));
    choice.pattern = parsePattern("x\\{scene}");
    EXPECT_THAT(preview({files[0]}, choice), ElementsAre("x\\same.wav!Invalid filename: x\\same.wav"));
    RenamePreview two;
    two.rows.resize(3);
    two.rows[1].conflict = RenameConflictCause{Kind::invalidName, ""};
    EXPECT_EQ(two.conflictsText(), "1 filename conflict");
    EXPECT_EQ(toBeRenamedText(2), "2 files will be renamed");
    EXPECT_EQ(selectedText(1), "1 file selected");
}

TEST_F(BatchRenamePreview, OfKeepBothLeavesFilesAloneThatHaveANumberAlready) {
    have({"new.wav", "S.wav", "S_1.wav", "S_3.wav", "other.wav"});
    const std::vector<InfoFichier> files = {file("new.wav", "S"), file("S.wav", "S"), file("S_1.wav", "S"),
                                            file("S_3.wav", "S")};
    const BatchRenameChoice choice{.pattern = parsePattern("{scene}"), .keepBoth = true};
    EXPECT_THAT(preview(files, choice), ElementsAre("S_2.wav", "S.wav =", "S_1.wav =", "S_3.wav ="));
    have({"s_2.WAV"});
    EXPECT_THAT(preview(files, choice), ElementsAre("S_4.wav", "S.wav =", "S_1.wav =", "S_3.wav ="));
    FolderNames onDisk;
    const RenamePreview plan = previewBatchRename(files, choice, onDisk);
    EXPECT_TRUE(allDone(runBatchRename(ops, itemsOf(files, plan), Mode::renameInPlace, {}, {})));
}

TEST_F(BatchRenamePreview, AgreesWithTheRunForCopiesBesideTheirOriginals) {
    have({"a.wav", "b.wav"});
    const std::vector<InfoFichier> files = {file("a.wav", "b"), file("b.wav", "a")};
    BatchRenameChoice choice{
        .pattern = parsePattern("{scene}"), .mode = Mode::copyAndRename, .destination = folder.path()};
    EXPECT_THAT(preview(files, choice), testing::Each(HasSubstr("already exists")));
    EXPECT_EQ(refusal([&] {
                  return copy({{"a.wav", "b.wav"}, {"b.wav", "a.wav"}}, folder.path());
              }),
              "A file already exists: b.wav");
    choice.keepBoth = true;
    EXPECT_THAT(preview(files, choice), ElementsAre("b_1.wav", "a_1.wav"));
    choice.destination.clear();
    EXPECT_THAT(preview(files, choice), ElementsAre("b.wav", "a.wav")) << "not chosen yet";
}

TEST_F(BatchRenameCopy, MakesTheFolderAndWholeCopiesAndLeavesTheSources) {
    have({"a.wav", "b.wav"});
    std::filesystem::last_write_time(folder / "a.wav", std::filesystem::file_time_type(std::chrono::hours(1000)));
    const auto before = test::stateOf(folder.path());
    const test::TempFolder other;
    const RunOutcome outcome = copy({{"a.wav", "b.wav"}, {"b.wav", "a.wav"}}, other / "deep/er/");
    EXPECT_THAT(messages(outcome), ElementsAre("a.wav: Created b.wav", "b.wav: Created a.wav"));
    EXPECT_THAT(picture(other / "deep/er"), ElementsAre("a.wav=b.wav", "b.wav=a.wav"));
    EXPECT_EQ(std::filesystem::last_write_time(other / "deep/er/b.wav"),
              std::filesystem::last_write_time(folder / "a.wav"));
    EXPECT_EQ(test::stateOf(folder.path()), before);
}

TEST_F(BatchRenameCopy, ThatFailsLeavesWholeCopiesOnlyWhicheverCallFails) {
    have({"a.wav", "b.wav"});
    for (int nth = 1;; ++nth) {
        ASSERT_LT(nth, 60);
        SCOPED_TRACE(nth);
        const test::TempFolder other;
        ops.failAt({.kinds = {Call::create, Call::write, Call::copy, Call::attributes, Call::sync, Call::rename,
                              Call::renameNoReplace, Call::syncFolder},
                    .nth = nth,
                    .errorNumber = ENOSPC});
        try {
            const RunOutcome outcome = copy({{"a.wav", "x.wav"}, {"b.wav", "y.wav"}}, other / "out");
            EXPECT_EQ(outcome.results.size(), 2U) << "one that fails does not stop the next";
            EXPECT_EQ(allDone(outcome), ops.failures() == 0);
        } catch (const std::filesystem::filesystem_error&) {
            EXPECT_EQ(ops.calls(Call::create), 0);
        }
        for (const std::string& line : picture(other / "out"))
            EXPECT_TRUE(line == "x.wav=a.wav" || line == "y.wav=b.wav") << line;
        if (ops.failures() == 0) break;
    }
}

TEST_F(BatchRenameCopy, LooksForRoomBeforeItMakesAnything) {
    have({"a.wav", "b.wav"});
    ops.free = 9;
    EXPECT_THROW(static_cast<void>(copy({{"a.wav", "x.wav"}, {"b.wav", "y.wav"}}, folder / "out")),
                 std::filesystem::filesystem_error);
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("a.wav", "b.wav"));
}

TEST_F(BatchRename, IsKnownToBeRefusedBeforeItIsTried) {
    have({"a.wav", "b.wav"});
    const auto problems = [&](const char* pattern, Mode mode, std::vector<InfoFichier> files) {
        for (InfoFichier& one : files)
            one.taille = 5;
        BatchRenameChoice choice;
        choice.pattern = parsePattern(pattern);
        choice.mode = mode;
        if (mode == Mode::copyAndRename) choice.destination = folder / "out" / "deep";
        FolderNames onDisk;
        return renameProblems(ops, files, choice, previewBatchRename(files, choice, onDisk));
    };
    const std::vector<InfoFichier> both = {file("a.wav"), file("b.wav")};
    EXPECT_THAT(problems("new_{originalName}", Mode::renameInPlace, both), IsEmpty());
    EXPECT_THAT(problems("new_{originalName}", Mode::renameInPlace, {file("gone.wav")}),
                ElementsAre(HasSubstr("Source file does not exist: ")));
    ops.free = 9;
    EXPECT_THAT(problems("{originalName}", Mode::copyAndRename, both),
                ElementsAre(HasSubstr("out/deep”: 10 B are needed.")));
    EXPECT_THAT(problems("{originalName}", Mode::copyAndRename, {both[0]}), IsEmpty());
    EXPECT_THAT(problems("same{text:}", Mode::copyAndRename, both), IsEmpty()) << "what conflicts needs no room";
    EXPECT_THAT(problems("new_{originalName}", Mode::renameInPlace, both), IsEmpty()) << "nor does a rename";
    ops.readOnlyFolders = true;
    EXPECT_THAT(problems("new_{originalName}", Mode::renameInPlace, both),
                ElementsAre(HasSubstr(folder.path().native())));
    EXPECT_THAT(problems("new_{originalName}", Mode::copyAndRename, both),
                ElementsAre(HasSubstr(folder.path().native())));
    EXPECT_THAT(problems("{originalName}", Mode::renameInPlace, both), IsEmpty()) << "nothing is renamed";
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("a.wav", "b.wav"));
}

TEST_F(BatchRenameCopy, KeepsWhatACancelFindsDone) {
    have({"a.wav", "b.wav"});
    CancellationToken token;
    const RunOutcome outcome =
        copy({{"a.wav", "x.wav"}, {"b.wav", "y.wav"}}, folder / "out", {&token, [&](const Progress& progress) {
                                                                            if (progress.doneBytes >= 5) token.cancel();
                                                                        }});
    EXPECT_TRUE(outcome.cancelled);
    for (const std::string& name : namesIn(folder / "out"))
        EXPECT_EQ(name, "x.wav");
}

TEST_F(BatchRenameCopy, OfAFileThatChangesMeanwhileIsRemoved) {
    have({"a.wav"});
    ops.before([&](Call call, int) {
        if (call == Call::sync) test::appendToFile(folder / "a.wav", "more");
    });
    EXPECT_THAT(messages(copy({{"a.wav", "x.wav"}}, folder / "out")),
                ElementsAre("a.wav: a.wav: it was changed while it was copied"));
    EXPECT_THAT(namesIn(folder / "out"), IsEmpty());
}

}  // namespace
}  // namespace dravik
