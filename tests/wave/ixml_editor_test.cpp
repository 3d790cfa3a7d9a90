#include "model/wave/ixml_editor.h"

#include "fuzz/pcre_oracle.h"
#include "model/wave/ixml_check.h"
#include "model/wave/ixml_document.h"
#include "tests/support/repeated.h"

#include <random>

#include <gtest/gtest.h>

namespace dravik {
namespace {

using namespace std::string_literals;
using test::repeated;

/// What every save does to a document without any circled state.
constexpr const char* notCircled = "\n<CIRCLED>FALSE</CIRCLED>";

int occurrences(std::string_view text, std::string_view part) {
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size()))
        ++count;
    return count;
}

TEST(IxmlEditor, KeepsAttributesWhenAValueIsReplaced) {
    EXPECT_EQ(definirTag("<PROJECT lang=\"fr\">a</PROJECT><PROJECT>b</PROJECT>", "PROJECT", "<x> & y"),
              "<PROJECT lang=\"fr\"><x> & y</PROJECT><PROJECT>b</PROJECT>");
    EXPECT_EQ(remplacerValeurTag("<SCENE>1</SCENE>", "TAKE", "2"), "<SCENE>1</SCENE>");
}

TEST(IxmlEditor, InsertsAtTheFirstOfFivePlaces) {
    struct Case {
        const char *document, *result;
    };
    for (const Case& c :
         {Case{"<SCENE></SCENE><TAKE></take> <TAKE></TAKE>", "<SCENE></SCENE><TAKE></take>\n<A>v</A> <TAKE></TAKE>"},
          Case{"<BWFXML><SCENE></SCENE>\n</BWFXML>", "<BWFXML><SCENE></SCENE>\n<A>v</A>\n</BWFXML>"},
          Case{"<BWFXML><IXML></IXML></bwfxml>", "<BWFXML><IXML></IXML>\n<A>v</A>\n</bwfxml>"},
          Case{"<IXML></IXML>", "<IXML>\n<A>v</A>\n</IXML>"}, Case{"text", "text\n<A>v</A>"}, Case{"", "\n<A>v</A>"}}) {
        EXPECT_EQ(insererTag(c.document, "A", "v"), c.result) << c.document;
    }
}

TEST(IxmlEditor, OnlyTheTimeElementsGetASecondCopyWhenNothingChanges) {
    for (const char* name : {"TIMECODE_RATE", "TIMECODE_FLAG", "TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO",
                             "TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI"}) {
        const std::string element = "<"s + name + ">1</" + name + ">";
        EXPECT_EQ(definirTag(element, name, "1"), element + "\n" + element);
        EXPECT_EQ(definirTag(element, name, "2"), "<"s + name + ">2</" + name + ">");
    }
    EXPECT_EQ(definirTag("<TAKE>1</TAKE>", "TAKE", "1"), "<TAKE>1</TAKE>");
}

TEST(IxmlEditor, CopiesOfATimeElementAllSayTheSameAndGetNoFurtherOne) {
    const char* name = "TIMECODE_RATE";
    const struct {
        const char *document, *value, *result;
    } cases[] = {
        {"<TIMECODE_RATE>1</TIMECODE_RATE> <timecode_rate a>1</timecode_rate>", "1",
         "<TIMECODE_RATE>1</TIMECODE_RATE> <timecode_rate a>1</timecode_rate>"},
        {"<TIMECODE_RATE>1</TIMECODE_RATE> <timecode_rate a>1</timecode_rate>", "24",
         "<TIMECODE_RATE>24</TIMECODE_RATE> <timecode_rate a>24</timecode_rate>"},
        {"<TIMECODE_RATE>1</TIMECODE_RATE><SPEED><TIMECODE_RATE>25</TIMECODE_RATE></SPEED>", "1",
         "<TIMECODE_RATE>1</TIMECODE_RATE><SPEED><TIMECODE_RATE>1</TIMECODE_RATE></SPEED>"},
        // What is no element of text alone keeps its bytes.
        {"<TIMECODE_RATE>1</TIMECODE_RATE><TIMECODE_RATE><TIMECODE_RATES>2</TIMECODE_RATES></TIMECODE_RATE>"
         "<TIMECODE_RATE<TIMECODE_RATE>2</TIMECODE_RATE><TIMECODE_RATE>2",
         "24",
         "<TIMECODE_RATE>24</TIMECODE_RATE><TIMECODE_RATE><TIMECODE_RATES>2</TIMECODE_RATES></TIMECODE_RATE>"
         "<TIMECODE_RATE<TIMECODE_RATE>24</TIMECODE_RATE><TIMECODE_RATE>2"},
    };
    for (const auto& [document, value, result] : cases)
        EXPECT_EQ(definirTag(document, name, value), result);

    // From save to save: the start is edited twice, then the rate.
    MetadataValues values;
    values.timecode = "10:00:00:00";
    values.framerate = "25";
    values.sampleRate = 48000;
    const std::string once = mettreAJourIXML("<TAKE></TAKE><SPEED><TIMECODE_RATE>25/1</TIMECODE_RATE></SPEED>", values);
    values.timecode = "11:00:00:00";
    const std::string twice = mettreAJourIXML(once, values);
    values.framerate = "24";
    const std::string slower = mettreAJourIXML(twice, values);
    for (const char* element : {"<TIMECODE_RATE>", "<TIMECODE_FLAG>", "<TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO>",
                                "<TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI>"}) {
        for (const std::string& document : {once, twice, slower})
            EXPECT_EQ(occurrences(document, element), 2) << element << document;
    }
    EXPECT_EQ(occurrences(slower, "25/1"), 0) << slower;
}

