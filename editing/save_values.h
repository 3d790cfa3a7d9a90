#pragma once

#include "editing/modifications_en_cours.h"
#include "model/groupe_fichiers.h"
#include "model/wave/ixml_editor.h"

#include <cstddef>
#include <set>
#include <string_view>

namespace dravik {

/// What a save hands to the metadata writer for one file of the take: only what was edited. Pure functions, any thread.
///
/// A field that was not edited is absent, so that each file keeps its own value, also in a take whose files disagree.
/// Timecode and frame rate go together, and only when one of the two was edited: the recorder's sample count, which
/// rarely lies on a frame, is not recomputed from the text for any other edit. In a mono set track k of the take is the
/// one track of the k-th file. `decided` names texts and flags that the user settled although the files disagree on
/// them: they are written even where the value equals the default that an undecided field is loaded with.
[[nodiscard]] MetadataValues valuesForFile(const EditedFields& edited, const EditedFields& originals,
                                           const GroupeFichiers& groupe, std::size_t position,
                                           const std::set<MetadataField>& decided = {});

/// Can this text be a value: without control characters but tabs and line ends? No XML reader takes the others.
[[nodiscard]] bool isPlainText(std::string_view text) noexcept;
/// Are all texts among the values of that kind?
[[nodiscard]] bool holdsOnlyText(const MetadataValues& valeurs) noexcept;

/// Is there anything in the values that a file must be written for?
[[nodiscard]] bool hasEdit(const MetadataValues& valeurs) noexcept;

}  // namespace dravik
