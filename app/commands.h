#pragma once

#include <QObject>

namespace dravik {

/// The notifications that menus and buttons post and windows observe. Posting one says what was asked for, not who does
/// it. Main thread.
class Commands : public QObject {
    Q_OBJECT
  public:
    using QObject::QObject;

  signals:
    void dravikSaveChanges();
    void dravikLoadFile();
    void dravikLoadFolder();

    void dravikShowTable();
    void dravikShowWaveforms();
    void dravikShowMixerView();
    void dravikShowOperations();
    void dravikShowFloatingMixer();
    void dravikShowFloatingMeters();
    void dravikShowLargeTransport();

    void dravikMergeAudio();
    void dravikSplitAudio();
    void dravikRemoveTracks();
    void dravikReorderTracks();
    void dravikBatchRename();
    void dravikExportAudio();
    void dravikExportReport();
    void dravikOperationsNextTab();
    void dravikOperationsPreviousTab();

    void dravikPreferencesWindowDidOpen();
    void dravikPreferencesWindowDidClose();

    /// The application was asked to terminate: the main window runs its gate.
    void demanderQuitterAvecProtection();
    /// The gate has answered.
    void dravikProtectedTerminationDidReply();
};

}  // namespace dravik
