#include "ui/program_options.h"

#include <QCoreApplication>

namespace dravik {

Usage programUsage() {
    Usage usage;
    usage.name = "dravik";
    usage.description =
        QT_TRANSLATE_NOOP("CommandLine", "See, edit and save the metadata of production sound recordings.");
    usage.footer = QT_TRANSLATE_NOOP("CommandLine",
                                     "When Dravik runs already, its window opens what is named here.\n"
                                     "Options of Qt, as \"-platform offscreen\" or \"-style fusion\", are taken, too.");
    usage.options = {
        {{"-h", "--help"}, {}, QT_TRANSLATE_NOOP("CommandLine", "Print this help.")},
        {{"-v", "--version"}, {}, QT_TRANSLATE_NOOP("CommandLine", "Print the version.")},
        {{"--verbose"}, {}, QT_TRANSLATE_NOOP("CommandLine", "Say on standard error what is done.")},
        {{"--picture"},
         UsageValue{"FILE", ValueKind::path},
         QT_TRANSLATE_NOOP("CommandLine", "Draw the main window into this PNG file, and end.")},
        {{"--pictures"},
         UsageValue{"DIR", ValueKind::folder},
         QT_TRANSLATE_NOOP("CommandLine", "Draw every window into this folder, and end.")},
    };
    usage.arguments = {{UsageValue{"PATH", ValueKind::path}, true, true,
                        QT_TRANSLATE_NOOP("CommandLine", "A folder, or files, to open.")}};
    return usage;
}

}  // namespace dravik
