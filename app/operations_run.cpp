#include "app/operations_run.h"

#include "app/report_throttle.h"
#include "app/text.h"
#include "app/time_left.h"
#include "base/paths.h"

#include <QLocale>
#include <QPointer>
#include <algorithm>
#include <utility>

namespace dravik {
namespace {

OperationOutcome failure(const QString& sourceName, const std::string& message) {
    OperationOutcome outcome;
    OperationAudioResult result;
    result.id = Uuid::random();
    result.sourceName = sourceName.toStdString();
    result.message = message;
    outcome.results.push_back(std::move(result));
    return outcome;
}

}  // namespace

std::size_t OperationCompletionInfo::succeeded() const noexcept {
    return static_cast<std::size_t>(
        std::count_if(results.begin(), results.end(), [](const OperationAudioResult& one) { return one.success; }));
}

OperationCompletionInfo::Ending OperationCompletionInfo::ending() const noexcept {
    if (cancelled) return Ending::cancelled;
    if (succeeded() == results.size()) return Ending::done;
    return succeeded() > 0 ? Ending::partly : Ending::failed;
}

QString OperationCompletionInfo::title() const {
    switch (ending()) {
        case Ending::done:
            return successTitle;
        case Ending::partly:
            return completedWithErrors();
        case Ending::failed:
            return failedTitle;
        case Ending::cancelled:
            break;
    }
    return OperationsRun::tr("Operation Cancelled");
}

QString OperationCompletionInfo::summary() const {
    const QString all = counted(results.size(), noun);
    if (cancelled && results.empty()) return OperationsRun::tr("Nothing was made.");
    if (cancelled && succeeded() == results.size()) return OperationsRun::tr("%1 finished.").arg(all);
    if (ending() == Ending::done) return successMessage;
    if (succeeded() == 0) return {};
    return OperationsRun::tr("%1 of %2 succeeded.").arg(QLocale().toString(static_cast<qulonglong>(succeeded())), all);
}

OperationsRun::~OperationsRun() {
    if (token_) token_->cancel();
}

bool OperationsRun::start(OperationsTab tab, int files, const QString& sourceName, Work work) {
    if (overlay_) return false;
    token_ = std::make_shared<CancellationToken>();
    overlay_ = OperationWorking{runningText(tab, files), std::nullopt, {}, {}, false};
    begun_.start();
    emit overlayChanged();
    emit runningChanged();

    const QPointer<QObject> self(this);
    // The thread may outlive this object, but not what this object was given.
    auto run = [this, &background = background_, self, token = token_, sourceName, work = std::move(work)] {
        const auto throttle = std::make_shared<ReportThrottle>();
        const auto report = [this, &background, self, throttle](const Progress& progress) {
            if (!throttle->isDue()) return;
            const double fraction = static_cast<double>(progress.doneBytes) /
                                    static_cast<double>(std::max<std::uint64_t>(1, progress.allBytes));
            background.post(self,
                            [this, fraction, name = toQt(progress.currentName)] { showProgress(fraction, name); });
        };
        try {
            return work({token.get(), report});
        } catch (const Cancelled&) {
            OperationOutcome outcome;
            outcome.cancelled = true;
            return outcome;
        } catch (const std::exception& error) {
            return failure(sourceName, userText(error));
        }
    };
    background_.run(this, std::move(run), [this, tab](OperationOutcome outcome) { end(tab, std::move(outcome)); });
    return true;
}

void OperationsRun::showProgress(double fraction, const QString& name) {
    auto* working = overlay_ ? std::get_if<OperationWorking>(&*overlay_) : nullptr;
    if (working == nullptr) return;
    working->fraction = std::clamp(fraction, 0.0, 1.0);
    working->fileName = name;
    working->remaining = timeLeft(begun_.elapsed(), fraction);
    emit overlayChanged();
}

void OperationsRun::cancel() {
    if (!token_) return;
    token_->cancel();
    std::get<OperationWorking>(*overlay_).cancelling = true;
    emit overlayChanged();
}

void OperationsRun::end(OperationsTab tab, OperationOutcome outcome) {
    token_.reset();
    std::vector<std::filesystem::path> made;
    for (const OperationAudioResult& result : outcome.results)
        made.insert(made.end(), result.destinationURLs.begin(), result.destinationURLs.end());
    const OperationTexts texts = textsOf(tab);
    overlay_ = OperationCompletionInfo{
        texts.succeeded, texts.failed, outcome.message, texts.noun, std::move(outcome.results), outcome.cancelled};
    emit overlayChanged();
    emit runningChanged();
    emit ended(made, outcome.moved);
}

void OperationsRun::dismiss() {
    if (isRunning() || !overlay_) return;
    overlay_.reset();
    emit overlayChanged();
}

}  // namespace dravik
