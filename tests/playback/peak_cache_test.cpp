#include "playback/peak_cache.h"

#include "base/checksum.h"
#include "base/safe_file.h"
#include "base/temp_name.h"
#include "platform/native_file_ops.h"
#include "tests/playback/sample_files.h"
#include "tests/support/child.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <atomic>
#include <chrono>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace dravik::test {
namespace {

using namespace std::chrono_literals;

/// A recording, a cache folder beside it, and what the cache makes of the two.
class CacheStage {
  public:
    CacheStage() { record("a.wav"); }

    std::filesystem::path record(const std::string& name, std::size_t frames = 300'000, unsigned seed = 1) {
        return WavBuilder().fmt({.channels = 2}).audio(frames, seed).write(folder / name);
    }
    PeakReport take(const std::vector<std::string>& names = {"a.wav"}, const TaskContext& task = {}) {
        std::vector<std::filesystem::path> files;
        for (const std::string& name : names)
            files.push_back(folder / name);
        read = 0;
        TaskContext watching = task;
        watching.report = [this, next = task.report](const Progress& progress) {
            read = progress.doneBytes;
            if (next) next(progress);
        };
        const PeakCache cache(ops, cacheFolder(), limit);
        return takePeaks(
            files, codecs(), &cache, [this](const CoarsePeaks& found) { seen.add(found); }, watching);
    }
    [[nodiscard]] std::filesystem::path cacheFolder() const { return folder / "cache"; }
    [[nodiscard]] std::vector<std::string> cached() const { return namesIn(cacheFolder()); }
    [[nodiscard]] std::filesystem::path onlyFile() const { return cacheFolder() / cached().at(0); }

