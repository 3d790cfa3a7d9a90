#include "operations/mp3_export.h"

#include "base/paths.h"
#include "operations/export_destination.h"
#include "operations/export_pipeline.h"
#include "operations/listening_copy.h"
#include "operations/operation_audio_error.h"
#include "operations/parallel_rounds.h"
#include "operations/source_states.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <vector>

namespace dravik::OperationsAudio {
namespace {

const ExportAudioTexts texts = {"The MP3 source reader returned an empty buffer.",
                                "Apple’s sample-rate converter is unavailable for MP3 export.",
                                "Mastering sample-rate conversion at maximum quality is unavailable.",
                                "The Apple sample-rate converter failed during MP3 export."};

/// What is decided before the file is created.
struct Preparation {
    Preparation(const OperationAudioMP3ExportConfiguration& configuration, const std::filesystem::path& folder,
                const ExportServices& services);

    std::filesystem::path destination;
    std::optional<ExportPCMReader> reader;
    MP3EncoderConfiguration encoder;
    std::uint64_t frames = 0;
};

Preparation::Preparation(const OperationAudioMP3ExportConfiguration& configuration, const std::filesystem::path& folder,
                         const ExportServices& services) {
    if (!isMonoOrStereo(configuration.routing)) {
        throw OperationAudioError::groupeIncompatible("MP3 export supports Mono or Stereo only.");
    }
    if (!hasExtension(configuration.destinationName, ".mp3")) {
        throw OperationAudioError::groupeIncompatible("MP3 exports must use the .mp3 extension.");
    }
    if (configuration.groupe.fichiers.empty()) {
        throw OperationAudioError::groupeIncompatible("No source files to merge.");
    }
    destination = exportDestination(services.ops, configuration.groupe, folder, configuration.destinationName);
    reader.emplace(configuration.groupe, configuration.routing);
    const double rate = configuration.sampleRate.value_or(reader->sampleRate());
    encoder.channels = static_cast<int>(reader->channelCount());
    encoder.bitRate = configuration.bitRate;
    // What is no rate of MP3 is no rate of the configuration either.
    const auto* const known = std::find(mp3ExportSampleRates.begin(), mp3ExportSampleRates.end(), rate);
    encoder.sampleRate = known == mp3ExportSampleRates.end() ? 0 : *known;
    if (!encoder.isValid()) throw MP3EncoderError::invalidConfiguration();
    frames = convertedFrames(reader->frameLength(), reader->sampleRate(), rate);
    if (frames == 0) {
        throw OperationAudioError::groupeIncompatible(
            "The completed MP3 file did not decode with the requested format.");
    }
    if (rate != reader->sampleRate()) checkConversion(services.converters, reader->sampleRate(), rate, texts);
}

/// The samples that the encoder takes, little-endian in the block's bytes as in memory.
class Mp3Sink final : public ExportSink {
  public:
    Mp3Sink(SafeFile& file, MP3Encoder& encoder) : file_(file), encoder_(encoder) {}

    [[nodiscard]] std::size_t parts() const noexcept override { return 1; }
    void begin(ExportBlock& block) override {
        block.bytes.resize(block.frames * block.planes.size() * sizeof(std::int16_t));
    }
    void prepare(ExportBlock& block, std::size_t) override {
        constexpr double scale = 32768.0, most = 32767.0;
        const std::size_t channels = block.planes.size();
        for (std::size_t c = 0; c < channels; ++c) {
            std::byte* out = block.bytes.data() + c * sizeof(std::int16_t);
            for (const float sample : std::span(block.planes[c]).first(block.frames)) {
                const double value = static_cast<double>(sample) * scale;
                if (!(value >= -scale && value < scale)) refuse(sample);
                // The last half step below full scale has no whole number of its own: it takes the one below it.
                const auto whole = static_cast<std::int16_t>(std::min(std::round(value), most));
                std::memcpy(out, &whole, sizeof whole);
                out += channels * sizeof whole;
            }
        }
    }
    void take(const ExportBlock& block) override {
        const std::span<const std::int16_t> samples(reinterpret_cast<const std::int16_t*>(block.bytes.data()),
                                                    block.bytes.size() / sizeof(std::int16_t));
        put(encoder_.encode(samples, block.frames));
        frames_ += block.frames;
    }

    void finish() {
        put(encoder_.flush());
        const Bytes header = encoder_.headerFrame();
        if (!header.empty() && header.size() <= at_) file_.writeAt(0, header);
    }
    [[nodiscard]] std::uint64_t frames() const noexcept { return frames_; }

  private:
    [[noreturn]] static void refuse(float sample) {
        throw OperationAudioError::groupeIncompatible(
            std::isfinite(sample) ? "The export exceeds the integer PCM range; no clipped file was created."
                                  : "The audio contains a non-finite sample.");
    }
    void put(const Bytes& bytes) {
        if (bytes.empty()) return;
        file_.writeAt(at_, bytes);
        at_ += bytes.size();
    }

