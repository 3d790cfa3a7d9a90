#include "operations/operation_plan.h"

#include "base/paths.h"
#include "operations/merge_verification.h"
#include "operations/operation_audio_error.h"
#include "operations/wave_output.h"
#include "operations/weave.h"

#include <algorithm>
#include <deque>
#include <memory>
#include <span>
#include <system_error>

namespace dravik {
namespace OperationsAudio {
namespace {

/// Frames that are rearranged at a time, so that they stay in the nearest caches.
constexpr std::int64_t mostBlockFrames = 8192;
/// Frames may be large (hundreds of channels), blocks may not.
constexpr std::size_t mostBlockBytes = 1024U * 1024U;
/// Files that are written in one pass over their source: what their buffers take stays below 100 MB.
constexpr std::size_t mostOutputsAtOnce = 128;
/// Of the files that the system lets this process open, left for whatever else it does meanwhile.
constexpr std::size_t spareHandles = 8;
/// Audio read between two reports and questions whether to go on.
constexpr std::uint64_t reportBytes = 4U * 1024U * 1024U;

/// A source that is open, and that is still the file that was planned with.
class OpenSource {
  public:
    OpenSource(FileOps& ops, const PlannedSource& planned)
        : ops_(ops), planned_(planned), handle_(FileHandle::openForReading(planned.wav.fichier)), source_(handle_) {
        if (ops_.stampOf(handle_, planned.wav.fichier) != planned.stamp) throw changed();
    }

    [[nodiscard]] const FileHandle& handle() const noexcept { return handle_; }

    void read(std::uint64_t audioOffset, std::span<std::byte> into) const {
        if (source_.readAt(planned_.wav.dataOffset + audioOffset, into) == into.size()) return;
        if (source_.error()) {
            throw std::filesystem::filesystem_error("cannot read", planned_.wav.fichier, source_.error());
        }
        throw unexpectedEnd(planned_.wav.fichier);
    }
    void checkUnchanged() const {
        if (ops_.stampAt(planned_.wav.fichier) != planned_.stamp) throw changed();
    }

  private:
    [[nodiscard]] OperationAudioError changed() const {
        return OperationAudioError::donneesAudioInaccessibles(
            aboutFile(planned_.wav.fichier, " was changed by another program meanwhile."));
    }

    FileOps& ops_;
    const PlannedSource& planned_;
    FileHandle handle_;
    FileSource source_;
};

/// Tells how far all outputs of a plan have come together.
class Advance {
  public:
    Advance(const TaskContext& task, std::uint64_t allBytes, std::string name)
        : task_(task), allBytes_(allBytes), name_(std::move(name)) {
        task_.advance({0, allBytes_, name_});
    }
    void add(std::uint64_t bytes) {
        done_ += bytes;
        task_.checkCancelled();
        if (done_ - told_ >= reportBytes) tell();
    }
    void tell() {
        told_ = done_;
        task_.advance({done_, allBytes_, name_});
    }

  private:
    const TaskContext& task_;
    std::uint64_t allBytes_;
    std::string name_;
    std::uint64_t done_ = 0, told_ = 0;
};

std::int64_t blockFramesFor(std::size_t frameBytes) {
    return std::clamp<std::int64_t>(static_cast<std::int64_t>(mostBlockBytes / frameBytes), 1, mostBlockFrames);
}

bool isTooManyOpenFiles(const std::error_code& code) noexcept {
    return code == std::errc::too_many_files_open || code == std::errc::too_many_files_open_in_system;
}

/// The files of one pass, and their way into place: of the planned ones the first, as many as can be open together.
class Outputs {
  public:
    Outputs(const OperationContext& context, std::span<const PlannedOutput> planned)
        : context_(context), writeback_(context.ops) {
        for (const PlannedOutput& output : planned.first(std::min(planned.size(), mostOutputsAtOnce))) {
            try {
                files_.emplace_back(context.ops, writeback_, output.destination, output.head, output.dataSize);
            } catch (const std::filesystem::filesystem_error& error) {
                if (!isTooManyOpenFiles(error.code()) || files_.size() <= spareHandles) throw;
                for (std::size_t i = 0; i < spareHandles; ++i)
                    files_.pop_back();
                break;
            }
        }
        planned_ = planned.first(files_.size());
    }
    [[nodiscard]] std::size_t size() const noexcept { return files_.size(); }
    [[nodiscard]] WaveOutput& operator[](std::size_t at) { return files_[at]; }

    void complete(const std::deque<OpenSource>& sources) {
        for (WaveOutput& file : files_)
            file.finish();
        for (WaveOutput& file : files_) {
            context_.task.checkCancelled();
            file.sync();
        }
        for (const OpenSource& source : sources)
            source.checkUnchanged();
        for (std::size_t at = 0; at < files_.size(); ++at) {
            context_.folders.add(files_[at].commit());
            context_.completed.push_back(planned_[at].destination);
        }
    }

