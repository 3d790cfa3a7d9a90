// The peaks of a take of ten minutes and eight channels: found in its file, against programs that only read the same
// bytes, and read out of the cache.

#include "bench/fixture.h"
#include "bench/measure.h"
#include "platform/native_file_ops.h"
#include "playback/peak_cache.h"

#include <memory>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace dravik;

constexpr int seconds = 600;

class NoDecoder final : public SampleDecoder {
  public:
    [[nodiscard]] std::unique_ptr<SampleStream> open(const std::filesystem::path&) const override { return nullptr; }
};

void found(benchmark::State& state) {
    const NoDecoder decoder;
    const bench::PolyTake take = bench::polyTake(seconds);
    const bench::PeakMemory memory;
    for (auto _ : state)
        benchmark::DoNotOptimize(computePeaks({{take.path, 0}}, decoder, {}, {}));
    state.counters["peakMiB"] = memory.mebibytes();
    state.SetBytesProcessed(static_cast<std::int64_t>(take.audioBytes()) * state.iterations());
}
BENCHMARK(found)->Name("peaks/found/ours")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(5);

void bareRead(benchmark::State& state) {
    const bench::PolyTake take = bench::polyTake(seconds);
    std::vector<char> block(512U * 1024U);
    for (auto _ : state) {
        const int file = ::open(take.path.c_str(), O_RDONLY | O_CLOEXEC);
        if (file < 0) return state.SkipWithError("cannot open");
        while (::read(file, block.data(), block.size()) > 0)
            benchmark::DoNotOptimize(block.data());
        ::close(file);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(take.audioBytes()) * state.iterations());
}
BENCHMARK(bareRead)->Name("peaks/found/bare_read")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(5);

void cat(benchmark::State& state) {
    const bench::PolyTake take = bench::polyTake(seconds);
    for (auto _ : state)
        bench::runProgram({"cat", take.path});
    state.SetBytesProcessed(static_cast<std::int64_t>(take.audioBytes()) * state.iterations());
}
BENCHMARK(cat)->Name("peaks/found/cat")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(5);

void cached(benchmark::State& state) {
    const NoDecoder decoder;
    const bench::PolyTake take = bench::polyTake(seconds);
    const std::unique_ptr<FileOps> ops = makeNativeFileOps();
    const PeakCache cache(*ops, bench::benchFolder().path() / "peaks");
    static_cast<void>(takePeaks({take.path}, decoder, &cache, {}, {}));
    for (auto _ : state) {
        benchmark::DoNotOptimize(takePeaks({take.path}, decoder, &cache, {}, {}));
    }
    if (!cache.find(*cache.keyOf(take.path))) state.SkipWithError("was not kept");
}
BENCHMARK(cached)->Name("peaks/cached")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(10);

}  // namespace
