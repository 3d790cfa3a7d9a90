#pragma once

#include <functional>
#include <string>

namespace dravik {

/// What the coordinator knows of a main window.
class MainWindowHandle {
  public:
    virtual ~MainWindowHandle() = default;
    [[nodiscard]] virtual bool isVisible() const = 0;
    /// Activates the application, and brings the window to the front with the keyboard in it.
    virtual void present() = 0;
    /// One phrase for the log: visible, minimised, level.
    [[nodiscard]] virtual std::string description() const = 0;

  protected:
    MainWindowHandle() = default;
    MainWindowHandle(const MainWindowHandle&) = default;
    MainWindowHandle& operator=(const MainWindowHandle&) = default;
};

/// Sees to it that there is exactly one main window. Main thread; nothing throws.
class SingleMainWindowCoordinator {
  public:
    /// Identifier of the main window, and the name under which its frame is remembered.
    static constexpr const char* mainWindowIdentifier = "DravikMainWindow";

    /// The existing main window to the front, or the creation of one.
    void presentMainWindow();

    /// How a main window is made. A request that came before is carried out now.
    void setOpener(std::function<void()> opener);
    /// The window tells that it is there, or (null) not any more. It outlives its registration.
    void setMainWindow(MainWindowHandle* window) noexcept { window_ = window; }

  private:
    [[nodiscard]] std::string windows() const;

    MainWindowHandle* window_ = nullptr;
    std::function<void()> opener_;
    bool requested_ = false;
};

}  // namespace dravik
