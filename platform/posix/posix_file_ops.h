#pragma once

#include "base/file_ops.h"

namespace dravik {

/// FileOps on what every POSIX system has (with F_FULLFSYNC and copyfile on macOS): copies through a 1 MiB buffer, no
/// shared blocks, no writeback hints. A system that can do better derives from it.
class PosixFileOps : public FileOps {
  public:
    FileHandle createExclusive(const std::filesystem::path& path, Rights rights) override;
    Lock tryLock(const FileHandle& file) noexcept override;
    bool isSameFile(const FileHandle& file, const std::filesystem::path& path) noexcept override;
    FileStamp stampOf(const FileHandle& file, const std::filesystem::path& path) override;
    std::optional<FileStamp> stampAt(const std::filesystem::path& path) noexcept override;
    void writeAt(const FileHandle& file, const std::filesystem::path& path, std::uint64_t offset,
                 ByteSpan bytes) override;
    void truncate(const FileHandle& file, const std::filesystem::path& path, std::uint64_t size) override;
    std::uint64_t copyRange(const FileHandle& from, std::uint64_t fromOffset, const FileHandle& to,
                            const std::filesystem::path& toPath, std::uint64_t toOffset, std::uint64_t length) override;
    bool shareBlocks(const FileHandle& from, const FileHandle& to) noexcept override;
    void startWriteback(const FileHandle& file, std::uint64_t offset, std::uint64_t length) noexcept override;
    void waitForWriteback(const FileHandle& file, std::uint64_t offset, std::uint64_t length) noexcept override;
    void copyAttributes(const FileHandle& from, const FileHandle& to, const std::filesystem::path& toPath) override;
    void sync(const FileHandle& file, const std::filesystem::path& path) override;
    void renameReplacing(const std::filesystem::path& from, const std::filesystem::path& to) override;
    void renameNoReplace(const std::filesystem::path& from, const std::filesystem::path& to) override;
    void syncFolder(const std::filesystem::path& folder) override;
    void remove(const std::filesystem::path& path) override;
    std::error_code creationError(const std::filesystem::path& folder) noexcept override;
    std::optional<std::uint64_t> freeBytes(const std::filesystem::path& folder) noexcept override;

  protected:
    [[noreturn]] static void fail(const char* what, const std::filesystem::path& path, int code);
    [[noreturn]] static void fail(const char* what, const std::filesystem::path& path);
};

}  // namespace dravik
