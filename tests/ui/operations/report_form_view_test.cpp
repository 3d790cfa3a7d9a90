#include "ui/operations/report_form_view.h"

#include "app/report_defaults.h"
#include "tests/ui/operations/widget_stage.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalSpy>

namespace dravik {
namespace {

class ReportView : public test::WidgetStage {
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
