#include "app/take_times.h"

#include "base/text.h"
#include "model/audio_metadata.h"
#include "model/wave/timecode.h"

#include <algorithm>
#include <cmath>

namespace dravik {
namespace {

/// Longer than any take, short enough that no sum of it overflows.
constexpr double maxSeconds = 1e9;
/// In samples; hours have no limit in a file, and sums with the length must not overflow either.
constexpr std::uint64_t maxStart = 1ULL << 60U;

double sampleRateOf(const GroupeFichiers& groupe) {
    const double rate = groupe.fichiers.front().sampleRate;
    return rate > 0 ? rate : 48000;
}

/// Sample frames from midnight to the start of the take.
std::optional<std::uint64_t> startOf(const GroupeFichiers& groupe) {
    if (!groupe.timecode || !groupe.framerate) return std::nullopt;
    if (!parseTypedTimecode(*groupe.timecode, *groupe.framerate)) return std::nullopt;
    const std::uint64_t start = samplesFromTimecode(*groupe.timecode, *groupe.framerate, sampleRateOf(groupe));
    return start < maxStart ? std::optional(start) : std::nullopt;
}

std::optional<std::string> timecodeAt(const GroupeFichiers& groupe, std::int64_t frame) {
    const auto start = startOf(groupe);
    if (!start) return std::nullopt;
    return timecodeFromSamples(*start + static_cast<std::uint64_t>(std::max<std::int64_t>(0, frame)),
                               actualRate(*groupe.framerate), sampleRateOf(groupe));
}

/// "SS", "MM:SS" or "HH:MM:SS", the seconds with a fraction or without. Groups behind the first are below 60.
std::optional<double> parseElapsed(std::string_view text) {
    double seconds = 0;
    for (int group = 1;; ++group) {
        const std::size_t colon = text.find(':');
        const std::string_view digits = text.substr(0, colon);
        const bool last = colon == std::string_view::npos;
        const auto allowed = [&](char c) { return isAsciiDigit(c) || (last && c == '.'); };
        if (!std::all_of(digits.begin(), digits.end(), allowed)) return std::nullopt;
        const std::optional<double> value = parseDouble(digits);
        if (!value || group > 3 || *value > maxSeconds || (group > 1 && *value >= 60)) return std::nullopt;
        seconds = seconds * 60 + *value;
        if (last) return seconds;
        text.remove_prefix(colon + 1);
    }
}

}  // namespace

std::int64_t lastFrameOf(const GroupeFichiers& groupe) {
    const InfoFichier& fichier = groupe.fichiers.front();
    return std::max<std::int64_t>(0, std::llround(std::min(fichier.dureeSecondes, maxSeconds) * fichier.sampleRate));
}

std::string positionText(const GroupeFichiers& groupe, std::int64_t frame) {
    if (auto timecode = timecodeAt(groupe, frame)) return *timecode;
    return durationText(static_cast<double>(frame) / sampleRateOf(groupe));
}

std::optional<std::int64_t> parsePosition(const GroupeFichiers& groupe, std::string_view typed) {
    const std::string_view text = trimmed(typed);
    const double rate = sampleRateOf(groupe);
    const std::int64_t last = lastFrameOf(groupe);
    if (const auto start = startOf(groupe)) {
        if (const auto timecode = parseTypedTimecode(text, *groupe.framerate)) {
            const auto absolute = static_cast<std::int64_t>(samplesFromTimecode(*timecode, *groupe.framerate, rate));
            const auto nextDay = static_cast<std::int64_t>(samplesFromTimecode("24:00:00:00", *groupe.framerate, rate));
            const auto begin = static_cast<std::int64_t>(*start);
            const std::int64_t frame = absolute < begin ? absolute + nextDay - begin : absolute - begin;
            return frame >= 0 && frame <= last ? std::optional(frame) : std::nullopt;
        }
    }
    const std::optional<double> seconds = parseElapsed(text);
    if (!seconds) return std::nullopt;
    const double frame = std::round(*seconds * rate);
    return frame <= static_cast<double>(last) ? std::optional(static_cast<std::int64_t>(frame)) : std::nullopt;
}

}  // namespace dravik
