#pragma once

#include "ui/main_window.h"

#include <QString>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace dravik {

class PreferencesWindow;

/// Draws windows into PNG files, for documents and for machines without a display, or opens them to be examined. Main
/// thread.

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

/// Is shown a window under the name of its picture. False when it could not do with it what it was to.
using WindowVisitor = std::function<bool(QWidget& window, const QString& name)>;

/// Opens every window and dialog, one behind the other, as `drawAllWindows` draws them. What it is given outlives the
/// visit, which `visited` ends: true when each visitor's answer was.
void visitAllWindows(const Windows& windows, const std::filesystem::path& day, const WindowVisitor& visit,
                     std::function<void(bool)> visited);

/// Every window and dialog into the folder: first without takes, then with those of `day` and some edits pending that
/// are never saved. No folder is open before.
void drawAllWindows(const Windows& windows, const std::filesystem::path& day, const QString& folder,
                    std::function<void(bool)> drawn);

}  // namespace dravik
