#include "playback/peak_computation.h"

#include "base/paths.h"
#include "playback/parallel_work.h"
#include "playback/playback_error.h"
#include "playback/take_source.h"

#include <algorithm>
#include <utility>

namespace dravik {
namespace {

/// A file at work: its source and what is known of its peaks.
struct Job {
    TakeSource source;
    std::size_t place = 0;
    FilePeaks peaks;
};

/// Some frames of a linear file, from the start of a coarse column on, or all of another.
struct Work {
    std::size_t job = 0;
    std::int64_t from = 0, count = 0;
};

Job open(const PeakRequest& request, const SampleDecoder& decoder) {
    Job job{TakeSource::open(request.file, decoder), request.place, {}};
    const AudioFormat& format = job.source.format;
    if (format.frames < 0 || format.frames > maximumPeakFrames) throw PlaybackError::tooLong(request.file);
    FilePeaks& peaks = job.peaks;
    peaks.channels = format.channels;
    peaks.frames = format.frames;
    peaks.sampleRate = format.sampleRate;
    const PeakWidths widths = peakWidths(peaks.channels, peaks.frames);
    const auto prepare = [&](PeakLevel& level, std::int64_t width) {
        level.framesPerBin = width;
        level.bins = binsFor(peaks.frames, width);
        level.values.assign(level.bins * static_cast<std::size_t>(peaks.channels), {});
    };
    prepare(peaks.donneesAudio, widths.coarse);
    prepare(peaks.donneesAudioHR, widths.high);
    prepare(peaks.donneesAudioUHR, widths.ultraHigh);
    return job;
}

std::vector<Work> workOn(const std::vector<Job>& jobs) {
    std::vector<Work> all;
    for (std::size_t i = 0; i < jobs.size(); ++i) {
        const std::int64_t frames = jobs[i].peaks.frames;
        if (jobs[i].source.stream) {
            all.insert(all.begin(), {i, 0, frames});  // the long ones first
            continue;
        }
        const std::int64_t column = jobs[i].peaks.donneesAudio.framesPerBin;
        const auto columns =
            static_cast<std::int64_t>(TakeSource::workBytes / jobs[i].source.linear->frameBytes) / column;
        const std::int64_t step = std::max<std::int64_t>(1, columns) * column;
        for (std::int64_t from = 0; from < frames; from += step)
            all.push_back({i, from, std::min(step, frames - from)});
    }
    return all;
}

/// What one thread finds peaks with.
class Worker {
  public:
    Worker(std::vector<Job>& jobs, const std::vector<Work>& work, const CoarsePeaksSink& sink, ParallelWork& all)
        : jobs_(jobs), work_(work), sink_(sink), all_(all) {}

    void operator()(std::size_t index) {
        const Work& work = work_[index];
        Job& job = jobs_[work.job];
        if (job.source.stream) {
            decode(job);
        } else {
            scan(job, work);
        }
    }

  private:
    void scan(Job& job, const Work& work) {
        const LinearLayout& layout = *job.source.linear;
        const std::string name = fileNameText(job.source.path);
        SampleExtremes extremes(layout);
        job.source.eachBlock(work.from, work.count, SampleExtremes::slackBytes, block_,
                             [&](std::int64_t from, ByteSpan bytes) {
                                 find(job.peaks, from, bytes, layout.frameBytes, extremes);
                                 all_.advance(bytes.size(), name);
                             });
        finish(job, work.from, work.from + work.count);
    }

    void decode(Job& job) {
        FilePeaks& peaks = job.peaks;
        const std::string name = fileNameText(job.source.path);
        const auto channels = static_cast<std::size_t>(peaks.channels);
        LinearLayout layout;
        layout.encoding = SampleEncoding::float32;
        layout.channels = peaks.channels;
        layout.frameBytes = static_cast<std::uint32_t>(channels * sizeof(float));
        SampleExtremes extremes(layout);
        const std::int64_t column = peaks.donneesAudio.framesPerBin;
        std::int64_t sent = 0;
        const std::int64_t done = job.source.eachDecoded([&](std::int64_t from, std::span<const float> interleaved) {
            find(peaks, from, std::as_bytes(interleaved), layout.frameBytes, extremes);
            all_.advance(interleaved.size_bytes(), name);
            // A message of one column would cost more than to find it.
            const std::int64_t known = from + static_cast<std::int64_t>(interleaved.size() / channels);
            if (known - sent < column * columnsOfAStream) return;
            finish(job, sent, known / column * column);
            sent = known / column * column;
        });
        finish(job, sent, done);
        if (done < peaks.frames) shorten(peaks, done);
    }

