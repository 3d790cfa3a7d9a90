// The waveform of a take of 32 tracks and one hour: what the main thread draws when the view is moved, and while the
// take plays under a playhead that stays in the middle. A frame of a screen that is drawn sixty times a second has 16.7
// ms.

#include "ui/waveform_picture.h"

#include <QGuiApplication>
#include <cstdint>

#include <benchmark/benchmark.h>

namespace {

using namespace dravik;

constexpr int tracks = 32;
constexpr std::int64_t frames = std::int64_t{3600} * 48'000;
const QSize size(1800, 900);

const TakePeaks& hourOfTracks() {
    static const TakePeaks made = [] {
        FilePeaks file;
        file.channels = tracks;
        file.frames = frames;
        file.sampleRate = 48'000;
        PeakLevel& fine = file.donneesAudioUHR;
        fine.framesPerBin = peakWidths(tracks, frames).ultraHigh;
        fine.bins = binsFor(frames, fine.framesPerBin);
        fine.values.resize(fine.bins * tracks);
        std::uint32_t noise = 1;
        for (PeakValue& value : fine.values) {
            noise = noise * 1'664'525U + 1'013'904'223U;
            const auto level = static_cast<std::int16_t>(noise >> 18U);
            value = {static_cast<std::int16_t>(-level), level};
        }
        file.deriveCoarser();
        TakePeaks take;
        take.files.push_back(std::move(file));
        return take;
    }();
    return made;
}

std::vector<WaveformLane> lanes() {
    std::vector<WaveformLane> all;
    const int height = size.height() / tracks;
    for (int canal = 0; canal < tracks; ++canal)
        all.push_back({canal, QRect(0, canal * height, size.width(), height - 3), canal % 5 == 4});
    return all;
}

/// Scrolled by a sixtieth of a second from one picture to the next.
void drawn(benchmark::State& state, double framesPerPixel) {
    const TakePeaks& peaks = hourOfTracks();
    const std::vector<WaveformLane> all = lanes();
    WaveformViewport view;
    view.setWidth(size.width());
    view.setTake(frames);
    view.showRange(frames / 2, frames / 2 + static_cast<std::int64_t>(framesPerPixel * size.width()));
    for (auto _ : state) {
        view.scrollBy(800 / framesPerPixel);
        benchmark::DoNotOptimize(drawWaveform(size, all, {&peaks, nullptr}, view, 1,
                                              {QColor(120, 180, 220), QColor(80, 80, 80), QColor(60, 60, 60)}));
    }
}
BENCHMARK_CAPTURE(drawn, whole, 96'000.0)->Name("waveform/draw/the_whole_hour")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawn, minute, 1'600.0)->Name("waveform/draw/a_minute")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawn, seconds, 520.0)->Name("waveform/draw/twenty_seconds")->Unit(benchmark::kMillisecond);

void overview(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(drawOverview({size.width(), 30}, hourOfTracks(), QColor(120, 120, 120)));
}
BENCHMARK(overview)->Name("waveform/draw/overview")->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
