#include "operations/export_run.h"

#include "operations/run_preview.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <numeric>
#include <optional>
#include <system_error>
#include <thread>

namespace dravik {
namespace {

/// More encoders at a time than this wait for each other at the disk.
constexpr unsigned mostAtOnce = 16;

std::uint64_t sourceBytes(const GroupeFichiers& groupe) {
    return std::accumulate(groupe.fichiers.begin(), groupe.fichiers.end(), std::uint64_t{0},
                           [](std::uint64_t sum, const InfoFichier& file) { return sum + file.taille; });
}

std::string exported(const ExportJob& job, const ExportServices& services, const OperationContext& context) {
    struct Export {
        const ExportJob& job;
        const ExportServices& services;
        const OperationContext& context;
        std::string operator()(const OperationAudioExportConfiguration& wav) const {
            return OperationsAudio::exportWAV(wav, job.folder, services, context);
        }
        std::string operator()(const OperationAudioAACExportConfiguration& aac) const {
            return OperationsAudio::exportAAC(aac, job.folder, services, context);
        }
        std::string operator()(const OperationAudioMP3ExportConfiguration& mp3) const {
            return OperationsAudio::exportMP3(mp3, job.folder, services, context);
        }
    };
    return std::visit(Export{job, services, context}, job.configuration);
}

OperationItem itemOf(const ExportJob& job, const ExportServices& services) {
    return {job.groupe().nom, sourceBytes(job.groupe()),
            [&job, &services](const OperationContext& context) { return exported(job, services, context); }};
}

/// The progress of jobs that run side by side, as one.
class SharedProgress {
  public:
    SharedProgress(const ProgressSink& report, std::size_t jobs, std::uint64_t all)
        : report_(report), done_(jobs), all_(all) {}

    [[nodiscard]] ProgressSink sinkOf(std::size_t job) {
        if (!report_) return {};
        return [this, job](const Progress& progress) {
            const std::lock_guard held(mutex_);
            done_[job] = progress.doneBytes;
            report_({std::accumulate(done_.begin(), done_.end(), std::uint64_t{0}), all_, progress.currentName});
        };
    }

    /// Also of a job that failed: nothing more comes of it.
    void ended(std::size_t job, std::uint64_t bytes) {
        const std::lock_guard held(mutex_);
        done_[job] = bytes;
    }

  private:
    const ProgressSink& report_;
    std::mutex mutex_;
    std::vector<std::uint64_t> done_;
    std::uint64_t all_;
};

RunOutcome runSideBySide(const std::vector<OperationItem>& items, std::size_t threads, FileOps& ops,
                         const TaskContext& task) {
    std::uint64_t all = 0;
    for (const OperationItem& item : items)
        all += item.bytes;
    SharedProgress progress(task.report, items.size(), all);
    std::vector<RunOutcome> outcomes(items.size());
    std::atomic<std::size_t> next{0};
    const auto work = [&] {
        for (std::size_t at = next++; at < items.size(); at = next++) {
            outcomes[at] = OperationsAudio::runOperation(ops, {items[at]}, {task.token, progress.sinkOf(at)});
            progress.ended(at, items[at].bytes);
        }
    };
    {
        std::vector<std::jthread> others;
        try {
            for (std::size_t i = 1; i < threads; ++i)
                others.emplace_back(work);
        } catch (const std::system_error&) {
            // The system gives no more threads: those that there are do all of it.
        }
        work();
    }
    // Where a cancel met one that stands in front of a complete one, it has a line, too: lines go by their place.
    const auto behindLast =
        std::find_if(outcomes.rbegin(), outcomes.rend(), [](const RunOutcome& one) { return !one.results.empty(); });
    const auto lines = static_cast<std::size_t>(outcomes.rend() - behindLast);
    RunOutcome outcome;
    for (std::size_t at = 0; at < outcomes.size(); ++at) {
        RunOutcome& one = outcomes[at];
        if (one.results.empty() && at < lines) {
            OperationAudioResult cancelled;
            cancelled.id = Uuid::random();
            cancelled.sourceName = items[at].sourceName;
            cancelled.message = Cancelled().what();
            one.results.push_back(std::move(cancelled));
        }
        std::move(one.results.begin(), one.results.end(), std::back_inserter(outcome.results));
        outcome.cancelled = outcome.cancelled || one.cancelled;
        outcome.refused += one.refused;
    }
    return outcome;
}

}  // namespace

const GroupeFichiers& ExportJob::groupe() const noexcept {
    return *std::visit([](const auto& one) { return &one.groupe; }, configuration);
}
const std::string& ExportJob::destinationName() const noexcept {
    return *std::visit([](const auto& one) { return &one.destinationName; }, configuration);
}

namespace OperationsAudio {

FileToMake planExport(const ExportJob& job, const ExportServices& services) {
    struct Plan {
        const ExportJob& job;
        const ExportServices& services;
        FileToMake operator()(const OperationAudioExportConfiguration& wav) const {
            return planWAVExport(wav, job.folder, services);
        }
        FileToMake operator()(const OperationAudioAACExportConfiguration& aac) const {
            return planAACExport(aac, job.folder, services);
        }
        FileToMake operator()(const OperationAudioMP3ExportConfiguration& mp3) const {
            return planMP3Export(mp3, job.folder, services);
        }
    };
    return std::visit(Plan{job, services}, job.configuration);
}

RunOutcome runExports(const std::vector<ExportJob>& jobs, const ExportServices& services, const TaskContext& task) {
    // What cannot be planned says why in its own turn.
    ensureRoomForAll(services.ops, previewExports(jobs, services, task).files());
    std::vector<OperationItem> items;
    items.reserve(jobs.size());
    bool encodes = true;
    for (const ExportJob& job : jobs) {
        items.push_back(itemOf(job, services));
        encodes = encodes && !std::holds_alternative<OperationAudioExportConfiguration>(job.configuration);
    }
    const std::size_t threads =
        std::min<std::size_t>(items.size(), std::clamp(std::thread::hardware_concurrency(), 1U, mostAtOnce));
    if (!encodes || threads < 2) return runOperation(services.ops, items, task);
    return runSideBySide(items, threads, services.ops, task);
}

}  // namespace OperationsAudio
}  // namespace dravik
