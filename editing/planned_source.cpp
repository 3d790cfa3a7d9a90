#include "editing/planned_source.h"

#include <algorithm>

namespace dravik {

std::size_t PlannedSource::readAt(std::uint64_t offset, std::span<std::byte> into) const noexcept {
    std::size_t done = 0;
    std::uint64_t pieceAt = 0;
    for (const FilePlan::Piece& piece : plan_.pieces()) {
        const std::uint64_t length = pieceSize(piece);
        const std::uint64_t at = offset + done;
        if (done < into.size() && at >= pieceAt && at - pieceAt < length) {
            const std::uint64_t within = at - pieceAt;
            const auto part = into.subspan(
                done, static_cast<std::size_t>(std::min<std::uint64_t>(into.size() - done, length - within)));
            const std::size_t got = std::holds_alternative<SourceRange>(piece)
                                        ? source_.readAt(std::get_if<SourceRange>(&piece)->offset + within, part)
                                        : MemorySource(*std::get_if<Bytes>(&piece)).readAt(within, part);
            done += got;
            if (got < part.size()) break;
        }
        pieceAt += length;
    }
    return done;
}

}  // namespace dravik
