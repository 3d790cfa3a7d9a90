#pragma once

#include "app/commands.h"
#include "app/content_view.h"
#include "app/operation_items.h"
#include "app/operations_run.h"
#include "app/workspace.h"
#include "report/report_document.h"
#include "report/report_form.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace dravik {

/// The operations window's controller: the tab, the takes it is about, what was chosen, what would come of it, and the
/// run. No widget; one signal for each thing that a view shows. Main thread only.
///
/// It works on the takes of the table as they are shown, edits included; since operations read files, a run begins with
/// the edits saved.
class OperationsModel : public QObject {
    Q_OBJECT
  public:
    /// All of it outlives the model; what is in `operations` also outlives work that a volume left without an answer.
    struct Services {
        ContentView& content;
        UserDefaults& settings;
        Dialogs& dialogs;
        Workspace& workspace;
        Commands& commands;
        Background& background;
        OperationServices operations;
    };
    explicit OperationsModel(const Services& services);
    ~OperationsModel() override;

    [[nodiscard]] OperationMenuState& menuState() noexcept { return menuState_; }

    // --- The window ------------------------------------------------------------------------------------------------
    [[nodiscard]] bool afficherOperations() const noexcept { return afficherOperations_; }
    /// Told by the window when it opens or closes: what nobody sees is not worked out.
    void setAfficherOperations(bool shown);
    /// What a menu has last asked for, and how often one has.
    [[nodiscard]] std::optional<OperationsTab> operationsTabDemandee() const noexcept { return operationsTabDemandee_; }
    [[nodiscard]] int operationsTabDemandeID() const noexcept { return operationsTabDemandeID_; }
    void demander(std::optional<OperationsTab> tab);

    [[nodiscard]] std::optional<OperationsTab> tab() const noexcept { return tab_; }
    /// False, and it is told why, while an operation runs.
    bool setTab(OperationsTab tab);

    // --- What it is about ------------------------------------------------------------------------------------------
    using Item = OperationChoiceItem;
    [[nodiscard]] const std::vector<Item>& items() const noexcept { return items_.all(); }
    [[nodiscard]] int checkedCount() const noexcept { return items_.checkedCount(); }
    void setChecked(int item, bool checked);
    void setAllChecked(bool checked);
    /// What is shown instead when there are none.
    [[nodiscard]] EmptyState emptyState() const { return items_.emptyState(); }
    /// The rows that are selected in the table.
    void setSelectedRows(const std::vector<int>& rows);
    /// Every take of the folder that the tab can work on, rather than the selected ones. A report is of all.
    [[nodiscard]] bool appliquerTous() const { return items_.appliquerTous(); }
    void setAppliquerTous(bool all);
    [[nodiscard]] bool canChooseAll() const noexcept { return tab_ && tab_ != OperationsTab::report; }

    /// The take whose tracks are shown; -1 for none.
    [[nodiscard]] int currentItem() const noexcept { return items_.current(); }
    void setCurrentItem(int item);
    /// Of the take that is shown, in the order of its channels.
    [[nodiscard]] std::vector<Piste> currentTracks() const;
    [[nodiscard]] std::vector<std::filesystem::path> currentFiles() const;
    /// Files of its tracks that cannot be read. A merge counts them behind the others, and has them excluded or is
    /// refused.
    [[nodiscard]] std::vector<UnreadableTrack> currentUnreadable() const;

    // --- What was chosen -------------------------------------------------------------------------------------------
    [[nodiscard]] TrackChoices currentChoices() const;
    void setCurrentChoices(const TrackChoices& choices);
    /// The other checked takes with tracks of the same names get the same choices.
    void copyChoicesToSimilar();
    [[nodiscard]] int similarCount() const;
    [[nodiscard]] bool preserveTrackNumbers() const noexcept { return preserveTrackNumbers_; }
    void setPreserveTrackNumbers(bool preserve);

    [[nodiscard]] ExportAudioSessionState exportState() const;
    /// But for the takes that take part, which are chosen above.
    void setExportState(const ExportAudioSessionState& state);

