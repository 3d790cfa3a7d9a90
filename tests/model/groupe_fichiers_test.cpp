#include "model/groupe_fichiers.h"

#include "model/audio_metadata.h"

#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

InfoFichier mono(const std::string& scene, const std::string& note) {
    InfoFichier info;
    info.channels = 1;
    info.sampleRate = 48000;
    info.bits = 24;
    info.scene = scene;
    info.notes = note;
    info.framerate = "25";
    return info;
}

GroupeFichiers groupOf(std::vector<InfoFichier> fichiers) {
    GroupeFichiers groupe;
    groupe.nom = "SC12";
    groupe.fichiers = std::move(fichiers);
    mergeMetadata(groupe);
    return groupe;
}

TEST(GroupeFichiers, HasTheValuesThatItsFilesAgreeOnAndNamesTheOthers) {
    std::vector<InfoFichier> fichiers = {mono("12", "wind"), mono("12", "rain"), mono("12", "wind")};
    fichiers[0].circled = true;
    fichiers[2].timecode = "10:00:00:00";
    GroupeFichiers groupe = groupOf(fichiers);
    EXPECT_EQ(groupe.scene, "12");
    EXPECT_EQ(groupe.framerate, "25");
    EXPECT_FALSE(groupe.notes);
    EXPECT_FALSE(groupe.circled);
    EXPECT_FALSE(groupe.timecode) << "a value beside none is a disagreement";
    EXPECT_THAT(groupe.mixedFields, ElementsAre(MetadataField::note, MetadataField::circled, MetadataField::timecode));
    EXPECT_FALSE(groupe.forcerSauvegardeMetadata);

    groupe.fichiers = {mono("13", "wind"), mono("13", "wind"), mono("13", "wind")};
    groupe.fichiers.edit([](auto& files) { files[1].forcerSauvegardeMetadata = true; });
    mergeMetadata(groupe);
    EXPECT_THAT(groupe.mixedFields, IsEmpty());
    EXPECT_EQ(groupe.notes, "wind");
    EXPECT_TRUE(groupe.forcerSauvegardeMetadata);
}

TEST(GroupeFichiers, ToldByItsDatesIsConsistentMixedOrWithout) {
    using Status = GroupeFichiers::RecordingDateStatus;
    const RecordingDate first{2024, 3, 7};
    const RecordingDate second{2024, 3, 8};
    const struct {
        std::vector<std::optional<RecordingDate>> dates;
        Status status;
    } cases[] = {
        {{std::nullopt, std::nullopt}, Status::none},
        {{first, first}, Status::consistent},
        {{std::nullopt, first}, Status::consistent},
        {{first, std::nullopt, second}, Status::mixed},
    };
    for (const auto& [dates, status] : cases) {
        GroupeFichiers groupe;
        groupe.fichiers.edit([&](auto& files) {
            for (const auto& date : dates)
                files.emplace_back().recordingDate = date;
        });
        EXPECT_EQ(groupe.recordingDateStatus(), status);
        EXPECT_EQ(groupe.recordingDate(), status == Status::consistent ? std::optional(first) : std::nullopt);
    }
}

std::vector<std::tuple<int, std::string, int>> tracks(const GroupeFichiers& groupe) {
    std::vector<std::tuple<int, std::string, int>> out;
    for (const Piste& piste : tracksOfGroup(groupe))
        out.emplace_back(piste.numero, piste.nom, piste.numeroTrack.value_or(0));
    return out;
}

TEST(GroupeFichiers, CountsTheTracksOfAMonoSetByItsFiles) {
    std::vector<InfoFichier> fichiers = {mono("12", ""), mono("12", ""), mono("12", "")};
    fichiers[0].nomsPistes = {{1, "Boom"}};
    fichiers[0].numerosTracks = {{1, 3}};
    fichiers[1].nomsPistes = {{4, "Lav &amp; Co"}};  // filed under the recorder's number
    EXPECT_THAT(tracks(groupOf(fichiers)),
                ElementsAre(std::tuple(1, "Boom", 3), std::tuple(2, "Lav & Co", 0), std::tuple(3, "", 0)));
}

TEST(GroupeFichiers, CountsTheTracksOfOneFileByItsChannels) {
    InfoFichier poly = mono("12", "");
    poly.channels = 3;
    poly.nomsPistes = {{1, "Boom"}, {3, "Lav"}};
    poly.numerosTracks = {{3, 7}};
    EXPECT_THAT(tracks(groupOf({poly})),
                ElementsAre(std::tuple(1, "Boom", 0), std::tuple(2, "", 0), std::tuple(3, "Lav", 7)));
    InfoFichier single = mono("12", "");
    single.nomsPistes = {{5, "Boom"}};
    EXPECT_THAT(tracks(groupOf({single})), ElementsAre(std::tuple(1, "Boom", 0))) << "its one track, under any number";
    poly.nomsPistes = {{2'000'000'000, "damage"}};
    EXPECT_LE(tracksOfGroup(groupOf({poly})).size(), 1024U);
}

TEST(AudioMetadata, PrintsLengthsRatesAndSizes) {
    EXPECT_EQ(durationText(0.0004), "00:00:00.000");
    EXPECT_EQ(durationText(3599.9996), "01:00:00.000");
    EXPECT_EQ(durationText(360'000), "100:00:00.000");
    for (const double odd : {-1.0, 1e300, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(durationText(odd), "00:00:00.000");
    EXPECT_EQ(sampleRateText(44100), "44.1 kHz");
    EXPECT_EQ(sampleRateText(0), "");
    const struct {
        std::uint64_t bytes;
        const char* expected;
    } sizes[] = {{0, "0 B"},          {999, "999 B"},          {1000, "1 KB"},
                 {999'600, "1.0 MB"}, {999'960'000, "1.0 GB"}, {~0ULL, "18446744.1 TB"}};
    for (const auto& [bytes, expected] : sizes)
        EXPECT_EQ(sizeText(bytes), expected) << bytes;
}

}  // namespace
}  // namespace dravik
