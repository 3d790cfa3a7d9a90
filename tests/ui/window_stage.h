#pragma once

#include "app/playback_preferences.h"
#include "app/take_playback.h"
#include "app/take_waveform.h"
#include "app/workspace.h"
#include "platform/lame/lame_encoder.h"
#include "platform/media/lazy_aac_encoders.h"
#include "platform/media/lazy_sample_decoder.h"
#include "platform/pdf/lazy_pdf_renderer.h"
#include "platform/soxr/soxr_converter.h"
#include "tests/app/main_window_stage.h"
#include "tests/playback/offline_output.h"
#include "ui/main_window.h"
#include "ui/qt_dialogs.h"
#include "ui/take_editor.h"
#include "ui/take_table.h"
#include "ui/theme.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTest>

namespace dravik::test {

/// A desktop that does nothing and remembers what it was asked for.
class FakeWorkspace final : public Workspace {
  public:
    QStringList opened;
    std::vector<std::filesystem::path> revealed;
    std::vector<Volume> mounted;
    QString open(const QString& url) override {
        opened << url;
        return {};
    }
    QString reveal(const std::filesystem::path& file) override {
        revealed.push_back(file);
        return {};
    }
    QString moveToTrash(const std::filesystem::path&) override { return QStringLiteral("There is no trash here."); }
    QString eject(const Volume&) override { return {}; }
    std::vector<Volume> volumes() override { return mounted; }
};

/// The main window with real dialogs over a folder of the test.
class WindowStage : public MainWindowStage {
  public:
    WindowStage() {
        content = makeContent(asking);
        playback = std::make_unique<TakePlayback>(*content, player, settings);
        waveform = std::make_unique<TakeWaveform>(*content, peaks, files, *decoder, settings, std::nullopt);
        operations = std::make_unique<OperationsModel>(
            OperationsModel::Services{*content, settings, asking, workspace, commands, background, {exports, *pdf}});
        window = makeWindow();
        asking.setWindow(window.get());
        window->resize(1200, 800);
        window->show();
        window->activateWindow();
        static_cast<void>(QTest::qWaitForWindowActive(window.get()));
    }
    ~WindowStage() {
        window.reset();
        operations.reset();
        waveform.reset();
        playback.reset();
    }
    WindowStage(const WindowStage&) = delete;
    WindowStage& operator=(const WindowStage&) = delete;

    [[nodiscard]] std::unique_ptr<MainWindow> makeWindow() {
        return std::make_unique<MainWindow>(MainWindow::Services{*content, settings, commands, asking, workspace, files,
                                                                 termination, windows, theme, *playback, *waveform,
                                                                 *operations});
    }
    /// The question that is open; null when there is none.
    [[nodiscard]] static QMessageBox* alert() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* box = qobject_cast<QMessageBox*>(widget);
            if (box != nullptr && box->isVisible()) return box;
        }
        return nullptr;
    }
    /// Presses the button of the open question with a mouse.
    static void press(const QString& text) {
        QMessageBox* box = nullptr;
        QTRY_VERIFY((box = alert()) != nullptr);
        for (QAbstractButton* button : box->buttons()) {
            if (button->text() == text) {
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        }
        QFAIL(qPrintable(QStringLiteral("no button ") + text));
    }
    /// Keys go where a user's would.
    static void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QWidget* focused = QApplication::focusWidget();
        QTest::keyClick(focused != nullptr ? focused : QApplication::activeWindow(), key, modifiers);
    }
    static void type(const QString& text) {
        for (const QChar letter : text)
            QTest::keyClicks(QApplication::focusWidget(), QString(letter));
    }

    Theme theme{settings};
    PlaybackPreferences playbackPreferences{settings};
    std::unique_ptr<SampleDecoder> decoder = makeLazySampleDecoder();
    OfflineOutputs outputs;
    LecteurCoreAudio player{playbackPreferences, *decoder, [] { return std::nullopt; }, outputs.outputs()};
    std::unique_ptr<TakePlayback> playback;
    const std::unique_ptr<SampleRateConverters> converters = makeSoxrConverters();
    const std::unique_ptr<AacEncoders> aac = makeLazyAacEncoders();
    const std::unique_ptr<MP3Encoders> mp3 = makeLameEncoders();
    const std::unique_ptr<PdfRenderer> pdf = makeLazyPdfRenderer();
    const ExportServices exports{files, *converters, *aac, *mp3, *decoder};
    std::unique_ptr<OperationsModel> operations;
    LooseBackground peaks;
    std::unique_ptr<TakeWaveform> waveform;
    QtDialogs asking;
    FakeWorkspace workspace;
    std::unique_ptr<MainWindow> window;
};

}  // namespace dravik::test
