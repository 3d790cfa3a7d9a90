#include "base/build_info.h"
#include "base/completions.h"
#include "base/man_page.h"
#include "ui/program_options.h"

#include <cstdio>
#include <optional>
#include <string_view>

#include <fmt/format.h>

/// dravik_documents man-page|bash|zsh|fish: prints what is installed beside the window program. Apart from that
/// program, so that no build needs a display.
int main(int argc, char** argv) {
    using namespace dravik;
    const std::string_view what = argc == 2 ? argv[1] : "";
    const Usage usage = programUsage();
    if (what == "man-page") {
        fmt::print("{}", manPage(usage, buildInfo().version, {"dravik-cli"}));
    } else if (const std::optional<Shell> shell = shellOf(what)) {
        fmt::print("{}", completions(usage, *shell));
    } else {
        fmt::print(stderr, "usage: dravik_documents man-page|bash|zsh|fish\n");
        return 2;
    }
    return std::fflush(stdout) == 0 ? 0 : 1;
}
