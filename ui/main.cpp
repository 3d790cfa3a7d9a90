#include "app/external_file_open_router.h"
#include "app/language.h"
#include "app/playback_preferences.h"
#include "app/single_instance.h"
#include "app/take_playback.h"
#include "app/take_waveform.h"
#include "app/text.h"
#include "app/update_flow.h"
#include "base/abandoned_work.h"
#include "base/build_info.h"
#include "platform/available_memory.h"
#include "platform/desktop_workspace.h"
#include "platform/lame/lame_encoder.h"
#include "platform/media/lazy_aac_encoders.h"
#include "platform/media/lazy_media_reader.h"
#include "platform/media/lazy_sample_decoder.h"
#include "platform/native_file_ops.h"
#include "platform/network/lazy_http_fetcher.h"
#include "platform/pdf/lazy_pdf_renderer.h"
#include "platform/running_system.h"
#include "platform/sdl/sdl_audio_output.h"
#include "platform/soxr/soxr_converter.h"
#include "ui/about_windows.h"
#include "ui/floating_views.h"
#include "ui/main_thread_watch.h"
#include "ui/main_window.h"
#include "ui/pictures.h"
#include "ui/preferences_window.h"
#include "ui/program_options.h"
#include "ui/qt_dialogs.h"
#include "ui/status_line.h"
#include "ui/theme.h"
#include "ui/update_sheet.h"
#include "update/release_notes.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QFileOpenEvent>
#include <QLocale>
#include <QStandardPaths>
#include <QSysInfo>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>

#include <fmt/format.h>
#include <spdlog/sinks/stdout_color_sinks.h>
#include <spdlog/spdlog.h>
#include <unistd.h>

namespace dravik {
namespace {

/// Feeds the open-file events of systems that have them to the router.
class Application final : public WatchedApplication {
  public:
    using WatchedApplication::WatchedApplication;
    std::function<void(const ExternalFileOpenRouter::Urls&)> openFiles;

    bool event(QEvent* event) override {
        if (event->type() == QEvent::FileOpen) {
            const auto* open = static_cast<QFileOpenEvent*>(event);
            spdlog::info("application(_:openFiles:) callback invoked with 1 file(s)");
            if (openFiles) openFiles({toPath(open->file())});
            return true;
        }
        return WatchedApplication::event(event);
    }
};

/// What work in the background uses, also such that was left to itself because a volume does not answer.
struct System {
    const std::unique_ptr<FileOps> files = makeNativeFileOps();
    const std::unique_ptr<AudioFileReader> codecs =
        makeLazyMediaReader([](const std::string& complaint) { spdlog::warn("{}", complaint); });
    const std::unique_ptr<SampleDecoder> decoder = makeLazySampleDecoder();
    const std::unique_ptr<Workspace> workspace = makeDesktopWorkspace();
    const std::unique_ptr<SampleRateConverters> converters = makeSoxrConverters();
    const std::unique_ptr<AacEncoders> aac = makeLazyAacEncoders();
    const std::unique_ptr<MP3Encoders> mp3 = makeLameEncoders();
    const std::unique_ptr<PdfRenderer> pdf = makeLazyPdfRenderer();
    const ExportServices exports{*files, *converters, *aac, *mp3, *decoder};
};

/// Everything else that lives as long as the program, in the order in which it is made.
class Program {
  public:
    Program(Application& application, SingleInstance& instance, System& system)
        : theme_(settings_),
          system_(system),
          // Not quit(), which closes all windows first: they would open no more the next time.
          termination_(commands_, [] { QApplication::exit(); }),
          router_(windows_),
          preferences_(settings_, commands_, theme_, !deployment().hasPlaceholders()) {
        QObject::connect(&updates_, &UpdateFlow::presented, &dialogs_,
                         [this](const UpdatePresentation& presentation, bool asked) {
                             asked ? showUpdate(presentation) : showUpdateAtRest(presentation);
                         });
        windows_.setOpener([this] { openMainWindow(); });
        application.openFiles = [this](const ExternalFileOpenRouter::Urls& urls) { router_.route(urls); };
        QObject::connect(&instance, &SingleInstance::received, &application,
                         [this](const std::vector<std::filesystem::path>& files) {
                             spdlog::info("application(_:openFiles:) callback invoked with {} file(s)", files.size());
                             if (!files.empty()) router_.route(files);
                             windows_.presentMainWindow();
                         });
    }

