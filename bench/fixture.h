#pragma once

#include "base/bytes.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace dravik::bench {

/// The folder that the benchmarks work in, on the disk that is to be measured: DRAVIK_BENCH_FOLDER, which stays (so
/// that several runs share one fixture), or else a folder in the current one, which is removed at the end.
class BenchFolder {
  public:
    BenchFolder();
    BenchFolder(const BenchFolder&) = delete;
    BenchFolder& operator=(const BenchFolder&) = delete;
    ~BenchFolder();
    [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }

  private:
    std::filesystem::path path_;
    bool temporary_ = false;
};
/// The one of this process.
[[nodiscard]] const BenchFolder& benchFolder();

/// Recordings as two common kinds of recorder write them, with their usual chunks and a few kilobytes of iXML: poly
/// files with the iXML before the audio and padded, and the mono files of a set with the iXML behind the audio. Lengths
/// and offsets are the same in all files of a kind, so that the bare loop knows where to read.
enum class Kind { poly, mono };

struct Layout {
    std::uint64_t ixmlOffset = 0;  ///< of the payload
    std::uint64_t ixmlBytes = 0;
};
/// How many files a set has; every eighth recording is a poly file, the others are sets.
inline constexpr int monoFilesPerSet = 7;
inline constexpr std::uint64_t smallAudioBytes = 32U * 1024U;

[[nodiscard]] Kind kindOf(std::string_view fileName) noexcept;
[[nodiscard]] Layout layoutOf(Kind kind, std::uint64_t audioBytes) noexcept;
/// The bytes before and behind the audio of the n-th recording.
struct Frame {
    Bytes before, behind;
};
[[nodiscard]] Frame frameOf(Kind kind, int number, std::uint64_t audioBytes);

/// A folder of `count` small recordings in the bench folder, made and synced when it is not there yet; the files in
/// order.
[[nodiscard]] std::vector<std::filesystem::path> smallRecordings(std::string_view folderName, int count);
/// One mono recording with that much audio. Not sparse: every byte of the audio is written, and differs; sparse: only
/// the metadata takes room on the disk.
enum class Filling { written, sparse };
[[nodiscard]] std::filesystem::path largeRecording(std::string_view fileName, std::uint64_t audioBytes,
                                                   Filling filling);
/// A sparse recording with as many chunks as are ever walked, spread over its length: the most that a probe has to
/// read.
[[nodiscard]] std::filesystem::path manyChunksRecording(std::string_view fileName, std::uint64_t bytes);

/// A take of eight channels in 24 bits at 48 kHz, made in the bench folder when it is not there yet. Noise.
struct PolyTake {
    static constexpr std::size_t channels = 8;
    static constexpr std::size_t frameBytes = channels * 3;
    std::filesystem::path path;
    std::size_t frames = 0;
    [[nodiscard]] std::size_t audioBytes() const noexcept { return frames * frameBytes; }
};
/// As loud as it gets, or at a quarter of it: what is to be converted must have room above it.
enum class Loudness { full, quarter };
[[nodiscard]] PolyTake polyTake(int seconds, Loudness loudness = Loudness::full);

/// What every fair reader of a recording does at least: open, one read of the header area, one of the iXML, close.
/// Returns the bytes read; 0 when the file could not be opened.
[[nodiscard]] std::size_t readBare(const char* path, const Layout& layout) noexcept;

}  // namespace dravik::bench
