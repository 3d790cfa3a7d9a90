#include "base/folder_recovery.h"
#include "base/paths.h"
#include "base/rename_journal.h"
#include "base/temp_name.h"
#include "editing/rename_transaction.h"
#include "platform/native_file_ops.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using test::Call;
using test::FaultyFileOps;
using test::namesIn;
using test::TempFolder;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Names = std::vector<std::pair<std::string, std::string>>;  // old -> new, without extension

/// A folder of files whose content is the name they had at first.
class Renaming : public testing::Test {
  protected:
    Renaming() { ops.syncing = false; }
    void have(const std::vector<std::string>& names) {
        for (const std::string& name : names)
            test::writeFile(folder / name, name);
    }
    std::vector<MainSaveRenamePlanEntry> planOf(const Names& names) {
        std::vector<RenameRequest> requests;
        for (const auto& [from, to] : names) {
            InfoFichier info;
            info.url = folder / (from + ".wav");
            info.nom = from;
            requests.push_back({info, to});
        }
        return planRenames(requests);
    }
    auto rename(const Names& names) { return runRenames(ops, planOf(names)); }
    /// "name=content", hidden files without content.
    std::vector<std::string> picture(const std::filesystem::path& where = {}) {
        std::vector<std::string> lines;
        for (const std::string& name : namesIn(where.empty() ? folder.path() : where)) {
            const std::filesystem::path path = (where.empty() ? folder.path() : where) / name;
            if (std::filesystem::is_directory(path)) continue;
            lines.push_back(name.starts_with('.') ? name.substr(0, name.find('_', 9))
                                                  : name + "=" + std::string(asText(test::readFile(path))));
        }
        return lines;
    }
    /// A folder as a process left it that was killed: no lock is held.
    void leaveJournal(JournalPhase phase, const std::vector<JournalEntry>& entries) {
        test::writeFile(folder / journalName(freshToken(), phase), journalText(entries));
    }
    Recovery recover() { return recoverFolder(ops, folder.path()); }

    TempFolder folder;
    FaultyFileOps ops;
};

class RenameTransaction : public Renaming {};
class FolderRecovery : public Renaming {};

TEST_F(RenameTransaction, MovesEveryFileAlsoIntoEachOthersNames) {
    have({"a.wav", "b.wav", "c.wav", "d.wav"});
    const auto moved = rename({{"a", "b"}, {"b", "a"}, {"c", "D2"}, {"d", "c"}});
    EXPECT_THAT(picture(), ElementsAre("D2.wav=c.wav", "a.wav=b.wav", "b.wav=a.wav", "c.wav=d.wav"));
    EXPECT_EQ(moved.at(folder / "a.wav"), folder / "b.wav");
    EXPECT_EQ(moved.size(), 4U);
}

TEST_F(RenameTransaction, DoesNotMoveAFileForItsCaseAlone) {
    have({"Take.wav", "b.wav"});
    const auto moved = rename({{"Take", "take"}});
    EXPECT_EQ(moved.at(folder / "Take.wav"), folder / "Take.wav");
    EXPECT_EQ(ops.calls(), 0) << "no journal either";
    EXPECT_THAT(picture(), ElementsAre("Take.wav=Take.wav", "b.wav=b.wav"));
}

TEST_F(RenameTransaction, StandsAnyNameThatAFileCanHave) {
    const Names names = {
        {"line\nbreak %41", "tab\t100%"}, {"\xFF\xFE", "caf\xC3\xA9"}, {std::string(240, 'l'), std::string(251, 'm')}};
    for (const auto& [from, to] : names)
        have({from + ".wav"});
    rename(names);
    for (const auto& [from, to] : names)
        EXPECT_EQ(test::readFile(folder / (to + ".wav")), toBytes(from + ".wav"));
    EXPECT_EQ(namesIn(folder.path()).size(), 3U);
}

TEST_F(RenameTransaction, MovesTheLinkAndNotWhatItLeadsTo) {
    have({"a.wav"});
    std::filesystem::create_symlink("a.wav", folder / "link.wav");
    rename({{"link", "other"}});
    EXPECT_EQ(std::filesystem::read_symlink(folder / "other.wav"), "a.wav");
    EXPECT_TRUE(pathExists(folder / "a.wav"));
}