    /// Draws the main window with these files open into the picture, and ends the program.
    void draw(const std::vector<std::filesystem::path>& files, const QString& picture) {
        start(files);
        drawMainWindow(*window_, *content_, picture, end);
    }

    /// Draws all windows, with the takes of the folder, into the folder of pictures, and ends the program.
    void drawAll(const std::filesystem::path& day, const QString& folder) {
        windows_.presentMainWindow();
        all_.emplace(Windows{*window_, *content_, preferences_, dialogs_, *playback_, releaseNotesOf(changeLog())});
        drawAllWindows(*all_, day, folder, end);
    }

    /// Looks for a newer version when that is due.
    void lookForUpdates() { updates_.start(); }
    [[nodiscard]] bool isLookingForUpdates() const { return updates_.isChecking(); }

    void start(const std::vector<std::filesystem::path>& files) {
        if (!files.empty()) router_.route(files);
        windows_.presentMainWindow();
        spdlog::info("app launch finished; {} file(s) given", files.size());
        const QString last = settings_.value(settings::lastFolder);
        if (files.empty() && settings_.value(settings::reopenLastFolder) && !last.isEmpty()) reopen(toPath(last));
    }

  private:
    /// What has changed up to this version.
    [[nodiscard]] static std::string changeLog() {
        QFile file(QStringLiteral(":/changes.md"));
        if (!file.open(QIODevice::ReadOnly)) throw std::logic_error("the change log is not in the program");
        return file.readAll().toStdString();
    }

    void showUpdate(const UpdatePresentation& presentation) {
        dialogs_.show([this, presentation](QWidget* window) {
            return makeUpdateSheet(
                presentation, [this](const QString& url) { updates_.download(url); }, window);
        });
    }
    /// When nobody types, listens, or works in another window: a key would be the sheet's.
    void showUpdateAtRest(const UpdatePresentation& presentation) {
        const QWidget* focused = QApplication::focusWidget();
        const bool types = focused != nullptr && focused->inputMethodQuery(Qt::ImEnabled).toBool();
        if (window_ && window_->isActiveWindow() && !types && !player_.enLecture()) return showUpdate(presentation);
        constexpr std::chrono::seconds untilNextLook{2};
        QTimer::singleShot(untilNextLook, &dialogs_, [this, presentation] { showUpdateAtRest(presentation); });
    }

    static void end(bool ok) { QApplication::exit(ok ? 0 : 1); }

    /// Opens the folder when it is there, unless the user was faster with another one.
    void reopen(const std::filesystem::path& folder) {
        asking_.run(
            content_.get(),
            [folder] {
                std::error_code none;
                return std::filesystem::is_directory(folder, none);
            },
            [this, folder](bool isThere) {
                const bool isFree = content_->folderLabel().isEmpty() && !content_->actionEnAttente();
                if (isThere && isFree) content_->gererActionProtegee(OuvrirDossier{folder});
            });
    }

    /// Where what can be found anew is kept; absent where the system has no such place.
    [[nodiscard]] static std::optional<std::filesystem::path> cacheFolder() {
        const QString folder = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
        if (folder.isEmpty()) return std::nullopt;
        return toPath(folder) / "peaks";
    }

