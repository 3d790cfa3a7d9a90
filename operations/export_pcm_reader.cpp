#include "operations/export_pcm_reader.h"

#include "base/paths.h"
#include "operations/operation_audio_error.h"
#include "operations/start_alignment.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace dravik {
namespace {

LinearLayout linearLayout(const WalkedFile& file) {
    const std::optional<LinearLayout> layout =
        file.table() ? linearLayoutIn(file.source(), *file.table()) : std::nullopt;
    if (!layout || layout->sampleRate <= 0) {
        throw OperationAudioError::groupeIncompatible("Only linear PCM WAV sources are supported.");
    }
    return *layout;
}

bool isFloat(SampleEncoding encoding) noexcept {
    return encoding == SampleEncoding::float32 || encoding == SampleEncoding::float64;
}

/// Bits that a sample can hold: as declared (20 in three bytes), or all of its bytes where the declaration and the
/// frame's size do not agree.
int bitDepth(const WalkedFile& file, const LinearLayout& layout) {
    const std::optional<LinearAudio> audio = linearAudioIn(file.source(), *file.table());
    const int container = static_cast<int>(layout.frameBytes) / layout.channels * 8;
    const int declared = audio ? audio->format.bits : 0;
    return declared > container - 8 && declared <= container ? declared : container;
}

}  // namespace

ExportPCMReader::ExportPCMReader(const GroupeFichiers& groupe, const OperationAudioExportRouting& routing)
    : isPoly_(groupe.estPoly) {
    if (isPoly_) {
        if (groupe.fichiers.empty())
            throw OperationAudioError::donneesAudioInaccessibles("The poly WAV source is missing.");
        openPoly(groupe.fichiers.front());
    } else {
        openMonoSet(groupe);
    }
    frameLength_ = layouts_.front().frames;
    sourceIsFloat_ = isFloat(layouts_.front().encoding);
    route(routing);
}

void ExportPCMReader::open(const std::filesystem::path& url) {
    urls_.push_back(url);
    files_.push_back(std::make_unique<WalkedFile>(FileHandle::openForReading(url)));
    const WalkedFile& file = *files_.back();
    if (file.source().error()) throw std::filesystem::filesystem_error("cannot read", url, file.source().error());
    layouts_.push_back(linearLayout(file));
    const Chunk* data = file.table()->first("data");
    cutShort_ = cutShort_ || (data != nullptr && data->truncated());
}

void ExportPCMReader::openPoly(const InfoFichier& file) {
    try {
        open(file.url);
    } catch (const std::filesystem::filesystem_error& error) {
        if (error.code() != std::errc::no_such_file_or_directory) throw;
        throw OperationAudioError::donneesAudioInaccessibles("The poly WAV source is missing.");
    }
    inputChannelCount_ = static_cast<std::size_t>(layouts_.front().channels);
    sourceBitDepth_ = bitDepth(*files_.front(), layouts_.front());
}

void ExportPCMReader::openMonoSet(const GroupeFichiers& groupe) {
    if (groupe.fichiers.empty()) throw OperationAudioError::groupeIncompatible("The mono source group is empty.");
    for (const InfoFichier& member : groupe.fichiers) {
        open(member.url);
        const LinearLayout& layout = layouts_.back();
        if (layout.channels != 1)
            throw OperationAudioError::groupeIncompatible(fileNameText(member.url) + " is not mono.");
        if (layout.sampleRate != layouts_.front().sampleRate || layout.frames != layouts_.front().frames) {
            throw OperationAudioError::groupeIncompatible(
                "Mono sources must have identical sample rates and durations.");
        }
    }
    StartAlignment together;
    for (const std::unique_ptr<WalkedFile>& file : files_) {
        if (!together.accepts(recordedStart(file->source(), *file->table()))) {
            throw OperationAudioError::groupeIncompatible("Mono sources do not share the same start alignment.");
        }
    }
    inputChannelCount_ = files_.size();
}

