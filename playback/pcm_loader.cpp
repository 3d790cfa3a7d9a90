#include "playback/pcm_loader.h"

#include "base/paths.h"
#include "model/audio_metadata.h"
#include "playback/parallel_work.h"
#include "playback/take_source.h"

#include <algorithm>
#include <limits>
#include <new>

#include <fmt/format.h>

namespace dravik {
namespace {

/// One claim of a worker: large enough that claiming costs nothing, small enough that all workers end together.
constexpr std::uint64_t workBytes = 4U * 1024U * 1024U;
/// One read: it stays in a core's own cache until it is converted.
constexpr std::uint64_t blockBytes = 256U * 1024U;
/// A share of the memory that is left for everything else: the next take's lists, the interface, other programs.
constexpr std::uint64_t memoryLeftFree = 256U * 1024U * 1024U;

TakeSource open(const std::filesystem::path& path, const SampleDecoder& decoder) {
    TakeSource source = TakeSource::open(path, decoder);
    if (source.format.frames < 0 || source.format.frames > std::numeric_limits<std::uint32_t>::max()) {
        throw PlaybackError::tooLong(path);
    }
    return source;
}

/// Some frames of a linear file, or all of another.
struct Work {
    std::size_t file = 0;
    std::int64_t from = 0, count = 0;
};

std::vector<Work> workOn(const std::vector<TakeSource>& sources) {
    std::vector<Work> all;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const TakeSource& source = sources[i];
        if (source.stream) {
            all.insert(all.begin(), {i, 0, source.format.frames});  // the long ones first
            continue;
        }
        const auto frames =
            static_cast<std::int64_t>(std::max<std::uint64_t>(1, workBytes / source.linear->frameBytes));
        for (std::int64_t from = 0; from < source.format.frames; from += frames)
            all.push_back({i, from, std::min(frames, source.format.frames - from)});
    }
    return all;
}

/// What one thread reads with.
class Worker {
  public:
    Worker(const std::vector<TakeSource>& sources, std::vector<PcmBuffer>& buffers, const std::vector<Work>& work,
           ParallelWork& all)
        : sources_(sources), buffers_(buffers), work_(work), all_(all) {}

    void operator()(std::size_t index) {
        const Work& work = work_[index];
        if (sources_[work.file].stream) {
            decode(work);
        } else {
            convert(work);
        }
    }

  private:
    void convert(const Work& work) {
        const TakeSource& source = sources_[work.file];
        PcmBuffer& buffer = buffers_[work.file];
        const LinearLayout& layout = *source.linear;
        const std::string name = fileNameText(source.path);
        const auto most = static_cast<std::int64_t>(std::max<std::uint64_t>(1, blockBytes / layout.frameBytes));
        planes_.resize(static_cast<std::size_t>(buffer.channels()));
        for (std::int64_t done = 0; done < work.count;) {
            const std::int64_t count = std::min(most, work.count - done);
            const std::int64_t from = work.from + done;
            block_.resize(static_cast<std::size_t>(count) * layout.frameBytes);
            source.readFrames(from, block_);
            for (int c = 0; c < buffer.channels(); ++c)
                planes_[static_cast<std::size_t>(c)] = buffer.channel(c).data() + from;
            samplesToPlanes(block_, layout, planes_);
            done += count;
            all_.advance(source.bytesOf(count), name);
        }
    }

    void decode(const Work& work) {
        const TakeSource& source = sources_[work.file];
        PcmBuffer& buffer = buffers_[work.file];
        const std::string name = fileNameText(source.path);
        const auto channels = static_cast<std::size_t>(source.format.channels);
        interleaved_.resize(std::max<std::size_t>(1, blockBytes / sizeof(float) / channels) * channels);
        std::int64_t done = 0;
        while (done < work.count) {
            const std::size_t wanted = static_cast<std::size_t>(
                std::min<std::uint64_t>(interleaved_.size() / channels, static_cast<std::uint64_t>(work.count - done)));
            const std::size_t count = source.stream->read(std::span(interleaved_).first(wanted * channels));
            if (count == 0) break;
            for (std::size_t c = 0; c < channels; ++c) {
                float* out = buffer.channel(static_cast<int>(c)).data() + done;
                for (std::size_t i = 0; i < count; ++i)
                    out[i] = interleaved_[i * channels + c];
            }
            done += static_cast<std::int64_t>(count);
            all_.advance(source.bytesOf(static_cast<std::int64_t>(count)), name);
        }
        buffer.shorten(done);  // fewer than announced: a damaged end
    }

