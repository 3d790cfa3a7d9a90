#pragma once

#include "app/background.h"
#include "app/operation_request.h"
#include "base/progress.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace dravik {

/// What a run ended with: the list that the window shows until "OK".
struct OperationCompletionInfo {
    QString successTitle, failedTitle, successMessage;
    Noun noun{};  ///< what a result is of
    std::vector<OperationAudioResult> results;
    bool cancelled = false;

    enum class Ending { done, partly, failed, cancelled };
    /// Without a single result it is done.
    [[nodiscard]] Ending ending() const noexcept;
    [[nodiscard]] std::size_t succeeded() const noexcept;
    /// Which of the titles holds for the results.
    [[nodiscard]] QString title() const;
    /// What is said below the title; empty where that has said all.
    [[nodiscard]] QString summary() const;
};

/// What covers the window while a run is on, and after it.
struct OperationWorking {
    QString message;
    std::optional<double> fraction;  ///< 0 to 1; absent while nobody can tell
    QString fileName;                ///< at work
    QString remaining;               ///< "2 min left"; empty while nobody can tell
    bool cancelling = false;
};
using OperationStatusOverlayState = std::variant<OperationWorking, OperationCompletionInfo>;

/// One operation at a time, on another thread: idle -> working -> result -> idle. Main thread only.
class OperationsRun : public QObject {
    Q_OBJECT
  public:
    /// The work's thread is waited for by `background`, which outlives this.
    explicit OperationsRun(Background& background) : background_(background) {}
    ~OperationsRun() override;

    [[nodiscard]] bool isRunning() const noexcept { return token_ != nullptr; }
    /// Absent when idle.
    [[nodiscard]] const std::optional<OperationStatusOverlayState>& overlay() const noexcept { return overlay_; }

    using Work = std::function<OperationOutcome(const TaskContext&)>;
    /// What it throws is the one result, under `sourceName`. False, and nothing is begun, while another one runs or its
    /// result is still shown.
    bool start(OperationsTab tab, int files, const QString& sourceName, Work work);
    /// Ends the run behind the file in progress, which is taken back.
    void cancel();
    /// The result was read: idle again.
    void dismiss();

  signals:
    void overlayChanged();
    void runningChanged();
    /// All files that were made, and those that have other names now, so that the folder can be read again and show
    /// them.
    void ended(const std::vector<std::filesystem::path>& made, const FileMoves& moved);

  private:
    void showProgress(double fraction, const QString& name);
    void end(OperationsTab tab, OperationOutcome outcome);

    Background& background_;
    std::shared_ptr<CancellationToken> token_;  ///< of the run; null when none is on
    std::optional<OperationStatusOverlayState> overlay_;
    QElapsedTimer begun_;
};

}  // namespace dravik
