#pragma once

#include "operations/operation_plan.h"

#include <span>

namespace dravik::OperationsAudio {

/// A poly file read for new files out of its channels: format, tracks, metadata. Reads the file once, when it is made.
class PolyTake {
  public:
    /// Throws OperationAudioError when the file does not qualify. `strictly` asks for all that reordering needs.
    enum class Chunks { strictly, carried };
    PolyTake(FileOps& ops, const GroupeFichiers& groupe, Chunks chunks);

    [[nodiscard]] std::string_view fileName() const noexcept { return fileName_; }
    [[nodiscard]] int channels() const noexcept { return poly_.channels; }
    [[nodiscard]] const SourceTrack& track(int canal) const { return tracks_.at(static_cast<std::size_t>(canal)); }
    /// The channel as a track of an output, under that number.
    [[nodiscard]] OutputTrack outputTrack(int canal, int numero) const;
    /// Throws OperationAudioError naming the first of the channels that the file does not have.
    void checkChannels(std::span<const int> canaux) const;

    /// A plan without outputs.
    [[nodiscard]] OperationPlan plan(const GroupeFichiers& groupe) const;
    /// The file that holds these tracks. Throws OperationAudioError when it would be too large.
    [[nodiscard]] PlannedOutput output(std::filesystem::path destination, std::vector<OutputTrack> tracks) const;

  private:
    std::string fileName_;
    FileStamp stamp_;
    SourceWAVPoly poly_;
    std::vector<SourceTrack> tracks_;
    std::vector<RIFFChunk> chunks_;
};

/// The state in which a file is planned with; taken before its first byte is read. Throws
/// std::filesystem::filesystem_error when there is none.
[[nodiscard]] FileStamp stampBefore(FileOps& ops, const std::filesystem::path& fichier);

/// Where the outputs of a take go: the folder given, else that of its first file.
[[nodiscard]] std::filesystem::path destinationFolder(const GroupeFichiers& groupe,
                                                      const std::optional<std::filesystem::path>& dossier);
/// What their names begin with: the take's name without white space around it, or the other when that leaves nothing.
[[nodiscard]] std::string outputBase(const GroupeFichiers& groupe, std::string_view whenEmpty);

}  // namespace dravik::OperationsAudio
