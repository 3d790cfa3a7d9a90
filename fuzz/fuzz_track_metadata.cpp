// What the operations write anew of a source's metadata: track lists, track lines, and what an export adapts. The first
// byte chooses the tracks, the rest is the payload of a chunk.
#include "base/text.h"
#include "fuzz/require.h"
#include "model/wave/bext.h"
#include "operations/export_metadata.h"
#include "operations/operation_audio_error.h"
#include "operations/track_metadata.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

using namespace dravik;

namespace {

std::vector<OutputTrack> tracksOf(unsigned choice) {
    std::vector<OutputTrack> tracks;
    for (std::size_t at = 0; at <= choice % 4; ++at) {
        OutputTrack track;
        track.canal = (at + choice / 4) % 4;
        track.source = (choice & 128U) != 0 ? at : 0;
        track.numeroSource = static_cast<int>(track.canal) + 1;
        track.numero = static_cast<int>(at) + 1;
        if ((choice & 64U) != 0) track.nom = "Boom <& \"9\"> " + std::string(static_cast<std::size_t>(choice), 'x');
        tracks.push_back(track);
    }
    return tracks;
}

/// All channels of the source, numbered as inputs are or by position.
std::vector<SourceTrack> channelsOf(unsigned choice) {
    std::vector<SourceTrack> own;
    for (int canal = 0; canal < ((choice & 128U) != 0 ? 1 : 4); ++canal)
        own.push_back({canal + ((choice & 32U) != 0 ? 3 : 1), std::nullopt});
    return own;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    const std::vector<OutputTrack> tracks = tracksOf(data[0]);
    const ByteSpan payload(reinterpret_cast<const std::byte*>(data) + 1, size - 1);

    Bytes listed;
    try {
        listed = OperationsAudio::ixmlWithTracks(payload, tracks);
    } catch (const OperationAudioError&) {
        return 0;  // nothing is made of a document that cannot be rewritten safely
    }
    const bool hasList = asText(listed).find(OperationsAudio::trackListElement(tracks)) != std::string_view::npos;
    require(hasList || std::equal(listed.begin(), listed.end(), payload.begin(), payload.end()));
    if (hasList) {
        const Bytes again = OperationsAudio::ixmlWithTracks(listed, tracks);
        require(again == listed);
    }

    const Bytes lined = OperationsAudio::bextWithTracks(payload, tracks, 0, channelsOf(data[0]));
    require(lined.size() == payload.size());
    const std::size_t kept = std::min(payload.size(), bext::descriptionBytes);
    require(std::equal(lined.begin() + static_cast<std::ptrdiff_t>(kept), lined.end(),
                       payload.begin() + static_cast<std::ptrdiff_t>(kept)));
    if (isValidUtf8(descriptionText(payload))) require(isValidUtf8(descriptionText(lined)));

    ExportAdaptation adaptation;
    adaptation.outputRate = 44100;
    adaptation.tracks = tracks;
    adaptation.own = channelsOf(data[0]);
    adaptation.outputName = "take & export.wav";
    std::vector<RIFFChunk> chunks;
    for (const char* id : {"bext", "iXML", "cue ", "LIST", "fact", "ds64", "PAD "})
        chunks.push_back({FourCC::at(reinterpret_cast<const std::byte*>(id)), Bytes(payload.begin(), payload.end())});
    std::vector<RIFFChunk> adapted;
    try {
        adapted = OperationsAudio::adaptedForExport(chunks, adaptation);
    } catch (const OperationAudioError&) {
        return 0;
    }
    require(adapted.size() <= chunks.size());
    for (const RIFFChunk& chunk : adapted) {
        if (chunk.id == FourCC("bext") || chunk.id == FourCC("cue ")) require(chunk.payload.size() == payload.size());
        if (chunk.id == FourCC("PAD ")) require(chunk.payload == Bytes(payload.begin(), payload.end()));
    }
    return 0;
}
