#include "operations/export_pipeline.h"

#include "operations/operation_audio_error.h"
#include "operations/parallel_rounds.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <new>

#include <fmt/format.h>

namespace dravik {
namespace {

/// What a converter gives beyond a block at a time, in frames of its input: room for it is made again as needed.
constexpr double converterTail = 64;

/// Frames of a block: enough that the hand-over costs nothing, few enough that a block of all threads stays in the
/// cache and a cancel is answered at once.
constexpr std::size_t blockFrames = 16384;
/// Bytes that are fetched for one block at most: a damaged header may claim thousands of channels.
constexpr std::size_t blockBytesLimit = 16UL * 1024UL * 1024UL;
constexpr std::size_t leastBlockFrames = 64;

using Case = SampleRateConverterFailure::Case;

const std::string& textOf(const SampleRateConverterFailure& failure, const ExportAudioTexts& texts) noexcept {
    switch (failure.failureCase()) {
        case Case::unavailable:
            return texts.converterUnavailable;
        case Case::qualityUnavailable:
            return texts.qualityUnavailable;
        case Case::failed:
            return texts.converterFailed;
    }
    return texts.converterFailed;
}

/// One output channel: decoding, and conversion where the rate changes.
struct Channel {
    std::unique_ptr<SampleRateConverter> converter;  ///< absent when the rate stays
    std::vector<float> decoded;
    std::uint64_t framesIn = 0, framesOut = 0;
};

class Pipeline {
  public:
    Pipeline(ExportPCMReader& reader, const SampleRateConverters& converters, double outputRate,
             const ExportAudioTexts& texts, ExportSink& sink)
        : reader_(reader), texts_(texts), sink_(sink), ratio_(outputRate / reader.sampleRate()) {
        frames_ = std::clamp(blockBytesLimit / std::max<std::size_t>(1, reader.fetchedFrameBytes()), leastBlockFrames,
                             blockFrames);
        try {
            channels_.resize(reader.channelCount());
            for (ExportBlock& block : blocks_)
                block.planes.resize(channels_.size());
            for (Channel& channel : channels_) {
                if (outputRate != reader.sampleRate()) {
                    channel.converter = converters.make(reader.sampleRate(), outputRate);
                    channel.decoded.resize(frames_);
                }
            }
        } catch (const SampleRateConverterFailure& failure) {
            throw OperationAudioError::impossibleCreerFormat(textOf(failure, texts_));
        } catch (const std::bad_alloc&) {
            throw OperationAudioError::impossibleCreerFormat("Unable to allocate an export audio buffer.");
        }
    }

    void run(const TaskContext& task, const std::string& name) {
        const std::uint64_t frameBytes = reader_.fetchedFrameBytes();
        const auto length = static_cast<std::uint64_t>(reader_.frameLength());
        const std::size_t rounds = (length + frames_ - 1) / frames_ + 3;
        for (std::size_t round = 0; round < rounds; ++round) {
            task.advance({static_cast<std::uint64_t>(reader_.currentFrame()) * frameBytes, length * frameBytes, name});
            makeTasks(round, rounds - 3);
            rounds_.run(tasks_);
            finish(round, rounds - 3);
        }
        if (reader_.currentFrame() != reader_.frameLength()) {
            throw OperationAudioError::donneesAudioInaccessibles(texts_.emptyBlock);
        }
        task.advance({length * frameBytes, length * frameBytes, name});
    }

  private:
    [[nodiscard]] ExportRawBlock& raw(std::size_t block) noexcept { return raw_[block % raw_.size()]; }
    [[nodiscard]] ExportBlock& block(std::size_t block) noexcept { return blocks_[block % blocks_.size()]; }

    /// In one round a block is taken, the next one prepared, the next decoded and converted, the next fetched.
    void makeTasks(std::size_t round, std::size_t count) {
        tasks_.clear();
        const auto at = [&](std::size_t stage) { return round >= stage && round - stage < count; };
        if (at(3)) tasks_.emplace_back([this, b = round - 3] { sink_.take(block(b)); });
        if (at(2)) {
            for (std::size_t part = 0; part < sink_.parts(); ++part)
                tasks_.emplace_back([this, b = round - 2, part] { sink_.prepare(block(b), part); });
        }
        if (at(0)) tasks_.emplace_back([this, round] { fetch(round); });
        if (at(1)) {
            const bool last = round == count;
            for (std::size_t c = 0; c < channels_.size(); ++c)
                tasks_.emplace_back([this, b = round - 1, c, last] { make(b, c, last); });
        }
    }

