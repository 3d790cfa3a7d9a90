#include "model/probe.h"
#include "model/wave/bext.h"
#include "operations/track_eligibility.h"
#include "tests/operations/operation_stage.h"
#include "tests/support/child.h"

#include <algorithm>
#include <string>

#include <gmock/gmock.h>
#include <sys/resource.h>

namespace dravik {
namespace {

using namespace OperationsAudio;
using test::channelOf;
using test::chunksOf;
using test::Ixml;
using test::OperationStage;
using test::payloadOf;
using test::Pcm;
using test::PlainChunk;
using test::readFile;
using test::recorderFile;
using test::WavBuilder;
using ::testing::ElementsAre;

/// A poly file of three channels with all that surrounds the audio: names, lines, chunks before and behind.
WavBuilder polyFile(const Pcm& pcm, std::size_t frames = 5000) {
    Ixml ixml;
    ixml.tracks = {{7, 1, "Boom & Co"}, {8, 2, "Lav/Mic: A"}, {9, 3, std::nullopt}};
    return WavBuilder()
        .bext({.description = "sSCENE=1\r\nsTRK7=Boom & Co\r\nsTRK8=Lav\r\nsTRK9=third\r\n", .bytes = 603})
        .ixml(ixml)
        .chunk("abcd", "odd")
        .fmt(pcm)
        .audio(frames)
        .cues({{1, 10, "slate"}})
        .chunk("LIST", "INFOISFT");
}

InfoFichier probed(const std::filesystem::path& file) { return analyserFichier(file, test::FakeCodecs()); }

std::map<int, std::string> names(const std::filesystem::path& file) { return probed(file).nomsPistes; }
std::map<int, int> numbers(const std::filesystem::path& file) { return probed(file).numerosTracks; }

/// The chunks that no operation has any business with.
std::vector<PlainChunk> others(const Bytes& file) {
    std::vector<PlainChunk> chunks = chunksOf(file);
    std::erase_if(chunks, [](const PlainChunk& chunk) {
        return chunk.id == "fmt " || chunk.id == "data" || chunk.id == "iXML" || chunk.id == "bext";
    });
    return chunks;
}

void expectStandardForm(const Bytes& file) {
    EXPECT_EQ(readLE<std::uint32_t>(file.data() + 4), file.size() - 8);
    const auto chunks = chunksOf(file);
    ASSERT_GE(chunks.size(), 2U);
    EXPECT_EQ(chunks.front().id, "fmt ");
    EXPECT_EQ(chunks.back().id, "data");
}

const Pcm everyPcm[] = {{.channels = 3, .bits = 16},
                        {.channels = 3, .bits = 24},
                        {.channels = 3, .bits = 24, .extensible = true},
                        {.channels = 3, .bits = 32, .isFloat = true},
                        {.channels = 3, .bits = 64, .isFloat = true}};

TEST(Reorder, MovesSamplesNamesAndLinesAndReturnsWhenItIsUndone) {
    for (const Pcm& pcm : everyPcm) {
        SCOPED_TRACE(pcm.bits);
        OperationStage stage;
        // More than one block, and a part of a frame at the end.
        const auto source = polyFile(pcm, 20001).write(stage.folder / "take.wav");
        const Bytes before = readFile(source);
        const OperationAudioResult result = stage.runOne("take", stage.reorder({2, 0, 1}));
        EXPECT_TRUE(result.success) << result.message;
        EXPECT_EQ(result.message, "Created take_order.wav");
        EXPECT_EQ(result.destinationURL, stage.folder / "take_order.wav");
        EXPECT_EQ(readFile(source), before);
        const Bytes file = readFile(stage.folder / "take_order.wav");
        expectStandardForm(file);
        const std::size_t sample = pcm.bits / 8U;
        for (const std::size_t channel : {0U, 1U, 2U}) {
            EXPECT_TRUE(channelOf(payloadOf(file, "data"), 3, sample, channel) ==
                        channelOf(payloadOf(before, "data"), 3, sample, (channel + 2) % 3));
        }
        EXPECT_EQ(payloadOf(file, "fmt "), payloadOf(before, "fmt "));
        EXPECT_EQ(others(file), others(before));
        EXPECT_EQ(numbers(*result.destinationURL), (std::map<int, int>{{1, 1}, {2, 2}, {3, 3}}));
        EXPECT_EQ(names(*result.destinationURL),
                  (std::map<int, std::string>{{1, "Track 9"}, {2, "Boom &amp; Co"}, {3, "Lav/Mic: A"}}));
        EXPECT_EQ(descriptionText(asBytes(payloadOf(file, "bext"))),
                  "sSCENE=1\r\nsTRK1=third\r\nsTRK2=Boom & Co\r\nsTRK3=Lav/Mic: A\r\n");
        EXPECT_EQ(payloadOf(file, "bext").size(), 603U);

        const OperationAudioResult back = stage.runOne("take_order", stage.reorder({1, 2, 0}));
        EXPECT_TRUE(payloadOf(*back.destinationURL, "data") == payloadOf(before, "data"));
    }
}

TEST(Reorder, LetsTracksKeepTheirNumbersWhenAsked) {
    OperationStage stage;
    polyFile({.channels = 3}).write(stage.folder / "take.wav");
    const OperationAudioResult result = stage.runOne("take", stage.reorder({2, 0, 1}, true));
    EXPECT_EQ(numbers(*result.destinationURL), (std::map<int, int>{{1, 9}, {2, 7}, {3, 8}}));
    EXPECT_EQ(descriptionText(asBytes(payloadOf(*result.destinationURL, "bext"))),
              "sSCENE=1\r\nsTRK9=third\r\nsTRK7=Boom & Co\r\nsTRK8=Lav/Mic: A\r\n");
}

TEST(Reorder, RefusesWhatIsNoOrderOfAllChannels) {
    OperationStage stage;
    WavBuilder().fmt({.channels = 2}).audio(10).write(stage.folder / "a.wav");
    recorderFile().write(stage.folder / "m.wav");
    struct Case {
        const char* take;
        std::vector<int> mapping;
        const char* message;
    };
    const Case cases[] = {
        {"a", {0}, "a.wav reorder mapping must include all 2 channels."},
        {"a", {0, 1, 1}, "a.wav reorder mapping must include all 2 channels."},
        {"a", {0, 2}, "a.wav reorder mapping contains an out-of-range channel."},
        {"a", {-1, 0}, "a.wav reorder mapping contains an out-of-range channel."},
        {"a", {0, 0}, "a.wav reorder mapping contains duplicate or missing channels."},
        {"m", {0}, "Reorder Tracks requires a poly file or a mono group."},
    };
    for (const Case& one : cases) {
        const RunOutcome outcome = stage.run({stage.take(one.take)}, stage.reorder(one.mapping));
        EXPECT_EQ(outcome.results.at(0).message, one.message);
        EXPECT_FALSE(outcome.results.at(0).success);
        EXPECT_EQ(outcome.refused, 1U);
    }
    const OperationAudioResult identity = stage.runOne("a", stage.reorder({0, 1}));
    EXPECT_EQ(identity.message, "Identity mapping — no output created.");
    EXPECT_TRUE(identity.success && identity.destinationURLs.empty());
    EXPECT_THAT(test::namesIn(stage.folder.path()), ElementsAre("a.wav", "m.wav"));
}

TEST(Reorder, WritesAMonoSetAnewUnderItsNewNumbers) {
    OperationStage stage;
    for (int number = 1; number <= 3; ++number) {
        Ixml ixml;
        ixml.tracks = {{number + 4, 1, "name " + std::to_string(number)}};
        recorderFile(ixml, {}, 1001, static_cast<unsigned>(number))
            .write(stage.folder / ("SC12-T03_" + std::string("0") + std::to_string(number) + ".wav"));
    }
    const std::vector<std::filesystem::path> expected = {stage.folder / "SC12-T03_order_01.wav",
                                                         stage.folder / "SC12-T03_order_02.wav",
                                                         stage.folder / "SC12-T03_order_03.wav"};
    EXPECT_EQ(reorderPreview(stage.take("SC12-T03"), {1, 2, 0}, {}), expected);
    EXPECT_TRUE(reorderPreview(stage.take("SC12-T03"), {0, 1, 2}, {}).empty());
    const OperationAudioResult result = stage.runOne("SC12-T03", stage.reorder({1, 2, 0}));
    EXPECT_EQ(result.destinationURLs, expected) << result.message;
    EXPECT_EQ(names(expected[0]), (std::map<int, std::string>{{1, "name 2"}}));
    EXPECT_EQ(numbers(expected[2]), (std::map<int, int>{{1, 3}}));
    EXPECT_EQ(payloadOf(expected[2], "data"), payloadOf(stage.folder / "SC12-T03_01.wav", "data"));
    expectStandardForm(readFile(expected[1]));
    const OperationAudioResult kept = stage.runOne("SC12-T03", stage.reorder({1, 2, 0}, true));
    EXPECT_EQ(kept.destinationURLs.front(), stage.folder / "SC12-T03-1_order_01.wav");
    EXPECT_EQ(numbers(kept.destinationURLs.front()), (std::map<int, int>{{1, 6}}));
}

TEST(Reorder, TakesNoMoreMonoFilesThanTwoDigitsCount) {
    OperationStage stage;
    GroupeFichiers groupe;
    groupe.nom = "many";
    groupe.fichiers = Fichiers(std::vector<InfoFichier>(100));
    std::vector<int> mapping(100);
    EXPECT_EQ(stage.run({groupe}, stage.reorder(mapping)).results.at(0).message,
              "Mono Reorder supports up to 99 files with the current mono grouping parser.");
}

TEST(DeleteTracks, LeavesTheOthersInTheirOrder) {
    OperationStage stage;
    const auto source = polyFile({.channels = 3, .extensible = true}).write(stage.folder / "take.wav");
    const OperationAudioResult result = stage.runOne("take", stage.deleteTracks({1}));
    EXPECT_EQ(result.message, "Created take_del.wav");
    const Bytes file = readFile(*result.destinationURL);
    EXPECT_EQ(asBytes(payloadOf(file, "fmt ")).size(), 40U);
    EXPECT_EQ(payloadOf(file, "fmt "), asText(test::fmtPayload({.channels = 2, .extensible = true})));
    const std::string audio = payloadOf(source, "data");
    EXPECT_TRUE(channelOf(payloadOf(file, "data"), 2, 3, 0) == channelOf(audio, 3, 3, 0));
    EXPECT_TRUE(channelOf(payloadOf(file, "data"), 2, 3, 1) == channelOf(audio, 3, 3, 2));
    EXPECT_EQ(numbers(*result.destinationURL), (std::map<int, int>{{1, 7}, {2, 9}}));
    EXPECT_EQ(descriptionText(asBytes(payloadOf(file, "bext"))), "sSCENE=1\r\nsTRK7=Boom & Co\r\nsTRK9=third\r\n");

    const OperationAudioResult one = stage.runOne("take", stage.deleteTracks({0, 2}));
    EXPECT_EQ(probed(*one.destinationURL).channels, 1);
    EXPECT_EQ(one.destinationURL, stage.folder / "take-1_del.wav");
    EXPECT_EQ(names(*one.destinationURL), (std::map<int, std::string>{{1, "Lav/Mic: A"}}));
}

TEST(DeleteTracks, RefusesWhatLeavesNothingOrTakesNothing) {
    OperationStage stage;
    WavBuilder().fmt({.channels = 2}).audio(10).write(stage.folder / "a.wav");
    recorderFile().write(stage.folder / "m.wav");
    WavBuilder().fmt({.channels = 2}).audio(10).chunk("chna", "x").write(stage.folder / "c.wav");
    const auto message = [&](const char* take, std::set<int> canaux) {
        return stage.runOne(take, stage.deleteTracks(std::move(canaux))).message;
    };
    EXPECT_EQ(message("a", {}), "Select at least one track to remove.");
    EXPECT_EQ(message("a", {0, 1}), "At least one track must remain.");
    EXPECT_EQ(message("a", {0, 2}), "a.wav has no track 3: it has 2.");
    EXPECT_EQ(message("m", {0}), "Delete tracks requires a poly file.");
    EXPECT_EQ(message("c", {0}), "c.wav contains chna metadata that Reorder Tracks cannot safely remap.");
    EXPECT_EQ(test::namesIn(stage.folder.path()).size(), 3U);
}

TEST(Split, NamesFilesByNumberAndCleanName) {
    OperationStage stage;
    polyFile({.channels = 3}).write(stage.folder / "take.wav");
    const auto preview = splitPreview(stage.take("take"));
    std::vector<std::string> previewed;
    for (const OperationAudioSplitPreviewItem& item : preview)
        previewed.push_back(item.id() + " " + item.fileName);
    EXPECT_THAT(previewed, ElementsAre("mono-0 take_split_T07_Boom_&_Co.wav", "mono-1 take_split_T08_Lav_Mic_A.wav",
                                       "mono-2 take_split_T09.wav", "stereo-1-2 take_split_T01-T02.wav"));
    const OperationAudioResult result = stage.runOne("take", stage.split({0, 2}, true));
    EXPECT_EQ(result.message,
              "Created 3 split files: take_split_T07_Boom_&_Co.wav, take_split_T09.wav, take_split_T01-T02.wav");
    EXPECT_EQ(numbers(result.destinationURLs.at(1)), (std::map<int, int>{{1, 9}}));
    EXPECT_EQ(numbers(result.destinationURLs.at(2)), (std::map<int, int>{{1, 7}, {2, 8}}));
    EXPECT_EQ(cleanedTrackName(" a//b\\:\r\n\t\xC2\xA0 c d\xE3\x80\x80"), "a_b_c_d");
    EXPECT_EQ(cleanedTrackName(std::string_view("x\0y", 3)), "x_y");
    EXPECT_EQ(cleanedTrackName("<a>b|c?\x01*\x7F\"d\""), "a_b_c_d") << "what volumes of cards refuse";
}

TEST(Split, RefusesWhatCannotBeSplit) {
    OperationStage stage;
    WavBuilder().fmt({.channels = 2}).audio(10).write(stage.folder / "a.wav");
    recorderFile().write(stage.folder / "m.wav");
    EXPECT_EQ(stage.runOne("m", stage.split({0})).message, "Split requires a poly file with at least two channels.");
    EXPECT_EQ(stage.runOne("a", stage.split({})).message, "Select at least one split output.");
    EXPECT_EQ(stage.runOne("a", stage.split({2})).message, "a.wav has no track 3: it has 2.");
    EXPECT_TRUE(splitPreview(stage.take("m")).empty());
}

TEST(Split, MakesMoreFilesThanAProcessMayOpen) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer needs handles of its own to look at objects";
#endif
    for (const rlim_t handles : {rlim_t{64}, rlim_t{1024}}) {
        OperationStage stage;
        constexpr std::uint16_t channels = 300;
        const auto source =
            WavBuilder().fmt({.channels = channels, .bits = 16}).audio(50).write(stage.folder / "take.wav");
        std::set<int> all;
        for (int canal = 0; canal < channels; ++canal)
            all.insert(canal);
        EXPECT_EQ(test::inChild([&] {
                      const rlimit few{handles, handles};
                      const auto planner = stage.split(all);
                      const GroupeFichiers take = stage.take("take");
                      if (::setrlimit(RLIMIT_NOFILE, &few) != 0) return 1;
                      return test::allDone(stage.run({take}, planner)) ? 0 : 2;
                  }),
                  0);
        const std::string audio = payloadOf(source, "data");
        for (const std::size_t canal : {0U, 60U, 127U, 128U, 299U}) {
            const std::string name = "take_split_T" + std::string(canal < 9 ? "0" : "") + std::to_string(canal + 1);
            EXPECT_EQ(payloadOf(stage.folder / (name + ".wav"), "data"), channelOf(audio, channels, 2, canal)) << name;
        }
        EXPECT_EQ(test::namesIn(stage.folder.path()).size(), channels + 1U);
    }
}

TEST(SplitThenMerge, GivesTheVeryAudioBack) {
    for (const Pcm& pcm : everyPcm) {
        SCOPED_TRACE(pcm.bits);
        OperationStage stage;
        const auto source = polyFile(pcm, 30001).write(stage.folder / "take.wav");
        const OperationAudioResult split = stage.runOne("take", stage.split({0, 1, 2}));
        ASSERT_EQ(split.destinationURLs.size(), 3U) << split.message;
        for (const std::filesystem::path& mono : split.destinationURLs) {
            expectStandardForm(readFile(mono));
            EXPECT_EQ(others(readFile(mono)), others(readFile(source)));
        }
        const OperationAudioResult merged = stage.runOne("take_split", stage.merge());
        ASSERT_TRUE(merged.success) << merged.message;
        EXPECT_TRUE(payloadOf(*merged.destinationURL, "data") == payloadOf(source, "data"));
        EXPECT_EQ(payloadOf(*merged.destinationURL, "fmt "), payloadOf(source, "fmt "));
        EXPECT_EQ(names(*merged.destinationURL),
                  (std::map<int, std::string>{{1, "Boom &amp; Co"}, {2, "Lav/Mic: A"}, {3, "Track 9"}}));
        EXPECT_EQ(numbers(*merged.destinationURL), (std::map<int, int>{{1, 1}, {2, 2}, {3, 3}}));
    }
}

TEST(Merge, SaysWhatCameOfTheAudioAndEvadesNamesThatAreTaken) {
    OperationStage stage;
    for (const int number : {1, 2, 3})
        recorderFile({}, {.bits = 16}, 1000, static_cast<unsigned>(number))
            .write(stage.folder / ("take_T0" + std::to_string(number) + ".wav"));
    test::writeFile(stage.folder / "take_merge.wav", "");
    OperationAudioResult result = stage.runOne("take", stage.merge());
    EXPECT_EQ(result.message, "Created take-1_merge.wav. Audio data preserved: 6 KB.");
    result = stage.runOne("take", stage.merge({stage.folder / "TAKE_t02.wav"}));
    EXPECT_EQ(result.message, "Created take-2_merge.wav. Audio data preserved: 4 KB.");
    EXPECT_EQ(channelOf(payloadOf(*result.destinationURL, "data"), 2, 2, 1),
              payloadOf(stage.folder / "take_T03.wav", "data"));
}

TEST(Merge, SaysWhenTheFilesDoNotBeginTogetherAndLeavesOutPartsOfAFrame) {
    struct Case {
        std::uint64_t secondStart;
        const char* message;
    };
    const Case cases[] = {{7, "Created take_merge.wav. Audio data preserved: 600 B."},
                          {8,
                           "Created take_merge.wav. Audio data preserved: 600 B. Mono sources do not share the "
                           "same start alignment: the new file has the start of the first."}};
    for (const Case& one : cases) {
        OperationStage stage;
        for (const int number : {1, 2})
            WavBuilder()
                .bext({.timeReference = number == 1 ? 7 : one.secondStart})
                .fmt()
                .chunk("data", test::audioBytes(number == 1 ? 302 : 301))
                .write(stage.folder / ("take_T0" + std::to_string(number) + ".wav"));
        EXPECT_EQ(stage.runOne("take", stage.merge()).message, one.message);
    }
}

TEST(Merge, RefusesFilesThatDoNotBelongTogether) {
    struct Case {
        Pcm second;
        std::size_t frames;
        std::string message;
    };
    const Case cases[] = {
        {{.bits = 24}, 999, "take_T02.wav does not have the same duration."},
        {{.bits = 16}, 1000, "take_T02.wav does not have the same PCM format."},
        {{.bits = 24, .extensible = true}, 1000, "take_T02.wav does not have the same PCM format."},
        {{.channels = 1, .rate = 48000, .bits = 32}, 500, "take_T02.wav does not have the same PCM format."},
    };
    for (const Case& one : cases) {
        OperationStage stage;
        recorderFile({}, {}, 1000, 1).write(stage.folder / "take_T01.wav");
        recorderFile({}, one.second, one.frames, 2).write(stage.folder / "take_T02.wav");
        EXPECT_EQ(stage.runOne("take", stage.merge()).message, one.message);
        EXPECT_EQ(test::namesIn(stage.folder.path()).size(), 2U);
        const auto all = {stage.folder / "take_T01.wav", stage.folder / "take_T02.wav"};
        EXPECT_EQ(stage.runOne("take", stage.merge(all)).message, "No source files to merge.");
        EXPECT_EQ(stage.runOne("take", stage.merge({stage.folder / "take_T01.wav"})).message,
                  "Merge requires a mono group with at least two files.");
        EXPECT_FALSE(isMergeable(stage.take("take")) && one.frames == 999);
    }
}

TEST(TrackOperations, StandFilesWithoutAFrame) {
    OperationStage stage;
    WavBuilder().fmt({.channels = 2}).chunk("data", "abc").write(stage.folder / "take.wav");
    EXPECT_TRUE(stage.runOne("take", stage.split({0, 1})).success);
    EXPECT_EQ(payloadOf(stage.folder / "take_split_T01.wav", "data"), "");
}

TEST(TrackOperations, ArePlannedOnlyWhereTheirFilesCanBeMade) {
    OperationStage stage;
    WavBuilder().fmt({.channels = 2}).audio(10).write(stage.folder / (std::string(246, 'x') + ".wav"));
    WavBuilder().fmt({.channels = 2}).audio(10).write(stage.folder / "short.wav");
    const auto error = [&](const std::string& name) {
        const auto planned = planGroups(stage.ops, {stage.take(name)}, stage.reorder({1, 0}), {});
        const RunOutcome outcome = stage.run({stage.take(name)}, stage.reorder({1, 0}));
        EXPECT_EQ(planned.at(0).error, outcome.results.at(0).success ? "" : outcome.results.at(0).message);
        EXPECT_TRUE(planned.at(0).error.empty() || planned.at(0).plan.outputs.empty());
        return planned.at(0).error;
    };
    EXPECT_THAT(error(std::string(246, 'x')), testing::HasSubstr("the name is longer than the 255 bytes"));
    EXPECT_EQ(error("short"), "");
    stage.ops.readOnlyFolders = true;
    EXPECT_EQ(error("short"), "short-1_order.wav: Permission denied");
}

TEST(TrackOperations, GoOnWithTheNextTakeWhenOneFails) {
    OperationStage stage;
    WavBuilder().fmt({.channels = 2}).audio(100).write(stage.folder / "a.wav");
    WavBuilder().fmt({.channels = 2}).chunkClaiming("data", test::audioBytes(60), 600).write(stage.folder / "b.wav");
    WavBuilder().fmt({.channels = 2}).audio(100).write(stage.folder / "c.wav");
    std::uint64_t last = 0;
    const RunOutcome outcome = stage.run({stage.take("a"), stage.take("b"), stage.take("c")}, stage.split({1, 0}),
                                         {nullptr, [&](const Progress& progress) {
                                              EXPECT_GE(progress.doneBytes, last);
                                              EXPECT_LE(progress.doneBytes, progress.allBytes);
                                              last = progress.doneBytes;
                                          }});
    ASSERT_EQ(outcome.results.size(), 3U);
    EXPECT_TRUE(outcome.results[0].success && outcome.results[2].success);
    EXPECT_EQ(outcome.results[1].message, "b.wav: Unexpected end of audio data.");
    EXPECT_FALSE(test::allDone(outcome));
    EXPECT_EQ(outcome.refused, 1U) << "nothing of it was begun";
    EXPECT_GT(last, 0U);
}

}  // namespace
}  // namespace dravik
