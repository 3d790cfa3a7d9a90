#pragma once

#include <QFont>
#include <QWidget>

namespace dravik::metrics {

/// Sizes that several windows share, in pixels of a screen at 100 %.

inline constexpr int rowHeight = 22;     ///< of every list and table
inline constexpr int headerHeight = 22;  ///< of their headers
inline constexpr int smallText = 11;     ///< captions, headings, what is only told
inline constexpr int cellPadding = 6;    ///< between the text of a cell and its edges, in the take table
inline constexpr int listPadding = 3;    ///< the same in the small lists, as the style has it
inline constexpr int iconSide = 16;      ///< icons in lists and beside headings
inline constexpr int toolIconSide = 18;  ///< icons of the toolbar
inline constexpr int editMark = 3;       ///< width of the bar that says "not saved"
inline constexpr int panelMargin = 8;    ///< around what stands in a pane
inline constexpr int fieldSpacing = 4;   ///< between fields, and between a heading and what is below it

/// The font of the widget, in the size of small text.
[[nodiscard]] inline QFont smallFont(const QWidget& widget) {
    QFont font = widget.font();
    font.setPixelSize(smallText);
    return font;
}

}  // namespace dravik::metrics
