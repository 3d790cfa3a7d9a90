#include "playback/pcm_loader.h"

#include "base/file_error.h"
#include "base/paths.h"
#include "model/audio_metadata.h"
#include "model/wave/linear_samples.h"
#include "model/wave/walked_file.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <limits>
#include <mutex>
#include <new>
#include <thread>

#include <fmt/format.h>

namespace dravik {
namespace {

/// One claim of a worker: large enough that claiming costs nothing, small enough that all workers end together.
constexpr std::uint64_t workBytes = 4U * 1024U * 1024U;
/// One read: it stays in a core's own cache until it is converted.
constexpr std::uint64_t blockBytes = 256U * 1024U;
/// More threads than this only fight for the disk.
constexpr unsigned mostThreads = 8;
/// A share of the memory that is left for everything else: the next take's lists, the interface, other programs.
constexpr std::uint64_t memoryLeftFree = 256U * 1024U * 1024U;

/// A file of the take, open.
struct Source {
    std::filesystem::path path;
    FileHandle handle;
    std::optional<LinearLayout> linear;    // our own way
    std::unique_ptr<SampleStream> stream;  // any other
    AudioFormat format;
};

Source open(const std::filesystem::path& path, const SampleDecoder& decoder) {
    Source source{path, FileHandle::openForReading(path), {}, {}, {}};
    const FileSource bytes(source.handle);
    if (const std::optional<ChunkTable> table = walkChunks(bytes)) source.linear = linearLayoutIn(bytes, *table);
    if (source.linear) {
        source.format = {source.linear->channels, source.linear->sampleRate, 0, source.linear->frames};
    } else {
        source.stream = decoder.open(path);
        source.format = source.stream->format();
    }
    if (source.format.channels <= 0 || !(source.format.sampleRate > 0)) throw PlaybackError::noAudio(path);
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

class Loading {
  public:
    Loading(std::vector<Source>& sources, std::vector<PcmBuffer>& buffers, const TaskContext& task)
        : sources_(sources), buffers_(buffers), task_(task) {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            const Source& source = sources[i];
            allBytes_ += bytesOf(source, source.format.frames);
            if (source.stream) {
                work_.insert(work_.begin(), {i, 0, source.format.frames});  // the long ones first
                continue;
            }
            const auto frames =
                static_cast<std::int64_t>(std::max<std::uint64_t>(1, workBytes / source.linear->frameBytes));
            for (std::int64_t from = 0; from < source.format.frames; from += frames)
                work_.push_back({i, from, std::min(frames, source.format.frames - from)});
        }
    }

    void run() {
        const std::size_t count =
            std::min<std::size_t>({work_.size(), std::max(1U, std::thread::hardware_concurrency()), mostThreads});
        {
            std::vector<std::jthread> threads;
            for (std::size_t i = 1; i < count; ++i)
                threads.emplace_back([this] { takeWork(); });
            takeWork();
        }
        if (failure_) std::rethrow_exception(failure_);
    }

  private:
    static std::uint64_t bytesOf(const Source& source, std::int64_t frames) noexcept {
        const std::uint64_t frameBytes = source.linear
                                             ? source.linear->frameBytes
                                             : static_cast<std::uint64_t>(source.format.channels) * sizeof(float);
        return static_cast<std::uint64_t>(frames) * frameBytes;
    }

    void takeWork() noexcept {
        try {
            Bytes block;
            std::vector<float*> planes;
            std::vector<float> interleaved;
            while (!stopped_.load(std::memory_order_relaxed)) {
                const std::size_t next = next_.fetch_add(1, std::memory_order_relaxed);
                if (next >= work_.size()) return;
                const Work& work = work_[next];
                if (sources_[work.file].stream) {
                    decode(work, interleaved);
                } else {
                    convert(work, block, planes);
                }
            }
        } catch (...) {
            // The reason first: the others end as if cancelled as soon as they see the sign.
            const std::lock_guard held(mutex_);
            if (!failure_) failure_ = std::current_exception();
            stopped_.store(true, std::memory_order_release);
        }
    }

    void advance(const Source& source, std::int64_t frames) {
        if (stopped_.load(std::memory_order_acquire)) throw Cancelled();  // another worker has failed, and says why
        task_.checkCancelled();
        const std::lock_guard held(mutex_);
        doneBytes_ += bytesOf(source, frames);
        const std::string name = fileNameText(source.path);
        task_.advance({doneBytes_, allBytes_, name});
    }

    void convert(const Work& work, Bytes& block, std::vector<float*>& planes) {
        const Source& source = sources_[work.file];
        PcmBuffer& buffer = buffers_[work.file];
        const LinearLayout& layout = *source.linear;
        const FileSource bytes(source.handle);
        const auto most = static_cast<std::int64_t>(std::max<std::uint64_t>(1, blockBytes / layout.frameBytes));
        planes.resize(static_cast<std::size_t>(buffer.channels()));
        for (std::int64_t done = 0; done < work.count;) {
            const std::int64_t count = std::min(most, work.count - done);
            const std::int64_t from = work.from + done;
            block.resize(static_cast<std::size_t>(count) * layout.frameBytes);
            if (bytes.readAt(layout.offset + static_cast<std::uint64_t>(from) * layout.frameBytes, block) <
                block.size()) {
                if (bytes.error()) throw std::filesystem::filesystem_error("read", source.path, bytes.error());
                throw FileError("it became shorter while it was read", source.path, std::errc::io_error);
            }
            for (int c = 0; c < buffer.channels(); ++c)
                planes[static_cast<std::size_t>(c)] = buffer.channel(c).data() + from;
            samplesToPlanes(block, layout, planes);
            done += count;
            advance(source, count);
        }
    }

    void decode(const Work& work, std::vector<float>& interleaved) {
        const Source& source = sources_[work.file];
        PcmBuffer& buffer = buffers_[work.file];
        const auto channels = static_cast<std::size_t>(source.format.channels);
        interleaved.resize(std::max<std::size_t>(1, blockBytes / sizeof(float) / channels) * channels);
        std::int64_t done = 0;
        while (done < work.count) {
            const std::size_t wanted = static_cast<std::size_t>(
                std::min<std::uint64_t>(interleaved.size() / channels, static_cast<std::uint64_t>(work.count - done)));
            const std::size_t count = source.stream->read(std::span(interleaved).first(wanted * channels));
            if (count == 0) break;
            for (std::size_t c = 0; c < channels; ++c) {
                float* out = buffer.channel(static_cast<int>(c)).data() + done;
                for (std::size_t i = 0; i < count; ++i)
                    out[i] = interleaved[i * channels + c];
            }
            done += static_cast<std::int64_t>(count);
            advance(source, static_cast<std::int64_t>(count));
        }
        buffer.shorten(done);  // fewer than announced: a damaged end
    }

    std::vector<Source>& sources_;
    std::vector<PcmBuffer>& buffers_;
    const TaskContext& task_;
    std::vector<Work> work_;
    std::atomic<std::size_t> next_{0};
    std::atomic<bool> stopped_{false};
    std::mutex mutex_;
    std::exception_ptr failure_;
    std::uint64_t doneBytes_ = 0, allBytes_ = 0;
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
    std::vector<Source> sources;
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
        for (const Source& source : sources)
            take->buffers.emplace_back(source.format.channels, source.format.frames);
    } catch (const std::bad_alloc&) {
        throw PlaybackError::noRoom(needed, std::nullopt);
    }
    Loading(sources, take->buffers, task).run();

    take->sampleRate = sources.front().format.sampleRate;
    take->nbCanaux = estPoly ? sources.front().format.channels : static_cast<int>(sources.size());
    for (const PcmBuffer& buffer : take->buffers)
        take->frameTotal = std::max(take->frameTotal, buffer.frames());
    return take;
}

}  // namespace dravik