    void openMainWindow() {
        opened_.start();
        content_ = std::make_unique<ContentView>(ContentView::Services{settings_, dialogs_, clock_, background_,
                                                                       *system_.files, *system_.codecs, commands_,
                                                                       router_, termination_});
        QObject::connect(content_.get(), &ContentView::folderChanged, content_.get(), [this] { opened_.start(); });
        QObject::connect(&content_->rows(), &TakeRows::rowsAppended, content_.get(), [this](int first, int last) {
            spdlog::info("rows {} to {} shown {} ms after the folder was opened", first, last, opened_.elapsed());
        });
        playback_ = std::make_unique<TakePlayback>(*content_, player_, settings_);
        waveform_ = std::make_unique<TakeWaveform>(*content_, peaks_, *system_.files, *system_.decoder, settings_,
                                                   cacheFolder());
        operations_ = std::make_unique<OperationsModel>(OperationsModel::Services{*content_,
                                                                                  settings_,
                                                                                  dialogs_,
                                                                                  *system_.workspace,
                                                                                  commands_,
                                                                                  operationThreads_,
                                                                                  {system_.exports, *system_.pdf}});
        window_ = std::make_unique<MainWindow>(
            MainWindow::Services{*content_, settings_, commands_, dialogs_, *system_.workspace, *system_.files,
                                 termination_, windows_, theme_, *playback_, *waveform_, *operations_});
        dialogs_.setWindow(window_.get());
        QObject::connect(window_.get(), &MainWindow::preferencesRequested, &preferences_, &PreferencesWindow::present);
        QObject::connect(window_.get(), &MainWindow::shortcutsRequested, window_.get(),
                         [this] { showShortcuts(*window_); });
        QObject::connect(window_.get(), &MainWindow::checkForUpdatesRequested, &updates_, &UpdateFlow::checkForUpdates);
        QObject::connect(window_.get(), &MainWindow::whatsNewRequested, &updates_, &UpdateFlow::showWhatsNew);
        QObject::connect(window_.get(), &MainWindow::contactSupportRequested, &updates_, &UpdateFlow::contactSupport);
        QObject::connect(window_.get(), &MainWindow::webSiteRequested, &updates_, &UpdateFlow::openWebSite);
        QObject::connect(&updates_, &UpdateFlow::waitingChanged, window_.get(), [this](bool waiting) {
            window_->statusLine().tell(waiting ? MainWindow::tr("Looking for updates…") : QString());
        });
        QObject::connect(window_.get(), &MainWindow::aboutRequested, window_.get(), [this] { showAbout(*window_); });
        QObject::connect(window_.get(), &MainWindow::licencesRequested, window_.get(),
                         [this] { showLicences(*window_); });
        window_->show();
        window_->floatingViews().restore();
        content_->start();
    }

