#include "platform/desktop_workspace.h"

#include "platform/desktop/mounts.h"
#include "platform/desktop/system_desktop.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

#include <QDir>
#include <QStandardPaths>

#include <gtest/gtest.h>

namespace dravik::test {
namespace {

TEST(Mounts, OnlyPlacesInWhichUsersKeepFilesAreVolumesAndMediaCanBeEjected) {
    const struct {
        const char* root;
        const char* fileSystem;
        bool isVolume, isEjectable;
    } cases[] = {
        {"/", "overlay", true, false},
        {"/home", "ext4", true, false},
        {"/data", "nfs4", true, false},
        {"/media/anna/CARD", "exfat", true, true},
        {"/run/media/anna/CARD", "vfat", true, true},
        {"/mnt/disk", "ext4", true, true},
        {"/media", "ext4", true, false},
        {"/boot", "ext4", false, false},
        {"/boot/efi", "vfat", false, false},
        {"/snap/core/1", "squashfs", false, false},
        {"/run/user/1000", "tmpfs", false, false},
        {"/tmp", "tmpfs", false, false},
        {"/etc/hosts", "ext4", false, false},
        {"/bootleg", "ext4", true, false},
        {"/run/user/1000/doc", "fuse.portal", false, false},
    };
    for (const auto& one : cases) {
        const Mount mount{one.root, one.fileSystem, "/dev/sdb1"};
        EXPECT_EQ(isUserVolume(mount), one.isVolume) << one.root;
        EXPECT_EQ(isEjectable(mount), one.isEjectable) << one.root;
    }
}

TEST(Mounts, AVolumeIsCalledByItsLabelOrItsFolder) {
    EXPECT_EQ(volumeName({"/media/anna/1234-ABCD", "vfat", ""}, "CARD A"), "CARD A");
    EXPECT_EQ(volumeName({"/media/anna/1234-ABCD", "vfat", ""}, ""), "1234-ABCD");
    EXPECT_EQ(volumeName({"/", "ext4", ""}, ""), "Computer");
}

TEST(Programs, OfAProgramItsComplaintIsKeptAndTheTimeIsLimited) {
    const auto run = [](const char* script, int milliseconds) {
        return complaintOf("sh", {"-c", script}, std::chrono::milliseconds(milliseconds));
    };
    EXPECT_EQ(run("exit 0", 20'000), QString());
    EXPECT_EQ(run("echo target is busy >&2; exit 1", 20'000), QString("target is busy"));
    EXPECT_EQ(run("exit 1", 20'000), QString("the system refused."));
    EXPECT_EQ(run("exec sleep 60", 100), QString("it is still busy."));
    EXPECT_EQ(complaintOf("dravik-no-such-program", {}, std::chrono::seconds(1)), std::nullopt);
    EXPECT_EQ(startOpener({"dravik-none", "dravik-no-other"}, "a.pdf"),
              QString("“a.pdf” could not be opened: the program “dravik-none” or “dravik-no-other” is not there."));
}

/// A user who has never had a trash, and a program that runs in some folder of the day.
class TrashTest : public testing::Test {
  protected:
    void SetUp() override {
        // All on one volume: others have a trash of their own.
        previousHome = qgetenv("HOME");
        qputenv("HOME", home.path().c_str());
        qputenv("XDG_DATA_HOME", (home / "share" / "data").c_str());
        std::filesystem::create_directories(home / "day" / "cards");
        writeFile(home / "day" / "cards" / "a.wav", "take");
        QDir::setCurrent(QString::fromStdString((home / "day").string()));
    }
    void TearDown() override {
        QDir::setCurrent(QDir::rootPath());
        qunsetenv("XDG_DATA_HOME");
        qputenv("HOME", previousHome);
    }
    QByteArray previousHome;
    const TempFolder home;
};

TEST_F(TrashTest, AFolderLandsInTheTrashAlsoWhenThereWasNoneYet) {
    EXPECT_EQ(makeDesktopWorkspace()->moveToTrash(home / "day" / "cards"), "");
    EXPECT_EQ(namesIn(home / "day"), std::vector<std::string>());
    EXPECT_EQ(readFile(home / "share" / "data" / "Trash" / "files" / "cards" / "a.wav").size(), 4U);
}

TEST_F(TrashTest, WithoutAPlaceForTheTrashNothingIsMoved) {
    writeFile(home / "share", "a file is in the way");
    EXPECT_NE(makeDesktopWorkspace()->moveToTrash(home / "day" / "cards"), "");
    EXPECT_EQ(readFile(home / "day" / "cards" / "a.wav").size(), 4U);
    EXPECT_EQ(makeDesktopWorkspace()->moveToTrash(home / "gone"),
              QString("“%1” is not there any more.").arg(QString::fromStdString((home / "gone").string())));
}

}  // namespace
}  // namespace dravik::test
