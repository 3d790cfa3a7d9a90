#include "base/file_plan.h"

#include <algorithm>

namespace dravik {

std::uint64_t pieceSize(const FilePlan::Piece& piece) noexcept {
    if (const auto* range = std::get_if<SourceRange>(&piece)) return range->length;
    return std::get_if<Bytes>(&piece)->size();
}

void FilePlan::add(Bytes bytes) {
    if (bytes.empty()) return;
    size_ += bytes.size();
    if (!pieces_.empty()) {
        if (auto* last = std::get_if<Bytes>(&pieces_.back())) {
            append(*last, ByteSpan(bytes));
            return;
        }
    }
    pieces_.emplace_back(std::move(bytes));
}

void FilePlan::add(SourceRange range) {
    if (range.length == 0) return;
    size_ += range.length;
    if (!pieces_.empty()) {
        if (auto* last = std::get_if<SourceRange>(&pieces_.back());
            last && last->offset + last->length == range.offset) {
            last->length += range.length;
            return;
        }
    }
    pieces_.emplace_back(range);
}

std::uint64_t FilePlan::unmovedBytes() const noexcept {
    std::uint64_t at = 0;
    std::uint64_t unmoved = 0;
    for (const Piece& piece : pieces_) {
        if (const auto* range = std::get_if<SourceRange>(&piece); range && range->offset == at)
            unmoved += range->length;
        at += pieceSize(piece);
    }
    return unmoved;
}

}  // namespace dravik
