#include "ui/program_options.h"

namespace dravik {

Usage programUsage() {
    Usage usage;
    usage.name = "dravik";
    usage.description = "See, edit and save the metadata of production sound recordings.";
    usage.footer =
        "When Dravik runs already, its window opens what is named here.\n"
        "Options of Qt, as \"-platform offscreen\" or \"-style fusion\", are taken, too.";
    usage.options = {
        {{"-h", "--help"}, {}, "Print this help"},
        {{"-v", "--version"}, {}, "Print the version"},
        {{"--verbose"}, {}, "Say on standard error what is done"},
        {{"--picture"}, UsageValue{"FILE", ValueKind::path}, "Draw the main window into this PNG file, and end"},
        {{"--pictures"}, UsageValue{"DIR", ValueKind::folder}, "Draw every window into this folder, and end"},
    };
    usage.arguments = {{UsageValue{"PATH", ValueKind::path}, true, true, "A folder, or files, to open"}};
    return usage;
}

}  // namespace dravik
