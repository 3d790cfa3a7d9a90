#include "editing/folder_actions.h"

#include "base/temp_name.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace dravik::test {
namespace {

namespace fs = std::filesystem;

/// A folder that can be removed whatever its content allows.
class DayFolder {
  public:
    ~DayFolder() { unlock(temp_.path()); }
    static void unlock(const fs::path& folder) {
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
            if (!entry.is_symlink()) fs::permissions(entry.path(), fs::perms::owner_all, fs::perm_options::add);
        }
    }
    [[nodiscard]] const fs::path& path() const { return temp_.path(); }
    [[nodiscard]] fs::path operator/(std::string_view name) const { return temp_ / name; }

  private:
    TempFolder temp_;
};

/// A day with a take in it, one in a folder below that may only be read, and a link.
void makeDay(const fs::path& day) {
    fs::create_directories(day / "cards" / "empty");
    writeFile(day / "a.wav", "first take");
    writeFile(day / "cards" / "b.wav", "second take");
    writeFile(day / ".hidden", "");
    fs::create_symlink("a.wav", day / "link.wav");
    fs::permissions(day / "cards", fs::perms::owner_read | fs::perms::owner_exec);
    fs::permissions(day / "a.wav", fs::perms::owner_read);
    fs::last_write_time(day / "a.wav", fs::file_time_type(std::chrono::hours(1000)));
}

TEST(FolderActions, ACopyHasEverythingAndItsOwnName) {
    DayFolder folder;
    FaultyFileOps ops;
    makeDay(folder / "day");
    EXPECT_EQ(duplicateFolder(ops, folder / "day", {}), folder / "day copy");
    const fs::path copy = duplicateFolder(ops, folder / "day", {});
    EXPECT_EQ(copy, folder / "day copy 2");
    EXPECT_EQ(namesIn(copy), namesIn(folder / "day"));
    EXPECT_EQ(readFile(copy / "cards" / "b.wav"), readFile(folder / "day" / "cards" / "b.wav"));
    EXPECT_TRUE(fs::is_directory(copy / "cards" / "empty"));
    EXPECT_EQ(fs::read_symlink(copy / "link.wav"), "a.wav");
    EXPECT_EQ(fs::last_write_time(copy / "a.wav"), fs::last_write_time(folder / "day" / "a.wav"));
    EXPECT_EQ(fs::status(copy / "a.wav").permissions(), fs::perms::owner_read);
    EXPECT_EQ(fs::status(copy / "cards").permissions(), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(namesIn(folder.path()), (std::vector<std::string>{"day", "day copy", "day copy 2"}));
}

TEST(FolderActions, AFailedCopyLeavesNothingWhicheverCallFails) {
    DayFolder folder;
    FaultyFileOps ops;
    makeDay(folder / "day");
    for (int nth = 1;; ++nth) {
        ops.failAt({.nth = nth, .errorNumber = ENOSPC});
        bool failed = false;
        try {
            static_cast<void>(duplicateFolder(ops, folder / "day", {}));
        } catch (const fs::filesystem_error&) {
            failed = true;
        }
        if (ops.failures() == 0) {
            ASSERT_GT(nth, 8);  // the loop has met every call there is
            break;
        }
        // Only the very last call, the sync of the parent, comes after the copy has its name.
        const auto names = namesIn(folder.path());
        if (names.size() > 1) {
            EXPECT_EQ(names, (std::vector<std::string>{"day", "day copy"}));
            EXPECT_EQ(namesIn(folder / "day copy"), namesIn(folder / "day"));
        }
        EXPECT_TRUE(failed) << "call " << nth;
        EXPECT_EQ(readFile(folder / "day" / "a.wav").size(), 10U);
        if (names.size() > 1) {
            DayFolder::unlock(folder / "day copy");
            fs::remove_all(folder / "day copy");
        }
    }
}

TEST(FolderActions, ACancelledCopyLeavesNothing) {
    DayFolder folder;
    FaultyFileOps ops;
    makeDay(folder / "day");
    CancellationToken token;
    std::uint64_t all = 0;
    const ProgressSink report = [&](const Progress& progress) {
        all = progress.allBytes;
        token.cancel();
    };
    EXPECT_THROW(static_cast<void>(duplicateFolder(ops, folder / "day", {&token, report})), Cancelled);
    EXPECT_EQ(all, 21U);
    EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{"day"});
}