    UserDefaults settings_;
    Theme theme_;
    System& system_;
    SystemClock clock_;
    QtDialogs dialogs_;
    UpdateFlow updates_{{settings_,
                         dialogs_,
                         *system_.workspace,
                         makeLazyHttpFetcher(),
                         deployment(),
                         {runningMacOS(), QSysInfo::prettyProductName()},
                         &std::chrono::system_clock::now,
                         changeLog()}};
    Commands commands_;
    ProtectedTermination termination_;
    SingleMainWindowCoordinator windows_;
    ExternalFileOpenRouter router_;
    PreferencesWindow preferences_;
    // Waits for its threads when it goes, after the controller has cancelled them, and before what they work with.
    Background background_;
    Background operationThreads_;  ///< apart from readings of folders, which must not wait for a long export
    LooseBackground peaks_;        ///< apart from saves, which must not wait for the reading of waveforms
    LooseBackground asking_;
    QElapsedTimer opened_;  ///< since the current folder was
    PlaybackPreferences playbackPreferences_{settings_};
    LecteurCoreAudio player_{playbackPreferences_, *system_.decoder, availableMemory, sdlAudioOutputs()};
    std::unique_ptr<ContentView> content_;
    std::unique_ptr<TakePlayback> playback_;
    std::unique_ptr<TakeWaveform> waveform_;
    std::unique_ptr<OperationsModel> operations_;
    std::unique_ptr<MainWindow> window_;
    std::optional<Windows> all_;
};

/// Until the user quits, or with one of the names until the picture is there.
int runWindows(Application& application, System& system, const std::vector<std::filesystem::path>& files,
               const QString& picture, const QString& pictures) {
    SingleInstance instance(QStringLiteral("dravik-%1").arg(::getuid()));
    const bool draws = !picture.isEmpty() || !pictures.isEmpty();
    if (draws) qputenv("SDL_AUDIODRIVER", "dummy");  // a picture of a machine without a sound card looks the same
    if (!draws) {
        if (instance.handOver(files)) return 0;
        if (!instance.listen()) spdlog::warn("Other starts of Dravik cannot hand their files over: no local socket.");
    }
    Program program(application, instance, system);
    if (!pictures.isEmpty()) {
        program.drawAll(files.empty() ? std::filesystem::current_path() : files.front(), pictures);
    } else if (!picture.isEmpty()) {
        program.draw(files, picture);
    } else {
        program.start(files);
        program.lookForUpdates();
    }
    const int code = QApplication::exec();
    // Qt would wait for a name that is being looked up, which nobody can stop.
    if (program.isLookingForUpdates()) abandonWork([](std::chrono::milliseconds) { return false; });
    return code;
}

void declareOptions(QCommandLineParser& parser, const Usage& usage) {
    parser.setApplicationDescription(toQt(usage.description));
    for (const UsageOption& option : usage.options) {
        QStringList names;
        for (const std::string& name : option.names)
            names << toQt(name.substr(name.find_first_not_of('-')));
        parser.addOption(
            QCommandLineOption(names, toQt(option.description), option.value ? toQt(option.value->name) : QString()));
    }
    for (const UsageArgument& argument : usage.arguments) {
        const QString name = toQt(argument.value.name);
        parser.addPositionalArgument(name, toQt(argument.description), QStringLiteral("[%1...]").arg(name));
    }
}

/// Prints the version or the help when that is asked for. Neither needs a display, so it comes before there is a window
/// system to connect to.
bool printVersionOrHelp(int argc, char** argv) {
    char** const first = argv + std::min(argc, 1);
    char** const end = std::find(first, argv + argc, std::string_view("--"));  // paths alone from there on
    const auto given = [&](std::string_view brief, std::string_view whole) {
        return std::any_of(first, end, [&](std::string_view one) { return one == brief || one == whole; });
    };
    const Usage usage = programUsage();
    if (given("-v", "--version")) {
        fmt::print("{} {}\n", usage.name, versionText());
        return true;
    }
    if (given("-h", "--help")) {
        const QCoreApplication application(argc, argv);
        QCommandLineParser parser;
        declareOptions(parser, usage);
        fmt::print("{}\n{}\n", parser.helpText().toStdString(), usage.footer);
        return true;
    }
    return false;
}

int run(int argc, char** argv) {
    // A program that was to read what we say may be gone.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    if (printVersionOrHelp(argc, argv)) return 0;
    Application application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Dravik"));
    QApplication::setApplicationVersion(toQt(buildInfo().version));
    QApplication::setDesktopFileName(QStringLiteral("dravik"));
    QApplication::setQuitOnLastWindowClosed(false);
    const QLocale language = installLanguage(application, QLocale::system());
    if (language.textDirection() == Qt::RightToLeft) QApplication::setLayoutDirection(Qt::RightToLeft);

    QCommandLineParser parser;
    const Usage usage = programUsage();
    declareOptions(parser, usage);
    parser.process(application);
    const bool verbose = parser.isSet(QStringLiteral("verbose"));
    spdlog::set_default_logger(spdlog::stderr_color_mt("dravik"));  // standard output is not for chatter
    spdlog::set_level(verbose ? spdlog::level::info : spdlog::level::warn);
    if (verbose) application.startWatch();

    std::vector<std::filesystem::path> files;
    for (const QString& path : parser.positionalArguments()) {
        std::error_code error;
        const std::filesystem::path whole = std::filesystem::absolute(toPath(path), error);
        files.push_back(error ? toPath(path) : whole.lexically_normal());
    }
    System system;
    const int code = runWindows(application, system, files, parser.value(QStringLiteral("picture")),
                                parser.value(QStringLiteral("pictures")));
    if (!waitForAbandonedWork(std::chrono::milliseconds(0))) {
        // Somewhere a volume does not answer, and whoever asked it would come back to what is being destroyed. All that
        // matters is on disk.
        spdlog::info("a volume does not answer; the program ends without it");
        static_cast<void>(std::fflush(nullptr));
        std::_Exit(code);
    }
    return code;
}

}  // namespace
}  // namespace dravik

int main(int argc, char** argv) { return dravik::run(argc, argv); }
