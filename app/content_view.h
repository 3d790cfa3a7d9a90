#pragma once

#include "app/action_en_attente.h"
#include "app/background.h"
#include "app/clock.h"
#include "app/commands.h"
#include "app/dialogs.h"
#include "app/external_file_open_router.h"
#include "app/file_moves.h"
#include "app/folder_listing.h"
#include "app/protected_termination.h"
#include "app/save_flow.h"
#include "app/take_cues.h"
#include "app/take_fields.h"
#include "app/take_rows.h"
#include "app/user_defaults.h"
#include "base/file_ops.h"
#include "model/audio_file_reader.h"
#include "model/audio_metadata.h"
#include "model/piste.h"

#include <QObject>
#include <QString>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace dravik {

/// The main window's controller: the folder, its rows, the take that is loaded, what is unsaved, and the gate that
/// every action passes which would lose it. No widget; one signal for each thing that a view shows. Main thread only.
///
/// There is one set of pending edits, the rows' (TakeRows). `modifications()` shows those of the loaded take as fields;
/// an edit made there is an edit of its row, and the other way round.
class ContentView : public QObject {
    Q_OBJECT
  public:
    /// What it works with; all of it outlives the controller.
    struct Services {
        UserDefaults& settings;
        Dialogs& dialogs;
        Clock& clock;
        Background& background;
        FileOps& files;
        const AudioFileReader& codecs;
        Commands& commands;
        ExternalFileOpenRouter& router;
        ProtectedTermination& termination;
    };
    explicit ContentView(const Services& services);
    ~ContentView() override;

    /// Registers with the router, and takes what waits there. To be called when those are connected who show it.
    void start();

    // --- What views show -------------------------------------------------------------------------------------------
    [[nodiscard]] TakeRows& rows() noexcept { return rows_; }
    [[nodiscard]] const TakeRows& rows() const noexcept { return rows_; }
    [[nodiscard]] FolderListing& listing() noexcept { return listing_; }
    [[nodiscard]] ModificationsEnCours& modifications() noexcept { return fields_.modifications(); }

    [[nodiscard]] const std::optional<std::filesystem::path>& dossierSelectionne() const noexcept { return dossier_; }
    /// The folder that is open, or in which the selected files lie; "Multiple folders" when these are several.
    [[nodiscard]] QString folderLabel() const;
    /// Row of the loaded take, -1 for none.
    [[nodiscard]] int selectedRow() const noexcept;
    [[nodiscard]] std::optional<std::filesystem::path> fichierSelectionne() const;
    /// Of the take as it was read, edits not included.
    [[nodiscard]] const std::optional<AudioMetadata>& metadata() const noexcept { return metadata_; }
    /// With the names as they are edited.
    [[nodiscard]] const std::vector<Piste>& pistes() const noexcept { return pistes_; }
    /// Something is about to be opened, as soon as the disk has said what it is.
    [[nodiscard]] bool isOpening() const noexcept { return lookID_.has_value(); }
    [[nodiscard]] bool enChargement() const noexcept { return cues_.isReading(); }
    [[nodiscard]] const std::optional<ActionEnAttente>& actionEnAttente() const noexcept { return actionEnAttente_; }
    [[nodiscard]] bool sauvegardeEnCours() const noexcept { return saves_.isRunning(); }
    [[nodiscard]] const QString& messageSuccesSauvegarde() const noexcept { return saves_.messageSucces(); }
    [[nodiscard]] bool regrouperFichiersMono() const;
    /// A text field is being edited: single-key shortcuts wait.
    [[nodiscard]] bool enSaisie() const noexcept { return enSaisie_; }
    void setEnSaisie(bool enSaisie) noexcept { enSaisie_ = enSaisie; }

    [[nodiscard]] bool hasUnsavedChanges() const noexcept { return rows_.hasEdits(); }

    // --- Intents ---------------------------------------------------------------------------------------------------
    /// The gate.
    void gererActionProtegee(const ActionEnAttente& action);
    /// Loads the take made of these files, which is a row of the table.
    void chargerGroupe(const std::vector<std::filesystem::path>& urls);
    /// The user has selected a row. Its edits stay with the rows, so this asks nothing unless the user wants it to.
    void selectionnerLigne(int row);
    /// All rows that are selected in the table, of which the loaded one is one.
    void setLignesSelectionnees(const std::vector<int>& rows);

    void loadFile();
    void loadFolder();
    /// Reads the folder again, every file of it; pending edits and the selection stay.
    void reload() { readAgain(FolderListing::Reuse::nothing); }

    /// Saves everything pending; `saved` is called with whether it is all on disk, also when there was nothing to save.
    void saveAll(std::function<void(bool)> saved = {});
    void cancelSave() { saves_.cancel(); }
    /// Asks, then reverts everything pending.
    void discardAll();

