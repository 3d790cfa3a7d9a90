#pragma once

#include "operations/operation_context.h"
#include "operations/source_wav.h"
#include "operations/track_metadata.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace dravik {

/// A file that an operation reads audio of, in the state in which it was planned with.
struct PlannedSource {
    SourceWAV wav;
    FileStamp stamp;
};

/// A file that an operation will make.
struct PlannedOutput {
    std::filesystem::path destination;
    std::vector<OutputTrack> tracks;  ///< in the order of its channels
    Bytes head;                       ///< everything before the audio
    std::uint64_t headBytes = 0;      ///< its length, also when it was left out
    std::uint64_t dataSize = 0;       ///< bytes of audio

    void setHead(Bytes bytes) {
        head = std::move(bytes);
        headBytes = head.size();
    }
    /// For a plan that is only looked at.
    void releaseHead() { head = Bytes(); }
    [[nodiscard]] std::uint64_t size() const noexcept { return headBytes + dataSize + dataSize % 2; }
};

/// What one operation on one group comes to, decided and checked before anything is created: shown by a dry run, done
/// by `runPlan`. A value. Either each output is a mono file copied from a source of its own, or all outputs are picked
/// out of the one source, or the one output interleaves all sources.
struct OperationPlan {
    std::string sourceName;  ///< the group's name
    std::vector<PlannedSource> sources;
    std::size_t bytesParSample = 0;
    std::int64_t frames = 0;
    std::vector<PlannedOutput> outputs;  ///< none where there is nothing to do
    std::string message;                 ///< the line when it is done
    bool verifiesDataSize = false;       ///< the line goes on with what came of the audio (merge_verification.h)
    std::string note;                    ///< what the user must know of the new files; behind all else of the line

    /// Throws OperationAudioError when the heads of all outputs would take more memory than `mostHeadBytes`: each holds
    /// a copy of all that its source carries beside the audio.
    void add(PlannedOutput output);
    static constexpr std::uint64_t mostHeadBytes = 256U * 1024U * 1024U;

    [[nodiscard]] std::uint64_t size() const noexcept;
    [[nodiscard]] std::vector<std::filesystem::path> destinations() const;
};

namespace OperationsAudio {

/// Makes the files. Room for all of them is looked for first. Files out of one source are written in one pass over it,
/// unless they are too many to be open together; each appears only when it is whole, in their order, and stays when a
/// later one fails. No source is changed, nothing that exists is written over. Gives the line for the user. Throws
/// OperationAudioError, std::filesystem::filesystem_error or Cancelled; then no file is left but those that were
/// completed.
[[nodiscard]] std::string runPlan(const OperationPlan& plan, const OperationContext& context);

}  // namespace OperationsAudio
}  // namespace dravik