    void fetch(std::size_t b) {
        reader_.fetch(raw(b), frames_);
        if (raw(b).frames == 0) throw OperationAudioError::donneesAudioInaccessibles(texts_.emptyBlock);
    }

    /// Decodes, and converts, one channel of a block.
    void make(std::size_t b, std::size_t c, bool last) {
        Channel& channel = channels_[c];
        const ExportRawBlock& from = raw(b);
        std::vector<float>& out = block(b).planes[c];
        if (!channel.converter) {
            out.resize(from.frames);
            reader_.decode(from, c, out.data());
            return;
        }
        channel.decoded.resize(from.frames);
        reader_.decode(from, c, channel.decoded.data());
        try {
            convert(channel, out, last);
        } catch (const SampleRateConverterFailure& failure) {
            throw OperationAudioError::donneesAudioInaccessibles(textOf(failure, texts_));
        }
    }

    void convert(Channel& channel, std::vector<float>& out, bool last) {
        const double most =
            std::min(static_cast<double>(frames_), static_cast<double>(channel.decoded.size()) + converterTail);
        const auto room = static_cast<std::size_t>(std::ceil(most * ratio_)) + 1;
        std::size_t made = 0;
        const auto free = [&] {
            if (out.size() < made + room) out.resize(made + room);
            return std::span(out).subspan(made);
        };
        std::span<const float> in = channel.decoded;
        // It never invents numbers, and an infinite one would spread over all that the filter reaches.
        if (!std::all_of(in.begin(), in.end(), [](float sample) { return std::isfinite(sample); })) {
            throw OperationAudioError::groupeIncompatible("The audio contains a non-finite sample.");
        }
        channel.framesIn += in.size();
        while (!in.empty()) {
            const SampleRateConverter::Step step = channel.converter->convert(in, free());
            if (step.used == 0 && step.made == 0) throw SampleRateConverterFailure(Case::failed);
            in = in.subspan(step.used);
            made += step.made;
        }
        while (last) {
            const SampleRateConverter::Step step = channel.converter->drain(free());
            made += step.made;
            if (step.status == SampleRateConverter::Status::endOfStream) break;
            if (step.made == 0) {
                throw OperationAudioError::donneesAudioInaccessibles(
                    fmt::format("The sample-rate converter made no progress while draining (status {}, input {}, "
                                "output {})",
                                static_cast<int>(step.status), channel.framesIn, channel.framesOut + made));
            }
        }
        channel.framesOut += made;
        out.resize(made);
    }

    /// Between two rounds: what has come out of the conversion gets its place.
    void finish(std::size_t round, std::size_t count) {
        if (round < 1 || round - 1 >= count) return;
        ExportBlock& made = block(round - 1);
        made.frames = made.planes.front().size();
        for (const std::vector<float>& plane : made.planes) {
            if (plane.size() != made.frames) {
                throw OperationAudioError::donneesAudioInaccessibles(texts_.converterFailed);
            }
        }
        made.firstFrame = framesMade_;
        framesMade_ += made.frames;
        sink_.begin(made);
    }

    ExportPCMReader& reader_;
    const ExportAudioTexts& texts_;
    ExportSink& sink_;
    const double ratio_;
    std::size_t frames_ = 0;
    std::vector<Channel> channels_;
    std::array<ExportRawBlock, 2> raw_;
    std::array<ExportBlock, 3> blocks_;
    std::uint64_t framesMade_ = 0;
    std::vector<ParallelRounds::Task> tasks_;
    ParallelRounds rounds_;
};

}  // namespace

void checkConversion(const SampleRateConverters& converters, double inputRate, double outputRate,
                     const ExportAudioTexts& texts) {
    try {
        static_cast<void>(converters.make(inputRate, outputRate));
    } catch (const SampleRateConverterFailure& failure) {
        throw OperationAudioError::impossibleCreerFormat(textOf(failure, texts));
    }
}

void runExportPipeline(ExportPCMReader& reader, const SampleRateConverters& converters, double outputRate,
                       const ExportAudioTexts& texts, ExportSink& sink, const TaskContext& task,
                       const std::string& name) {
    Pipeline(reader, converters, outputRate, texts, sink).run(task, name);
}

}  // namespace dravik
