#include "editing/save_rename_plan.h"

#include "base/paths.h"
#include "base/temp_name.h"
#include "model/folder_scan.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using test::TempFolder;
using testing::ElementsAre;
using testing::HasSubstr;

GroupeFichiers setOf(const std::string& nom, const std::vector<std::string>& fichiers) {
    GroupeFichiers groupe;
    groupe.nom = nom;
    groupe.fichiers.edit([&](auto& files) {
        for (const std::string& fichier : fichiers) {
            files.emplace_back().nom = fichier;
            files.back().url = "/takes/" + fichier + ".wav";
        }
    });
    return groupe;
}

TEST(NewNames, KeepTheTrackSuffixOfEveryFileOfAMonoSet) {
    const struct {
        std::vector<std::string> files;
        std::vector<std::string> expected;
    } cases[] = {
        {{"SC12_T01", "SC12_t2", "SC12_T03_b"}, {"New_T01", "New_t2", "New_T03_b"}},
        {{"SC12_04", "SC12_05"}, {"New_04", "New_05"}},
        {{"SC12_Tr1", "SC12_Tr2_ISO"}, {"New_Tr1", "New_Tr2_ISO"}},
        {{"SC12_1", "SC12_A"}, {"New_1", "New_A"}},
        {{"SC12 left", "right"}, {"New left", "New_01"}},  // no suffix: what follows the common name, else the position
        {{"SC12"}, {"New"}},
    };
    for (const auto& [files, expected] : cases) {
        std::vector<std::string> names;
        for (const RenameRequest& request : renommerGroupe(setOf("SC12_", files), "New"))
            names.push_back(request.newName);
        EXPECT_EQ(names, expected);
    }
}

TEST(NewNames, OfARenamedSetMakeASetAgain) {
    GroupeFichiers groupe = setOf("SC12", {"SC12_T01", "SC12_T02"});
    std::vector<InfoFichier> infos;
    for (const RenameRequest& request : renommerGroupe(groupe, "Sc 7_T9")) {
        InfoFichier info;
        info.nom = request.newName;
        info.url = "/takes/" + info.nom + ".wav";
        info.channels = 1;
        infos.push_back(info);
    }
    const auto groupes = construireGroupes(infos, true);
    ASSERT_EQ(groupes.size(), 1U);
    EXPECT_EQ(groupes.front().nom, "Sc 7_T9");
}

TEST(NewNames, AreRefusedWhenNoFileCanHaveThem) {
    EXPECT_TRUE(isValidName("Scene 12: \"Böom\" ?"));
    for (const std::string& name : {std::string(), std::string("a/b"), std::string("a\0b", 3), std::string(".."),
                                    std::string(".x"), std::string("a\nb"), std::string("  "), std::string(221, 'x')}) {
        EXPECT_FALSE(isValidName(name)) << name;
    }
}

class RenamePlan : public testing::Test {
  protected:
    void have(const std::vector<std::string>& names) {
        for (const std::string& name : names)
            test::writeFile(folder / name, name);
    }
    RenameRequest request(const std::string& from, const std::string& to) {
        InfoFichier info;
        info.url = folder / from;
        info.nom = baseNameText(info.url);
        return {info, to};
    }
    /// The error's text, or "planned".
    std::string outcome(const std::vector<RenameRequest>& requests) {
        try {
            static_cast<void>(planRenames(requests));
            return "planned";
        } catch (const MainSaveRenameError& error) {
            EXPECT_TRUE(error.nothingChanged());
            return error.what();
        } catch (const Error& error) {
            return error.what();
        }
    }
    TempFolder folder;
};

TEST_F(RenamePlan, KeepsFolderAndExtensionAndHidesEveryFileUnderItsOwnName) {
    have({"a.WAV", "b.v2.bwf"});
    const auto plan = planRenames({request("a.WAV", "x.1"), request("b.v2.bwf", "y")});
    ASSERT_EQ(plan.size(), 2U);
    EXPECT_EQ(plan[0].destination, folder / "x.1.WAV");
    EXPECT_EQ(plan[1].destination, folder / "y.bwf");
    EXPECT_NE(plan[0].temp, plan[1].temp);
    EXPECT_TRUE(fileNameText(plan[0].temp).starts_with(".dravik_rename_"));
    EXPECT_EQ(plan[0].temp.extension(), ".WAV");
    EXPECT_FALSE(pathExists(plan[0].temp));
}

TEST_F(RenamePlan, ChecksEverythingBeforeAFileIsTouched) {
    have({"a.wav", "b.wav", "c.wav", "Taken.wav", "a.bwf"});
    std::filesystem::create_symlink("nowhere", folder / "link.wav");
    std::filesystem::create_directory(folder / "dir.wav");
    const std::string unchanged = " No files were changed.";
    const std::string longName(252, 'n');
    const struct {
        std::vector<RenameRequest> requests;
        std::string expected;
    } cases[] = {
        {{request("a.wav", "b"), request("b.wav", "a")}, "planned"},
        {{request("a.wav", "b"), request("b.wav", "c"), request("c.wav", "d")}, "planned"},
        {{request("a.wav", "A")}, "planned"},
        {{request("link.wav", "x")}, "planned"},
        {{request("a.wav", "x"), request("b.wav", "X")},
         "Rename would create duplicate files named X.wav." + unchanged},
        {{request("a.wav", "b"), request("b.wav", "B")},
         "Rename would create duplicate files named B.wav." + unchanged},
        {{request("a.wav", "x"), request("a.bwf", "x")}, "planned"},
        {{request("gone.wav", "x")}, "Source file is missing: " + (folder / "gone.wav").string() + "." + unchanged},
        {{request("a.wav", "taken")}, "A file already exists at " + (folder / "taken.wav").string() + "." + unchanged},
        {{request("a.wav", "link")}, "A file already exists at " + (folder / "link.wav").string() + "." + unchanged},
        {{request("a.wav", "dir")}, "A file already exists at " + (folder / "dir.wav").string() + "." + unchanged},
        {{request("a.wav", "../x")}, "A file cannot be named \"../x.wav\"." + unchanged},
        {{request("a.wav", "/tmp/x")}, "A file cannot be named \"/tmp/x.wav\"." + unchanged},
        {{request("a.wav", "")}, "A file cannot be named \".wav\"." + unchanged},
        {{request("a.wav", longName)}, "A file cannot be named \"" + longName + ".wav\"." + unchanged},
    };
    for (const auto& [requests, expected] : cases)
        EXPECT_EQ(outcome(requests), expected);
}

TEST(RenameError, SaysInFullWhatHappened) {
    const auto failed = MainSaveRenameError::rollbackFailed("a.wav: Permission denied", {"one", "two"});
    EXPECT_STREQ(failed.what(),
                 "Rename failed and Dravik could not fully restore every file.\n\nOriginal error: a.wav: Permission "
                 "denied\n\nRecovery details:\none\ntwo");
    EXPECT_FALSE(failed.nothingChanged());
    EXPECT_STREQ(MainSaveRenameError::metadataAfterRenameFailed("why").what(),
                 "Files were renamed, but metadata could not be saved on every file.\n\nwhy");
    EXPECT_THAT(MainSaveRenameError::temporaryNameUnavailable("a.wav").what(),
                HasSubstr("Unable to create a safe temporary rename name for a.wav. No files were changed."));
}

}  // namespace
}  // namespace dravik
