#include "playback/peaks.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace dravik {
namespace {

/// From one resolution to the next.
constexpr std::int64_t resolutionRatio = 8;

PeakColumn columnOf(PeakValue value) noexcept {
    if (value.isEmpty()) return {};
    // The largest step stands for everything up to full scale.
    const float highest =
        value.highest == std::numeric_limits<std::int16_t>::max() ? 1.0F : static_cast<float>(value.highest) * 0x1p-15F;
    return {static_cast<float>(value.lowest) * 0x1p-15F, highest, true};
}

/// The coarsest one that is no coarser than a pixel; else the finest that is there.
const PeakLevel* levelFor(const FilePeaks& file, double framesPerPixel) noexcept {
    const PeakLevel* best = nullptr;
    for (const PeakLevel* level : {&file.donneesAudio, &file.donneesAudioHR, &file.donneesAudioUHR}) {
        if (level->bins == 0) continue;
        best = level;
        if (static_cast<double>(level->framesPerBin) <= framesPerPixel) break;
    }
    return best;
}

}  // namespace

PeakWidths peakWidthsFrom(std::int64_t ultraHigh, std::int64_t frames) noexcept {
    PeakWidths widths{0, ultraHigh * resolutionRatio, ultraHigh};
    widths.coarse = widths.high * resolutionRatio;
    while (static_cast<std::int64_t>(binsFor(frames, widths.coarse)) > maximumCoarseColumns)
        widths.coarse *= 2;
    return widths;
}

PeakWidths peakWidths(int channels, std::int64_t frames) noexcept {
    std::int64_t width = finestPeakFrames;
    const std::int64_t most = std::clamp<std::int64_t>(maximumPeakValues / std::max(1, channels), 1, maximumPeakBins);
    while (static_cast<std::int64_t>(binsFor(frames, width)) > most)
        width *= 2;
    return peakWidthsFrom(width, frames);
}

void reducePeaks(std::span<const PeakValue> fine, std::size_t ratio, std::span<PeakValue> coarse) noexcept {
    for (std::size_t i = 0; i < coarse.size() && i * ratio < fine.size(); ++i) {
        for (const PeakValue& value : fine.subspan(i * ratio, std::min(ratio, fine.size() - i * ratio)))
            coarse[i].add(value);
    }
}

void FilePeaks::deriveCoarser() {
    const PeakWidths widths = peakWidthsFrom(donneesAudioUHR.framesPerBin, frames);
    const auto derive = [&](const PeakLevel& fine, PeakLevel& coarse, std::int64_t width) {
        coarse.framesPerBin = width;
        coarse.bins = binsFor(frames, width);
        coarse.values.assign(coarse.bins * static_cast<std::size_t>(channels), {});
        const auto ratio = static_cast<std::size_t>(width / fine.framesPerBin);
        for (int c = 0; c < channels; ++c)
            reducePeaks(fine.channel(c), ratio, coarse.channel(c));
    };
    derive(donneesAudioUHR, donneesAudioHR, widths.high);
    derive(donneesAudioHR, donneesAudio, widths.coarse);
}

int TakePeaks::nbCanaux() const noexcept {
    int sum = 0;
    for (const FilePeaks& file : files)
        sum += file.channels;
    return sum;
}

std::int64_t TakePeaks::frameTotal() const noexcept {
    std::int64_t longest = 0;
    for (const FilePeaks& file : files)
        longest = std::max(longest, file.frames);
    return longest;
}

void TakePeaks::add(const CoarsePeaks& found) {
    if (found.channels <= 0 || found.framesPerColumn <= 0) return;
    if (found.file >= files.size()) files.resize(found.file + 1);
    FilePeaks& file = files[found.file];
    PeakLevel& level = file.donneesAudio;
    if (file.channels == 0) {
        file.channels = found.channels;
        file.frames = found.frames;
        file.sampleRate = found.sampleRate;
        level.framesPerBin = found.framesPerColumn;
        level.bins = binsFor(found.frames, found.framesPerColumn);
        level.values.assign(level.bins * static_cast<std::size_t>(found.channels), {});
    }
    const auto channels = static_cast<std::size_t>(found.channels);
    if (file.channels != found.channels || level.framesPerBin != found.framesPerColumn) return;
    if (found.firstColumn > level.bins || found.columns > level.bins - found.firstColumn ||
        found.values.size() != found.columns * channels) {
        return;
    }
    for (std::size_t c = 0; c < channels; ++c) {
        std::copy_n(found.values.begin() + static_cast<std::ptrdiff_t>(c * found.columns), found.columns,
                    level.values.begin() + static_cast<std::ptrdiff_t>(c * level.bins + found.firstColumn));
    }
}

TakePeaks::Detail TakePeaks::columns(int canal, std::int64_t firstFrame, double framesPerPixel,
                                     std::span<PeakColumn> into) const noexcept {
    std::fill(into.begin(), into.end(), PeakColumn{});
    auto file = files.begin();
    while (file != files.end() && canal >= file->channels)
        canal -= (file++)->channels;
    if (file == files.end() || canal < 0 || !(framesPerPixel > 0) || !std::isfinite(framesPerPixel)) {
        return Detail::peaks;
    }
    const Detail detail =
        framesPerPixel < static_cast<double>(file->donneesAudioUHR.bins > 0 ? file->donneesAudioUHR.framesPerBin
                                                                            : finestPeakFrames)
            ? Detail::samples
            : Detail::peaks;
    const PeakLevel* level = levelFor(*file, framesPerPixel);
    if (level == nullptr) return detail;
    const std::span<const PeakValue> values = level->channel(canal);

    // In doubles, which hold every frame of a file exactly and do not overflow far outside of it.
    const auto first = static_cast<double>(firstFrame);
    const auto end = static_cast<double>(file->frames);
    for (std::size_t i = 0; i < into.size(); ++i) {
        const double from = std::max(0.0, std::floor(first + static_cast<double>(i) * framesPerPixel));
        const double to = std::min(end, std::ceil(first + static_cast<double>(i + 1) * framesPerPixel));
        if (from >= to) continue;
        const auto firstBin = static_cast<std::size_t>(static_cast<std::int64_t>(from) / level->framesPerBin);
        const std::size_t endBin = std::min(values.size(), binsFor(static_cast<std::int64_t>(to), level->framesPerBin));
        PeakValue value;
        for (std::size_t bin = firstBin; bin < endBin; ++bin)
            value.add(values[bin]);
        into[i] = columnOf(value);
    }
    return detail;
}

}  // namespace dravik
