#pragma once

#include <QKeyEvent>
#include <QKeySequence>
#include <QString>
#include <optional>
#include <vector>

namespace dravik {

/// Every key of the program, once: menus, lists, and the panel that shows them all read them from here. What a key does
/// is said where it is done.

/// Where a key means something. Lists and fields come before the window: while one has the keyboard its keys are its.
enum class KeyContext { window, table, cell, filter, editor, tracks, cues, waveform, browser };

enum class KeyId {
    // window
    loadFolder,
    loadFile,
    reload,
    save,
    preferences,
    quit,
    undo,
    redo,
    find,
    toggleCircled,
    fillDown,
    incrementTakes,
    showTable,
    showWaveforms,
    showMixer,
    showOperations,
    nextOperationsTab,
    previousOperationsTab,
    batchRename,
    exportAudio,
    exportReport,
    showEditor,
    showBrowser,
    goToBrowser,
    goToTable,
    goToEditor,
    showShortcuts,
    showManual,
    // playback
    playPause,
    returnToBeginning,
    nudgeBackward,
    nudgeForward,
    soloMode,
    loopPlayback,
    followPlayhead,
    insertionFollows,
    addCue,
    previousCue,
    nextCue,
    mixerWindow,
    metersWindow,
    floatingTransport,
    // table
    editCell,
    copyColumn,
    copyRows,
    pasteColumn,
    clearCells,
    switchFlag,
    rowBelow,
    rowAbove,
    firstTake,
    lastTake,
    showAllTakes,
    // cell
    commitDown,
    commitUp,
    commitNext,
    commitPrevious,
    commitToAll,
    leaveCell,
    // filter
    clearFilter,
    filterToTable,
    // editor
    nextField,
    timecodeAsItWas,
    // tracks
    editTrack,
    nextTrack,
    previousTrack,
    copyTracks,
    pasteTracks,
    clearTracks,
    // cues
    renameCue,
    deleteCue,
    // waveform
    zoomIn,
    zoomOut,
    tallerWaveform,
    flatterWaveform,
    showWholeTake,
    nudgeLeft,
    nudgeRight,
    clearSelection,
    // browser
    openFolder,
    newFolder,
    duplicateFolder,
    renameFolder,
    trashFolder,
    revealFolder,
    ejectVolume,
    refreshBrowser,
};

struct Shortcut {
    KeyId id;
    KeyContext context;
    std::vector<QKeySequence> keys;  ///< the first is the one that menus show
    /// Before they are translated.
    const char *groupSource, *nameSource, *alsoSource;

    /// A heading of the panel: a menu, or a part of the window.
    [[nodiscard]] QString group() const;
    [[nodiscard]] QString name() const;
    /// What else does it: "double click"; empty for nothing.
    [[nodiscard]] QString also() const;
};

[[nodiscard]] const std::vector<Shortcut>& shortcuts();
[[nodiscard]] const Shortcut& shortcut(KeyId id);
[[nodiscard]] inline const QKeySequence& keyOf(KeyId id) { return shortcut(id).keys.front(); }
/// "Ctrl+D" as the system writes it.
[[nodiscard]] QString keyText(KeyId id);
/// All keys of it, and what else does it.
[[nodiscard]] QString keysText(const Shortcut& shortcut);

/// Is it one of the shortcut's keys? Enter of the keypad counts as Return.
[[nodiscard]] bool isKey(KeyId id, const QKeyEvent& event);
/// What the key means there; absent when it means nothing.
[[nodiscard]] std::optional<KeyId> keyIn(KeyContext context, const QKeyEvent& event);

/// Undo or redo, also by the other keys that the system and its text fields have for them.
[[nodiscard]] std::optional<KeyId> undoOrRedo(const QKeyEvent& event);

}  // namespace dravik