TEST(IxmlEditor, RemovesEveryCopyWithTheWhiteSpaceBehindIt) {
    EXPECT_EQ(supprimerTags("a <B>1</B> \t\r\n c<b x>\n</B>\v<B>", "B"), "a c\v<B>");
    EXPECT_EQ(supprimerTags("<B-x>1</B>2", "B"), "2");
    EXPECT_EQ(supprimerTags("<B_>1</B_>", "B"), "<B_>1</B_>");
}

TEST(IxmlEditor, RemovesAnElementThatOnlyAppearsThroughARemoval) {
    EXPECT_EQ(supprimerTags("<CIR<CIRCLED></CIRCLED> CLED>1</CIRCLED>z", "CIRCLED"), "z");
    EXPECT_EQ(supprimerTags("<<CIRCLED></CIRCLED>CIRCLED>1</CIRCLED>z", "CIRCLED"), "z");
    EXPECT_EQ(supprimerTags("<C<CIRCLED></CIRCLED>I<CIRCLED></CIRCLED>RCLED>1</CIRCLED>", "CIRCLED"), "");
    EXPECT_EQ(supprimerTags("<C<CIRCLED></CIRCLED>IRCLEDX>1</CIRCLED>", "CIRCLED"), "<CIRCLEDX>1</CIRCLED>");
    EXPECT_EQ(supprimerTags("<CIRCLE<CIRCLED></CIRCLED>D", "CIRCLED"), "<CIRCLED");
}

TEST(IxmlEditor, PrimitivesEditRandomDamageAsThePatternsDo) {
    const std::vector<std::string> pieces = {"<AB>", "</AB>", "<AB", "<A", "B",  "B>", "</ab>", "<aB x>", "<AB/>",
                                             "<",    ">",     "/",   " ",  "\n", "x",  "_",     "é"};
    std::mt19937 random(19990101);
    for (int round = 0; round < 30000; ++round) {
        std::string text;
        for (auto i = random() % 28; i > 0; --i)
            text += pieces[random() % pieces.size()];
        for (const char* name : {"AB", "A", "B"}) {
            ASSERT_EQ(supprimerTags(text, name), oracle::supprimerTags(text, name)) << text;
            ASSERT_EQ(remplacerValeurTag(text, name, "v"), oracle::remplacerValeurTag(text, name, "v")) << text;
        }
    }
}

TEST(IxmlEditor, ChildrenGoIntoTheFirstParent) {
    EXPECT_EQ(definirSousTag("<A>1</A><S x><a>2</a></S>", "S", "A", "3"), "<A>1</A><S x><a>3</a></S>");
    EXPECT_EQ(definirSousTag("<S>\n</s><A>1</A>", "S", "A", "3"), "<S>\n\n<A>3</A></s><A>1</A>");
    EXPECT_EQ(definirSousTag("<TAKE></TAKE>", "S", "A", "3"), "<TAKE></TAKE>\n<S>\n<A>3</A>\n</S>");
    EXPECT_EQ(definirSousTag("<S><A></S></A>", "S", "A", "3"), "<S><A>\n<A>3</A></S></A>");
}

