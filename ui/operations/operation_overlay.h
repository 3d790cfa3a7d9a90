#pragma once

#include "app/operations_run.h"
#include "ui/theme.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QTableView>
#include <QWidget>
#include <filesystem>
#include <optional>

namespace dravik {

class ElidedLabel;
class OperationResultsModel;

/// Covers its parent while an operation runs, and with what it ended with until that was read. Keys stay in it. Follows
/// the parent's size by itself; hidden while there is no state.
class OperationOverlay : public QWidget {
    Q_OBJECT
  public:
    OperationOverlay(const Theme& theme, QWidget* parent);

    void setState(const std::optional<OperationStatusOverlayState>& state);
    [[nodiscard]] QTableView& results() noexcept { return *results_; }

  signals:
    void cancelRequested();
    void revealRequested(const std::filesystem::path& file);
    void dismissed();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    [[nodiscard]] QWidget* makeWorking();
    [[nodiscard]] QWidget* makeResult();
    void showWorking(const OperationWorking& working);
    void showResult(const OperationCompletionInfo& info);
    void cover();
    void copySelected();
    void showReveal();
    void applyTheme();
    /// The file of the selected line; of the first line with one when nothing is selected.
    [[nodiscard]] std::optional<std::filesystem::path> fileToReveal() const;

    const Theme& theme_;
    std::optional<OperationStatusOverlayState> state_;
    QPointer<QWidget> focusedBefore_;

    QWidget* card_ = nullptr;  // children, all of them
    QStackedWidget* pages_ = nullptr;
    QLabel *message_ = nullptr, *remaining_ = nullptr;
    ElidedLabel* fileName_ = nullptr;
    QProgressBar* bar_ = nullptr;
    QPushButton *cancel_ = nullptr, *reveal_ = nullptr, *ok_ = nullptr;
    QLabel *sign_ = nullptr, *title_ = nullptr, *successMessage_ = nullptr;
    OperationResultsModel* model_ = nullptr;
    QTableView* results_ = nullptr;
};

}  // namespace dravik
