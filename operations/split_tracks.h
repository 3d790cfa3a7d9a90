#pragma once

#include "operations/destination_names.h"
#include "operations/operation_plan.h"

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace dravik {

/// One file that a split may make.
struct OperationAudioSplitOutput {
    enum class Kind { mono, stereoTracks12 };
    Kind kind = Kind::mono;
    int canal = 0;  ///< of a mono file, from 0

    [[nodiscard]] static OperationAudioSplitOutput mono(int canal) noexcept { return {Kind::mono, canal}; }
    [[nodiscard]] static OperationAudioSplitOutput stereoTracks12() noexcept { return {Kind::stereoTracks12, 0}; }
    friend bool operator==(const OperationAudioSplitOutput&, const OperationAudioSplitOutput&) = default;
};

/// What is to be split off a take.
struct OperationAudioSplitConfiguration {
    GroupeFichiers groupe;
    std::set<int> monoCanaux;     ///< channels (from 0) that become mono files
    bool stereoTracks12 = false;  ///< and the first two as one stereo file
};

/// A file that can be chosen, before anything is.
struct OperationAudioSplitPreviewItem {
    OperationAudioSplitOutput output;
    std::string fileName;
    std::optional<std::string> trackName;

    /// "stereo-1-2", or "mono-" and the channel.
    [[nodiscard]] std::string id() const;
};

namespace OperationsAudio {

/// What the split would make, mono files first. Tracks keep their numbers. Throws OperationAudioError,
/// std::filesystem::filesystem_error.
[[nodiscard]] OperationPlan planSplit(FileOps& ops, const OperationAudioSplitConfiguration& configuration,
                                      const std::optional<std::filesystem::path>& dossier, DestinationNames& names);

/// All files that the take could be split into, under the names that they would have in its folder if all were made;
/// none for a take that cannot be split. Reads no recording.
[[nodiscard]] std::vector<OperationAudioSplitPreviewItem> splitPreview(const GroupeFichiers& groupe);

/// A track's name as a part of a file name: its words, at what no file name can hold and at white space, joined by "_".
[[nodiscard]] std::string cleanedTrackName(std::string_view nom);

}  // namespace OperationsAudio
}  // namespace dravik
