#include "base/safe_file.h"

#include "base/byte_source.h"
#include "platform/native_file_ops.h"
#include "platform/posix/posix_file_ops.h"
#include "tests/support/child.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace dravik {
namespace {

using test::Call;
using test::FaultyFileOps;
using test::namesIn;
using test::readFile;
using test::TempFolder;
using test::writeFile;
using testing::ElementsAre;
using testing::IsEmpty;

FilePlan planOf(std::string_view text) {
    FilePlan plan;
    plan.add(toBytes(text));
    return plan;
}

std::error_code codeOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const std::filesystem::filesystem_error& error) {
        return error.code();
    }
    return {};
}

TEST(FilePlan, JoinsNeighboursAndKnowsWhatKeepsItsPlace) {
    FilePlan plan;
    plan.add(SourceRange{0, 10});
    plan.add(SourceRange{10, 90});  // neighbours
    plan.add(Bytes(4));
    plan.add(Bytes(6));              // neighbours
    plan.add(Bytes());               // nothing
    plan.add(SourceRange{110, 50});  // where it was
    plan.add(SourceRange{500, 0});   // nothing
    plan.add(SourceRange{170, 30});  // ten bytes nearer
    EXPECT_EQ(plan.pieces().size(), 4U);
    EXPECT_EQ(plan.size(), 190U);
    EXPECT_EQ(plan.unmovedBytes(), 150U);
}

TEST(SafeFile, ANewFileMayBeReadByWhoeverReadsItsOwnersFilesAndAReplacementBeforeItIsWholeByNobodyElse) {
    const TempFolder folder;
    const auto ops = makeNativeFileOps();
    const mode_t before = ::umask(027);
    SafeFile made(*ops, folder / "new.wav", TempKind::exportWav);
    const SafeFile replacing(*ops, folder / "old.wav", TempKind::metadata);
    ::umask(before);
    const auto modeOf = [](const FileHandle& file) {
        struct stat status {};
        EXPECT_EQ(::fstat(file.descriptor(), &status), 0);
        return status.st_mode & 0777U;
    };
    EXPECT_EQ(modeOf(made.file()), 0640U);
    EXPECT_EQ(modeOf(replacing.file()), 0600U);
}

TEST(SafeFile, ShowsNothingBeforeCommitAndAllOfItBehind) {
    const TempFolder folder;
    const auto ops = makeNativeFileOps();
    writeFile(folder / "a.wav", "old");
    {
        SafeFile file(*ops, folder / "a.wav", TempKind::metadata);
        file.write(planOf("new content"), FileHandle(), {});
        EXPECT_EQ(readFile(folder / "a.wav"), toBytes("old"));
        EXPECT_EQ(namesIn(folder.path()).size(), 2U);
        EXPECT_EQ(file.commit(SafeFile::Existing::replace).folder, folder.path());
    }
    EXPECT_EQ(readFile(folder / "a.wav"), toBytes("new content"));
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("a.wav"));
}

TEST(SafeFile, LeavesNothingWhenItIsDropped) {
    const TempFolder folder;
    const auto ops = makeNativeFileOps();
    { SafeFile(*ops, folder / "a.wav", TempKind::output).write(planOf("x"), FileHandle(), {}); }
    EXPECT_THAT(namesIn(folder.path()), IsEmpty());
}

TEST(SafeFile, RefusesToReplaceWhenToldSo) {
    const TempFolder folder;
    PosixFileOps portable;
    const auto native = makeNativeFileOps();
    for (FileOps* ops : {static_cast<FileOps*>(&portable), native.get()}) {
        writeFile(folder / "a.wav", "old");
        EXPECT_EQ(codeOf([&] {
                      SafeFile file(*ops, folder / "a.wav", TempKind::output);
                      file.write(planOf("new"), FileHandle(), {});
                      static_cast<void>(file.commit(SafeFile::Existing::refuse));
                  }),
                  std::errc::file_exists);
        EXPECT_EQ(readFile(folder / "a.wav"), toBytes("old"));
        EXPECT_THAT(namesIn(folder.path()), ElementsAre("a.wav"));
    }
}