    /// Takes frames into their finest bins. Bins may begin in one block and end in the next.
    void find(FilePeaks& peaks, std::int64_t from, ByteSpan frames, std::size_t frameBytes, SampleExtremes& extremes) {
        PeakLevel& level = peaks.donneesAudioUHR;
        found_.resize(static_cast<std::size_t>(peaks.channels));
        while (!frames.empty()) {
            const std::int64_t inBin = level.framesPerBin - from % level.framesPerBin;
            const std::size_t bytes = std::min<std::uint64_t>(
                frames.size(), static_cast<std::uint64_t>(inBin) * static_cast<std::uint64_t>(frameBytes));
            std::fill(found_.begin(), found_.end(), PeakValue{});
            extremes.add(frames.first(bytes), found_);
            PeakValue* value = level.values.data() + static_cast<std::size_t>(from / level.framesPerBin);
            for (const PeakValue& found : found_) {
                value->add(found);
                value += level.bins;
            }
            frames = frames.subspan(bytes);
            from += static_cast<std::int64_t>(bytes / frameBytes);
        }
    }

    /// Makes the coarser resolutions of frames whose finest bins are found, from the start of a coarse column on, and
    /// sends the columns.
    void finish(Job& job, std::int64_t from, std::int64_t to) {
        if (from >= to) return;
        FilePeaks& peaks = job.peaks;
        PeakLevel& coarse = peaks.donneesAudio;
        PeakLevel& high = peaks.donneesAudioHR;
        const PeakLevel& fine = peaks.donneesAudioUHR;
        const auto part = [&](const PeakLevel& level, auto channel) {
            const auto first = static_cast<std::size_t>(from / level.framesPerBin);
            return channel.subspan(first, binsFor(to, level.framesPerBin) - first);
        };
        CoarsePeaks message{job.place, peaks.channels, peaks.frames, peaks.sampleRate, coarse.framesPerBin, 0, 0, {}};
        message.firstColumn = static_cast<std::size_t>(from / coarse.framesPerBin);
        message.columns = binsFor(to, coarse.framesPerBin) - message.firstColumn;
        for (int c = 0; c < peaks.channels; ++c) {
            reducePeaks(part(fine, fine.channel(c)), static_cast<std::size_t>(high.framesPerBin / fine.framesPerBin),
                        part(high, high.channel(c)));
            const auto columns = part(coarse, coarse.channel(c));
            reducePeaks(part(high, std::as_const(high).channel(c)),
                        static_cast<std::size_t>(coarse.framesPerBin / high.framesPerBin), columns);
            message.values.insert(message.values.end(), columns.begin(), columns.end());
        }
        if (sink_) all_.exclusively([&] { sink_(std::move(message)); });
    }

    /// Fewer frames came than were announced: a damaged end. The finest bins keep their length.
    static void shorten(FilePeaks& peaks, std::int64_t frames) {
        PeakLevel& level = peaks.donneesAudioUHR;
        PeakLevel shorter{level.framesPerBin, binsFor(frames, level.framesPerBin), {}};
        for (int c = 0; c < peaks.channels; ++c) {
            const auto kept = std::as_const(level).channel(c).first(shorter.bins);
            shorter.values.insert(shorter.values.end(), kept.begin(), kept.end());
        }
        level = std::move(shorter);
        peaks.frames = frames;
        peaks.deriveCoarser();
    }

    /// So many coarse columns of a decoded file go into one message.
    static constexpr std::int64_t columnsOfAStream = 16;

    std::vector<Job>& jobs_;
    const std::vector<Work>& work_;
    const CoarsePeaksSink& sink_;
    ParallelWork& all_;
    Bytes block_;
    std::vector<PeakValue> found_;
};

}  // namespace

std::vector<FilePeaks> computePeaks(const std::vector<PeakRequest>& requests, const SampleDecoder& decoder,
                                    const CoarsePeaksSink& sink, const TaskContext& task) {
    std::vector<Job> jobs;
    std::uint64_t allBytes = 0;
    for (const PeakRequest& request : requests) {
        task.checkCancelled();
        jobs.push_back(open(request, decoder));
        const Job& job = jobs.back();
        allBytes += job.source.bytesOf(job.peaks.frames);
        if (sink) {
            sink({job.place,
                  job.peaks.channels,
                  job.peaks.frames,
                  job.peaks.sampleRate,
                  job.peaks.donneesAudio.framesPerBin,
                  0,
                  0,
                  {}});
        }
    }
    const std::vector<Work> work = workOn(jobs);
    ParallelWork all(task, allBytes);
    all.run(work.size(), [&] { return Worker(jobs, work, sink, all); });
    std::vector<FilePeaks> peaks;
    for (Job& job : jobs)
        peaks.push_back(std::move(job.peaks));
    return peaks;
}

}  // namespace dravik
