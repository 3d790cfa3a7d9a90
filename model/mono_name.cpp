#include "model/mono_name.h"

#include "base/text.h"

namespace dravik {
namespace {

/// No recorder counts so many tracks: what is larger is a date or a serial number, and might not fit an int.
constexpr std::int64_t maxTrackNumber = 1'000'000;

std::optional<int> trackNumber(std::string_view digits) {
    const std::optional<std::int64_t> value = parseInteger(digits);
    if (digits.empty() || !value || *value > maxTrackNumber) return std::nullopt;
    return static_cast<int>(*value);
}

std::size_t digitsEnd(std::string_view nom, std::size_t at) {
    while (at < nom.size() && isAsciiDigit(nom[at]))
        ++at;
    return at;
}

std::optional<MonoName> split(std::string_view nom, std::size_t at, std::optional<int> numero) {
    if (!numero || at == 0) return std::nullopt;
    return MonoName{nom.substr(0, at), nom.substr(at), *numero};
}

/// Ends the name in "_Tr" + digits, rather than in a single character that might be anything?
bool saysTrack(const MonoName& nom) noexcept { return equalsIgnoringAsciiCase(nom.suffixe.substr(0, 3), "_tr"); }

}  // namespace

std::optional<MonoName> numeroPisteMono(std::string_view nom, bool severalMonoFiles) {
    for (std::size_t at = nom.size(); at-- > 0;) {
        if (nom[at] != '_' || at + 1 >= nom.size() || toLowerAscii(nom[at + 1]) != 't') continue;
        const std::size_t end = digitsEnd(nom, at + 2);
        if (end < nom.size() && nom[end] != '_') continue;
        if (auto found = split(nom, at, trackNumber(nom.substr(at + 2, end - at - 2)))) return found;
    }
    if (!severalMonoFiles || nom.size() < 3) return std::nullopt;
    const std::size_t at = nom.size() - 3;
    if (nom[at] != '_' || digitsEnd(nom, at + 1) != nom.size()) return std::nullopt;
    return split(nom, at, trackNumber(nom.substr(at + 1)));
}

std::optional<MonoName> familyTrackNumber(std::string_view nom) {
    for (std::size_t at = nom.size(); at-- > 0;) {
        if (nom[at] != '_' || !equalsIgnoringAsciiCase(nom.substr(at + 1, 2), "tr")) continue;
        const std::size_t end = digitsEnd(nom, at + 3);
        std::string_view rest = nom.substr(end);
        if (rest.starts_with('_')) {
            rest.remove_prefix(1);
            if (rest.empty()) continue;
            while (!rest.empty() && isAsciiLetter(rest.front()))
                rest.remove_prefix(1);
        }
        if (!rest.empty()) continue;
        if (auto found = split(nom, at, trackNumber(nom.substr(at + 3, end - at - 3)))) return found;
    }
    if (nom.size() < 2 || nom[nom.size() - 2] != '_') return std::nullopt;
    const char last = nom.back();
    if (isAsciiDigit(last)) return split(nom, nom.size() - 2, last - '0');
    if (last >= 'A' && last <= 'Z') return split(nom, nom.size() - 2, last - 'A' + 10);
    return std::nullopt;
}

std::optional<TrackSuffix> trackSuffix(std::string_view nom, bool hasFamily, bool severalMonoFiles) {
    const std::optional<MonoName> sure = numeroPisteMono(nom, severalMonoFiles);
    const std::optional<MonoName> family = hasFamily ? familyTrackNumber(nom) : std::nullopt;
    if (family && (!sure || (saysTrack(*family) && family->base.size() > sure->base.size()))) {
        return TrackSuffix{*family, true};
    }
    return sure ? std::optional(TrackSuffix{*sure, false}) : std::nullopt;
}

std::string_view withoutTrailingSeparators(std::string_view base) noexcept {
    const std::size_t last = base.find_last_not_of("_-. ");
    return base.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

std::string baseNameKey(std::string_view base) { return foldedCase(withoutTrailingSeparators(base)); }

}  // namespace dravik
