#include "platform/linux/linux_file_ops.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace dravik {

std::uint64_t LinuxFileOps::copyRange(const FileHandle& from, std::uint64_t fromOffset, const FileHandle& to,
                                      const std::filesystem::path& toPath, std::uint64_t toOffset,
                                      std::uint64_t length) {
    for (;;) {
        off64_t in = static_cast<off64_t>(fromOffset);
        off64_t out = static_cast<off64_t>(toOffset);
        const ssize_t copied =
            ::copy_file_range(from.descriptor(), &in, to.descriptor(), &out, static_cast<std::size_t>(length), 0);
        // Some special and network file systems report success with nothing copied: the plain copy tells the truth.
        if (copied > 0) return static_cast<std::uint64_t>(copied);
        if (copied < 0 && errno == EINTR) continue;
        if (copied < 0 && errno != EXDEV && errno != ENOSYS && errno != EOPNOTSUPP && errno != EINVAL &&
            errno != EBADF) {
            fail("cannot write", toPath);
        }
        return PosixFileOps::copyRange(from, fromOffset, to, toPath, toOffset, length);
    }
}

bool LinuxFileOps::shareBlocks(const FileHandle& from, const FileHandle& to) noexcept {
    return ::ioctl(to.descriptor(), FICLONE, from.descriptor()) == 0;
}

void LinuxFileOps::reserve(const FileHandle& file, std::uint64_t size) noexcept {
    static_cast<void>(::fallocate(file.descriptor(), FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size)));
}

void LinuxFileOps::forget(const FileHandle& file, std::uint64_t offset, std::uint64_t length) noexcept {
    static_cast<void>(::posix_fadvise(file.descriptor(), static_cast<off_t>(offset), static_cast<off_t>(length),
                                      POSIX_FADV_DONTNEED));
}

void LinuxFileOps::closeReplaced(FileHandle old) noexcept {
    // Below this a thread costs more than the wait.
    constexpr off_t large = 16 * 1024 * 1024;
    struct stat status {};
    if (::fstat(old.descriptor(), &status) != 0 || status.st_size < large) return;
    const std::scoped_lock lock(closing_);
    try {
        closer_ = std::jthread([file = std::move(old)] {});  // waits for the one before
    } catch (const std::system_error&) {
        return;  // no thread to be had: the file was closed here
    }
}

void LinuxFileOps::finishClosing() noexcept {
    const std::scoped_lock lock(closing_);
    if (closer_.joinable()) closer_.join();
}

void LinuxFileOps::startWriteback(const FileHandle& file, std::uint64_t offset, std::uint64_t length) noexcept {
    static_cast<void>(::sync_file_range(file.descriptor(), static_cast<off64_t>(offset), static_cast<off64_t>(length),
                                        SYNC_FILE_RANGE_WRITE));
}

void LinuxFileOps::waitForWriteback(const FileHandle& file, std::uint64_t offset, std::uint64_t length) noexcept {
    static_cast<void>(::sync_file_range(file.descriptor(), static_cast<off64_t>(offset), static_cast<off64_t>(length),
                                        SYNC_FILE_RANGE_WAIT_BEFORE));
}

void LinuxFileOps::copyAttributes(const FileHandle& from, const FileHandle& to, const std::filesystem::path& toPath) {
    // The permissions last: nobody but root may give attributes to a file that has become read-only.
    copyExtendedAttributes(from, to, toPath);
    PosixFileOps::copyAttributes(from, to, toPath);
}

void LinuxFileOps::copyExtendedAttributes(const FileHandle& from, const FileHandle& to,
                                          const std::filesystem::path& toPath) {
    constexpr const char* accessList = "system.posix_acl_access";
    // A folder hands its default access list to every new file; ours has the original's, or none.
    if (::fgetxattr(from.descriptor(), accessList, nullptr, 0) < 0 && errno == ENODATA) {
        static_cast<void>(::fremovexattr(to.descriptor(), accessList));
    }
    const ssize_t namesLength = ::flistxattr(from.descriptor(), nullptr, 0);
    if (namesLength <= 0) return;  // none, or a file system without them
    std::vector<char> names(static_cast<std::size_t>(namesLength));
    const ssize_t listed = ::flistxattr(from.descriptor(), names.data(), names.size());
    if (listed < 0) fail("cannot read the attributes for", toPath);
    std::vector<char> value;
    for (std::string_view rest(names.data(), static_cast<std::size_t>(listed)); !rest.empty();) {
        const std::string name(rest.substr(0, rest.find('\0')));
        rest.remove_prefix(std::min(rest.size(), name.size() + 1));
        const ssize_t valueLength = ::fgetxattr(from.descriptor(), name.c_str(), nullptr, 0);
        if (valueLength < 0) continue;  // gone, or not ours to read
        value.resize(static_cast<std::size_t>(valueLength));
        const ssize_t got = ::fgetxattr(from.descriptor(), name.c_str(), value.data(), value.size());
        if (got < 0) fail("cannot read the attributes for", toPath);
        // Labels of the security system belong to the kernel: it gives the new file its own.
        if (::fsetxattr(to.descriptor(), name.c_str(), value.data(), static_cast<std::size_t>(got), 0) != 0 &&
            errno != EPERM && errno != EACCES && errno != ENOTSUP) {
            fail("cannot copy the attributes of", toPath);
        }
    }
}

void LinuxFileOps::renameNoReplace(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return;
    if (errno != EINVAL && errno != ENOSYS) fail("cannot rename to", to);
    PosixFileOps::renameNoReplace(from, to);
}

}  // namespace dravik
