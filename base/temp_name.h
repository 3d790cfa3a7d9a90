#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace dravik {

/// Names of the hidden files that Dravik makes beside the user's, and how to know them again. A token is a UUID text
/// whose last eight digits are a checksum of the others: no user's own file, however it is named, is taken for ours.

/// What a temporary file is for; decides its prefix.
enum class TempKind {
    metadata,    ///< ".metadata-" token ".tmp"
    cues,        ///< ".cues-" token ".tmp"
    output,      ///< ".dravik-op-" token "." target name: new files
    exportWav,   ///< ".dravik-export-" token ".wav"
    partialMp3,  ///< "." target name "." token ".partial.mp3": the codec libraries go by the end of a name
    partialM4a,  ///< "." target name "." token ".partial.m4a"
};

/// A fresh token, "xxxxxxxx-xxxx-4xxx-yxxx-xxxxCCCCCCCC".
[[nodiscard]] std::string freshToken();
[[nodiscard]] bool isOurToken(std::string_view text) noexcept;

/// What the common file systems allow for one file name.
inline constexpr std::size_t maxFileNameBytes = 255;

/// File name (no folder) of a new temporary file that will become `targetName`; a long target name is cut.
[[nodiscard]] std::string freshTemporaryName(TempKind kind, std::string_view targetName);
/// Was this file name made by freshTemporaryName? Such a file holds nothing that is not elsewhere.
[[nodiscard]] bool isTemporaryName(std::string_view fileName) noexcept;

/// The two kinds of hidden names of a user's file on its way between two names. Such a file is never removed.
inline constexpr std::string_view renamePrefix = ".dravik_rename_";         ///< then token, extension
inline constexpr std::string_view batchRenamePrefix = ".dravik-renaming-";  ///< then token of the run, "-", file name
/// Was this file name made by one of the two functions below?
[[nodiscard]] bool isRenameName(std::string_view fileName) noexcept;
/// Does it begin like one, whatever follows?
[[nodiscard]] bool hasRenamePrefix(std::string_view fileName) noexcept;
[[nodiscard]] std::string freshRenameName(std::string_view extensionWithDot);
/// The hidden name of a file in the run of that token. Attempts from 1 on put "-" and their number behind the name of
/// attempt 0. A long name is cut: it is there for the eye.
[[nodiscard]] std::string batchRenameName(std::string_view runToken, std::string_view fileName, int attempt);

}  // namespace dravik
