// Exports of a take of eight tracks: converted, to what a general program needs for the same; as it is, to a copy by
// `cp` and a sync; as MP3 and M4A, to the encoder alone, fed from memory.
//
// The disk has a say: run it on the one that is to be measured (DRAVIK_BENCH_FOLDER).
#include "bench/fixture.h"
#include "bench/measure.h"
#include "operations/aac_export.h"
#include "operations/export_pcm_reader.h"
#include "operations/export_run.h"
#include "operations/mp3_export.h"
#include "operations/wav_export.h"
#include "platform/lame/lame_encoder.h"
#include "platform/media/lazy_aac_encoders.h"
#include "platform/media/lazy_sample_decoder.h"
#include "platform/native_file_ops.h"
#include "platform/soxr/soxr_converter.h"

#include <algorithm>
#include <cstdlib>

#include <benchmark/benchmark.h>
#include <unistd.h>

namespace {

using namespace dravik;

constexpr int wavSeconds = 600;
constexpr int encodedSeconds = 120;
constexpr int bitRate = 256;

struct Workshop {
    std::unique_ptr<FileOps> ops = makeNativeFileOps();
    std::unique_ptr<SampleRateConverters> converters = makeSoxrConverters();
    std::unique_ptr<AacEncoders> aac = makeLazyAacEncoders();
    std::unique_ptr<MP3Encoders> mp3 = makeLameEncoders();
    std::unique_ptr<SampleDecoder> decoder = makeLazySampleDecoder();

    [[nodiscard]] ExportServices services() const { return {*ops, *converters, *aac, *mp3, *decoder}; }
};

/// What one export is given beside its codecs.
struct Run {
    std::unique_ptr<FileOps> ops = makeNativeFileOps();
    TaskContext task;
    FolderSyncs folders;
    std::vector<std::filesystem::path> completed;
    bool begun = false;

    [[nodiscard]] OperationContext context() { return {*ops, task, folders, completed, begun}; }
};

std::filesystem::path outFolder() {
    const std::filesystem::path folder = bench::benchFolder().path() / "exports";
    std::filesystem::create_directories(folder);
    return folder;
}

GroupeFichiers take(int seconds) {
    InfoFichier file;
    file.url = bench::polyTake(seconds, bench::Loudness::quarter).path;
    file.channels = static_cast<int>(bench::PolyTake::channels);
    GroupeFichiers groupe;
    groupe.nom = "take";
    groupe.estPoly = true;
    groupe.fichiers = {file};
    return groupe;
}

void syncFile(const std::filesystem::path& path) {
    const FileHandle file = FileHandle::openForReading(path);
    if (::fsync(file.descriptor()) != 0) std::exit(1);
}

/// Measures `work`, which makes the file, once nothing of what went before is on its way to the disk any more.
template <typename Work>
void measured(benchmark::State& state, const std::filesystem::path& file, Work work) {
    double peak = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::remove(file);
        ::sync();
        const bench::PeakMemory memory;
        state.ResumeTiming();
        work();
        state.PauseTiming();
        peak = std::max(peak, memory.mebibytes());
        state.ResumeTiming();
    }
    std::filesystem::remove(file);
    state.counters["peakMiB"] = peak;
}

void exportWav(benchmark::State& state, int bits, std::optional<double> rate) {
    const Workshop workshop;
    OperationAudioExportConfiguration configuration;
    configuration.groupe = take(wavSeconds);
    configuration.destinationName = "ours.wav";
    configuration.bitDepth = bits;
    configuration.sampleRate = rate;
    configuration.ditherSeed = 1;
    measured(state, outFolder() / "ours.wav", [&] {
        Run run;
        static_cast<void>(OperationsAudio::exportWAV(configuration, outFolder(), workshop.services(), run.context()));
        run.folders.syncAll(*workshop.ops);
    });
}

void cpAndSync(benchmark::State& state) {
    const std::filesystem::path source = take(wavSeconds).fichiers.front().url, copy = outFolder() / "copy.wav";
    measured(state, copy, [&] {
        bench::runProgram({"cp", source.native(), copy.native()});
        syncFile(copy);
    });
}
BENCHMARK(cpAndSync)->Name("export/cp_and_sync")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(exportWav, unchanged, 24, std::nullopt)
    ->Name("export/unchanged")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK_CAPTURE(exportWav, to16, 16, std::nullopt)
    ->Name("export/to_16_bit")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK_CAPTURE(exportWav, converted, 24, 44100.0)
    ->Name("export/converted")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

