#pragma once

#include "base/bytes.h"

#include <cstdint>
#include <variant>
#include <vector>

namespace dravik {

/// Bytes of the source file that go into the output as they are.
struct SourceRange {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
    friend bool operator==(const SourceRange&, const SourceRange&) = default;
};

/// A new file as a list of pieces, in order: "these bytes" or "this range of the source". A value: it is built and
/// checked before anything is created, then handed to SafeFile::write. Knows nothing of what the bytes mean.
class FilePlan {
  public:
    using Piece = std::variant<Bytes, SourceRange>;

    void add(Bytes bytes);
    /// Neighbouring ranges are joined.
    void add(SourceRange range);

    [[nodiscard]] const std::vector<Piece>& pieces() const noexcept { return pieces_; }
    /// Length of the new file.
    [[nodiscard]] std::uint64_t size() const noexcept { return size_; }
    /// How many bytes of the source land at the very offset they came from.
    [[nodiscard]] std::uint64_t unmovedBytes() const noexcept;

  private:
    std::vector<Piece> pieces_;
    std::uint64_t size_ = 0;
};

[[nodiscard]] std::uint64_t pieceSize(const FilePlan::Piece& piece) noexcept;

}  // namespace dravik
