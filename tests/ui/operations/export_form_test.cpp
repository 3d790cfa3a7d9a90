#include "ui/operations/export_form.h"

#include "tests/ui/operations/widget_stage.h"

#include <QComboBox>
#include <QSignalSpy>
#include <QStandardItemModel>

namespace dravik {
namespace {

using ExportFormTest = test::WidgetStage;

const std::vector<TrackName> four = {
    {1, QStringLiteral("Mix")}, {2, QStringLiteral("Boom")}, {3, {}}, {4, QStringLiteral("Lav")}};

TEST_F(ExportFormTest, AnExportShowsWhatItsFormatAllowsAndGivesNothingElse) {
    ExportForm form;
    form.setTracks(four);
    ExportAudioSessionState state;
    state.frequence = ExportSampleRate::fixed(96000);
    state.appliquerTous = true;
    state.sourcesDesactivees = {"/day/A.wav"};
    QSignalSpy changed(&form, &ExportForm::stateChanged);
    form.setState(state);
    show(form);
    EXPECT_EQ(changed.count(), 0);
    expectNamed();

    choose(QStringLiteral("Format"), QStringLiteral("MP3"));
    EXPECT_EQ(form.state().modeCanaux, ExportAudioChannelMode::stereo) << "an MP3 has two channels at most";
    EXPECT_EQ(form.state().frequence, ExportSampleRate::original()) << "and not that rate";
    EXPECT_TRUE(form.state().appliquerTous);
    EXPECT_EQ(form.state().sourcesDesactivees, state.sourcesDesactivees);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_FALSE(named<QComboBox>(QStringLiteral("Bit depth")).isVisible());
    choose(QStringLiteral("Bit rate"), QStringLiteral("320 kbit/s"));
    const auto& channels = named<QComboBox>(QStringLiteral("Channels"));
    const auto* modes = qobject_cast<QStandardItemModel*>(channels.model());
    EXPECT_FALSE(modes->item(channels.findText(QStringLiteral("Poly WAV")))->isEnabled());

    choose(QStringLiteral("Format"), QStringLiteral("AAC"));
    EXPECT_FALSE(named<QComboBox>(QStringLiteral("Sample rate")).isEnabled());
    choose(QStringLiteral("Format"), QStringLiteral("WAV"));
    EXPECT_TRUE(named<QComboBox>(QStringLiteral("Bit depth")).isVisible());
    choose(QStringLiteral("Bit depth"), QStringLiteral("32-bit float"));
    choose(QStringLiteral("Sample rate"), QStringLiteral("44.1 kHz"));
    EXPECT_EQ(form.state().profondeurWAV, ExportWAVBitDepth::float32);
    EXPECT_EQ(form.state().frequence, ExportSampleRate::fixed(44100));
    EXPECT_EQ(form.state(), form.state().allowed());
}

TEST_F(ExportFormTest, TracksAreChosenForTheChannelsThatThereAre) {
    ExportForm form;
    form.setTracks(four);
    ExportAudioSessionState state;
    state.modeCanaux = ExportAudioChannelMode::mono;
    form.setState(state);
    show(form);
    EXPECT_EQ(shown(QStringLiteral("Track")), QStringLiteral("1  Mix"));
    auto& level = named<QComboBox>(QStringLiteral("Level of the mix"));
    EXPECT_FALSE(level.isEnabled()) << "one track alone has none";
    const int height = form.sizeHint().height();
    choose(QStringLiteral("Mixed with"), QStringLiteral("4  Lav"));
    EXPECT_TRUE(level.isEnabled());
    choose(QStringLiteral("Level of the mix"), QStringLiteral("−6 dB"));
    EXPECT_EQ(form.state().pisteMonoSource1, std::nullopt) << "the first track of whichever take";
    EXPECT_EQ(form.state().pisteMonoSource2, 3);
    EXPECT_EQ(form.state().gainMoyenneMono, ExportMonoAverageGain::minus6);
    choose(QStringLiteral("Track"), QStringLiteral("Track 3"));
    choose(QStringLiteral("Mixed with"), QStringLiteral("None"));
    EXPECT_EQ(form.state().pisteMonoSource1, 2);
    EXPECT_EQ(form.state().pisteMonoSource2, std::nullopt);

    choose(QStringLiteral("Channels"), QStringLiteral("Stereo"));
    choose(QStringLiteral("Right"), QStringLiteral("4  Lav"));
    EXPECT_EQ(form.state().pisteDroite, 3);
    EXPECT_EQ(form.sizeHint().height(), height) << "nothing jumps";
    form.setTracks({four[0], four[1]});
    EXPECT_EQ(shown(QStringLiteral("Right")), QStringLiteral("Track 4 — not in this take"));
    choose(QStringLiteral("Left"), QStringLiteral("2  Boom"));
    EXPECT_EQ(form.state().pisteDroite, 3) << "what another take has is kept";
}

}  // namespace
}  // namespace dravik
