// Probing a folder against a bare loop over the same files: how many files a second, how much memory, how many bytes
// read of a file. tools/bench runs it and makes the table.

#include "base/byte_source.h"
#include "bench/fixture.h"
#include "bench/measure.h"
#include "model/folder_scan.h"
#include "model/probe.h"
#include "tests/support/fake_codecs.h"

#include <algorithm>

#include <benchmark/benchmark.h>

namespace {

using namespace dravik;
using bench::PeakMemory;
using bench::ReadBytes;

constexpr int fileCount = 2000;
constexpr std::uint64_t gibibyte = 1024U * 1024U * 1024U;

/// The fixture is all linear WAV, for which no codec library is asked.
const test::FakeCodecs codecs;

const std::vector<std::filesystem::path>& files() {
    static const auto made = bench::smallRecordings("small", fileCount);
    return made;
}

std::size_t readAllBare() {
    std::size_t bytes = 0;
    for (const std::filesystem::path& file : files()) {
        bytes += bench::readBare(file.c_str(),
                                 bench::layoutOf(bench::kindOf(file.filename().native()), bench::smallAudioBytes));
    }
    return bytes;
}

void probeOneByOne() {
    for (const std::filesystem::path& file : files())
        benchmark::DoNotOptimize(analyserFichier(file, codecs));
}

/// Runs the work over all files again and again; cold: from the disk every time.
template <typename Work>
void overAllFiles(benchmark::State& state, bool cold, Work work) {
    benchmark::DoNotOptimize(readAllBare());
    for (auto _ : state) {
        if (cold) {
            state.PauseTiming();
            bench::dropFromCache(files());
            state.ResumeTiming();
        }
        work();
    }
    state.SetItemsProcessed(state.iterations() * fileCount);
}

void bareLoop(benchmark::State& state) {
    overAllFiles(state, false, [] { benchmark::DoNotOptimize(readAllBare()); });
}
BENCHMARK(bareLoop)->Name("probe/warm/bare_loop")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(5);

void oneThread(benchmark::State& state) { overAllFiles(state, false, probeOneByOne); }
BENCHMARK(oneThread)->Name("probe/warm/one_thread")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(5);

void asScanned(benchmark::State& state) {
    overAllFiles(state, false, [] { benchmark::DoNotOptimize(probeFiles(files(), codecs, {})); });
}
BENCHMARK(asScanned)->Name("probe/warm/as_scanned")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(5);

void listed(benchmark::State& state) {
    overAllFiles(state, false, [] { benchmark::DoNotOptimize(listerFichiers(files().front().parent_path())); });
}
BENCHMARK(listed)->Name("probe/warm/list")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(5);

void grouped(benchmark::State& state) {
    const std::vector<InfoFichier> infos = probeFiles(files(), codecs, {});
    overAllFiles(state, false, [&] { benchmark::DoNotOptimize(construireGroupes(infos, true)); });
}
BENCHMARK(grouped)->Name("probe/warm/group")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(5);

/// List, probe, group: what opening a folder is. Its memory is that of the whole process, the files' records included.
void wholeScan(benchmark::State& state) {
    double peak = 0;
    overAllFiles(state, false, [&] {
        const PeakMemory memory;
        benchmark::DoNotOptimize(scanFolder(files().front().parent_path(), codecs, true, {}));
        peak = std::max(peak, memory.mebibytes());
    });
    state.counters["peakMiB"] = peak;
}
BENCHMARK(wholeScan)->Name("probe/warm/whole_scan")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(5);

void coldOneThread(benchmark::State& state) { overAllFiles(state, true, probeOneByOne); }
BENCHMARK(coldOneThread)->Name("probe/cold/one_thread")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

void coldAsScanned(benchmark::State& state) {
    overAllFiles(state, true, [] { benchmark::DoNotOptimize(probeFiles(files(), codecs, {})); });
}
BENCHMARK(coldAsScanned)->Name("probe/cold/as_scanned")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

/// The most that is read of any one file, as the kernel counts it.
void bytesRead(benchmark::State& state, const std::vector<std::filesystem::path>& probed) {
    std::uint64_t most = 0;
    for (auto _ : state) {
        for (const std::filesystem::path& file : probed) {
            const ReadBytes read;
            benchmark::DoNotOptimize(analyserFichier(file, codecs));
            most = std::max(most, read.count());
        }
    }
    state.counters["readKiB"] = static_cast<double>(most) / 1024;
}
void bytesReadSmall(benchmark::State& state) { bytesRead(state, files()); }
BENCHMARK(bytesReadSmall)->Name("probe/read/small_files")->Iterations(1);

void bytesReadLarge(benchmark::State& state) {
    bytesRead(state, {bench::largeRecording("sparse.wav", gibibyte, bench::Filling::sparse)});
}
BENCHMARK(bytesReadLarge)->Name("probe/read/one_gibibyte")->Iterations(1);

void bytesReadManyChunks(benchmark::State& state) {
    bytesRead(state, {bench::manyChunksRecording("chunks.wav", gibibyte)});
}
BENCHMARK(bytesReadManyChunks)->Name("probe/read/one_gibibyte_of_512_chunks")->Iterations(1);

}  // namespace
