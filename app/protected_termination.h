#pragma once

#include "app/commands.h"

#include <functional>

namespace dravik {

/// Quitting in two steps: the question is answered "later", the main window's gate decides. Main thread.
class ProtectedTermination : public QObject {
    Q_OBJECT
  public:
    /// `terminate` ends the event loop.
    ProtectedTermination(Commands& commands, std::function<void()> terminate)
        : commands_(commands), terminate_(std::move(terminate)) {}

    /// The application is asked to terminate. Asked again while the gate's dialog is open, it goes on waiting.
    void applicationShouldTerminate();
    /// The gate's answer to the pending request; without one it is the answer to nothing.
    void replyToApplicationShouldTerminate(bool terminates);

    [[nodiscard]] bool isPending() const noexcept { return pending_; }

  private:
    Commands& commands_;
    std::function<void()> terminate_;
    bool pending_ = false;
};

}  // namespace dravik
