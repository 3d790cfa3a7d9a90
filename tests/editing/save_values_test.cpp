#include "editing/save_values.h"

#include "editing/save_transaction.h"
#include "model/audio_metadata.h"

#include <gmock/gmock.h>

namespace dravik {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// A mono set of three, which disagree in note and timecode; as edited right after it was loaded.
struct LoadedTake {
    GroupeFichiers groupe;
    EditedFields originals, edited;

    explicit LoadedTake(int files, int channels = 1) {
        groupe.nom = "SC12";
        groupe.estPoly = channels > 1;
        for (int i = 0; i < files; ++i) {
            InfoFichier info;
            info.nom = "SC12_T0" + std::to_string(i + 1);
            info.url = "/takes/" + info.nom + ".wav";
            info.channels = channels;
            info.sampleRate = 96000;
            info.scene = "12A";
            info.notes = "note " + std::to_string(i);
            info.timecode = "10:00:00:0" + std::to_string(i);
            info.framerate = "25";
            for (int c = 1; c <= channels; ++c)
                info.nomsPistes[c] = "Track " + std::to_string(c);
            groupe.fichiers.edit([&](auto& fichiers) { fichiers.push_back(info); });
        }
        mergeMetadata(groupe);
        ModificationsEnCours loaded;
        loaded.charger(summary(groupe), tracksOfGroup(groupe), 96000);
        originals = edited = loaded.fields();
    }
    [[nodiscard]] MetadataValues values(std::size_t position) const {
        return valuesForFile(edited, originals, groupe, position);
    }
};

TEST(SaveValues, HandOverOnlyWhatWasEdited) {
    LoadedTake take(3);
    EXPECT_FALSE(hasEdit(take.values(0)));
    take.edited.scene = "13";
    take.edited.wild = true;
    const MetadataValues values = take.values(1);
    EXPECT_TRUE(hasEdit(values));
    EXPECT_EQ(values.scene, "13");
    EXPECT_EQ(values.wild, true);
    EXPECT_EQ(values.sampleRate, 96000);
    EXPECT_FALSE(values.project || values.tape || values.prise || values.note || values.circled ||
                 values.soleTrackName);
    EXPECT_EQ(values.timecode + values.framerate, "") << "the recorder's own count survives";
    EXPECT_THAT(values.nomsPistes, IsEmpty());
}

TEST(SaveValues, GiveEveryFileOfADisagreeingTakeTheEditedValue) {
    LoadedTake take(3);
    EXPECT_EQ(take.edited.note, "") << "mixed";
    take.edited.note = "one for all";
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(take.values(i).note, "one for all");
}

TEST(SaveValues, HandTimecodeAndRateOverTogetherEachFileItsOwnOther) {
    LoadedTake rate(2);
    rate.edited.framerate = "24";
    EXPECT_EQ(rate.values(0).framerate, "24");
    EXPECT_EQ(rate.values(0).timecode, "10:00:00:00");
    EXPECT_EQ(rate.values(1).timecode, "10:00:00:01");
    LoadedTake start(2);
    start.edited.timecode = "11:00:00:00";
    start.groupe.fichiers.edit([](auto& fichiers) { fichiers[1].framerate = "29.97 DF"; });
    EXPECT_EQ(start.values(0).framerate, "25");
    EXPECT_EQ(start.values(1).framerate, "29.97 DF");
    EXPECT_EQ(start.values(1).timecode, "11:00:00:00");
}

TEST(SaveValues, PutTheNameOfATrackIntoItsOwnFileOnly) {
    LoadedTake set(3);
    set.edited.nomsPistes[2] = "Lav & Boom";
    EXPECT_FALSE(hasEdit(set.values(0)));
    EXPECT_EQ(set.values(1).soleTrackName, "Lav & Boom");
    EXPECT_THAT(set.values(1).nomsPistes, IsEmpty());
    EXPECT_FALSE(hasEdit(set.values(2)));

    LoadedTake poly(1, 3);
    poly.edited.nomsPistes[3] = "Lav";
    EXPECT_THAT(poly.values(0).nomsPistes, ElementsAre(Pair(3, "Lav")));
    EXPECT_FALSE(poly.values(0).soleTrackName);

    LoadedTake mono(1);
    mono.edited.nomsPistes[1] = "Lav";
    EXPECT_EQ(mono.values(0).soleTrackName, "Lav");
}

TEST(SaveValues, PutTheNumberOfATrackIntoItsOwnFileOnly) {
    LoadedTake set(3);
    set.edited.numerosPistes[2] = 7;
    EXPECT_FALSE(hasEdit(set.values(0)) || hasEdit(set.values(2)));
    EXPECT_TRUE(hasEdit(set.values(1)));
    EXPECT_EQ(set.values(1).soleTrackNumber, 7);
    EXPECT_THAT(set.values(1).numerosTracks, IsEmpty());

    LoadedTake poly(1, 3);
    poly.originals.numerosPistes = {{1, 4}, {2, 5}};
    poly.edited.numerosPistes = {{1, 5}, {2, 4}, {3, 6}};
    EXPECT_THAT(poly.values(0).numerosTracks, ElementsAre(Pair(1, 5), Pair(2, 4), Pair(3, 6)));
    EXPECT_FALSE(poly.values(0).soleTrackNumber);
    poly.originals.numerosPistes = poly.edited.numerosPistes;
    EXPECT_FALSE(hasEdit(poly.values(0)));
}

TEST(SaveValues, LoseNoNameOfAMonoFileThatListsSeveralTracks) {
    LoadedTake mono(1);
    mono.groupe.fichiers.edit([](auto& fichiers) { fichiers[0].nomsPistes = {{1, "Boom"}, {2, "Lav"}}; });
    mono.edited.nomsPistes[2] = mono.originals.nomsPistes[2] = "Lav";
    mono.edited.nomsPistes[2] = "Lav 2";
    EXPECT_THAT(mono.values(0).nomsPistes, ElementsAre(Pair(2, "Lav 2")));
}

TEST(SaveItems, AreEmptyForFilesWithNothingToDo) {
    LoadedTake take(3);
    const auto items = [&](const std::optional<std::string>& name = {}) {
        return planSave(take.groupe, take.edited, take.originals, name);
    };
    for (const SaveItem& item : items())
        EXPECT_TRUE(item.empty());
    for (const SaveItem& item : items("SC12"))
        EXPECT_TRUE(item.empty()) << "the name it has";
    EXPECT_EQ(items("SC13").at(2).newName, "SC13_T03");
    EXPECT_FALSE(items("SC13").at(2).valeurs);

    take.edited.nomsPistes[1] = "Lav";
    EXPECT_TRUE(items().at(0).valeurs);
    EXPECT_TRUE(items().at(1).empty());

    take.groupe.fichiers.edit([](auto& fichiers) { fichiers[1].forcerSauvegardeMetadata = true; });
    EXPECT_TRUE(items().at(1).valeurs);
    EXPECT_TRUE(items().at(2).empty());
    take.groupe.forcerSauvegardeMetadata = true;
    EXPECT_TRUE(items().at(2).valeurs);
}

}  // namespace
}  // namespace dravik