    /// The last step of what is pending; when nothing is, the last save: its files are put back as they were, after a
    /// question.
    void undo();
    void redo();
    [[nodiscard]] bool canUndo() const { return !undoName().isEmpty(); }
    [[nodiscard]] bool canRedo() const { return !redoName().isEmpty(); }
    /// What the step is called; empty when there is none.
    [[nodiscard]] QString undoName() const;
    [[nodiscard]] QString redoName() const;

    void setRegrouperFichiersMono(bool regrouper);

    /// The volume is about to be ejected: whoever still reads from it stops.
    void letGoOf(const std::filesystem::path& root) { emit lettingGo(root); }
    /// It has stayed.
    void takeUpAgain() { emit takingUpAgain(); }

    /// New files are being made of the takes: until that has ended nothing is saved, and the program asks before it
    /// ends.
    [[nodiscard]] bool operationsEnCours() const noexcept { return operationsEnCours_; }
    void setOperationsEnCours(bool running);
    /// Files were made: the folder is read again, and those that lie in it are selected.
    void filesMade(const std::vector<std::filesystem::path>& made);
    /// Files have other names, by our own doing; everything known of them goes along.
    void filesRenamed(const FileMoves& moved);
    /// What is being typed is put into the rows.
    void commitEditing() { emit commitRequested(); }

    /// One line for the status bar that needs no answer.
    void tell(const QString& text) { emit notice(text); }

    // --- Cue markers of the loaded take ----------------------------------------------------------------------------
    [[nodiscard]] TakeCues& cues() noexcept { return cues_; }
    [[nodiscard]] std::vector<CueMarker> cueMarkers() const { return cues_.markers(); }

  signals:
    void folderChanged();
    void selectionChanged();  ///< another take is loaded, or the table is to show the loaded one again
    void takeChanged();       ///< metadata or tracks of the loaded take
    void cueMarkersChanged();
    void enChargementChanged();
    void sauvegardeEnCoursChanged();
    void messageSuccesSauvegardeChanged();
    void saveProgressed(std::uint64_t doneBytes, std::uint64_t allBytes, const QString& name);
    void pendingChanged();
    /// Something is about to be done with the edits: views put in what is still being typed.
    void commitRequested();
    /// Files have new names, by our own doing; the rows know them already.
    void filesMoved(const FileMoves& moved);
    void lettingGo(const std::filesystem::path& root);
    void takingUpAgain();
    /// These rows are to be selected, of which one is the loaded take.
    void rowsToSelect(const std::vector<int>& rows);
    /// The user wants to quit rather than wait for what is being made.
    void operationStopRequested();
    void notice(const QString& text);

  private:
    void perform(const ActionEnAttente& action);
    void askToStopOperation();
    /// Asks the disk, which may take its time, which of the paths are folders; a later question makes this one void.
    void lookAt(const ActionEnAttente& action, std::vector<std::filesystem::path> paths,
                std::function<void(const std::vector<bool>& areFolders)> then);
    void openDropped(const OuvrirDepotFichiers& dropped, const std::vector<bool>& areFolders);
    void takeNextAction();
    void openFolder(const std::filesystem::path& folder, bool isThere, std::vector<std::filesystem::path> select);
    void openFiles(std::vector<std::filesystem::path> files);
    void connectSaves();
    void followMoves(const FileMoves& moved);
    void onRowsRead(const std::shared_ptr<ReadRows>& rows, bool complete);
    void onRowsChanged(const std::vector<int>& rows);
    void loadNone();
    void readAgain(FolderListing::Reuse reuse);
    void startReading(FolderListing::Reuse reuse);
    void selectAfterReading(bool complete);
    void clearSelection();
    void showTake(int row);

    Services services_;
    TakeRows rows_;
    FolderListing listing_;
    SaveFlow saves_;
    TakeCues cues_;
    TakeFields fields_;
    const Uuid externalOpenConsumerID_ = Uuid::random();

    std::optional<std::filesystem::path> dossier_;
    std::vector<std::filesystem::path> fichiersDossier_;  ///< when files were opened rather than a folder
    std::vector<std::filesystem::path> selected_;         ///< files of the loaded take
    std::set<std::filesystem::path> selectedFolders_;     ///< of the rows that are selected in the table
    std::vector<std::filesystem::path> toSelect_;         ///< files to load as soon as they have been read
    TakeRows::Reading reading_ = TakeRows::Reading::last;
    bool missedReading_ = false;  ///< rows came while a save ran
    bool operationsEnCours_ = false;
    bool operationIsOfListing_ = false;  ///< of takes of what is shown now
    bool quitsAfterOperation_ = false;
    LooseBackground looking_;     ///< for what a volume may leave without an answer
    std::optional<Uuid> lookID_;  ///< of what is about to be opened
    bool opening_ = false;        ///< no take of the folder has been loaded yet
    std::optional<AudioMetadata> metadata_;
    std::vector<Piste> pistes_;
    bool enSaisie_ = false;

    std::optional<ActionEnAttente> actionEnAttente_;
    std::optional<ActionEnAttente> nextAction_;  ///< came from outside while another was waiting
};

}  // namespace dravik
