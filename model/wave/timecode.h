#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace dravik {

/// Frame-rate labels and start timecodes, as iXML's SPEED block stores them. Pure functions, any thread, nothing
/// throws. Drop-frame is a label only: no frame number is ever skipped, counting is plain at the nominal rate.

/// The labels offered to the user, in the order in which they are offered.
inline constexpr std::string_view framerateLabels[] = {"23.976", "24", "25", "29.97", "29.97 DF", "30"};

inline constexpr double rate23976 = 23.976023976023978;  ///< 24000/1001
inline constexpr double rate2997 = 29.97002997002997;    ///< 30000/1001

/// The rate in a TIMECODE_RATE text such as "30000/1001" or "25"; 25 when it does not parse or is not above 0.
[[nodiscard]] double rateFromIxml(std::string_view timecodeRate) noexcept;
/// Label of a rate read from a file ("29.97", "25", "50.0"), with " DF" when the TIMECODE_FLAG says so.
[[nodiscard]] std::string framerateLabel(double framesPerSecond, std::optional<std::string_view> timecodeFlag);

/// What a label stands for.
[[nodiscard]] double actualRate(std::string_view label) noexcept;  ///< frames per second; 25 when it makes no sense
[[nodiscard]] std::int64_t nominalRate(std::string_view label) noexcept;  ///< frames counted per second, at least 1
[[nodiscard]] bool isDropFrame(std::string_view label) noexcept;
[[nodiscard]] std::string ixmlRateText(std::string_view label);  ///< TIMECODE_RATE: "24000/1001", "25/1"
[[nodiscard]] std::string speedText(std::string_view label);     ///< MASTER_SPEED: "%07.3f" without locale, "023.976"
[[nodiscard]] std::string_view flagText(std::string_view label) noexcept;  ///< TIMECODE_FLAG: "DF" or "NDF"

/// Can this label be written so that it reads back as itself? Fractional rates other than the offered ones cannot: the
/// rate that is written for 59.94 is 59/1, and a timecode counted at the one and read at the other is another time.
[[nodiscard]] bool isWritableLabel(std::string_view label);

/// Samples since midnight as "HH:MM:SS:FF" at the rate read from the file (rateFromIxml, not a label). Hours are not
/// wrapped at 24. A sample rate that is not above 0 counts as 48000. Absent when the arithmetic would overflow.
[[nodiscard]] std::optional<std::string> timecodeFromSamples(std::uint64_t samples, double framesPerSecond,
                                                             double sampleRate);
/// The other way, at the rate of a label. A text that does not hold exactly four integers, or whose count is negative
/// or overflows, gives 0 (midnight). A sample rate that is not above 0 counts as 48000.
[[nodiscard]] std::uint64_t samplesFromTimecode(std::string_view timecode, std::string_view label, double sampleRate);

/// A start timecode as typed by a user: HH:MM:SS:FF or HHMMSSFF; minutes and seconds below 60, frames below the
/// nominal rate of `label`. With colons, hours and frames may have more digits, as they are displayed beyond 99. Gives
/// "HH:MM:SS:FF"; absent means "Invalid Timecode". An empty text is not a timecode.
[[nodiscard]] std::optional<std::string> parseTypedTimecode(std::string_view typed, std::string_view label);

}  // namespace dravik
