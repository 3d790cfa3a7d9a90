#include "base/writeback.h"

namespace dravik {
namespace {

/// Bytes on their way at any time.
constexpr std::uint64_t unwrittenBytesLimit = 64U * 1024U * 1024U;

}  // namespace

void Writeback::wrote(const FileHandle& file, std::uint64_t offset, std::uint64_t length) {
    ops_.startWriteback(file, offset, length);
    underWay_.push_back({&file, offset, length});
    bytes_ += length;
    while (bytes_ > unwrittenBytesLimit) {
        const Range oldest = underWay_.front();
        underWay_.pop_front();
        ops_.waitForWriteback(*oldest.file, oldest.offset, oldest.length);
        bytes_ -= oldest.length;
    }
}

}  // namespace dravik
