#include "ui/shortcuts.h"

#include <QCoreApplication>
#include <QStringList>
#include <algorithm>
#include <stdexcept>

namespace dravik {
namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(dravik::Shortcuts)
  public:
    static std::vector<Shortcut> table();
};

constexpr auto control = Qt::CTRL;
constexpr auto shift = Qt::SHIFT;
constexpr auto alt = Qt::ALT;

std::vector<Shortcut> Texts::table() {
    using K = KeyContext;
    std::vector<Shortcut> all;
    KeyContext context = K::window;
    const char* group = "";
    const auto add = [&](KeyId id, const char* name, std::vector<QKeySequence> keys, const char* also = "") {
        all.push_back({id, context, std::move(keys), group, name, also});
    };
    group = QT_TR_NOOP("File");
    add(KeyId::loadFolder, QT_TR_NOOP("Load Folder..."), {control | Qt::Key_O});
    add(KeyId::loadFile, QT_TR_NOOP("Load File..."), {control | shift | Qt::Key_O});
    add(KeyId::reload, QT_TR_NOOP("Reload Folder"), {Qt::Key_F5});
    add(KeyId::save, QT_TR_NOOP("Save Changes"), {control | Qt::Key_S});
    add(KeyId::preferences, QT_TR_NOOP("Preferences..."), {control | Qt::Key_Comma});
    add(KeyId::quit, QT_TR_NOOP("Quit"), {control | Qt::Key_Q});
    group = QT_TR_NOOP("Edit");
    add(KeyId::undo, QT_TR_NOOP("Undo"), {control | Qt::Key_Z});
    add(KeyId::redo, QT_TR_NOOP("Redo"), {control | shift | Qt::Key_Z});
    add(KeyId::find, QT_TR_NOOP("Find"), {control | Qt::Key_F});
    group = QT_TR_NOOP("Take");
    add(KeyId::toggleCircled, QT_TR_NOOP("Toggle Circled"), {control | Qt::Key_K});
    add(KeyId::fillDown, QT_TR_NOOP("Fill Down"), {control | Qt::Key_D});
    add(KeyId::incrementTakes, QT_TR_NOOP("Increment Take"), {control | shift | Qt::Key_I});
    group = QT_TR_NOOP("Operations");
    add(KeyId::showOperations, QT_TR_NOOP("Operations"), {control | Qt::Key_5});
    add(KeyId::nextOperationsTab, QT_TR_NOOP("Next Operations Tab"), {control | Qt::Key_PageDown});
    add(KeyId::previousOperationsTab, QT_TR_NOOP("Previous Operations Tab"), {control | Qt::Key_PageUp});
    add(KeyId::batchRename, QT_TR_NOOP("Rename"), {control | Qt::Key_R});
    add(KeyId::exportAudio, QT_TR_NOOP("Export"), {control | Qt::Key_E});
    add(KeyId::exportReport, QT_TR_NOOP("Sound Report"), {control | shift | Qt::Key_R});
    group = QT_TR_NOOP("View");
    add(KeyId::showTable, QT_TR_NOOP("Table"), {control | Qt::Key_1});
    add(KeyId::showWaveforms, QT_TR_NOOP("Waveform"), {control | Qt::Key_2});
    add(KeyId::showMixer, QT_TR_NOOP("Mixer"), {control | Qt::Key_3});
    add(KeyId::showEditor, QT_TR_NOOP("Take Editor"), {control | Qt::Key_4});
    add(KeyId::showBrowser, QT_TR_NOOP("Folder Browser"), {control | Qt::Key_B});
    add(KeyId::goToBrowser, QT_TR_NOOP("Go to Browser"), {alt | Qt::Key_1});
    add(KeyId::goToTable, QT_TR_NOOP("Go to Table"), {alt | Qt::Key_2});
    add(KeyId::goToEditor, QT_TR_NOOP("Go to Editor"), {alt | Qt::Key_3});
    group = QT_TR_NOOP("Playback");
    add(KeyId::playPause, QT_TR_NOOP("Play / Pause"), {Qt::Key_Space});
    add(KeyId::returnToBeginning, QT_TR_NOOP("Return to beginning"), {Qt::Key_Home});
    add(KeyId::nudgeBackward, QT_TR_NOOP("Nudge backward"), {Qt::Key_Comma});
    add(KeyId::nudgeForward, QT_TR_NOOP("Nudge forward"), {Qt::Key_Period});
    add(KeyId::soloMode, QT_TR_NOOP("Toggle solo mode"), {Qt::Key_S},
        QT_TR_NOOP("Shift + Click Solo: Add/remove Solo in OR mode"));
    add(KeyId::loopPlayback, QT_TR_NOOP("Loop playback"), {Qt::Key_L});
    add(KeyId::followPlayhead, QT_TR_NOOP("Toggle follow playhead"), {Qt::Key_F});
    add(KeyId::insertionFollows, QT_TR_NOOP("Insertion Follows Playback"), {Qt::Key_N});
    add(KeyId::addCue, QT_TR_NOOP("Add cue at playhead"), {Qt::Key_M});
    add(KeyId::previousCue, QT_TR_NOOP("Previous cue"), {Qt::Key_BracketLeft});
    add(KeyId::nextCue, QT_TR_NOOP("Next cue"), {Qt::Key_BracketRight});
    group = QT_TR_NOOP("Window");
    add(KeyId::mixerWindow, QT_TR_NOOP("Mixer Window"), {control | shift | Qt::Key_M});
    add(KeyId::metersWindow, QT_TR_NOOP("Meters Window"), {control | shift | Qt::Key_L});
    add(KeyId::floatingTransport, QT_TR_NOOP("Floating Transport"), {control | shift | Qt::Key_T});
    group = QT_TR_NOOP("Help");
    add(KeyId::showShortcuts, QT_TR_NOOP("Show Keyboard Shortcuts"), {Qt::Key_F1});
    add(KeyId::showManual, QT_TR_NOOP("Dravik Manual"), {shift | Qt::Key_F1});

    context = K::table;
    group = QT_TR_NOOP("Take table");
    add(KeyId::editCell, QT_TR_NOOP("Edit the cell"), {Qt::Key_F2}, QT_TR_NOOP("double click, or type a digit"));
    add(KeyId::switchFlag, QT_TR_NOOP("Switch circled or wild"), {Qt::Key_Space}, QT_TR_NOOP("a click on the mark"));
    add(KeyId::clearCells, QT_TR_NOOP("Empty the column of the selection"), {Qt::Key_Delete});
    add(KeyId::copyColumn, QT_TR_NOOP("Copy the column of the selection"), {control | Qt::Key_C});
    add(KeyId::copyRows, QT_TR_NOOP("Copy whole rows"), {control | shift | Qt::Key_C});
    add(KeyId::pasteColumn, QT_TR_NOOP("Paste lines downwards"), {control | Qt::Key_V});
    add(KeyId::rowBelow, QT_TR_NOOP("Row below"), {Qt::Key_Return});
    add(KeyId::rowAbove, QT_TR_NOOP("Row above"), {shift | Qt::Key_Return});
    add(KeyId::firstTake, QT_TR_NOOP("First take"), {control | Qt::Key_Home});
    add(KeyId::lastTake, QT_TR_NOOP("Last take"), {control | Qt::Key_End});
    add(KeyId::showAllTakes, QT_TR_NOOP("Show all takes again"), {Qt::Key_Escape});
    context = K::cell;
    group = QT_TR_NOOP("While a cell is edited");
    add(KeyId::commitDown, QT_TR_NOOP("Take over, go down"), {Qt::Key_Return});
    add(KeyId::commitUp, QT_TR_NOOP("Take over, go up"), {shift | Qt::Key_Return});
    add(KeyId::commitNext, QT_TR_NOOP("Take over, next cell"), {Qt::Key_Tab});
    add(KeyId::commitPrevious, QT_TR_NOOP("Take over, cell before"), {shift | Qt::Key_Tab});
    add(KeyId::commitToAll, QT_TR_NOOP("Take over for all selected rows"), {control | Qt::Key_Return});
    add(KeyId::leaveCell, QT_TR_NOOP("Leave the cell as it was"), {Qt::Key_Escape});
    context = K::filter;
    group = QT_TR_NOOP("Filter");
    add(KeyId::clearFilter, QT_TR_NOOP("Show all takes"), {Qt::Key_Escape});
    add(KeyId::filterToTable, QT_TR_NOOP("Go to what was found"), {Qt::Key_Return, Qt::Key_Down});
    context = K::editor;
    group = QT_TR_NOOP("Fields of the take");
    add(KeyId::nextField, QT_TR_NOOP("Next field"), {Qt::Key_Return}, QT_TR_NOOP("Tab"));
    add(KeyId::timecodeAsItWas, QT_TR_NOOP("The start timecode as it was"), {Qt::Key_Escape});
    context = K::tracks;
    group = QT_TR_NOOP("Tracks");
    add(KeyId::editTrack, QT_TR_NOOP("Edit the name or number"), {Qt::Key_Return, Qt::Key_F2},
        QT_TR_NOOP("double click, or type"));
    add(KeyId::nextTrack, QT_TR_NOOP("Take over, next track"), {Qt::Key_Tab, Qt::Key_Down},
        QT_TR_NOOP("Return while one is edited"));
    add(KeyId::previousTrack, QT_TR_NOOP("Take over, track before"), {shift | Qt::Key_Tab, Qt::Key_Up});
    add(KeyId::copyTracks, QT_TR_NOOP("Copy names, or numbers"), {control | Qt::Key_C});
    add(KeyId::pasteTracks, QT_TR_NOOP("Paste lines downwards"), {control | Qt::Key_V});
    add(KeyId::clearTracks, QT_TR_NOOP("Empty names"), {Qt::Key_Delete, Qt::Key_Backspace});
    context = K::cues;
    group = QT_TR_NOOP("Cues");
    add(KeyId::renameCue, QT_TR_NOOP("Edit the name"), {Qt::Key_F2, Qt::Key_Return}, QT_TR_NOOP("double click"));
    add(KeyId::deleteCue, QT_TR_NOOP("Delete the cue"), {Qt::Key_Delete, Qt::Key_Backspace});
    context = K::waveform;
    group = QT_TR_NOOP("Waveform");
    add(KeyId::zoomIn, QT_TR_NOOP("Zoom in"), {Qt::Key_Plus, Qt::Key_Equal}, QT_TR_NOOP("Ctrl and the wheel"));
    add(KeyId::zoomOut, QT_TR_NOOP("Zoom out"), {Qt::Key_Minus}, QT_TR_NOOP("Ctrl and the wheel"));
    add(KeyId::tallerWaveform, QT_TR_NOOP("Taller"), {alt | Qt::Key_Up}, QT_TR_NOOP("Ctrl+Shift and the wheel"));
    add(KeyId::flatterWaveform, QT_TR_NOOP("Flatter"), {alt | Qt::Key_Down}, QT_TR_NOOP("Ctrl+Shift and the wheel"));
    add(KeyId::showWholeTake, QT_TR_NOOP("Show the whole take"), {Qt::Key_0}, QT_TR_NOOP("double click below"));
    add(KeyId::nudgeLeft, QT_TR_NOOP("Nudge backward"), {Qt::Key_Left});
    add(KeyId::nudgeRight, QT_TR_NOOP("Nudge forward"), {Qt::Key_Right});
    add(KeyId::clearSelection, QT_TR_NOOP("Clear the selection"), {Qt::Key_Escape}, QT_TR_NOOP("a click"));
    context = K::browser;
    group = QT_TR_NOOP("Folder browser");
    add(KeyId::openFolder, QT_TR_NOOP("Open"), {Qt::Key_Return}, QT_TR_NOOP("a click"));
    add(KeyId::newFolder, QT_TR_NOOP("New Folder"), {control | shift | Qt::Key_N});
    add(KeyId::duplicateFolder, QT_TR_NOOP("Duplicate"), {control | shift | Qt::Key_D});
    add(KeyId::renameFolder, QT_TR_NOOP("Rename"), {Qt::Key_F2});
    add(KeyId::trashFolder, QT_TR_NOOP("Move to Trash"), {Qt::Key_Delete});
    add(KeyId::revealFolder, QT_TR_NOOP("Show in File Manager"), {control | alt | Qt::Key_R});
    add(KeyId::ejectVolume, QT_TR_NOOP("Eject"), {control | shift | Qt::Key_E});
    add(KeyId::refreshBrowser, QT_TR_NOOP("Refresh"), {Qt::Key_F5});
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
    static const std::vector<Shortcut> all = Texts::table();
    return all;
}

const Shortcut& shortcut(KeyId id) {
    for (const Shortcut& one : shortcuts()) {
        if (one.id == id) return one;
    }
    throw std::logic_error("a key without a line in the table of shortcuts");
}

QString Shortcut::group() const { return Texts::tr(groupSource); }
QString Shortcut::name() const { return Texts::tr(nameSource); }
QString Shortcut::also() const { return *alsoSource == 0 ? QString() : Texts::tr(alsoSource); }

QString keyText(KeyId id) { return keyOf(id).toString(QKeySequence::NativeText); }

QString keysText(const Shortcut& shortcut) {
    QStringList texts;
    for (const QKeySequence& key : shortcut.keys)
        texts << key.toString(QKeySequence::NativeText);
    if (const QString also = shortcut.also(); !also.isEmpty()) texts << also;
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
