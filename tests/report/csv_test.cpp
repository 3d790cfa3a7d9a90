#include "report/report_cells.h"
#include "report/report_form.h"
#include "tests/report/report_stage.h"

#include <cmath>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using test::recorded;
using test::someDay;

SoundReportColumns only(std::string_view list) {
    std::string unknown;
    return parseColumns(list, unknown).value();
}

TEST(ReportCsv, IsTheHeadingInBlocksAndALineForEachFileToTheByte) {
    InfoFichier first = recorded("12A-T03.WAV");
    first.scene = "12A";
    first.prise = "3";
    first.circled = true;
    first.notes = "He said \"no\", twice\r\nthen left";
    InfoFichier second = recorded("caf\xC3\xA9 =1+1, \xE6\x97\xA5.wav");
    second.scene = "=1+1";
    second.notes = "Boom &amp; lav";
    second.wild = true;
    GenerateurRapport parametres;
    parametres.tape = "R001";
    parametres.production = "Fjord, Inc.";
    parametres.nomOeuvre = "The \"Tide\"";
    parametres.ingenieurSon = "A. Weir";
    parametres.referenceDBFS = "-20 dBFS";
    parametres.framerate = "25";
    parametres.sampleRateBits = "48 kHz / 24 bit";
    parametres.colonnes = only("scene,take,circled,wild,notes");
    const char* const head =
        "\"Tape\",\"R001\"\n"
        "\"03-07-24\"\n"
        "\n"
        "\"Production\",\"Fjord, Inc.\"\n"
        "\"Work Title\",\"The \"\"Tide\"\"\"\n"
        "\"Director\",\"\"\n"
        "\"Sound Mixer\",\"A. Weir\"\n"
        "\n"
        "\"Reference\",\"-20 dBFS\"\n"
        "\"Frame Rate\",\"25\"\n"
        "\"Sample Rate / Bit Depth\",\"48 kHz / 24 bit\"\n"
        "\"File Type\",\"B-WAV Poly\"\n";
    const char* const table =
        "\n"
        "\"File Name\",\"Scene\",\"Take\",\"Circled\",\"Wild\",\"Notes\"\n"
        "\"12A-T03.WAV\",\"12A\",\"3\",\"X\",\"\",\"He said \"\"no\"\", twice\r\nthen left\"\n"
        "\"caf\xC3\xA9 =1+1, \xE6\x97\xA5.wav\",\"=1+1\",\"\",\"\",\"X\",\"Boom & lav\"\n";
    EXPECT_EQ(csvText(composeReport({first, second}, parametres, someDay)), std::string(head) + table);
    parametres.notesGlobales = "One\n\"two\"";
    EXPECT_EQ(csvText(composeReport({first, second}, parametres, someDay)),
              std::string(head) + "\"Report Notes\",\"One\n\"\"two\"\"\"\n" + table);
}