TEST_F(RenameTransaction, TakesFoldersTogetherHoweverTheyAreNamed) {
    for (const char* name : {"x", "y"})
        std::filesystem::create_directory(folder / name);
    have({"x/a.wav", "x/b.wav", "y/a.wav"});
    std::filesystem::create_directory_symlink("x", folder / "alias");
    rename({{"x/a", "c"}, {"alias/b", "d"}, {"y/a", "c"}});
    EXPECT_THAT(namesIn(folder / "x"), ElementsAre("c.wav", "d.wav"));
    EXPECT_THAT(namesIn(folder / "y"), ElementsAre("c.wav"));
}

TEST_F(RenameTransaction, PutsEverythingBackWhereverItFails) {
    const Names names = {{"a", "b"}, {"b", "a"}, {"c", "x"}};
    have({"a.wav", "b.wav", "c.wav"});
    const std::vector<std::string> before = picture();
    int succeededAt = 0;
    for (int nth = 1; succeededAt == 0; ++nth) {
        ASSERT_LT(nth, 100);
        const auto plan = planOf(names);
        ops.failAt({.nth = nth, .errorNumber = EACCES});
        try {
            static_cast<void>(runRenames(ops, plan));
            // What fails once all is done can only be the removal of the journal.
            EXPECT_THAT(picture(), testing::IsSupersetOf({"a.wav=b.wav", "b.wav=a.wav", "x.wav=c.wav"}));
            if (ops.failures() == 0) succeededAt = nth;
            ops.failAt({.nth = 0});
            EXPECT_TRUE(recover().empty()) << "an orphaned journal is dropped without a word";
            EXPECT_EQ(picture().size(), 3U);
            rename({{"a", "b"}, {"b", "a"}, {"x", "c"}});
        } catch (const std::exception& error) {
            EXPECT_THAT(userText(error), AllOf(HasSubstr("Permission denied"), testing::Not(HasSubstr(".dravik"))));
            const auto* refused = dynamic_cast<const MainSaveRenameError*>(&error);
            if (refused != nullptr) {
                EXPECT_EQ(refused->reason(), MainSaveRenameError::Reason::journalNotWritten);
                EXPECT_THAT(userText(error), HasSubstr(folder.path().string()));
            }
        }
        EXPECT_EQ(picture(), before) << "the call number " << nth << " failed";
    }
    EXPECT_GT(succeededAt, 15);
}

TEST_F(RenameTransaction, KeepsEveryFileWhenTheWayBackFailsAsWell) {
    const Names names = {{"a", "b"}, {"b", "a"}, {"c", "x"}};
    have({"a.wav", "b.wav", "c.wav"});
    const std::vector<std::string> before = picture();
    int notRestored = 0;
    for (int first = 1; first < 25; ++first) {
        for (int second = first + 1; second < first + 15; ++second) {
            SCOPED_TRACE(testing::Message() << "calls " << first << " and " << second << " failed");
            const auto plan = planOf(names);
            ops.failAt({.nth = first, .andNth = second});
            bool saidToBeRestored = false;
            try {
                static_cast<void>(runRenames(ops, plan));
            } catch (const MainSaveRenameError& error) {
                saidToBeRestored = error.nothingChanged();
                notRestored += saidToBeRestored ? 0 : 1;
            } catch (const std::filesystem::filesystem_error&) {
                saidToBeRestored = true;
            }
            ops.failAt({.nth = 0});
            static_cast<void>(recover());
            if (saidToBeRestored) {
                ASSERT_EQ(picture(), before);
            }
            // Each file is there once, under whatever name; then everything goes where it was.
            std::map<std::string, std::filesystem::path> whereIs;
            for (const std::string& name : namesIn(folder.path())) {
                if (name.starts_with(".dravik_journal_")) continue;
                ASSERT_TRUE(whereIs.emplace(asText(test::readFile(folder / name)), folder / name).second);
            }
            ASSERT_EQ(whereIs.size(), 3U);
            for (const auto& [content, path] : whereIs)
                std::filesystem::rename(path, folder / ("back " + content));
            for (const std::string& name : namesIn(folder.path())) {
                if (name.starts_with('.')) std::filesystem::remove(folder / name);
            }
            for (const auto& [content, path] : whereIs)
                std::filesystem::rename(folder / ("back " + content), folder / content);
        }
    }
    EXPECT_GT(notRestored, 5);
}

