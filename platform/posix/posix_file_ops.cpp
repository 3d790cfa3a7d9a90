#include "platform/posix/posix_file_ops.h"

#include "base/paths.h"

#include <algorithm>
#include <cerrno>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>
#ifdef __APPLE__
#include <copyfile.h>
#endif

namespace dravik {
namespace {

constexpr std::size_t copyBufferBytes = 1024U * 1024U;

std::error_code codeOf(int code) { return {code, std::generic_category()}; }

FileStamp stampFrom(const struct stat& status) noexcept {
#ifdef __APPLE__
    const timespec modified = status.st_mtimespec;
#else
    const timespec modified = status.st_mtim;
#endif
    return {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
            static_cast<std::uint64_t>(status.st_size), modified.tv_sec, modified.tv_nsec};
}

}  // namespace

void PosixFileOps::fail(const char* what, const std::filesystem::path& path, int code) {
    throw std::filesystem::filesystem_error(what, path, codeOf(code));
}
void PosixFileOps::fail(const char* what, const std::filesystem::path& path) { fail(what, path, errno); }

FileHandle PosixFileOps::createExclusive(const std::filesystem::path& path, Rights rights) {
    constexpr mode_t ownerMode = S_IRUSR | S_IWUSR;
    constexpr mode_t ordinaryMode = ownerMode | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;  // less what the umask takes
    const mode_t mode = rights == Rights::owner ? ownerMode : ordinaryMode;
    FileHandle file(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (!file.isOpen()) fail("cannot create", path);
    return file;
}

FileOps::Lock PosixFileOps::tryLock(const FileHandle& file) noexcept {
    if (::flock(file.descriptor(), LOCK_EX | LOCK_NB) == 0) return Lock::taken;
    return errno == EWOULDBLOCK || errno == EINTR ? Lock::heldByAnother : Lock::unsupported;
}

bool PosixFileOps::isSameFile(const FileHandle& file, const std::filesystem::path& path) noexcept {
    struct stat open {};
    struct stat named {};
    return ::fstat(file.descriptor(), &open) == 0 && ::lstat(path.c_str(), &named) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

FileStamp PosixFileOps::stampOf(const FileHandle& file, const std::filesystem::path& path) {
    struct stat status {};
    if (::fstat(file.descriptor(), &status) != 0) fail("cannot read", path);
    return stampFrom(status);
}

std::optional<FileStamp> PosixFileOps::stampAt(const std::filesystem::path& path) noexcept {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return std::nullopt;
    return stampFrom(status);
}

void PosixFileOps::writeAt(const FileHandle& file, const std::filesystem::path& path, std::uint64_t offset,
                           ByteSpan bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::pwrite(file.descriptor(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) fail("cannot write", path);
        if (written == 0) fail("cannot write", path, ENOSPC);
        bytes = bytes.subspan(static_cast<std::size_t>(written));
        offset += static_cast<std::uint64_t>(written);
    }
}

void PosixFileOps::truncate(const FileHandle& file, const std::filesystem::path& path, std::uint64_t size) {
    while (::ftruncate(file.descriptor(), static_cast<off_t>(size)) != 0) {
        if (errno != EINTR) fail("cannot set the length of", path);
    }
}

std::uint64_t PosixFileOps::copyRange(const FileHandle& from, std::uint64_t fromOffset, const FileHandle& to,
                                      const std::filesystem::path& toPath, std::uint64_t toOffset,
                                      std::uint64_t length) {
    std::vector<std::byte> buffer(static_cast<std::size_t>(std::min<std::uint64_t>(length, copyBufferBytes)));
    for (;;) {
        const ssize_t got = ::pread(from.descriptor(), buffer.data(), buffer.size(), static_cast<off_t>(fromOffset));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) fail("cannot read while copying to", toPath);
        writeAt(to, toPath, toOffset, std::span(buffer).first(static_cast<std::size_t>(got)));
        return static_cast<std::uint64_t>(got);
    }
}

bool PosixFileOps::shareBlocks(const FileHandle&, const FileHandle&) noexcept { return false; }
void PosixFileOps::startWriteback(const FileHandle&, std::uint64_t, std::uint64_t) noexcept {}
void PosixFileOps::waitForWriteback(const FileHandle&, std::uint64_t, std::uint64_t) noexcept {}

void PosixFileOps::copyAttributes(const FileHandle& from, const FileHandle& to, const std::filesystem::path& toPath) {
    struct stat status {};
    if (::fstat(from.descriptor(), &status) != 0) fail("cannot read the attributes for", toPath);
    // The owner first: giving a file away clears its special mode bits. Only root may keep a foreign owner; a file
    // that a user may replace but not own becomes theirs, as with every editor.
    if (::fchown(to.descriptor(), status.st_uid, status.st_gid) != 0) {
        if (::fchown(to.descriptor(), static_cast<uid_t>(-1), status.st_gid) != 0 && errno != EPERM &&
            errno != EINVAL && errno != ENOTSUP && errno != ENOSYS) {
            fail("cannot set the owner of", toPath);
        }
    }
    if (::fchmod(to.descriptor(), status.st_mode & 07777U) != 0 && errno != EPERM && errno != ENOTSUP &&
        errno != ENOSYS) {
        fail("cannot set the permissions of", toPath);
    }
#ifdef __APPLE__
    if (::fcopyfile(from.descriptor(), to.descriptor(), nullptr, COPYFILE_XATTR | COPYFILE_ACL) != 0 &&
        errno != ENOTSUP) {
        fail("cannot copy the attributes of", toPath);
    }
#endif
}

void PosixFileOps::sync(const FileHandle& file, const std::filesystem::path& path) {
#ifdef F_FULLFSYNC
    if (::fcntl(file.descriptor(), F_FULLFSYNC) == 0) return;
#endif
    while (::fsync(file.descriptor()) != 0) {
        if (errno != EINTR) fail("cannot write to the medium", path);
    }
}

void PosixFileOps::renameReplacing(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (::rename(from.c_str(), to.c_str()) != 0) fail("cannot rename to", to);
}

void PosixFileOps::renameNoReplace(const std::filesystem::path& from, const std::filesystem::path& to) {
    // A second name that only appears when the target is free, then the first one goes: no moment in which an existing
    // file could be replaced. Where links do not exist the check and the rename are two steps.
    if (::link(from.c_str(), to.c_str()) == 0) {
        if (::unlink(from.c_str()) == 0) return;
        const int reason = errno;
        static_cast<void>(::unlink(to.c_str()));  // the file keeps its one name
        fail("cannot rename", from, reason);
    }
    if (errno != EPERM && errno != ENOTSUP && errno != ENOSYS && errno != EMLINK && errno != EACCES) {
        fail("cannot rename to", to);
    }
    struct stat status {};
    if (::lstat(to.c_str(), &status) == 0) fail("cannot rename to", to, EEXIST);
    renameReplacing(from, to);
}

void PosixFileOps::syncFolder(const std::filesystem::path& folder) {
    const FileHandle handle(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!handle.isOpen()) fail("cannot open", folder);
    if (::fsync(handle.descriptor()) != 0 && errno != EINVAL && errno != ENOTSUP && errno != EBADF) {
        fail("cannot write to the medium", folder);
    }
}

void PosixFileOps::remove(const std::filesystem::path& path) {
    if (::unlink(path.c_str()) != 0 && errno != ENOENT) fail("cannot remove", path);
}

std::error_code PosixFileOps::creationError(const std::filesystem::path& folder) noexcept {
    // Rights of the effective user, as of whoever will create the file.
    if (::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0) return {};
    return {errno, std::generic_category()};
}

std::optional<std::uint64_t> PosixFileOps::freeBytes(const std::filesystem::path& folder) noexcept {
    struct statvfs status {};
    if (::statvfs(folder.c_str(), &status) != 0) return std::nullopt;
    return static_cast<std::uint64_t>(status.f_bavail) * static_cast<std::uint64_t>(status.f_frsize);
}

}  // namespace dravik
