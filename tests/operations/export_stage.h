#pragma once

#include "base/paths.h"
#include "model/folder_scan.h"
#include "operations/export_run.h"
#include "operations/export_services.h"
#include "platform/lame/lame_encoder.h"
#include "platform/media/lazy_aac_encoders.h"
#include "platform/media/lazy_sample_decoder.h"
#include "platform/soxr/soxr_converter.h"
#include "tests/operations/plain_chunks.h"
#include "tests/support/fake_codecs.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <cmath>
#include <cstring>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

namespace dravik::test {

/// A folder of recordings and one for what is made of them, with the real codecs and file operations that can fail.
class ExportStage {
  public:
    ExportStage() {
        std::filesystem::create_directory(source());
        std::filesystem::create_directory(out());
        ops.syncing = false;
    }

    [[nodiscard]] std::filesystem::path source() const { return folder_ / "source"; }
    [[nodiscard]] std::filesystem::path out() const { return folder_ / "out"; }
    [[nodiscard]] ExportServices services() { return {ops, *converters, *aac, *mp3, *decoder}; }
    /// The only take of the source folder.
    [[nodiscard]] GroupeFichiers take() const { return scanFolder(source(), FakeCodecs(), true, {}).at(0); }

    /// Gives the line for the user.
    std::string run(const AnyExportConfiguration& configuration, const TaskContext& task = {}) {
        const ExportServices all = services();
        const OperationContext here = context(task);
        if (const auto* toWav = std::get_if<OperationAudioExportConfiguration>(&configuration)) {
            return OperationsAudio::exportWAV(*toWav, out(), all, here);
        }
        if (const auto* toAac = std::get_if<OperationAudioAACExportConfiguration>(&configuration)) {
            return OperationsAudio::exportAAC(*toAac, out(), all, here);
        }
        return OperationsAudio::exportMP3(std::get<OperationAudioMP3ExportConfiguration>(configuration), out(), all,
                                          here);
    }
    /// What the export says when it refuses; the line for the user in brackets when it does not.
    std::string refusal(const AnyExportConfiguration& configuration) {
        try {
            return "(" + run(configuration) + ")";
        } catch (const std::exception& error) {
            return userText(error);
        }
    }
    [[nodiscard]] OperationContext context(const TaskContext& task) {
        completed.clear();
        begun = false;
        return {ops, task, folders, completed, begun};
    }

    FaultyFileOps ops;
    FolderSyncs folders;
    std::vector<std::filesystem::path> completed;  ///< by the last export
    bool begun = false;
    std::unique_ptr<SampleRateConverters> converters = makeSoxrConverters();
    std::unique_ptr<AacEncoders> aac = makeLazyAacEncoders();
    std::unique_ptr<MP3Encoders> mp3 = makeLameEncoders();
    std::unique_ptr<SampleDecoder> decoder = makeLazySampleDecoder();

  private:
    TempFolder folder_;
};

/// Samples as 32-bit float, frame by frame.
[[nodiscard]] inline Bytes floatBytes(const std::vector<float>& samples) {
    Bytes bytes(samples.size() * sizeof(float));
    std::memcpy(bytes.data(), samples.data(), bytes.size());
    return bytes;
}

/// A sine at a level below full scale, `channels` times the same in each frame.
[[nodiscard]] inline std::vector<float> sine(double hertz, double rate, std::size_t frames, double level = 0.5,
                                             std::size_t channels = 1) {
    std::vector<float> samples;
    samples.reserve(frames * channels);
    for (std::size_t i = 0; i < frames; ++i) {
        const double value = level * std::sin(2 * std::numbers::pi * hertz / rate * static_cast<double>(i));
        samples.insert(samples.end(), channels, static_cast<float>(value));
    }
    return samples;
}

/// A float recording of that many channels.
inline std::filesystem::path writeFloats(const std::filesystem::path& path, const std::vector<float>& samples,
                                         std::uint16_t channels = 1, std::uint32_t rate = 48000) {
    return WavBuilder()
        .fmt({.channels = channels, .rate = rate, .bits = 32, .isFloat = true})
        .chunk("data", floatBytes(samples))
        .write(path);
}

/// What is exported where a test says nothing else.
[[nodiscard]] inline OperationAudioExportConfiguration asWav(const GroupeFichiers& groupe, int bits = 24) {
    OperationAudioExportConfiguration configuration;
    configuration.groupe = groupe;
    configuration.destinationName = "out.wav";
    configuration.bitDepth = bits;
    configuration.isFloat = bits == 32;
    configuration.ditherSeed = 7;
    return configuration;
}
[[nodiscard]] inline OperationAudioMP3ExportConfiguration asMp3(const GroupeFichiers& groupe) {
    OperationAudioMP3ExportConfiguration configuration;
    configuration.groupe = groupe;
    configuration.destinationName = "out.mp3";
    return configuration;
}
[[nodiscard]] inline OperationAudioAACExportConfiguration asAac(const GroupeFichiers& groupe) {
    OperationAudioAACExportConfiguration configuration;
    configuration.groupe = groupe;
    configuration.destinationName = "out.m4a";
    return configuration;
}

}  // namespace dravik::test
