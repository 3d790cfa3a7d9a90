#include "playback/peaks.h"

#include "base/paths.h"
#include "playback/pcm_loader.h"
#include "playback/peak_computation.h"
#include "tests/playback/sample_files.h"
#include "tests/support/files.h"
#include "tests/support/samples.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <set>

#include <gtest/gtest.h>

namespace dravik::test {
namespace {

std::vector<FilePeaks> peaksOf(const std::vector<std::filesystem::path>& files, const CoarsePeaksSink& sink = {},
                               const TaskContext& task = {}, const SampleDecoder& decoder = codecs()) {
    std::vector<PeakRequest> requests;
    for (const std::filesystem::path& file : files)
        requests.push_back({file, requests.size()});
    return computePeaks(requests, decoder, sink, task);
}

PeakLevel levelOf(int channels, std::int64_t frames, std::int64_t width) {
    const std::size_t bins = binsFor(frames, width);
    return {width, bins, std::vector<PeakValue>(bins * static_cast<std::size_t>(channels))};
}

/// Every value holds all samples in it, and is no more than a step wider.
void expectExtremesOf(const PeakLevel& level, int channel, std::span<const float> samples) {
    ASSERT_EQ(level.bins, binsFor(static_cast<std::int64_t>(samples.size()), level.framesPerBin));
    const auto width = static_cast<std::size_t>(level.framesPerBin);
    for (std::size_t bin = 0; bin < level.bins; ++bin) {
        const auto part = samples.subspan(bin * width, std::min(width, samples.size() - bin * width));
        const auto [low, high] = std::minmax_element(part.begin(), part.end());
        const double lowest = std::clamp(double{*low} * 32768, -32768.0, 32767.0);
        const double highest = std::clamp(double{*high} * 32768, -32768.0, 32767.0);
        const PeakValue value = level.channel(channel)[bin];
        ASSERT_LE(value.lowest, lowest) << bin;
        ASSERT_GE(value.lowest, lowest - 1) << bin;
        ASSERT_GE(value.highest, highest) << bin;
        ASSERT_LE(value.highest, highest + 1) << bin;
    }
}

TEST(Peaks, EveryEncodingGivesTheExtremesOfItsSamples) {
    const TempFolder folder;
    std::mt19937 random(7);
    const struct { std::uint16_t tag, bits; } encodings[] = {{1, 8}, {1, 16}, {1, 24}, {1, 32}, {3, 32}, {3, 64}};
    for (const auto& [tag, bits] : encodings) {
        for (const std::uint16_t channels : std::initializer_list<std::uint16_t>{1, 2, 3, 7, 8, 32}) {
            for (const std::int64_t frames : {1, 127, 128, 5000, 100'003}) {
                if (frames > 5000 && channels == 32) continue;
                SCOPED_TRACE(testing::Message() << bits << " bits, " << channels << " channels, " << frames);
                Bytes data;
                const bool isFloat = tag == 3;
                std::uniform_real_distribution<double> sample(isFloat ? -1.5 : -1.0, isFloat ? 1.5 : 0.999);
                for (std::int64_t i = 0; i < frames; ++i) {
                    // Loud and quiet by turns, so that a neighbour's sample would be seen.
                    const double gain = i / 50 % 3 == 0 ? 1.0 : i / 50 % 3 == 1 ? 0.01 : 0.0;
                    for (int c = 0; c < channels; ++c)
                        appendSample(data, gain * sample(random) / (1 + c % 3), bits, isFloat);
                }
                const auto file =
                    WavBuilder().chunk("fmt ", fmtOf(tag, channels, bits)).chunk("data", data).write(folder / "a.wav");
                const auto take = loadTake({file}, true, codecs(), {}, {});
                const FilePeaks peaks = peaksOf({file}).front();
                ASSERT_EQ(peaks.channels, channels);
                ASSERT_EQ(peaks.frames, frames);
                for (int c = 0; c < channels; ++c) {
                    for (const PeakLevel* level :
                         {&peaks.donneesAudio, &peaks.donneesAudioHR, &peaks.donneesAudioUHR}) {
                        expectExtremesOf(*level, c, take->canal(c));
                    }
                }
                FilePeaks derived = peaks;
                derived.deriveCoarser();
                EXPECT_EQ(derived, peaks) << "what is cached must come back the same";
            }
        }
    }
}

TEST(Peaks, SilenceIsFlatAndFullScaleIsWhole) {
    const TempFolder folder;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    const struct {
        const char* what;
        std::uint16_t tag, bits;
        std::vector<double> samples;
        PeakColumn wanted;
    } cases[] = {
        {"digital silence in 24 bits", 1, 24, {0, 0, 0}, {0, 0, true}},
        {"digital silence in 8 bits", 1, 8, {0, 0, 0}, {0, 0, true}},
        {"the largest numbers of 24 bits", 1, 24, {8388607.0 / 8388608, -1}, {-1, 1, true}},
        {"the largest numbers of 16 bits", 1, 16, {32767.0 / 32768, -1}, {-1, 1, true}},
        {"the smallest number above nothing", 1, 24, {1.0 / 8388608}, {0, 0x1p-15F, true}},
        {"the smallest number below nothing", 1, 24, {-1.0 / 8388608}, {-0x1p-15F, 0, true}},
        {"beyond full scale", 3, 32, {7, -7}, {-1, 1, true}},
        {"no numbers", 3, 32, {nan, infinite, -infinite, 0.5}, {0, 0.5F, true}},
        {"no numbers in 64 bits", 3, 64, {nan, infinite, 1e300, -0.5}, {-0.5F, 0, true}},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.what);
        Bytes data;
        for (const double sample : one.samples)
            appendSample(data, sample, one.bits, one.tag == 3);
        TakePeaks take;
        take.files = peaksOf(
            {WavBuilder().chunk("fmt ", fmtOf(one.tag, 1, one.bits)).chunk("data", data).write(folder / "a.wav")});
        PeakColumn column;
        take.columns(0, 0, 1000, {&column, 1});
        EXPECT_EQ(column.lowest, one.wanted.lowest);
        EXPECT_EQ(column.highest, one.wanted.highest);
        EXPECT_TRUE(column.known);
    }
}

TEST(Peaks, CoarseColumnsComeWhileTheRestIsFoundAndMakeUpTheWhole) {
    const TempFolder folder;
    std::vector<std::filesystem::path> files;
    for (const std::size_t frames : {std::size_t{3'000'001}, std::size_t{70'000}, std::size_t{0}}) {
        files.push_back(WavBuilder()
                            .fmt({.channels = 2, .bits = 24})
                            .audio(frames, static_cast<unsigned>(frames))
                            .write(folder / (std::to_string(frames) + ".wav")));
    }
    TakePeaks seen;
    std::set<std::pair<std::size_t, std::size_t>> columns;
    std::size_t messages = 0;
    const std::vector<FilePeaks> whole = peaksOf(files, [&](const CoarsePeaks& found) {
        if (++messages <= files.size()) {
            EXPECT_EQ(found.columns, 0U) << "how large the files are comes first";
        }
        for (std::size_t i = 0; i < found.columns; ++i)
            EXPECT_TRUE(columns.emplace(found.file, found.firstColumn + i).second) << "each comes once";
        seen.add(found);
    });
    EXPECT_GT(messages, files.size() + 4);
    ASSERT_EQ(seen.files.size(), files.size());
    for (std::size_t i = 0; i < files.size(); ++i)
        EXPECT_EQ(seen.files[i].donneesAudio, whole[i].donneesAudio);
    EXPECT_EQ(seen.nbCanaux(), 6);
    EXPECT_EQ(seen.frameTotal(), 3'000'001);
    EXPECT_LE(whole[0].donneesAudio.bins, static_cast<std::size_t>(maximumCoarseColumns));

    CoarsePeaks strange{0, 2, 3'000'001, 48000, seen.files[0].donneesAudio.framesPerBin, 100'000, 5, {}};
    seen.add(strange);
    strange.firstColumn = 0;
    seen.add(strange);
    EXPECT_EQ(seen.files[0].donneesAudio, whole[0].donneesAudio) << "what does not fit changes nothing";
}

/// Announces more than it gives, in pieces of an odd length.
class ShortDecoder final : public SampleDecoder {
  public:
    class Stream final : public SampleStream {
      public:
        [[nodiscard]] const AudioFormat& format() const noexcept override { return format_; }
        [[nodiscard]] std::size_t read(std::span<float> into) override {
            const std::size_t frames = std::min<std::size_t>({into.size() / 2, 1777, 500'000 - done_});
            for (std::size_t i = 0; i < frames * 2; ++i)
                into[i] =
                    static_cast<float>(valueAt(static_cast<std::int64_t>(done_ + i / 2), static_cast<int>(i % 2)));
            done_ += frames;
            return frames;
        }

      private:
        AudioFormat format_{2, 48000, 0, 60'000'000};
        std::size_t done_ = 0;
    };
    [[nodiscard]] std::unique_ptr<SampleStream> open(const std::filesystem::path&) const override {
        return std::make_unique<Stream>();
    }
};

TEST(Peaks, ADecodedFileThatEndsEarlyIsAsLongAsWhatCame) {
    const TempFolder folder;
    writeFile(folder / "a.flac", "not really");
    TakePeaks seen;
    const FilePeaks peaks =
        peaksOf(
            {folder / "a.flac"}, [&](const CoarsePeaks& found) { seen.add(found); }, {}, ShortDecoder())
            .front();
    EXPECT_EQ(peaks.frames, 500'000);
    std::vector<float> samples(500'000);
    for (int c = 0; c < 2; ++c) {
        for (std::size_t i = 0; i < samples.size(); ++i)
            samples[i] = static_cast<float>(valueAt(static_cast<std::int64_t>(i), c));
        for (const PeakLevel* level : {&peaks.donneesAudio, &peaks.donneesAudioHR, &peaks.donneesAudioUHR})
            expectExtremesOf(*level, c, samples);
    }
    PeakColumn column;
    seen.columns(1, 100'000, 1000, {&column, 1});
    EXPECT_TRUE(column.known) << "was shown while it was decoded";
    seen.columns(1, 50'000'000, 1000, {&column, 1});
    EXPECT_FALSE(column.known);
}

TEST(Peaks, StopAtACancelAndAtTheFirstFileThatCannotBeRead) {
    const TempFolder folder;
    std::vector<std::filesystem::path> files;
    for (const char* name : {"a.wav", "b.wav"})
        files.push_back(WavBuilder().fmt({.channels = 1, .bits = 16}).audio(3'000'000).write(folder / name));
    CancellationToken token;
    int reports = 0;
    std::uint64_t all = 0;
    const TaskContext cancelling{&token, [&](const Progress& progress) {
                                     ++reports;
                                     all = progress.allBytes;
                                     token.cancel();
                                 }};
    EXPECT_THROW(static_cast<void>(peaksOf(files, {}, cancelling)), Cancelled);
    EXPECT_LE(reports, 8) << "a block of each thread at most";
    EXPECT_EQ(all, 12'000'000U);
    files.push_back(folder / "absent.wav");
    EXPECT_THROW(static_cast<void>(peaksOf(files)), std::filesystem::filesystem_error);
    // Cut while it is read.
    EXPECT_THROW(static_cast<void>(peaksOf(
                     {files[0]}, [&](const CoarsePeaks&) { std::filesystem::resize_file(files[0], 1'000'000); })),
                 std::filesystem::filesystem_error);
}

TEST(PeakWidths, NoTakeIsLargerThanItsLimitAndNoneIsCoarserThanItMust) {
    constexpr std::int64_t hour = std::int64_t{48000} * 3600;
    const struct {
        int channels;
        std::int64_t frames;
        PeakWidths wanted;
    } cases[] = {
        {1, 0, {8192, 1024, 128}},
        {1, 1, {8192, 1024, 128}},
        {8, hour / 6, {8192, 1024, 128}},
        {1, maximumPeakBins * 128, {16384, 1024, 128}},
        {1, maximumPeakBins * 128 + 1, {32768, 2048, 256}},
        {32, hour, {65536, 4096, 512}},
        {1, maximumPeakFrames, {1 << 28, 1 << 24, 1 << 21}},
        {65535, hour, {8 * 8 << 20, 8 << 20, 1 << 20}},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(testing::Message() << one.channels << " channels, " << one.frames << " frames");
        const PeakWidths widths = peakWidths(one.channels, one.frames);
        EXPECT_EQ(widths, one.wanted) << widths.coarse << " " << widths.high << " " << widths.ultraHigh;
        const auto bins = static_cast<std::int64_t>(binsFor(one.frames, widths.ultraHigh));
        EXPECT_LE(bins * one.channels, maximumPeakValues);
        EXPECT_LE(static_cast<std::int64_t>(binsFor(one.frames, widths.coarse)), maximumCoarseColumns);
    }
}

/// Two files of noise with bursts; the second is shorter.
struct NoiseTake {
    std::vector<std::vector<float>> samples;
    TakePeaks peaks;

    NoiseTake() {
        std::mt19937 random(3);
        for (const std::size_t frames : {std::size_t{900'001}, std::size_t{200'000}}) {
            std::vector<float> channel(frames);
            for (std::size_t i = 0; i < frames; ++i) {
                const int step = static_cast<int>(random() % 60000) - 30000;
                channel[i] = static_cast<float>(random() % 997 == 0 ? step : step / 500) * 0x1p-15F;
            }
            FilePeaks file{1, static_cast<std::int64_t>(frames), 48000, {}, {}, {}};
            file.donneesAudioUHR = levelOf(1, file.frames, 64);
            for (std::size_t i = 0; i < frames; ++i) {
                const auto step = static_cast<std::int16_t>(channel[i] * 32768);
                file.donneesAudioUHR.values[i / 64].add({step, step});
            }
            file.deriveCoarser();
            peaks.files.push_back(std::move(file));
            samples.push_back(std::move(channel));
        }
    }
};

TEST(PeakColumns, NoColumnHidesASampleAndNoneReachesFurtherThanABin) {
    const NoiseTake take;
    std::mt19937 random(5);
    // Every resolution, on both sides of where the next takes over, and wider than the take.
    for (const double zoom : {0.1, 1.0, 3.7, 63.9, 64.0, 64.1, 511.0, 512.0, 700.3, 4095.0, 4096.0, 5000.5, 100'000.0,
                              900'001.0, 2'000'000.0, 1e12}) {
        for (int c = 0; c < 2; ++c) {
            const auto& samples = take.samples[static_cast<std::size_t>(c)];
            const auto frames = static_cast<std::int64_t>(samples.size());
            for (const std::int64_t first : {std::int64_t{0}, std::int64_t{-1000}, frames - 5,
                                             static_cast<std::int64_t>(random() % samples.size())}) {
                SCOPED_TRACE(testing::Message() << zoom << " frames a pixel from " << first << ", channel " << c);
                std::vector<PeakColumn> columns(200);
                const TakePeaks::Detail detail = take.peaks.columns(c, first, zoom, columns);
                EXPECT_EQ(detail, zoom < 64 ? TakePeaks::Detail::samples : TakePeaks::Detail::peaks);
                const std::int64_t slack = zoom >= 4096 ? 4096 : zoom >= 512 ? 512 : 64;
                for (std::size_t i = 0; i < columns.size(); ++i) {
                    const auto at = [&](double pixel) {
                        return static_cast<std::int64_t>(
                            std::clamp(static_cast<double>(first) + pixel * zoom, -1e6, 1e7));
                    };
                    const std::int64_t from = std::max<std::int64_t>(0, at(static_cast<double>(i)));
                    const std::int64_t to = std::min(frames, at(static_cast<double>(i) + 1));
                    const auto extremes = [&](std::int64_t begin, std::int64_t end) {
                        begin = std::max<std::int64_t>(0, begin);
                        end = std::min(frames, end);
                        return std::minmax_element(samples.begin() + begin, samples.begin() + std::max(begin, end));
                    };
                    if (to <= from) continue;
                    ASSERT_TRUE(columns[i].known) << i;
                    const auto [low, high] = extremes(from, to);
                    ASSERT_LE(columns[i].lowest, *low) << i;
                    ASSERT_GE(columns[i].highest, *high) << i;
                    const auto [widerLow, widerHigh] = extremes(from - slack, to + slack + 1);
                    ASSERT_GE(columns[i].lowest, *widerLow) << i;
                    ASSERT_LE(columns[i].highest, *widerHigh) << i;
                }
            }
        }
    }
}

TEST(PeakColumns, OutsideOfTheTakeAndOfReasonNothingIsKnown) {
    const NoiseTake take;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    constexpr std::int64_t furthest = std::numeric_limits<std::int64_t>::max();
    const struct {
        int canal;
        std::int64_t first;
        double zoom;
    } cases[] = {{0, -5000, 10},   {0, 900'001, 10},    {1, 200'000, 100}, {2, 0, 100},
                 {-1, 0, 100},     {0, 0, 0},           {0, 0, -1},        {0, 0, nan},
                 {0, 0, infinite}, {0, furthest, 1000}, {0, furthest, 1},  {0, -furthest, 1}};
    for (const auto& one : cases) {
        std::vector<PeakColumn> columns(20, PeakColumn{1, 1, true});
        take.peaks.columns(one.canal, one.first, one.zoom, columns);
        EXPECT_TRUE(std::none_of(columns.begin(), columns.end(), [](const PeakColumn& c) { return c.known; }))
            << one.canal << " " << one.first << " " << one.zoom;
    }
    EXPECT_EQ(TakePeaks{}.nbCanaux(), 0);
}

TEST(PeakColumns, BeforeTheFineOnesAreThereTheCoarseOnesAreShown) {
    NoiseTake take;
    for (FilePeaks& file : take.peaks.files)
        file.donneesAudioHR = file.donneesAudioUHR = {};
    PeakColumn column;
    EXPECT_EQ(take.peaks.columns(0, 5000, 200, {&column, 1}), TakePeaks::Detail::peaks);
    EXPECT_TRUE(column.known);
    EXPECT_EQ(column.highest, static_cast<float>(take.peaks.files[0].donneesAudio.values[1].highest) * 0x1p-15F);
}

TEST(Peaks, OfEveryRealRecordingAreThoseOfItsLoadedSamples) {
    DRAVIK_NEEDS_SAMPLES();
    int compared = 0;
    for (const char* extension : {".wav", ".aif", ".aiff", ".flac", ".mp3", ".m4a"}) {
        for (const std::filesystem::path& file : samplesOf(extension)) {
            SCOPED_TRACE(pathText(file));
            std::shared_ptr<const PcmTake> take;
            try {
                take = loadTake({file}, true, codecs(), {}, {});
            } catch (const std::exception&) {
                EXPECT_ANY_THROW(static_cast<void>(peaksOf({file})));
                continue;
            }
            const FilePeaks peaks = peaksOf({file}).front();
            ASSERT_EQ(peaks.frames, take->frameTotal);
            for (int c = 0; c < take->nbCanaux; ++c) {
                for (const PeakLevel* level : {&peaks.donneesAudio, &peaks.donneesAudioHR, &peaks.donneesAudioUHR})
                    expectExtremesOf(*level, c, take->canal(c));
            }
            ++compared;
        }
    }
    EXPECT_GT(compared, 0);
}

}  // namespace
}  // namespace dravik::test
