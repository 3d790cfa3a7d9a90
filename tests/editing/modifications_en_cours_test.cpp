#include "editing/modifications_en_cours.h"

#include <QSignalSpy>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace dravik {
namespace {

AudioMetadata take(const std::string& scene) {
    AudioMetadata metadata;
    metadata.scene = scene;
    metadata.circled = true;
    metadata.timecode = "10:00:00:00";
    metadata.framerate = "25";
    return metadata;
}

std::vector<Piste> tracks(const std::vector<std::string>& names) {
    std::vector<Piste> pistes;
    for (const std::string& name : names)
        pistes.push_back({{}, static_cast<int>(pistes.size()) + 1, name, {}});
    return pistes;
}

using M = ModificationsEnCours;

TEST(ModificationsEnCours, LoadsATakeWithNothingUnsaved) {
    M edits;
    edits.setNote("of the take before");
    edits.setModifCues(true);
    edits.setModifTableau(true);
    edits.charger(take("12A"), tracks({"Boom", ""}), 96000);
    EXPECT_FALSE(edits.aDesModifications());
    EXPECT_FALSE(edits.modifCues());
    EXPECT_FALSE(edits.modifTableau());
    EXPECT_EQ(edits.fields(), edits.originals());
    EXPECT_EQ(edits.project(), "") << "absent is empty";
    EXPECT_EQ(edits.note(), "");
    EXPECT_TRUE(edits.circled());
    EXPECT_EQ(edits.sampleRate(), 96000);
    EXPECT_THAT(edits.nomsPistes(), testing::ElementsAre(testing::Pair(1, "Boom"), testing::Pair(2, "")));
}

TEST(ModificationsEnCours, TellsOfEveryEditAndKnowsWhenItIsTakenBack) {
    M edits;
    edits.charger(take("12A"), {{{}, 1, "Boom", 3}}, 48000);
    const struct {
        void (M::*signal)();
        std::function<void()> change, back;
    } cases[] = {
        {&M::projectChanged, [&] { edits.setProject("x"); }, [&] { edits.setProject(""); }},
        {&M::sceneChanged, [&] { edits.setScene("12a"); }, [&] { edits.setScene("12A"); }},
        {&M::tapeChanged, [&] { edits.setTape("x"); }, [&] { edits.setTape(""); }},
        {&M::priseChanged, [&] { edits.setPrise("x"); }, [&] { edits.setPrise(""); }},
        {&M::noteChanged, [&] { edits.setNote(" "); }, [&] { edits.setNote(""); }},
        {&M::circledChanged, [&] { edits.setCircled(false); }, [&] { edits.setCircled(true); }},
        {&M::wildChanged, [&] { edits.setWild(true); }, [&] { edits.setWild(false); }},
        {&M::nomsPistesChanged, [&] { edits.setTrackName(1, "Lav"); }, [&] { edits.setTrackName(1, "Boom"); }},
        {&M::numerosPistesChanged,
         [&] {
             edits.setTrackNumbers({{1, 5}});
         },
         [&] {
             edits.setTrackNumbers({{1, 3}});
         }},
        {&M::timecodeChanged, [&] { edits.setTimecode(""); }, [&] { edits.setTimecode("10:00:00:00"); }},
        {&M::framerateChanged, [&] { edits.setFramerate("24"); }, [&] { edits.setFramerate("25"); }},
        {&M::modifTableauChanged, [&] { edits.setModifTableau(true); }, [&] { edits.setModifTableau(false); }},
        {&M::modifCuesChanged, [&] { edits.setModifCues(true); }, [&] { edits.setModifCues(false); }},
    };
    for (const auto& [signal, change, back] : cases) {
        QSignalSpy field(&edits, signal);
        QSignalSpy unsaved(&edits, &M::aDesModificationsChanged);
        change();
        change();  // the same again is no change
        EXPECT_EQ(field.count(), 1);
        EXPECT_EQ(unsaved.count(), 1);
        EXPECT_TRUE(edits.aDesModifications());
        back();
        EXPECT_EQ(field.count(), 2);
        EXPECT_EQ(unsaved.count(), 2);
        EXPECT_FALSE(edits.aDesModifications());
    }
}

TEST(ModificationsEnCours, ShowsNobodyAHalfLoadedTake) {
    M edits;
    edits.charger(take("12A"), tracks({"Boom"}), 48000);
    QSignalSpy unsaved(&edits, &M::aDesModificationsChanged);
    QSignalSpy tape(&edits, &M::tapeChanged);
    QObject::connect(&edits, &M::sceneChanged, [&] {
        EXPECT_EQ(edits.nomsPistes().at(1), "Lav");
        EXPECT_FALSE(edits.aDesModifications());
    });
    edits.charger(take("12B"), tracks({"Lav"}), 48000);
    EXPECT_EQ(unsaved.count(), 0) << "a load is no edit, not for a moment";
    EXPECT_EQ(tape.count(), 0) << "what stays the same is not told";
}

TEST(ModificationsEnCours, DiscardsOrKeepsTheEdits) {
    M edits;
    edits.charger(take("12A"), tracks({"Boom"}), 48000);
    const auto edit = [&] {
        edits.setScene("13");
        edits.setTrackName(1, "Lav");
        edits.setModifCues(true);
    };
    edit();
    edits.annuler();
    EXPECT_EQ(edits.scene(), "12A");
    EXPECT_EQ(edits.nomsPistes().at(1), "Boom");
    EXPECT_FALSE(edits.aDesModifications());
    edit();
    edits.valider();
    EXPECT_EQ(edits.originals().scene, "13");
    EXPECT_FALSE(edits.aDesModifications());
    EXPECT_FALSE(edits.modifCues());
    edits.setScene("12A");
    EXPECT_TRUE(edits.aDesModifications()) << "the saved value is what edits are compared with";
}

}  // namespace
}  // namespace dravik
