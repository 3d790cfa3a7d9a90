#include "app/export_audio_session_state.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace dravik {
namespace {

GroupeFichiers takeOf(int tracks) {
    InfoFichier file;
    file.url = "/day/take.wav";
    file.channels = tracks;
    GroupeFichiers groupe;
    groupe.nom = "take";
    groupe.estPoly = true;
    groupe.fichiers = Fichiers({file});
    return groupe;
}

/// "mono 1+2 -6 dB", tracks from 1.
std::string textOf(const OperationAudioExportRouting& route) {
    if (std::holds_alternative<routing::Poly>(route)) return "poly";
    if (const auto* stereo = std::get_if<routing::Stereo>(&route))
        return fmt::format("stereo {},{}", stereo->left + 1, stereo->right + 1);
    const auto& mono = std::get<routing::Mono>(route);
    return mono.second ? fmt::format("mono {}+{} {} dB", mono.first + 1, *mono.second + 1, mono.averageGainDB)
                       : fmt::format("mono {}", mono.first + 1);
}

std::string textOf(const AnyExportConfiguration& any) {
    if (const auto* wav = std::get_if<OperationAudioExportConfiguration>(&any)) {
        return fmt::format("WAV, {}, {}{}, {} Hz", textOf(wav->routing), wav->bitDepth, wav->isFloat ? " float" : "",
                           wav->sampleRate.value_or(0));
    }
    if (const auto* mp3 = std::get_if<OperationAudioMP3ExportConfiguration>(&any)) {
        return fmt::format("MP3, {}, {} kbit/s, {} Hz", textOf(mp3->routing), mp3->bitRate,
                           mp3->sampleRate.value_or(0));
    }
    const auto& aac = std::get<OperationAudioAACExportConfiguration>(any);
    return fmt::format("AAC, {}, {} kbit/s", textOf(aac.routing), aac.bitRate);
}

using Format = ExportAudioFormat;

TEST(ExportChoice, WithoutARouteIsAllTracksOfAWavAndTheFirstTwoOfAListeningCopy) {
    const struct {
        Format format;
        int tracks;
        const char* given;
    } cases[] = {{Format::wav, 3, "WAV, poly, 24, 0 Hz"},
                 {Format::mp3, 3, "MP3, stereo 1,2, 256 kbit/s, 0 Hz"},
                 {Format::aac, 1, "AAC, mono 1, 256 kbit/s"}};
    for (const auto& [format, tracks, given] : cases) {
        ExportChoice choice;
        choice.format = format;
        EXPECT_EQ(textOf(OperationsAudio::configurationOf(choice, takeOf(tracks), "take.out")), given);
    }
}

}  // namespace
}  // namespace dravik
