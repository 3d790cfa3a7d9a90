#pragma once

#include <filesystem>
#include <string>

namespace dravik {

/// The form in which two paths are compared everywhere: absolute, without "." and "..", lower-cased (Unicode). Two
/// paths that differ only in letter case are the same file, as on the volumes that recorders write. Links are not
/// followed. Nothing on disk is looked at.
[[nodiscard]] std::string normalisedPath(const std::filesystem::path& path);

/// The path or its last component as UTF-8 text; bytes that are not UTF-8 are kept.
[[nodiscard]] std::string pathText(const std::filesystem::path& path);
[[nodiscard]] std::string fileNameText(const std::filesystem::path& path);
/// The last component without its extension.
[[nodiscard]] std::string baseNameText(const std::filesystem::path& path);

/// The folder that holds the file, "." for a bare name.
[[nodiscard]] std::filesystem::path folderOf(const std::filesystem::path& file);

/// Does anything stand at this path? A link counts, wherever it leads. What cannot be asked does not exist.
[[nodiscard]] bool pathExists(const std::filesystem::path& path) noexcept;

/// One sentence for the user out of any exception: our own errors as they are, file errors as "<file name>: <what the
/// system says>", or the reason where we know better than the system (FileError).
[[nodiscard]] std::string userText(const std::exception& error);
/// The same without the file's name, for sentences that name the file themselves: "No space left on device".
[[nodiscard]] std::string systemText(const std::exception& error);

}  // namespace dravik