    SafeFile& file_;
    MP3Encoder& encoder_;
    std::uint64_t at_ = 0;
    std::uint64_t frames_ = 0;
};

/// Does the first frame say MPEG-1 (not 2 or 2.5) and layer III, with or without a checksum?
bool isMpeg1LayerIII(const FileHandle& file) {
    const Bytes start = FileSource(file).read(0, 2);
    constexpr auto sync = std::byte{0xFF}, versionAndLayer = std::byte{0xFA}, withoutChecksum = std::byte{0xFE};
    return start.size() == 2 && start[0] == sync && (start[1] & withoutChecksum) == versionAndLayer;
}

[[noreturn]] void refuseDecoded() {
    throw OperationAudioError::impossibleCreerFormat(
        "The completed MP3 file did not decode with the requested format.");
}

/// Decodes up to `most` frames; how many there were.
std::uint64_t decodedFrames(SampleStream& stream, std::uint64_t most, const TaskContext& task) {
    constexpr std::size_t blockFrames = 65536;
    const auto channels = static_cast<std::size_t>(stream.format().channels);
    std::vector<float> block(blockFrames * channels);
    std::uint64_t frames = 0;
    while (frames < most) {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(blockFrames, most - frames));
        const std::size_t got = stream.read({block.data(), wanted * channels});
        if (got == 0) break;
        frames += got;
        task.checkCancelled();
    }
    return frames;
}

/// Decodes all of it, its second half on a thread of its own: what was asked for, and as long.
void validate(const SafeFile& file, const Preparation& expected, const SampleDecoder& decoder,
              const TaskContext& task) {
    try {
        const auto open = [&] {
            std::unique_ptr<SampleStream> stream = decoder.open(file.temporaryPath());
            const AudioFormat& format = stream->format();
            if (format.channels != expected.encoder.channels || format.sampleRate != expected.encoder.sampleRate) {
                refuseDecoded();
            }
            return stream;
        };
        constexpr std::uint64_t toItsEnd = std::numeric_limits<std::uint64_t>::max();
        const std::unique_ptr<SampleStream> first = open(), second = open();
        const std::uint64_t middle = expected.frames / 2;
        const bool halved = second->skipTo(static_cast<std::int64_t>(middle));
        std::uint64_t frames = 0, behind = 0;
        std::vector<ParallelRounds::Task> halves{
            [&] { frames = decodedFrames(*first, halved ? middle : toItsEnd, task); }};
        if (halved) halves.emplace_back([&] { behind = decodedFrames(*second, toItsEnd, task); });
        ParallelRounds().run(halves);
        if (frames + behind == 0 || frames + behind != expected.frames) refuseDecoded();
    } catch (const std::filesystem::filesystem_error&) {
        refuseDecoded();
    }
    if (!isMpeg1LayerIII(file.file())) {
        throw OperationAudioError::impossibleCreerFormat(
            "The completed MP3 stream does not contain the requested MPEG-1 Layer III format.");
    }
}

}  // namespace

FileToMake planMP3Export(const OperationAudioMP3ExportConfiguration& configuration, const std::filesystem::path& folder,
                         const ExportServices& services) {
    const Preparation preparation(configuration, folder, services);
    return {preparation.destination,
            roomForStream(configuration.bitRate, preparation.reader->frameLength(), preparation.reader->sampleRate())};
}

std::string exportMP3(const OperationAudioMP3ExportConfiguration& configuration, const std::filesystem::path& folder,
                      const ExportServices& services, const OperationContext& context) {
    const TaskContext& task = context.task;
    task.checkCancelled();
    const SourceStates sources(services.ops, configuration.groupe);
    Preparation preparation(configuration, folder, services);
    const std::unique_ptr<MP3Encoder> encoder = services.mp3.make();
    encoder->initialise(preparation.encoder);
    ensureRoom(
        services.ops, preparation.destination,
        roomForStream(configuration.bitRate, preparation.reader->frameLength(), preparation.reader->sampleRate()));

    context.begun = true;
    SafeFile file(services.ops, preparation.destination, TempKind::partialMp3);
    Mp3Sink sink(file, *encoder);
    runExportPipeline(*preparation.reader, services.converters, preparation.encoder.sampleRate, texts, sink, task,
                      fileNameText(preparation.destination));
    sink.finish();
    validate(file, preparation, services.decoder, task);
    file.sync();
    sources.checkUnchanged();
    task.checkCancelled();
    context.folders.add(file.commit(SafeFile::Existing::refuse));
    context.completed.push_back(preparation.destination);
    return "Created " + fileNameText(preparation.destination) + cutShortNote(*preparation.reader);
}

}  // namespace dravik::OperationsAudio
