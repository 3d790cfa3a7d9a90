#pragma once

#include <QLocale>

class QCoreApplication;

namespace dravik {

/// Has the interface speak the wanted language where there is a catalogue of its texts, else English, and has numbers
/// written as that language writes them. The engine's own sentences stay English. Call it before the
/// first window is made. Returns the locale of the texts; the caller sets the layout direction. The translators belong
/// to the application.
QLocale installLanguage(QCoreApplication& application, const QLocale& wanted);

}  // namespace dravik