TEST_F(RenameTransaction, SaysOnceWhereAFileIsThatCouldNotBePutBack) {
    have({"a.wav", "b.wav"});
    // Everything is hidden; then the first destination fails, and meanwhile a's name was taken.
    int moves = 0;
    ops.before([&](Call call, int) {
        if (call == Call::renameNoReplace && ++moves == 5) test::writeFile(folder / "a.wav", "another a");
    });
    ops.failAt({.kinds = {Call::renameNoReplace}, .nth = 5});  // journal, a, b, the journal's phase, a
    const auto plan = planOf({{"a", "x"}, {"b", "y"}});
    try {
        static_cast<void>(runRenames(ops, plan));
        FAIL() << "expected an error";
    } catch (const MainSaveRenameError& error) {
        EXPECT_EQ(error.reason(), MainSaveRenameError::Reason::rollbackFailed);
        EXPECT_THAT(error.what(), HasSubstr("Original error: x.wav: Input/output error\n"));
        EXPECT_TRUE(std::string(error.what())
                        .ends_with("Recovery details:\nCould not restore a.wav: original path already exists. Current "
                                   "file remains at " +
                                   plan[0].temp.string() + "."));
    }
    ops.before({});
    // The journal is still there: the next opening of the folder puts the file back once its name is free.
    EXPECT_EQ(recover().failures.size(), 1U);
    std::filesystem::remove(folder / "a.wav");
    EXPECT_THAT(recover().failures, IsEmpty());
    EXPECT_THAT(picture(), ElementsAre("a.wav=a.wav", "b.wav=b.wav"));
}

TEST_F(RenameTransaction, SaysWhereEveryFileIsWhenNothingCanBeMovedAnyMore) {
    have({"a.wav", "b.wav"});
    ops.failAt({.kinds = {Call::renameNoReplace}, .nth = 6, .allLater = true});
    const auto plan = planOf({{"a", "x"}, {"b", "y"}});
    try {
        static_cast<void>(runRenames(ops, plan));
        FAIL() << "expected an error";
    } catch (const MainSaveRenameError& error) {
        const std::string text = error.what();
        EXPECT_THAT(text, HasSubstr("Could not restore b.wav from " + fileNameText(plan[1].temp)));
        EXPECT_THAT(text, HasSubstr(" from x.wav: "));
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 6) << "one line a file:\n" << text;
    }
    ops.failAt({.nth = 0});
    EXPECT_THAT(recover().failures, IsEmpty());
    EXPECT_THAT(picture(), ElementsAre("x.wav=a.wav", "y.wav=b.wav"));
}

TEST_F(RenameTransaction, MovesNothingWhileAnotherProgramSavesOneOfTheFiles) {
    have({"a.wav", "b.wav"});
    const auto other = makeNativeFileOps();
    const FileHandle saving = FileHandle::openForReading(folder / "b.wav");
    ASSERT_EQ(other->tryLock(saving), FileOps::Lock::taken);
    try {
        rename({{"a", "x"}, {"b", "y"}});
        FAIL() << "expected an error";
    } catch (const MainSaveRenameError& error) {
        EXPECT_TRUE(error.nothingChanged());
        EXPECT_STREQ(error.what(), "b.wav is being saved by another program. No files were changed.");
    }
    EXPECT_THAT(picture(), ElementsAre("a.wav=a.wav", "b.wav=b.wav"));
}

TEST_F(RenameTransaction, ReplacesNothingThatOnlyACaseSensitiveVolumeTellsApart) {
    have({"A.wav", "a.wav", "b.wav"});
    if (namesIn(folder.path()).size() < 3) GTEST_SKIP() << "this volume does not";
    EXPECT_THROW(rename({{"A", "c"}, {"b", "a"}}), std::filesystem::filesystem_error);
    EXPECT_THAT(picture(), ElementsAre("A.wav=A.wav", "a.wav=a.wav", "b.wav=b.wav"));
}

