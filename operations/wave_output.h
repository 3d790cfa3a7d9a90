#pragma once

#include "base/safe_file.h"
#include "base/writeback.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

namespace dravik::OperationsAudio {

/// A new RIFF/WAVE file being written from its first byte to its last: the head (wave_layout.h), then audio as it is
/// made, in large writes. Hidden until `commit`, gone when destroyed before. One thread at a time. Throws
/// std::filesystem::filesystem_error.
class WaveOutput {
  public:
    /// Makes the hidden file and takes the room for all of it. `dataSize` is that of the head.
    WaveOutput(FileOps& ops, Writeback& writeback, std::filesystem::path destination, ByteSpan head,
               std::uint64_t dataSize, TempKind kind = TempKind::output);

    /// Where the next `bytes` bytes of audio are to be put, valid until the next call; `produced` says that they are
    /// there. No more than `dataSize` in all.
    [[nodiscard]] std::span<std::byte> room(std::size_t bytes);
    void produced(std::size_t bytes);
    /// Audio that lies elsewhere.
    void append(ByteSpan audio);

    /// Writes what is left, and the pad byte. All audio must be there.
    void finish();
    /// The finished file, for a last look at it.
    [[nodiscard]] const FileHandle& file() const noexcept { return file_.file(); }
    /// Waits until all of it is on the medium.
    void sync() { file_.sync(); }
    /// Puts the file in place; fails when something stands there.
    [[nodiscard]] UnsyncedFolder commit() { return file_.commit(SafeFile::Existing::refuse); }

  private:
    void flush(std::size_t bytes);
    /// Moves the first bytes of the audio into the buffer.
    void take(ByteSpan& audio, std::size_t bytes);
    void send();

    FileOps& ops_;
    Writeback& writeback_;
    SafeFile file_;
    std::uint64_t missing_;      ///< bytes of audio still to come
    bool padded_;                ///< a pad byte follows
    std::uint64_t written_ = 0;  ///< bytes of the file that are out of the buffer
    std::uint64_t sent_ = 0;     ///< and of those, bytes that are on their way to the medium
    Bytes buffer_;
    std::size_t filled_ = 0;
};

}  // namespace dravik::OperationsAudio
