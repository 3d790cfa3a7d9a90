#include "ui/pictures.h"

#include "app/save_flow.h"
#include "app/table_edits.h"
#include "app/time_left.h"
#include "ui/about_windows.h"
#include "ui/floating_views.h"
#include "ui/manual_window.h"
#include "ui/operations/operations_window.h"
#include "ui/preferences_window.h"
#include "ui/status_line.h"
#include "ui/update_sheet.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QTimer>
#include <deque>
#include <memory>
#include <vector>

namespace dravik {
namespace {

constexpr int pollMilliseconds = 30;
/// Layouts and delayed repaints come to rest.
constexpr int restMilliseconds = 250;

void whenIdle(QObject* context, ContentView& content, std::function<void()> then) {
    if (content.isOpening() || content.listing().isReading() || content.enChargement() || content.sauvegardeEnCours()) {
        QTimer::singleShot(pollMilliseconds, context,
                           [context, &content, then = std::move(then)] { whenIdle(context, content, then); });
        return;
    }
    QTimer::singleShot(restMilliseconds, context, then);
}

bool draw(QWidget& widget, const QString& file) { return widget.grab().save(file, "PNG"); }

/// Steps that each need the event loop to run before the next.
struct Sequence : std::enable_shared_from_this<Sequence> {
    std::deque<std::function<bool()>> steps;
    std::function<void(bool)> ended;
    bool ok = true;

