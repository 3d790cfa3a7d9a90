#pragma once

#include <map>
#include <optional>
#include <string>

namespace dravik {

/// What is written into the tracks of a document; see MetadataValues for the meaning of each.
struct TrackEdits {
    std::map<int, std::string> names = {};
    std::optional<std::string> soleName = {};
    std::map<int, int> numbers = {};
    std::optional<int> soleNumber = {};
};

/// The TRACK_LIST part of an edit: writes all names and numbers in one pass, so that a large document with many names
/// stays linear. Tracks are told by what the document says before the edit: a name stays with its track whatever
/// numbers are given. Tracks and numbers below 1 are passed over. See setTrackName and setTrackNumber for the rules.
void writeTracks(std::string& document, const TrackEdits& edits);

}  // namespace dravik