TEST(RenameJournal, ReadsBackWhatItWroteAndNothingElse) {
    const std::vector<JournalEntry> entries = {{"a\n%.wav", ".dravik_rename_1.wav", "b.wav"},
                                               {"\xFF", ".dravik_rename_2", "\x01"}};
    const std::string text = journalText(entries);
    EXPECT_EQ(parseJournal(text), entries);
    EXPECT_EQ(parseJournal(journalText({})), std::vector<JournalEntry>());
    for (std::size_t cut = 0; cut < text.size(); ++cut)
        EXPECT_FALSE(parseJournal(text.substr(0, cut))) << cut;
    for (std::size_t at = 0; at < text.size(); ++at) {
        std::string damaged = text;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x20);
        EXPECT_FALSE(parseJournal(damaged)) << at;
    }
    // Whole, but not ours to follow.
    for (const JournalEntry& hostile : std::vector<JournalEntry>{{"../a", ".dravik_rename_1", "b"},
                                                                 {"a", "a", "b"},
                                                                 {"a", ".dravik_rename_/../x", "b"},
                                                                 {"a", ".dravik_rename_1", ".."},
                                                                 {"", ".dravik_rename_1", "b"}}) {
        EXPECT_FALSE(parseJournal(journalText({hostile})));
    }
    const std::string token = freshToken();
    EXPECT_EQ(parseJournalName(journalName(token, JournalPhase::puttingInPlace))->phase, JournalPhase::puttingInPlace);
    for (const std::string& name :
         {".dravik_journal_" + token, ".dravik_journal_" + token + ".4", std::string(".dravik_journal_x.1"),
          "dravik_journal_" + token + ".1", std::string(".dravik_journal_.1")}) {
        EXPECT_FALSE(parseJournalName(name)) << name;
    }
}

TEST_F(FolderRecovery, RollsBackOrFinishesARenameThatWasCut) {
    const std::vector<JournalEntry> swap = {{"a.wav", ".dravik_rename_1.wav", "b.wav"},
                                            {"b.wav", ".dravik_rename_2.wav", "a.wav"},
                                            {"c.wav", ".dravik_rename_3.wav", "x.wav"}};
    const std::vector<std::string> old = {"a.wav=A", "b.wav=B", "c.wav=C"};
    const std::vector<std::string> renamed = {"a.wav=B", "b.wav=A", "x.wav=C"};
    using Files = std::map<std::string, std::string>;
    const std::string t1 = swap[0].temp, t2 = swap[1].temp, t3 = swap[2].temp;
    const struct {
        std::string rule;
        JournalPhase phase;
        Files files;
        std::vector<std::string> expected;
        std::size_t sentences;
    } cases[] = {
        {"before the first move", JournalPhase::takingAway, {{"a.wav", "A"}, {"b.wav", "B"}, {"c.wav", "C"}}, old, 0},
        {"after one", JournalPhase::takingAway, {{t1, "A"}, {"b.wav", "B"}, {"c.wav", "C"}}, old, 1},
        {"after two", JournalPhase::takingAway, {{t1, "A"}, {t2, "B"}, {"c.wav", "C"}}, old, 2},
        {"all hidden, not yet told so", JournalPhase::takingAway, {{t1, "A"}, {t2, "B"}, {t3, "C"}}, renamed, 3},
        {"all hidden", JournalPhase::puttingInPlace, {{t1, "A"}, {t2, "B"}, {t3, "C"}}, renamed, 3},
        {"one in place", JournalPhase::puttingInPlace, {{"b.wav", "A"}, {t2, "B"}, {t3, "C"}}, renamed, 2},
        {"on the way back, all hidden", JournalPhase::puttingBack, {{t1, "A"}, {t2, "B"}, {t3, "C"}}, old, 3},
        {"on the way back", JournalPhase::puttingBack, {{t1, "A"}, {"b.wav", "B"}, {"c.wav", "C"}}, old, 1},
        {"all in place", JournalPhase::puttingInPlace, {{"b.wav", "A"}, {"a.wav", "B"}, {"x.wav", "C"}}, renamed, 0},
    };
    for (const auto& [rule, phase, files, expected, sentences] : cases) {
        for (const std::string& name : namesIn(folder.path()))
            std::filesystem::remove(folder / name);
        for (const auto& [name, content] : files)
            test::writeFile(folder / name, content);
        leaveJournal(phase, swap);
        const Recovery result = recover();
        EXPECT_EQ(picture(), expected) << rule;
        EXPECT_EQ(result.done.size(), sentences) << rule;
        EXPECT_THAT(result.failures, IsEmpty()) << rule;
    }
}

