#pragma once

#include <filesystem>
#include <utility>

namespace dravik {

/// Owns one open POSIX file descriptor. Not a stream: no buffer, no position of its own (reads and writes name their
/// offset). Movable, closed by the destructor; outputs close through FileOps, which reports errors.
class FileHandle {
  public:
    FileHandle() = default;
    explicit FileHandle(int descriptor) noexcept : descriptor_(descriptor) {}
    FileHandle(FileHandle&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileHandle& operator=(FileHandle&& other) noexcept;
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    ~FileHandle();

    /// Opens for reading. Throws std::filesystem::filesystem_error.
    [[nodiscard]] static FileHandle openForReading(const std::filesystem::path& path);
    /// Opens for reading; not open (`!isOpen()`) when that fails.
    [[nodiscard]] static FileHandle tryOpenForReading(const std::filesystem::path& path) noexcept;

    [[nodiscard]] bool isOpen() const noexcept { return descriptor_ >= 0; }
    [[nodiscard]] int descriptor() const noexcept { return descriptor_; }
    /// Gives the descriptor away; the caller closes it.
    [[nodiscard]] int release() noexcept { return std::exchange(descriptor_, -1); }

  private:
    int descriptor_ = -1;
};

}  // namespace dravik