TEST(IxmlEditor, UneditedValuesLeaveTheDocumentAlone) {
    EXPECT_EQ(mettreAJourIXML("<TAKE>1</TAKE><X/>", {}), "<TAKE>1</TAKE>"s + notCircled + "<X/>");
    // The circled state is written anew, from what the document itself says, and in one form.
    EXPECT_EQ(mettreAJourIXML("<CIRCLE>oui</CIRCLE>\n<TAKE>1</TAKE>", {}), "<TAKE>1</TAKE>\n<CIRCLED>TRUE</CIRCLED>");
    EXPECT_EQ(mettreAJourIXML("<CIRCLED></CIRCLED>\n<WILD_TRACK></WILD_TRACK>", {}),
              "<WILD_TRACK></WILD_TRACK>"s + notCircled);
    EXPECT_EQ(mettreAJourIXML("<TAKE></TAKE><WILD_TRACK>1</WILD_TRACK>", {}),
              "<TAKE></TAKE>"s + notCircled + "<WILD_TRACK>1</WILD_TRACK>");
}

TEST(IxmlEditor, AWildTakeStaysWildWithoutItsTakeType) {
    EXPECT_EQ(mettreAJourIXML("<TAKE></TAKE><TAKE_TYPE>WILD</TAKE_TYPE>", {}),
              "<TAKE></TAKE>\n<WILD_TRACK>TRUE</WILD_TRACK>"s + notCircled);
    MetadataValues values;
    values.wild = false;
    EXPECT_EQ(mettreAJourIXML("<TAKE></TAKE><TAKE_TYPE>WILD</TAKE_TYPE>", values), "<TAKE></TAKE>"s + notCircled);
}

TEST(IxmlEditor, AnEditedFlagReplacesEveryCopyOfTheOldOne) {
    MetadataValues values;
    values.circled = true;
    values.wild = true;
    const std::string copies =
        "<WILD_TRACK>1</WILD_TRACK><CIRCLE>0</CIRCLE><CIRCLED>0</CIRCLED><wild_track>0</wild_track>";
    EXPECT_EQ(mettreAJourIXML(copies, values), "<CIRCLED>TRUE</CIRCLED>\n<WILD_TRACK>TRUE</WILD_TRACK>");
    values.wild = false;
    EXPECT_EQ(mettreAJourIXML(copies, values), "<CIRCLED>TRUE</CIRCLED>\n<WILD_TRACK>FALSE</WILD_TRACK>");
    EXPECT_EQ(mettreAJourIXML("", values), "\n<CIRCLED>TRUE</CIRCLED>");
}

TEST(IxmlEditor, WritesTheFiveTextsIntoTheEmptyDocument) {
    MetadataValues values;
    values.project = "P & <Q>";
    values.scene = "12A";
    values.tape = "";
    values.prise = "3";
    values.note = "été";
    EXPECT_EQ(mettreAJourIXML(emptyIxmlDocument, values),
              "<BWFXML>\n<PROJECT>P & <Q></PROJECT>\n<SCENE>12A</SCENE>\n<TAPE></TAPE>\n<TAKE>3</TAKE>\n"
              "<CIRCLED>FALSE</CIRCLED>\n<NOTE>été</NOTE>\n</BWFXML>");
}

TEST(IxmlEditor, TheNoteIsWrittenWhereItIsRead) {
    struct Case {
        const char *document, *result;
    };
    for (const Case& c :
         {Case{"<SPEED><NOTE>fast</NOTE></SPEED><NOTE>old</NOTE>", "<SPEED><NOTE>fast</NOTE></SPEED><NOTE>new</NOTE>"},
          Case{"<NOTE>old</NOTE><SPEED><NOTE>fast</NOTE></SPEED>", "<NOTE>new</NOTE><SPEED><NOTE>fast</NOTE></SPEED>"},
          Case{"<SPEED><NOTE>fast</NOTE></SPEED>", "<SPEED><NOTE>fast</NOTE></SPEED>\n<NOTE>new</NOTE>"},
          Case{"<NOTE>a<SPEED></NOTE></SPEED>b</NOTE>", "<NOTE>new</NOTE>"}}) {
        MetadataValues values;
        values.note = "new";
        const std::string edited = mettreAJourIXML(c.document, values);
        EXPECT_EQ(edited, std::string(c.result) + notCircled);
        EXPECT_EQ(IxmlDocument(edited).literalValue("NOTE"), "new") << c.document;
    }
}

