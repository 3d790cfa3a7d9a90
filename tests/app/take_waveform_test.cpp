#include "app/take_waveform.h"

#include "base/abandoned_work.h"
#include "platform/media/lazy_sample_decoder.h"
#include "tests/app/main_window_stage.h"
#include "tests/support/files.h"
#include "tests/support/silent_decoder.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace dravik {
namespace {

using test::MainWindowStage;
using test::recorderFile;

class TakeWaveformTest : public testing::Test, public MainWindowStage {
  protected:
    TakeWaveformTest() {
        recorderFile({.scene = "1"}, {.channels = 2}, 4800).write(folder / "A.wav");
        recorderFile({.scene = "2"}, {.channels = 3}, 4800).write(folder / "B.wav");
        waveform = make();
        open();
        EXPECT_TRUE(isComplete());
    }
    ~TakeWaveformTest() override = default;

    std::unique_ptr<TakeWaveform> make() {
        auto made = std::make_unique<TakeWaveform>(*content, *peaks, files, decoder, settings, std::nullopt);
        QObject::connect(made.get(), &TakeWaveform::takeChanged, [this] { ++takes; });
        return made;
    }
    bool isComplete() {
        return QTest::qWaitFor([this] { return waveform->isComplete(); }, 20'000);
    }

    test::SilentDecoder decoder;
    std::unique_ptr<LooseBackground> peaks = std::make_unique<LooseBackground>();
    int takes = 0;
    std::unique_ptr<TakeWaveform> waveform;
};

TEST_F(TakeWaveformTest, ShowsTheSelectedTakeAndKeepsItsWaveformOverASaveAndARename) {
    ASSERT_NE(waveform->peaks(), nullptr);
    EXPECT_EQ(waveform->peaks()->nbCanaux(), 2);
    const TakePeaks* before = waveform->peaks();
    const int takesBefore = takes;
    edit(0, RowField::scene, "1A");
    edit(0, RowField::name, "C");
    content->saveAll();
    settle();
    QTest::qWait(60);
    EXPECT_EQ(waveform->peaks(), before);
    EXPECT_EQ(takes, takesBefore);

    content->selectionnerLigne(content->rows().indexOfFile(folder / "B.wav"));
    EXPECT_EQ(waveform->peaks(), nullptr) << "nothing of another take is shown";
    ASSERT_TRUE(isComplete());
    EXPECT_EQ(waveform->peaks()->nbCanaux(), 3);
    content->gererActionProtegee(OuvrirDossier{settingsFolder.path()});
    settle();
    EXPECT_EQ(waveform->peaks(), nullptr);
}

TEST_F(TakeWaveformTest, AFileThatCannotBeReadSaysWhy) {
    std::filesystem::remove(folder / "B.wav");
    content->selectionnerLigne(1);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !waveform->error().isEmpty(); }, 20'000));
    EXPECT_TRUE(waveform->error().contains(QStringLiteral("B.wav")));
    content->selectionnerLigne(0);
    EXPECT_TRUE(waveform->error().isEmpty());
    EXPECT_TRUE(isComplete());
}

TEST_F(TakeWaveformTest, ReadsNoMoreFromAVolumeThatIsToBeEjectedUntilItStays) {
    content->selectionnerLigne(1);
    content->letGoOf(folder.path());
    QTest::qWait(100);
    EXPECT_FALSE(waveform->isComplete());
    content->takeUpAgain();
    EXPECT_TRUE(isComplete());
    content->letGoOf(folder.path());
    EXPECT_TRUE(waveform->isComplete()) << "what is known already is shown without its volume";
}

TEST_F(TakeWaveformTest, AVolumeThatDoesNotAnswerKeepsNobodyFromWorkingOrQuitting) {
    test::writeFile(folder / "H.flac", "for the codecs");
    content->reload();
    settle();
    const int row = content->rows().indexOfFile(folder / "H.flac");
    ASSERT_GE(row, 0);
    content->selectionnerLigne(row);
    ASSERT_TRUE(QTest::qWaitFor([this] { return decoder.asked.try_acquire(); }, 20'000));
    content->selectionnerLigne(content->rows().indexOfFile(folder / "B.wav"));
    EXPECT_TRUE(isComplete());
    QElapsedTimer quitting;
    quitting.start();
    waveform.reset();
    peaks.reset();
    EXPECT_LT(quitting.elapsed(), 10'000);
    EXPECT_FALSE(waitForAbandonedWork(std::chrono::milliseconds(0)));
    decoder.answer.release();
    EXPECT_TRUE(waitForAbandonedWork(std::chrono::seconds(20)));
}

}  // namespace
}  // namespace dravik
