// Saving against the least that a safe save can do: one large file against `cp` and a sync and against a copy inside
// the kernel, a folder of small files against a loop that writes, syncs and renames the same bytes.

#include "base/file_handle.h"
#include "bench/fixture.h"
#include "bench/measure.h"
#include "editing/metadata_writer.h"
#include "editing/save_transaction.h"
#include "platform/native_file_ops.h"

#include <algorithm>
#include <cstdio>
#include <system_error>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace dravik;

constexpr int fileCount = 2000;
constexpr std::uint64_t gibibyte = 1024U * 1024U * 1024U;
constexpr std::size_t copyStep = 8U * 1024U * 1024U;

void check(bool ok, const char* what) {
    if (!ok) throw std::system_error(errno, std::generic_category(), what);
}

const std::filesystem::path& largeFile() {
    static const auto made = bench::largeRecording("large.wav", gibibyte, bench::Filling::written);
    return made;
}

MetadataValues edit() {
    MetadataValues values;
    values.scene = "12B";
    values.sampleRate = 48000;
    return values;
}

/// Nothing of what went before is still on its way to the disk.
void settle() { ::sync(); }

void syncFile(const FileHandle& file) { check(::fsync(file.descriptor()) == 0, "fsync"); }
void syncFolder(const std::filesystem::path& folder) {
    const FileHandle handle(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    check(handle.isOpen(), "open");
    syncFile(handle);
}

template <typename Work>
void onLargeFile(benchmark::State& state, Work work) {
    const std::filesystem::path copy = bench::benchFolder().path() / "copy.wav";
    static_cast<void>(largeFile());
    double peak = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::remove(copy);
        settle();
        const bench::PeakMemory memory;
        state.ResumeTiming();
        work(copy);
        state.PauseTiming();
        peak = std::max(peak, memory.mebibytes());
        state.ResumeTiming();
    }
    std::filesystem::remove(copy);
    state.counters["peakMiB"] = peak;
}

void cpAndSync(benchmark::State& state) {
    onLargeFile(state, [](const std::filesystem::path& copy) {
        bench::runProgram({"cp", largeFile().native(), copy.native()});
        syncFile(FileHandle::openForReading(copy));
    });
}
BENCHMARK(cpAndSync)->Name("save/large/cp_and_sync")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

void kernelCopy(benchmark::State& state) {
    onLargeFile(state, [](const std::filesystem::path& copy) {
        const FileHandle from = FileHandle::openForReading(largeFile());
        const FileHandle to(::open(copy.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
        check(to.isOpen(), "open");
        for (ssize_t copied = 1; copied > 0;) {
            copied = ::copy_file_range(from.descriptor(), nullptr, to.descriptor(), nullptr, copyStep, 0);
            check(copied >= 0, "copy_file_range");
        }
        syncFile(to);
        check(::rename(copy.c_str(), (copy.native() + ".renamed").c_str()) == 0, "rename");
        check(::rename((copy.native() + ".renamed").c_str(), copy.c_str()) == 0, "rename");
    });
}
BENCHMARK(kernelCopy)->Name("save/large/kernel_copy")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

void saveLarge(benchmark::State& state) {
    const auto ops = makeNativeFileOps();
    onLargeFile(state, [&](const std::filesystem::path&) {
        FolderSyncs folders;
        SauvegardeMetadata(*ops).ecrire(largeFile(), edit(), {}, folders);
        folders.syncAll(*ops);
    });
}
BENCHMARK(saveLarge)->Name("save/large/ours")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

/// The same bytes, written, synced and renamed over the old file one after the other; the folder is synced once, as our
/// saves do.
void bareSaves(benchmark::State& state) {
    const auto files = bench::smallRecordings("bare", fileCount);
    const auto bytesOf = [](bench::Kind kind) {
        const bench::Frame frame = bench::frameOf(kind, 1, bench::smallAudioBytes);
        Bytes bytes = frame.before;
        bytes.resize(bytes.size() + bench::smallAudioBytes, std::byte{0x55});
        append(bytes, frame.behind);
        return bytes;
    };
    const Bytes poly = bytesOf(bench::Kind::poly);
    const Bytes mono = bytesOf(bench::Kind::mono);
    const std::filesystem::path folder = files.front().parent_path();
    const std::filesystem::path temporary = folder / ".temporary";
    for (auto _ : state) {
        state.PauseTiming();
        settle();
        state.ResumeTiming();
        for (const std::filesystem::path& file : files) {
            const Bytes& bytes = bench::kindOf(file.filename().native()) == bench::Kind::poly ? poly : mono;
            const FileHandle out(::open(temporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
            check(out.isOpen(), "open");
            check(::pwrite(out.descriptor(), bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()),
                  "write");
            syncFile(out);
            check(::rename(temporary.c_str(), file.c_str()) == 0, "rename");
        }
        syncFolder(folder);
    }
    state.SetItemsProcessed(state.iterations() * fileCount);
}
BENCHMARK(bareSaves)->Name("save/small/bare_loop")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

void saveSmall(benchmark::State& state) {
    const auto files = bench::smallRecordings("saved", fileCount);
    const auto ops = makeNativeFileOps();
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<SaveItem> items(files.size());
        for (std::size_t i = 0; i < files.size(); ++i) {
            items[i].fichier.url = files[i];
            items[i].fichier.taille = std::filesystem::file_size(files[i]);
            items[i].valeurs = edit();
        }
        settle();
        state.ResumeTiming();
        const SaveReport report = runSave(*ops, items, {});
        if (report.failed()) state.SkipWithError("a save failed");
    }
    state.SetItemsProcessed(state.iterations() * fileCount);
}
BENCHMARK(saveSmall)->Name("save/small/ours")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
