#include "model/wave/bext.h"

#include "base/text.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace dravik {
namespace {

using namespace std::string_literals;

Bytes payloadWith(std::string_view description, std::size_t size = 602) {
    Bytes payload(size);
    std::copy(asBytes(description).begin(), asBytes(description).end(), payload.begin());
    return payload;
}

std::string updatedText(std::string_view description, const BextValues& values) {
    return std::string(descriptionText(updatedBext(payloadWith(description), values)));
}

BextValues scene(const std::string& value) {
    BextValues values;
    values.edited.scene = value;
    return values;
}

TEST(Bext, OriginationDatesAreCalendarDays) {
    EXPECT_EQ(parseOriginationDate("2024-03-07"), (RecordingDate{2024, 3, 7}));
    EXPECT_EQ(parseOriginationDate("2024-02-29"), (RecordingDate{2024, 2, 29}));
    EXPECT_EQ(parseOriginationDate("2000-02-29"), (RecordingDate{2000, 2, 29}));
    EXPECT_EQ(formatRecordingDate({987, 3, 7}), "0987-03-07");
    for (const std::string& text : {"2023-02-29"s, "1900-02-29"s, "2024-13-01"s, "2024-00-10"s, "2024-04-31"s,
                                    "2024-01-00"s, "0000-01-01"s, "2019:01:01"s, "2024-3-7  "s, " 2024-03-0"s,
                                    "20240307\0\0"s, "2024-03-0\0"s, "\0\0\0\0\0\0\0\0\0\0"s, ""s, "+024-03-07"s}) {
        EXPECT_EQ(parseOriginationDate(text), std::nullopt) << text;
    }
}

TEST(Bext, DescriptionEndsAtTheFirstZeroOrAfter256Bytes) {
    EXPECT_EQ(descriptionText(payloadWith("sTAKE=1\0stray"s)), "sTAKE=1");
    EXPECT_EQ(descriptionText(payloadWith(std::string(300, 'x'))).size(), 256U);
    EXPECT_EQ(descriptionText(asBytes("abc")), "abc");
}

TEST(Bext, ALineKeepsItsPrefixItsPlaceAndItsLineEnd) {
    struct Case {
        const char *description, *result;
    };
    for (const Case& c : {Case{"sTAKE=1\r\nsSCENE=old\r\nsUBITS=0\r\n", "sTAKE=1\r\nsSCENE=new\r\nsUBITS=0\r\n"},
                          Case{"gSCENE=old\ngTAKE=01\n", "gSCENE=new\ngTAKE=01\n"}, Case{"SCENE=old", "SCENE=new"},
                          Case{"zSCENE=a\r\ndSCENE=b\r\n", "zSCENE=new\r\ndSCENE=new\r\n"},
                          Case{"sSCENE=\r\n", "sSCENE=new\r\n"}, Case{"", "sSCENE=new\r\n"},
                          Case{"free text", "free text\r\nsSCENE=new\r\n"}, Case{"a\nb", "a\nb\nsSCENE=new\n"},
                          Case{"\r\nSSCENE=x\r\nxSCENES=y\r\nSCENE\r\nscene=z\r\n",  // none of these is the line
                               "\r\nSSCENE=x\r\nxSCENES=y\r\nSCENE\r\nscene=z\r\nsSCENE=new\r\n"}}) {
        EXPECT_EQ(updatedText(c.description, scene("new")), c.result) << c.description;
    }
}

TEST(Bext, AllEditedFieldsAreAddedWithOurPrefixAndEmptyOnesOnlyWhereTheyAreAlwaysWritten) {
    BextValues values;
    values.edited.project = "P";
    values.edited.scene = "";
    values.edited.tape = "T";
    values.edited.prise = "";
    values.edited.note = "N";
    values.edited.framerate = "29.97 DF";
    values.circled = true;
    values.wild = true;
    EXPECT_EQ(updatedText("", values),
              "sPROJECT=P\r\nsSCENE=\r\nsCIRCLED=TRUE\r\nsWILD_TRACK=TRUE\r\nsSPEED=029.970\r\nsTAPE=T\r\nsNOTE=N\r\n");
    EXPECT_EQ(updatedText("gTAKE=7\r\n", values).substr(0, 8), "gTAKE=\r\n");
}

TEST(Bext, FlagsAreBroughtToOneForm) {
    BextValues values;
    values.circled = false;
    values.wild = false;
    EXPECT_EQ(updatedText("sCIRCLE=1\r\nTAKE_TYPE=WILD\r\nsWILD_TRACK=TRUE\r\ngCIRCLED=1\r\nTAKE=3\r\n", values),
              "sWILD_TRACK=FALSE\r\ngCIRCLED=FALSE\r\nTAKE=3\r\n");
    EXPECT_EQ(updatedText("sTAKE=3\r\n", values), "sTAKE=3\r\nsCIRCLED=FALSE\r\n");
    // Without a state to tell, nothing is said.
    EXPECT_EQ(updatedText("sCIRCLE=1\r\nsWILD_TRACK=1\r\n", scene("2")), "sCIRCLE=1\r\nsWILD_TRACK=1\r\nsSCENE=2\r\n");
}

TEST(Bext, AValueCannotBreakItsLine) {
    EXPECT_EQ(updatedText("sSCENE=1\r\nsTAKE=2\r\n", scene("a\r\nsTAKE=9\0b"s)), "sSCENE=a  sTAKE=9 b\r\nsTAKE=2\r\n");
}

TEST(Bext, AddedLinesAreGivenUpBeforeAnythingIsCut) {
    BextValues values = scene("new");
    values.circled = true;
    const std::string filler = "sNOTE=" + std::string(222, 'x');
    EXPECT_EQ(updatedText(filler + "\r\n", values), filler + "\r\nsSCENE=new\r\n");  // 242 + 15 do not fit
    EXPECT_EQ(updatedText(filler + "xxxxxxxxxxxxxxx", values),
              filler + "xxxxxxxxxxxxxxx");  // not even a line end is left
    EXPECT_EQ(updatedText("sSCENE=1\r\n" + filler, scene(std::string(40, 'y'))).size(), 256U);
}

TEST(Bext, EditedValuesAreShortenedBeforeALineOfTheRecorderIsLost) {
    const std::string recorders = "sSPEED=025.000-ND\r\nsTAKE=1\r\nsNOTE=old\r\nsTRK1=Boom\r\nsTRK5=Plant\r\n";
    BextValues values;
    values.edited.note = std::string(400, 'n');
    std::string text = updatedText(recorders, values);
    EXPECT_EQ(text.size(), 256U);
    EXPECT_TRUE(text.ends_with("nn\r\nsTRK1=Boom\r\nsTRK5=Plant\r\n")) << text;

    // An overlong value that is added takes no room from the others.
    values.edited.project = std::string(300, 'p');
    values.edited.scene = "12A";
    values.edited.prise = "12";
    values.circled = true;
    text = updatedText(recorders, values);
    EXPECT_EQ(text.size(), 256U);
    for (const char* line : {"sSCENE=12A\r\n", "sTAKE=12\r\n", "sCIRCLED=TRUE\r\n", "sTRK1=Boom\r\n", "sTRK5=Plant\r\n",
                             "sNOTE=nnnnnnnnnnnnnnnnnnnn", "sPROJECT=pppppppppppppppppppp"}) {
        EXPECT_NE(text.find(line), std::string::npos) << line;
    }
    // Lines of one key stay alike.
    text = updatedText("sNOTE=1\r\ndNOTE=2\r\nfree text", [] {
        BextValues longNote;
        longNote.edited.note = std::string(400, 'n');
        return longNote;
    }());
    const std::string half = "NOTE=" + std::string(115, 'n') + "\r\n";
    EXPECT_EQ(text, "s" + half + "d" + half + "free text");
}

TEST(Bext, AnEditedLineWithoutRoomIsLeftOutWhole) {
    const std::string others = "sTRK1=" + std::string(231, 'x') + "\r\n";  // 239 bytes
    BextValues values;
    values.edited.prise = "10";
    EXPECT_EQ(updatedText("sTAKE=9\r\n" + others + "sTRK=8", values), "sTAKE=10\r\n" + others + "sTRK=8");
    EXPECT_EQ(updatedText("sTAKE=9\r\n" + others + "sTRK=888", values), others + "sTRK=888")
        << "no take but no wrong one";
    values.edited.prise = "9";
    values.edited.note = "a long note";
    EXPECT_EQ(updatedText("sNOTE=1\r\n" + others + "T", values), "sNOTE=a long n\r\n" + others + "T")
        << "at least eight bytes of a text";
    EXPECT_EQ(updatedText("sNOTE=1\r\nNOTE=2\r\n" + others, values), "sNOTE=a long no\r\n" + others)
        << "of lines that repeat a key the first";
}

TEST(Bext, TheTextIsNeverCutInsideACharacter) {
    const std::string accents = "é€𝄞";  // two, three and four bytes
    for (std::size_t ahead = 0; ahead < 9; ++ahead) {
        std::string value(ahead, 'x');
        while (value.size() < 300)
            value += accents;
        const std::string text = updatedText("sSCENE=1\r\nsTAKE=1\r\n", scene(value));
        EXPECT_TRUE(isValidUtf8(text)) << ahead;
        EXPECT_GT(text.size(), 252U);
    }
}

TEST(Bext, StrayBytesStayUntilTheTextChanges) {
    Bytes payload = payloadWith("gSCENE=2C\r\n\0\0stray\x05"s);
    EXPECT_EQ(updatedBext(payload, scene("2C")), payload);
    EXPECT_EQ(updatedBext(payload, scene("2D")), payloadWith("gSCENE=2D\r\n"));
}

TEST(Bext, TheTimeReferenceIsWrittenWhereThereIsRoomForIt) {
    BextValues values;
    values.edited.timecode = "25:00:00:00";
    values.edited.framerate = "25";
    values.edited.sampleRate = 48000;
    const Bytes updated = updatedBext(payloadWith("SPEED=1\r\n", 346), values);
    EXPECT_EQ(readLE<std::uint64_t>(updated.data() + bext::timeReferenceOffset), 4'320'000'000U);
    EXPECT_EQ(updatedBext(payloadWith("SPEED=1\r\n", 345), values), payloadWith("SPEED=025.000\r\n", 345));
    EXPECT_EQ(updatedBext(payloadWith("SPEED=1\r\n", 255), values), payloadWith("SPEED=1\r\n", 255));
}

}  // namespace
}  // namespace dravik
