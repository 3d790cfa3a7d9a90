#include "editing/rename_takes.h"

#include "editing/save_transaction.h"
#include "model/folder_scan.h"
#include "tests/support/fake_codecs.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using testing::HasSubstr;

/// What comes of renaming the take `nom` of a folder of such files: the refusal's text, or "fine".
std::string outcome(const test::TempFolder& folder, const std::string& nom, const std::string& newName) {
    const auto groupes = scanFolder(folder.path(), test::FakeCodecs(), true, {});
    const auto groupe = std::find_if(groupes.begin(), groupes.end(), [&](const auto& one) { return one.nom == nom; });
    if (groupe == groupes.end()) return "no take " + nom;
    try {
        checkTakes(planSave(*groupe, {}, {}, newName));
        return "fine";
    } catch (const MainSaveRenameError& error) {
        EXPECT_TRUE(error.nothingChanged());
        return error.what();
    }
}

/// A mono recording; `family` empty: none.
void have(const test::TempFolder& folder, const std::string& name, const std::string& family, unsigned rate = 48000) {
    test::Ixml ixml;
    if (!family.empty()) ixml.familyUid = family;
    test::recorderFile(ixml, {.rate = rate}, 100).write(folder / (name + ".wav"));
}

TEST(RenamedTakes, MustBeTheSameTakesAgainAndNoOthers) {
    const struct {
        std::vector<std::string> files;
        std::string family;  // of all files
        std::string take, newName, says;
    } cases[] = {
        {{"S_01", "S_02"}, "", "S", "12A", "fine"},
        {{"S_01", "S_02"}, "", "S", "12A_T001", "the files of S would no longer be one take"},
        {{"S_01", "S_02"}, "F", "S", "12A_T001", "the files of S would no longer be one take"},
        {{"S_Tr1", "S_Tr2"}, "F", "S", "12A_T001", "fine"},
        {{"TK_1", "TK_2"}, "F", "TK", "12A_T001", "the files of TK would no longer be one take"},
        {{"S_T01", "S_T02"}, "", "S", "12A_T7", "fine"},
        {{"S_T01", "S_T02", "B_T03", "B_T04"}, "", "S", "B", "a part of another take, B."},
        {{"S_T01", "S_T02", "b_T03"}, "", "S", "B_", "a part of another take, b_T03."},
        {{"S_T01", "S_T02", "B_T03"}, "", "B_T03", "S_T03", "a part of another take, S."},
        {{"S_T01", "S_T02", "B_T01"}, "", "S", "B2", "fine"},
        {{"S_T01", "S_T02", "S_T03"}, "", "S", "New", "fine"},
    };
    for (const auto& [files, family, take, newName, says] : cases) {
        const test::TempFolder folder;
        for (const std::string& file : files)
            have(folder, file, family);
        EXPECT_THAT(outcome(folder, take, newName), HasSubstr(says)) << take << " to " << newName;
    }
}

TEST(RenamedTakes, DoNotMindANeighbourThatCouldNotBeOfTheTake) {
    const test::TempFolder folder;
    have(folder, "S_T01", "");
    have(folder, "S_T02", "");
    have(folder, "B_T03", "", 96000);
    test::writeFile(folder / "B_T04.mp3", "not of the same kind");
    EXPECT_EQ(outcome(folder, "S", "B"), "fine");
    test::writeFile(folder / "B_T05.wav", "unreadable");
    EXPECT_THAT(outcome(folder, "S", "B"), HasSubstr("another take, B_T0"));
}

}  // namespace
}  // namespace dravik