TEST_F(FolderRecovery, NeverReplacesAFileThatTookTheName) {
    have({".dravik_rename_1.wav", ".dravik_rename_2.wav", "b.wav"});
    leaveJournal(JournalPhase::puttingInPlace,
                 {{"a.wav", ".dravik_rename_1.wav", "b.wav"}, {"b.wav", ".dravik_rename_2.wav", "b.wav"}});
    const Recovery result = recover();
    // The first goes back to its old name; the second has neither, and stays where it is.
    EXPECT_THAT(picture(),
                ElementsAre(".dravik_journal", ".dravik_rename", "a.wav=.dravik_rename_1.wav", "b.wav=b.wav"));
    EXPECT_EQ(result.done.size(), 1U);
    ASSERT_EQ(result.failures.size(), 1U);
    EXPECT_THAT(result.failures.front(),
                HasSubstr("the name is taken. The file is at " + (folder / ".dravik_rename_2.wav").string()));
    std::filesystem::rename(folder / "b.wav", folder / "c.wav");
    EXPECT_THAT(recover().failures, IsEmpty()) << "once the name is free the next opening helps";
    EXPECT_EQ(picture().size(), 3U);
}

TEST_F(FolderRecovery, HelpsTheOthersWhenOneFileCannotBeMoved) {
    have({".dravik_rename_1.wav", ".dravik_rename_2.wav", ".dravik_rename_3.wav", "d.wav"});
    std::vector<JournalEntry> entries;
    for (const std::string number : {"1", "2", "3"})
        entries.push_back({number + ".wav", ".dravik_rename_" + number + ".wav", "x.wav"});
    entries.push_back({"d.wav", ".dravik_rename_4.wav", "y.wav"});
    leaveJournal(JournalPhase::takingAway, entries);
    ops.failAt({.kinds = {Call::renameNoReplace}, .nth = 2});
    const Recovery result = recover();
    EXPECT_EQ(result.done.size(), 2U);
    EXPECT_THAT(result.failures,
                ElementsAre(HasSubstr("2.wav could not be restored after an interrupted rename: Input/output error.")));
    EXPECT_THAT(recover().failures, IsEmpty());
    EXPECT_EQ(picture(), (std::vector<std::string>{"1.wav=.dravik_rename_1.wav", "2.wav=.dravik_rename_2.wav",
                                                   "3.wav=.dravik_rename_3.wav", "d.wav=d.wav"}));
}

TEST_F(FolderRecovery, DropsTheSecondNameOfARenameThatWentByALink) {
    have({".dravik_rename_1.wav"});
    std::filesystem::create_hard_link(folder / ".dravik_rename_1.wav", folder / "a.wav");
    leaveJournal(JournalPhase::takingAway,
                 {{"a.wav", ".dravik_rename_1.wav", "b.wav"}, {"c.wav", ".dravik_rename_2.wav", "d.wav"}});
    EXPECT_THAT(recover().failures, IsEmpty());
    EXPECT_THAT(picture(), ElementsAre("a.wav=.dravik_rename_1.wav"));
}

TEST_F(FolderRecovery, RemovesAbandonedTemporaryFilesAndNothingThatLooksLikeThem) {
    const std::string ours[] = {freshTemporaryName(TempKind::metadata, ""), freshTemporaryName(TempKind::cues, ""),
                                freshTemporaryName(TempKind::output, "x.wav")};
    for (const std::string& name : ours)
        have({name});
    have({".metadata-1.tmp", ".dravik_rename_orphan.wav", ".dravik_journal_x.1", "a.wav"});
    const std::string linked = freshTemporaryName(TempKind::metadata, "");
    std::filesystem::create_symlink("a.wav", folder / linked);
    std::filesystem::create_directory(folder / freshTemporaryName(TempKind::cues, ""));
    const std::size_t before = namesIn(folder.path()).size();
    const Recovery result = recover();
    EXPECT_EQ(namesIn(folder.path()).size(), before - 3);
    EXPECT_THAT(result.done, ElementsAre(HasSubstr("Removed 3 unfinished temporary files")));
    EXPECT_THAT(result.failures, IsEmpty());
    EXPECT_TRUE(pathExists(folder / "a.wav"));
}

