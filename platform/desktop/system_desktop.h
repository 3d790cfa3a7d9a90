#pragma once

#include "app/workspace.h"

#include <QString>
#include <QStringList>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>

namespace dravik {

/// The part of the desktop that every system does in a way of its own; one source for each is compiled. As in
/// Workspace, what fails gives a sentence for the user, and any thread may ask, but for `open`.
class SystemDesktop {
  public:
    virtual ~SystemDesktop() = default;
    /// Returns at once.
    [[nodiscard]] virtual QString open(const QString& what) = 0;
    /// The file is there.
    [[nodiscard]] virtual QString reveal(const std::filesystem::path& file) = 0;
    /// What the system complained about, empty when all went well; absent when nothing installed can do it.
    [[nodiscard]] virtual std::optional<QString> eject(const Volume& volume) = 0;

  protected:
    SystemDesktop() = default;
    SystemDesktop(const SystemDesktop&) = default;
    SystemDesktop& operator=(const SystemDesktop&) = default;
};

[[nodiscard]] std::unique_ptr<SystemDesktop> makeSystemDesktop();

/// Starts one of these programs, the first that is installed, with something to open, and does not wait for it.
[[nodiscard]] QString startOpener(const QStringList& openers, const QString& what);
/// Runs a program to its end, and kills it when that takes too long. Absent when it is not installed; else what it
/// complained about, empty when all went well.
[[nodiscard]] std::optional<QString> complaintOf(const QString& program, const QStringList& arguments,
                                                 std::chrono::milliseconds most);

/// Writing back what a recorder's card still has in the cache can take this long; beyond it the user is told.
inline constexpr std::chrono::milliseconds ejectTime{120'000};

}  // namespace dravik
