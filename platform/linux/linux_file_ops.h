#pragma once

#include "platform/posix/posix_file_ops.h"

#include <mutex>
#include <thread>

namespace dravik {

/// FileOps with what Linux adds: copies inside the kernel (copy_file_range), shared blocks (btrfs, xfs, bcachefs),
/// writeback under our control, renames that refuse to replace, extended attributes.
class LinuxFileOps final : public PosixFileOps {
  public:
    std::uint64_t copyRange(const FileHandle& from, std::uint64_t fromOffset, const FileHandle& to,
                            const std::filesystem::path& toPath, std::uint64_t toOffset, std::uint64_t length) override;
    bool shareBlocks(const FileHandle& from, const FileHandle& to) noexcept override;
    void reserve(const FileHandle& file, std::uint64_t size) noexcept override;
    void forget(const FileHandle& file, std::uint64_t offset, std::uint64_t length) noexcept override;
    void closeReplaced(FileHandle old) noexcept override;
    void finishClosing() noexcept override;
    void startWriteback(const FileHandle& file, std::uint64_t offset, std::uint64_t length) noexcept override;
    void waitForWriteback(const FileHandle& file, std::uint64_t offset, std::uint64_t length) noexcept override;
    void copyAttributes(const FileHandle& from, const FileHandle& to, const std::filesystem::path& toPath) override;
    void renameNoReplace(const std::filesystem::path& from, const std::filesystem::path& to) override;

  private:
    static void copyExtendedAttributes(const FileHandle& from, const FileHandle& to,
                                       const std::filesystem::path& toPath);

    std::mutex closing_;
    std::jthread closer_;  ///< of one file at a time
};

}  // namespace dravik
