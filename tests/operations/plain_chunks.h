#pragma once

#include "base/bytes.h"
#include "tests/support/files.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace dravik::test {

/// A file taken apart by its headers, with nothing of the code under test: id and payload of every chunk.
struct PlainChunk {
    std::string id, payload;
    friend bool operator==(const PlainChunk&, const PlainChunk&) = default;
};
inline std::vector<PlainChunk> chunksOf(const Bytes& file) {
    std::vector<PlainChunk> chunks;
    for (std::size_t at = 12; at + 8 <= file.size();) {
        const std::size_t size = readLE<std::uint32_t>(file.data() + at + 4);
        const ByteSpan payload = ByteSpan(file).subspan(at + 8, std::min(size, file.size() - at - 8));
        chunks.push_back({std::string(asText(ByteSpan(file).subspan(at, 4))), std::string(asText(payload))});
        at += 8 + size + size % 2;
    }
    return chunks;
}
inline std::string payloadOf(const Bytes& file, std::string_view id) {
    for (const PlainChunk& chunk : chunksOf(file)) {
        if (chunk.id == id) return chunk.payload;
    }
    return {};
}
inline std::string payloadOf(const std::filesystem::path& file, std::string_view id) {
    return payloadOf(readFile(file), id);
}

/// One channel picked out of interleaved audio, byte by byte.
inline std::string channelOf(std::string_view audio, std::size_t channels, std::size_t sampleBytes,
                             std::size_t channel) {
    std::string out;
    for (std::size_t at = channel * sampleBytes; at + sampleBytes <= audio.size(); at += channels * sampleBytes)
        out += audio.substr(at, sampleBytes);
    return out;
}

}  // namespace dravik::test
