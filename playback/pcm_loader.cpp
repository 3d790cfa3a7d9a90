#include "playback/pcm_loader.h"

#include "base/paths.h"
#include "playback/parallel_work.h"
#include "playback/take_source.h"

#include <algorithm>
#include <limits>
#include <new>

namespace dravik {
namespace {

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
            static_cast<std::int64_t>(std::max<std::uint64_t>(1, TakeSource::workBytes / source.linear->frameBytes));
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
        const std::string name = fileNameText(source.path);
        planes_.resize(static_cast<std::size_t>(buffer.channels()));
        source.eachBlock(work.from, work.count, 0, block_, [&](std::int64_t from, ByteSpan bytes) {
            for (int c = 0; c < buffer.channels(); ++c)
                planes_[static_cast<std::size_t>(c)] = buffer.channel(c).data() + from;
            samplesToPlanes(bytes, *source.linear, planes_);
            all_.advance(bytes.size(), name);
        });
    }

    void decode(const Work& work) {
        const TakeSource& source = sources_[work.file];
        PcmBuffer& buffer = buffers_[work.file];
        const std::string name = fileNameText(source.path);
        const auto channels = static_cast<std::size_t>(source.format.channels);
        const std::int64_t done = source.eachDecoded([&](std::int64_t from, std::span<const float> interleaved) {
            for (std::size_t c = 0; c < channels; ++c) {
                float* out = buffer.channel(static_cast<int>(c)).data() + from;
                for (std::size_t at = c; at < interleaved.size(); at += channels)
                    *out++ = interleaved[at];
            }
            all_.advance(interleaved.size_bytes(), name);
        });
        buffer.shorten(done);  // fewer than announced: a damaged end
    }

    const std::vector<TakeSource>& sources_;
    std::vector<PcmBuffer>& buffers_;
    const std::vector<Work>& work_;
    ParallelWork& all_;
    Bytes block_;
    std::vector<float*> planes_;
};

}  // namespace

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
