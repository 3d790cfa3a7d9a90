#include "base/paths.h"
#include "cli/command_line.h"
#include "cli/failure.h"
#include "platform/media/lazy_media_reader.h"
#include "platform/native_file_ops.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

namespace dravik {
namespace {

/// A signal handler can reach nothing but a global.
CancellationToken interruption;

extern "C" void onInterrupt(int) { interruption.cancel(); }

void cancelOnSignals() {
    struct sigaction action {};
    action.sa_handler = onInterrupt;
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
    ::sigaction(SIGHUP, &action, nullptr);  // the terminal was closed, or the connection to it
    // A reader that goes away is an error of `print`, not a death in the middle of a save.
    action.sa_handler = SIG_IGN;
    ::sigaction(SIGPIPE, &action, nullptr);
    // A limit on the size of files is a failed write, whose unfinished file is removed.
    ::sigaction(SIGXFSZ, &action, nullptr);
}

/// A program started without one of the standard streams would get its number for the next file it opens, and what a
/// library prints would land in a recording.
void holdStandardStreams() {
    int descriptor = 0;
    do {
        descriptor = ::open("/dev/null", O_RDWR);
    } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    if (descriptor >= 0) ::close(descriptor);
}

struct Runner {
    Services& services;

    ExitCode operator()(const Told& told) const {
        if (told.code == ExitCode::done) {
            services.console.print(told.text);
        } else {
            services.console.message(told.text);
        }
        return told.code;
    }
    ExitCode operator()(const ScanOptions& options) const { return runScan(options, services); }
    ExitCode operator()(const ShowOptions& options) const { return runShow(options, services); }
    ExitCode operator()(const SetOptions& options) const { return runSet(options, services); }
    ExitCode operator()(const CuesOptions& options) const { return runCues(options, services); }
    ExitCode operator()(const DemoOptions& options) const { return runDemo(options, services); }
    ExitCode operator()(const RecoverOptions& options) const { return runRecover(options, services); }
    ExitCode operator()(const ReorderOptions& options) const { return runReorder(options, services); }
    ExitCode operator()(const DeleteTracksOptions& options) const { return runDeleteTracks(options, services); }
    ExitCode operator()(const SplitOptions& options) const { return runSplit(options, services); }
    ExitCode operator()(const MergeOptions& options) const { return runMerge(options, services); }
    ExitCode operator()(const ExportOptions& options) const { return runExport(options, services); }
    ExitCode operator()(const RenameOptions& options) const { return runRename(options, services); }
    ExitCode operator()(const ReportOptions& options) const { return runReport(options, services); }
    ExitCode operator()(const UpdateCheckOptions& options) const { return runUpdateCheck(options, services); }
};

ExitCode run(int argc, const char* const* argv) {
    holdStandardStreams();
    cancelOnSignals();
    Console console;
    const std::unique_ptr<FileOps> files = makeNativeFileOps();
    const std::unique_ptr<AudioFileReader> codecs =
        makeLazyMediaReader([&console](const std::string& complaint) { console.message(complaint); });
    Services services{*files, *codecs, interruption, console};
    try {
        return std::visit(Runner{services}, parseCommandLine(argc, argv));
    } catch (const OutputError& error) {
        // Whoever closed the pipe does not want to hear about it.
        if (error.code() != std::errc::broken_pipe) {
            console.message(fmt::format("The results could not be written: {}", systemText(error)));
        }
        return exitCodeFor(error);
    } catch (const std::exception& error) {
        console.message(userText(error));
        return exitCodeFor(error);
    }
}

}  // namespace
}  // namespace dravik

int main(int argc, char** argv) {
    const dravik::ExitCode code = dravik::run(argc, argv);
    if (code == dravik::ExitCode::interrupted) {
        // Qt would wait for a name that is being looked up, which nobody can stop. All files are closed by now.
        static_cast<void>(std::fflush(nullptr));
        std::_Exit(static_cast<int>(code));
    }
    return static_cast<int>(code);
}