    TempFolder folder;
    FaultyFileOps ops;
    std::uint64_t limit = PeakCache::defaultLimitBytes;
    std::uint64_t read = 0;  ///< bytes of recordings that the last take read
    TakePeaks seen;
};

TEST(PeakCache, WhatWasFoundOnceIsNotReadAgain) {
    CacheStage stage;
    stage.record("b.wav", 100'000);
    const PeakReport first = stage.take({"a.wav", "b.wav"});
    EXPECT_GT(stage.read, 0U);
    EXPECT_FALSE(first.cacheProblem);
    EXPECT_EQ(stage.cached().size(), 2U);
    EXPECT_EQ(stage.ops.calls(Call::sync), 0) << "a cache is not waited for";
    stage.seen = {};
    const PeakReport second = stage.take({"b.wav", "a.wav"});
    EXPECT_EQ(stage.read, 0U);
    EXPECT_EQ(second.peaks->files[0], first.peaks->files[1]);
    EXPECT_EQ(second.peaks->files[1], first.peaks->files[0]);
    EXPECT_EQ(stage.seen.files[1].donneesAudio, first.peaks->files[0].donneesAudio) << "the sink saw it, too";
    stage.record("c.wav", 5000);
    const PeakReport third = stage.take({"c.wav", "a.wav"});
    EXPECT_EQ(stage.read, 5000U * 6) << "only the new one";
    EXPECT_EQ(third.peaks->files[1], first.peaks->files[0]);
}

TEST(PeakCache, ARecordingThatChangedIsReadAgain) {
    CacheStage stage;
    static_cast<void>(stage.take());
    const std::filesystem::path file = stage.folder / "a.wav";
    struct stat before {};
    ASSERT_EQ(::stat(file.c_str(), &before), 0);
    stage.record("a.wav", 300'000, 2);
    // The same size, and the time differs by a nanosecond.
    timespec times[] = {before.st_atim, before.st_mtim};
    times[1].tv_nsec += times[1].tv_nsec < 999'999'999 ? 1 : -1;
    ASSERT_EQ(::utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    const PeakReport changed = stage.take();
    EXPECT_GT(stage.read, 0U);
    EXPECT_EQ(stage.cached().size(), 1U) << "in the place of the old one";
    EXPECT_EQ(stage.take().peaks->files.front(), changed.peaks->files.front());
    EXPECT_EQ(stage.read, 0U);
}

/// The same file with other bytes at a place of the head, its checksum made right.
Bytes withHead(Bytes file, std::size_t at, const Bytes& other) {
    std::copy(other.begin(), other.end(), file.begin() + static_cast<std::ptrdiff_t>(at));
    const std::size_t end = std::min<std::size_t>(file.size(), 72 + readLE<std::uint32_t>(file.data() + 20));
    writeLE(file.data() + 12, crc32(asText(ByteSpan(file).subspan(16, end - 16))));
    return file;
}
template <typename Integer>
Bytes little(Integer value) {
    Bytes bytes;
    appendLE(bytes, value);
    return bytes;
}

TEST(PeakCache, WhatIsDamagedOrStrangeIsRemovedAndFoundAnew) {
    CacheStage stage;
    const PeakReport whole = stage.take();
    const std::filesystem::path file = stage.onlyFile();
    const Bytes good = readFile(file);
    const std::size_t valuesAt = 72 + readLE<std::uint32_t>(good.data() + 20);
    ASSERT_GT(good.size(), valuesAt + 4000);
    const auto cut = [&](std::size_t size) {
        return Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
    };
    const auto flipped = [&](std::size_t at) {
        Bytes bytes = good;
        bytes[at] ^= std::byte{0x10};
        return bytes;
    };
    Bytes longer = good;
    longer.push_back({});
    std::vector<std::pair<std::string, Bytes>> faults = {
        {"empty", {}},
        {"cut inside the head", cut(71)},
        {"cut behind the head", cut(valuesAt)},
        {"a byte short", cut(good.size() - 1)},
        {"a byte too long", longer},
        {"a future version", withHead(good, 8, little<std::uint32_t>(2))},
        {"another path", withHead(good, valuesAt - 1, little<std::uint8_t>('x'))},
        {"another size", withHead(good, 24, little<std::uint64_t>(1))},
        {"another time", withHead(good, 40, little<std::uint32_t>(1'000'000'000))},
        {"a path of all ones", withHead(good, 20, little<std::uint32_t>(0xFFFFFFFF))},
        {"no channels", withHead(good, 44, little<std::uint32_t>(0))},
        {"channels of all ones", withHead(good, 44, little<std::uint32_t>(0xFFFFFFFF))},
        {"twice the channels", withHead(good, 44, little<std::uint32_t>(4))},
        {"frames of all ones", withHead(good, 48, little<std::uint64_t>(0xFFFFFFFFFFFFFFFF))},
        {"as many frames as there may be", withHead(good, 48, little<std::uint64_t>(1ULL << 40U))},
        {"a rate that is no number", withHead(good, 56, little<std::uint64_t>(0x7FF8000000000000))},
        {"bins of no frames", withHead(good, 64, little<std::uint64_t>(0))},
        {"bins of 65 frames", withHead(good, 64, little<std::uint64_t>(65))},
        {"bins of all ones", withHead(good, 64, little<std::uint64_t>(1ULL << 63U))},
    };
    for (std::size_t at = 0; at < valuesAt; ++at)
        faults.emplace_back("a flipped bit in byte " + std::to_string(at), flipped(at));
    faults.emplace_back("a flipped bit in the first value", flipped(valuesAt));
    faults.emplace_back("a flipped bit in the last value", flipped(good.size() - 1));
    for (const auto& [what, bytes] : faults) {
        SCOPED_TRACE(what);
        writeFile(file, bytes);
        const PeakCache cache(stage.ops, stage.cacheFolder());
        const std::optional<PeakKey> key = cache.keyOf(stage.folder / "a.wav");
        ASSERT_TRUE(key);
        ASSERT_FALSE(cache.find(*key));
        ASSERT_FALSE(std::filesystem::exists(file));
    }
    EXPECT_EQ(stage.take().peaks->files, whole.peaks->files);
    EXPECT_GT(stage.read, 0U);
    EXPECT_EQ(readFile(file), good);
    // A folder where the file should be.
    std::filesystem::remove(file);
    std::filesystem::create_directories(file / "inside");
    EXPECT_EQ(stage.take().peaks->files, whole.peaks->files);
}

TEST(PeakCache, AFaultOfTheCacheCostsNoPeaksAndLeavesNothingBehind) {
    for (const Call call : {Call::create, Call::write, Call::rename}) {
        CacheStage stage;
        stage.ops.failAt({.kinds = {call}, .nth = call == Call::write ? 2 : 1, .errorNumber = ENOSPC});
        const PeakReport report = stage.take();
        EXPECT_EQ(stage.ops.failures(), 1);
        EXPECT_EQ(report.peaks->frameTotal(), 300'000);
        ASSERT_TRUE(report.cacheProblem);
        EXPECT_NE(report.cacheProblem->find("could not be kept"), std::string::npos) << *report.cacheProblem;
        EXPECT_TRUE(stage.cached().empty());
    }
    CacheStage stage;
    CancellationToken token;
    const PeakCache cache(stage.ops, stage.cacheFolder());
    const FilePeaks peaks = stage.take().peaks->files.front();
    const auto old = stateOf(stage.cacheFolder());
    stage.ops.before([&](Call call, int) {
        if (call == Call::write) token.cancel();
    });
    EXPECT_THROW(cache.store(*cache.keyOf(stage.folder / "a.wav"), peaks, {&token, {}}), Cancelled);
    EXPECT_EQ(stateOf(stage.cacheFolder()), old);
}

TEST(PeakCache, AFolderThatCannotBeWrittenIsStillReadFrom) {
    CacheStage stage;
    static_cast<void>(stage.take());
    stage.record("b.wav");
    for (const auto& path :
         {stage.folder.path(), stage.cacheFolder(), stage.folder / "a.wav", stage.folder / "b.wav", stage.onlyFile()}) {
        std::filesystem::permissions(
            path, std::filesystem::is_directory(path) ? std::filesystem::perms{0555} : std::filesystem::perms{0444});
    }
    const int result = inChildWithoutRights([&] {
        if (!stage.take().peaks || stage.read != 0) return 1;
        const PeakReport report = stage.take({"b.wav"});
        if (report.peaks->frameTotal() != 300'000) return 2;
        return report.cacheProblem ? 0 : 3;
    });
    EXPECT_EQ(result, 0);
    std::filesystem::permissions(stage.folder.path(), std::filesystem::perms{0755});
    std::filesystem::permissions(stage.cacheFolder(), std::filesystem::perms{0755});
    EXPECT_EQ(stage.cached().size(), 1U);
}

TEST(PeakCache, WhatWasNotUsedForTheLongestTimeGoesFirst) {
    CacheStage stage;
    for (const char* name : {"a.wav", "b.wav", "c.wav"}) {
        stage.record(name);
        static_cast<void>(stage.take({name}));
    }
    const std::uint64_t bytes = std::filesystem::file_size(stage.onlyFile());
    const auto age = std::filesystem::file_time_type::clock::now() - 48h;
    for (const std::string& name : stage.cached())
        std::filesystem::last_write_time(stage.cacheFolder() / name, age);
    static_cast<void>(stage.take({"a.wav"}));  // used now
    static_cast<void>(stage.take({"c.wav"}));
    writeFile(stage.cacheFolder() / "notes.txt", std::string(100'000, 'x'));
    stage.record("d.wav");
    stage.limit = 3 * bytes + bytes / 2;
    static_cast<void>(stage.take({"d.wav"}));
    EXPECT_EQ(stage.cached().size(), 4U) << "three, and what is not ours";
    for (const char* name : {"a.wav", "c.wav", "d.wav"}) {
        static_cast<void>(stage.take({name}));
        EXPECT_EQ(stage.read, 0U) << name;
    }
    static_cast<void>(stage.take({"b.wav"}));
    EXPECT_GT(stage.read, 0U) << "the one that was not used";
    stage.limit = bytes / 2;
    stage.record("e.wav");
    const PeakReport tooLarge = stage.take({"e.wav"});
    EXPECT_FALSE(tooLarge.cacheProblem);
    EXPECT_EQ(stage.cached(), std::vector<std::string>{"notes.txt"});
}

TEST(PeakCache, WhatAKilledProgramLeftIsRemovedAndWhatALivingOneWritesIsNot) {
    CacheStage stage;
    static_cast<void>(stage.take());
    const PeakCache cache(stage.ops, stage.cacheFolder());
    const std::filesystem::path abandoned =
        stage.cacheFolder() / freshTemporaryName(TempKind::output, "0123456789abcdef.peaks");
    writeFile(abandoned, "half");
    const SafeFile living(stage.ops, stage.cacheFolder() / "fedcba9876543210.peaks", TempKind::output);
    cache.trim();
    EXPECT_FALSE(std::filesystem::exists(abandoned));
    EXPECT_EQ(stage.cached().size(), 2U);
}

TEST(PeakCache, TwoProgramsUseOneFolderAndNeverSeeHalfAFile) {
    CacheStage stage;
    const auto ops = makeNativeFileOps();
    const PeakCache cache(*ops, stage.cacheFolder(), 400'000);  // less than the four take
    std::vector<std::pair<PeakKey, FilePeaks>> all;
    for (const char* name : {"a.wav", "b.wav", "c.wav", "d.wav"}) {
        const auto file = stage.record(name, 2'000'000, static_cast<unsigned char>(*name));
        all.emplace_back(*cache.keyOf(file), std::move(computePeaks({{file, 0}}, codecs(), {}, {}).front()));
    }
    const auto use = [&](int rounds) {
        int wrong = 0;
        for (int i = 0; i < rounds; ++i) {
            const auto& [key, peaks] = all[static_cast<std::size_t>(i) % all.size()];
            const std::optional<FilePeaks> found = cache.find(key);
            if (found && *found != peaks) ++wrong;
            cache.store(key, peaks, {});
            cache.trim();
        }
        return wrong;
    };
    const pid_t other = startChild([&] { return use(60); });
    std::atomic<int> wrong = 0;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 2; ++i)
            threads.emplace_back([&] { wrong += use(60); });
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(waitForChild(other), 0);
    for (const std::string& name : stage.cached())
        EXPECT_TRUE(name.ends_with(".peaks")) << name;
}

}  // namespace
}  // namespace dravik::test
