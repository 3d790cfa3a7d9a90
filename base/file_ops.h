#pragma once

#include "base/bytes.h"
#include "base/file_handle.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <system_error>

namespace dravik {

/// Which file it is and in what state: any program's write to it, and another file under its name, give another stamp.
/// To compare; the numbers mean nothing by themselves.
struct FileStamp {
    std::uint64_t device = 0, inode = 0, size = 0;
    std::int64_t modifiedSeconds = 0, modifiedNanoseconds = 0;
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// The system calls by which an output comes into being, as an interface: the platform implements it with what its
/// kernel does best, tests make the Nth call fail. Everything throws std::filesystem::filesystem_error with the path
/// given, unless said otherwise. Calls on different handles may run on different threads.
class FileOps {
  public:
    virtual ~FileOps() = default;

    /// Who may read what is created: its owner alone (what takes another file's place is given that one's rights when
    /// it is whole), or whoever may read any file that its owner makes.
    enum class Rights { owner, ordinary };
    /// Creates a file that did not exist, open for reading and writing.
    [[nodiscard]] virtual FileHandle createExclusive(const std::filesystem::path& path, Rights rights) = 0;
    /// What came of asking for the advisory lock that says "in use by a living process".
    enum class Lock {
        taken,
        heldByAnother,
        unsupported,  ///< some network shares: nobody can tell whether the file is in use
    };
    [[nodiscard]] virtual Lock tryLock(const FileHandle& file) noexcept = 0;
    /// Does the name still lead to this open file?
    [[nodiscard]] virtual bool isSameFile(const FileHandle& file, const std::filesystem::path& path) noexcept = 0;
    /// The stamp of the open file.
    [[nodiscard]] virtual FileStamp stampOf(const FileHandle& file, const std::filesystem::path& path) = 0;
    /// The stamp of the file that the name leads to now, behind links; absent when there is none.
    [[nodiscard]] virtual std::optional<FileStamp> stampAt(const std::filesystem::path& path) noexcept = 0;

    virtual void writeAt(const FileHandle& file, const std::filesystem::path& path, std::uint64_t offset,
                         ByteSpan bytes) = 0;
    virtual void truncate(const FileHandle& file, const std::filesystem::path& path, std::uint64_t size) = 0;
    /// Copies up to `length` bytes between files inside the kernel where it can; returns how many, 0 at the source's
    /// end. May copy less than asked.
    [[nodiscard]] virtual std::uint64_t copyRange(const FileHandle& from, std::uint64_t fromOffset,
                                                  const FileHandle& to, const std::filesystem::path& toPath,
                                                  std::uint64_t toOffset, std::uint64_t length) = 0;
    /// Makes the empty file `to` share all blocks of `from`. False when the file system cannot.
    [[nodiscard]] virtual bool shareBlocks(const FileHandle& from, const FileHandle& to) noexcept = 0;
    /// Takes the room for `size` bytes before they are written: they lie together, and writing them out has less left
    /// to decide. The length stays. A hint: never fails, does nothing where the file system cannot.
    virtual void reserve(const FileHandle&, std::uint64_t) noexcept {}
    /// The range will not be read again: its pages in the cache can go. A hint: never fails, changes nothing of the
    /// file.
    virtual void forget(const FileHandle&, std::uint64_t, std::uint64_t) noexcept {}
    /// Starts writing the range out, so that the final sync has little left to do. A hint: never fails.
    virtual void startWriteback(const FileHandle& file, std::uint64_t offset, std::uint64_t length) noexcept = 0;
    /// Waits for a range whose writeback was started. A hint: errors show in `sync`.
    virtual void waitForWriteback(const FileHandle& file, std::uint64_t offset, std::uint64_t length) noexcept = 0;

    /// Closes the last handle to a file that another has replaced. Giving its blocks back can keep a disk busy for as
    /// long as a part of the copy took, and nobody has to wait for it: may happen later, on a thread of its own.
    virtual void closeReplaced(FileHandle) noexcept {}
    /// Waits for it: from then on the room counts as free.
    virtual void finishClosing() noexcept {}

    /// Permissions, owner where allowed, extended attributes (and so access lists) of `from` onto `to`.
    virtual void copyAttributes(const FileHandle& from, const FileHandle& to, const std::filesystem::path& toPath) = 0;
    /// The bytes and the length are on the medium.
    virtual void sync(const FileHandle& file, const std::filesystem::path& path) = 0;

    /// Atomic, `to` is replaced when it exists.
    virtual void renameReplacing(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
    /// Atomic where the file system offers it; fails with std::errc::file_exists when `to` exists.
    virtual void renameNoReplace(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
    /// The folder's names are on the medium. File systems that cannot sync a folder are no error.
    virtual void syncFolder(const std::filesystem::path& folder) = 0;
    virtual void remove(const std::filesystem::path& path) = 0;

    /// Why this user cannot make a file in the folder, as far as the system tells without a try; no error when they
    /// can.
    [[nodiscard]] virtual std::error_code creationError(const std::filesystem::path& folder) noexcept = 0;
    /// Bytes that this user may still write in the folder; absent when the system does not tell.
    [[nodiscard]] virtual std::optional<std::uint64_t> freeBytes(const std::filesystem::path& folder) noexcept = 0;
};

}  // namespace dravik
