// Taking a recording apart and putting it together again, to a copy of the same bytes by `cp` and a sync; and the core
// that moves the samples, to a plain loop.
//
// The disk decides: run it on the one that is to be measured (DRAVIK_BENCH_FOLDER).
#include "bench/fixture.h"
#include "bench/measure.h"
#include "operations/merge_tracks.h"
#include "operations/operation_run.h"
#include "operations/split_tracks.h"
#include "operations/weave.h"
#include "platform/native_file_ops.h"

#include <algorithm>
#include <cstdlib>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace dravik;

/// 1 GiB of eight tracks.
constexpr int seconds = 932;

void check(bool ok, const char* what) {
    if (ok) return;
    std::perror(what);
    std::exit(1);
}

void syncFile(const std::filesystem::path& path) {
    const FileHandle file = FileHandle::openForReading(path);
    check(::fsync(file.descriptor()) == 0, "fsync");
}

std::filesystem::path outFolder() {
    const std::filesystem::path folder = bench::benchFolder().path() / "operations";
    std::filesystem::create_directories(folder);
    return folder;
}

GroupeFichiers polyGroup() {
    InfoFichier fichier;
    fichier.url = bench::polyTake(seconds).path;
    fichier.channels = static_cast<int>(bench::PolyTake::channels);
    GroupeFichiers groupe;
    groupe.nom = "take";
    groupe.estPoly = true;
    groupe.fichiers = {fichier};
    return groupe;
}

OperationPlan split(FileOps& ops) {
    OperationsAudio::DestinationNames names;
    return OperationsAudio::planSplit(ops, {polyGroup(), {0, 1, 2, 3, 4, 5, 6, 7}, false}, outFolder(), names);
}

OperationPlan merge(FileOps& ops, const std::vector<std::filesystem::path>& monos) {
    GroupeFichiers groupe;
    groupe.nom = "take";
    std::vector<InfoFichier> files(monos.size());
    for (std::size_t at = 0; at < files.size(); ++at) {
        files[at].url = monos[at];
        files[at].channels = 1;
    }
    groupe.fichiers = Fichiers(std::move(files));
    OperationsAudio::DestinationNames names;
    return OperationsAudio::planMerge(ops, groupe, {}, outFolder(), names);
}

void runPlanned(FileOps& ops, const OperationPlan& plan) {
    FolderSyncs folders;
    std::vector<std::filesystem::path> completed;
    const TaskContext task;
    bool begun = false;
    static_cast<void>(OperationsAudio::runPlan(plan, {ops, task, folders, completed, begun}));
    folders.syncAll(ops);
}

/// Measures the second of two runs of `work`, which writes `outputs`: a virtual machine gives memory that nobody uses
/// back to its host, and whoever writes next waits until it is there again. That is not to fall on one of those that
/// are compared; nor is what is still on its way to the disk.
template <typename Work>
void measured(benchmark::State& state, const std::vector<std::filesystem::path>& outputs, Work work) {
    const auto removeOutputs = [&] {
        for (const std::filesystem::path& output : outputs)
            std::filesystem::remove(output);
    };
    double peak = 0;
    for (auto _ : state) {
        state.PauseTiming();
        work();
        removeOutputs();
        ::sync();
        const bench::PeakMemory memory;
        state.ResumeTiming();
        work();
        state.PauseTiming();
        peak = std::max(peak, memory.mebibytes());
        state.ResumeTiming();
    }
    removeOutputs();
    state.counters["peakMiB"] = peak;
}

void cpAndSync(benchmark::State& state) {
    const bench::PolyTake take = bench::polyTake(seconds);
    const std::filesystem::path copy = outFolder() / "copy.wav";
    measured(state, {copy}, [&] {
        bench::runProgram({"cp", take.path.native(), copy.native()});
        syncFile(copy);
    });
}
BENCHMARK(cpAndSync)->Name("operations/cp_and_sync")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

void splitIntoMonos(benchmark::State& state) {
    const auto ops = makeNativeFileOps();
    const OperationPlan plan = split(*ops);
    measured(state, plan.destinations(), [&] { runPlanned(*ops, plan); });
}
BENCHMARK(splitIntoMonos)->Name("operations/split")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

void mergeMonos(benchmark::State& state) {
    const auto ops = makeNativeFileOps();
    const OperationPlan apart = split(*ops);
    runPlanned(*ops, apart);
    const OperationPlan plan = merge(*ops, apart.destinations());
    measured(state, plan.destinations(), [&] { runPlanned(*ops, plan); });
    for (const std::filesystem::path& output : apart.destinations())
        std::filesystem::remove(output);
}
BENCHMARK(mergeMonos)->Name("operations/merge")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

constexpr std::size_t blockFrames = 8192;
constexpr std::size_t channels = bench::PolyTake::channels;

/// A block of audio in memory, and its channels as strands.
struct Block {
    explicit Block(std::size_t size)
        : bytes(blockFrames * channels * size, std::byte{0x55}), out(bytes.size()), sampleBytes(size) {
        for (std::size_t channel = 0; channel < channels; ++channel)
            strands.push_back(bytes.data() + channel * blockFrames * size);
    }
    Bytes bytes, out;
    std::size_t sampleBytes;
    std::vector<const std::byte*> strands;
};

void interleaveOurs(benchmark::State& state) {
    Block block(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        OperationsAudio::weave(block.strands, block.sampleBytes, block.sampleBytes, blockFrames, block.out.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(interleaveOurs)
    ->Name("operations/interleave/ours")
    ->Unit(benchmark::kMicrosecond)
    ->Arg(2)
    ->Arg(3)
    ->Arg(4)
    ->Arg(8);

void interleavePlainly(benchmark::State& state) {
    Block block(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        std::byte* out = block.out.data();
        for (std::size_t frame = 0; frame < blockFrames; ++frame) {
            for (const std::byte* strand : block.strands) {
                for (std::size_t at = 0; at < block.sampleBytes; ++at)
                    *out++ = strand[frame * block.sampleBytes + at];
            }
        }
        benchmark::ClobberMemory();
    }
}
BENCHMARK(interleavePlainly)
    ->Name("operations/interleave/plain")
    ->Unit(benchmark::kMicrosecond)
    ->Arg(2)
    ->Arg(3)
    ->Arg(4)
    ->Arg(8);

}  // namespace