TEST(SafeFile, TakesRangesOfTheSourceWhereThePlanPutsThem) {
    const TempFolder folder;
    const Bytes all = test::audioBytes(20'000'000);  // more than two copy steps
    writeFile(folder / "a.wav", all);
    const FileHandle source = FileHandle::openForReading(folder / "a.wav");
    FilePlan plan;
    plan.add(SourceRange{0, 1000});
    plan.add(toBytes("inserted"));
    plan.add(SourceRange{1000, 18'000'000});
    plan.add(SourceRange{500, 3});
    Bytes expected(all.begin(), all.begin() + 1000);
    append(expected, "inserted");
    append(expected, ByteSpan(all).subspan(1000, 18'000'000));
    append(expected, ByteSpan(all).subspan(500, 3));

    PosixFileOps portable;
    FaultyFileOps sharing;
    sharing.sharing = true;
    const auto native = makeNativeFileOps();
    for (FileOps* ops : {static_cast<FileOps*>(&portable), static_cast<FileOps*>(&sharing), native.get()}) {
        SafeFile file(*ops, folder / "copy", TempKind::output);
        std::vector<std::uint64_t> reports;
        TaskContext task;
        task.report = [&](const Progress& progress) { reports.push_back(progress.doneBytes); };
        file.write(plan, source, task);
        static_cast<void>(file.commit(SafeFile::Existing::replace));
        EXPECT_EQ(readFile(folder / "copy"), expected);
        EXPECT_EQ(reports.back(), plan.size());
        for (std::size_t i = 1; i < reports.size(); ++i)
            EXPECT_LE(reports[i] - reports[i - 1], 8U * 1024U * 1024U);
    }
}

