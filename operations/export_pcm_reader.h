#pragma once

#include "base/bytes.h"
#include "model/groupe_fichiers.h"
#include "model/wave/linear_samples.h"
#include "model/wave/walked_file.h"
#include "operations/export_configuration.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

namespace dravik {

/// Bytes of some frames of the source, one piece a file that is needed.
struct ExportRawBlock {
    std::vector<Bytes> pieces;
    std::size_t frames = 0;
};

/// The audio of a group, routed, as float: a poly file, or the mono files of a take read in step. Linear WAV files only
/// (RIFF, RF64 or BW64). Reading is in two steps, so that the bytes are fetched by one thread while others decode what
/// was fetched before: `fetch` by one thread at a time, `decode` by any.
class ExportPCMReader {
  public:
    /// Opens the files and checks that they go together. Throws OperationAudioError,
    /// std::filesystem::filesystem_error.
    ExportPCMReader(const GroupeFichiers& groupe, const OperationAudioExportRouting& routing);

    [[nodiscard]] double sampleRate() const noexcept { return layouts_.front().sampleRate; }  ///< Hz
    [[nodiscard]] std::size_t channelCount() const noexcept { return positions_.size() - (averages_ ? 1U : 0U); }
    [[nodiscard]] int sourceBitDepth() const noexcept { return sourceBitDepth_; }
    [[nodiscard]] bool sourceIsFloat() const noexcept { return sourceIsFloat_; }
    [[nodiscard]] std::int64_t frameLength() const noexcept { return frameLength_; }
    [[nodiscard]] std::int64_t currentFrame() const noexcept { return currentFrame_; }
    /// The track of each output channel; both tracks of an average.
    [[nodiscard]] const std::vector<int>& positions() const noexcept { return positions_; }
    [[nodiscard]] bool averages() const noexcept { return averages_; }
    /// Is there less audio than a header says, as behind a recording that was cut off? Read up to its end.
    [[nodiscard]] bool isCutShort() const noexcept { return cutShort_; }
    /// Bytes of one frame of all files that are read.
    [[nodiscard]] std::size_t fetchedFrameBytes() const noexcept;

    /// The open file of a track.
    [[nodiscard]] const WalkedFile& fileOfTrack(int track) const noexcept { return *files_[fileIndex(track)]; }
    /// Where the audio of a track's file lies.
    [[nodiscard]] const LinearLayout& layoutOfTrack(int track) const noexcept { return layouts_[fileIndex(track)]; }
    /// Are the output's frames the very frames of one file?
    [[nodiscard]] bool takesWholeFrames() const noexcept;

    /// The bytes of the next frames, at most so many; none at the end and when a poly file is shorter than it was.
    /// Throws OperationAudioError when mono files are, and std::filesystem::filesystem_error.
    void fetch(ExportRawBlock& block, std::size_t mostFrames);
    /// One channel of the output; `out` has room for block.frames samples. Samples that are no numbers stay.
    void decode(const ExportRawBlock& block, std::size_t channel, float* out) const;
    /// Both in one: as many frames as there are, up to `mostFrames`, into one row a channel.
    [[nodiscard]] std::size_t read(std::span<float* const> planes, std::size_t mostFrames);

  private:
    [[nodiscard]] std::size_t fileIndex(int track) const noexcept {
        return isPoly_ ? 0 : static_cast<std::size_t>(track);
    }
    void open(const std::filesystem::path& url);
    void openPoly(const InfoFichier& file);
    void openMonoSet(const GroupeFichiers& groupe);
    void route(const OperationAudioExportRouting& routing);
    void decodeTrack(const ExportRawBlock& block, int track, float* out) const;

    bool isPoly_ = false;
    std::vector<std::filesystem::path> urls_;
    std::vector<std::unique_ptr<WalkedFile>> files_;  ///< the poly file, or one a member
    std::vector<LinearLayout> layouts_;               ///< of each
    std::vector<std::size_t> fetched_;                ///< the files that are read
    std::vector<int> positions_;
    bool averages_ = false;
    double averageGain_ = 1;
    std::size_t inputChannelCount_ = 0;
    int sourceBitDepth_ = 0;
    bool sourceIsFloat_ = false;
    bool cutShort_ = false;
    std::int64_t frameLength_ = 0;
    std::int64_t currentFrame_ = 0;
    ExportRawBlock block_;  ///< of `read`
};

}  // namespace dravik