TEST(ReportCells, AreWhatTheFileSaysInTheUnitsOfTheReport) {
    struct Case {
        const char* what;
        ReportColumn column;
        void (*change)(InfoFichier&);
        const char* text;
    };
    const auto none = [](InfoFichier&) {};
    const Case cases[] = {
        {"whole kilohertz", ReportColumn::sampleRate, none, "48"},
        {"44.1", ReportColumn::sampleRate, [](InfoFichier& f) { f.sampleRate = 44100; }, "44.1"},
        {"pulled down", ReportColumn::sampleRate, [](InfoFichier& f) { f.sampleRate = 47952; }, "47.952"},
        {"hundred", ReportColumn::sampleRate, [](InfoFichier& f) { f.sampleRate = 100000; }, "100"},
        {"no rate", ReportColumn::sampleRate, [](InfoFichier& f) { f.sampleRate = 0; }, ""},
        {"size", ReportColumn::size, none, "2.9 MB"},
        {"large", ReportColumn::size, [](InfoFichier& f) { f.taille = 4'294'967'296; }, "4295.0 MB"},
        {"duration", ReportColumn::duration, none, "00:00:10:00"},
        {"at 23.976 counted at 24", ReportColumn::duration,
         [](InfoFichier& f) {
             f.framerate = "23.976";
             f.dureeSecondes = 3603.6;
         },
         "01:00:00:00"},
        {"at 29.97 counted at 30, frames not dropped", ReportColumn::duration,
         [](InfoFichier& f) {
             f.framerate = "29.97 DF";
             f.dureeSecondes = 1.001 * 61 + 0.1;
         },
         "00:01:01:03"},
        {"without a rate at 25", ReportColumn::duration,
         [](InfoFichier& f) {
             f.framerate.reset();
             f.dureeSecondes = 1.96;
         },
         "00:00:01:24"},
        {"absurd length", ReportColumn::duration, [](InfoFichier& f) { f.dureeSecondes = 1e300; }, "00:00:00:00"},
        {"no number", ReportColumn::duration, [](InfoFichier& f) { f.dureeSecondes = std::nan(""); }, "00:00:00:00"},
        {"end", ReportColumn::tcEnd, none, "01:00:10:00"},
        {"end past midnight is not wrapped", ReportColumn::tcEnd, [](InfoFichier& f) { f.timecode = "23:59:55:00"; },
         "24:00:05:00"},
        {"end at 29.97", ReportColumn::tcEnd,
         [](InfoFichier& f) {
             f.framerate = "29.97";
             f.timecode = "10:00:00:29";
             f.dureeSecondes = 1.001;
         },
         "10:00:01:29"},
        {"no start, no end", ReportColumn::tcEnd, [](InfoFichier& f) { f.timecode.reset(); }, ""},
        {"channels", ReportColumn::channel, none, "2"},
        {"unreadable", ReportColumn::channel, [](InfoFichier& f) { f.channels = 0; }, ""},
        {"unreadable", ReportColumn::duration, [](InfoFichier& f) { f.channels = 0; }, ""},
        {"compressed", ReportColumn::bitDepth, [](InfoFichier& f) { f.bits = 0; }, ""},
        {"stray byte", ReportColumn::notes,
         [](InfoFichier& f) {
             f.notes =
                 "a\xFF"
                 "b";
         },
         "a\xEF\xBF\xBD"
         "b"},
        {"a name's own &amp;", ReportColumn::fileName, [](InfoFichier& f) { f.url = "/d/a&amp;b.wav"; }, "a&amp;b.wav"},
    };
    for (const Case& one : cases) {
        InfoFichier file = recorded("a.wav");
        one.change(file);
        EXPECT_EQ(cellText(file, one.column), one.text) << one.what;
    }
}

TEST(ReportColumns, StandInOneOrderWithTheTitlesAndKeysOfTheForm) {
    std::string titles, settings;
    for (const ReportColumnInfo& info : optionalColumns()) {
        titles.append(info.title).append("|");
        if (!info.setting.empty()) settings.append(info.setting).append("|");
    }
    EXPECT_EQ(titles,
              "Tape|Scene|Take|Circled|Wild|Notes|Channel|Duration|TC Start|TC End|fps|Bits|Samplerate|Size|"
              "Format|");
    EXPECT_EQ(settings,
              "rapportColCircled|rapportColChannel|rapportColDuration|rapportColTCStart|rapportColFrameRate|"
              "rapportColBitDepth|rapportColSampleRate|rapportColFormat|");
    EXPECT_EQ(columnsOf(only("format, SCENE,tcstart")),
              (std::vector{ReportColumn::fileName, ReportColumn::scene, ReportColumn::tcStart, ReportColumn::format}));
    std::string unknown;
    for (const char* list : {"", "scene,", "scene,colour", "fileName"})
        EXPECT_FALSE(parseColumns(list, unknown)) << list;
}

TEST(ReportDocument, TakesFromTheFilesWhatIsNotGiven) {
    InfoFichier mono = recorded("a_T01.wav");
    mono.channels = 1;
    mono.project = "Tide &amp; Moon";
    mono.tape = "R1";
    InfoFichier other = recorded("b.wav");
    other.framerate = "24";
    other.tape = "R2";
    GenerateurRapport given;
    given.production = "Mine";
    const GenerateurRapport full = completed(given, {mono, other});
    EXPECT_EQ(full.production, "Mine");
    EXPECT_EQ(completed({}, {mono, other}).production, "Tide & Moon");
    EXPECT_EQ(full.tape, "R1, R2");
    EXPECT_EQ(full.framerate, "25, 24");
    EXPECT_EQ(full.sampleRateBits, "48 kHz / 24 bit");
    EXPECT_EQ(full.valeur, "Day 3");

    const auto typeOf = [&](std::vector<InfoFichier> files) { return composeReport(files, {}, someDay).fileType; };
    InfoFichier unreadable = recorded("c.wav");
    unreadable.channels = 0;
    EXPECT_EQ(typeOf({mono, unreadable}), "B-WAV Mono");
    EXPECT_EQ(typeOf({other}), "B-WAV Poly");
    EXPECT_EQ(typeOf({mono, other}), "B-WAV");
    EXPECT_EQ(typeOf({unreadable}), "B-WAV");
}

TEST(ReportDocument, CountsTheTimeOfAMonoSetOnce) {
    std::vector<InfoFichier> files = {recorded("x_T01.wav"), recorded("x_T02.wav"), recorded("y.wav")};
    files[0].channels = files[1].channels = 1;
    EXPECT_EQ(composeReport(files, {}, someDay).totals, "3 files   2 takes   0:00:20 recorded   8.6 MB");
}

TEST(ReportForm, GivesTheChosenEntryTheOwnTextOrWhatTheFilesSay) {
    ReportForm form;
    form.referenceMode = customChoice;
    form.referenceAutre = "-17 dBFS";
    form.framerateMode = "29.97 DF";
    form.bitDepthMode = customChoice;
    form.bitDepthAutre = "32 float";
    const GenerateurRapport parametres = parametersOf(form, {recorded("a.wav")});
    EXPECT_EQ(parametres.referenceDBFS, "-17 dBFS");
    EXPECT_EQ(parametres.framerate, "29.97 DF");
    EXPECT_EQ(parametres.sampleRateBits, "48 kHz / 32 float");
    std::string keys;
    for (const ReportTextSetting& setting : reportTextSettings())
        keys.append(setting.key).append(" ");
    for (const ReportSwitchSetting& setting : reportSwitchSettings())
        keys.append(setting.key).append(" ");
    EXPECT_EQ(keys,
              "rapportProduction rapportNomOeuvre rapportRealisateur rapportIngenieurSon rapportReferenceMode "
              "rapportReferenceAutre rapportFramerateMode rapportFramerateAutre rapportSampleRateMode "
              "rapportSampleRateAutre rapportBitDepthMode rapportBitDepthAutre rapportNotesGlobales "
              "rapportInclurePDF rapportInclureCSV ");
}

}  // namespace
}  // namespace dravik
