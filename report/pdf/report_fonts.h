#pragma once

#include "report/text_ruler.h"

#include <QFont>
#include <QFontMetricsF>
#include <vector>

class QPaintDevice;

namespace dravik {

/// The fonts of a report on the device that it is painted on, and how wide texts are in them. Throws Error where the
/// system has no font at all.
class ReportFonts final : public TextRuler {
  public:
    explicit ReportFonts(QPaintDevice& device);
    [[nodiscard]] double width(TextStyle style, std::string_view text) const override;
    [[nodiscard]] const QFont& font(TextStyle style) const { return faces_[static_cast<std::size_t>(style)].font; }
    /// Units of the device in a point.
    [[nodiscard]] double scale() const noexcept { return scale_; }

  private:
    struct Face {
        QFont font;
        QFontMetricsF metrics;
    };
    std::vector<Face> faces_;  ///< one a style, in their order
    double scale_ = 1;
};

}  // namespace dravik
