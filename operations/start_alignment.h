#pragma once

#include "model/wave/chunk_walk.h"

#include <cstdint>
#include <optional>

namespace dravik {

/// When a file's first sample was recorded, as each of its chunks has it: in samples since midnight.
struct RecordedStart {
    std::optional<std::uint64_t> bext, ixml;
};
[[nodiscard]] RecordedStart recordedStart(const ByteSource& file, const ChunkTable& table);

/// Do files begin together? Asked of one after the other; what one of them does not say is no difference.
class StartAlignment {
  public:
    /// False when it begins at another time than those before it.
    [[nodiscard]] bool accepts(const RecordedStart& start) noexcept;

  private:
    RecordedStart known_;
};

}  // namespace dravik
