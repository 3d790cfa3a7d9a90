#include "cli/demo_command.h"

#include "base/paths.h"
#include "base/safe_file.h"
#include "cli/demo_day.h"
#include "cli/demo_file.h"
#include "cli/display_text.h"
#include "cli/progress_bar.h"
#include "model/audio_metadata.h"

#include <atomic>
#include <exception>
#include <thread>

#include <fmt/format.h>

namespace dravik {
namespace {

/// Waiting for the disk to confirm a file is most of the work on a day of many short takes: several wait at once.
constexpr unsigned writers = 8;

/// Writes the takes of a day, several at a time.
class DayWriter {
  public:
    DayWriter(const DemoOptions& options, const std::vector<DemoTake>& day, Services& services)
        : folder_(options.folder), day_(day), services_(services) {}

    /// Throws what stopped it; the files written so far are whole and stay.
    void write() {
        ProgressBar bar(services_.console, "Writing");
        report_ = bar.sink();
        {
            std::vector<std::jthread> helpers;
            for (unsigned i = 1; i < writers; ++i)
                helpers.emplace_back([this] { work(); });
            work();
        }
        folders_.syncAll(services_.files);
        if (failure_) std::rethrow_exception(failure_);
    }
    [[nodiscard]] std::size_t files() const noexcept { return files_; }
    [[nodiscard]] std::uint64_t bytes() const noexcept { return bytes_; }

  private:
    void work() {
        try {
            for (std::size_t i = next_.fetch_add(1); i < day_.size(); i = next_.fetch_add(1))
                writeTake(day_[i]);
        } catch (...) {
            next_.store(day_.size());
            const std::scoped_lock lock(mutex_);
            if (!failure_) failure_ = std::current_exception();
        }
    }

    void writeTake(const DemoTake& take) {
        const TaskContext task{&services_.token, {}};
        task.checkCancelled();
        std::vector<DemoSound> sounds;
        for (const DemoTrack& track : take.tracks)
            sounds.push_back(track.sound);
        const std::vector<std::vector<float>> tracks = demoTracks(sounds, take.frames, take.slate, take.seed);
        const std::vector<std::string> names = demoFileNames(take);
        for (std::size_t position = 0; position < names.size(); ++position) {
            FilePlan plan;
            plan.add(demoFile(take, position, tracks));
            SafeFile file(services_.files, folder_ / names[position], TempKind::output);
            file.write(plan, FileHandle(), task);
            const UnsyncedFolder unsynced = file.commit(SafeFile::Existing::refuse);
            const std::scoped_lock lock(mutex_);
            folders_.add(unsynced);
            ++files_;
            bytes_ += plan.size();
        }
        const std::scoped_lock lock(mutex_);
        ++takesDone_;
        if (report_) report_({takesDone_, day_.size(), take.name});
    }

    const std::filesystem::path& folder_;
    const std::vector<DemoTake>& day_;
    Services& services_;
    ProgressSink report_;
    std::atomic<std::size_t> next_{0};
    std::mutex mutex_;  ///< guards what follows
    FolderSyncs folders_;
    std::size_t files_ = 0;
    std::size_t takesDone_ = 0;
    std::uint64_t bytes_ = 0;
    std::exception_ptr failure_;
};

}  // namespace

ExitCode runDemo(const DemoOptions& options, Services& services) {
    const std::vector<DemoTake> day = demoDay(options.takes, options.seed);
    std::vector<std::filesystem::path> existing;
    for (const DemoTake& take : day) {
        for (const std::string& name : demoFileNames(take)) {
            if (pathExists(options.folder / name)) existing.push_back(options.folder / name);
        }
    }
    if (!existing.empty()) {
        const std::string more =
            existing.size() == 1 ? "" : fmt::format(" and {} more of the day's files", existing.size() - 1);
        services.console.message(
            fmt::format("{}{} would have to be replaced. No files were written.", shown(existing.front()), more));
        return ExitCode::refused;
    }
    std::filesystem::create_directories(options.folder);
    DayWriter writer(options, day, services);
    try {
        writer.write();
    } catch (const Cancelled&) {
        services.console.message(fmt::format("Cancelled. {} had been written.", counted(writer.files(), "file")));
        return ExitCode::interrupted;
    } catch (const std::exception& error) {
        services.console.message(
            fmt::format("{}. {} had been written.", userText(error), counted(writer.files(), "file")));
        return ExitCode::someFailed;
    }
    services.console.print(fmt::format("Wrote {} ({}, {}) to {}\n", counted(day.size(), "take"),
                                       counted(writer.files(), "file"), sizeText(writer.bytes()),
                                       shown(options.folder)));
    return ExitCode::done;
}

}  // namespace dravik
