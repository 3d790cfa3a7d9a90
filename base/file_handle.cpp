#include "base/file_handle.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace dravik {

FileHandle& FileHandle::operator=(FileHandle&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

FileHandle::~FileHandle() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

FileHandle FileHandle::tryOpenForReading(const std::filesystem::path& path) noexcept {
    // Non-blocking, so that a named pipe with the extension of a recording cannot hang a folder scan.
    return FileHandle(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
}

FileHandle FileHandle::openForReading(const std::filesystem::path& path) {
    FileHandle handle = tryOpenForReading(path);
    if (!handle.isOpen()) {
        throw std::filesystem::filesystem_error("cannot open", path, std::error_code(errno, std::generic_category()));
    }
    return handle;
}

}  // namespace dravik