TEST(IxmlEditor, AnEmptyTagDoesNotSwallowWhatStandsBehindIt) {
    const std::string document =
        "<BWFXML><PROJECT/><CIRCLED "
        "/><WILD_TRACK/><SCENE>1</SCENE><TAKE>2</TAKE><TRACK_LIST><TRACK><NAME/></TRACK></TRACK_LIST></BWFXML>";
    MetadataValues values;
    values.project = "Film";
    values.wild = true;
    values.nomsPistes = {{1, "Boom"}};
    const std::string once = mettreAJourIXML(document, values);
    EXPECT_EQ(once,
              "<BWFXML><PROJECT>Film</PROJECT><SCENE>1</SCENE><TAKE>2</TAKE>\n<WILD_TRACK>TRUE</WILD_TRACK>\n"
              "<CIRCLED>FALSE</CIRCLED><TRACK_LIST>\n<TRACK_COUNT>1</TRACK_COUNT><TRACK><NAME>Boom</NAME></TRACK>"
              "</TRACK_LIST></BWFXML>");
    values.scene = "1";
    const std::string twice = mettreAJourIXML(once, values);
    const std::size_t same = once.find("<TRACK_LIST>");
    EXPECT_EQ(twice, once.substr(0, same) + "\n" + once.substr(same));
    EXPECT_NE(mettreAJourIXML("<SCENE/><NOTE/>", {}).find("<SCENE/><NOTE/>"), std::string::npos);  // not written: left
}

TEST(IxmlEditor, TheRateIsWrittenInsideAndOutsideOfSpeed) {
    MetadataValues values;
    values.framerate = "29.97 DF";
    EXPECT_EQ(mettreAJourIXML("<TAKE></TAKE>", values),
              "<TAKE></TAKE>\n<SPEED>\n<MASTER_SPEED>029.970</MASTER_SPEED>\n\n<CURRENT_SPEED>029.970</CURRENT_SPEED>"
              "\n<TIMECODE_RATE>30000/1001</TIMECODE_RATE>\n<TIMECODE_FLAG>DF</TIMECODE_FLAG></SPEED>"
              "\n<TIMECODE_FLAG>DF</TIMECODE_FLAG>\n<TIMECODE_RATE>30000/1001</TIMECODE_RATE>"s +
                  notCircled);
    values.framerate = "25";
    const std::string same = mettreAJourIXML("<SPEED><TIMECODE_RATE>25/1</TIMECODE_RATE></SPEED>", values);
    EXPECT_NE(same.find("</CIRCLED>\n<TIMECODE_RATE>25/1</TIMECODE_RATE>"), std::string::npos) << same;
}

TEST(IxmlEditor, TheStartIsWrittenInTwoHalves) {
    MetadataValues values;
    values.timecode = "25:00:00:00";
    values.framerate = "25";
    values.sampleRate = 48000;
    const std::string edited = mettreAJourIXML("<SPEED></SPEED>", values);
    const IxmlDocument document(edited);
    EXPECT_EQ(document.value("TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO"), "25032704");
    EXPECT_EQ(document.value("TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI"), "1");
    const auto speed = document.find("SPEED");
    ASSERT_TRUE(speed);
    EXPECT_LT(document.find("TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI")->end, speed->end);
}

TEST(IxmlEditor, TrackNamesGoToTheTrackThatReadersShow) {
    const std::string list =
        "<TRACK_LIST><TRACK_COUNT>9</TRACK_COUNT>"
        "<TRACK><CHANNEL_INDEX>3</CHANNEL_INDEX><INTERLEAVE_INDEX>1</INTERLEAVE_INDEX><NAME>a</NAME></TRACK>"
        "<TRACK><INTERLEAVE_INDEX>4</INTERLEAVE_INDEX></TRACK>"
        "<TRACK><NAME>by place</NAME></TRACK>"
        "<TRACK><INTERLEAVE_INDEX>1</INTERLEAVE_INDEX><NAME>again 1</NAME></TRACK></TRACK_LIST>";
    const auto edited = [&](int track) { return setTrackName(list, track, "Boom & <Lav>"); };
    const auto expected = [&](std::string_view from, std::string_view to, std::string_view count) {
        std::string out = list;
        out.replace(out.find(from), from.size(), to);
        return out.replace(out.find(">9<") + 1, 1, count);
    };
    EXPECT_EQ(edited(1), expected("again 1", "Boom &amp; <Lav>", "4"));  // the last of that key
    EXPECT_EQ(edited(3), expected("by place", "Boom &amp; <Lav>", "4"));
    EXPECT_EQ(edited(4), expected("4</INTERLEAVE_INDEX>", "4</INTERLEAVE_INDEX><NAME>Boom &amp; <Lav></NAME>\n", "4"));
    EXPECT_EQ(edited(2), expected("</TRACK_LIST>",
                                  "<TRACK>\n<CHANNEL_INDEX>2</CHANNEL_INDEX>\n<INTERLEAVE_INDEX>2</INTERLEAVE_INDEX>\n"
                                  "<NAME>Boom &amp; <Lav></NAME>\n</TRACK></TRACK_LIST>",
                                  "5"));
    EXPECT_EQ(edited(0), list);
}

