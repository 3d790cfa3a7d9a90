// The playback engine: what a render costs of the time it is played in, for how many channels, and how fast a take is
// read into memory against a bare loop that reads and converts the same bytes.

#include "bench/fixture.h"
#include "platform/available_memory.h"
#include "playback/pcm_loader.h"
#include "playback/take_renderer.h"

#include <memory>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace dravik;

constexpr double rate = 48000;
constexpr std::size_t blockFrames = 512;

// --- Render

std::shared_ptr<const PcmTake> takeInMemory(int channels) {
    // Long enough that no block is found in a cache, as when a take is played from its start to its end.
    constexpr std::int64_t frames = 60 * 48000;
    auto take = std::make_shared<PcmTake>();
    take->estPoly = true;
    take->sampleRate = rate;
    take->nbCanaux = channels;
    take->frameTotal = frames;
    take->buffers.emplace_back(channels, frames);
    for (int c = 0; c < channels; ++c) {
        std::uint32_t noise = static_cast<std::uint32_t>(c) + 1;
        for (float& sample : take->buffers.front().channel(c)) {
            noise = noise * 1664525U + 1013904223U;
            sample = static_cast<float>(noise >> 8U) * 0x1p-24F - 0.5F;
        }
    }
    return take;
}

void render(benchmark::State& state) {
    const int channels = static_cast<int>(state.range(0));
    TakeRenderer renderer(takeInMemory(channels), 0);
    MixerState mixer(channels);
    for (int c = 0; c < channels; ++c)
        mixer.setPan(c, static_cast<float>(c % 3) - 1.0F);
    renderer.setMix(mixPlan(mixer), 0.9F);
    renderer.setTransport({true, 0, 60 * 48000, 0, 60 * 48000});
    std::vector<float> left(blockFrames);
    std::vector<float> right(blockFrames);
    for (auto _ : state) {
        renderer.render(left, right);
        benchmark::DoNotOptimize(left.data());
        benchmark::DoNotOptimize(right.data());
    }
    // Of the time in which the block is heard.
    state.counters["percentOfBlock"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * static_cast<double>(blockFrames) / rate / 100,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(render)->Name("playback/render")->Arg(8)->Arg(16)->Arg(32)->Arg(64)->Unit(benchmark::kMicrosecond);

// --- Load

constexpr int shortSeconds = 180;
constexpr int longSeconds = 600;

class NoDecoder final : public SampleDecoder {
  public:
    [[nodiscard]] std::unique_ptr<SampleStream> open(const std::filesystem::path&) const override { return nullptr; }
};

void loaded(benchmark::State& state) {
    const NoDecoder decoder;
    const bench::PolyTake take = bench::polyTake(shortSeconds);
    for (auto _ : state)
        benchmark::DoNotOptimize(loadTake({take.path}, true, decoder, availableMemory, {}));
    state.SetBytesProcessed(static_cast<std::int64_t>(take.audioBytes()) * state.iterations());
}
BENCHMARK(loaded)->Name("playback/load/ours")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(5);

/// From the moment a take is chosen until an output that is waiting for it has its first block of sound.
void firstSound(benchmark::State& state) {
    const NoDecoder decoder;
    const bench::PolyTake file = bench::polyTake(longSeconds);
    std::vector<float> left(blockFrames);
    std::vector<float> right(blockFrames);
    for (auto _ : state) {
        const auto take = loadTake({file.path}, true, decoder, availableMemory, {});
        TakeRenderer renderer(take, 0);
        renderer.setMix(mixPlan(MixerState(take->nbCanaux)), 1.0F);
        renderer.setTransport({true, 0, take->frameTotal, 0, take->frameTotal});
        renderer.render(left, right);
        if (left.back() == 0) return state.SkipWithError("is silent");
    }
}
BENCHMARK(firstSound)->Name("playback/first_sound/ours")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(2);

/// What anybody would write: read a piece, convert it, one channel behind the other into fresh memory.
void bareLoop(benchmark::State& state, int seconds) {
    constexpr std::size_t pieceFrames = 65536;
    const bench::PolyTake take = bench::polyTake(seconds);
    constexpr std::size_t channels = bench::PolyTake::channels;
    constexpr std::size_t frameBytes = bench::PolyTake::frameBytes;
    const std::size_t frames = take.frames;
    for (auto _ : state) {
        const std::unique_ptr<float[]> planes(new float[frames * channels]);
        std::vector<unsigned char> piece(pieceFrames * frameBytes);
        const int file = ::open(take.path.c_str(), O_RDONLY | O_CLOEXEC);
        if (file < 0 || ::lseek(file, 44, SEEK_SET) != 44) return state.SkipWithError("cannot open");
        for (std::size_t done = 0; done < frames;) {
            const ssize_t got = ::read(file, piece.data(), piece.size());
            if (got <= 0) return state.SkipWithError("cannot read");
            const std::size_t count = static_cast<std::size_t>(got) / frameBytes;
            const unsigned char* at = piece.data();
            for (std::size_t i = 0; i < count; ++i) {
                for (std::size_t c = 0; c < channels; ++c, at += 3) {
                    const auto bits = static_cast<std::uint32_t>(at[0]) << 8U |
                                      static_cast<std::uint32_t>(at[1]) << 16U |
                                      static_cast<std::uint32_t>(at[2]) << 24U;
                    planes[c * frames + done + i] = static_cast<float>(static_cast<std::int32_t>(bits)) * 0x1p-31F;
                }
            }
            done += count;
        }
        ::close(file);
        benchmark::DoNotOptimize(planes.get());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(take.audioBytes()) * state.iterations());
}
BENCHMARK_CAPTURE(bareLoop, three_minutes, shortSeconds)
    ->Name("playback/load/bare_loop")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);
BENCHMARK_CAPTURE(bareLoop, ten_minutes, longSeconds)
    ->Name("playback/first_sound/bare_loop")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(2);

}  // namespace
