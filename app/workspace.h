#pragma once

#include <QString>
#include <filesystem>
#include <vector>

namespace dravik {

/// A mounted volume that a user may know by name.
struct Volume {
    std::filesystem::path root;
    QString name;
    std::uint64_t freeBytes = 0;
    std::uint64_t allBytes = 0;
    bool ejectable = false;
};

/// The desktop around the program. `open` returns at once, for the main thread. The others wait for disks and other
/// programs, as long as these take, and belong on another thread; several may be called at the same time. What fails
/// gives a sentence for the user, empty when all went well.
class Workspace {
  public:
    virtual ~Workspace() = default;
    /// An address or a file, with the system's default handler.
    [[nodiscard]] virtual QString open(const QString& url) = 0;
    /// Shows the file in the system's file manager.
    [[nodiscard]] virtual QString reveal(const std::filesystem::path& file) = 0;
    [[nodiscard]] virtual QString moveToTrash(const std::filesystem::path& file) = 0;
    [[nodiscard]] virtual QString eject(const Volume& volume) = 0;
    [[nodiscard]] virtual std::vector<Volume> volumes() = 0;

  protected:
    Workspace() = default;
    Workspace(const Workspace&) = default;
    Workspace& operator=(const Workspace&) = default;
};

}  // namespace dravik