TEST(IxmlEditor, ATrackListIsMadeWhereThereIsNone) {
    EXPECT_EQ(setTrackName("<TAKE></TAKE>", 2, "Lav"),
              "<TAKE></TAKE>\n<TRACK_LIST>\n<TRACK_COUNT>1</TRACK_COUNT>\n<TRACK>\n<CHANNEL_INDEX>2</CHANNEL_INDEX>\n"
              "<INTERLEAVE_INDEX>2</INTERLEAVE_INDEX>\n<NAME>Lav</NAME>\n</TRACK></TRACK_LIST>");
}

TEST(IxmlEditor, TheOnlyNameOfAMonoFileGoesIntoTheTrackThatIsShown) {
    MetadataValues values;
    values.soleTrackName = "Boom";
    const std::string edited = mettreAJourIXML(
        "<TRACK_LIST><TRACK><CHANNEL_INDEX>5</CHANNEL_INDEX><NAME>a</NAME></TRACK><TRACK><NAME>b</NAME></TRACK></"
        "TRACK_LIST>",
        values);
    EXPECT_EQ(lireNomsPistes(IxmlDocument(edited)), (std::map<int, std::string>{{2, "Boom"}, {5, "a"}}));
    const std::string created = mettreAJourIXML("<TRACK_LIST></TRACK_LIST>", values);
    EXPECT_EQ(lireNomsPistes(IxmlDocument(created)), (std::map<int, std::string>{{1, "Boom"}}));
}

TEST(IxmlEditor, SeveralNamesAreWrittenAtOnceAndReadBack) {
    MetadataValues values;
    values.nomsPistes = {{1, "one"}, {2, "two"}, {12, "<INTERLEAVE_INDEX>1</INTERLEAVE_INDEX>"}};
    const std::string edited = mettreAJourIXML(
        "<TRACK_LIST>\n<TRACK><NAME>a</NAME></TRACK>\n<TRACK></TRACK>\n<TRACK><NAME>c</NAME></TRACK></TRACK_LIST>",
        values);
    const auto names = lireNomsPistes(IxmlDocument(edited));
    EXPECT_EQ(names.at(1), "one");
    EXPECT_EQ(names.at(2), "two");
    EXPECT_EQ(names.at(3), "c");
    EXPECT_EQ(valeurTag("TRACK_COUNT", edited), "4");
}

TEST(IxmlEditor, OfANumberOnlyTheDigitsChangeInTheTrackWhoseNumberIsShown) {
    const std::string head = "<TRACK_LIST><TRACK_COUNT>9</TRACK_COUNT>";
    const struct {
        const char *why, *tracks;
        int position;
        const char *from, *to;
    } cases[] = {
        {"attributes and blanks stay",
         "<track a='1'><CHANNEL_INDEX b=\"2\">\n 3 \n</CHANNEL_INDEX><INTERLEAVE_INDEX>1</INTERLEAVE_INDEX></track>", 1,
         " 3 ", " 12 "},
        {"the position counts, not the number that another track has",
         "<TRACK><CHANNEL_INDEX>2</CHANNEL_INDEX><INTERLEAVE_INDEX>1</INTERLEAVE_INDEX></TRACK>"
         "<TRACK><CHANNEL_INDEX>01</CHANNEL_INDEX><INTERLEAVE_INDEX>2</INTERLEAVE_INDEX></TRACK>",
         2, "01", "12"},
        {"of several at one position the last that has a number",
         "<TRACK><INTERLEAVE_INDEX>1</INTERLEAVE_INDEX><CHANNEL_INDEX>3</CHANNEL_INDEX></TRACK>"
         "<TRACK><INTERLEAVE_INDEX>1</INTERLEAVE_INDEX><CHANNEL_INDEX>4</CHANNEL_INDEX></TRACK>"
         "<TRACK><INTERLEAVE_INDEX>1</INTERLEAVE_INDEX><NAME>a</NAME></TRACK>",
         1, "4</", "12</"},
        {"a number that none can be read from is replaced",
         "<TRACK><CHANNEL_INDEX>none</CHANNEL_INDEX><INTERLEAVE_INDEX>1</INTERLEAVE_INDEX></TRACK>", 1, "none", "12"},
        {"an empty one is filled",
         "<TRACK><CHANNEL_INDEX></CHANNEL_INDEX><INTERLEAVE_INDEX>1</INTERLEAVE_INDEX></TRACK>", 1, "<CHANNEL_INDEX></",
         "<CHANNEL_INDEX>12</"},
        {"a missing one is added", "<TRACK><INTERLEAVE_INDEX>1</INTERLEAVE_INDEX><NAME/></TRACK>", 1, "</TRACK>",
         "<CHANNEL_INDEX>12</CHANNEL_INDEX>\n</TRACK>"},
        {"a track named by its number keeps the name at its place",
         "<TRACK><CHANNEL_INDEX>3</CHANNEL_INDEX><NAME>a</NAME></TRACK>", 3, "3</CHANNEL_INDEX><NAME>a</NAME>",
         "12</CHANNEL_INDEX><NAME>a</NAME><INTERLEAVE_INDEX>3</INTERLEAVE_INDEX>\n"},
        {"and so does one that only its place tells", "<TRACK><NAME>a</NAME></TRACK>", 1, "</TRACK>",
         "<CHANNEL_INDEX>12</CHANNEL_INDEX>\n<INTERLEAVE_INDEX>1</INTERLEAVE_INDEX>\n</TRACK>"},
    };
    for (const auto& c : cases) {
        const std::string before = head + c.tracks + "</TRACK_LIST>";
        std::string expected = before;
        expected.replace(expected.find(c.from), std::string_view(c.from).size(), c.to);
        const std::string edited = setTrackNumber(before, c.position, 12);
        EXPECT_EQ(edited, expected) << c.why;
        EXPECT_EQ(lireNumerosTracks(IxmlDocument(edited)).at(c.position), 12) << c.why;
        EXPECT_EQ(lireNomsPistes(IxmlDocument(edited)), lireNomsPistes(IxmlDocument(before))) << c.why;
        EXPECT_EQ(setTrackNumber(before, 0, 12), before);
        EXPECT_EQ(setTrackNumber(before, 1, 0), before);
    }
    EXPECT_EQ(setTrackNumber("<TRACK_LIST></TRACK_LIST>", 2, 12),
              "<TRACK_LIST>\n<TRACK_COUNT>1</TRACK_COUNT><TRACK>\n<CHANNEL_INDEX>12</CHANNEL_INDEX>\n"
              "<INTERLEAVE_INDEX>2</INTERLEAVE_INDEX>\n</TRACK></TRACK_LIST>");
}

