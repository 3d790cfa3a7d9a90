#include "ui/shortcuts.h"

#include <QStringList>
#include <algorithm>
#include <stdexcept>

namespace dravik {
namespace {

constexpr auto control = Qt::CTRL;
constexpr auto shift = Qt::SHIFT;
constexpr auto alt = Qt::ALT;

std::vector<Shortcut> make() {
    using K = KeyContext;
    std::vector<Shortcut> all;
    KeyContext context = K::window;
    QString group;
    const auto add = [&](KeyId id, const char* name, std::vector<QKeySequence> keys, const char* also = "") {
        all.push_back({id, context, group, QString::fromUtf8(name), std::move(keys), QString::fromUtf8(also)});
    };
    group = QStringLiteral("File");
    add(KeyId::loadFolder, "Load Folder...", {control | Qt::Key_O});
    add(KeyId::loadFile, "Load File...", {control | shift | Qt::Key_O});
    add(KeyId::reload, "Reload Folder", {Qt::Key_F5});
    add(KeyId::save, "Save Changes", {control | Qt::Key_S});
    add(KeyId::preferences, "Preferences...", {control | Qt::Key_Comma});
    add(KeyId::quit, "Quit", {control | Qt::Key_Q});
    group = QStringLiteral("Edit");
    add(KeyId::undo, "Undo", {control | Qt::Key_Z});
    add(KeyId::redo, "Redo", {control | shift | Qt::Key_Z});
    add(KeyId::find, "Find", {control | Qt::Key_F});
    group = QStringLiteral("Take");
    add(KeyId::toggleCircled, "Toggle Circled", {control | Qt::Key_K});
    add(KeyId::fillDown, "Fill Down", {control | Qt::Key_D});
    add(KeyId::incrementTakes, "Increment Take", {control | shift | Qt::Key_I});
    group = QStringLiteral("Operations");
    add(KeyId::showOperations, "Operations", {control | Qt::Key_5});
    add(KeyId::nextOperationsTab, "Next Operations Tab", {control | Qt::Key_PageDown});
    add(KeyId::previousOperationsTab, "Previous Operations Tab", {control | Qt::Key_PageUp});
    add(KeyId::batchRename, "Rename", {control | Qt::Key_R});
    add(KeyId::exportAudio, "Export", {control | Qt::Key_E});
    add(KeyId::exportReport, "Sound Report", {control | shift | Qt::Key_R});
    group = QStringLiteral("View");
    add(KeyId::showTable, "Table", {control | Qt::Key_1});
    add(KeyId::showWaveforms, "Waveform", {control | Qt::Key_2});
    add(KeyId::showMixer, "Mixer", {control | Qt::Key_3});
    add(KeyId::showEditor, "Take Editor", {control | Qt::Key_4});
    add(KeyId::showBrowser, "Folder Browser", {control | Qt::Key_B});
    add(KeyId::goToBrowser, "Go to Browser", {alt | Qt::Key_1});
    add(KeyId::goToTable, "Go to Table", {alt | Qt::Key_2});
    add(KeyId::goToEditor, "Go to Editor", {alt | Qt::Key_3});
    group = QStringLiteral("Playback");
    add(KeyId::playPause, "Play / Pause", {Qt::Key_Space});
    add(KeyId::returnToBeginning, "Return to beginning", {Qt::Key_Home});
    add(KeyId::nudgeBackward, "Nudge backward", {Qt::Key_Comma});
    add(KeyId::nudgeForward, "Nudge forward", {Qt::Key_Period});
    add(KeyId::soloMode, "Toggle solo mode", {Qt::Key_S}, "Shift + Click Solo: Add/remove Solo in OR mode");
    add(KeyId::loopPlayback, "Loop playback", {Qt::Key_L});
    add(KeyId::followPlayhead, "Toggle follow playhead", {Qt::Key_F});
    add(KeyId::insertionFollows, "Insertion Follows Playback", {Qt::Key_N});
    add(KeyId::addCue, "Add cue at playhead", {Qt::Key_M});
    add(KeyId::previousCue, "Previous cue", {Qt::Key_BracketLeft});
    add(KeyId::nextCue, "Next cue", {Qt::Key_BracketRight});
    group = QStringLiteral("Window");
    add(KeyId::mixerWindow, "Mixer Window", {control | shift | Qt::Key_M});
    add(KeyId::metersWindow, "Meters Window", {control | shift | Qt::Key_L});
    add(KeyId::floatingTransport, "Floating Transport", {control | shift | Qt::Key_T});
    group = QStringLiteral("Help");
    add(KeyId::showShortcuts, "Show Keyboard Shortcuts", {Qt::Key_F1});
    add(KeyId::showManual, "Dravik Manual", {shift | Qt::Key_F1});

    context = K::table;
    group = QStringLiteral("Take table");
    add(KeyId::editCell, "Edit the cell", {Qt::Key_F2}, "double click, or type a digit");
    add(KeyId::switchFlag, "Switch circled or wild", {Qt::Key_Space}, "a click on the mark");
    add(KeyId::clearCells, "Empty the column of the selection", {Qt::Key_Delete});
    add(KeyId::copyColumn, "Copy the column of the selection", {control | Qt::Key_C});
    add(KeyId::copyRows, "Copy whole rows", {control | shift | Qt::Key_C});
    add(KeyId::pasteColumn, "Paste lines downwards", {control | Qt::Key_V});
    add(KeyId::rowBelow, "Row below", {Qt::Key_Return});
    add(KeyId::rowAbove, "Row above", {shift | Qt::Key_Return});
    add(KeyId::firstTake, "First take", {control | Qt::Key_Home});
    add(KeyId::lastTake, "Last take", {control | Qt::Key_End});
    add(KeyId::showAllTakes, "Show all takes again", {Qt::Key_Escape});
    context = K::cell;
    group = QStringLiteral("While a cell is edited");
    add(KeyId::commitDown, "Take over, go down", {Qt::Key_Return});
    add(KeyId::commitUp, "Take over, go up", {shift | Qt::Key_Return});
    add(KeyId::commitNext, "Take over, next cell", {Qt::Key_Tab});
    add(KeyId::commitPrevious, "Take over, cell before", {shift | Qt::Key_Tab});
    add(KeyId::commitToAll, "Take over for all selected rows", {control | Qt::Key_Return});
    add(KeyId::leaveCell, "Leave the cell as it was", {Qt::Key_Escape});
    context = K::filter;
    group = QStringLiteral("Filter");
    add(KeyId::clearFilter, "Show all takes", {Qt::Key_Escape});
    add(KeyId::filterToTable, "Go to what was found", {Qt::Key_Return, Qt::Key_Down});
    context = K::editor;
    group = QStringLiteral("Fields of the take");
    add(KeyId::nextField, "Next field", {Qt::Key_Return}, "Tab");
    add(KeyId::timecodeAsItWas, "The start timecode as it was", {Qt::Key_Escape});
    context = K::tracks;
    group = QStringLiteral("Tracks");
    add(KeyId::editTrack, "Edit the name or number", {Qt::Key_Return, Qt::Key_F2}, "double click, or type");
    add(KeyId::nextTrack, "Take over, next track", {Qt::Key_Tab, Qt::Key_Down}, "Return while one is edited");
    add(KeyId::previousTrack, "Take over, track before", {shift | Qt::Key_Tab, Qt::Key_Up});
    add(KeyId::copyTracks, "Copy names, or numbers", {control | Qt::Key_C});
    add(KeyId::pasteTracks, "Paste lines downwards", {control | Qt::Key_V});
    add(KeyId::clearTracks, "Empty names", {Qt::Key_Delete, Qt::Key_Backspace});
    context = K::cues;
    group = QStringLiteral("Cues");
    add(KeyId::renameCue, "Edit the name", {Qt::Key_F2, Qt::Key_Return}, "double click");
    add(KeyId::deleteCue, "Delete the cue", {Qt::Key_Delete, Qt::Key_Backspace});
    context = K::waveform;
    group = QStringLiteral("Waveform");
    add(KeyId::zoomIn, "Zoom in", {Qt::Key_Plus, Qt::Key_Equal}, "Ctrl and the wheel");
    add(KeyId::zoomOut, "Zoom out", {Qt::Key_Minus}, "Ctrl and the wheel");
    add(KeyId::tallerWaveform, "Taller", {alt | Qt::Key_Up}, "Ctrl+Shift and the wheel");
    add(KeyId::flatterWaveform, "Flatter", {alt | Qt::Key_Down}, "Ctrl+Shift and the wheel");
    add(KeyId::showWholeTake, "Show the whole take", {Qt::Key_0}, "double click below");
    add(KeyId::nudgeLeft, "Nudge backward", {Qt::Key_Left});
    add(KeyId::nudgeRight, "Nudge forward", {Qt::Key_Right});
    add(KeyId::clearSelection, "Clear the selection", {Qt::Key_Escape}, "a click");
    context = K::browser;
    group = QStringLiteral("Folder browser");
    add(KeyId::openFolder, "Open", {Qt::Key_Return}, "a click");
    add(KeyId::newFolder, "New Folder", {control | shift | Qt::Key_N});
    add(KeyId::duplicateFolder, "Duplicate", {control | Qt::Key_D});
    add(KeyId::renameFolder, "Rename", {Qt::Key_F2});
    add(KeyId::trashFolder, "Move to Trash", {Qt::Key_Delete});
    add(KeyId::revealFolder, "Show in File Manager", {control | shift | Qt::Key_R});
    add(KeyId::ejectVolume, "Eject", {control | Qt::Key_E});
    add(KeyId::refreshBrowser, "Refresh", {Qt::Key_F5});
    return all;
}

QKeySequence pressed(const QKeyEvent& event) {
    Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    int key = event.key();
    if (key == Qt::Key_Enter) key = Qt::Key_Return;
    if (key == Qt::Key_Backtab) {
        key = Qt::Key_Tab;
        modifiers |= Qt::ShiftModifier;
    }
    return QKeySequence(QKeyCombination(modifiers, static_cast<Qt::Key>(key)));
}

bool has(const Shortcut& shortcut, const QKeySequence& key) {
    return std::find(shortcut.keys.begin(), shortcut.keys.end(), key) != shortcut.keys.end();
}

}  // namespace

const std::vector<Shortcut>& shortcuts() {
    static const std::vector<Shortcut> all = make();
    return all;
}

const Shortcut& shortcut(KeyId id) {
    for (const Shortcut& one : shortcuts()) {
        if (one.id == id) return one;
    }
    throw std::logic_error("a key without a line in the table of shortcuts");
}

QString keyText(KeyId id) { return keyOf(id).toString(QKeySequence::NativeText); }

QString keysText(const Shortcut& shortcut) {
    QStringList texts;
    for (const QKeySequence& key : shortcut.keys)
        texts << key.toString(QKeySequence::NativeText);
    if (!shortcut.also.isEmpty()) texts << shortcut.also;
    return texts.join(QStringLiteral(", "));
}

bool isKey(KeyId id, const QKeyEvent& event) { return has(shortcut(id), pressed(event)); }

std::optional<KeyId> keyIn(KeyContext context, const QKeyEvent& event) {
    const QKeySequence key = pressed(event);
    for (const Shortcut& one : shortcuts()) {
        if (one.context == context && has(one, key)) return one.id;
    }
    return std::nullopt;
}

std::optional<KeyId> undoOrRedo(const QKeyEvent& event) {
    if (isKey(KeyId::undo, event) || event.matches(QKeySequence::Undo)) return KeyId::undo;
    if (isKey(KeyId::redo, event) || event.matches(QKeySequence::Redo)) return KeyId::redo;
    return std::nullopt;
}

}  // namespace dravik
