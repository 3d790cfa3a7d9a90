#include "app/take_rows.h"

#include "app/table_edits.h"

#include <gmock/gmock.h>

namespace dravik {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

GroupeFichiers take(const std::string& name, const std::string& scene, int length = 10) {
    InfoFichier fichier;
    fichier.url = "/day/" + name + ".wav";
    fichier.nom = name;
    fichier.channels = 2;
    fichier.scene = scene;
    fichier.dureeSecondes = length;
    GroupeFichiers groupe;
    groupe.nom = name;
    groupe.estPoly = true;
    groupe.fichiers = {fichier};
    mergeMetadata(groupe);
    return groupe;
}

class TakeRowsTest : public testing::Test {
  protected:
    TakeRowsTest() { rows.load({take("A", "1"), take("B", "2"), take("C", "3")}); }
    [[nodiscard]] std::vector<std::string> scenes() const {
        std::vector<std::string> all;
        for (const RowState& row : rows.groupesTableau())
            all.push_back(row.groupe.scene.value_or(""));
        return all;
    }
    void edit(int row, const std::string& scene, const QString& collapseKey = {}) {
        RowState state = rows.groupesTableau().at(static_cast<std::size_t>(row));
        ASSERT_TRUE(setText(state.groupe, RowField::scene, scene));
        rows.edit(QStringLiteral("Edit Scene"), {{row, std::move(state)}}, collapseKey);
    }
    TakeRows rows;
};

TEST_F(TakeRowsTest, StepsLeadBackAndForthThroughEveryStateInBetween) {
    edit(0, "1A");
    edit(0, "1B");
    setField(rows, {0, 1, 2}, RowField::scene, QStringLiteral("9"));
    std::vector<std::vector<std::string>> seen;
    while (rows.canUndo()) {
        seen.push_back(scenes());
        rows.undo();
    }
    EXPECT_THAT(scenes(), ElementsAre("1", "2", "3"));
    EXPECT_THAT(rows.editedRows(), IsEmpty());
    while (rows.canRedo()) {
        rows.redo();
        EXPECT_EQ(scenes(), seen.back());
        seen.pop_back();
    }
    EXPECT_THAT(rows.editedRows(), ElementsAre(0, 1, 2));
}

TEST_F(TakeRowsTest, WhatIsTypedIntoOneFieldIsOneStepAndTypedBackNone) {
    for (const char* typed : {"1A", "1AB", "1ABC"})
        edit(0, typed, QStringLiteral("field"));
    rows.undo();
    EXPECT_THAT(scenes(), ElementsAre("1", "2", "3"));
    rows.redo();
    EXPECT_EQ(scenes().front(), "1ABC");
    rows.undo();
    for (const char* typed : {"1A", "1"})
        edit(0, typed, QStringLiteral("field"));
    EXPECT_FALSE(rows.canUndo());
}

TEST_F(TakeRowsTest, AReadingInBetweenNeitherJoinsStepsOfTwoRowsNorBringsOldTextsBack) {
    edit(1, "2A", QStringLiteral("scene of row 1"));
    rows.refresh({take("0", "0"), take("A", "1"), take("B", "changed outside"), take("C", "3")},
                 TakeRows::Reading::again);
    EXPECT_THAT(scenes(), ElementsAre("0", "1", "2A", "3"));
    edit(1, "1A", QStringLiteral("scene of row 1"));  // another take by now
    rows.undo();
    EXPECT_THAT(scenes(), ElementsAre("0", "1", "2A", "3"));
    rows.undo();
    EXPECT_THAT(scenes(), ElementsAre("0", "1", "changed outside", "3"));
    EXPECT_THAT(rows.editedRows(), IsEmpty());
}

TEST_F(TakeRowsTest, AMissingTakeStandsBehindTheOthersUntilItsEditsGo) {
    edit(0, "1A");
    edit(1, "2A");
    rows.refresh({take("C", "3"), take("D", "4")}, TakeRows::Reading::again);
    EXPECT_THAT(scenes(), ElementsAre("3", "4", "1A", "2A"));
    EXPECT_THAT(rows.missingRows(), ElementsAre(2, 3));
    EXPECT_EQ(setField(rows, {1, 2}, RowField::scene, QStringLiteral("x")).readOnly, 1);
    std::vector<int> renumbered;
    QObject::connect(&rows, &TakeRows::rowsReset, [&](const std::vector<int>& now) { renumbered = now; });
    rows.discard({2});
    EXPECT_THAT(scenes(), ElementsAre("3", "x", "2A"));
    EXPECT_THAT(renumbered, ElementsAre(0, 1, -1, 2));
    EXPECT_THAT(rows.missingRows(), ElementsAre(2));
    rows.undo();
    EXPECT_EQ(rows.indexOfFile("/day/A.wav"), -1);
}

TEST_F(TakeRowsTest, NamesThatTakesPassOnLeadToTheTakesThatHaveThemNow) {
    edit(0, "1A");
    rows.filesMoved({{"/day/A.wav", "/day/B.wav"}, {"/day/B.wav", "/day/A.wav"}});
    EXPECT_EQ(rows.indexOfFile("/day/B.wav"), 0);
    EXPECT_EQ(rows.indexOf("/day/A.wav"), 1);
    EXPECT_THAT(scenes(), ElementsAre("1A", "2", "3"));
    EXPECT_THAT(rows.editedRows(), ElementsAre(0));
}

TEST_F(TakeRowsTest, NothingChangesWhileTheRowsAreWritten) {
    edit(0, "1A");
    rows.setLocked(true);
    edit(1, "2A");
    rows.undo();
    rows.discardAll();
    setField(rows, {2}, RowField::scene, QStringLiteral("x"));
    EXPECT_THAT(scenes(), ElementsAre("1A", "2", "3"));
    rows.setLocked(false);
    rows.accept({0});
    EXPECT_THAT(rows.editedRows(), IsEmpty());
    EXPECT_EQ(rows.groupesOriginauxTableau().front().scene, "1A");
}

}  // namespace
}  // namespace dravik
