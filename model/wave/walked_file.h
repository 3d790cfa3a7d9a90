#pragma once

#include "base/byte_source.h"
#include "base/file_handle.h"
#include "model/wave/chunk_walk.h"

#include <optional>
#include <utility>

namespace dravik {

/// An open file and its chunks: what every look into a file begins with. Of a handle that is not open, as of a file
/// that is no RIFF file, there is no table. Never throws by itself; `source().error()` tells a read that failed. Stays
/// where it is, since the source refers to the handle. One thread at a time.
class WalkedFile {
  public:
    explicit WalkedFile(FileHandle handle)
        : handle_(std::move(handle)), source_(handle_), table_(walkChunks(source_)) {}
    WalkedFile(const WalkedFile&) = delete;
    WalkedFile& operator=(const WalkedFile&) = delete;

    [[nodiscard]] bool isOpen() const noexcept { return handle_.isOpen(); }
    [[nodiscard]] const FileSource& source() const noexcept { return source_; }
    [[nodiscard]] const std::optional<ChunkTable>& table() const noexcept { return table_; }

  private:
    FileHandle handle_;
    FileSource source_;
    std::optional<ChunkTable> table_;
};

}  // namespace dravik