void generalProgram(benchmark::State& state) {
    const std::filesystem::path source = take(wavSeconds).fichiers.front().url, out = outFolder() / "theirs.wav";
    measured(state, out, [&] {
        bench::runProgram({"ffmpeg", "-nostdin", "-v", "error", "-y", "-i", source.native(), "-af",
                           "aresample=resampler=soxr:precision=28", "-ar", "44100", "-c:a", "pcm_s24le", out.native()});
        syncFile(out);
    });
}
BENCHMARK(generalProgram)->Name("export/ffmpeg")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

/// The first two tracks of the short take, in memory.
std::vector<std::vector<float>> stereoPlanes() {
    ExportPCMReader reader(take(encodedSeconds), routing::Stereo{});
    const auto frames = static_cast<std::size_t>(reader.frameLength());
    std::vector<std::vector<float>> planes(2, std::vector<float>(frames));
    for (std::size_t done = 0; done < frames;) {
        float* rows[] = {planes[0].data() + done, planes[1].data() + done};
        done += reader.read(rows, 65536);
    }
    return planes;
}

void mp3Encoder(benchmark::State& state) {
    const std::vector<std::vector<float>> planes = stereoPlanes();
    std::vector<std::int16_t> samples;
    for (std::size_t i = 0; i < planes[0].size(); ++i) {
        for (const std::vector<float>& plane : planes)
            samples.push_back(static_cast<std::int16_t>(plane[i] * 32767.0F));
    }
    for (auto _ : state) {
        const auto encoder = makeLameEncoders()->make();
        encoder->initialise({48000, 2, bitRate});
        benchmark::DoNotOptimize(encoder->encode(samples, planes[0].size()).size() + encoder->flush().size());
    }
}
BENCHMARK(mp3Encoder)->Name("export/mp3_encoder")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

void mp3Export(benchmark::State& state) {
    const Workshop workshop;
    OperationAudioMP3ExportConfiguration configuration;
    configuration.groupe = take(encodedSeconds);
    configuration.destinationName = "ours.mp3";
    configuration.bitRate = bitRate;
    measured(state, outFolder() / "ours.mp3", [&] {
        Run run;
        static_cast<void>(OperationsAudio::exportMP3(configuration, outFolder(), workshop.services(), run.context()));
    });
}
BENCHMARK(mp3Export)->Name("export/mp3")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

constexpr int severalTakes = 4;

/// As many takes as MP3 in one run: each has its own file.
void severalMp3Exports(benchmark::State& state) {
    const Workshop workshop;
    std::vector<ExportJob> jobs;
    for (int number = 0; number < severalTakes; ++number) {
        OperationAudioMP3ExportConfiguration configuration;
        configuration.groupe = take(encodedSeconds);
        configuration.destinationName = "several" + std::to_string(number) + ".mp3";
        configuration.bitRate = bitRate;
        jobs.push_back({configuration, outFolder()});
    }
    for (auto _ : state) {
        const RunOutcome outcome = OperationsAudio::runExports(jobs, workshop.services(), {});
        state.PauseTiming();
        for (const OperationAudioResult& result : outcome.results) {
            if (!result.success) state.SkipWithError(result.message.c_str());
        }
        for (const ExportJob& job : jobs)
            std::filesystem::remove(job.folder / job.destinationName());
        state.ResumeTiming();
    }
}
BENCHMARK(severalMp3Exports)->Name("export/mp3_of_four")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

class Nowhere final : public EncodedOutput {
  public:
    void writeAt(std::uint64_t, ByteSpan) override {}
};

void aacEncoder(benchmark::State& state) {
    const std::vector<std::vector<float>> planes = stereoPlanes();
    const float* const rows[] = {planes[0].data(), planes[1].data()};
    const auto encoders = makeLazyAacEncoders();
    for (auto _ : state) {
        Nowhere nowhere;
        const auto encoder = encoders->make({2, 48000, bitRate, {}, {}}, nowhere);
        encoder->encode(rows, planes[0].size());
        encoder->finish();
    }
}
BENCHMARK(aacEncoder)->Name("export/aac_encoder")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

void aacExport(benchmark::State& state) {
    const Workshop workshop;
    OperationAudioAACExportConfiguration configuration;
    configuration.groupe = take(encodedSeconds);
    configuration.destinationName = "ours.m4a";
    configuration.bitRate = bitRate;
    measured(state, outFolder() / "ours.m4a", [&] {
        Run run;
        static_cast<void>(OperationsAudio::exportAAC(configuration, outFolder(), workshop.services(), run.context()));
    });
}
BENCHMARK(aacExport)->Name("export/aac")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