void ExportPCMReader::route(const OperationAudioExportRouting& routing) {
    if (const auto* mono = std::get_if<routing::Mono>(&routing)) {
        positions_.push_back(mono->first);
        if (mono->second) positions_.push_back(*mono->second);
        averages_ = mono->second.has_value();
        averageGain_ = averages_ ? std::pow(10.0, mono->averageGainDB / 20.0) : 1.0;
    } else if (const auto* stereo = std::get_if<routing::Stereo>(&routing)) {
        positions_ = {stereo->left, stereo->right};
    } else {
        for (std::size_t track = 0; track < inputChannelCount_; ++track)
            positions_.push_back(static_cast<int>(track));
    }
    for (const int track : positions_) {
        if (track < 0 || static_cast<std::size_t>(track) >= inputChannelCount_) {
            throw OperationAudioError::groupeIncompatible("The requested track position is unavailable.");
        }
        const std::size_t file = fileIndex(track);
        if (std::find(fetched_.begin(), fetched_.end(), file) == fetched_.end()) fetched_.push_back(file);
        if (!isPoly_) {
            sourceBitDepth_ = std::max(sourceBitDepth_, bitDepth(*files_[file], layouts_[file]));
            sourceIsFloat_ = sourceIsFloat_ || isFloat(layouts_[file].encoding);
        }
    }
}

std::size_t ExportPCMReader::fetchedFrameBytes() const noexcept {
    std::size_t bytes = 0;
    for (const std::size_t file : fetched_)
        bytes += layouts_[file].frameBytes;
    return bytes;
}

bool ExportPCMReader::takesWholeFrames() const noexcept {
    if (averages_ || fetched_.size() != 1) return false;
    const auto channels = static_cast<std::size_t>(layouts_[fetched_.front()].channels);
    if (positions_.size() != channels) return false;
    for (std::size_t c = 0; isPoly_ && c < channels; ++c) {
        if (positions_[c] != static_cast<int>(c)) return false;
    }
    return true;
}

void ExportPCMReader::fetch(ExportRawBlock& block, std::size_t mostFrames) {
    block.frames = static_cast<std::size_t>(
        std::min<std::int64_t>(static_cast<std::int64_t>(mostFrames), frameLength_ - currentFrame_));
    block.pieces.resize(fetched_.size());
    std::optional<std::size_t> common;
    for (std::size_t i = 0; i < fetched_.size(); ++i) {
        const LinearLayout& layout = layouts_[fetched_[i]];
        Bytes& piece = block.pieces[i];
        piece.resize(block.frames * layout.frameBytes);
        const std::uint64_t from = layout.offset + static_cast<std::uint64_t>(currentFrame_) * layout.frameBytes;
        const FileSource& source = files_[fetched_[i]]->source();
        const std::size_t got = source.readAt(from, piece) / layout.frameBytes;
        if (got < block.frames && source.error()) {
            throw std::filesystem::filesystem_error("cannot read", urls_[fetched_[i]], source.error());
        }
        if (common && got != *common) {
            throw OperationAudioError::donneesAudioInaccessibles("Mono sources ended at different positions.");
        }
        common = got;
    }
    if (*common < block.frames) {
        if (!isPoly_) throw OperationAudioError::donneesAudioInaccessibles("Unable to read mono source samples.");
        block.frames = *common;
        block.pieces.front().resize(block.frames * layouts_[fetched_.front()].frameBytes);
    }
    currentFrame_ += static_cast<std::int64_t>(block.frames);
}

void ExportPCMReader::decodeTrack(const ExportRawBlock& block, int track, float* out) const {
    const std::size_t file = fileIndex(track);
    const auto piece = static_cast<std::size_t>(std::find(fetched_.begin(), fetched_.end(), file) - fetched_.begin());
    channelSamples(block.pieces[piece], layouts_[file], isPoly_ ? track : 0, out);
}

void ExportPCMReader::decode(const ExportRawBlock& block, std::size_t channel, float* out) const {
    decodeTrack(block, positions_[channel], out);
    if (!averages_) return;
    std::vector<float> other(block.frames);
    decodeTrack(block, positions_[1], other.data());
    for (std::size_t i = 0; i < block.frames; ++i) {
        out[i] = static_cast<float>(static_cast<double>(out[i]) * averageGain_ +
                                    static_cast<double>(other[i]) * averageGain_);
    }
}

std::size_t ExportPCMReader::read(std::span<float* const> planes, std::size_t mostFrames) {
    fetch(block_, mostFrames);
    for (std::size_t c = 0; c < planes.size(); ++c)
        decode(block_, c, planes[c]);
    return block_.frames;
}

}  // namespace dravik
