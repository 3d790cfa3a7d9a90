#pragma once

#include "base/bytes.h"
#include "model/wave/metadata_values.h"
#include "model/wave/take_flags.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace dravik {

/// Fields of the Broadcast Audio Extension chunk (EBU Tech 3285) that Dravik reads or writes. Works on the chunk's
/// payload, knows no file. Pure functions, any thread.
namespace bext {

inline constexpr std::size_t descriptionBytes = 256;       ///< at offset 0
inline constexpr std::size_t originationDateOffset = 320;  ///< 10 ASCII bytes "yyyy-MM-dd"
inline constexpr std::size_t originationDateBytes = 10;
inline constexpr std::size_t dateMinimumBytes = 330;     ///< payloads below it have no date
inline constexpr std::size_t timeReferenceOffset = 338;  ///< 64 bits, samples since midnight
inline constexpr std::size_t timeReferenceEnd = 346;

}  // namespace bext

/// A calendar day in UTC.
struct RecordingDate {
    int year = 0, month = 0, day = 0;
    friend bool operator==(const RecordingDate&, const RecordingDate&) = default;
    friend auto operator<=>(const RecordingDate&, const RecordingDate&) = default;
};
[[nodiscard]] std::string formatRecordingDate(const RecordingDate& date);  ///< "yyyy-MM-dd"

/// The date in the ten OriginationDate bytes: trimmed of white space it must be exactly "yyyy-MM-dd" and a day of the
/// Gregorian calendar.
[[nodiscard]] std::optional<RecordingDate> parseOriginationDate(std::string_view tenBytes);

/// The Description text: the first 256 bytes up to the first zero byte.
[[nodiscard]] std::string_view descriptionText(ByteSpan payload) noexcept;

/// The value of the Description's last line of that key, under any prefix letter: "sCIRCLED=TRUE" for "CIRCLED".
[[nodiscard]] std::optional<std::string_view> descriptionValue(ByteSpan payload, std::string_view key) noexcept;

/// The flags as the Description's lines tell them (take_flags.h); absent where none does.
struct DescriptionFlags {
    std::optional<bool> circled, wild;
};
[[nodiscard]] DescriptionFlags descriptionFlags(ByteSpan payload);

/// What a save writes into a bext chunk beside the values themselves.
struct BextValues {
    MetadataValues edited;  ///< absent fields keep their line, whatever it says
    /// The file's state after the edit, always written; absent where nothing in the file tells it: lines stay.
    std::optional<bool> circled, wild;
};

/// A payload of the same length with the Description's key=value lines and, where a start timecode is given and the
/// payload has room for it, the TimeReference brought up to date. A line keeps its place and its recorder's prefix
/// letter; one that is missing is added at the end with the prefix "s". Where the lines do not fit 256 bytes, the
/// edited values are shortened, the longest first, never inside a UTF-8 character; flags, speed and take, of which a
/// part would say something else, are written whole. An edited line for which even that leaves no room is left out,
/// added ones first, from the last on. Lines that are not edited, and everything else, stay as they are; the
/// Description's bytes stay to the last one when its text does not change. Payloads shorter than the Description come
/// back unchanged.
[[nodiscard]] Bytes updatedBext(ByteSpan payload, const BextValues& values);

}  // namespace dravik
