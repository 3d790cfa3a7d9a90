#pragma once

#include <QLocale>

class QCoreApplication;

namespace dravik {

/// Has the interface speak the wanted language where there is a catalogue of its texts, else English, and has numbers
/// written as that language writes them. The engine's own sentences stay English. Before the first text is asked for.
/// The locale of the texts is returned: which way it is written is the windows' matter.
QLocale installLanguage(QCoreApplication& application, const QLocale& wanted);

}  // namespace dravik