    void next() {
        if (steps.empty()) {
            ended(ok);
            return;
        }
        const std::function<bool()> step = std::move(steps.front());
        steps.pop_front();
        ok = step() && ok;
        QTimer::singleShot(restMilliseconds, qApp, [self = shared_from_this()] { self->next(); });
    }
};

/// An alert as it looks; where it comes from needs files that are broken or gone.
struct Sample {
    const char* file;
    QString title;
    QString text;
    QStringList buttons;
    bool destructive = false;
};
std::vector<Sample> samples() {
    const QStringList discardOrCancel = {SaveFlow::tr("Discard"), SaveFlow::tr("Cancel")};
    return {
        {"alert-save-failed",
         SaveFlow::tr("Save Failed"),
         QStringLiteral("12-T01.WAV could not be written: there is no room left on the volume. The file is as it was."),
         {SaveFlow::tr("OK"), SaveFlow::tr("Save the Others")}},
        {"alert-format", SaveFlow::tr("Format Not Supported for Editing"),
         SaveFlow::tr("Changes cannot be saved to these file formats: %1.").arg(QStringLiteral("AIF, MP3")) +
             QStringLiteral("\n\n") + SaveFlow::tr("Would you like to discard your changes?"),
         discardOrCancel, true},
        {"alert-gone", SaveFlow::tr("Takes Are Gone"),
         SaveFlow::tr("Changes of takes that are not in the folder any more cannot be saved: %1.\n\nWould you like to "
                      "discard these changes?")
             .arg(QStringLiteral(
                      "12-T01, 12-T02, 12-T03, 12-T04, 12-WT01, 12-WT02, 12A-T01, 12A-T02, 12A-T03, 14-01, ") +
                  SaveFlow::tr("and %n more", nullptr, 3)),
         discardOrCancel, true},
    };
}

/// The sheet about a release in its states; `notes` are those of the installed version.
std::vector<std::pair<QString, UpdatePresentation>> updateSheets(const std::vector<std::string>& notes) {
    const UpdateInfo info{"2.1", 21'000, "2026-05-14", "15.2", "https://dravik.test/download", notes};
    const InstalledAppVersion installed{"2.0.3", 20'003};
    const RunningSystem linux{std::nullopt, QStringLiteral("Debian GNU/Linux 12 (bookworm)")};
    const RunningSystem mac{OperatingSystemVersion{14, 2, 1}, {}};
    return {{QStringLiteral("update-available"), presentationOf({info, true}, installed, linux)},
            {QStringLiteral("update-incompatible"), presentationOf({info, false}, installed, mac)},
            {QStringLiteral("whats-new"), whatsNewPresentation({"2.0.3", "20003"}, notes)}};
}

OperationAudioResult result(const std::string& take, const std::string& message, bool success) {
    OperationAudioResult one;
    one.sourceName = take;
    one.message = message;
    one.success = success;
    if (success) one.destinationURL = "/media/card/" + take + "_export.wav";
    return one;
}

/// What covers the operations window at work, and when it has ended well and not so well.
std::vector<std::pair<QString, OperationStatusOverlayState>> overlays() {
    const OperationTexts texts = textsOf(OperationsTab::export_);
    OperationCompletionInfo done{
        texts.succeeded,
        texts.failed,
        QCoreApplication::translate("dravik::OperationPreview", "Created %Ln file(s).", nullptr, 3),
        texts.noun,
        {},
        false};
    for (const char* take : {"12-T01", "12-T02", "12-T03"})
        done.results.push_back(result(take, "Created " + std::string(take) + "_export.wav", true));
    OperationCompletionInfo partly = done;
    partly.results[1] =
        result("12-T02", "The export exceeds the integer PCM range; no clipped file was created.", false);
    return {{QStringLiteral("operations-working"),
             OperationWorking{runningText(OperationsTab::export_, 3), 0.42, QStringLiteral("12-T02_export.wav"),
                              timeLeft(10'200, 0.42), false}},
            {QStringLiteral("operations-done"), done},
            {QStringLiteral("operations-errors"), partly}};
}

/// Adds the steps that open every window and have it looked at.
struct Album {
    const Windows& windows;
    WindowVisitor look;
    std::deque<std::function<bool()>>& steps;

    void run(std::function<void()> what) const {
        steps.emplace_back([what = std::move(what)] {
            what();
            return true;
        });
    }
    void main(const QString& name) const {
        steps.emplace_back([&window = windows.window, name, look = look] { return look(window, name); });
    }
    /// The dialog that is open, and closes it. Which questions there are depends on the takes.
    void dialog(const QString& name, bool always = true) const {
        steps.emplace_back([name, look = look, always] {
            for (QWidget* widget : QApplication::topLevelWidgets()) {
                auto* dialog = qobject_cast<QDialog*>(widget);
                if (dialog == nullptr || !dialog->isVisible()) continue;
                const bool ok = look(*dialog, name);
                dialog->reject();
                return ok;
            }
            return !always;
        });
    }

    void take() const {
        ContentView& content = windows.content;
        MainWindow& window = windows.window;
        run([&content] {
            if (!content.rows().groupesTableau().empty()) content.selectionnerLigne(0);
        });
        main(QStringLiteral("main"));
        run([&window] {
            window.statusLine().showWork(MainWindow::tr("Reading %1").arg(QStringLiteral("21B-T02.WAV")), 14, 24, true);
        });
        main(QStringLiteral("main-reading"));
        run([&window] { window.statusLine().endWork(); });
    }

    void listening() const {
        MainWindow& window = windows.window;
        run([&window] { window.setPresentation(PresentationMode::table); });
        main(QStringLiteral("main-takes"));
        run([&window] { window.setPresentation(PresentationMode::mixer); });
        main(QStringLiteral("main-mixer"));
        run([&window] { window.setPresentation(PresentationMode::waveforms); });
        const std::pair<const char*, FloatingWindow& (FloatingViews::*)()> floating[] = {
            {"floating-mixer", &FloatingViews::mixer},
            {"floating-meters", &FloatingViews::meters},
            {"floating-transport", &FloatingViews::transport}};
        for (const auto& [name, one] : floating) {
            run([&window, one = one] { (window.floatingViews().*one)().show(); });
            steps.emplace_back([&window, one = one, name = QString::fromLatin1(name), look = look] {
                FloatingWindow& shown = (window.floatingViews().*one)();
                const bool ok = look(shown, name);
                shown.close();
                return ok;
            });
        }
    }

    /// Each tab with what it would do to the day; nothing is run.
    void operations() const {
        OperationsWindow& operations = windows.window.operationsWindow();
        OperationsModel& model = operations.model();
        run([&operations] { operations.present(); });
        for (const OperationsTab tab : allOperationsTabs) {
            run([&model, tab] {
                static_cast<void>(model.setTab(tab));
                model.setAppliquerTous(true);
            });
            // The preview is worked out when whoever types has stopped.
            for (int rests = 0; rests < 4; ++rests)
                run([] {});
            steps.emplace_back([&operations, name = QStringLiteral("operations-") + rawValue(tab), look = look] {
                return look(operations, name);
            });
        }
        auto* overlay = operations.findChild<OperationOverlay*>();
        for (const auto& [name, state] : overlays()) {
            run([overlay, state = state] { overlay->setState(state); });
            steps.emplace_back([&operations, name = name, look = look] { return look(operations, name); });
        }
        run([&operations] { operations.close(); });
    }

    /// The same while the take plays; what is seen depends on how fast the machine is.
    void playing() const {
        MainWindow& window = windows.window;
        TakePlayback& playback = windows.playback;
        run([&playback] { playback.togglePlay(); });
        for (int rests = 0; rests < 5; ++rests)
            run([] {});
        main(QStringLiteral("main-playing"));
        run([&window] { window.setPresentation(PresentationMode::mixer); });
        main(QStringLiteral("main-mixer-playing"));
        run([&playback] {
            if (playback.player().enLecture()) playback.togglePlay();
            playback.returnToBeginning();
        });
        run([&window] { window.setPresentation(PresentationMode::waveforms); });
    }

    void edits() const {
        ContentView& content = windows.content;
        run([&content] {
            std::vector<int> rows;
            for (int row = 1; row < 4 && row < static_cast<int>(content.rows().groupesTableau().size()); ++row)
                rows.push_back(row);
            if (rows.empty()) return;
            setField(content.rows(), rows, RowField::scene, QStringLiteral("12B"));
            setField(content.rows(), {0}, RowField::note, QStringLiteral("Plane over the end of the take"));
            setFlagField(content.rows(), rows, RowField::circled, true);
        });
        main(QStringLiteral("main-pending"));
        run([&content] { content.gererActionProtegee(QuitterApp{}); });
        dialog(QStringLiteral("alert-unsaved"), false);
        run([&content] { content.discardAll(); });
        dialog(QStringLiteral("alert-discard"), false);
        run([&content] {
            if (const auto cues = content.cueMarkers(); !cues.empty()) content.cues().rename(cues.front().id);
        });
        dialog(QStringLiteral("cue-name"), false);
        run([&content] {
            if (const auto cues = content.cueMarkers(); !cues.empty()) content.cues().remove(cues.front().id);
        });
        dialog(QStringLiteral("alert-delete-cue"), false);
    }

    void alerts() const {
        for (const Sample& sample : samples()) {
            Alert alert;
            alert.title = sample.title;
            alert.text = sample.text;
            alert.buttons = sample.buttons;
            alert.destructive = sample.destructive;
            run([&dialogs = windows.dialogs, alert] { dialogs.ask(alert, [](AlertAnswer) {}); });
            dialog(QString::fromLatin1(sample.file));
        }
    }

    void sheets() const {
        for (const auto& [name, presentation] : updateSheets(windows.releaseNotes)) {
            run([&window = windows.window, presentation = presentation] {
                QDialog* sheet = makeUpdateSheet(presentation, {}, &window);
                sheet->setAttribute(Qt::WA_DeleteOnClose);
                sheet->open();
            });
            dialog(name);
        }
    }

    void smallWindows() const {
        MainWindow& window = windows.window;
        PreferencesWindow& preferences = windows.preferences;
        for (int tab = 0; tab < PreferencesWindow::tabCount; ++tab) {
            run([&preferences, tab] {
                preferences.present();
                preferences.showTab(tab);
            });
            dialog(QStringLiteral("preferences-%1").arg(tab + 1));
        }
        run([&window] { showShortcuts(window); });
        dialog(QStringLiteral("shortcuts"));
        run([&window] { showAbout(window); });
        dialog(QStringLiteral("about"));
        run([&window] { showLicences(window); });
        dialog(QStringLiteral("licences"));
        run([&window] { window.manualWindow().present(); });
        for (const char* name : {"index", "edit", "command-line"}) {
            run([&window, name] { window.manualWindow().showPage(QString::fromLatin1(name)); });
            steps.emplace_back([&window, name, look = look] {
                return look(window.manualWindow(), QStringLiteral("manual-%1").arg(QString::fromLatin1(name)));
            });
        }
        run([&window] { window.manualWindow().close(); });
        for (const QSize size : {QSize(900, 600), QSize(2560, 1440)}) {
            run([&window, size] { window.resize(size); });
            main(QStringLiteral("main-%1x%2").arg(size.width()).arg(size.height()));
        }
        run([&window, size = window.size()] { window.resize(size); });
    }
};

}  // namespace

void drawMainWindow(MainWindow& window, ContentView& content, const QString& file, std::function<void(bool)> drawn) {
    whenIdle(&window, content, [&window, &content, file, drawn = std::move(drawn)] {
        if (content.selectedRow() < 0 && !content.rows().groupesTableau().empty()) content.selectionnerLigne(0);
        whenIdle(&window, content, [&window, file, drawn] { drawn(draw(window, file)); });
    });
}

void visitAllWindows(const Windows& windows, const std::filesystem::path& day, const WindowVisitor& visit,
                     std::function<void(bool)> visited) {
    const auto taken = std::make_shared<Sequence>();
    taken->ended = std::move(visited);
    const Album album{windows, visit, taken->steps};
    album.take();
    album.listening();
    album.operations();
    album.playing();
    album.edits();
    album.alerts();
    album.sheets();
    album.smallWindows();
    album.run([&content = windows.content] { content.rows().discardAll(); });
    const auto before = std::make_shared<Sequence>();
    before->ended = [&windows, taken](bool ok) {
        taken->ok = ok;
        whenIdle(&windows.window, windows.content, [taken] { taken->next(); });
    };
    const Album empty{windows, visit, before->steps};
    empty.main(QStringLiteral("main-empty"));
    empty.run([&content = windows.content, day] { content.gererActionProtegee(OuvrirDossier{day}); });
    before->next();
}

void drawAllWindows(const Windows& windows, const std::filesystem::path& day, const QString& folder,
                    std::function<void(bool)> drawn) {
    if (!QDir().mkpath(folder)) {
        drawn(false);
        return;
    }
    const auto drawInto = [folder](QWidget& window, const QString& name) {
        return draw(window, QStringLiteral("%1/%2.png").arg(folder, name));
    };
    visitAllWindows(windows, day, drawInto, std::move(drawn));
}

}  // namespace dravik
