#include "operations/wav_export.h"

#include "base/byte_source.h"
#include "base/paths.h"
#include "model/wave/chunk_bytes.h"
#include "operations/export_destination.h"
#include "operations/export_metadata.h"
#include "operations/export_pipeline.h"
#include "operations/export_validation.h"
#include "operations/listening_copy.h"
#include "operations/metadata_chunks.h"
#include "operations/operation_audio_error.h"
#include "operations/quantizer.h"
#include "operations/source_states.h"
#include "operations/wave_layout.h"
#include "operations/wave_output.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <thread>

#include <fmt/format.h>

namespace dravik::OperationsAudio {
namespace {

/// A block is cut into parts of at least this many samples for the threads; finding a part's place in the dither costs
/// about as much as a hundred samples.
constexpr std::size_t leastPartSamples = 16384;

constexpr const char* converterFailed = "The sample-rate converter failed.";

/// Everything about an export that is decided before its file is created.
struct Preparation {
    Preparation(const OperationAudioExportConfiguration& configuration, const std::filesystem::path& folder,
                FileOps& ops);

    std::filesystem::path destination;
    ExportPCMReader reader;
    ExportSampleFormat format;
    std::uint32_t outputRate = 0;
    bool dither = false;
    Bytes head;
    std::uint64_t frames = 0, dataSize = 0;

