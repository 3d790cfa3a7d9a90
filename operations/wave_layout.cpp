#include "operations/wave_layout.h"

#include "model/wave/chunk_bytes.h"
#include "model/wave/wave_format.h"
#include "operations/operation_audio_error.h"

#include <limits>
#include <string>

namespace dravik::OperationsAudio {
namespace {

constexpr std::uint64_t mostBytes = std::numeric_limits<std::uint32_t>::max();

std::uint64_t chunkBytes(std::uint64_t payload) noexcept { return chunkHeaderBytes + payload + payload % 2; }

OperationAudioError tooLarge(std::string_view displayName) {
    return OperationAudioError::groupeIncompatible(
        std::string(displayName).append(" is too large for standard RIFF/WAVE output."));
}

}  // namespace

std::uint64_t riffSizeOf(ByteSpan fmtPayload, std::span<const RIFFChunk> extra, std::uint64_t dataSize) noexcept {
    std::uint64_t size = riffHeaderBytes - chunkHeaderBytes + chunkBytes(fmtPayload.size()) + chunkBytes(dataSize);
    for (const RIFFChunk& chunk : extra)
        size += chunkBytes(chunk.payload.size());
    return size;
}

void checkOutputSize(ByteSpan fmtPayload, std::span<const RIFFChunk> extra, std::uint64_t dataSize,
                     std::string_view displayName) {
    if (dataSize > mostBytes || riffSizeOf(fmtPayload, extra, dataSize) > mostBytes) throw tooLarge(displayName);
}

Bytes waveHead(ByteSpan fmtPayload, std::span<const RIFFChunk> extra, std::uint64_t dataSize) {
    Bytes head;
    const std::uint64_t form = riffSizeOf(fmtPayload, extra, dataSize);
    head.reserve(static_cast<std::size_t>(form - dataSize + chunkHeaderBytes));
    appendFormHeader(head, "RIFF", "WAVE", form - (riffHeaderBytes - chunkHeaderBytes));
    appendChunk(head, "fmt ", fmtPayload);
    for (const RIFFChunk& chunk : extra)
        appendChunk(head, chunk.id, chunk.payload);
    appendChunkHeader(head, "data", dataSize);
    return head;
}

Bytes fmtForChannels(ByteSpan payload, std::size_t channels, std::size_t bytesParSample, std::string_view displayName) {
    constexpr std::size_t channelsOffset = 2;
    constexpr std::size_t sampleRateOffset = 4;
    constexpr std::size_t byteRateOffset = 8;
    constexpr std::size_t blockAlignOffset = 12;
    constexpr std::size_t speakersOffset = 20;
    constexpr std::size_t speakersEnd = 24;

    constexpr std::size_t mostFrameBytes = std::numeric_limits<std::uint16_t>::max();
    if (channels > mostFrameBytes / bytesParSample) throw tooLarge(displayName);
    const std::size_t frameBytes = channels * bytesParSample;
    Bytes fmt(payload.begin(), payload.end());
    const auto tag = readLE<std::uint16_t>(fmt.data());
    const bool sameChannels = readLE<std::uint16_t>(fmt.data() + channelsOffset) == channels;
    writeLE(fmt.data() + channelsOffset, static_cast<std::uint16_t>(channels));
    writeLE(fmt.data() + blockAlignOffset, static_cast<std::uint16_t>(frameBytes));
    // A damaged sample rate may give more than 32 bits; no reader counts on the byte rate of linear audio.
    const std::uint64_t byteRate = std::uint64_t{readLE<std::uint32_t>(fmt.data() + sampleRateOffset)} * frameBytes;
    writeLE(fmt.data() + byteRateOffset, static_cast<std::uint32_t>(byteRate));
    if (tag == WaveFormat::extensible && fmt.size() >= speakersEnd && !sameChannels) {
        writeLE(fmt.data() + speakersOffset, std::uint32_t{0});
    }
    return fmt;
}

}  // namespace dravik::OperationsAudio
