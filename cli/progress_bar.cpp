#include "cli/progress_bar.h"

#include "cli/display_text.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace dravik {
namespace {

constexpr auto quickWork = std::chrono::milliseconds(300);
constexpr auto betweenFrames = std::chrono::milliseconds(100);
/// An estimate out of less than this share of the work is a guess.
constexpr double shareToEstimateFrom = 0.05;

std::string barOf(double share, int cells) {
    const int done = static_cast<int>(std::lround(share * cells));
    std::string bar;
    for (int i = 0; i < cells; ++i)
        bar += i < done ? "━" : "╌";
    return bar;
}

}  // namespace

ProgressBar::ProgressBar(Console& console, std::string verb)
    : console_(console), verb_(std::move(verb)), next_(start_ + quickWork) {}

ProgressBar::~ProgressBar() { console_.clearStatus(); }

ProgressSink ProgressBar::sink() {
    if (!console_.statusWidth()) return {};
    return [this](const Progress& progress) { show(progress); };
}

void ProgressBar::show(const Progress& progress) {
    const Clock::time_point now = Clock::now();
    if (now < next_ || progress.allBytes == 0) return;
    next_ = now + betweenFrames;
    const double share =
        std::min(1.0, static_cast<double>(progress.doneBytes) / static_cast<double>(progress.allBytes));
    std::string line = fmt::format("{}  {}  {:3.0f} %", verb_, barOf(share, 24), std::floor(share * 100));
    if (share > shareToEstimateFrom) {
        const double seconds = std::chrono::duration<double>(now - start_).count() * (1 - share) / share;
        line += fmt::format("  {} left", shortDuration(seconds));
    }
    line.append("  ").append(printable(progress.currentName));
    console_.status(fitted(line, console_.statusWidth().value_or(0) - 1));
}

}  // namespace dravik
