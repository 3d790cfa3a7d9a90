#pragma once

#include "app/operations_model.h"
#include "ui/theme.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QWidget>
#include <filesystem>
#include <vector>

namespace dravik {

class ExportForm;
class RenamePatternEditor;
class ReportFormView;
class TrackChecks;
class TrackOrderList;

/// The forms of the seven tabs, one at a time: each shows its part of the model's choices, and changes it.
class OperationForms : public QWidget {
    Q_OBJECT
  public:
    OperationForms(OperationsModel& model, UserDefaults& settings, Dialogs& dialogs, const Theme& theme,
                   QWidget* parent);

  private:
    [[nodiscard]] QWidget* makeTracksHead();
    [[nodiscard]] QWidget* makeMerge();
    [[nodiscard]] QWidget* makeSplit();
    [[nodiscard]] QWidget* makeDelete();
    [[nodiscard]] QWidget* makeReorder();
    [[nodiscard]] QWidget* makeRename(UserDefaults& settings, Dialogs& dialogs);
    [[nodiscard]] QWidget* makeExport();
    [[nodiscard]] QWidget* makeReport(UserDefaults& settings);
    void showTab();
    /// Files that a merge can take or leave.
    [[nodiscard]] int mergeMembers() const;
    void showTracks();
    void showChoices();
    void showSimilar();
    void applyTheme();

    OperationsModel& model_;
    const Theme& theme_;
    QLabel* title_ = nullptr;  // children, all of them
    QLabel* hint_ = nullptr;
    QPushButton* similar_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    TrackChecks *merge_ = nullptr, *split_ = nullptr, *delete_ = nullptr;
    TrackOrderList* order_ = nullptr;
    std::vector<std::filesystem::path> shownOrder_;  ///< files of the take whose tracks it shows
    QCheckBox *preserve_ = nullptr, *leaves_ = nullptr, *keepBoth_ = nullptr;
    QRadioButton *inPlace_ = nullptr, *copies_ = nullptr;
    RenamePatternEditor* pattern_ = nullptr;
    ExportForm* export_ = nullptr;
    ReportFormView* report_ = nullptr;
};

}  // namespace dravik
