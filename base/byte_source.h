#pragma once

#include "base/bytes.h"
#include "base/file_handle.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <system_error>

namespace dravik {

/// Random-access bytes of known length that a reader looks at: a file, or memory in tests. Reading never throws; what
/// cannot be read is a short read, and `error` tells a writer that it was not simply the end.
class ByteSource {
  public:
    virtual ~ByteSource() = default;
    [[nodiscard]] virtual std::uint64_t size() const noexcept = 0;
    /// Fills as much of `into` as there is from `offset` on; returns the count.
    virtual std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const noexcept = 0;
    /// The first read error met, if any.
    [[nodiscard]] virtual std::error_code error() const noexcept { return {}; }

    /// `length` bytes from `offset`, fewer when they are not there. Allocates no more than the source holds.
    [[nodiscard]] Bytes read(std::uint64_t offset, std::uint64_t length) const;
};

/// Bytes in memory; keeps a view.
class MemorySource final : public ByteSource {
  public:
    explicit MemorySource(ByteSpan bytes) : bytes_(bytes) {}
    [[nodiscard]] std::uint64_t size() const noexcept override { return bytes_.size(); }
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const noexcept override;

  private:
    ByteSpan bytes_;
};

/// An open file, read with few system calls: small reads are served from two windows of a few kilobytes, one that keeps
/// the header area of the recording and one that follows the reader, to the chunks behind the audio. A folder of
/// thousands of files is probed at the speed of the disk. After the first windows small reads fetch only what they ask
/// for, so that a file of many chunks costs no more than about 30 KiB of reading. One thread at a time.
class FileSource final : public ByteSource {
  public:
    /// The handle must outlive the source. A file whose size cannot be asked counts as empty.
    explicit FileSource(const FileHandle& file);
    [[nodiscard]] std::uint64_t size() const noexcept override { return size_; }
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const noexcept override;
    [[nodiscard]] std::error_code error() const noexcept override { return error_; }

    /// Bytes asked of the system so far; what the promise above is measured by.
    [[nodiscard]] std::uint64_t bytesRead() const noexcept { return bytesRead_; }

  private:
    static constexpr std::size_t firstWindowBytes = 8192;
    static constexpr std::size_t laterWindowBytes = 4096;
    static constexpr int laterWindows = 3;

    template <std::size_t capacity>
    struct Window {
        std::array<std::byte, capacity> bytes;
        std::uint64_t offset = 0;
        std::size_t length = 0;

        [[nodiscard]] ByteSpan from(std::uint64_t at) const noexcept {
            if (at < offset || at - offset >= length) return {};
            return ByteSpan(bytes).subspan(static_cast<std::size_t>(at - offset),
                                           length - static_cast<std::size_t>(at - offset));
        }
    };

    std::size_t readFromSystem(std::uint64_t offset, std::span<std::byte> into) const noexcept;
    [[nodiscard]] ByteSpan windowed(std::uint64_t offset) const noexcept;
    template <std::size_t capacity>
    void fill(Window<capacity>& window, std::uint64_t offset) const noexcept;

    const FileHandle& file_;
    std::uint64_t size_ = 0;
    mutable Window<firstWindowBytes> first_;
    mutable Window<laterWindowBytes> later_;
    mutable int windowsFilled_ = 0;
    mutable std::uint64_t bytesRead_ = 0;
    mutable std::error_code error_;
};

}  // namespace dravik
