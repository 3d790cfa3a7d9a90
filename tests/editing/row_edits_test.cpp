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

/// A poly file whose recorder has given two tracks one number and the last none.
GroupeFichiers poly() {
    GroupeFichiers groupe;
    groupe.nom = "B";
    groupe.estPoly = true;
    InfoFichier fichier;
    fichier.url = "/day/B.wav";
    fichier.nom = "B";
    fichier.channels = 4;
    fichier.nomsPistes = {{1, "a"}, {2, "b"}};
    fichier.numerosTracks = {{1, 3}, {2, 4}, {3, 4}};
    groupe.fichiers.edit([&](auto& fichiers) { fichiers.push_back(fichier); });
    mergeMetadata(groupe);
    return groupe;
}

TEST(RowEdits, GiveNoTwoTracksOfATakeOneRecorderNumber) {
    const struct {
        TrackNumbers given, after;
        const char* problem;
    } cases[] = {
        {{{1, 9}}, {{1, 9}, {2, 4}, {3, 4}}, nullptr},
        {{{1, 4}, {2, 3}, {3, 5}}, {{1, 4}, {2, 3}, {3, 5}}, nullptr},
        {{{4, 999}}, {{1, 3}, {2, 4}, {3, 4}, {4, 999}}, nullptr},
        {{{1, 3}, {2, 4}, {3, 4}, {7, 4}}, {{1, 3}, {2, 4}, {3, 4}}, nullptr},
        {{{1, 4}}, {}, "Tracks 1 and 2 of B cannot both have the recorder number 4."},
        {{{1, 8}, {4, 8}}, {}, "Tracks 1 and 4 of B cannot both have the recorder number 8."},
        {{{1, 9}, {4, 0}}, {}, "A recorder number is a whole number from 1 to 999."},
        {{{1, 1000}}, {}, "A recorder number is a whole number from 1 to 999."},
    };
    for (const auto& c : cases) {
        GroupeFichiers groupe = poly();
        EXPECT_EQ(trackNumberProblem(groupe, c.given),
                  c.problem == nullptr ? std::nullopt : std::optional<std::string>(c.problem));
        EXPECT_EQ(setTrackNumbers(groupe, c.given), c.problem == nullptr);
        EXPECT_EQ(fieldsOf(groupe).numerosPistes, c.problem == nullptr ? c.after : fieldsOf(poly()).numerosPistes);
        EXPECT_EQ(fieldsOf(groupe).nomsPistes, fieldsOf(poly()).nomsPistes);
        EXPECT_EQ(editedFields({groupe, {}}, poly()).contains(RowField::trackNumbers),
                  fieldsOf(groupe).numerosPistes != fieldsOf(poly()).numerosPistes);
    }
    GroupeFichiers mono = set();
    ASSERT_TRUE(setTrackNumbers(mono, {{1, 2}, {2, 1}}));
    EXPECT_FALSE(setTrackNumbers(mono, {{2, 2}})) << "another file of the set has it";
    const std::vector<SaveItem> items = planSave(RowState{mono, {}}, set());
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[1].valeurs->soleTrackNumber, 1);
}

}  // namespace
}  // namespace dravik
