#pragma once

#include "base/file_ops.h"
#include "playback/peak_computation.h"
#include "playback/peak_file.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace dravik {

/// A folder that keeps the peaks of recordings, one file for each, for as long as there is room. Several programs and
/// threads may use one folder at the same time: files appear whole and are never changed. Nothing in it is of value;
/// what is damaged or no longer fits its recording is removed and found anew.
class PeakCache {
  public:
    static constexpr std::uint64_t defaultLimitBytes = 2'000'000'000;

    /// The folder is made when something is stored. `ops` must outlive the cache. A limit of 0 keeps nothing.
    PeakCache(FileOps& ops, std::filesystem::path folder, std::uint64_t limitBytes = defaultLimitBytes);

    /// Absent when there is no such file. To be asked before the file is read, so that peaks of what it held before a
    /// change are never taken for those of what it holds after.
    [[nodiscard]] std::optional<PeakKey> keyOf(const std::filesystem::path& recording) const;
    /// Marks what it finds as used. Does not throw for what it cannot read.
    [[nodiscard]] std::optional<FilePeaks> find(const PeakKey& key) const;
    /// What is larger than the limit is not kept. Throws std::filesystem::filesystem_error and Cancelled; nothing is
    /// left behind then.
    void store(const PeakKey& key, const FilePeaks& peaks, const TaskContext& task) const;
    /// Removes what was not used for the longest time until the rest is within the limit, and what killed programs left
    /// unfinished. What cannot be removed stays.
    void trim() const;

  private:
    [[nodiscard]] std::filesystem::path fileFor(const PeakKey& key) const;
    void removeIfSame(const FileHandle& handle, const std::filesystem::path& file) const;

    FileOps& ops_;
    std::filesystem::path folder_;
    std::uint64_t limitBytes_;
};

struct PeakReport {
    std::shared_ptr<const TakePeaks> peaks;
    std::optional<std::string> cacheProblem;  ///< why they could not be kept; a sentence for the user
};

/// The peaks of a take: out of the cache (if one is given) where it has them, out of the files where not, and then
/// kept. Coarse columns go to the sink as they are found; cached files come in one message. Blocking; throws as
/// `computePeaks` does, never for the cache's sake.
[[nodiscard]] PeakReport takePeaks(const std::vector<std::filesystem::path>& files, const SampleDecoder& decoder,
                                   const PeakCache* cache, const CoarsePeaksSink& sink, const TaskContext& task);

}  // namespace dravik
