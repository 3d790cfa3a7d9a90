#pragma once

#include <QWidget>

namespace dravik {

/// The small windows of the Help menu. Each opens over `parent` and deletes itself when it is closed.

/// Every key of the program.
void showShortcuts(QWidget& parent);
void showAbout(QWidget& parent);
void showLicences(QWidget& parent);

}  // namespace dravik
