#pragma once

#include "base/uuid.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace dravik {

class SingleMainWindowCoordinator;

/// Where files that come from outside arrive (a double click in the file manager, a second start of the program) and
/// wait until a main window takes them. One for each application; main thread; nothing throws.
class ExternalFileOpenRouter {
  public:
    using Urls = std::vector<std::filesystem::path>;
    using Handler = std::function<void(const Urls&)>;

    explicit ExternalFileOpenRouter(SingleMainWindowCoordinator& windows) : windows_(windows) {}

    /// Makes this the active consumer, and hands it everything that waits, in one delivery.
    void registerConsumer(const Uuid& consumerID, Handler handler);
    /// Forgets the active consumer, but only if it is this one: a window that closes late does not unregister its
    /// successor.
    void clear(const Uuid& consumerID);
    /// Every request to open files. Files that wait already, or come twice, are taken once.
    void route(const Urls& urls);

    [[nodiscard]] const Urls& pending() const noexcept { return pending_; }

  private:
    struct Consumer {
        Uuid id;
        Handler handler;
    };
    SingleMainWindowCoordinator& windows_;
    std::optional<Consumer> consumer_;
    Urls pending_;
};

}  // namespace dravik