TEST(IxmlEditor, NamesStayWithTheirTracksWhateverNumbersTheyGet) {
    const std::string before =
        "<TAKE></TAKE><TRACK_LIST><TRACK><CHANNEL_INDEX>1</CHANNEL_INDEX><INTERLEAVE_INDEX>1</INTERLEAVE_INDEX>"
        "<NAME>a</NAME></TRACK><TRACK><CHANNEL_INDEX>2</CHANNEL_INDEX><INTERLEAVE_INDEX>2</INTERLEAVE_INDEX>"
        "<NAME>b</NAME></TRACK><TRACK><CHANNEL_INDEX>3</CHANNEL_INDEX><NAME>c</NAME></TRACK></TRACK_LIST>";
    MetadataValues values;
    values.numerosTracks = {{1, 2}, {2, 1}, {3, 4}, {4, 3}};
    values.nomsPistes = {{1, "A"}, {4, "D"}};
    const std::string edited = mettreAJourIXML(before, values);
    const IxmlDocument after(edited);
    EXPECT_EQ(lireNomsPistes(after), (std::map<int, std::string>{{1, "A"}, {2, "b"}, {3, "c"}, {4, "D"}}));
    EXPECT_EQ(lireNumerosTracks(after), values.numerosTracks);
    EXPECT_EQ(after.tracks().size(), 4U) << "one new track holds both";
    EXPECT_TRUE(editIsClean(before, edited, values));
}

TEST(IxmlEditor, TheOnlyNumberOfAMonoFileGoesIntoTheTrackWhoseNumberIsShown) {
    const struct {
        const char* tracks;
        std::map<int, int> numbers;
        std::map<int, std::string> names;
    } cases[] = {
        {"<TRACK><CHANNEL_INDEX>5</CHANNEL_INDEX><INTERLEAVE_INDEX>2</INTERLEAVE_INDEX><NAME>a</NAME></TRACK>",
         {{2, 12}},
         {{2, "a"}}},
        {"<TRACK><CHANNEL_INDEX>5</CHANNEL_INDEX><NAME>a</NAME></TRACK>", {{1, 12}}, {{1, "a"}}},
        {"<TRACK><NAME>a</NAME></TRACK>", {{1, 12}}, {{1, "a"}}},
        {"<TRACK><INTERLEAVE_INDEX>1</INTERLEAVE_INDEX><NAME>a</NAME></TRACK>"
         "<TRACK><INTERLEAVE_INDEX>2</INTERLEAVE_INDEX><CHANNEL_INDEX>2</CHANNEL_INDEX></TRACK>",
         {{2, 12}},
         {{1, "a"}}},
        {"", {{1, 12}}, {}},
    };
    MetadataValues number;
    number.soleTrackNumber = 12;
    for (const auto& c : cases) {
        const std::string before = "<TRACK_LIST>"s + c.tracks + "</TRACK_LIST>";
        const std::string edited = mettreAJourIXML(before, number);
        EXPECT_EQ(lireNumerosTracks(IxmlDocument(edited)), c.numbers) << edited;
        EXPECT_EQ(lireNomsPistes(IxmlDocument(edited)), c.names) << edited;
        EXPECT_TRUE(editIsClean(before, edited, number)) << edited;
        MetadataValues both = number;
        both.soleTrackName = "Boom";
        const std::string named = mettreAJourIXML(before, both);
        EXPECT_EQ(lireNumerosTracks(IxmlDocument(named)), c.numbers) << named;
        EXPECT_EQ(lireNomsPistes(IxmlDocument(named)).begin()->second, "Boom") << named;
        EXPECT_TRUE(editIsClean(before, named, both)) << named;
    }
}

