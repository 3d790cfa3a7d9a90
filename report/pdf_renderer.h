#pragma once

#include "base/bytes.h"
#include "base/progress.h"

#include <optional>
#include <string_view>

namespace dravik {

struct ReportDocument;

enum class Paper { a4, letter };

/// The paper of the place that a locale names ("en_US.UTF-8", "fr-CA"): Letter in the Americas where it is customary,
/// A4 elsewhere and where nothing is said.
[[nodiscard]] Paper paperOf(std::string_view locale) noexcept;

struct PageSetup {
    Paper paper = Paper::a4;
    std::optional<double> width;  ///< points; absent: that of the paper, upright or turned, as the columns need it
};

/// Makes PDF pages out of a report. An interface, so that a program without windows need not load what draws before it
/// is asked to. Any thread, one call at a time.
class PdfRenderer {
  public:
    virtual ~PdfRenderer() = default;
    /// The whole file. Throws Error when it cannot be made, Cancelled between two pages.
    [[nodiscard]] virtual Bytes render(const ReportDocument& document, const PageSetup& setup,
                                       const TaskContext& task) const = 0;
};

}  // namespace dravik
