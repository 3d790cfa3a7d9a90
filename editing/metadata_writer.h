#pragma once

#include "base/error.h"
#include "base/file_ops.h"
#include "base/progress.h"
#include "base/safe_file.h"
#include "editing/wave_rewrite.h"
#include "model/wave/metadata_values.h"

#include <filesystem>
#include <string>

namespace dravik {

/// Why a file's metadata could not be written. The file is as it was.
class ErreurSauvegarde : public Error {
  public:
    enum class Reason {
        xmlInvalide,           ///< the iXML text cannot be read or encoded
        chunkIXMLIntrouvable,  ///< an iXML chunk that an edit needs is not found
        erreurEcriture,        ///< not a RIFF/WAVE file, or not writable as one
    };
    [[nodiscard]] static ErreurSauvegarde xmlInvalide(const std::filesystem::path& file, std::string_view why);
    [[nodiscard]] static ErreurSauvegarde chunkIXMLIntrouvable(const std::filesystem::path& file);
    [[nodiscard]] static ErreurSauvegarde erreurEcriture(const std::filesystem::path& file, std::string_view why);

    [[nodiscard]] Reason reason() const noexcept { return reason_; }

  private:
    ErreurSauvegarde(Reason reason, std::string message) : Error(std::move(message)), reason_(reason) {}
    Reason reason_;
};

/// What a save of these values makes of the file, with everything checked that can be before it is written. Throws
/// ErreurSauvegarde or std::filesystem::filesystem_error. Any thread.
[[nodiscard]] PlannedRewrite planMetadata(const WaveView& file, const MetadataValues& valeurs);

/// Writes one file's metadata: the iXML chunk and the bext chunk are made anew, every other byte is copied, and the new
/// file takes the old one's place when it is whole. Never edits in place.
///
/// All writes of the process are serialised. Any thread but the main one: it blocks.
class SauvegardeMetadata {
  public:
    explicit SauvegardeMetadata(FileOps& ops) : ops_(ops) {}

    /// Throws ErreurSauvegarde, std::filesystem::filesystem_error or Cancelled; then the file is untouched. The folder
    /// still has to be synced through `folders`.
    void ecrire(const std::filesystem::path& url, const MetadataValues& valeurs, const TaskContext& task,
                FolderSyncs& folders);

  private:
    FileOps& ops_;
};

}  // namespace dravik
