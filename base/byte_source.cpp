#include "base/byte_source.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace dravik {

Bytes ByteSource::read(std::uint64_t offset, std::uint64_t length) const {
    if (offset >= size()) return {};
    Bytes out(static_cast<std::size_t>(std::min(length, size() - offset)));
    out.resize(readAt(offset, out));
    return out;
}

std::size_t MemorySource::readAt(std::uint64_t offset, std::span<std::byte> into) const noexcept {
    if (offset >= bytes_.size() || into.empty()) return 0;
    const std::size_t count = std::min<std::size_t>(into.size(), bytes_.size() - static_cast<std::size_t>(offset));
    std::memcpy(into.data(), bytes_.data() + offset, count);
    return count;
}

FileSource::FileSource(const FileHandle& file) : file_(file) {
    struct stat status {};
    if (!file.isOpen()) {
        error_ = std::make_error_code(std::errc::bad_file_descriptor);
    } else if (::fstat(file.descriptor(), &status) != 0) {
        error_ = std::error_code(errno, std::generic_category());
    } else if (S_ISREG(status.st_mode)) {
        size_ = static_cast<std::uint64_t>(status.st_size);
    }
}

std::size_t FileSource::readFromSystem(std::uint64_t offset, std::span<std::byte> into) const noexcept {
    std::size_t done = 0;
    while (done < into.size()) {
        const ssize_t got =
            ::pread(file_.descriptor(), into.data() + done, into.size() - done, static_cast<off_t>(offset + done));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0 && !error_) error_ = std::error_code(errno, std::generic_category());
        if (got <= 0) break;
        done += static_cast<std::size_t>(got);
    }
    bytesRead_ += done;
    return done;
}

ByteSpan FileSource::windowed(std::uint64_t offset) const noexcept {
    const ByteSpan header = first_.from(offset);
    return header.empty() ? later_.from(offset) : header;
}

template <std::size_t capacity>
void FileSource::fill(Window<capacity>& window, std::uint64_t offset) const noexcept {
    ++windowsFilled_;
    window.offset = offset;
    window.length = readFromSystem(
        offset,
        std::span(window.bytes).first(static_cast<std::size_t>(std::min<std::uint64_t>(capacity, size_ - offset))));
}

std::size_t FileSource::readAt(std::uint64_t offset, std::span<std::byte> into) const noexcept {
    if (offset >= size_ || into.empty()) return 0;
    into = into.first(static_cast<std::size_t>(std::min<std::uint64_t>(into.size(), size_ - offset)));

    ByteSpan there = windowed(offset);
    if (there.empty() && into.size() <= laterWindowBytes && windowsFilled_ <= laterWindows) {
        if (windowsFilled_ == 0) {
            fill(first_, offset);
        } else {
            fill(later_, offset);
        }
        there = windowed(offset);
    }
    const std::size_t done = std::min(into.size(), there.size());
    if (done > 0) std::memcpy(into.data(), there.data(), done);
    return done < into.size() ? done + readFromSystem(offset + done, into.subspan(done)) : done;
}

}  // namespace dravik