TEST(FolderActions, AFileThatChangesWhileItIsCopiedStopsTheCopy) {
    DayFolder folder;
    FaultyFileOps ops;
    makeDay(folder / "day");
    bool changed = false;
    ops.before([&](Call call, int) {
        if (call == Call::attributes && !std::exchange(changed, true)) {
            appendToFile(folder / "day" / "cards" / "b.wav", "more");
            fs::permissions(folder / "day" / "a.wav", fs::perms::owner_write, fs::perm_options::add);
            appendToFile(folder / "day" / "a.wav", "more");
        }
    });
    EXPECT_THROW(static_cast<void>(duplicateFolder(ops, folder / "day", {})), FolderActionError);
    EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{"day"});
}

TEST(FolderActions, CopiesOfDeadRunsAreRemovedAndThoseOfLivingOnesStay) {
    DayFolder folder;
    FaultyFileOps ops;
    const std::string dead = ".dravik-copy-" + freshToken();
    const std::string alive = ".dravik-copy-" + freshToken();
    const std::string foreign = ".dravik-copy-of-a-user";
    for (const std::string& name : {dead, alive, foreign}) {
        fs::create_directories(folder / name / "inner");
        writeFile(folder / name / "inner" / "a.wav", "take");
    }
    const FileHandle held = FileHandle::openForReading(folder / alive);
    ASSERT_EQ(ops.tryLock(held), FileOps::Lock::taken);
    removeAbandonedCopies(ops, folder.path());
    EXPECT_FALSE(fs::exists(folder / dead));
    EXPECT_TRUE(fs::exists(folder / alive / "inner" / "a.wav"));
    EXPECT_TRUE(fs::exists(folder / foreign / "inner" / "a.wav"));
}

TEST(FolderActions, RenamingNeverReplacesAndRefusesImpossibleNames) {
    DayFolder folder;
    FaultyFileOps ops;
    makeDay(folder / "day");
    fs::create_directory(folder / "taken");
    writeFile(folder / "file", "x");
    using Reason = FolderActionError::Reason;
    const std::pair<const char*, Reason> refused[] = {{"taken", Reason::exists},   {"file", Reason::exists},
                                                      {"", Reason::invalidName},   {"a/b", Reason::invalidName},
                                                      {"..", Reason::invalidName}, {".day", Reason::invalidName}};
    for (const auto& [name, reason] : refused) {
        try {
            static_cast<void>(renameFolder(ops, folder / "day", name));
            ADD_FAILURE() << name;
        } catch (const FolderActionError& error) {
            EXPECT_EQ(error.reason(), reason) << name;
        }
    }
    EXPECT_EQ(renameFolder(ops, folder / "day", "day"), folder / "day");
    EXPECT_EQ(renameFolder(ops, folder / "day", "Day 1"), folder / "Day 1");
    EXPECT_EQ(readFile(folder / "Day 1" / "a.wav").size(), 10U);
}

TEST(FolderActions, NewFoldersGetTheFirstFreeName) {
    DayFolder folder;
    FaultyFileOps ops;
    EXPECT_EQ(createFolder(ops, folder.path()), folder / "New Folder");
    writeFile(folder / "New Folder 2", "");
    EXPECT_EQ(createFolder(ops, folder.path()), folder / "New Folder 3");
}

TEST(FolderActions, AFolderHoldsItselfAndWhatIsBelowIt) {
    EXPECT_TRUE(isWithin("/a/day", "/a/day"));
    EXPECT_TRUE(isWithin("/a/Day/x/y.wav", "/a/day"));
    EXPECT_TRUE(isWithin("/a", "/"));
    EXPECT_FALSE(isWithin("/a/day 2", "/a/day"));
    EXPECT_FALSE(isWithin("/a", "/a/day"));
    EXPECT_EQ(movedAlong("/a/day/x/y.wav", "/a/day", "/a/Day 1"), "/a/Day 1/x/y.wav");
    EXPECT_EQ(movedAlong("/a/day", "/a/day", "/b"), "/b");
}

}  // namespace
}  // namespace dravik::test
