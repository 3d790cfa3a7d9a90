#pragma once

#include "base/bytes.h"
#include "model/wave/walked_file.h"
#include "operations/operation_audio_error.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace dravik {

/// A file whose audio can be copied byte for byte, as its header says. The probe stands every file and gives defaults;
/// here a file qualifies or is refused, because offsets that are not certain would end in wrong audio.
struct SourceWAV {
    std::filesystem::path fichier;
    Bytes fmtPayload;               ///< the whole body of `fmt ` as found
    std::uint16_t audioFormat = 0;  ///< its tag: 1, 3 or 0xFFFE
    std::uint16_t encoding = 0;     ///< the tag, or for 0xFFFE that of the sub-format
    std::uint32_t sampleRate = 0;   ///< Hz
    std::uint16_t blockAlign = 0;   ///< bytes of a frame; never 0
    std::uint16_t bits = 0;         ///< of a sample, as declared
    std::uint64_t dataOffset = 0;   ///< of the first byte of audio in the file
    std::int64_t dataSize = 0;      ///< bytes
    std::int64_t nombreFrames = 0;  ///< whole ones; a part of a frame at the end does not count
};

/// Two channels or more.
struct SourceWAVPoly : SourceWAV {
    std::uint16_t channels = 0;
    std::size_t bytesParSample = 0;  ///< of one channel
};

/// One channel: a sample is the whole frame.
struct SourceWAVMono : SourceWAV {};

namespace OperationsAudio {

/// Plain RIFF/WAVE files of linear audio only. Both throw OperationAudioError with the file's name in front of what is
/// wrong, the first fault in the order of the file; std::filesystem::filesystem_error when it cannot be read.
[[nodiscard]] SourceWAVPoly readPolySource(const std::filesystem::path& fichier);
[[nodiscard]] SourceWAVMono readMonoSource(const std::filesystem::path& fichier);

/// Bytes of the file's audio chunk. Throws OperationAudioError for a file that is no RIFF/WAVE file or has none,
/// std::filesystem::filesystem_error when it cannot be read.
[[nodiscard]] std::uint64_t audioDataSize(const std::filesystem::path& fichier);

/// "A.wav" + " is not poly.": the sentences of all operations about a file.
[[nodiscard]] std::string aboutFile(const std::filesystem::path& fichier, std::string_view what);

/// A file whose audio ends before its header says.
[[nodiscard]] OperationAudioError unexpectedEnd(const std::filesystem::path& fichier);

/// Opens and walks. Throws std::filesystem::filesystem_error when the file cannot be opened or read.
class WalkedSource {
  public:
    explicit WalkedSource(const std::filesystem::path& fichier);

    [[nodiscard]] const std::filesystem::path& fichier() const noexcept { return fichier_; }
    [[nodiscard]] const FileSource& source() const noexcept { return file_.source(); }
    [[nodiscard]] const std::optional<ChunkTable>& table() const noexcept { return file_.table(); }
    [[nodiscard]] bool isRiffWave() const noexcept { return table() && table()->isRiffWave(); }
    /// The whole payload, which is not truncated. Throws when it cannot be read.
    [[nodiscard]] Bytes payload(const Chunk& chunk) const;

  private:
    std::filesystem::path fichier_;
    WalkedFile file_;
};

}  // namespace OperationsAudio
}  // namespace dravik
