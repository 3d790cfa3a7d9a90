#include "model/mono_name.h"

#include <string>

#include <gtest/gtest.h>

namespace dravik {
namespace {

std::string parts(const std::optional<MonoName>& nom) {
    return nom ? std::string(nom->base) + "|" + std::string(nom->suffixe) + "|" + std::to_string(nom->numero) : "none";
}

TEST(MonoName, SplitsAtTheLastTrackSuffix) {
    const struct {
        const char* nom;
        const char* expected;
    } cases[] = {
        {"SC12_T03", "SC12|_T03|3"},
        {"SC12_t3", "SC12|_t3|3"},
        {"SC12_T03_b", "SC12|_T03_b|3"},
        {"SC12_T1_T2", "SC12_T1|_T2|2"},
        {"SC12_T1_Tail", "SC12|_T1_Tail|1"},  // the last one is no number: an earlier one counts
        {"SC12_T03b", "none"},
        {"_T03", "none"},  // nothing before it
        {"SC12_T99999999999999999999", "none"},
        {"Take7_04", "Take7|_04|4"},
        {"Take7_004", "none"},
        {"Take7_+4", "none"},
        {"_04", "none"},
        {"", "none"},
        {"T\xC3\xA9l\xC3\xA9_T1", "T\xC3\xA9l\xC3\xA9|_T1|1"},
    };
    for (const auto& [nom, expected] : cases)
        EXPECT_EQ(parts(numeroPisteMono(nom)), expected) << nom;
}

TEST(MonoName, ReadsTwoPlainDigitsOnlyAmongSeveralFiles) {
    EXPECT_EQ(parts(numeroPisteMono("Take7_04", false)), "none");
    EXPECT_EQ(parts(numeroPisteMono("Take7_T04", false)), "Take7|_T04|4");
}

TEST(MonoName, ReadsWhatOnlyFilesOfOneFamilyMayMean) {
    const struct {
        const char* nom;
        const char* expected;
    } cases[] = {
        {"S1-T001_Tr1", "S1-T001|_Tr1|1"},
        {"S1_tr12_ISO", "S1|_tr12_ISO|12"},
        {"S1_Tr1_2", "S1_Tr1|_2|2"},
        {"S1_Tr1_", "none"},
        {"S1_TrL_R", "S1_TrL|_R|27"},
        {"A101_1", "A101|_1|1"},
        {"A101_A", "A101|_A|10"},
        {"A101_a", "none"},
        {"A101_12", "none"},
        {"_1", "none"},
    };
    for (const auto& [nom, expected] : cases)
        EXPECT_EQ(parts(familyTrackNumber(nom)), expected) << nom;
}

TEST(MonoName, TellsTheTrackFromTheTakeThatStandsAheadOfIt) {
    const auto split = [](std::string_view nom, bool hasFamily) {
        const std::optional<TrackSuffix> found = trackSuffix(nom, hasFamily);
        return found ? parts(found->nom) : "none";
    };
    EXPECT_EQ(split("12A_T001_Tr2", true), "12A_T001|_Tr2|2");
    EXPECT_EQ(split("12A_T001_Tr2", false), "12A|_T001_Tr2|1") << "without a family only the sure reading counts";
    EXPECT_EQ(split("12A_T03_B", true), "12A|_T03_B|3") << "a letter behind a track number is no other track";
    EXPECT_EQ(split("S1_Tr1_T2", true), "S1_Tr1|_T2|2") << "the last one";
    EXPECT_EQ(split("A101_1", false), "none");
}

TEST(MonoName, ComparesBaseNamesWithoutCaseAndFinalSeparators) {
    EXPECT_EQ(baseNameKey("Scène 12_-. "), baseNameKey("SCÈNE 12"));
    EXPECT_NE(baseNameKey("Scene_1"), baseNameKey("Scene-1"));
    EXPECT_EQ(baseNameKey("_-. "), "");
    EXPECT_EQ(withoutTrailingSeparators("Sc12_."), "Sc12");
}

}  // namespace
}  // namespace dravik
