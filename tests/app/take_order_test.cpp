#include "app/take_order.h"

#include "app/take_columns.h"

#include <gmock/gmock.h>

namespace dravik {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

GroupeFichiers take(const std::string& name) {
    InfoFichier fichier;
    fichier.url = "/day/" + name + ".wav";
    fichier.nom = name;
    fichier.format = "WAV";
    fichier.channels = 1;
    fichier.sampleRate = 48000;
    GroupeFichiers groupe;
    groupe.nom = name;
    groupe.fichiers = {fichier};
    mergeMetadata(groupe);
    return groupe;
}

std::vector<std::string> sortedTexts(const std::vector<GroupeFichiers>& takes, TakeColumn column, bool descending,
                                     const std::function<std::string(const GroupeFichiers&)>& text) {
    std::vector<RowState> rows;
    for (const GroupeFichiers& groupe : takes)
        rows.push_back({groupe, std::nullopt});
    std::vector<std::string> texts;
    for (const int row : sortedRows(rows, {column, descending}))
        texts.push_back(text(takes[static_cast<std::size_t>(row)]));
    return texts;
}

TEST(TakeOrder, TextsStandInNaturalOrderAndMissingOnesLastInBothDirections) {
    std::vector<GroupeFichiers> takes;
    for (const char* scene : {"10", "", "9", "9a", "9A", "2"}) {
        takes.push_back(take("T"));
        if (*scene != '\0') takes.back().scene = scene;
    }
    const auto scene = [](const GroupeFichiers& groupe) { return groupe.scene.value_or(""); };
    EXPECT_THAT(sortedTexts(takes, TakeColumn::scene, false, scene), ElementsAre("2", "9", "9a", "9A", "10", ""));
    EXPECT_THAT(sortedTexts(takes, TakeColumn::scene, true, scene), ElementsAre("10", "9a", "9A", "9", "2", ""));
}

TEST(TakeOrder, NumbersAreComparedByValueAndEqualOnesStayAsListed) {
    std::vector<GroupeFichiers> takes = {take("a"), take("b"), take("c"), take("d")};
    const auto name = [](const GroupeFichiers& groupe) { return groupe.nom; };
    const std::vector<std::uint64_t> sizes = {900'000, 10'000'000, 900'000, 2};
    const std::vector<std::string> rates = {"29.97 DF", "25", "29.97", "23.976"};
    const std::vector<double> sampleRates = {96000, 48000, 48000, 192000};
    for (std::size_t at = 0; at < takes.size(); ++at) {
        takes[at].framerate = rates[at];
        takes[at].fichiers.edit([&](auto& fichiers) {
            fichiers.front().taille = sizes[at];
            fichiers.front().sampleRate = sampleRates[at];
        });
    }
    const struct {
        TakeColumn column;
        bool descending;
        std::vector<std::string> order;
    } cases[] = {
        {TakeColumn::size, false, {"d", "a", "c", "b"}},      {TakeColumn::size, true, {"b", "a", "c", "d"}},
        {TakeColumn::fps, false, {"d", "b", "c", "a"}},       {TakeColumn::sampleRate, false, {"b", "c", "a", "d"}},
        {TakeColumn::sampleRate, true, {"d", "a", "b", "c"}},
    };
    for (const auto& [column, descending, order] : cases) {
        EXPECT_THAT(sortedTexts(takes, column, descending, name), ElementsAreArray(order))
            << columnTitle(column).toStdString() << (descending ? " descending" : "");
    }
}

TEST(TakeOrder, MarkedTakesComeBeforeMixedAndUnmarkedOnes) {
    std::vector<GroupeFichiers> takes = {take("plain"), take("mixed"), take("circled")};
    takes[1].mixedFields = {MetadataField::circled};
    takes[2].circled = true;
    const auto name = [](const GroupeFichiers& groupe) { return groupe.nom; };
    EXPECT_THAT(sortedTexts(takes, TakeColumn::circled, false, name), ElementsAre("circled", "mixed", "plain"));
    EXPECT_THAT(sortedTexts(takes, TakeColumn::circled, true, name), ElementsAre("plain", "mixed", "circled"));
}

TEST(TakeFilter, EveryWordMustStandSomewhereInTheRowsTexts) {
    GroupeFichiers groupe = take("SC12_T003");
    groupe.scene = "12A";
    groupe.tape = "R001";
    groupe.project = "Überfahrt";
    groupe.notes = "plane at the end";
    groupe.fichiers.edit([](auto& fichiers) { fichiers.front().nomsPistes = {{1, "Boom"}, {2, "Anna &amp; Ben"}}; });
    const std::string searchable = searchableText(groupe);
    const struct {
        const char* text;
        bool matches;
    } cases[] = {
        {"", true},          {"  ", true},   {"12a", true},   {"PLANE boom", true},   {"boom  r001 wav", true},
        {"überfahrt", true}, {"ÜBER", true}, {"& ben", true}, {"plane truck", false}, {"12ar001", false},
        {"endboom", false},  {"T003", true}, {"amp;", false},
    };
    for (const auto& [text, matches] : cases)
        EXPECT_EQ(TakeFilter(QString::fromUtf8(text)).matches(searchable), matches) << text;
}

TEST(TakeFilter, AMixedSetIsFoundByTheValueOfEachOfItsFiles) {
    GroupeFichiers groupe = take("A_T1");
    groupe.fichiers = {groupe.fichiers.front(), groupe.fichiers.front()};
    groupe.fichiers.edit([](auto& fichiers) {
        fichiers[0].scene = "7";
        fichiers[1].scene = "8B";
    });
    mergeMetadata(groupe);
    EXPECT_TRUE(TakeFilter(QStringLiteral("8b")).matches(searchableText(groupe)));
}

TEST(TakeColumns, TheEndIsStartPlusDurationCountedAtTheRate) {
    const struct {
        const char* start;
        const char* rate;
        double seconds;
        const char* end;
    } cases[] = {
        {"10:00:00:00", "25", 3.944, "10:00:03:24"},
        {"10:00:00:00", "30", 60, "10:01:00:00"},
        {"01:00:00:00", "23.976", 60.06, "01:01:00:00"},
        {"01:00:00:00", "29.97", 3603.6, "02:00:00:00"},
        {"10:00:00:00", "", 5, ""},
        {"", "25", 5, ""},
    };
    for (const auto& [start, rate, seconds, end] : cases) {
        GroupeFichiers groupe = take("T");
        if (*start != '\0') groupe.timecode = start;
        if (*rate != '\0') groupe.framerate = rate;
        groupe.fichiers.edit([&](auto& fichiers) { fichiers.front().dureeSecondes = seconds; });
        EXPECT_EQ(endTimecode(groupe), end) << start << " at " << rate;
    }
}

TEST(TakeColumns, AFileOfASetTellsItsOwnValueOnlyWhereTheSetIsMixed) {
    GroupeFichiers groupe = take("A_T1");
    groupe.fichiers = {groupe.fichiers.front(), groupe.fichiers.front()};
    groupe.fichiers.edit([](auto& fichiers) {
        fichiers[0].nomsPistes = {{1, "Boom"}};
        fichiers[1].notes = "noisy";
        fichiers[0].scene = fichiers[1].scene = "7";
    });
    mergeMetadata(groupe);
    EXPECT_EQ(memberText(groupe, 1, TakeColumn::note), "noisy");
    EXPECT_EQ(memberText(groupe, 1, TakeColumn::scene), "");
    EXPECT_THAT(memberText(groupe, 0, TakeColumn::name), testing::HasSubstr("Boom"));
}

TEST(TakeColumns, WhatCannotBeAValueIsRefusedWithTheReason) {
    GroupeFichiers groupe = take("T");
    const auto why = [&](TakeColumn column, const char* text) {
        return whyNot(groupe, column, QString::fromUtf8(text)).toStdString();
    };
    EXPECT_THAT(why(TakeColumn::startTimecode, "10:00:00:00"), testing::HasSubstr("frame rate first"));
    groupe.framerate = "25";
    EXPECT_EQ(why(TakeColumn::startTimecode, "10:00:00:25"), "Invalid Timecode");
    EXPECT_EQ(why(TakeColumn::startTimecode, "10000024"), "");
    EXPECT_THAT(why(TakeColumn::name, ""), testing::HasSubstr("empty"));
    EXPECT_THAT(why(TakeColumn::name, "a/b"), testing::HasSubstr("/"));
    EXPECT_EQ(why(TakeColumn::scene, ""), "");
    EXPECT_NE(why(TakeColumn::duration, "1"), "");

    EXPECT_TRUE(whyReadOnly(groupe).isEmpty());
    groupe.fichiers.edit([](auto& fichiers) {
        fichiers.front().url = "/day/T.mp3";
        fichiers.front().format = "MP3";
    });
    EXPECT_EQ(whyReadOnly(groupe), "Dravik can open MP3 files, but changes cannot be saved to this format.");
}

TEST(SpreadsheetText, TheFirstColumnIsReadAsSpreadsheetsAndEditorsWriteIt) {
    const struct {
        const char* clipboard;
        QStringList lines;
    } cases[] = {
        {"", {}},
        {"1", {"1"}},
        {"1\n2\n3\n", {"1", "2", "3"}},
        {"1\r\n\r\n3", {"1", "", "3"}},
        {"a\tb\nc\td\n", {"a", "c"}},
        {"\"two\nlines\"\nnext", {"two\nlines", "next"}},
        {"\"say \"\"no\"\"\"\tx\nnext", {"say \"no\"", "next"}},
        {"\"Quiet\" please\nnext", {"\"Quiet\" please", "next"}},
        {"\"open\nnext", {"\"open", "next"}},
    };
    for (const auto& [clipboard, lines] : cases)
        EXPECT_EQ(firstSpreadsheetColumn(QString::fromUtf8(clipboard)), lines) << clipboard;
}

TEST(SpreadsheetText, WhatIsCopiedReadsBackTheSame) {
    for (const char* cell : {"plain", "", "tab\there", "two\nlines", "\"quoted\"", "in \"the\" middle"}) {
        const QString text = QString::fromUtf8(cell);
        const QStringList lines = firstSpreadsheetColumn(spreadsheetLine({text, QStringLiteral("next")}));
        EXPECT_EQ(lines, QStringList{text}) << cell;
    }
}

}  // namespace
}  // namespace dravik
