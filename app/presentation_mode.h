#pragma once

#include <QString>

namespace dravik {

/// What the lower part of the main window shows.
enum class PresentationMode { table, waveforms, mixer };

/// The text under which it is stored, and back; an unknown text is the default, waveforms.
[[nodiscard]] inline QString toText(PresentationMode mode) {
    return mode == PresentationMode::table   ? QStringLiteral("table")
           : mode == PresentationMode::mixer ? QStringLiteral("mixer")
                                             : QStringLiteral("waveforms");
}
[[nodiscard]] inline PresentationMode presentationMode(const QString& text) {
    return text == QLatin1String("table")   ? PresentationMode::table
           : text == QLatin1String("mixer") ? PresentationMode::mixer
                                            : PresentationMode::waveforms;
}

}  // namespace dravik
