#include "app/take_times.h"

#include "app/folder_contents.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace dravik::test {
namespace {

GroupeFichiers takeOf(double seconds, std::optional<std::string> timecode, std::optional<std::string> rate) {
    GroupeFichiers groupe;
    InfoFichier fichier;
    fichier.dureeSecondes = seconds;
    fichier.sampleRate = 48000;
    groupe.fichiers = {fichier};
    groupe.timecode = std::move(timecode);
    groupe.framerate = std::move(rate);
    return groupe;
}

TEST(TakeTimes, APositionIsTypedAsTimecodeOrAsTimeFromTheStart) {
    const GroupeFichiers take = takeOf(60, "10:00:00:00", "25");
    const GroupeFichiers night = takeOf(60, "23:59:50:00", "25");
    const GroupeFichiers plain = takeOf(60, std::nullopt, "25");
    const struct {
        const GroupeFichiers& take;
        const char* typed;
        std::optional<std::int64_t> frame;
    } cases[] = {
        {take, "10:00:01:00", 48000},
        {take, " 10000112 ", 71040},
        {take, "10:01:00:00", 60 * 48000},
        {take, "10:01:00:01", {}},
        {take, "09:59:59:24", {}},
        {take, "10:00:00:25", {}},
        {take, "1.5", 72000},
        {take, "0:30", 30 * 48000},
        {take, "00:00:30.25", 1452000},
        {take, "61", {}},
        {take, "0:75", {}},
        {take, "-1", {}},
        {take, "1e1", {}},
        {take, "", {}},
        {take, "1:2:3:4:5", {}},
        {night, "00:00:00:00", 480000},
        {night, "00:00:51:00", {}},
        {plain, "10:00:01:00", {}},
        {plain, "59.5", 59 * 48000 + 24000},
    };
    for (const auto& one : cases)
        EXPECT_EQ(parsePosition(one.take, one.typed), one.frame) << one.typed;
}

TEST(TakeTimes, APositionReadsBackAsItWasTyped) {
    for (const char* rate : {"23.976", "24", "25", "29.97", "29.97 DF", "30"}) {
        const GroupeFichiers take = takeOf(60, "10:00:00:00", rate);
        for (const char* typed : {"10:00:00:00", "10:00:00:23", "10:00:07:11", "10:00:59:01"}) {
            const auto frame = parsePosition(take, typed);
            ASSERT_TRUE(frame) << typed << " at " << rate;
            EXPECT_EQ(positionText(take, *frame), typed) << rate;
        }
    }
    EXPECT_EQ(positionText(takeOf(60, std::nullopt, std::nullopt), 72000), "00:00:01.500");
    EXPECT_EQ(positionText(takeOf(60, "10:00:00:00", std::nullopt), 72000), "00:00:01.500");
}

TEST(FolderContents, FoldersAreInNaturalOrderWithoutHiddenOnesAndTellWhatTheyHold) {
    TempFolder folder;
    for (const char* name : {"Day 10", "day 9", ".hidden", "Day 10/inner"})
        std::filesystem::create_directory(folder / name);
    std::filesystem::create_directory_symlink(folder / "Day 10", folder / "link");
    for (const char* name : {"Day 10/a.WAV", "Day 10/b.mp3", "Day 10/.c.wav", "Day 10/notes.txt", "file.wav"})
        writeFile(folder / name, "x");
    std::filesystem::create_directory(folder / "Day 10" / "folder.wav");
    std::vector<std::string> names;
    for (const SubFolder& one : subFoldersOf(folder.path()))
        names.push_back(one.name.toStdString());
    EXPECT_EQ(names, (std::vector<std::string>{"day 9", "Day 10", "link"}));
    EXPECT_EQ(summaryOf(folder / "Day 10").audioFiles, 2);
    EXPECT_TRUE(summaryOf(folder / "Day 10").hasFolders);
    EXPECT_FALSE(summaryOf(folder / "day 9").hasFolders);
    EXPECT_TRUE(subFoldersOf(folder / "not there").empty());
}

}  // namespace
}  // namespace dravik::test
