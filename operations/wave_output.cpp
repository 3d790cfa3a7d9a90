#include "operations/wave_output.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace dravik::OperationsAudio {
namespace {

/// One write: large enough to cost nothing, small enough that the buffers of many outputs stay small.
constexpr std::size_t writeBytes = 512U * 1024U;
/// Writes end at whole pages: one that is on its way to the medium is not touched again.
constexpr std::size_t pageBytes = 4096;
/// From here on a copy into the buffer costs more than a write of its own.
constexpr std::size_t directBytes = 128U * 1024U;
/// Bytes of one file that are sent on their way together: the disk gets long pieces where many files grow at once.
constexpr std::uint64_t writebackBytes = 4U * 1024U * 1024U;

}  // namespace

WaveOutput::WaveOutput(FileOps& ops, Writeback& writeback, std::filesystem::path destination, ByteSpan head,
                       std::uint64_t dataSize, TempKind kind)
    : ops_(ops),
      writeback_(writeback),
      file_(ops, std::move(destination), kind),
      missing_(dataSize),
      padded_(dataSize % 2 != 0) {
    const std::uint64_t size = head.size() + dataSize + (padded_ ? 1U : 0U);
    if (size > writeBytes) ops_.reserve(file_.file(), size);
    const std::size_t whole = head.size() - head.size() % pageBytes;
    file_.writeAt(0, head.first(whole));
    written_ = whole;
    sent_ = whole;
    buffer_.assign(head.begin() + static_cast<std::ptrdiff_t>(whole), head.end());
    filled_ = buffer_.size();
}

std::span<std::byte> WaveOutput::room(std::size_t bytes) {
    if (buffer_.size() - filled_ < bytes) buffer_.resize(filled_ + std::max(bytes, writeBytes));
    return std::span(buffer_).subspan(filled_, bytes);
}

void WaveOutput::produced(std::size_t bytes) {
    if (bytes > missing_) throw std::logic_error("more audio than the header of the file says");
    missing_ -= bytes;
    filled_ += bytes;
    if (filled_ >= writeBytes) flush(filled_ - filled_ % pageBytes);
}

void WaveOutput::append(ByteSpan audio) {
    // What is large goes out from where it lies, once the buffer ends with a page.
    if (audio.size() >= directBytes) {
        take(audio, (pageBytes - filled_ % pageBytes) % pageBytes);
        if (filled_ > 0) flush(filled_);
        const ByteSpan whole = audio.first(audio.size() - audio.size() % pageBytes);
        if (whole.size() > missing_) throw std::logic_error("more audio than the header of the file says");
        file_.writeAt(written_, whole);
        written_ += whole.size();
        missing_ -= whole.size();
        if (written_ - sent_ >= writebackBytes) send();
        audio = audio.subspan(whole.size());
    }
    while (!audio.empty())
        take(audio, std::min(audio.size(), writeBytes));
}

void WaveOutput::take(ByteSpan& audio, std::size_t bytes) {
    if (bytes == 0) return;
    std::memcpy(room(bytes).data(), audio.data(), bytes);
    produced(bytes);
    audio = audio.subspan(bytes);
}

void WaveOutput::flush(std::size_t bytes) {
    file_.writeAt(written_, ByteSpan(buffer_).first(bytes));
    written_ += bytes;
    if (written_ - sent_ >= writebackBytes) send();
    std::memmove(buffer_.data(), buffer_.data() + bytes, filled_ - bytes);
    filled_ -= bytes;
}

void WaveOutput::send() {
    if (written_ == sent_) return;
    writeback_.wrote(file_.file(), sent_, written_ - sent_);
    sent_ = written_;
}

void WaveOutput::finish() {
    if (missing_ != 0) throw std::logic_error("less audio than the header of the file says");
    if (std::exchange(padded_, false)) {
        buffer_.resize(std::max(buffer_.size(), filled_ + 1));
        buffer_[filled_++] = std::byte{0};
    }
    if (filled_ > 0) flush(filled_);
    send();
}

}  // namespace dravik::OperationsAudio
