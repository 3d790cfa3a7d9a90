#include "operations/batch_rename_plan.h"

#include <gmock/gmock.h>

namespace dravik {
namespace {

using namespace OperationsAudio;
using testing::HasSubstr;

using B = BlocRenommage;
using T = TokenRenommage;

InfoFichier fullFile() {
    InfoFichier file;
    file.url = "/day/12A-T03.WAV";
    file.project = "Sun &amp; Rain";
    file.scene = " 12/A ";
    file.prise = "3";
    file.tape = "a:b\\c\nx\x7F\xC2\x85";
    file.circled = file.wild = true;
    file.timecode = "10:12:44:03";
    file.recordingDate = RecordingDate{2024, 5, 4};
    file.framerate = "29.97 DF";
    file.bits = 24;
    file.sampleRate = 44100;
    file.nomsPistes = {{1, "Boom"}, {2, " "}, {4, "Lav &amp; Anna 1/2"}};
    return file;
}

TEST(TokenText, IsTheFilesValueAsAPartOfAName) {
    const InfoFichier full = fullFile();
    InfoFichier none;
    none.url = "/day/x.wav";
    const struct {
        T token;
        const char* text;
    } cases[] = {
        {T::originalName, "12A-T03"},
        {T::project, "Sun & Rain"},
        {T::trackName, "Boom-Lav & Anna 1-2"},
        {T::scene, "12-A"},
        {T::take, "3"},
        {T::tape, "a-b-c-x--"},
        {T::startTimecode, "10.12.44.03"},
        {T::recordingDate, "2024-05-04"},
        {T::circled, "CIRC"},
        {T::wild, "WILD"},
        {T::fps, "29.97DF"},
        {T::bits, "24bit"},
        {T::sampleRate, "44.1kHz"},
    };
    for (const auto& [token, text] : cases) {
        EXPECT_EQ(tokenText(token, full), text);
        EXPECT_EQ(tokenText(token, none), token == T::originalName ? "x" : "") << text;
    }
    InfoFichier other = full;
    other.sampleRate = 48000;
    other.framerate = "25";
    other.url = "/day/a:b.c.wav";
    EXPECT_EQ(tokenText(T::sampleRate, other), "48kHz");
    EXPECT_EQ(tokenText(T::fps, other), "25");
    EXPECT_EQ(tokenText(T::originalName, other), "a-b.c");
    other.scene = "<![CDATA[A & B]]> &#233;<!-- no -->";
    EXPECT_EQ(tokenText(T::scene, other), "A & B \xC3\xA9");
}

TEST(AssembledName, TakesTheSeparatorsOfEmptyTokensAlong) {
    InfoFichier file = fullFile();
    file.circled = file.wild = false;
    file.tape.reset();
    const struct {
        const char *pattern, *name, *withSeparators;
    } cases[] = {
        {"{scene}_{take}", "12-A_3.WAV", "12-A_3.WAV"},
        {"{scene}_{circled}_{take}", "12-A_3.WAV", "12-A__3.WAV"},
        {"{scene}_{circled}_{wild}_{tape}", "12-A.WAV", "12-A___.WAV"},
        {"{circled}_{scene}", "12-A.WAV", "_12-A.WAV"},
        {"{circled}_{wild}-{scene}", "12-A.WAV", "_-12-A.WAV"},
        {"{scene}_-{circled}-{take}", "12-A-3.WAV", "12-A_--3.WAV"},
        {"_{scene}_", "_12-A_.WAV", "_12-A_.WAV"},
        {"_{tape}{scene}", "12-A.WAV", "_12-A.WAV"},
        {"T{tape}_{take}", "T_3.WAV", "T_3.WAV"},
        {"{take} {tape}", "3 .WAV", "3 .WAV"},
        {"{take}{separator: }{tape}", "3.WAV", "3 .WAV"},
        {"{tape}", "", ""},
        {"{tape}_{wild}", "", "_.WAV"},
        {" ", "", ""},
        {"", "", ""},
    };
    for (const auto& [pattern, name, withSeparators] : cases) {
        const RenamePattern blocks = parsePattern(pattern);
        EXPECT_EQ(assembledName(blocks, file, EmptyTokens::takeSeparatorsAlong), name) << pattern;
        EXPECT_EQ(assembledName(blocks, file, EmptyTokens::leaveSeparators), withSeparators) << pattern;
    }
    file.url = "/day/none";
    EXPECT_EQ(assembledName(parsePattern("{take}"), file, EmptyTokens::leaveSeparators), "3");
}

TEST(RenamePattern, ReadsBackAsWrittenWhateverItsTextsHold) {
    const struct {
        RenamePattern blocks;
        const char* text;
    } cases[] = {
        {{}, ""},
        {{B::token(T::scene), B::separateur("_"), B::token(T::take), B::separateur("-"), B::token(T::trackName)},
         "{scene}_{take}-{trackName}"},
        {{B::texte("Day {1}"), B::token(T::sampleRate)}, "Day {{1}}{sampleRate}"},
        {{B::texte("a_b"), B::texte("c"), B::texte("")}, "{text:a_b}{text:c}{text:}"},
        {{B::token(T::fps), B::texte("}"), B::separateur(""), B::texte("}{")}, "{fps}{text:}}}{separator:}{text:}}{{}"},
        {{B::separateur(" - "), B::texte("{text:x}")}, "{separator: - }{{text:x}}"},
        {{B::texte("{")}, "{{"},
    };
    for (const auto& [blocks, text] : cases) {
        EXPECT_EQ(patternText(blocks), text);
        EXPECT_TRUE(isSamePattern(parsePattern(text), blocks)) << text;
    }
    EXPECT_TRUE(isSamePattern(parsePattern("{TRACKNAME}"), {B::token(T::trackName)}));
    EXPECT_NE(parsePattern("{take}").front().id, parsePattern("{take}").front().id);
}

TEST(RenamePattern, ThatCannotBeReadIsRefusedWithTheReason) {
    const struct {
        const char *text, *reason;
    } cases[] = {
        {"{scenes}", "There is no token \"scenes\"; there are originalName, project, trackName, scene, take, tape, "},
        {"{}", "There is no token \"\""},
        {"{ scene }", "There is no token \" scene \""},
        {"{scene", "without its \"}\""},
        {"{text:a}}", "without its \"}\""},
        {"a}b", "without its \"{\""},
        {"{text:a{b}", "written twice"},
    };
    for (const auto& [text, reason] : cases) {
        try {
            static_cast<void>(parsePattern(text));
            ADD_FAILURE() << text;
        } catch (const RenamePatternError& error) {
            EXPECT_THAT(error.what(), HasSubstr(reason));
        }
    }
}

TEST(PaletteRenommage, OffersEveryTokenOnceAndThreeMore) {
    std::vector<std::string> labels;
    std::set<TokenRenommage> tokens;
    std::vector<std::string> others;
    for (const PaletteRenommage button : allPaletteRenommage) {
        labels.emplace_back(label(button));
        const BlocRenommage block = newBlock(button);
        if (const auto* token = std::get_if<TokenRenommage>(&block.contenu)) {
            EXPECT_TRUE(tokens.insert(*token).second);
            EXPECT_EQ(label(*token), label(button));
        } else {
            others.push_back(patternText({block}));
        }
    }
    EXPECT_THAT(labels, testing::ElementsAre("Original Name", "Project", "Scene", "Take", "Tape", "Recording Date",
                                             "Start Timecode", "Track Name", "Circled", "Wild", "fps", "bits",
                                             "samplerate", "Separator", "Dash", "Free Text"));
    EXPECT_EQ(tokens.size(), 13U);
    EXPECT_THAT(others, testing::ElementsAre("_", "-", "{text:}"));
    EXPECT_EQ(shortLabel(PaletteRenommage::recordingDate), "Rec Date");
    EXPECT_EQ(shortLabel(PaletteRenommage::startTimecode), "Start TC");
}

TEST(PossibleName, HoldsNoFolderNoControlCharacterAndIsNotHidden) {
    for (const char* name : {"a.wav", "a..wav", "caf\xC3\xA9 \"1\".wav", "a\\b.wav", "\xFF.wav"})
        EXPECT_TRUE(isPossibleName(name)) << name;
    for (const char* name : {"", ".", "..", ".a.wav", "..wav", "a/b.wav", "a:b.wav", "a\n.wav", "\x7F.wav"})
        EXPECT_FALSE(isPossibleName(name)) << name;
    EXPECT_TRUE(isPossibleName(std::string(255, 'x')));
    EXPECT_FALSE(isPossibleName(std::string(256, 'x')));
}

}  // namespace
}  // namespace dravik
