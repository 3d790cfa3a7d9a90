#include "operations/aac_export.h"

#include "base/paths.h"
#include "operations/export_destination.h"
#include "operations/export_pipeline.h"
#include "operations/listening_copy.h"
#include "operations/operation_audio_error.h"
#include "operations/source_states.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>

#include <fmt/format.h>

namespace dravik::OperationsAudio {
namespace {

const ExportAudioTexts texts = {
    "AAC export stopped because the source reader returned an empty buffer before EOF.", {}, {}, {}};

/// What is not absent of a take's name, in one line.
std::string commentOf(const GroupeFichiers& groupe) {
    std::string comment;
    const auto add = [&](std::string_view label, const std::optional<std::string>& value) {
        if (!value || value->empty()) return;
        comment += fmt::format("{}{}: {}", comment.empty() ? "" : ", ", label, displayName(*value));
    };
    add("Project", groupe.project);
    add("Scene", groupe.scene);
    add("Take", groupe.prise);
    return comment;
}

/// What is decided before the file is created.
struct Preparation {
    Preparation(const OperationAudioAACExportConfiguration& configuration, const std::filesystem::path& folder,
                const ExportServices& services);

    std::filesystem::path destination;
    std::optional<ExportPCMReader> reader;
    AacSettings settings;
};

Preparation::Preparation(const OperationAudioAACExportConfiguration& configuration, const std::filesystem::path& folder,
                         const ExportServices& services) {
    if (!isMonoOrStereo(configuration.routing)) {
        throw OperationAudioError::groupeIncompatible("AAC export supports Mono or Stereo only.");
    }
    if (!hasExtension(configuration.destinationName, ".m4a")) {
        throw OperationAudioError::groupeIncompatible("AAC exports must use the .m4a extension.");
    }
    destination = exportDestination(services.ops, configuration.groupe, folder, configuration.destinationName);
    reader.emplace(configuration.groupe, configuration.routing);
    if (reader->frameLength() == 0) {
        throw OperationAudioError::groupeIncompatible("The completed AAC file contains no decodable audio.");
    }
    settings.channels = static_cast<int>(reader->channelCount());
    const std::vector<int> rates = services.aac.sampleRates(settings.channels);
    const auto rate = std::find_if(rates.begin(), rates.end(),
                                   [&](int one) { return static_cast<double>(one) == reader->sampleRate(); });
    if (rate == rates.end()) {
        throw OperationAudioError::impossibleCreerFormat(
            fmt::format("The Apple AAC encoder is unavailable for {} channel(s) at {} Hz for this export.",
                        settings.channels, static_cast<std::int64_t>(reader->sampleRate())));
    }
    settings.sampleRate = *rate;
    settings.bitRate = configuration.bitRate;
    if (!services.aac.takesBitRate(settings.channels, settings.sampleRate, settings.bitRate)) {
        throw OperationAudioError::impossibleCreerFormat(
            fmt::format("The Apple AAC encoder doesn’t support {} kbit/s for this export.", settings.bitRate));
    }
    settings.title = configuration.groupe.nom;
    settings.comment = commentOf(configuration.groupe);
}

class AacOutput final : public EncodedOutput {
  public:
    explicit AacOutput(SafeFile& file) : file_(file) {}
    void writeAt(std::uint64_t offset, ByteSpan bytes) override { file_.writeAt(offset, bytes); }

  private:
    SafeFile& file_;
};

class AacSink final : public ExportSink {
  public:
    explicit AacSink(AacEncoder& encoder) : encoder_(encoder) {}

    [[nodiscard]] std::size_t parts() const noexcept override { return 1; }
    void prepare(ExportBlock& block, std::size_t) override {
        for (const std::vector<float>& plane : block.planes) {
            for (const float sample : std::span(plane).first(block.frames)) {
                if (!(std::fabs(sample) <= 1.0F)) refuseSample(sample);
            }
        }
    }
    void take(const ExportBlock& block) override {
        std::vector<const float*> planes;
        planes.reserve(block.planes.size());
        for (const std::vector<float>& plane : block.planes)
            planes.push_back(plane.data());
        encoder_.encode(planes, block.frames);
        frames_ += block.frames;
    }
    [[nodiscard]] std::uint64_t frames() const noexcept { return frames_; }

