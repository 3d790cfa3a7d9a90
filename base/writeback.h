#pragma once

#include "base/file_ops.h"

#include <cstdint>
#include <deque>

namespace dravik {

/// Keeps what was written but is not yet on the medium within a limit, over all files that are written at the same
/// time: the disk works while more is made, and the last sync (which cannot be cancelled) has little left to do. The
/// files must outlive it. One thread at a time; never fails: errors show in the sync.
class Writeback {
  public:
    explicit Writeback(FileOps& ops) : ops_(ops) {}
    void wrote(const FileHandle& file, std::uint64_t offset, std::uint64_t length);

  private:
    struct Range {
        const FileHandle* file = nullptr;
        std::uint64_t offset = 0, length = 0;
    };

    FileOps& ops_;
    std::deque<Range> underWay_;
    std::uint64_t bytes_ = 0;
};

}  // namespace dravik
