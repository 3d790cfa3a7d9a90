#include "cli/cue_table.h"

#include "model/audio_metadata.h"

#include <fmt/format.h>

namespace dravik {

Table cueTable(const std::vector<CueMarker>& cues, double sampleRate) {
    using enum Table::Align;
    Table table({{"#", 3, right, {}}, {"Frame", 2, right, {}}, {"Time", 0, left, {}}, {"Label", 1, left, 8}});
    std::size_t number = 0;
    for (const CueMarker& cue : cues) {
        table.add({{fmt::format("{}", ++number)},
                   {fmt::format("{}", cue.frame)},
                   {sampleRate > 0 ? durationText(static_cast<double>(cue.frame) / sampleRate) : ""},
                   {cue.label.value_or(""), Style::strong}});
    }
    return table;
}

}  // namespace dravik
