#include "platform/sdl/sdl_audio_output.h"
#include "tests/playback/fake_take.h"
#include "tests/playback/player/player_stage.h"
#include "tests/playback/reference_mix.h"
#include "tests/support/files.h"

#include <cstring>

#include <gtest/gtest.h>

namespace dravik::test {
namespace {

/// The interleaved floats in a file that the disk driver has written.
std::vector<std::array<float, 2>> framesIn(const std::filesystem::path& file) {
    const Bytes bytes = readFile(file);
    std::vector<std::array<float, 2>> frames(bytes.size() / sizeof(std::array<float, 2>));
    std::memcpy(frames.data(), bytes.data(), frames.size() * sizeof(frames[0]));
    return frames;
}

TEST(SdlOutput, WhatComesOutIsTheReferenceMixToTheEnd) {
    const TempFolder folder;
    const std::filesystem::path written = folder / "out.raw";
    qputenv("SDL_AUDIODRIVER", "disk");
    qputenv("SDL_DISKAUDIOFILE", written.c_str());
    qputenv("SDL_DISKAUDIODELAY", "0");
    const auto channels = noise(6, 50000);
    std::vector<std::array<double, 2>> wanted;
    {
        FakeSettings settings;
        const std::unique_ptr<SampleDecoder> decoder = makeLazySampleDecoder();
        LecteurCoreAudio player(settings, *decoder, {}, sdlAudioOutputs());
        player.load(takeOfFiles({writeFloats(folder / "take.wav", channels)}));
        ASSERT_TRUE(comes([&] { return player.pret(); }));
        player.setFader(0, -20);
        player.setPan(1, 0.8F);
        player.toggleMute(2);
        ASSERT_TRUE(player.setPaireMS(3, 4, OrientationMonitoringMS::sm, 0.6F));
        wanted = referenceMix(player.mixer(), channels);
        player.play();
        ASSERT_TRUE(comes([&] { return !player.enLecture(); }));
        EXPECT_EQ(player.frameCourante(), 50000);
    }
    const auto out = framesIn(written);
    // Silence before and behind; the first frame of noise is not silent.
    std::size_t begin = 0;
    while (begin < out.size() && out[begin][0] == 0 && out[begin][1] == 0)
        ++begin;
    ASSERT_GE(out.size(), begin + wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        ASSERT_NEAR(double{out[begin + i][0]}, wanted[i][0], 2e-5) << i;
        ASSERT_NEAR(double{out[begin + i][1]}, wanted[i][1], 2e-5) << i;
    }
    for (std::size_t i = begin + wanted.size(); i < out.size(); ++i)
        ASSERT_EQ(out[i], (std::array{0.0F, 0.0F})) << i;
}

TEST(SdlOutput, AnOutputThatCannotBeHadSaysSo) {
    qputenv("SDL_AUDIODRIVER", "there is no such driver");
    const MakeAudioOutput make = sdlAudioOutputs();
    const auto output = make([] {});
    struct Silence final : AudioSource {
        void render(std::span<float>, std::span<float>) noexcept override {}
    } silence;
    try {
        output->start(48000, silence);
        ADD_FAILURE() << "was started";
    } catch (const AudioOutputError& error) {
        EXPECT_TRUE(std::string(error.what()).starts_with("The audio output could not be opened: ")) << error.what();
    }
    output->stop();
}

}  // namespace
}  // namespace dravik::test