TEST(SafeFile, CopiesNothingThatKeepsItsPlaceWhereBlocksAreShared) {
    const TempFolder folder;
    const Bytes all = test::audioBytes(300'000);
    writeFile(folder / "a.wav", all);
    const FileHandle source = FileHandle::openForReading(folder / "a.wav");
    FilePlan plan;
    plan.add(toBytes("12345678"));
    plan.add(SourceRange{8, 250'000});
    plan.add(toBytes("the end"));  // the new file is shorter than the shared copy
    FaultyFileOps ops;
    ops.sharing = true;
    ops.free = 1000;  // sharing needs no room
    SafeFile file(ops, folder / "a.wav", TempKind::metadata);
    file.write(plan, source, {});
    static_cast<void>(file.commit(SafeFile::Existing::replace));
    EXPECT_EQ(ops.calls(Call::copy), 0);
    Bytes expected = toBytes("12345678");
    append(expected, ByteSpan(all).subspan(8, 250'000));
    append(expected, "the end");
    EXPECT_EQ(readFile(folder / "a.wav"), expected);
}

/// Copies nothing, and adds up what a real copy would have left to write out.
class WritebackMeter final : public PosixFileOps {
  public:
    std::uint64_t copyRange(const FileHandle&, std::uint64_t, const FileHandle&, const std::filesystem::path&,
                            std::uint64_t, std::uint64_t length) override {
        return length;
    }
    void startWriteback(const FileHandle&, std::uint64_t, std::uint64_t length) noexcept override {
        underWay += length;
        most = std::max(most, underWay);
    }
    void waitForWriteback(const FileHandle&, std::uint64_t, std::uint64_t length) noexcept override {
        underWay -= length;
    }
    std::optional<std::uint64_t> freeBytes(const std::filesystem::path&) noexcept override { return std::nullopt; }
    std::uint64_t underWay = 0, most = 0;
};

TEST(SafeFile, LeavesLittleToTheFinalSyncWhichNobodyCanCancel) {
    const TempFolder folder;
    writeFile(folder / "a.wav", "x");
    std::filesystem::resize_file(folder / "a.wav", 1U << 30U);
    FilePlan plan;
    plan.add(SourceRange{0, 1U << 30U});
    WritebackMeter ops;
    SafeFile(ops, folder / "copy", TempKind::output).write(plan, FileHandle::openForReading(folder / "a.wav"), {});
    EXPECT_GT(ops.most, 0U);
    EXPECT_LE(ops.most, 72U * 1024U * 1024U);
    EXPECT_LE(ops.underWay, 64U * 1024U * 1024U);
}

TEST(SafeFile, FailsWhenTheSourceEndsBeforeAPlannedRangeDoes) {
    const TempFolder folder;
    writeFile(folder / "a.wav", test::audioBytes(1000));
    const FileHandle source = FileHandle::openForReading(folder / "a.wav");
    FilePlan plan;
    plan.add(SourceRange{0, 1001});
    PosixFileOps portable;
    const auto native = makeNativeFileOps();
    for (FileOps* ops : {static_cast<FileOps*>(&portable), native.get()}) {
        EXPECT_EQ(codeOf([&] { SafeFile(*ops, folder / "a.wav", TempKind::metadata).write(plan, source, {}); }),
                  std::errc::io_error);
    }
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("a.wav"));
}

TEST(SafeFile, IsLockedForAsLongAsItIsInUse) {
    const TempFolder folder;
    const auto ops = makeNativeFileOps();
    SafeFile file(*ops, folder / "a.wav", TempKind::output);
    const std::filesystem::path temporary = folder / namesIn(folder.path()).front();
    EXPECT_EQ(ops->tryLock(FileHandle::openForReading(temporary)), FileOps::Lock::heldByAnother);
    static_cast<void>(file.commit(SafeFile::Existing::refuse));
    EXPECT_EQ(ops->tryLock(FileHandle::openForReading(folder / "a.wav")), FileOps::Lock::heldByAnother);
}

TEST(SafeFile, TriesAnotherNameWhenItsFileIsTakenForAnAbandonedOne) {
    const TempFolder folder;
    FaultyFileOps ops;
    ops.failAt({.kinds = {Call::lock}, .nth = 1});
    SafeFile file(ops, folder / "a.wav", TempKind::output);
    EXPECT_EQ(ops.calls(Call::create), 2);
    EXPECT_EQ(namesIn(folder.path()).size(), 1U) << "the file it gave up";

    ops.failAt({.kinds = {Call::lock}, .allLater = true});
    EXPECT_THROW(SafeFile(ops, folder / "b.wav", TempKind::output), std::filesystem::filesystem_error);
    EXPECT_EQ(namesIn(folder.path()).size(), 1U) << "the files it gave up";
}

TEST(SafeFile, SyncsBeforeTheRenameAndOnce) {
    const TempFolder folder;
    FaultyFileOps ops;
    std::vector<Call> order;
    ops.before([&](Call call, int) { order.push_back(call); });
    SafeFile file(ops, folder / "a.wav", TempKind::metadata);
    file.write(planOf("x"), FileHandle(), {});
    file.sync();
    static_cast<void>(file.commit(SafeFile::Existing::replace));
    EXPECT_THAT(order, ElementsAre(Call::create, Call::lock, Call::write, Call::sync, Call::rename));
}

TEST(SafeFile, RefusesWhatTheVolumeHasNoRoomFor) {
    const TempFolder folder;
    FaultyFileOps ops;
    ops.free = 9;
    SafeFile file(ops, folder / "a.wav", TempKind::metadata);
    EXPECT_EQ(codeOf([&] { file.write(planOf("ten bytes."), FileHandle(), {}); }), std::errc::no_space_on_device);
    EXPECT_EQ(ops.calls(Call::write), 0);
}

TEST(SafeFile, CountsTheRoomOfAFileJustReplacedOnceItIsClosed) {
    const TempFolder folder;
    FaultyFileOps ops;
    ops.free = 9;
    ops.freeOnceClosed = 10;
    SafeFile(ops, folder / "a", TempKind::output).write(planOf("ten bytes."), FileHandle(), {});
    ops.free = 9;
    ensureRoom(ops, folder / "a", 10);
    EXPECT_THROW(ensureRoom(ops, folder / "a", 11), std::filesystem::filesystem_error);
}

TEST(NativeFileOps, CloseAReplacedFileAtTheLatestWhenTheyAreAskedTo) {
    const TempFolder folder;
    const auto ops = makeNativeFileOps();
    for (const std::uint64_t size : {0U, 64U * 1024U * 1024U}) {
        writeFile(folder / "old", "");
        std::filesystem::resize_file(folder / "old", size);
        FileHandle handle = FileHandle::openForReading(folder / "old");
        const int descriptor = handle.descriptor();
        ops->closeReplaced(std::move(handle));
        ops->finishClosing();
        EXPECT_EQ(::fcntl(descriptor, F_GETFD), -1) << size;
    }
}

TEST(EnsureRoom, RefusesBeforeTheFirstByteUnlessBlocksCanBeShared) {
    const TempFolder folder;
    const std::string longName = std::string(251, 'n') + ".wav";  // a trial file has a longer name than its target
    writeFile(folder / longName, "content");
    FaultyFileOps ops;
    ops.free = 999;
    EXPECT_FALSE(reportsRoom(ops, folder / longName, 1000));
    EXPECT_EQ(ops.calls(), 0) << "asked without a trial file";
    EXPECT_EQ(codeOf([&] { ensureRoom(ops, folder / longName, 1000); }), std::errc::no_space_on_device);
    ops.sharing = true;
    EXPECT_NO_THROW(ensureRoom(ops, folder / longName, 1000));
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(longName));
}

TEST(FolderSyncs, TriesEveryFolderAlsoWhenOneFails) {
    const TempFolder folder;
    FaultyFileOps ops;
    FolderSyncs folders;
    for (const char* name : {"a", "b", "c"}) {
        std::filesystem::create_directory(folder / name);
        folders.add({folder / name});
        folders.add({folder / name});
    }
    ops.failAt({.kinds = {Call::syncFolder}, .nth = 1});
    EXPECT_THROW(folders.syncAll(ops), std::filesystem::filesystem_error);
    EXPECT_EQ(ops.calls(Call::syncFolder), 3);
    EXPECT_NO_THROW(folders.syncAll(ops)) << "each folder once";
    EXPECT_EQ(ops.calls(Call::syncFolder), 3);
}

TEST(RenameNoReplace, MovesOrFailsAndNeverReplaces) {
    const TempFolder folder;
    PosixFileOps portable;
    const auto native = makeNativeFileOps();
    for (FileOps* ops : {static_cast<FileOps*>(&portable), native.get()}) {
        writeFile(folder / "a", "a");
        writeFile(folder / "b", "b");
        EXPECT_EQ(codeOf([&] { ops->renameNoReplace(folder / "a", folder / "b"); }), std::errc::file_exists);
        EXPECT_EQ(codeOf([&] { ops->renameNoReplace(folder / "nothing", folder / "c"); }),
                  std::errc::no_such_file_or_directory);
        EXPECT_EQ(readFile(folder / "b"), toBytes("b"));
        ops->renameNoReplace(folder / "a", folder / "c");
        EXPECT_THAT(namesIn(folder.path()), ElementsAre("b", "c"));
        EXPECT_EQ(std::filesystem::hard_link_count(folder / "c"), 1U);
        std::filesystem::remove(folder / "c");
    }
}

std::string attribute(const std::filesystem::path& file, const char* name) {
    std::string value(256, '\0');
    const ssize_t length = ::getxattr(file.c_str(), name, value.data(), value.size());
    return length < 0 ? "none" : value.substr(0, static_cast<std::size_t>(length));
}

/// Copies the attributes of a to b as a user without rights; both files are theirs.
void copyAttributesAsUser(const TempFolder& folder) {
    for (const char* name : {"a", "b"}) {
        const std::filesystem::path path = folder / name;
        ASSERT_EQ(::chown(path.c_str(), test::userWithoutRights(), static_cast<gid_t>(test::userWithoutRights())), 0);
    }
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    ASSERT_EQ(test::inChildWithoutRights([&] {
                  const auto ops = makeNativeFileOps();
                  const FileHandle from = FileHandle::openForReading(folder / "a");
                  const FileHandle to(::open((folder / "b").c_str(), O_RDWR | O_CLOEXEC));
                  ops->copyAttributes(from, to, folder / "b");
                  return 0;
              }),
              0);
}

TEST(CopyAttributes, CarriesModeAndExtendedAttributesAlsoOfAReadOnlyFile) {
    const TempFolder folder;
    writeFile(folder / "a", "a");
    writeFile(folder / "b", "b");
    if (::setxattr((folder / "a").c_str(), "user.reel", "R001", 4, 0) != 0)
        GTEST_SKIP() << "no extended attributes here";
    ASSERT_EQ(::chmod((folder / "a").c_str(), 0444), 0);
    copyAttributesAsUser(folder);
    EXPECT_EQ(attribute(folder / "b", "user.reel"), "R001");
    EXPECT_EQ(std::filesystem::status(folder / "b").permissions(), std::filesystem::status(folder / "a").permissions());
}

TEST(CopyAttributes, DropsTheAccessListThatTheFolderGaveToTheNewFile) {
    const TempFolder folder;
    writeFile(folder / "a", "a");
    // Version 2; owner rw, user 1000 rw, group r, mask rw, others none.
    Bytes list;
    appendLE(list, std::uint32_t{2});
    const struct {
        std::uint16_t tag, permissions;
        std::uint32_t id;
    } entries[] = {{1, 6, ~0U}, {2, 6, 1000}, {4, 4, ~0U}, {0x10, 6, ~0U}, {0x20, 0, ~0U}};
    for (const auto& [tag, permissions, id] : entries) {
        appendLE(list, tag);
        appendLE(list, permissions);
        appendLE(list, id);
    }
    if (::setxattr(folder.path().c_str(), "system.posix_acl_default", list.data(), list.size(), 0) != 0) {
        GTEST_SKIP() << "no access lists here";
    }
    writeFile(folder / "b", "b");
    ASSERT_NE(attribute(folder / "b", "system.posix_acl_access"), "none");
    copyAttributesAsUser(folder);
    EXPECT_EQ(attribute(folder / "b", "system.posix_acl_access"), "none");
}

TEST(CopyAttributes, KeepsTheOwnerWhereRootWrites) {
    if (::getuid() != 0) GTEST_SKIP() << "only root may give files away";
    const TempFolder folder;
    const auto ops = makeNativeFileOps();
    writeFile(folder / "a", "a");
    ASSERT_EQ(::chown((folder / "a").c_str(), 1234, 4321), 0);
    ASSERT_EQ(::chmod((folder / "a").c_str(), 0640), 0);
    SafeFile file(*ops, folder / "a", TempKind::metadata);
    file.copyAttributesFrom(FileHandle::openForReading(folder / "a"));
    static_cast<void>(file.commit(SafeFile::Existing::replace));
    struct stat status {};
    ASSERT_EQ(::stat((folder / "a").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 1234U);
    EXPECT_EQ(status.st_gid, 4321U);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

}  // namespace
}  // namespace dravik
