#include "app/report_defaults.h"
#include "tests/ui/operations/widget_stage.h"
#include "ui/operations/export_form.h"
#include "ui/operations/report_form_view.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QStandardItemModel>

namespace dravik {
namespace {

class OperationForms : public test::WidgetStage {
  protected:
    /// The entry, as it is chosen with keys.
    void choose(const QString& box, const QString& entry) const {
        auto& combo = named<QComboBox>(box);
        const int place = combo.findText(entry);
        ASSERT_GE(place, 0) << entry.toStdString();
        combo.setFocus();
        for (int key = 0; key < combo.count() && combo.currentIndex() != place; ++key)
            QTest::keyClick(&combo, combo.currentIndex() < place ? Qt::Key_Down : Qt::Key_Up);
        EXPECT_EQ(combo.currentText(), entry);
    }
    [[nodiscard]] QString shown(const QString& box) const { return named<QComboBox>(box).currentText(); }
};

const std::vector<TrackName> four = {
    {1, QStringLiteral("Mix")}, {2, QStringLiteral("Boom")}, {3, {}}, {4, QStringLiteral("Lav")}};

TEST_F(OperationForms, AnExportShowsWhatItsFormatAllowsAndGivesNothingElse) {
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

TEST_F(OperationForms, TracksAreChosenForTheChannelsThatThereAre) {
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

class ReportView : public OperationForms {
  protected:
    ReportFormView view{settings, theme};
};

TEST_F(ReportView, AFieldForOwnTextAppearsWithCustom) {
    show(view, {760, 460});
    expectNamed();
    struct Case {
        const char* title;
        std::string ReportForm::*mode;
        std::string ReportForm::*text;
    };
    const Case cases[] = {{"Reference Level", &ReportForm::referenceMode, &ReportForm::referenceAutre},
                          {"Frame Rate", &ReportForm::framerateMode, &ReportForm::framerateAutre},
                          {"Sample Rate", &ReportForm::sampleRateMode, &ReportForm::sampleRateAutre},
                          {"Bit Depth", &ReportForm::bitDepthMode, &ReportForm::bitDepthAutre}};
    const int height = view.sizeHint().height();
    for (const Case& one : cases) {
        const QString title = QString::fromLatin1(one.title);
        const auto& custom = named<QLineEdit>(QStringLiteral("Custom %1").arg(title));
        EXPECT_FALSE(custom.isVisible());
        choose(title, QStringLiteral("Custom…"));
        ASSERT_TRUE(custom.isVisible());
        EXPECT_TRUE(custom.hasFocus()) << "to be typed at once";
        type(QStringLiteral("own"));
        EXPECT_EQ(view.form().*one.mode, "custom");
        EXPECT_EQ(view.form().*one.text, "own");
    }
    EXPECT_EQ(view.sizeHint().height(), height) << "nothing jumps";
    choose(QStringLiteral("Frame Rate"), QStringLiteral("29.97 DF"));
    EXPECT_EQ(view.form().framerateMode, "29.97 DF");
    EXPECT_EQ(view.form().framerateAutre, "own") << "kept for the next time";
    EXPECT_FALSE(named<QLineEdit>(QStringLiteral("Custom Frame Rate")).isVisible());
}

TEST_F(ReportView, DefaultsAreKeptWithTheirKeysAndLoadedAgain) {
    show(view, {760, 460});
    QSignalSpy changed(&view, &ReportFormView::formChanged);
    named<QLineEdit>(QStringLiteral("Director")).setFocus();
    type(QStringLiteral("A. B."));
    named<QPlainTextEdit>(QStringLiteral("Report Notes")).setFocus();
    type(QStringLiteral("note"));
    click(QStringLiteral("CSV"));
    click(QStringLiteral("Format"));
    EXPECT_EQ(changed.count(), 5 + 4 + 2);
    EXPECT_TRUE(view.form().colonnes.format);
    click(QStringLiteral("Set as Default"));
    EXPECT_NO_THROW(static_cast<void>(named<QPushButton>(QStringLiteral("✓ Defaults Saved"))));
    EXPECT_EQ(reportDefaults(settings), view.form());

    ReportForm other;
    other.realisateur = "C. D.";
    other.bitDepthMode = "of a later version";
    changed.clear();
    view.setForm(other);
    EXPECT_EQ(changed.count(), 0);
    EXPECT_EQ(shown(QStringLiteral("Bit Depth")), QStringLiteral("of a later version"));
    click(QStringLiteral("Load Defaults"));
    EXPECT_EQ(view.form().realisateur, "A. B.");
    EXPECT_FALSE(view.form().inclureCSV);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(ReportFormView(settings, theme).form(), view.form()) << "a new form opens with them";
}

TEST_F(ReportView, WhatTheFilesSayShowsWhereNothingIsTyped) {
    show(view, {760, 460});
    QSignalSpy tape(&view, &ReportFormView::tapeChanged);
    FileValues values;
    values.tape = "24A08";
    values.production = "Film";
    values.sampleRate = "48 kHz";
    view.setFileValues(values);
    EXPECT_EQ(shown(QStringLiteral("Sample Rate")), QStringLiteral("From the files (48 kHz)"));
    EXPECT_EQ(shown(QStringLiteral("Bit Depth")), QStringLiteral("From the files"));
    auto& field = named<QLineEdit>(QStringLiteral("Tape"));
    EXPECT_EQ(field.placeholderText(), QStringLiteral("24A08"));
    EXPECT_EQ(view.tape(), QString()) << "what files say is not typed text";
    field.setFocus();
    type(QStringLiteral("B2"));
    EXPECT_EQ(tape.count(), 2);
    EXPECT_EQ(view.tape(), QStringLiteral("B2"));
}

}  // namespace
}  // namespace dravik
