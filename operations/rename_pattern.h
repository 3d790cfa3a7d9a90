#pragma once

#include "base/error.h"
#include "base/uuid.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace dravik {

/// The pattern of which a batch rename makes new names: blocks in a row, put together by the user. Values; what they
/// come to for a file is said in renamed_name.h.

/// What a name can draw from a file's record.
enum class TokenRenommage {
    originalName,
    project,
    trackName,
    scene,
    take,
    tape,
    startTimecode,
    recordingDate,
    circled,
    wild,
    fps,
    bits,
    sampleRate,
};

/// One block of a pattern. The identity is for lists on screen; the same content made twice is two blocks.
struct BlocRenommage {
    struct Texte {
        std::string text;
        friend bool operator==(const Texte&, const Texte&) = default;
    };
    /// Goes when the token beside it is empty.
    struct Separateur {
        std::string text;
        friend bool operator==(const Separateur&, const Separateur&) = default;
    };
    using Contenu = std::variant<TokenRenommage, Texte, Separateur>;

    Uuid id;
    Contenu contenu;

    [[nodiscard]] static BlocRenommage token(TokenRenommage token) { return {Uuid::random(), token}; }
    [[nodiscard]] static BlocRenommage texte(std::string text) { return {Uuid::random(), Texte{std::move(text)}}; }
    [[nodiscard]] static BlocRenommage separateur(std::string text) {
        return {Uuid::random(), Separateur{std::move(text)}};
    }
};
using RenamePattern = std::vector<BlocRenommage>;

/// The buttons under "Available Tokens", in the order in which they are offered.
enum class PaletteRenommage {
    originalName,
    project,
    scene,
    take,
    tape,
    recordingDate,
    startTimecode,
    trackName,
    circled,
    wild,
    fps,
    bits,
    sampleRate,
    separator,
    dash,
    text,
};
inline constexpr std::array allPaletteRenommage = {
    PaletteRenommage::originalName,  PaletteRenommage::project,   PaletteRenommage::scene,
    PaletteRenommage::take,          PaletteRenommage::tape,      PaletteRenommage::recordingDate,
    PaletteRenommage::startTimecode, PaletteRenommage::trackName, PaletteRenommage::circled,
    PaletteRenommage::wild,          PaletteRenommage::fps,       PaletteRenommage::bits,
    PaletteRenommage::sampleRate,    PaletteRenommage::separator, PaletteRenommage::dash,
    PaletteRenommage::text,
};

[[nodiscard]] std::string_view label(PaletteRenommage button) noexcept;       ///< "Recording Date", "Separator"
[[nodiscard]] std::string_view shortLabel(PaletteRenommage button) noexcept;  ///< "Rec Date", "_"
/// The block that the button appends: a separator is "_", a dash is "-", free text is empty until it is typed.
[[nodiscard]] BlocRenommage newBlock(PaletteRenommage button);
/// The label of a token, as on its button.
[[nodiscard]] std::string_view label(TokenRenommage token) noexcept;

/// A pattern's text that cannot be read; `what()` says why and what could stand there.
class RenamePatternError : public Error {
  public:
    using Error::Error;
};

/// A pattern as text, for the command line and for patterns that are kept: "{scene}_{take}_{trackName}".
/// - "{name}" is a token; letter case makes no difference
/// - "_" and "-" are separators, one block each
/// - "{text:...}" is free text in which "_" and "-" are no separators, "{separator:...}" a separator of any text
/// - "{{" and "}}" are braces; everything else is free text
/// Throws RenamePatternError. Gives no blocks for an empty text.
[[nodiscard]] RenamePattern parsePattern(std::string_view text);
/// The other way: parsePattern gives the same blocks again, but for their identities.
[[nodiscard]] std::string patternText(const RenamePattern& pattern);
/// Same blocks but for their identities?
[[nodiscard]] bool isSamePattern(const RenamePattern& a, const RenamePattern& b) noexcept;

}  // namespace dravik
