#pragma once

#include "editing/cue_marker.h"
#include "model/groupe_fichiers.h"
#include "model/wave/chunk_walk.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace dravik {

/// The JSON documents: one a command, keys as documented in docs/cli.md, which programs rely on. A value that is not
/// there is null. Bytes that are not UTF-8 (in file names, in what a recorder wrote) become U+FFFD. Each ends in a line
/// feed.

[[nodiscard]] std::string scanJson(const std::optional<std::filesystem::path>& folder,
                                   const std::vector<GroupeFichiers>& groupes);

[[nodiscard]] std::string showJson(const InfoFichier& fichier, const std::vector<Chunk>& chunks,
                                   const std::vector<CueMarker>& cues);

/// What became of one file of a `set`.
struct SetResult {
    std::filesystem::path path, newPath;
    bool ok = true;
    std::string message;
};
[[nodiscard]] std::string setJson(std::size_t saved, const std::vector<SetResult>& results);

[[nodiscard]] std::string cuesJson(const std::filesystem::path& path, bool ok,
                                   const std::optional<std::string>& message, const std::vector<CueMarker>& cues);

}  // namespace dravik
