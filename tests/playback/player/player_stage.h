#pragma once

#include "model/groupe_fichiers.h"
#include "platform/media/lazy_sample_decoder.h"
#include "playback/lecteur_core_audio.h"
#include "tests/playback/offline_output.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <QSignalSpy>
#include <QTest>
#include <bit>
#include <filesystem>
#include <string>
#include <vector>

namespace dravik::test {

struct FakeSettings final : PlaybackSettings {
    bool loop = false;
    std::string pause = "stay", solo = "OR", nudge = "1f";

    [[nodiscard]] bool lectureEnBoucle() const override { return loop; }
    void setLectureEnBoucle(bool on) override { loop = on; }
    [[nodiscard]] std::string pauseComportement() const override { return pause; }
    [[nodiscard]] std::string soloComportement() const override { return solo; }
    [[nodiscard]] std::string nudgeValeur() const override { return nudge; }
};

/// A float recording of these channels, which are of one length.
inline std::filesystem::path writeFloats(const std::filesystem::path& path,
                                         const std::vector<std::vector<float>>& channels) {
    Bytes data;
    data.reserve(channels.size() * channels.front().size() * sizeof(float));
    for (std::size_t i = 0; i < channels.front().size(); ++i) {
        for (const auto& channel : channels)
            appendLE(data, std::bit_cast<std::uint32_t>(channel[i]));
    }
    return WavBuilder()
        .fmt({.channels = static_cast<std::uint16_t>(channels.size()), .bits = 32, .isFloat = true})
        .chunk("data", data)
        .write(path);
}

/// The take of these files: one poly file, or a mono set.
inline GroupeFichiers takeOfFiles(const std::vector<std::filesystem::path>& files) {
    GroupeFichiers take;
    take.estPoly = files.size() == 1;
    take.framerate = "25";
    take.timecode = "10:00:00:00";
    std::vector<InfoFichier> fichiers;
    for (const auto& file : files)
        fichiers.emplace_back().url = file;
    take.fichiers = fichiers;
    return take;
}

/// Waits for what the main thread has been promised.
template <typename Condition>
bool comes(Condition condition) {
    return QTest::qWaitFor(condition, 20000);
}

}  // namespace dravik::test
