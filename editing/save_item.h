#pragma once

#include "base/uuid.h"
#include "editing/cue_marker.h"
#include "model/info_fichier.h"
#include "model/wave/metadata_values.h"

#include <optional>
#include <string>
#include <vector>

namespace dravik {

/// Everything a save does to one file. A value.
struct SaveItem {
    InfoFichier fichier;
    std::optional<std::string> newName;          ///< base name, no extension
    std::optional<MetadataValues> valeurs;       ///< absent: the metadata is not written
    std::optional<std::vector<CueMarker>> cues;  ///< absent: the markers are not written
    /// The take (GroupeFichiers::id) whose files stay together when they are renamed; absent: the file is on its own.
    std::optional<Uuid> groupe;

    /// Is there anything to do?
    [[nodiscard]] bool empty() const noexcept { return !newName && !valeurs && !cues; }
};

}  // namespace dravik