    const std::vector<TakeSource>& sources_;
    std::vector<PcmBuffer>& buffers_;
    const std::vector<Work>& work_;
    ParallelWork& all_;
    Bytes block_;
    std::vector<float*> planes_;
    std::vector<float> interleaved_;
};

}  // namespace

PlaybackError PlaybackError::tooLong(const std::filesystem::path& file) {
    return {Case::tooLong,
            fmt::format("{} is too long to be played: it has more than 4,294,967,295 samples in a channel.",
                        fileNameText(file))};
}

PlaybackError PlaybackError::noRoom(std::uint64_t needed, std::optional<std::uint64_t> available) {
    if (!available) {
        return {Case::noRoom, fmt::format("This take is too large to be played: it needs {} of memory, and that much "
                                          "could not be had.",
                                          sizeText(needed))};
    }
    return {Case::noRoom,
            fmt::format("This take is too large to be played: it needs {} of memory, and {} are available now.",
                        sizeText(needed), sizeText(*available))};
}

PlaybackError PlaybackError::ratesDiffer(const std::filesystem::path& file) {
    return {Case::ratesDiffer, fmt::format("The files of this take cannot be played together: {} has another sample "
                                           "rate than the first.",
                                           fileNameText(file))};
}

PlaybackError PlaybackError::notMono(const std::filesystem::path& file) {
    return {Case::notMono,
            fmt::format("The files of this take cannot be played together: {} has more than one channel.",
                        fileNameText(file))};
}

PlaybackError PlaybackError::noAudio(const std::filesystem::path& file) {
    return {Case::noAudio, fmt::format("{} cannot be played: it says neither how many channels it has nor at which "
                                       "sample rate.",
                                       fileNameText(file))};
}

std::shared_ptr<const PcmTake> loadTake(const std::vector<std::filesystem::path>& files, bool estPoly,
                                        const SampleDecoder& decoder, const AvailableMemory& available,
                                        const TaskContext& task) {
    if (files.empty()) throw PlaybackError::noAudio({});
    std::vector<TakeSource> sources;
    std::uint64_t needed = 0;
    for (const std::filesystem::path& file : files) {
        task.checkCancelled();
        sources.push_back(open(file, decoder));
        const AudioFormat& format = sources.back().format;
        if (format.sampleRate != sources.front().format.sampleRate) throw PlaybackError::ratesDiffer(file);
        if (!estPoly && format.channels != 1) throw PlaybackError::notMono(file);
        needed += PcmBuffer::bytesFor(format.channels, format.frames);
        if (estPoly) break;
    }
    const std::optional<std::uint64_t> room = available ? available() : std::nullopt;
    if (room && needed > *room - std::min(*room, memoryLeftFree)) throw PlaybackError::noRoom(needed, room);

    auto take = std::make_shared<PcmTake>();
    take->estPoly = estPoly;
    try {
        for (const TakeSource& source : sources)
            take->buffers.emplace_back(source.format.channels, source.format.frames);
    } catch (const std::bad_alloc&) {
        throw PlaybackError::noRoom(needed, std::nullopt);
    }
    std::uint64_t allBytes = 0;
    for (const TakeSource& source : sources)
        allBytes += source.bytesOf(source.format.frames);
    const std::vector<Work> work = workOn(sources);
    ParallelWork all(task, allBytes);
    all.run(work.size(), [&] { return Worker(sources, take->buffers, work, all); });

    take->sampleRate = sources.front().format.sampleRate;
    take->nbCanaux = estPoly ? sources.front().format.channels : static_cast<int>(sources.size());
    for (const PcmBuffer& buffer : take->buffers)
        take->frameTotal = std::max(take->frameTotal, buffer.frames());
    return take;
}

}  // namespace dravik