    [[nodiscard]] const BatchRenameChoice& renameChoice() const noexcept { return rename_; }
    void setRenamePattern(const RenamePattern& pattern);
    void setRenameMode(OperationAudioBatchRenameMode mode);
    void setLeavesSeparators(bool leaves);
    void setKeepBoth(bool keepBoth);
    /// A number for the name of the file in this row of the preview.
    void keepBothFor(int previewRow);

    [[nodiscard]] const ReportForm& reportForm() const noexcept { return reportForm_; }
    void setReportForm(const ReportForm& form);
    /// What the files that are reported have in common.
    [[nodiscard]] FileValues fileValues() const { return valuesOf(request().fichiers); }
    /// What the report calls the tape; empty for what the files say.
    [[nodiscard]] const QString& reportTape() const noexcept { return reportTape_; }
    void setReportTape(const QString& tape);

    /// Where new files go; absent for beside what they are made of.
    [[nodiscard]] std::optional<std::filesystem::path> destination() const { return items_.destination(); }
    void chooseDestination();
    void setDestination(const std::optional<std::filesystem::path>& folder);
    [[nodiscard]] bool needsDestination() const noexcept;

    // --- What would come of it -------------------------------------------------------------------------------------
    [[nodiscard]] const OperationPreview& preview() const noexcept { return preview_; }
    /// Is what is shown about to be replaced?
    [[nodiscard]] bool isPlanning() const noexcept;
    [[nodiscard]] bool canRun() const noexcept;

    // --- The run ---------------------------------------------------------------------------------------------------
    /// Begins it, after the question whether to save what is pending.
    void run();
    [[nodiscard]] OperationsRun& running() noexcept { return run_; }
    void reveal(const std::filesystem::path& file);

  signals:
    void shownChanged();
    /// The window is to come to the front.
    void presentRequested();
    void tabChanged();
    void itemsChanged();
    void currentItemChanged();
    void choicesChanged();
    void destinationChanged();
    void previewChanged();
    void notice(const QString& text);

  private:
    [[nodiscard]] TrackChoices choicesOf(const GroupeFichiers& groupe) const;
    [[nodiscard]] std::vector<const GroupeFichiers*> similar() const;
    /// What would be run now.
    [[nodiscard]] OperationRequest request() const;
    /// Looks the takes up in the rows, by the paths of their files.
    void fill(OperationRequest& request, const std::vector<std::string>& keys) const;
    /// The file as it is when what is pending was saved, its name included.
    [[nodiscard]] InfoFichier fileAsSaved(int row, const std::string& key) const;
    void listItems();
    void onRowsChanged();
    void follow(const FileMoves& moved);
    void onChoices();
    /// Works the preview out anew, as soon as no more is typed.
    void replan();
    void plan();
    void stopPlanning();
    void begin(OperationRequest request);
    void onEnded(const std::vector<std::filesystem::path>& made, const FileMoves& moved);

    Services services_;
    OperationMenuState menuState_;
    OperationsRun run_;
    bool afficherOperations_ = false;
    std::optional<OperationsTab> operationsTabDemandee_;
    int operationsTabDemandeID_ = 0;

    std::optional<OperationsTab> tab_;
    OperationItems items_;

    std::map<std::string, TrackChoices> choices_;  ///< by the key of the take; only where something was chosen
    bool preserveTrackNumbers_ = false;
    ExportAudioSessionState exportState_;
    BatchRenameChoice rename_;
    ReportForm reportForm_;
    QString reportTape_;

    OperationPreview preview_;
    QTimer rowsDelay_;  ///< rows change in storms
    QTimer checks_;     ///< and so do check marks
    QTimer delay_;      ///< so does what is typed
    std::shared_ptr<CancellationToken> planning_;
    /// Replaced when another folder is opened; with it the number of plans that have not come back.
    std::unique_ptr<LooseBackground> planner_ = std::make_unique<LooseBackground>();
    std::shared_ptr<int> plansOut_ = std::make_shared<int>(0);
    bool planDue_ = false;  ///< as soon as one has come back

    /// A run that waits for the save before it.
    struct Confirmed {
        OperationRequest request;
        std::vector<std::string> keys;  ///< of what takes part
    };
    std::optional<Confirmed> confirmed_;
    bool locksRows_ = false;
    LooseBackground revealing_;
};

}  // namespace dravik
