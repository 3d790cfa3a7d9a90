#include "editing/row_edits.h"

#include <gmock/gmock.h>

namespace dravik {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A mono set of two that disagree in their notes.
GroupeFichiers set() {
    GroupeFichiers groupe;
    groupe.nom = "A";
    for (const char* name : {"A_T1", "A_T2"}) {
        InfoFichier fichier;
        fichier.url = std::string("/day/") + name + ".wav";
        fichier.nom = name;
        fichier.channels = 1;
        fichier.sampleRate = 48000;
        fichier.scene = "1";
        fichier.notes = std::string("note of ") + name;
        fichier.framerate = "25";
        fichier.nomsPistes = {{1, "Mic &amp; co"}};
        groupe.fichiers.edit([&](auto& fichiers) { fichiers.push_back(fichier); });
    }
    mergeMetadata(groupe);
    return groupe;
}

TEST(RowEdits, CountATakeUpAsASlateDoes) {
    const std::pair<const char*, const char*> takes[] = {{"1", "2"},       {"9", "10"},  {"09", "10"},
                                                         {"099", "100"},   {"A7", "A8"}, {"7pu", "8pu"},
                                                         {"T1b2", "T1b3"}, {"", "1"},    {"wild", "wild2"}};
    for (const auto& [before, after] : takes)
        EXPECT_EQ(incrementedTake(before), after);
}

TEST(RowEdits, RefuseWhatIsNoValueOfTheField) {
    const std::pair<RowField, const char*> bad[] = {{RowField::name, ""},
                                                    {RowField::name, "a/b"},
                                                    {RowField::name, ".hidden"},
                                                    {RowField::name, "a"},
                                                    {RowField::timecode, "10:00:00:25"},
                                                    {RowField::timecode, "later"},
                                                    {RowField::framerate, "26"},
                                                    {RowField::scene, "\xFF"}};
    for (const auto& [field, text] : bad) {
        GroupeFichiers groupe = set();
        EXPECT_FALSE(setText(groupe, field, text)) << text;
        EXPECT_THAT(editedFields({groupe, {}}, set()), IsEmpty()) << text;
    }
    GroupeFichiers groupe = set();
    EXPECT_TRUE(setText(groupe, RowField::timecode, "10000024"));
    EXPECT_EQ(groupe.timecode, "10:00:00:24");
    groupe.framerate.reset();
    EXPECT_FALSE(setText(groupe, RowField::timecode, "10:00:00:00")) << "nothing to count it in";
}

TEST(RowEdits, SettlingAMixedFieldIsAnEditAlsoWithoutAText) {
    GroupeFichiers groupe = set();
    ASSERT_TRUE(isMixed(groupe, RowField::note));
    ASSERT_TRUE(setText(groupe, RowField::note, ""));
    EXPECT_THAT(editedFields({groupe, {}}, set()), ElementsAre(RowField::note));
    const std::vector<SaveItem> items = planSave(RowState{groupe, {}}, set());
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0].valeurs->note, "");
}

TEST(RowEdits, SaveOnlyTheFilesThatHaveSomethingToSave) {
    GroupeFichiers groupe = set();
    EXPECT_THAT(planSave(RowState{groupe, {}}, set()), IsEmpty());
    setTrackName(groupe, 2, "Lav & Boom");
    EXPECT_EQ(tracksOfGroup(groupe)[1].nom, "Lav & Boom");
    const std::vector<SaveItem> items = planSave(RowState{groupe, {}}, set());
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0].fichier.nom, "A_T2");
    EXPECT_EQ(items[0].valeurs->soleTrackName, "Lav & Boom");
    setTrackName(groupe, 2, "Mic & co");
    EXPECT_THAT(editedFields({groupe, {}}, set()), IsEmpty()) << "as it was";
    setTrackName(groupe, 3, "nobody");
    EXPECT_THAT(editedFields({groupe, {}}, set()), IsEmpty());
}

}  // namespace
}  // namespace dravik
