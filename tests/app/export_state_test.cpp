#include "app/export_audio_session_state.h"
#include "app/time_left.h"
#include "tests/support/temp_folder.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace dravik {
namespace {

using Mode = ExportAudioChannelMode;
using Format = ExportAudioFormat;

/// A take of one poly file, or of mono files.
GroupeFichiers take(int tracks, bool poly) {
    GroupeFichiers groupe;
    groupe.estPoly = poly;
    InfoFichier file;
    file.channels = poly ? tracks : 1;
    groupe.fichiers = std::vector<InfoFichier>(poly ? 1 : static_cast<std::size_t>(tracks), file);
    return groupe;
}

std::string said(const OperationAudioExportRouting& route) {
    if (const auto* stereo = std::get_if<routing::Stereo>(&route))
        return fmt::format("stereo {},{}", stereo->left, stereo->right);
    const auto* mono = std::get_if<routing::Mono>(&route);
    if (mono == nullptr) return "poly";
    if (!mono->second) return fmt::format("mono {}", mono->first);
    return fmt::format("mono {}+{} {} dB", mono->first, *mono->second, mono->averageGainDB);
}

/// What the engine is given, in one line: "wav poly 24", "mp3 stereo 0,1 256 48000", "aac mono 2 320".
std::string said(const AnyExportConfiguration& asked) {
    const auto rate = [](std::optional<double> hertz) { return hertz ? fmt::format(" {}", *hertz) : std::string(); };
    if (const auto* wav = std::get_if<OperationAudioExportConfiguration>(&asked)) {
        return fmt::format("wav {} {}{}{}", said(wav->routing), wav->bitDepth, wav->isFloat ? "f" : "",
                           rate(wav->sampleRate));
    }
    if (const auto* mp3 = std::get_if<OperationAudioMP3ExportConfiguration>(&asked))
        return fmt::format("mp3 {} {}{}", said(mp3->routing), mp3->bitRate, rate(mp3->sampleRate));
    const auto& aac = std::get<OperationAudioAACExportConfiguration>(asked);
    return fmt::format("aac {} {}", said(aac.routing), aac.bitRate);
}

ExportAudioSessionState stateOf(Mode mode, Format format) {
    ExportAudioSessionState state;
    state.modeCanaux = mode;
    state.format = format;
    return state;
}

TEST(ExportState, IsHandedToTheEngineAsTheFormatAndTheTakeAllow) {
    const auto with = [](ExportAudioSessionState state, auto change) {
        change(state);
        return state;
    };
    using State = ExportAudioSessionState;
    const State mono = stateOf(Mode::mono, Format::wav), stereo = stateOf(Mode::stereo, Format::wav),
                mp3 = stateOf(Mode::stereo, Format::mp3), aac = stateOf(Mode::stereo, Format::aac);
    const struct {
        State state;
        int tracks;
        const char* given;
    } cases[] = {
        {State(), 4, "wav poly 24"},
        {State(), 1, "wav poly 24"},
        {with(State(), [](State& one) { one.profondeurWAV = ExportWAVBitDepth::pcm16; }), 4, "wav poly 16"},
        {with(State(), [](State& one) { one.profondeurWAV = ExportWAVBitDepth::float32; }), 4, "wav poly 32f"},
        {with(State(), [](State& one) { one.frequence = ExportSampleRate::fixed(96000); }), 4, "wav poly 24 96000"},
        {with(State(), [](State& one) { one.frequence = ExportSampleRate::fixed(7); }), 4, "wav poly 24"},

        {mono, 4, "wav mono 0 24"},
        {with(mono, [](State& one) { one.pisteMonoSource1 = 2; }), 4, "wav mono 2 24"},
        {with(mono, [](State& one) { one.pisteMonoSource2 = 3; }), 4, "wav mono 0+3 -3 dB 24"},
        {with(mono,
              [](State& one) {
                  one.pisteMonoSource1 = 1;
                  one.pisteMonoSource2 = 0;
                  one.gainMoyenneMono = ExportMonoAverageGain::minus6;
              }),
         2, "wav mono 1+0 -6 dB 24"},
        {with(mono,
              [](State& one) {
                  one.pisteMonoSource1 = 2;
                  one.pisteMonoSource2 = 3;
              }),
         1, "wav mono 0 24"},

        {stereo, 2, "wav stereo 0,1 24"},
        {with(stereo,
              [](State& one) {
                  one.pisteGauche = 3;
                  one.pisteDroite = 2;
              }),
         4, "wav stereo 3,2 24"},
        {stereo, 1, "wav mono 0 24"},

        {mp3, 4, "mp3 stereo 0,1 256"},
        {stateOf(Mode::polyWAV, Format::mp3), 4, "mp3 stereo 0,1 256"},
        {with(mp3, [](State& one) { one.debit = 320; }), 4, "mp3 stereo 0,1 320"},
        {with(mp3, [](State& one) { one.debit = 96; }), 4, "mp3 stereo 0,1 256"},
        {with(mp3, [](State& one) { one.frequence = ExportSampleRate::fixed(44100); }), 4, "mp3 stereo 0,1 256 44100"},
        {with(mp3, [](State& one) { one.frequence = ExportSampleRate::fixed(96000); }), 4, "mp3 stereo 0,1 256"},

        {stateOf(Mode::polyWAV, Format::aac), 1, "aac mono 0 256"},
        {with(aac, [](State& one) { one.debit = 96; }), 4, "aac stereo 0,1 96"},
        {with(aac, [](State& one) { one.frequence = ExportSampleRate::fixed(44100); }), 4, "aac stereo 0,1 256"},
    };
    for (const auto& [state, tracks, given] : cases) {
        for (const bool poly : {true, false})
            EXPECT_EQ(said(OperationsAudio::configurationOf(choiceOf(state), take(tracks, poly), "new")), given)
                << "poly: " << poly;
    }
}

TEST(ExportState, WhatIsKeptComesBackAndWhatIsNoChoiceDoesNot) {
    const test::TempFolder folder;
    UserDefaults settings(folder / "settings.ini");
    EXPECT_EQ(rememberedExportState(settings), ExportAudioSessionState());
    ExportAudioSessionState state = stateOf(Mode::mono, Format::mp3);
    state.profondeurWAV = ExportWAVBitDepth::float32;
    state.frequence = ExportSampleRate::fixed(48000);
    state.debit = 128;
    state.gainMoyenneMono = ExportMonoAverageGain::minus6;
    state.pisteMonoSource1 = 4;
    state.pisteMonoSource2 = 2;
    state.pisteGauche = 3;
    state.pisteDroite = 0;
    state.appliquerTous = true;
    state.sourcesDesactivees = {"/day/A.wav"};
    rememberExportState(settings, state);
    state.sourcesDesactivees.clear();
    EXPECT_EQ(rememberedExportState(UserDefaults(folder / "settings.ini")), state);
    state.pisteMonoSource1.reset();
    state.frequence = ExportSampleRate::original();
    rememberExportState(settings, state);
    EXPECT_EQ(rememberedExportState(settings), state) << "what is taken back does not come back";

    for (const char* key : {"exportModeCanaux", "exportFormat", "exportProfondeurWAV", "exportFrequence", "exportDebit",
                            "exportGainMoyenneMono", "exportPisteMonoSource1", "exportPisteMonoSource2",
                            "exportPisteGauche", "exportPisteDroite"}) {
        ASSERT_TRUE(settings.stored(QLatin1String(key)).isValid() || QLatin1String(key).contains(QLatin1String("1")) ||
                    QLatin1String(key) == QLatin1String("exportFrequence"))
            << key;
        for (const char* hostile : {"of a later version", "-1", "99999999999999999999", "7 and more"}) {
            settings.store(QLatin1String(key), QLatin1String(hostile));
            const ExportAudioSessionState read = rememberedExportState(settings);
            EXPECT_EQ(read, read.allowed()) << key << ": " << hostile;
            EXPECT_GE(read.pisteGauche, 0);
            EXPECT_GE(read.pisteDroite, 0);
            EXPECT_GE(read.pisteMonoSource2.value_or(0), 0);
        }
    }
    ExportAudioSessionState standard;
    standard.appliquerTous = true;
    EXPECT_EQ(rememberedExportState(settings), standard) << "all of it is as if it had never been kept";
}

TEST(TimeLeft, IsToldWhenItNoLongerJumps) {
    const struct {
        std::int64_t elapsed;
        double fraction;
        const char* text;
    } cases[] = {{999, 0.5, ""},
                 {60'000, 0.019, ""},
                 {0, 0, ""},
                 {1000, 0.5, "1 s left"},
                 {59'000, 0.5, "59 s left"},
                 {59'400, 0.5, "59 s left"},
                 {59'600, 0.5, "1 min left"},
                 {60'000, 0.5, "1 min left"},
                 {61'000, 0.5, "2 min left"},
                 {120'000, 0.5, "2 min left"},
                 {1000, 0.02, "49 s left"},
                 {5000, 1, "1 s left"},
                 {5000, 1.5, "1 s left"}};
    for (const auto& [elapsed, fraction, text] : cases)
        EXPECT_EQ(timeLeft(elapsed, fraction), QLatin1String(text)) << elapsed << " " << fraction;
}

}  // namespace
}  // namespace dravik
