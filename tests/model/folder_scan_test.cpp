#include "model/folder_scan.h"

#include "base/paths.h"
#include "platform/media/lazy_media_reader.h"
#include "tests/support/child.h"
#include "tests/support/fake_codecs.h"
#include "tests/support/files.h"
#include "tests/support/samples.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <atomic>
#include <chrono>
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace dravik {
namespace {

using test::FakeCodecs;
using test::TempFolder;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

struct Mono {
    std::string nom;
    std::string famille = {};
    std::string timecode = {};
    double sampleRate = 48000;
    int channels = 1;
    std::string folder = "/takes";
    std::optional<int> filesOfFamily = {};
    std::string index = {};
    std::uint64_t missingAudioBytes = 0;
};

InfoFichier infoOf(const Mono& mono) {
    InfoFichier info;
    info.nom = mono.nom;
    info.url = std::filesystem::path(mono.folder) / (mono.nom + ".wav");
    info.channels = mono.channels;
    info.sampleRate = mono.sampleRate;
    if (!mono.famille.empty()) info.familleUID = mono.famille;
    if (!mono.timecode.empty()) info.timecode = mono.timecode;
    info.filesOfFamily = mono.filesOfFamily;
    if (!mono.index.empty()) info.indexInFamily = mono.index;
    info.missingAudioBytes = mono.missingAudioBytes;
    return info;
}

/// "A: A_T1 A_T2", "B (poly): B"
std::vector<std::string> picture(const std::vector<GroupeFichiers>& groupes) {
    std::vector<std::string> lines;
    for (const GroupeFichiers& groupe : groupes) {
        std::string line = groupe.nom + (groupe.estPoly ? " (poly):" : ":");
        for (const InfoFichier& fichier : groupe.fichiers)
            line += " " + fichier.nom;
        for (const UnreadableTrack& track : groupe.unreadableTracks)
            line += fmt::format(" lacks {} {}", track.numero, fileNameText(track.url));
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> grouped(const std::vector<Mono>& monos, bool regrouper = true) {
    std::vector<InfoFichier> infos;
    for (const Mono& mono : monos)
        infos.push_back(infoOf(mono));
    return picture(construireGroupes(std::move(infos), regrouper));
}

TEST(Grouping, JoinsMonoFilesOfOneTakeInTrackOrder) {
    const struct {
        std::string rule;
        std::vector<Mono> files;
        std::vector<std::string> expected;
    } cases[] = {
        {"a set and a poly file", {{"A_T2"}, {"B", "", "", 48000, 2}, {"A_T1"}}, {"A: A_T1 A_T2", "B (poly): B"}},
        {"numbers count, not their digits", {{"A_T10"}, {"A_T2"}, {"A_T01"}}, {"A: A_T01 A_T2 A_T10"}},
        {"what cannot be read stands alone, and the take it is missing from says so",
         {{"A_T1"}, {"A_T2", "", "", 0, 0}, {"A_T3"}},
         {"A: A_T1 A_T3 lacks 2 A_T2.wav", "A_T2: A_T2"}},
        {"also where one file is left of it",
         {{"A_T1"}, {"A_T2", "", "", 0, 0}},
         {"A_T1: A_T1 lacks 2 A_T2.wav", "A_T2: A_T2"}},
        {"but not where it would be a second one of a number, or of another take",
         {{"A_T1"}, {"A_T1_old", "", "", 0, 0}, {"B_T2", "", "", 0, 0}},
         {"A_T1: A_T1", "A_T1_old: A_T1_old", "B_T2: B_T2"}},
        {"an ending that is common needs a family of several",
         {{"A101_1", "F"}, {"A101_2", "F"}, {"A101_3", "", "", 0, 0}, {"B_1", "F"}, {"B_2", "", "", 0, 0}},
         {"A101: A101_1 A101_2 lacks 3 A101_3.wav", "A101_3: A101_3", "B_1: B_1", "B_2: B_2"}},
        {"two digits, among several", {{"Take7_04"}, {"Take7_02"}}, {"Take7: Take7_02 Take7_04"}},
        {"alone with its name it is a take of its own", {{"A_T1"}, {"B_T1"}}, {"A_T1: A_T1", "B_T1: B_T1"}},
        {"a poly file never joins", {{"A_T1", "", "", 48000, 2}, {"A_T2"}}, {"A_T1 (poly): A_T1", "A_T2: A_T2"}},
        {"case and final separators do not part", {{"sc1__T1"}, {"SC1_T2"}}, {"sc1_: sc1__T1 SC1_T2"}},
        {"sample rates do", {{"A_T1"}, {"A_T2"}, {"A_T3", "", "", 96000}}, {"A: A_T1 A_T2", "A_T3: A_T3"}},
        {"start timecodes do",
         {{"A_T1", "", "10:00:00:00"}, {"A_T2", "", "10:00:00:00"}, {"A_T3", "", "11:00:00:00"}},
         {"A: A_T1 A_T2", "A_T3: A_T3"}},
        {"where both have one", {{"A_T1", "", "10:00:00:00"}, {"A_T2"}}, {"A: A_T1 A_T2"}},
        {"but never two in one set through a third",
         {{"A_T1", "", "10:00:00:00"}, {"A_T2"}, {"A_T3", "", "11:00:00:00"}},
         {"A: A_T1 A_T2", "A_T3: A_T3"}},
        {"folders do", {{"A_T1"}, {.nom = "A_T2", .folder = "/other"}}, {"A_T1: A_T1", "A_T2: A_T2"}},
        {"one number is one track: a copy stays out",
         {{"A_T1_old"}, {"A_T1"}, {"A_T2"}},
         {"A: A_T1 A_T2", "A_T1_old: A_T1_old"}},
        {"common endings mean nothing without a family",
         {{"A101_1"}, {"A101_2"}},
         {"A101_1: A101_1", "A101_2: A101_2"}},
        {"and a track within one", {{"A101_2", "F"}, {"A101_1", "F"}, {"A101_A", "F"}}, {"A101: A101_1 A101_2 A101_A"}},
        {"not across two", {{"A101_1", "F"}, {"A101_2", "G"}}, {"A101_1: A101_1", "A101_2: A101_2"}},
        {"a take's number ahead of the track's is none",
         {{"12A_T001_Tr1", "F"}, {"12A_T001_Tr2", "F"}, {"12A_T002_Tr1", "G"}, {"12A_T002_Tr2", "G"}},
         {"12A_T001: 12A_T001_Tr1 12A_T001_Tr2", "12A_T002: 12A_T002_Tr1 12A_T002_Tr2"}},
        {"the sure endings need none", {{"A_T1", "F"}, {"A_T2"}}, {"A: A_T1 A_T2"}},
        {"but never join two families", {{"A_01", "F"}, {"A_02", "G"}}, {"A_01: A_01", "A_02: A_02"}},
        {"takes stand in the order of their numbers",
         {{"Scene 10"}, {"scene 9"}, {"Scene 2_T1"}, {"Scene 2_T2"}},
         {"Scene 2: Scene 2_T1 Scene 2_T2", "scene 9: scene 9", "Scene 10: Scene 10"}},
    };
    for (const auto& [rule, files, expected] : cases)
        EXPECT_THAT(grouped(files), ElementsAreArray(expected)) << rule;
}

TEST(Grouping, CountsTheFilesThatTheRecorderWroteAndThatAreNotThere) {
    const auto of = [](std::string nom, int total, std::string index, int channels = 1, std::string folder = "/takes") {
        Mono mono{std::move(nom), "F", "", 48000, channels, std::move(folder)};
        mono.filesOfFamily = total;
        mono.index = std::move(index);
        return mono;
    };
    const Mono unreadable{"A_T3", "", "", 0, 0};
    Mono cutOff{"A_T1"};
    cutOff.missingAudioBytes = 1;
    const struct {
        std::string rule;
        std::vector<Mono> files;
        std::vector<int> notThere;
    } cases[] = {
        {"a whole set", {of("A_T1", 2, "1"), of("A_T2", 2, "2")}, {0}},
        {"two are gone", {of("A_T1", 4, "1"), of("A_T3", 4, "3")}, {2}},
        {"the stereo mix of the family is one of them",
         {of("A_T1", 4, "1"), of("A_T2", 4, "2"), of("A_TrL_R", 4, "A", 2)},
         {1, 0}},
        {"the poly file that a recorder wrote as well counts for itself",
         {of("A_1", 1, "A", 2), of("A_1_1", 3, "1"), of("A_1_2", 3, "2")},
         {0, 1}},
        {"what cannot be read is not gone", {of("A_T1", 3, "1"), of("A_T2", 3, "2"), unreadable}, {0, 0}},
        {"nor is what is cut off and says nothing any more, also where it comes first",
         {cutOff, of("A_T2", 3, "2"), of("A_T3", 3, "3")},
         {0}},
        {"one that says nothing though it is whole is none of the family",
         {of("A_T1", 3, "1"), Mono{"A_T2"}, of("A_T3", 3, "3")},
         {1}},
        {"other folders do not count", {of("A_T1", 3, "1"), of("A_T2", 3, "2"), of("A_T3", 3, "3", 1, "/b")}, {1, 0}},
        {"a single file may be all that was wanted, and so may a merged one",
         {of("A_T1", 4, "1"), of("A", 4, "1", 4)},
         {0, 0}},
        {"a merged file and a backup fill no hole",
         {of("A_T1", 3, "1"), of("A_T2", 3, "2"), of("A_merge", 3, "1", 2), of("A_T1_old", 3, "1")},
         {1, 0, 0}},
        {"files that were split off one file are no set of the recorder's",
         {of("A_split_T01", 4, "1"), of("A_split_T02", 4, "1")},
         {0}},
        {"more than was said is no hole", {of("A_T1", 1, "1"), of("A_T2", 1, "2")}, {0}},
        {"files that disagree say nothing", {of("A_T1", 4, "1"), of("A_T2", 5, "2")}, {0}},
    };
    for (const auto& [rule, files, notThere] : cases) {
        std::vector<InfoFichier> infos;
        for (const Mono& mono : files)
            infos.push_back(infoOf(mono));
        std::vector<GroupeFichiers> groupes = construireGroupes(std::move(infos), true);
        std::vector<int> counted;
        for (const GroupeFichiers& groupe : groupes)
            EXPECT_EQ(groupe.filesNotThere, 0) << "not before the folder is whole";
        countFilesNotThere(groupes);
        for (const GroupeFichiers& groupe : groupes)
            counted.push_back(groupe.filesNotThere);
        EXPECT_EQ(counted, notThere) << rule;
    }
}

TEST(Grouping, CanBeSwitchedOff) {
    EXPECT_THAT(grouped({{"A_T1"}, {"A_T2"}, {"B", "", "", 48000, 2}}, false),
                ElementsAre("A_T1: A_T1", "A_T2: A_T2", "B (poly): B"));
    EXPECT_THAT(grouped({}), IsEmpty());
}

TEST(FolderScan, ListsTheAudioFilesOfTheFolderItself) {
    const TempFolder folder;
    for (const char* name : {"b10.wav", "B9.WAV", "a.aiff", "c.RF64", "d.m4a", "e.txt", ".hidden.wav", "wav", ".wav"}) {
        test::writeFile(folder / name, "x");
    }
    std::filesystem::create_directory(folder / "folder.wav");
    test::writeFile(folder / "folder.wav/inside.wav", "x");
    std::filesystem::create_symlink(folder / "a.aiff", folder / "z link.wav");
    std::filesystem::create_symlink("nowhere", folder / "broken.wav");
    std::vector<std::string> names;
    for (const auto& file : listerFichiers(folder.path()))
        names.push_back(fileNameText(file));
    EXPECT_THAT(names, ElementsAre("a.aiff", "B9.WAV", "b10.wav", "c.RF64", "d.m4a", "z link.wav"));
    EXPECT_THAT(listerFichiers(folder / "missing"), IsEmpty());
    EXPECT_THAT(listerFichiers(folder / "e.txt"), IsEmpty());
}

/// "0.wav" and so on, the number as their scene.
std::vector<std::filesystem::path> numberedFiles(const TempFolder& folder, int count) {
    std::vector<std::filesystem::path> files;
    for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        files.push_back(test::recorderFile({.scene = number}, {}, 10).write(folder / (number + ".wav")));
    }
    return files;
}

TEST(FolderScan, ProbesOnSeveralThreadsInTheOrderOfTheList) {
    const TempFolder folder;
    const std::vector<std::filesystem::path> files = numberedFiles(folder, 300);
    std::vector<std::uint64_t> reports;
    TaskContext task;
    task.report = [&](const Progress& progress) {
        EXPECT_EQ(progress.allBytes, 300U);
        reports.push_back(progress.doneBytes);  // one report at a time
    };
    const std::vector<InfoFichier> infos = probeFiles(files, FakeCodecs(), task);
    for (std::size_t i = 0; i < infos.size(); ++i)
        EXPECT_EQ(infos[i].scene, std::to_string(i));
    ASSERT_EQ(reports.size(), 300U);
    for (std::size_t i = 0; i < reports.size(); ++i)
        EXPECT_EQ(reports[i], i + 1);
}

/// As slow as a disk with the first file; every other one waits for the last.
class SlowCodecs final : public AudioFileReader {
  public:
    [[nodiscard]] std::optional<AudioFormat> format(const std::filesystem::path&) const noexcept override {
        if (first_.exchange(false)) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            return std::nullopt;
        }
        others_.count_down();
        for (int tries = 0; tries < 10'000 && !others_.try_wait(); ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        if (others_.try_wait()) ++met;
        return std::nullopt;
    }
    mutable std::atomic<int> met{0};

  private:
    mutable std::atomic<bool> first_{true};
    mutable std::latch others_{2};
};

TEST(FolderScan, ProbesFewFilesAtTheSameTimeWhenTheyProveSlow) {
    const TempFolder folder;
    for (const char* name : {"a.flac", "b.flac", "c.flac"})
        test::writeFile(folder / name, "x");
    const SlowCodecs codecs;
    EXPECT_EQ(probeFiles(listerFichiers(folder.path()), codecs, {}).size(), 3U);
    EXPECT_EQ(codecs.met, 2);
}

TEST(FolderScan, ProbesWithTheThreadsThatTheSystemGives) {
    const TempFolder folder;
    const std::vector<std::filesystem::path> files = numberedFiles(folder, 64);
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    EXPECT_EQ(test::inChildWithoutRights([&] {
                  constexpr rlimit noMore{0, 0};
                  if (::setrlimit(RLIMIT_NPROC, &noMore) != 0) return 1;
                  const std::vector<InfoFichier> infos = probeFiles(files, FakeCodecs(), {});
                  return infos.back().scene == "63" ? 0 : 2;
              }),
              0);
}

TEST(FolderScan, StopsWhenItIsCancelled) {
    const TempFolder folder;
    const std::vector<std::filesystem::path> files = numberedFiles(folder, 200);
    CancellationToken token;
    std::atomic<int> reports{0};
    TaskContext task;
    task.token = &token;
    task.report = [&](const Progress&) {
        if (++reports == 20) token.cancel();
    };
    EXPECT_THROW(static_cast<void>(probeFiles(files, FakeCodecs(), task)), Cancelled);
    EXPECT_LT(reports, 40);
}

TEST(FolderScan, GroupsTheRealOnes) {
    DRAVIK_NEEDS_SAMPLES();
    const auto codecs = makeLazyMediaReader({});
    const auto scan = [&](const char* folder) {
        return picture(scanFolder(*test::sampleFolder() / folder, *codecs, true, {}));
    };
    EXPECT_THAT(scan("recorder_a_poly_mono"),
                ElementsAre("A101_1 (poly): A101_1", "A101_1: A101_1_1 A101_1_2", "A101_3 (poly): A101_3"));
    EXPECT_THAT(scan("recorder_b_mono_set"),
                ElementsAre("Sr001-2C-01: Sr001-2C-01_01 Sr001-2C-01_02 Sr001-2C-01_03 Sr001-2C-01_04 Sr001-2C-01_05"));
    EXPECT_THAT(scan("recorder_c_mono_set"),
                ElementsAre("Scene_1_2AG-T001: Scene_1_2AG-T001_Tr1 Scene_1_2AG-T001_Tr2 Scene_1_2AG-T001_Tr3",
                            "Scene_1_2AG-T001_TrL_R (poly): Scene_1_2AG-T001_TrL_R"));
}

}  // namespace
}  // namespace dravik
