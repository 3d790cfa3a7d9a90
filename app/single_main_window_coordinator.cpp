#include "app/single_main_window_coordinator.h"

#include <utility>

#include <fmt/format.h>
#include <spdlog/spdlog.h>

namespace dravik {

std::string SingleMainWindowCoordinator::windows() const {
    return fmt::format(", visible app windows=[{}]",
                       window_ != nullptr && window_->isVisible() ? window_->description() : "");
}

void SingleMainWindowCoordinator::presentMainWindow() {
    if (window_ != nullptr && window_->isVisible()) {
        window_->present();
        spdlog::info("presented existing main window; {}", windows());
        return;
    }
    spdlog::info("no visible main window to present; {}", windows());
    if (!opener_) {
        spdlog::info("main window creation requested before opener was ready; {}", windows());
        requested_ = true;
        return;
    }
    spdlog::info("requesting single main window creation/presentation; {}", windows());
    // A window that exists but is hidden is shown again, never doubled.
    if (window_ != nullptr) {
        window_->present();
    } else {
        opener_();
    }
}

void SingleMainWindowCoordinator::setOpener(std::function<void()> opener) {
    opener_ = std::move(opener);
    if (opener_ && std::exchange(requested_, false)) presentMainWindow();
}

}  // namespace dravik