  private:
    const OperationContext& context_;
    std::span<const PlannedOutput> planned_;
    Writeback writeback_;
    std::deque<WaveOutput> files_;
};

/// All outputs out of the one source: in one pass over it where so many files can be open, else in several.
void pick(const OperationPlan& plan, const OperationContext& context) {
    std::deque<OpenSource> sources;
    const OpenSource& source = sources.emplace_back(context.ops, plan.sources.front());
    const std::size_t frameBytes = plan.sources.front().wav.blockAlign;
    const std::int64_t blockFrames = blockFramesFor(frameBytes);
    Bytes block(frameBytes * static_cast<std::size_t>(blockFrames));
    std::vector<const std::byte*> strands;
    Advance advance(context.task, plan.size(), fileNameText(plan.outputs.front().destination));
    for (std::span<const PlannedOutput> left = plan.outputs; !left.empty();) {
        Outputs outputs(context, left);
        for (std::int64_t frame = 0; frame < plan.frames; frame += blockFrames) {
            const auto frames = static_cast<std::size_t>(std::min(blockFrames, plan.frames - frame));
            source.read(static_cast<std::uint64_t>(frame) * frameBytes, std::span(block).first(frames * frameBytes));
            std::uint64_t made = 0;
            for (std::size_t at = 0; at < outputs.size(); ++at) {
                strands.clear();
                for (const OutputTrack& track : left[at].tracks)
                    strands.push_back(block.data() + track.canal * plan.bytesParSample);
                const std::size_t bytes = frames * strands.size() * plan.bytesParSample;
                weave(strands, frameBytes, plan.bytesParSample, frames, outputs[at].room(bytes).data());
                outputs[at].produced(bytes);
                made += bytes;
            }
            advance.add(made);
        }
        advance.tell();
        outputs.complete(sources);
        left = left.subspan(outputs.size());
    }
}

/// The one output out of all sources, each of one channel.
void interleave(const OperationPlan& plan, const OperationContext& context) {
    std::deque<OpenSource> sources;
    for (const PlannedSource& planned : plan.sources)
        sources.emplace_back(context.ops, planned);
    const std::size_t sampleBytes = plan.bytesParSample;
    const std::size_t frameBytes = sampleBytes * sources.size();
    const std::int64_t blockFrames = blockFramesFor(frameBytes);
    const std::size_t strandBytes = sampleBytes * static_cast<std::size_t>(blockFrames);
    Bytes block(strandBytes * sources.size());
    std::vector<const std::byte*> strands;
    for (std::size_t at = 0; at < sources.size(); ++at)
        strands.push_back(block.data() + at * strandBytes);
    Outputs outputs(context, plan.outputs);
    Advance advance(context.task, plan.size(), fileNameText(plan.outputs.front().destination));
    for (std::int64_t frame = 0; frame < plan.frames; frame += blockFrames) {
        const auto frames = static_cast<std::size_t>(std::min(blockFrames, plan.frames - frame));
        for (std::size_t at = 0; at < sources.size(); ++at) {
            sources[at].read(static_cast<std::uint64_t>(frame) * sampleBytes,
                             std::span(block).subspan(at * strandBytes, frames * sampleBytes));
        }
        weave(strands, sampleBytes, sampleBytes, frames, outputs[0].room(frames * frameBytes).data());
        outputs[0].produced(frames * frameBytes);
        advance.add(frames * frameBytes);
    }
    advance.tell();
    outputs.complete(sources);
}

/// Each output out of a source of its own: the kernel copies.
void copy(const OperationPlan& plan, const OperationContext& context) {
    const std::uint64_t allBytes = plan.size();
    std::uint64_t before = 0;
    for (const PlannedOutput& output : plan.outputs) {
        const PlannedSource& planned = plan.sources[output.tracks.front().source];
        const OpenSource source(context.ops, planned);
        FilePlan content;
        content.add(output.head);
        content.add(SourceRange{planned.wav.dataOffset, output.dataSize});
        if (output.dataSize % 2 != 0) content.add(Bytes(1));
        const TaskContext task{context.task.token, [&](const Progress& progress) {
                                   if (!context.task.report) return;
                                   context.task.report({before + progress.doneBytes, allBytes, progress.currentName});
                               }};
        SafeFile file(context.ops, output.destination, TempKind::output);
        file.write(content, source.handle(), task);
        file.sync();
        source.checkUnchanged();
        context.folders.add(file.commit(SafeFile::Existing::refuse));
        context.completed.push_back(output.destination);
        before += output.size();
    }
}

}  // namespace

std::string runPlan(const OperationPlan& plan, const OperationContext& context) {
    if (plan.outputs.empty()) return plan.message;
    context.task.checkCancelled();
    for (const PlannedOutput& output : plan.outputs)
        ensureCreatable(context.ops, output.destination);
    ensureRoom(context.ops, plan.outputs.front().destination, plan.size());
    context.begun = true;
    if (plan.sources.size() == 1) {
        pick(plan, context);
    } else if (plan.outputs.size() == 1) {
        interleave(plan, context);
    } else {
        copy(plan, context);
    }
    const std::string note = plan.note.empty() ? std::string() : " " + plan.note;
    if (!plan.verifiesDataSize) return plan.message + note;
    std::vector<std::filesystem::path> sources;
    for (const PlannedSource& source : plan.sources)
        sources.push_back(source.wav.fichier);
    return plan.message + mergeVerification(sources, plan.bytesParSample, plan.outputs.front().destination) + note;
}

}  // namespace OperationsAudio

void OperationPlan::add(PlannedOutput output) {
    std::uint64_t sum = output.headBytes;
    for (const PlannedOutput& other : outputs)
        sum += other.headBytes;
    if (sum > mostHeadBytes) {
        throw OperationAudioError::groupeIncompatible(
            sourceName + " carries too much metadata to be written into so many files. Nothing was created.");
    }
    outputs.push_back(std::move(output));
}

std::uint64_t OperationPlan::size() const noexcept {
    std::uint64_t sum = 0;
    for (const PlannedOutput& output : outputs)
        sum += output.size();
    return sum;
}

std::vector<std::filesystem::path> OperationPlan::destinations() const {
    std::vector<std::filesystem::path> paths;
    for (const PlannedOutput& output : outputs)
        paths.push_back(output.destination);
    return paths;
}

}  // namespace dravik