TEST_F(FolderRecovery, LeavesAloneWhatALivingProcessHolds) {
    have({"a.wav", "b.wav"});
    const SafeFile writing(ops, folder / "a.wav", TempKind::metadata);
    const auto plan = planOf({{"a", "x"}, {"b", "y"}});
    // Another process opens the folder at every step of a rename.
    const auto other = makeNativeFileOps();
    ops.before([&](Call call, int) {
        if (call != Call::renameNoReplace && call != Call::syncFolder) return;
        EXPECT_TRUE(recoverFolder(*other, folder.path()).empty());
    });
    static_cast<void>(runRenames(ops, plan));
    EXPECT_THAT(picture(), testing::IsSupersetOf({"x.wav=a.wav", "y.wav=b.wav"}));
    EXPECT_EQ(namesIn(folder.path()).size(), 3U) << "and the temporary file in use";
}

TEST_F(FolderRecovery, WhereLocksDoNotExistTellsOfAJournalAndTouchesNothing) {
    have({".dravik_rename_1.wav", freshTemporaryName(TempKind::metadata, "")});
    leaveJournal(JournalPhase::takingAway,
                 {{"a.wav", ".dravik_rename_1.wav", "b.wav"}, {"c.wav", ".dravik_rename_2.wav", "d.wav"}});
    ops.locking = false;
    const std::vector<std::string> before = namesIn(folder.path());
    EXPECT_THAT(recover().failures, ElementsAre(HasSubstr("may be in use")));
    EXPECT_EQ(namesIn(folder.path()), before);
}

TEST_F(FolderRecovery, TellsOfADamagedJournalAndLeavesIt) {
    have({".dravik_rename_1.wav"});
    const std::string name = journalName(freshToken(), JournalPhase::takingAway);
    test::writeFile(folder / name, journalText({{"a.wav", ".dravik_rename_1.wav", "b.wav"}}).substr(0, 60));
    EXPECT_THAT(recover().failures, ElementsAre(HasSubstr("is damaged")));
    EXPECT_EQ(namesIn(folder.path()).size(), 2U);
}

TEST_F(FolderRecovery, TellsOfAHiddenFileThatNoJournalNames) {
    const std::string lost = freshRenameName(".wav");
    const std::string named = freshRenameName(".wav");
    have({lost, named, "a.wav"});
    EXPECT_THAT(recover().failures, testing::UnorderedElementsAre(HasSubstr(lost), HasSubstr(named)));
    const std::string batch = batchRenameName(freshToken(), "take.wav", 0);
    have({batch});
    EXPECT_THAT(recover().failures, testing::Contains(HasSubstr(batch + ": its rename was interrupted and only")));
    std::filesystem::remove(folder / batch);
    leaveJournal(JournalPhase::takingAway, {{"a.wav", named, "b.wav"}, {"c.wav", ".dravik_rename_2.wav", "d.wav"}});
    EXPECT_THAT(recover().failures,
                testing::UnorderedElementsAre(HasSubstr("a.wav could not be restored"),
                                              AllOf(HasSubstr(lost), HasSubstr("nothing tells its old name"))));
    // The hidden files may all be those of a journal that cannot be read.
    test::writeFile(folder / journalName(freshToken(), JournalPhase::takingAway), "damaged");
    EXPECT_THAT(recover().failures,
                testing::UnorderedElementsAre(HasSubstr("a.wav could not be restored"), HasSubstr("is damaged")));
}

TEST_F(FolderRecovery, ChangesNothingWhereThereIsNothingOfOurs) {
    have({"a.wav", ".hidden", "b.txt"});
    EXPECT_TRUE(recover().empty());
    EXPECT_TRUE(recoverFolder(ops, folder / "missing").empty());
    EXPECT_TRUE(recoverFolder(ops, folder / "a.wav").empty());
    EXPECT_EQ(ops.calls(), 0);
}

}  // namespace
}  // namespace dravik
