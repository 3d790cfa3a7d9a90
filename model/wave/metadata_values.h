#pragma once

#include <map>
#include <optional>
#include <string>

namespace dravik {

/// The values a save writes into one file. An absent text or flag was not edited: the file keeps its own, and an
/// element it does not have is not added. CIRCLED alone is always written anew, from the file's own value; and where a
/// TAKE_TYPE, which that removes, was all that said "wild", a WILD_TRACK takes over. A timecode is counted at
/// `framerate`: whoever gives one gives both.
struct MetadataValues {
    std::optional<std::string> project, scene, tape, prise, note;
    std::optional<bool> circled, wild;
    /// Track number -> name, only those to write; plain text ("&", not "&amp;").
    std::map<int, std::string> nomsPistes;
    /// Name for the only track of a mono file: goes into the TRACK that is shown, the one with the lowest key among
    /// those that have a name, else with the lowest key; a file without a TRACK gets track 1.
    std::optional<std::string> soleTrackName;
    /// Interleave position -> the recorder's channel number, only those to write; both from 1.
    std::map<int, int> numerosTracks;
    /// Channel number for the only track of a mono file: goes into the TRACK whose number is shown, the one with the
    /// lowest position among those that have a number, else into the one whose name is shown.
    std::optional<int> soleTrackNumber;
    std::string timecode;   ///< "HH:MM:SS:FF"; empty: leave the file's time stamp alone
    std::string framerate;  ///< label; empty: leave the file's rate alone
    double sampleRate = 0;  ///< of the file, Hz
};

}  // namespace dravik
