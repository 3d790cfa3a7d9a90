#pragma once

#include "app/operations_model.h"
#include "ui/operations/operation_overlay.h"
#include "ui/theme.h"

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QTimer>
#include <QWidget>
#include <map>

namespace dravik {

class ElidedLabel;
class OperationPreviewTable;
class OperationForms;
class TakeCheckList;

/// The operations in a window of their own: the tabs at the left, the takes that take part, the form of the tab, and
/// below what would come of it, live. While one runs, and until its results were read, a card covers everything but the
/// tabs. It shows the model's state and sends it what the user wants.
class OperationsWindow : public QWidget {
    Q_OBJECT
  public:
    /// All of it outlives the window.
    struct Services {
        OperationsModel& model;
        UserDefaults& settings;
        Dialogs& dialogs;
        Commands& commands;
        const Theme& theme;
    };
    OperationsWindow(const Services& services, QWidget* parent);
    ~OperationsWindow() override;

    void present();
    [[nodiscard]] OperationsModel& model() noexcept { return services_.model; }

  protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    [[nodiscard]] QWidget* makeEmpty();
    [[nodiscard]] QWidget* makeTabs();
    [[nodiscard]] QWidget* makeTakes();
    [[nodiscard]] QWidget* makeForm();
    [[nodiscard]] QWidget* makePreview();
    [[nodiscard]] QWidget* makeFoot();
    void connectModel();
    void restoreLayout();
    void rememberLayout();
    void showTab();
    /// The form of the report is long, and what it makes short.
    void showReportLayout(bool report);
    void showItems();
    void showDestination();
    void showPreview();
    void showRunning();
    void applyTheme();
    void tell(const QString& text);

    Services services_;
    QListWidget* tabs_ = nullptr;  // children, all of them
    QStackedWidget* pages_ = nullptr;
    QLabel *emptyTitle_ = nullptr, *emptyMessage_ = nullptr;
    QPushButton* emptyAll_ = nullptr;
    QCheckBox* all_ = nullptr;
    QWidget *takesPane_ = nullptr, *previewPane_ = nullptr;
    TakeCheckList* takes_ = nullptr;
    OperationForms* forms_ = nullptr;
    OperationPreviewTable* preview_ = nullptr;
    QSplitter *across_ = nullptr, *down_ = nullptr;
    std::optional<QList<int>> downSizes_;  ///< of the other tabs, while the report's is shown
    ElidedLabel* destination_ = nullptr;
    QLabel* told_ = nullptr;
    QTimer toldFor_;
    QPushButton *choose_ = nullptr, *beside_ = nullptr, *run_ = nullptr;
    OperationOverlay* overlay_ = nullptr;
    std::map<OperationsTab, QListWidgetItem*> tabItems_;
};

}  // namespace dravik