  private:
    /// The encoder would take it; whatever decodes the file would clip it.
    [[noreturn]] static void refuseSample(float sample) {
        throw OperationAudioError::groupeIncompatible(std::isfinite(sample)
                                                          ? "The audio exceeds full scale; no clipped file was created."
                                                          : "The audio contains a non-finite sample.");
    }

    AacEncoder& encoder_;
    std::uint64_t frames_ = 0;
};

[[noreturn]] void refuse(const char* message) { throw OperationAudioError::impossibleCreerFormat(message); }

void validate(const SafeFile& file, const Preparation& expected, const SampleDecoder& decoder) {
    std::unique_ptr<SampleStream> stream;
    try {
        stream = decoder.open(file.temporaryPath());
    } catch (const std::filesystem::filesystem_error&) {
        refuse("The completed AAC file can’t be decoded.");
    }
    const AudioFormat& format = stream->format();
    if (stream->codec() != "aac" || format.channels != expected.settings.channels ||
        format.sampleRate != expected.settings.sampleRate) {
        refuse("The completed M4A doesn’t match the requested AAC format.");
    }
    if (format.frames != expected.reader->frameLength()) refuse("The completed AAC duration doesn’t match the source.");
    constexpr std::size_t blockFrames = 4096;
    std::vector<float> block(blockFrames * static_cast<std::size_t>(format.channels));
    try {
        if (stream->read(block) == 0) refuse("The completed AAC file contains no decodable audio.");
    } catch (const std::filesystem::filesystem_error&) {
        refuse("The completed AAC file can’t be decoded.");
    }
}

}  // namespace

FileToMake planAACExport(const OperationAudioAACExportConfiguration& configuration, const std::filesystem::path& folder,
                         const ExportServices& services) {
    const Preparation preparation(configuration, folder, services);
    return {preparation.destination,
            roomForStream(configuration.bitRate, preparation.reader->frameLength(), preparation.reader->sampleRate())};
}

std::string exportAAC(const OperationAudioAACExportConfiguration& configuration, const std::filesystem::path& folder,
                      const ExportServices& services, const OperationContext& context) {
    const TaskContext& task = context.task;
    task.checkCancelled();
    const SourceStates sources(services.ops, configuration.groupe);
    Preparation preparation(configuration, folder, services);
    ensureRoom(
        services.ops, preparation.destination,
        roomForStream(configuration.bitRate, preparation.reader->frameLength(), preparation.reader->sampleRate()));

    context.begun = true;
    SafeFile file(services.ops, preparation.destination, TempKind::partialM4a);
    AacOutput output(file);
    const std::unique_ptr<AacEncoder> encoder = services.aac.make(preparation.settings, output);
    if (encoder->bitRate() != std::int64_t{configuration.bitRate} * 1000) {
        refuse("The requested AAC bit rate can’t be applied by the Apple encoder.");
    }
    AacSink sink(*encoder);
    runExportPipeline(*preparation.reader, services.converters, preparation.settings.sampleRate, texts, sink, task,
                      fileNameText(preparation.destination));
    if (sink.frames() != static_cast<std::uint64_t>(preparation.reader->frameLength())) {
        throw OperationAudioError::donneesAudioInaccessibles("PCM preparation changed the AAC input duration.");
    }
    encoder->finish();
    validate(file, preparation, services.decoder);
    file.sync();
    sources.checkUnchanged();
    task.checkCancelled();
    context.folders.add(file.commit(SafeFile::Existing::refuse));
    context.completed.push_back(preparation.destination);
    return fmt::format(
        "Created {}{}. BWF/iXML, timecode, cue markers, and mixer automation aren’t carried "
        "into M4A.",
        fileNameText(preparation.destination), cutShortNote(*preparation.reader));
}

}  // namespace dravik::OperationsAudio
