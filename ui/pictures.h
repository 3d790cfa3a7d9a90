#pragma once

#include "ui/main_window.h"

#include <QString>
#include <functional>

namespace dravik {

class PreferencesWindow;

/// Draws windows into PNG files, for documents and for machines without a display. Main thread.

/// The main window as it is when its folder has been read. `drawn` is told whether the file could be written.
void drawMainWindow(MainWindow& window, ContentView& content, const QString& file, std::function<void(bool)> drawn);

/// Every window and dialog into the folder, with some edits pending that are never saved.
void drawAllWindows(MainWindow& window, ContentView& content, PreferencesWindow& preferences, const QString& folder,
                    std::function<void(bool)> drawn);

}  // namespace dravik
