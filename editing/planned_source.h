#pragma once

#include "base/byte_source.h"
#include "base/file_plan.h"

namespace dravik {

/// The bytes of a file that is only planned: reads as the written one will. So a plan can be proved before anything
/// exists, and one writer can plan on what another will have left. Keeps references to both. One thread at a time.
class PlannedSource final : public ByteSource {
  public:
    PlannedSource(const ByteSource& source, const FilePlan& plan) : source_(source), plan_(plan) {}
    [[nodiscard]] std::uint64_t size() const noexcept override { return plan_.size(); }
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const noexcept override;
    [[nodiscard]] std::error_code error() const noexcept override { return source_.error(); }

  private:
    const ByteSource& source_;
    const FilePlan& plan_;
};

}  // namespace dravik