TEST(IxmlEditor, RefusesWhatNoChunkCanHold) {
    MetadataValues values;
    values.scene = "\xFF";
    EXPECT_THROW((void)mettreAJourIXML(emptyIxmlDocument, values), IxmlError);
    EXPECT_THROW((void)mettreAJourIXML(std::string(maxIxmlBytes + 1, ' '), {}), IxmlError);
    EXPECT_THROW((void)mettreAJourIXML(std::string(maxIxmlBytes, ' '), {}), IxmlError);  // no room for CIRCLED
}

// Anything that is not linear takes hours here.
TEST(IxmlEditor, EditsMegabytesOfDamageInAFewPasses) {
    MetadataValues values;
    values.project = "p";
    values.note = "n";
    values.circled = true;
    values.framerate = "25";
    for (int track = 1; track <= 64; ++track) {
        values.nomsPistes[track] = "name";
    }
    constexpr std::size_t twoMebibytes = 2U * 1024U * 1024U;
    for (const char* unit :
         {"<TRACK ", "<CIRCLE></CIRCLE>", "<CIR<CIRCLED></CIRCLED>", "<SPEED>", "<NOTE/>", "<CIRCLE>  ",
          "<TIMECODE_RATE>1</TIMECODE_RATE>", "<TIMECODE_RATE>", "<TIMECODE_RATE></TIMECODE_RATE"}) {
        const std::string edited = mettreAJourIXML(repeated(unit, twoMebibytes), values);
        EXPECT_NE(edited.find("TRUE"), std::string::npos);
    }
    for (const char* unit : {"<CIRCLE></CIRCLE>", "<CIR<CIRCLED></CIRCLED>", "<CIRCLED>", "x<CIRCLED></CIRCLED> "}) {
        const std::string text = repeated(unit, maxIxmlBytes);
        EXPECT_LE(supprimerTags(text, "CIRCLED").size(), text.size());
    }
}

TEST(IxmlEditor, PaddingGivesAndTakesSoThatTheLengthStays) {
    const auto kept = [](std::string_view original, std::string edited) {
        return withPaddingKept(original, std::move(edited));
    };
    const std::string blanks(20, ' ');
    const std::string zeros(20, '\0');
    EXPECT_EQ(kept("<A/>" + blanks, "<A/>12345" + blanks), "<A/>12345" + blanks.substr(5));
    EXPECT_EQ(kept("<A/>" + zeros, "<A" + zeros), "<A" + zeros + "\0\0"s);
    EXPECT_EQ(kept("<A/>" + blanks, "<A/>" + std::string(19, 'x') + blanks), "<A/>" + std::string(19, 'x') + " ");
    EXPECT_EQ(kept("<A/>" + blanks, "<A/>" + std::string(20, 'x') + blanks), "<A/>" + std::string(20, 'x') + blanks);
    EXPECT_EQ(kept("<A/>" + blanks.substr(5), "<A/>1" + blanks.substr(5)),
              "<A/>1" + blanks.substr(5));  // 15: no padding
    EXPECT_EQ(kept(blanks, blanks + "\n<A>"), blanks + "\n<A>");
    EXPECT_EQ(kept("", "<A>"), "<A>");
    EXPECT_EQ(kept("<A/>" + std::string(20, '\n'), "<A/>1" + std::string(20, '\n')), "<A/>1" + std::string(20, '\n'));
}

