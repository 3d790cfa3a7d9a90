#pragma once

#include "model/fichiers.h"
#include "model/piste.h"

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace dravik {

/// The metadata fields that files of one take may disagree on.
enum class MetadataField { project, scene, prise, tape, note, circled, wild, timecode, framerate };

/// A file that cannot be read as audio, and the number by which it is named as a track.
struct UnreadableTrack {
    std::filesystem::path url;
    int numero = 0;
};

/// One row of the file list: a poly file, or the mono files of one take in track order. A value, built by
/// construireGroupes; `fichiers` is never empty.
struct GroupeFichiers {
    /// Do the files agree on the day they were recorded?
    enum class RecordingDateStatus { consistent, none, mixed };

    Uuid id;
    std::string nom;  ///< file name without extension; the common base name of a mono set
    Fichiers fichiers;
    bool estPoly = false;
    bool estDeplie = false;  ///< expanded in the file list
    /// The files' value where they agree; absent or false, and named in `mixedFields`, where they do not.
    std::optional<std::string> project, scene, tape, prise, notes;
    bool circled = false, wild = false;
    std::optional<std::string> timecode, framerate;
    bool forcerSauvegardeMetadata = false;
    std::set<MetadataField> mixedFields;
    /// Files that cannot be read as audio but bear the name of one more track of this take: the take is not whole. They
    /// are groups of their own, and no edit of this one reaches them.
    std::vector<UnreadableTrack> unreadableTracks;
    /// Of a mono set: how many files its recorder says it wrote of the take, and how many of them are not in the
    /// folder. Filled by countFilesNotThere.
    int filesWritten = 0, filesNotThere = 0;

    [[nodiscard]] bool isMonoSet() const noexcept { return !estPoly && fichiers.size() > 1; }
    [[nodiscard]] RecordingDateStatus recordingDateStatus() const noexcept;
    /// The one date, when the status is consistent.
    [[nodiscard]] std::optional<RecordingDate> recordingDate() const noexcept;
};

/// The tracks of a take as shown: of one file its channels, of a mono set the one track of each file.
[[nodiscard]] std::vector<Piste> tracksOfGroup(const GroupeFichiers& groupe);

/// "The recorder says that it wrote 4 files of this take, of which 3 are here."; empty where none lacks.
[[nodiscard]] std::string lackingFilesText(const GroupeFichiers& groupe);

/// Fills the merged fields from the files.
void mergeMetadata(GroupeFichiers& groupe);

}  // namespace dravik
