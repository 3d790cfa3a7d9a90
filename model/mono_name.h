#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace dravik {

/// How recorders number the mono files of one take: a track suffix at the end of the name. Pure functions of a file
/// name without its extension.

/// A name split at its track suffix.
struct MonoName {
    std::string_view base;     ///< the text before the suffix; not empty
    std::string_view suffixe;  ///< the suffix as it stands, "_T03", "_04", "_Tr2", "_A"; base + suffixe is the name
    int numero = 0;            ///< track number
    friend bool operator==(const MonoName&, const MonoName&) = default;
};

/// "SC12_T03" or "SC12_T03_b": the last "_t" (any case) whose digits end the name or are followed by "_". Failing that,
/// where there is more than one mono file, two digits behind a "_": "Take7_04". Views into `nom`.
[[nodiscard]] std::optional<MonoName> numeroPisteMono(std::string_view nom, bool severalMonoFiles = true);

/// Suffixes that are too common to mean a track by themselves: "_Tr" + digits (also followed by "_" + letters), "_" +
/// one digit, "_" + one capital letter (A counts as 10). Only files of one FAMILY_UID are joined by them.
[[nodiscard]] std::optional<MonoName> familyTrackNumber(std::string_view nom);

/// The suffix by which a file is a track of a set.
struct TrackSuffix {
    MonoName nom;
    bool withinFamilyOnly = false;  ///< joins only files of one FAMILY_UID
};
/// numeroPisteMono, else, for a file that has a FAMILY_UID, familyTrackNumber. Where a take's number stands ahead of an
/// explicit track ("12A_T001_Tr1") the family's reading wins: the other would give all tracks of the take number 1.
[[nodiscard]] std::optional<TrackSuffix> trackSuffix(std::string_view nom, bool hasFamily,
                                                     bool severalMonoFiles = true);

/// The name in which two base names are compared: lower-cased, without trailing "_", "-", "." and blanks.
[[nodiscard]] std::string baseNameKey(std::string_view base);
/// Without those trailing characters, case kept.
[[nodiscard]] std::string_view withoutTrailingSeparators(std::string_view base) noexcept;

}  // namespace dravik
