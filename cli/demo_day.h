#pragma once

#include "cli/demo_audio.h"
#include "model/wave/bext.h"
#include "model/wave/cue_bytes.h"

#include <cstdint>
#include <string>
#include <vector>

namespace dravik {

/// A made-up recording day as a plan: what a sound mixer's report would hold. Values; nothing is written here.

struct DemoTrack {
    std::string name;
    DemoSound sound = DemoSound::boom;
};

/// How a take lies on the card.
enum class DemoLayout {
    poly,          ///< one file
    monoNumbered,  ///< a mono file a track, "_01"
    monoLettered,  ///< a mono file a track, "_T01"
};

struct DemoTake {
    std::string name;  ///< of its file, without extension and track suffix
    DemoLayout layout = DemoLayout::poly;
    std::string project, scene, take, tape, note;
    bool noteOnFirstFileOnly = false;  ///< somebody edited one file of the set by itself
    bool circled = false, wild = false, falseStart = false;
    std::string framerate;           ///< label
    std::uint64_t startSamples = 0;  ///< since midnight
    RecordingDate date;
    std::string time;         ///< "10:12:44"
    std::int64_t frames = 0;  ///< length
    bool slate = true;
    std::vector<DemoTrack> tracks;
    std::vector<CuePoint> cues;
    std::string familyUID;
    std::uint64_t seed = 0;  ///< of its sound and its identifiers
};

/// The day of that many takes (above 0). The more takes, the shorter they are: a day of 24 has a few seconds each, a
/// day of thousands is quickly written.
[[nodiscard]] std::vector<DemoTake> demoDay(int takes, std::uint64_t seed);

}  // namespace dravik
