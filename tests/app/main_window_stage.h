#pragma once

#include "app/content_view.h"
#include "app/single_main_window_coordinator.h"
#include "model/folder_scan.h"
#include "platform/native_file_ops.h"
#include "tests/support/fake_codecs.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <QCoreApplication>
#include <QTest>
#include <deque>
#include <memory>
#include <vector>

namespace dravik::test {

/// Answers questions by a script, and keeps what was asked. A question nobody expects fails the test.
class ScriptedDialogs final : public Dialogs {
  public:
    std::vector<Alert> asked;
    std::vector<OpenPanel> panels;
    std::vector<TextQuestion> texts;
    std::deque<AlertAnswer> answers;
    std::deque<std::optional<std::filesystem::path>> choices;
    std::deque<std::optional<QString>> typed;

    void ask(const Alert& alert, std::function<void(AlertAnswer)> answered) override {
        asked.push_back(alert);
        if (answers.empty()) {
            waiting.push_back(std::move(answered));
            return;
        }
        const AlertAnswer answer = answers.front();
        answers.pop_front();
        answered(answer);
    }
    void askText(const TextQuestion& question, std::function<void(std::optional<QString>)> answered) override {
        texts.push_back(question);
        const std::optional<QString> answer = typed.front();
        typed.pop_front();
        answered(answer);
    }
    void choose(const OpenPanel& panel, std::function<void(std::optional<std::filesystem::path>)> chosen) override {
        panels.push_back(panel);
        const std::optional<std::filesystem::path> choice = choices.front();
        choices.pop_front();
        chosen(choice);
    }
    /// Answers the oldest question that is still open.
    void answer(int button, bool checked = false) {
        const std::function<void(AlertAnswer)> answered = waiting.front();
        waiting.pop_front();
        answered({button, checked});
    }
    std::deque<std::function<void(AlertAnswer)>> waiting;
};

/// Calls wait until the test lets the time pass.
class ManualClock final : public Clock {
  public:
    void after(std::chrono::milliseconds delay, QObject*, std::function<void()> call) override {
        due.emplace_back(delay, std::move(call));
    }
    void pass(std::chrono::milliseconds time) {
        const auto all = std::exchange(due, {});
        for (const auto& [delay, call] : all) {
            if (delay <= time) {
                call();
            } else {
                due.emplace_back(delay - time, call);
            }
        }
    }
    std::vector<std::pair<std::chrono::milliseconds, std::function<void()>>> due;
};

/// The whole program but its windows, over a folder of the test.
class MainWindowStage {
  public:
    MainWindowStage() { files.syncing = false; }
    ~MainWindowStage() { content.reset(); }
    MainWindowStage(const MainWindowStage&) = delete;
    MainWindowStage& operator=(const MainWindowStage&) = delete;

    void open(const std::filesystem::path& path) {
        content->gererActionProtegee(OuvrirDossier{path});
        settle();
    }
    void open() { open(folder.path()); }
    /// Lets everything in the background come to its end.
    void settle() { QTRY_VERIFY2_WITH_TIMEOUT(isIdle(), "the work in the background did not end", 20'000); }
    [[nodiscard]] bool isIdle() const {
        return !content->isOpening() && !content->listing().isReading() && !content->sauvegardeEnCours() &&
               !content->enChargement();
    }
    [[nodiscard]] const RowState& row(int at) const {
        return content->rows().groupesTableau().at(static_cast<std::size_t>(at));
    }
    [[nodiscard]] std::size_t rowCount() const { return content->rows().groupesTableau().size(); }
    /// One edit of a row as the table makes it.
    void edit(int at, RowField field, const std::string& text) {
        RowState state = row(at);
        static_cast<void>(setText(state.groupe, field, text));
        content->rows().edit(QStringLiteral("Edit"), {{at, state}});
    }
    /// What is on disk, read anew.
    [[nodiscard]] std::vector<GroupeFichiers> onDisk() const { return scanFolder(folder.path(), codecs, true, {}); }

    TempFolder folder;
    TempFolder settingsFolder;
    UserDefaults settings{settingsFolder / "settings.ini"};
    ScriptedDialogs dialogs;
    ManualClock clock;
    FaultyFileOps files;
    FakeCodecs codecs;
    Commands commands;
    bool terminated = false;
    int windowsOpened = 0;
    ProtectedTermination termination{commands, [this] { terminated = true; }};
    SingleMainWindowCoordinator windows;
    ExternalFileOpenRouter router{windows};
    Background background;
    std::unique_ptr<ContentView> content = makeContent(dialogs);

    [[nodiscard]] std::unique_ptr<ContentView> makeContent(Dialogs& asking) {
        auto made = std::make_unique<ContentView>(
            ContentView::Services{settings, asking, clock, background, files, codecs, commands, router, termination});
        made->start();
        return made;
    }
};

}  // namespace dravik::test
