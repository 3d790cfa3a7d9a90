#include "base/checksum.h"
#include "base/error.h"
#include "base/file_error.h"
#include "base/paths.h"
#include "base/temp_name.h"
#include "base/text.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

#include <set>
#include <system_error>

#include <gtest/gtest.h>

namespace dravik {
namespace {

using test::TempFolder;

TEST(Crc32, IsTheOneOfTheStandard) {
    EXPECT_EQ(crc32("123456789"), 0xCBF43926U);
    EXPECT_EQ(crc32("The quick brown fox jumps over the lazy dog"), 0x414FA339U);
    EXPECT_EQ(crc32(""), 0U);
}

TEST(TemporaryName, IsKnownAgainAndNeverTheSame) {
    std::set<std::string> seen;
    for (const TempKind kind : {TempKind::metadata, TempKind::cues, TempKind::output, TempKind::exportWav,
                                TempKind::partialMp3, TempKind::partialM4a}) {
        for (int i = 0; i < 100; ++i) {
            const std::string name = freshTemporaryName(kind, "Scene 1.wav");
            EXPECT_TRUE(name.starts_with('.')) << name;
            EXPECT_TRUE(isTemporaryName(name)) << name;
            EXPECT_TRUE(seen.insert(name).second) << name;
        }
    }
    EXPECT_TRUE(freshTemporaryName(TempKind::metadata, "a.wav").ends_with(".tmp"));
    EXPECT_TRUE(freshTemporaryName(TempKind::output, "a.wav").ends_with(".a.wav"));
    const std::string partial = freshTemporaryName(TempKind::partialMp3, "a.mp3");
    EXPECT_TRUE(partial.starts_with(".a.mp3.") && partial.ends_with(".partial.mp3")) << partial;
}

TEST(TemporaryName, OfAUsersOwnFileIsNotTakenForOurs) {
    const std::string token = freshToken();
    std::string wrongCheck = token;
    wrongCheck.back() = wrongCheck.back() == '0' ? '1' : '0';
    std::string upper = token;
    for (char& c : upper)
        c = c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
    const std::vector<std::string> names = {
        ".metadata-1.tmp",
        ".metadata-6ba7b810-9dad-41d1-80b4-00c04fd430c8.tmp",  // somebody's real UUID
        ".metadata-" + wrongCheck + ".tmp",
        upper == token ? std::string("x") : ".metadata-" + upper + ".tmp",
        ".metadata-" + token,
        ".metadata-" + token + ".tmp.bak",
        ".metadata-" + token + "x.tmp",
        ".cues-.tmp",
        ".dravik-op-" + token,
        ".dravik-op-" + token + ".",
        ".dravik-export-" + token + ".mp3",
        "take.mp3.partial.mp3",
        ".take.mp3." + wrongCheck + ".partial.mp3",
        "take.mp3." + token + ".partial.mp3",
        "." + token + ".partial.m4a",
        ".x" + token + ".partial.m4a",
        "metadata-" + token + ".tmp",
        ".Metadata-" + token + ".tmp",
        freshRenameName(".wav"),
        batchRenameName(token, "a.mp3." + token + ".partial.mp3", 0),
    };
    for (const std::string& name : names) {
        EXPECT_FALSE(isTemporaryName(name)) << name;
    }
}

TEST(RenameName, IsKnownByItsToken) {
    const std::string token = freshToken();
    for (const std::string& name : {freshRenameName(".wav"), freshRenameName(""), batchRenameName(token, "a.wav", 0),
                                    batchRenameName(token, std::string(255, 'x'), 999)}) {
        EXPECT_TRUE(isRenameName(name)) << name;
        EXPECT_LE(name.size(), maxFileNameBytes);
    }
    EXPECT_EQ(batchRenameName(token, "a.wav", 3), ".dravik-renaming-" + token + "-a.wav-3");
    for (const std::string& name : {".dravik-renaming-" + token, ".dravik-renaming-" + token + "-",
                                    ".dravik-renaming-" + token + "_a.wav", std::string(".dravik-renaming-x-a.wav"),
                                    ".dravik_rename_" + token.substr(1), "dravik-renaming-" + token + "-a.wav"}) {
        EXPECT_FALSE(isRenameName(name)) << name;
    }
}

TEST(TemporaryName, FitsAFolderAlsoForTheLongestTarget) {
    std::string target;
    while (target.size() + 6 <= maxFileNameBytes)
        target += "é";
    target += ".wav";
    for (const TempKind kind : {TempKind::output, TempKind::partialM4a}) {
        const std::string name = freshTemporaryName(kind, target);
        EXPECT_LE(name.size(), maxFileNameBytes);
        EXPECT_TRUE(isTemporaryName(name));
        EXPECT_TRUE(isValidUtf8(name)) << "cut inside a character";
    }
}

TEST(NormalisedPath, IsEqualForPathsThatDifferInCaseOrInDots) {
    const std::filesystem::path here = std::filesystem::current_path();
    const struct {
        std::filesystem::path a, b;
        bool equal;
    } cases[] = {
        {"/Takes/A.WAV", "/takes/a.wav", true},
        {"/takes/./x/../a.wav", "/takes/a.wav", true},
        {"a.wav", here / "A.wav", true},
        {"/takes/É.wav", "/takes/é.wav", true},
        {"/takes/a.wav", "/takes/a.bwf", false},
        {"/takes/a.wav", "/takes/b/a.wav", false},
        {"/takes/\xFF.wav", "/takes/\xFE.wav", false},  // bytes that are no text stay what they are
    };
    for (const auto& [a, b, equal] : cases)
        EXPECT_EQ(normalisedPath(a) == normalisedPath(b), equal) << a << b;
}

TEST(PathExists, CountsALinkWhereverItLeads) {
    const TempFolder folder;
    std::filesystem::create_symlink("nowhere", folder / "link");
    EXPECT_TRUE(pathExists(folder / "link"));
    EXPECT_FALSE(pathExists(folder / "nowhere"));
    EXPECT_EQ(folderOf("a.wav"), std::filesystem::path("."));
}

TEST(UserText, NamesTheFileOfASystemErrorOnceAndLeavesOurOwnSentencesAlone) {
    const std::filesystem::filesystem_error full("cannot write", "/takes/a.wav",
                                                 std::make_error_code(std::errc::no_space_on_device));
    EXPECT_EQ(userText(full), "a.wav: No space left on device");
    EXPECT_EQ(systemText(full), "No space left on device");
    EXPECT_EQ(userText(Error("Our own sentence.")), "Our own sentence.");
    const FileError cut("it ended while it was copied", "/takes/a.wav", std::errc::io_error);
    EXPECT_EQ(userText(cut), "a.wav: it ended while it was copied") << "where we know better than the system";
    EXPECT_EQ(cut.code(), std::errc::io_error);
}

}  // namespace
}  // namespace dravik
