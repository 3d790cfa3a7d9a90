#pragma once

#include "base/file_error.h"
#include "base/file_ops.h"
#include "base/progress.h"
#include "base/safe_file.h"

#include <cstdint>
#include <filesystem>

namespace dravik {

/// The original was written to, or replaced, while it was copied or waited for it. The copy was removed.
class ChangedWhileCopied : public FileError {
  public:
    explicit ChangedWhileCopied(const std::filesystem::path& file)
        : FileError("it was changed while it was copied", file, std::errc::io_error) {}
};

/// A new file `to` with the bytes, permissions, extended attributes and time of `from`, whole or not at all. What can
/// share blocks does. Nothing that exists is replaced. `bytes` is how long the file was when room was looked for.
/// Throws std::filesystem::filesystem_error, ChangedWhileCopied or Cancelled.
[[nodiscard]] UnsyncedFolder copyFile(FileOps& ops, const std::filesystem::path& from, const std::filesystem::path& to,
                                      std::uint64_t bytes, const TaskContext& task);

}  // namespace dravik
