#include "playback/counter.h"

#include "base/text.h"
#include "model/wave/timecode.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <fmt/format.h>

namespace dravik {
namespace {

/// Counts beyond this are no position in a recording but a damaged number; everything below fits a double exactly.
constexpr double mostFrames = 9.0e15;

std::int64_t whole(double frames) noexcept {
    if (!(std::abs(frames) < mostFrames)) return 0;
    return static_cast<std::int64_t>(frames);
}

/// A start timecode as a count of frames; absent when the text is not four numbers.
std::optional<std::int64_t> countOf(std::string_view text, double nominal) {
    std::array<double, 4> fields{};
    std::size_t found = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(':'), text.size());
        const std::optional<std::int64_t> value = parseInteger(text.substr(0, end));
        if (!value || found == fields.size()) return std::nullopt;
        fields.at(found++) = static_cast<double>(*value);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    if (found != fields.size()) return std::nullopt;
    const double frames = ((fields[0] * 60 + fields[1]) * 60 + fields[2]) * nominal + fields[3];
    if (!(frames >= 0 && frames < mostFrames)) return std::nullopt;
    return static_cast<std::int64_t>(frames);
}

}  // namespace

TakeTimecode TakeTimecode::of(const std::optional<std::string>& framerate, const std::optional<std::string>& timecode) {
    TakeTimecode take;
    if (framerate) {
        take.timecodeRateDisponible = true;
        take.tcFps = actualRate(*framerate);
        take.tcFlag = flagText(*framerate);
    }
    if (timecode) {
        const std::optional<std::int64_t> start = countOf(*timecode, std::trunc(nominalTimecodeRate(take.tcFps)));
        take.timecodeDepartDisponible = start.has_value();
        take.tcDepart = start.value_or(0);
    }
    return take;
}

double nominalTimecodeRate(double tcFps) noexcept {
    if (tcFps >= 23.97 && tcFps <= 23.98) return 24;
    if (tcFps >= 29.96 && tcFps <= 29.98) return 30;
    return tcFps >= 1 && tcFps < mostFrames ? tcFps : 1;
}

std::int64_t timecodeFrameAt(std::int64_t frame, double sampleRate, const TakeTimecode& take) noexcept {
    if (!(sampleRate > 0)) return take.tcDepart;
    return take.tcDepart + whole((static_cast<double>(frame) + 0.5) * take.tcFps / sampleRate);
}

std::string timecodeText(std::int64_t timecodeFrame, double tcFps) {
    const auto rate = static_cast<std::int64_t>(nominalTimecodeRate(tcFps));
    const std::int64_t total = std::max<std::int64_t>(0, timecodeFrame);
    const std::int64_t seconds = total / rate;
    return fmt::format("{:02}:{:02}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60, total % rate);
}

std::string elapsedText(std::int64_t frame, double sampleRate) {
    // Multiplied before it is divided: 0.29 s would else come out as 28 hundredths.
    const std::int64_t hundredths =
        sampleRate > 0 ? whole(static_cast<double>(std::max<std::int64_t>(0, frame)) * 100.0 / sampleRate) : 0;
    const std::int64_t seconds = hundredths / 100;
    return fmt::format("{:02}:{:02}:{:02}.{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60, hundredths % 100);
}

std::int64_t nudgeSamples(std::string_view nudgeValeur, int count, double sampleRate, double tcFps) noexcept {
    if (!(sampleRate > 0) || !(tcFps > 0)) return 0;
    double timecodeFrames = count;
    if (nudgeValeur == "1s") timecodeFrames *= nominalTimecodeRate(tcFps);
    if (nudgeValeur == "5s") timecodeFrames *= nominalTimecodeRate(tcFps) * 5;
    return whole(std::round(timecodeFrames * sampleRate / tcFps));
}

PlayRange playRange(std::optional<double> selectionDebut, std::optional<double> selectionFin, std::int64_t position,
                    double sampleRate, std::int64_t frameTotal) noexcept {
    const auto frameOf = [&](double seconds) {
        // 0.29 s is a whole frame, although the product falls short of it by its last bit.
        const double frame = seconds * sampleRate + 1e-3;
        if (!(frame > 0)) return std::int64_t{0};
        return frame < static_cast<double>(frameTotal) ? static_cast<std::int64_t>(frame) : frameTotal;
    };
    PlayRange range{0, frameTotal};
    if (selectionDebut && selectionFin && !(*selectionFin > *selectionDebut)) return range;
    if (selectionDebut) range.debut = frameOf(*selectionDebut);
    if (selectionFin && frameOf(*selectionFin) > range.debut) range.fin = frameOf(*selectionFin);
    if (position >= range.fin) range.fin = frameTotal;
    return range;
}

}  // namespace dravik
