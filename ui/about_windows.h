#pragma once

#include <QWidget>

namespace dravik {

/// The small windows of the Help menu. Each opens over `parent` and deletes itself when it is closed.

/// All shortcuts of the window's menus, and the keys of the table.
void showShortcuts(QWidget& parent);
void showAbout(QWidget& parent);
void showLicences(QWidget& parent);

}  // namespace dravik
