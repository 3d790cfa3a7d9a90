#include "cli/export_route.h"

#include "base/text.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace dravik {
namespace {

/// A track's position from its number.
std::optional<int> track(std::string_view number) {
    constexpr std::int64_t beyondAnyFile = 65535;
    const std::optional<std::int64_t> value = parseInteger(number);
    if (!value || *value < 1 || *value > beyondAnyFile) return std::nullopt;
    return static_cast<int>(*value) - 1;
}

std::optional<OperationAudioExportRouting> mono(std::string_view text) {
    routing::Mono route;
    const std::size_t at = text.find('@');
    const std::string_view tracks = text.substr(0, at);
    const std::size_t plus = tracks.find('+');
    const std::optional<int> first = track(tracks.substr(0, plus));
    if (!first) return std::nullopt;
    route.first = *first;
    if (plus != std::string_view::npos) {
        route.second = track(tracks.substr(plus + 1));
        if (!route.second) return std::nullopt;
    }
    if (at != std::string_view::npos) {
        // More than this is no level that anybody sums at.
        constexpr double mostDecibels = 60;
        const std::optional<double> gain = parseDouble(text.substr(at + 1));
        if (!gain || !route.second || std::fabs(*gain) > mostDecibels) return std::nullopt;
        route.averageGainDB = *gain;
    }
    return route;
}

std::optional<OperationAudioExportRouting> stereo(std::string_view text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos) return std::nullopt;
    const std::optional<int> left = track(text.substr(0, comma));
    const std::optional<int> right = track(text.substr(comma + 1));
    if (!left || !right) return std::nullopt;
    return routing::Stereo{*left, *right};
}

}  // namespace

std::optional<OperationAudioExportRouting> parseRoute(std::string_view text) {
    constexpr std::string_view monoPrefix = "mono:", stereoPrefix = "stereo:";
    if (text == "poly") return routing::Poly{};
    if (text.starts_with(monoPrefix)) return mono(text.substr(monoPrefix.size()));
    if (text.starts_with(stereoPrefix)) return stereo(text.substr(stereoPrefix.size()));
    return std::nullopt;
}

}  // namespace dravik
