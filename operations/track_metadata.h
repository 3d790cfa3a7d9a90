#pragma once

#include "model/groupe_fichiers.h"
#include "operations/metadata_chunks.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace dravik {

/// A track of a take as its recorder filed it.
struct SourceTrack {
    int numero = 0;                  ///< the recorder's channel number; the position where it gave none
    std::optional<std::string> nom;  ///< plain text, without entities; absent when it has none
    friend bool operator==(const SourceTrack&, const SourceTrack&) = default;
};

/// A track of a file to come: which samples, and how they are called.
struct OutputTrack {
    std::size_t source = 0;          ///< which of the operation's source files
    std::size_t canal = 0;           ///< channel in that file, from 0
    int numeroSource = 0;            ///< the recorder's number of it there
    int numero = 0;                  ///< its number in the new file
    std::optional<std::string> nom;  ///< plain text
    friend bool operator==(const OutputTrack&, const OutputTrack&) = default;
};

namespace OperationsAudio {

/// The tracks of a poly file, one a channel: names and numbers as the probe read them out of the TRACK_LIST. Where two
/// channels claim one number, all take their position: file names are made of them.
[[nodiscard]] std::vector<SourceTrack> tracksOfPoly(const InfoFichier& fichier);
/// The tracks of a mono set, one a file.
[[nodiscard]] std::vector<SourceTrack> tracksOfMonoSet(const GroupeFichiers& groupe);

/// The name, or "Track " and the number for a track without one.
[[nodiscard]] std::string trackLabel(const OutputTrack& track);

/// The element that lists the tracks, in their order; INTERLEAVE_INDEX counts from 1. No line end behind it.
[[nodiscard]] std::string trackListElement(std::span<const OutputTrack> tracks);

/// The iXML payload with its first TRACK_LIST element replaced by that of the tracks. Every other byte stays, but that
/// text which is not UTF-8 becomes UTF-8 when it has a list. Without a TRACK_LIST the payload comes back unchanged.
/// Throws OperationAudioError when readers would find other tracks in the result, or it cannot be read at all.
[[nodiscard]] Bytes ixmlWithTracks(ByteSpan payload, std::span<const OutputTrack> tracks);

/// The bext payload, at its length, with the "sTRK3=Boom" lines of its Description rebuilt: in the order of the tracks
/// and with their numbers, under the prefix letter (or none) that they have; where several prefixes stand, each
/// keeps lines of its own. A line stands for a track of the file `source`, of which this chunk is and `own` are all the
/// channels, when it had one there: known by its name, else by its number in the TRACK_LIST or by its position. Tracks
/// of other sources get one as well. Without such a line nothing changes. All other lines stay. Where the
/// lines do not fit the 256 bytes, names are shortened, the longest first, never inside a UTF-8 character, and the last
/// lines left out when that is not enough.
[[nodiscard]] Bytes bextWithTracks(ByteSpan payload, std::span<const OutputTrack> tracks, std::size_t source,
                                   std::span<const SourceTrack> own);

/// Rewrites "iXML" and "bext" as above, and passes every other chunk. Refers to nothing: the tracks are copied.
[[nodiscard]] ChunkAdapter trackMetadataAdapter(std::vector<OutputTrack> tracks, std::vector<SourceTrack> own,
                                                std::size_t source = 0);

}  // namespace OperationsAudio
}  // namespace dravik
