#include "operations/export_metadata.h"

#include "operations/export_validation.h"
#include "operations/operation_audio_error.h"
#include "operations/wave_layout.h"
#include "tests/support/repeated.h"
#include "tests/support/wav_builder.h"

#include <string>

#include <gtest/gtest.h>

namespace dravik {
namespace {

using namespace OperationsAudio;

ExportAdaptation to44100() {
    ExportAdaptation adaptation;
    adaptation.inputRate = 48000;
    adaptation.outputRate = 44100;
    adaptation.bitDepth = 16;
    adaptation.outputName = "A & B.wav";
    OutputTrack track;
    track.numero = track.numeroSource = 3;
    track.canal = 2;
    track.nom = "Boom";
    adaptation.tracks = {track};
    adaptation.own = {{1, std::nullopt}, {2, std::nullopt}, {3, "Boom"}};
    return adaptation;
}

std::string adaptedText(std::string_view ixml, const ExportAdaptation& adaptation = to44100()) {
    const std::vector<RIFFChunk> out = adaptedForExport({{"iXML", toBytes(ixml)}}, adaptation);
    return std::string(asText(out.at(0).payload));
}

TEST(ExportMetadata, BringsTheElementsOfTheDocumentUpToDate) {
    struct {
        const char *what, *before, *after;
    } const cases[] = {
        {"rates and depth, every one of them",
         "<FILE_SAMPLE_RATE>48000</FILE_SAMPLE_RATE><A><FILE_SAMPLE_RATE>1</FILE_SAMPLE_RATE></A>"
         "<TIMESTAMP_SAMPLE_RATE x=\"1\"> 48000\n</TIMESTAMP_SAMPLE_RATE><AUDIO_BIT_DEPTH>24</AUDIO_BIT_DEPTH>",
         "<FILE_SAMPLE_RATE>44100</FILE_SAMPLE_RATE><A><FILE_SAMPLE_RATE>44100</FILE_SAMPLE_RATE></A>"
         "<TIMESTAMP_SAMPLE_RATE x=\"1\"> 44100\n</TIMESTAMP_SAMPLE_RATE><AUDIO_BIT_DEPTH>16</AUDIO_BIT_DEPTH>"},
        {"whatever way they are said in, where they are said and say something else",
         "<FILE_SAMPLE_RATE> 48000.0 </FILE_SAMPLE_RATE><AUDIO_BIT_DEPTH>24bit</AUDIO_BIT_DEPTH>"
         "<TIMESTAMP_SAMPLE_RATE>44100.0</TIMESTAMP_SAMPLE_RATE><AUDIO_BIT_DEPTH/><AUDIO_BIT_DEPTH></AUDIO_BIT_DEPTH>",
         "<FILE_SAMPLE_RATE> 44100 </FILE_SAMPLE_RATE><AUDIO_BIT_DEPTH>16</AUDIO_BIT_DEPTH>"
         "<TIMESTAMP_SAMPLE_RATE>44100.0</TIMESTAMP_SAMPLE_RATE><AUDIO_BIT_DEPTH/><AUDIO_BIT_DEPTH></AUDIO_BIT_DEPTH>"},
        {"nothing that may end elsewhere", "<AUDIO_BIT_DEPTH>24<X>1</X></AUDIO_BIT_DEPTH>",
         "<AUDIO_BIT_DEPTH>24<X>1</X></AUDIO_BIT_DEPTH>"},
        {"each sync point by itself",
         "<SYNC_POINT_LIST><SYNC_POINT><SYNC_POINT_LOW>480</SYNC_POINT_LOW><SYNC_POINT_HIGH>0</SYNC_POINT_HIGH>"
         "<SYNC_POINT_EVENT_DURATION>4800</SYNC_POINT_EVENT_DURATION></SYNC_POINT><SYNC_POINT>"
         "<SYNC_POINT_LOW>0</SYNC_POINT_LOW><SYNC_POINT_HIGH>1</SYNC_POINT_HIGH>"
         "<SYNC_POINT_EVENT_DURATION>x</SYNC_POINT_EVENT_DURATION></SYNC_POINT></SYNC_POINT_LIST>",
         "<SYNC_POINT_LIST><SYNC_POINT><SYNC_POINT_LOW>441</SYNC_POINT_LOW><SYNC_POINT_HIGH>0</SYNC_POINT_HIGH>"
         "<SYNC_POINT_EVENT_DURATION>4410</SYNC_POINT_EVENT_DURATION></SYNC_POINT><SYNC_POINT>"
         "<SYNC_POINT_LOW>3946001203</SYNC_POINT_LOW><SYNC_POINT_HIGH>0</SYNC_POINT_HIGH>"
         "<SYNC_POINT_EVENT_DURATION>x</SYNC_POINT_EVENT_DURATION></SYNC_POINT></SYNC_POINT_LIST>"},
        {"file names, but not the original one",
         "<FILE_NAME>old</FILE_NAME><FILENAME></FILENAME><CURRENT_FILENAME>x</CURRENT_FILENAME>"
         "<ORIGINAL_FILENAME>first.wav</ORIGINAL_FILENAME>",
         "<FILE_NAME>A &amp; B.wav</FILE_NAME><FILENAME>A &amp; B.wav</FILENAME>"
         "<CURRENT_FILENAME>A &amp; B.wav</CURRENT_FILENAME><ORIGINAL_FILENAME>first.wav</ORIGINAL_FILENAME>"},
        {"mixer automation", "a<MIXER_SETTINGS n=\"1\"><X>1</X>\n</MIXER_SETTINGS>b<mixer_settings/>c", "abc"},
        {"a timestamp over 32 bits",
         "<TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI>1</TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI>"
         "<TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO>25032704</TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO>",
         "<TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI>0</TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI>"
         "<TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO>3969000000</TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO>"},
        {"the copy of the time reference",
         "<BEXT><BWF_TIME_REFERENCE_LOW>480</BWF_TIME_REFERENCE_LOW>"
         "<BWF_TIME_REFERENCE_HIGH>0</BWF_TIME_REFERENCE_HIGH></BEXT>",
         "<BEXT><BWF_TIME_REFERENCE_LOW>441</BWF_TIME_REFERENCE_LOW>"
         "<BWF_TIME_REFERENCE_HIGH>0</BWF_TIME_REFERENCE_HIGH></BEXT>"},
        {"the tracks", "<TRACK_LIST a=\"b\"><TRACK></TRACK></TRACK_LIST>",
         "<TRACK_LIST>\n  <TRACK_COUNT>1</TRACK_COUNT>\n  <TRACK>\n    <CHANNEL_INDEX>3</CHANNEL_INDEX>\n"
         "    <INTERLEAVE_INDEX>1</INTERLEAVE_INDEX>\n    <NAME>Boom</NAME>\n  </TRACK>\n</TRACK_LIST>"},
        {"nothing else, bytes that are no text included", "<X>\xFF</X> <NOTE>48000</NOTE>  ",
         "<X>\xFF</X> <NOTE>48000</NOTE>  "},
    };
    for (const auto& c : cases)
        EXPECT_EQ(adaptedText(c.before), c.after) << c.what;
}

TEST(ExportMetadata, AddsTheUpperHalfThatATimestampComesToNeed) {
    ExportAdaptation up = to44100();
    up.outputRate = 192000;
    const std::string out = adaptedText(
        "<BWFXML><TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO>2147483648</TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO></BWFXML>", up);
    EXPECT_NE(out.find("<TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI>2</"), std::string::npos) << out;
    EXPECT_NE(out.find("<TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO>0</"), std::string::npos) << out;
}

TEST(ExportMetadata, StaysLinearInHostileDocuments) {
    for (const std::string_view unit :
         {"<MIXER_SETTINGS>", "<FILE_NAME>", "<FILE_NAME/>", "<FILE_SAMPLE_RATE>1", "<TRACK_LIST>", "</MIXER_SETTINGS>",
          "<SYNC_POINT>", "<SYNC_POINT></SYNC_POINT>"}) {
        EXPECT_FALSE(adaptedText(test::repeated(unit, 4UL << 20U)).empty());
    }
}

TEST(ExportMetadata, MovesPositionsInOtherChunksToTheNewRate) {
    const auto samplesAt = [](const Bytes& payload, std::size_t offset) {
        return readLE<std::uint32_t>(payload.data() + offset);
    };
    Bytes fact(4), unknown = toBytes("48000");
    // A label of odd size, then a labelled stretch, then one whose size lies.
    Bytes adtl = toBytes("adtllabl....1234A");
    writeLE(adtl.data() + 8, std::uint32_t{5});
    append(adtl, toBytes(std::string_view("\0ltxt....1234LENGrgn ", 21)));
    writeLE(adtl.data() + 22, std::uint32_t{12});
    writeLE(adtl.data() + 30, std::uint32_t{4800});
    append(adtl, toBytes("ltxt\xFF\xFF\xFF\xFF"
                         "123"));
    writeLE(fact.data(), std::uint32_t{48000});
    const std::vector<RIFFChunk> out = adaptedForExport(
        {{"ds64", Bytes(28)},
         {"bext",
          test::bextPayload({.description = "sSCENE=1\r\nsTRK1=A\r\nsTRK3=Old\r\n", .timeReference = 0x2'0000'0000U})},
         {"cue ", test::cuePayload({{1, 480, {}}, {2, 0xFFFFFFFFU, {}}})},
         {"fact", fact},
         {"LIST", adtl},
         {"LIST", toBytes("INFOltxt....1234LENG")},
         {"abcd", unknown}},
        to44100());
    ASSERT_EQ(out.size(), 6U) << "what only belongs into large files is left out";
    EXPECT_EQ(readLE<std::uint64_t>(out[0].payload.data() + 338), 7892002406U);
    EXPECT_EQ(asText(out[0].payload).substr(0, 24), std::string_view("sSCENE=1\r\nsTRK3=Boom\r\n\0\0", 24));
    EXPECT_EQ(samplesAt(out[1].payload, 4 + 20), 441U);
    EXPECT_EQ(samplesAt(out[1].payload, 28 + 20), 3946001202U);
    EXPECT_EQ(samplesAt(out[2].payload, 0), 44100U);
    writeLE(adtl.data() + 30, std::uint32_t{4410});
    EXPECT_EQ(asText(out[3].payload), asText(adtl));
    EXPECT_EQ(asText(out[4].payload), "INFOltxt....1234LENG");
    EXPECT_EQ(out[5].payload, unknown);
}

TEST(ExportMetadata, RescalesExactlyAndStopsAtTheEnd) {
    EXPECT_EQ(rescaledSamples(1, 2, 1), 1U) << "half away from zero";
    EXPECT_EQ(rescaledSamples(172'972'800'000'000'000U, 48000, 44100), 158'918'760'000'000'000U);
    EXPECT_EQ(rescaledSamples(~std::uint64_t{0}, 8000, 192000), ~std::uint64_t{0});
    EXPECT_EQ(rescaledSamples(0xFFFFFFFEU, 0xFFFFFFFFU, 0xFFFFFFFFU - 1), 0xFFFFFFFDU);
}

TEST(ExportValidation, RefusesAFileThatIsNotWhatItSays) {
    const char* const container = "The exported file is not a readable RIFF/WAVE file.";
    const char* const format = "The exported WAV format does not match the requested sample rate or bit depth.";
    const char* const chunk = "The exported WAV contains an invalid metadata chunk.";
    const auto wav = [](const test::Pcm& pcm, std::string_view ixml) {
        return test::WavBuilder().fmt(pcm).chunk("iXML", ixml).audio(10).bytes();
    };
    const test::Pcm right = {.rate = 44100, .bits = 16};
    Bytes cut = wav(right, "<A/>");
    cut.resize(cut.size() - 4);
    Bytes wrongSize = wav(right, "<A/>");
    writeLE(wrongSize.data() + 4, std::uint32_t{100000});
    struct {
        const char* what;
        Bytes file;
        std::string message;
    } const cases[] = {
        {"no bytes", {}, container},
        {"another form", test::WavBuilder("RF64").fmt(right).audio(10).bytes(), container},
        {"no format", test::WavBuilder().audio(10).bytes(), container},
        {"another rate", wav({.rate = 48000, .bits = 16}, ""), format},
        {"another depth", wav({.rate = 44100, .bits = 24}, ""), format},
        {"another kind", wav({.rate = 44100, .bits = 32, .isFloat = true}, ""), format},
        {"cut short", cut, chunk},
        {"a wrong size", wrongSize, chunk},
        {"rate", wav(right, "<FILE_SAMPLE_RATE>48000</FILE_SAMPLE_RATE>"),
         "The exported iXML FILE_SAMPLE_RATE does not match the WAV audio format."},
        {"timestamp rate, the second",
         wav(right,
             "<TIMESTAMP_SAMPLE_RATE>44100</TIMESTAMP_SAMPLE_RATE>"
             "<TIMESTAMP_SAMPLE_RATE>1</TIMESTAMP_SAMPLE_RATE>"),
         "The exported iXML TIMESTAMP_SAMPLE_RATE does not match the WAV audio format."},
        {"depth", wav(right, "<AUDIO_BIT_DEPTH>24</AUDIO_BIT_DEPTH>"),
         "The exported iXML AUDIO_BIT_DEPTH does not match the WAV audio format."},
        {"name", wav(right, "<CURRENT_FILENAME>other.wav</CURRENT_FILENAME>"),
         "The exported iXML CURRENT_FILENAME does not describe the output file."},
        {"mixer", wav(right, "<MIXER_SETTINGS>"), "The exported iXML still contains mixer automation metadata."},
        {"all right",
         wav(right,
             "<FILE_SAMPLE_RATE> 44100 </FILE_SAMPLE_RATE><AUDIO_BIT_DEPTH></AUDIO_BIT_DEPTH>"
             "<CURRENT_FILENAME>a&amp;b.wav</CURRENT_FILENAME>"),
         ""},
    };
    for (const auto& c : cases) {
        std::string said;
        try {
            validateWavExport(MemorySource(c.file), 44100, {16, false}, "a&b.wav");
        } catch (const OperationAudioError& error) {
            said = error.what();
        }
        EXPECT_EQ(said, c.message) << c.what;
    }
}

}  // namespace
}  // namespace dravik