    [[nodiscard]] bool converts() const noexcept { return reader.sampleRate() != static_cast<double>(outputRate); }
    [[nodiscard]] std::uint64_t bytes() const noexcept { return head.size() + dataSize + dataSize % 2; }
    /// Is the new audio the very bytes of the old?
    [[nodiscard]] bool copiesAudio() const noexcept;
};

ExportSampleFormat checkedFormat(const OperationAudioExportConfiguration& configuration) {
    const int bits = configuration.bitDepth;
    if (configuration.isFloat ? bits != 32 : bits != 16 && bits != 24) {
        throw OperationAudioError::impossibleCreerFormat("The requested WAV sample format is unavailable.");
    }
    return {bits, configuration.isFloat};
}

/// The rate field holds whole numbers; a rate that lies between two would be another one in the file. A source keeps
/// whatever rate it has.
std::uint32_t checkedRate(const OperationAudioExportConfiguration& configuration, const ExportPCMReader& reader) {
    const double rate = configuration.sampleRate.value_or(reader.sampleRate());
    const double most = std::max(mostExportSampleRate, reader.sampleRate());
    if (!std::isfinite(rate) || rate < 1 || rate > most || rate != std::floor(rate)) {
        throw OperationAudioError::groupeIncompatible("The output sample rate is invalid.");
    }
    return static_cast<std::uint32_t>(rate);
}

Bytes fmtOf(const ExportSampleFormat& format, std::size_t channels, std::uint32_t rate) {
    const std::size_t frameBytes = channels * format.sampleBytes();
    if (frameBytes > std::numeric_limits<std::uint16_t>::max()) {
        throw OperationAudioError::impossibleCreerFormat(
            fmt::format("Unable to create a channel layout for {} channels.", channels));
    }
    Bytes fmt;
    appendLE(fmt, format.isFloat ? WaveFormat::ieeeFloat : WaveFormat::pcm);
    appendLE(fmt, static_cast<std::uint16_t>(channels));
    appendLE(fmt, rate);
    // Of rates that no one records at, what 32 bits hold of it.
    appendLE(fmt, static_cast<std::uint32_t>(rate * std::uint64_t{frameBytes}));
    appendLE(fmt, static_cast<std::uint16_t>(frameBytes));
    appendLE(fmt, static_cast<std::uint16_t>(format.bitDepth));
    return fmt;
}

Preparation::Preparation(const OperationAudioExportConfiguration& configuration, const std::filesystem::path& folder,
                         FileOps& ops)
    : destination(exportDestination(ops, configuration.groupe, folder, configuration.destinationName)),
      reader(configuration.groupe, configuration.routing),
      format(checkedFormat(configuration)),
      outputRate(checkedRate(configuration, reader)) {
    dither = !format.isFloat && (reader.sourceIsFloat() || reader.sourceBitDepth() > format.bitDepth || converts());
    frames = convertedFrames(reader.frameLength(), reader.sampleRate(), outputRate);
    const std::size_t channels = reader.channelCount();
    const Bytes fmtPayload = fmtOf(format, channels, outputRate);
    // No size that does not fit the file overflows on its way to the check.
    constexpr std::uint64_t beyondAnyFile = std::uint64_t{1} << 62U;
    const std::uint64_t frameBytes = channels * format.sampleBytes();
    dataSize = frames > beyondAnyFile / frameBytes ? beyondAnyFile : frames * frameBytes;

    ExportAdaptation adaptation;
    adaptation.inputRate = static_cast<std::uint32_t>(reader.sampleRate());
    adaptation.outputRate = outputRate;
    adaptation.bitDepth = format.bitDepth;
    adaptation.tracks = exportTracks(configuration.groupe, reader);
    adaptation.source = adaptation.tracks.front().source;
    adaptation.own = tracksOfFile(configuration.groupe, adaptation.source);
    adaptation.outputName = configuration.destinationName;
    // Of a mono set the chunks are those of the first file that is heard.
    const InfoFichier& file = configuration.groupe.fichiers[adaptation.source];
    const std::vector<RIFFChunk> chunks = adaptedForExport(metadataChunks(file.url), adaptation);
    checkOutputSize(fmtPayload, chunks, dataSize, configuration.destinationName);
    // What a finished file would be refused for is mostly found in what stands before the audio, which may take hours.
    validateWavExport(MemorySource(waveHead(fmtPayload, chunks, 0)), outputRate, format, configuration.destinationName);
    head = waveHead(fmtPayload, chunks, dataSize);
}

bool Preparation::copiesAudio() const noexcept {
    if (converts() || dither || format.isFloat || !reader.takesWholeFrames()) return false;
    const SampleEncoding encoding = reader.layoutOfTrack(reader.positions().front()).encoding;
    return encoding == (format.bitDepth == 16 ? SampleEncoding::signed16 : SampleEncoding::signed24);
}

ExportAudioTexts textsOf(const Preparation& preparation) {
    return {preparation.converts()
                ? "The sample-rate converter received an empty input buffer before EOF."
                : "WAV export stopped because the source reader returned an empty buffer before EOF.",
            "Apple’s sample-rate converter is unavailable for this format.",
            "Mastering sample-rate conversion at maximum quality is unavailable.", converterFailed};
}

/// Quantises and writes.
class WavSink final : public ExportSink {
  public:
    WavSink(WaveOutput& file, const Preparation& from, std::uint64_t seed)
        : file_(file),
          quantizer_(from.format, from.dither, seed),
          promised_(from.frames),
          parts_(std::max(1U, std::thread::hardware_concurrency()) * 2) {}

    [[nodiscard]] std::size_t parts() const noexcept override { return parts_; }
    void begin(ExportBlock& block) override {
        block.bytes.resize(block.frames * block.planes.size() * quantizer_.format().sampleBytes());
    }
    void prepare(ExportBlock& block, std::size_t part) override {
        const std::size_t channels = block.planes.size();
        const std::size_t frames =
            std::max((block.frames + parts_ - 1) / parts_, leastPartSamples / std::max<std::size_t>(1, channels));
        const std::size_t from = std::min(block.frames, part * frames);
        const std::size_t count = std::min(block.frames - from, frames);
        if (count == 0) return;
        std::vector<const float*> planes;
        planes.reserve(channels);
        for (const std::vector<float>& plane : block.planes)
            planes.push_back(plane.data() + from);
        const std::size_t frameBytes = channels * quantizer_.format().sampleBytes();
        quantizer_.quantize(planes, count, block.firstFrame + from,
                            std::span(block.bytes).subspan(from * frameBytes, count * frameBytes));
    }
    void take(const ExportBlock& block) override {
        // The sizes in the head were computed; what is made must agree with them.
        if (block.frames > promised_ - frames_) throw OperationAudioError::donneesAudioInaccessibles(converterFailed);
        file_.append(block.bytes);
        frames_ += block.frames;
    }

