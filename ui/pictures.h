#pragma once

#include "ui/main_window.h"

#include <QString>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace dravik {

class PreferencesWindow;

/// Draws windows into PNG files, for documents and for machines without a display. Main thread.

/// The main window as it is when its folder has been read. `drawn` is told whether the file could be written.
void drawMainWindow(MainWindow& window, ContentView& content, const QString& file, std::function<void(bool)> drawn);

/// What there is to draw.
struct Windows {
    MainWindow& window;
    ContentView& content;
    PreferencesWindow& preferences;
    Dialogs& dialogs;
    TakePlayback& playback;
    std::vector<std::string> releaseNotes;
};

/// Every window and dialog into the folder: first without takes, then with those of `day` and some edits pending that
/// are never saved. No folder is open before.
void drawAllWindows(const Windows& windows, const std::filesystem::path& day, const QString& folder,
                    std::function<void(bool)> drawn);

}  // namespace dravik
