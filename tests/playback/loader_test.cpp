#include "base/file_error.h"
#include "base/paths.h"
#include "platform/available_memory.h"
#include "platform/linux/linux_memory.h"
#include "playback/pcm_loader.h"
#include "tests/playback/sample_files.h"
#include "tests/support/files.h"
#include "tests/support/samples.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <cmath>
#include <limits>
#include <mutex>
#include <set>

#include <gtest/gtest.h>

namespace dravik::test {
namespace {

std::shared_ptr<const PcmTake> load(const std::vector<std::filesystem::path>& files, bool estPoly,
                                    const TaskContext& task = {}, const AvailableMemory& memory = {}) {
    return loadTake(files, estPoly, codecs(), memory, task);
}

TEST(LoadTake, EveryLinearEncodingComesOutExact) {
    const TempFolder folder;
    constexpr std::int64_t frames = 300001;  // several claims of the workers, the last one short
    const struct {
        std::uint16_t tag, channels, bits;
    } cases[] = {{1, 2, 8}, {1, 1, 16}, {1, 3, 16}, {1, 2, 24}, {1, 7, 24}, {1, 2, 32}, {3, 2, 32}, {3, 3, 64}};
    for (const char* form : {"RIFF", "RF64"}) {
        for (const auto& one : cases) {
            SCOPED_TRACE(testing::Message() << form << " " << one.bits << " bits, " << one.channels << " channels");
            Bytes data;
            for (std::int64_t i = 0; i < frames; ++i) {
                for (int c = 0; c < one.channels; ++c)
                    appendSample(data, valueAt(i, c), one.bits, one.tag == 3);
            }
            WavBuilder wav(form);
            if (std::string_view(form) == "RF64") wav.ds64(data.size());
            wav.chunk("fmt ", fmtOf(one.tag, one.channels, one.bits));
            if (std::string_view(form) == "RF64") {
                wav.chunkClaiming("data", data, 0xFFFFFFFFU);
            } else {
                wav.chunk("data", data);
            }
            const auto take = load({wav.write(folder / "a.wav")}, true);
            ASSERT_EQ(take->nbCanaux, one.channels);
            ASSERT_EQ(take->frameTotal, frames);
            ASSERT_EQ(take->sampleRate, 48000);
            for (int c = 0; c < one.channels; ++c) {
                const std::span<const float> canal = take->canal(c);
                for (std::int64_t i = 0; i < frames; ++i) {
                    ASSERT_EQ(double{canal[static_cast<std::size_t>(i)]}, valueAt(i, c)) << i << " " << c;
                }
            }
        }
    }
}

TEST(LoadTake, FloatsThatAreNoNumbersAreSilence) {
    const TempFolder folder;
    Bytes narrow;
    Bytes wide;
    for (const double value :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1.5}) {
        appendSample(narrow, value, 32, true);
        appendSample(wide, value, 64, true);
    }
    appendSample(wide, 1e300, 64, true);
    for (const auto& [bits, data] : {std::pair<std::uint16_t, Bytes>{32, narrow}, {64, wide}}) {
        const auto take =
            load({WavBuilder().chunk("fmt ", fmtOf(3, 1, bits)).chunk("data", data).write(folder / "a.wav")}, true);
        std::vector<float> wanted{0, 0, 1.5F};
        if (bits == 64) wanted.push_back(0);
        EXPECT_EQ(std::vector<float>(take->canal(0).begin(), take->canal(0).end()), wanted);
    }
}

TEST(LoadTake, AMonoSetKeepsItsOrderAndLastsAsLongAsItsLongestFile) {
    const TempFolder folder;
    std::vector<std::filesystem::path> files;
    for (const std::size_t frames : {std::size_t{1000}, std::size_t{3000}, std::size_t{0}}) {
        Bytes data;
        for (std::size_t i = 0; i < frames; ++i)
            appendSample(data, frames == 1000 ? 0.5 : 0.25, 24, false);
        files.push_back(WavBuilder()
                            .chunk("fmt ", fmtOf(1, 1, 24))
                            .chunk("data", data)
                            .write(folder / (std::to_string(frames) + ".wav")));
    }
    const auto take = load(files, false);
    EXPECT_EQ(take->nbCanaux, 3);
    EXPECT_EQ(take->frameTotal, 3000);
    EXPECT_EQ(take->canal(0).size(), 1000U);
    EXPECT_EQ(take->canal(0).back(), 0.5F);
    EXPECT_EQ(take->canal(1).back(), 0.25F);
    EXPECT_TRUE(take->canal(2).empty());
}

TEST(LoadTake, WhatCannotBePlayedIsRefusedWithTheReason) {
    const TempFolder folder;
    const auto mono = WavBuilder().fmt({.channels = 1}).audio(100).write(folder / "mono.wav");
    const auto stereo = WavBuilder().fmt({.channels = 2}).audio(100).write(folder / "stereo.wav");
    const auto other = WavBuilder().fmt({.channels = 1, .rate = 44100}).audio(100).write(folder / "other.wav");
    const auto noRate = WavBuilder().fmt({.channels = 1, .rate = 0}).audio(100).write(folder / "norate.wav");
    writeFile(folder / "text.wav", "this is not audio, and long enough to be looked at as if it were");
    using Case = PlaybackError::Case;
    const struct {
        std::vector<std::filesystem::path> files;
        Case kind;
    } cases[] = {{{mono, stereo}, Case::notMono},
                 {{mono, other}, Case::ratesDiffer},
                 {{noRate}, Case::noAudio},
                 {{}, Case::noAudio}};
    for (const auto& one : cases) {
        try {
            static_cast<void>(load(one.files, false));
            ADD_FAILURE() << "was loaded";
        } catch (const PlaybackError& error) {
            EXPECT_EQ(error.kind(), one.kind) << error.what();
        }
    }
    EXPECT_THROW(static_cast<void>(load({folder / "text.wav"}, true)), std::filesystem::filesystem_error);
    EXPECT_THROW(static_cast<void>(load({folder / "absent.wav"}, true)), std::filesystem::filesystem_error);
}

TEST(LoadTake, ATakeThatDoesNotFitIsRefusedBeforeAnythingIsAllocated) {
    const TempFolder folder;
    // Sparse: four hours of 32 channels, which nobody could allocate here.
    constexpr std::uint64_t bytes = 4ULL * 3600 * 48000 * 32 * 3;
    WavBuilder wav("RF64");
    wav.ds64(bytes).chunk("fmt ", fmtOf(1, 32, 24)).chunkClaiming("data", {}, 0xFFFFFFFFU);
    const auto file = wav.write(folder / "long.wav");
    std::filesystem::resize_file(file, std::filesystem::file_size(file) + bytes);
    try {
        static_cast<void>(load({file}, true, {}, [] { return std::uint64_t{6'000'000'000}; }));
        ADD_FAILURE() << "was loaded";
    } catch (const PlaybackError& error) {
        EXPECT_EQ(error.kind(), PlaybackError::Case::noRoom);
        EXPECT_STREQ(error.what(),
                     "This take is too large to be played: it needs 88.5 GB of memory, and 6.0 GB are available now.");
    }
    // More frames in a channel than the player can count.
    constexpr std::uint64_t tooMany = 0x1'0000'0001ULL;
    WavBuilder longer("RF64");
    longer.ds64(tooMany).chunk("fmt ", fmtOf(1, 1, 8)).chunkClaiming("data", {}, 0xFFFFFFFFU);
    const auto longest = longer.write(folder / "longest.wav");
    std::filesystem::resize_file(longest, std::filesystem::file_size(longest) + tooMany);
    try {
        static_cast<void>(load({longest}, true));
        ADD_FAILURE() << "was loaded";
    } catch (const PlaybackError& error) {
        EXPECT_EQ(error.kind(), PlaybackError::Case::tooLong);
    }
}

TEST(LoadTake, TellsHowFarItIsAndStopsWhenItIsCancelled) {
    const TempFolder folder;
    std::vector<std::filesystem::path> files;
    for (const char* name : {"a.wav", "b.wav"})
        files.push_back(WavBuilder().fmt({.channels = 1, .bits = 16}).audio(2'000'000).write(folder / name));
    CancellationToken token;
    std::uint64_t last = 0;
    std::set<std::string> names;
    const TaskContext watching{&token, [&](const Progress& progress) {
                                   EXPECT_GT(progress.doneBytes, last);
                                   EXPECT_EQ(progress.allBytes, 8'000'000U);
                                   last = progress.doneBytes;
                                   names.emplace(progress.currentName);
                               }};
    static_cast<void>(load(files, false, watching));
    EXPECT_EQ(last, 8'000'000U);
    EXPECT_EQ(names, (std::set<std::string>{"a.wav", "b.wav"}));

    int reports = 0;
    const TaskContext cancelling{&token, [&](const Progress&) {
                                     ++reports;
                                     token.cancel();
                                 }};
    EXPECT_THROW(static_cast<void>(load(files, false, cancelling)), Cancelled);
    EXPECT_LE(reports, 8) << "a block of each thread at most";
}

TEST(LoadTake, AFileOfAnotherFormatIsDecodedByTheCodecs) {
    const TempFolder folder;
    constexpr std::uint32_t frames = 100000;
    // AIFF of two channels in 16 bits: as WAV, but with the bytes of every number the other way round.
    Bytes file;
    const auto big = [&file](std::uint64_t value, unsigned bytes) {
        for (unsigned i = bytes; i-- > 0;)
            file.push_back(static_cast<std::byte>((value >> (8 * i)) & 0xFFU));
    };
    append(file, "FORM");
    big(4 + 26 + 16 + frames * 4, 4);
    append(file, "AIFFCOMM");
    big(18, 4);
    big(2, 2);
    big(frames, 4);
    big(16, 2);
    big(0x400E, 2);  // 48000 as an 80-bit float
    big(0xBB80'0000'0000'0000ULL, 8);
    append(file, "SSND");
    big(8 + frames * 4, 4);
    big(0, 8);
    for (std::int64_t i = 0; i < frames; ++i) {
        for (int c = 0; c < 2; ++c)
            big(static_cast<std::uint64_t>(static_cast<std::int64_t>(valueAt(i, c) * 32768)), 2);
    }
    writeFile(folder / "a.aif", file);
    const auto take = load({folder / "a.aif"}, true);
    ASSERT_EQ(take->nbCanaux, 2);
    ASSERT_EQ(take->frameTotal, frames);
    for (int c = 0; c < 2; ++c) {
        for (std::int64_t i = 0; i < frames; ++i)
            ASSERT_EQ(double{take->canal(c)[static_cast<std::size_t>(i)]}, valueAt(i, c)) << i << " " << c;
    }
}

TEST(LoadTake, ACompressedFileIsDecodedWhole) {
    DRAVIK_NEEDS_SAMPLES();
    int decoded = 0;
    for (const char* extension : {".flac", ".aif", ".aiff", ".caf", ".mp3", ".m4a"}) {
        for (const std::filesystem::path& file : samplesOf(extension)) {
            SCOPED_TRACE(pathText(file));
            std::unique_ptr<SampleStream> stream;
            try {
                stream = codecs().open(file);
            } catch (const std::filesystem::filesystem_error&) {
                continue;  // some are damaged on purpose
            }
            const AudioFormat format = stream->format();
            const auto take = load({file}, true);
            EXPECT_EQ(take->nbCanaux, format.channels);
            EXPECT_LE(take->frameTotal, format.frames);
            EXPECT_GT(take->frameTotal, format.frames - 4800) << "a tenth of a second may be lost at a damaged end";
            for (int c = 0; c < take->nbCanaux; ++c) {
                for (const float sample : take->canal(c))
                    ASSERT_LT(std::abs(sample), 4.0F);
            }
            ++decoded;
        }
    }
    EXPECT_GT(decoded, 0);
}

TEST(LoadTake, EveryRealRecordingIsLoadedOrRefusedWithAReason) {
    DRAVIK_NEEDS_SAMPLES();
    for (const std::filesystem::path& file : samplesOf(".wav")) {
        SCOPED_TRACE(pathText(file));
        try {
            const auto take = load({file}, true, {}, availableMemory);
            EXPECT_GT(take->nbCanaux, 0);
            EXPECT_EQ(take->canal(take->nbCanaux - 1).size(), static_cast<std::size_t>(take->frameTotal));
        } catch (const std::exception& error) {
            EXPECT_NE(userText(error), "");
        }
    }
}

TEST(AvailableMemory, IsWhatTheMachineAndTheGroupsAroundTheProcessLeave) {
    const TempFolder root;
    const auto put = [&](const std::string& name, std::string_view text) {
        std::filesystem::create_directories((root / name).parent_path());
        writeFile(root / name, text);
    };
    EXPECT_FALSE(linuxAvailableMemory(root.path()));
    put("proc/meminfo", "MemTotal:  100 kB\nMemAvailable:   5000 kB\nSwapFree: 9 kB\n");
    EXPECT_EQ(linuxAvailableMemory(root.path()), 5'120'000U);
    put("proc/self/cgroup", "0::/user/app\n");
    put("sys/fs/cgroup/user/app/memory.max", "max\n");
    put("sys/fs/cgroup/user/app/memory.current", "10\n");
    EXPECT_EQ(linuxAvailableMemory(root.path()), 5'120'000U) << "no limit";
    put("sys/fs/cgroup/user/memory.max", "1000000\n");
    put("sys/fs/cgroup/user/memory.current", "900000\n");
    EXPECT_EQ(linuxAvailableMemory(root.path()), 100'000U);
    put("sys/fs/cgroup/user/memory.stat", "anon 5\nfile 7\ninactive_file 300000\n");
    EXPECT_EQ(linuxAvailableMemory(root.path()), 400'000U) << "files that nobody uses are given up";
    put("sys/fs/cgroup/user/memory.current", "2000000\n");
    EXPECT_EQ(linuxAvailableMemory(root.path()), 0U);
    EXPECT_GT(availableMemory().value_or(0), 1'000'000U) << "of this machine";
}

}  // namespace
}  // namespace dravik::test
