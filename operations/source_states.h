#pragma once

#include "base/file_ops.h"
#include "model/groupe_fichiers.h"

#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

namespace dravik::OperationsAudio {

/// The files of a group in the state in which an export finds them, taken before their first byte is read: a file that
/// another program writes to, or puts in the place of one of them, must not end as a part of the new file.
class SourceStates {
  public:
    SourceStates(FileOps& ops, const GroupeFichiers& groupe);
    /// Throws OperationAudioError naming the first that is another now.
    void checkUnchanged() const;

  private:
    FileOps& ops_;
    std::vector<std::pair<std::filesystem::path, std::optional<FileStamp>>> states_;
};

}  // namespace dravik::OperationsAudio