    [[nodiscard]] bool isComplete() const noexcept { return frames_ == promised_; }

  private:
    WaveOutput& file_;
    Quantizer quantizer_;
    std::uint64_t promised_, frames_ = 0;
    std::size_t parts_;
};

/// The source's own bytes behind the new head.
void copyAudio(SafeFile& file, const Preparation& from, const GroupeFichiers& groupe, const TaskContext& task) {
    const int track = from.reader.positions().front();
    const std::filesystem::path& source = groupe.fichiers[groupe.estPoly ? 0 : static_cast<std::size_t>(track)].url;
    FilePlan plan;
    plan.add(from.head);
    plan.add(SourceRange{from.reader.layoutOfTrack(track).offset, from.dataSize});
    if (from.dataSize % 2 != 0) plan.add(Bytes{std::byte{0}});
    file.write(plan, FileHandle::openForReading(source), task);
}

void convertAudio(WaveOutput& file, Preparation& from, std::uint64_t seed, const ExportServices& services,
                  const TaskContext& task) {
    WavSink sink(file, from, seed);
    runExportPipeline(from.reader, services.converters, from.outputRate, textsOf(from), sink, task,
                      fileNameText(from.destination));
    if (!sink.isComplete()) throw OperationAudioError::donneesAudioInaccessibles(converterFailed);
    file.finish();
}

}  // namespace

FileToMake planWAVExport(const OperationAudioExportConfiguration& configuration, const std::filesystem::path& folder,
                         const ExportServices& services) {
    const Preparation preparation(configuration, folder, services.ops);
    if (preparation.converts()) {
        checkConversion(services.converters, preparation.reader.sampleRate(), preparation.outputRate,
                        textsOf(preparation));
    }
    return {preparation.destination, preparation.bytes()};
}

std::string exportWAV(const OperationAudioExportConfiguration& configuration, const std::filesystem::path& folder,
                      const ExportServices& services, const OperationContext& context) {
    const TaskContext& task = context.task;
    task.checkCancelled();
    const SourceStates sources(services.ops, configuration.groupe);
    Preparation preparation(configuration, folder, services.ops);
    ensureRoom(services.ops, preparation.destination, preparation.bytes());

    // A last look before the file gets its name.
    const auto complete = [&](auto& file) {
        validateWavExport(FileSource(file.file()), preparation.outputRate, preparation.format,
                          configuration.destinationName);
        file.sync();
        sources.checkUnchanged();
        task.checkCancelled();
    };
    context.begun = true;
    if (preparation.copiesAudio()) {
        SafeFile file(services.ops, preparation.destination, TempKind::exportWav);
        copyAudio(file, preparation, configuration.groupe, task);
        complete(file);
        context.folders.add(file.commit(SafeFile::Existing::refuse));
    } else {
        const std::uint64_t seed = configuration.ditherSeed.value_or(freshDitherSeed(configuration.destinationName));
        Writeback writeback(services.ops);
        WaveOutput file(services.ops, writeback, preparation.destination, preparation.head, preparation.dataSize,
                        TempKind::exportWav);
        convertAudio(file, preparation, seed, services, task);
        complete(file);
        context.folders.add(file.commit());
    }
    context.completed.push_back(preparation.destination);
    return "Created " + fileNameText(preparation.destination) + cutShortNote(preparation.reader);
}

}  // namespace dravik::OperationsAudio
