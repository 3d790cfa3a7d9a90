#pragma once

#include "model/info_fichier.h"
#include "operations/rename_pattern.h"

#include <string>
#include <string_view>

namespace dravik::OperationsAudio {

/// What the blocks of a pattern come to for a file. Pure functions of its record, any thread.

/// The file's value as a part of a name; empty where the record has none. What cannot stand in a name on every volume
/// (name_characters.h) is "-". Renderings: "CIRC", "WILD", "2024-05-14", "10.12.44.03", "29.97DF", "24bit", "44.1kHz",
/// track names joined with "-".
[[nodiscard]] std::string tokenText(TokenRenommage token, const InfoFichier& fichier);

/// What becomes of the separators around a token that is empty.
enum class EmptyTokens {
    takeSeparatorsAlong,  ///< those right before it go, or at the start of the name those right behind it
    leaveSeparators,
};
/// The name without an extension. May be empty, and with free text no possible name.
[[nodiscard]] std::string assembledBase(const RenamePattern& pattern, const InfoFichier& fichier, EmptyTokens empty);
/// The same with the extension of the file; empty when the base is empty or nothing but blanks.
[[nodiscard]] std::string assembledName(const RenamePattern& pattern, const InfoFichier& fichier, EmptyTokens empty);

/// Could a file be called so? No "/" and ":", no control characters, no "." in front (which would hide it), not longer
/// than a folder takes.
[[nodiscard]] bool isPossibleName(std::string_view fileName) noexcept;

}  // namespace dravik::OperationsAudio