TEST(IxmlEditor, DeclaresTheEncodingThatItWrites) {
    MetadataValues values;
    values.scene = "Café";
    const auto firstLine = [&](std::string_view declaration) {
        const std::string edited = mettreAJourIXML(std::string(declaration) + "<BWFXML></BWFXML>", values);
        return edited.substr(0, edited.find("<BWFXML>"));
    };
    EXPECT_EQ(firstLine("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    EXPECT_EQ(firstLine("\xEF\xBB\xBF<?xml encoding='latin1'?>"), "\xEF\xBB\xBF<?xml encoding='UTF-8'?>");
    for (const char* kept :
         {"<?xml encoding=\"utf-8\"?>", "<?xml version=\"1.0\"?>", "<?xml encoding=\"latin1?>", ""}) {
        EXPECT_EQ(firstLine(kept), kept);
    }
    // A damaged declaration that ends only behind the elements names no encoding: nothing of them may be replaced.
    const std::string damaged =
        mettreAJourIXML("<?xml encoding=\"UTF<BWFXML><SCENE>1</SCENE><TAPE>T</TAPE></BWFXML>\"?>", values);
    EXPECT_NE(damaged.find("<TAPE>T</TAPE>"), std::string::npos) << damaged;
    EXPECT_NE(damaged.find("<SCENE>Café</SCENE>"), std::string::npos) << damaged;
    values.scene = "plain";
    EXPECT_EQ(firstLine("<?xml encoding=\"latin1\"?>"), "<?xml encoding=\"latin1\"?>");
}

TEST(IxmlCheck, SeesAnEditThatWouldHideOrChangeOtherFields) {
    const std::string document =
        "<BWFXML><PROJECT></PROJECT><SCENE>1</SCENE><TAKE>2</TAKE><FILE_UID>F</FILE_UID><CIRCLED>TRUE</CIRCLED>"
        "<TRACK_LIST><TRACK><NAME>Boom</NAME></TRACK></TRACK_LIST></BWFXML>";
    const auto clean = [](const std::string& before, auto edit) {
        MetadataValues values;
        edit(values);
        return editIsClean(before, mettreAJourIXML(before, values), values);
    };
    for (const char* scene : {"12A", "", "a < b & c", "Café", " x "}) {
        EXPECT_TRUE(clean(document, [&](auto& values) { values.scene = scene; })) << scene;
    }
    for (const char* scene : {"<CIRCLED>", "A</SCENE>", "x</TAKE>"}) {
        EXPECT_FALSE(clean(document, [&](auto& values) { values.scene = scene; })) << scene;
    }
    EXPECT_FALSE(clean(document, [](auto& values) { values.project = "<TAKE>"; }));
    EXPECT_FALSE(clean(document, [](auto& values) { values.nomsPistes = {{1, "a</NAME>b"}}; }));
    EXPECT_TRUE(clean(document, [](auto& values) {
        values.circled = false;
        values.nomsPistes = {{1, "A & B"}, {2, "new"}};
    }));
    EXPECT_FALSE(clean("<!-- <CIRCLED> see log -->" + document, [](auto& values) { values.scene = "2"; }));

    const std::string numbered =
        "<TRACK_LIST><TRACK><INTERLEAVE_INDEX>1</INTERLEAVE_INDEX><NAME>b</NAME><CHANNEL_INDEX>4</CHANNEL_INDEX></"
        "TRACK>"
        "<TRACK><INTERLEAVE_INDEX>2</INTERLEAVE_INDEX><NAME/></TRACK></TRACK_LIST>";
    EXPECT_TRUE(clean(numbered, [](auto& values) { values.nomsPistes = {{1, "a"}, {3, "new"}}; }));
    EXPECT_TRUE(clean(numbered, [](auto& values) { values.numerosTracks = {{1, 5}, {2, 4}}; }));
    EXPECT_FALSE(clean(numbered, [](auto& values) { values.nomsPistes = {{1, "<CHANNEL_INDEX>"}}; }));
    EXPECT_FALSE(clean(numbered, [](auto& values) {
        values.nomsPistes = {{2, "<CHANNEL_INDEX>7</CHANNEL_INDEX>"}};
        values.numerosTracks = {{2, 5}};
    }));
    MetadataValues number;
    number.numerosTracks = {{1, 5}};
    std::string other = mettreAJourIXML(numbered, number);
    other.replace(other.find(">5<") + 1, 1, "6");
    EXPECT_FALSE(editIsClean(numbered, other, number));
    // A track outside of the list: a new one in the list would be the one that readers pass over.
    EXPECT_FALSE(
        clean("<TRACK_LIST></TRACK_LIST><TRACK><INTERLEAVE_INDEX>1</INTERLEAVE_INDEX>"
              "<CHANNEL_INDEX>3</CHANNEL_INDEX></TRACK>",
              [](auto& values) {
                  values.numerosTracks = {{1, 5}};
              }));
}

}  // namespace
}  // namespace dravik
