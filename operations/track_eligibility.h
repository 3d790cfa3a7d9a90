#pragma once

#include "model/groupe_fichiers.h"

namespace dravik {

/// How many tracks the take has, as far as the probe knows.
[[nodiscard]] int trackCount(const GroupeFichiers& groupe) noexcept;

namespace OperationsAudio {

/// Which takes an operation is offered for, out of what the probe knows: no file is opened. That a take is eligible
/// does not mean that it qualifies: the operation reads its files more strictly.

/// A WAV file, by its name and its first bytes, of two channels or more: for splitting and deleting.
[[nodiscard]] bool isPolyWave(const GroupeFichiers& groupe) noexcept;
/// A mono set of WAV files, at least two of one format and length: for merging.
[[nodiscard]] bool isMergeable(const GroupeFichiers& groupe) noexcept;
/// Either a poly file or a mono set, of WAV files: for reordering.
[[nodiscard]] bool isReorderable(const GroupeFichiers& groupe) noexcept;

/// WAV, BWF or RF64 files, whose form does not matter as nothing of it goes into the new file: for exporting.
[[nodiscard]] bool isExportable(const GroupeFichiers& groupe) noexcept;

}  // namespace OperationsAudio
}  // namespace dravik
