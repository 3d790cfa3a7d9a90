#include "playback/peak_cache.h"

#include "base/paths.h"
#include "base/safe_file.h"
#include "base/temp_name.h"
#include "playback/parallel_work.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

namespace dravik {
namespace {

constexpr std::string_view extension = ".peaks";
constexpr std::size_t hashDigits = 16;
/// One write, after which a cancel is looked for.
constexpr std::size_t writeBytes = 4U * 1024U * 1024U;

/// FNV-1a. Two paths of one hash only take turns in the cache: the head tells whose the peaks are.
std::uint64_t hashOf(std::string_view text) noexcept {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    return hash;
}

bool isCacheName(std::string_view name) noexcept {
    return name.size() == hashDigits + extension.size() && name.ends_with(extension) &&
           name.find_first_not_of("0123456789abcdef") == hashDigits;
}

}  // namespace

PeakCache::PeakCache(FileOps& ops, std::filesystem::path folder, std::uint64_t limitBytes)
    : ops_(ops), folder_(std::move(folder)), limitBytes_(limitBytes) {}

std::filesystem::path PeakCache::fileFor(const PeakKey& key) const {
    return folder_ / fmt::format("{:016x}{}", hashOf(key.path), extension);
}

std::optional<PeakKey> PeakCache::keyOf(const std::filesystem::path& recording) const {
    std::error_code unknown;
    const std::filesystem::path path = std::filesystem::absolute(recording, unknown).lexically_normal();
    const std::optional<FileStamp> stamp = unknown ? std::nullopt : ops_.stampAt(path);
    if (!stamp) return std::nullopt;
    return PeakKey{path.native(), stamp->size, stamp->modifiedSeconds, stamp->modifiedNanoseconds};
}

std::optional<FilePeaks> PeakCache::find(const PeakKey& key) const {
    const std::filesystem::path path = fileFor(key);
    const FileHandle handle = FileHandle::tryOpenForReading(path);
    if (!handle.isOpen()) return std::nullopt;
    std::optional<PeakFile> file = readPeakFile(FileSource(handle), &key);
    if (!file) {
        removeIfSame(handle, path);
        return std::nullopt;
    }
    // A folder that cannot be written to is no reason not to use what is in it.
    std::error_code ignored;
    std::filesystem::last_write_time(path, std::filesystem::file_time_type::clock::now(), ignored);
    return std::move(file->peaks);
}

void PeakCache::removeIfSame(const FileHandle& handle, const std::filesystem::path& file) const {
    try {
        // Another program may have put a good one in its place.
        if (ops_.isSameFile(handle, file)) ops_.remove(file);
    } catch (const std::filesystem::filesystem_error&) {
        return;  // it is ignored as often as it is met
    }
}

void PeakCache::store(const PeakKey& key, const FilePeaks& peaks, const TaskContext& task) const {
    const Bytes head = peakFileHead(key, peaks);
    ByteSpan values = peakFileValues(peaks);
    if (head.size() + values.size() > limitBytes_) return;
    std::filesystem::create_directories(folder_);
    SafeFile file(ops_, fileFor(key), TempKind::output);
    file.writeAt(0, head);
    for (std::uint64_t at = head.size(); !values.empty();) {
        task.checkCancelled();
        const ByteSpan piece = values.first(std::min(values.size(), writeBytes));
        file.writeAt(at, piece);
        at += piece.size();
        values = values.subspan(piece.size());
    }
    // A name that a power cut takes back is a cache miss: the folder needs no sync either.
    static_cast<void>(file.commit(SafeFile::Existing::replace, SafeFile::Durability::expendable));
}

void PeakCache::trim() const {
    struct Entry {
        std::filesystem::path path;
        std::filesystem::file_time_type used;
        std::uint64_t bytes;
    };
    std::vector<Entry> entries;
    std::uint64_t total = 0;
    std::error_code error;
    for (std::filesystem::directory_iterator it(folder_, error), end; !error && it != end; it.increment(error)) {
        std::error_code gone;
        if (!it->is_regular_file(gone) || it->is_symlink(gone)) continue;
        const std::string name = fileNameText(it->path());
        if (isTemporaryName(name)) {
            const FileHandle handle = FileHandle::tryOpenForReading(it->path());
            if (handle.isOpen() && ops_.tryLock(handle) == FileOps::Lock::taken) removeIfSame(handle, it->path());
        } else if (isCacheName(name)) {
            const auto used = it->last_write_time(gone);
            const std::uint64_t bytes = gone ? 0 : it->file_size(gone);
            if (gone) continue;
            entries.push_back({it->path(), used, bytes});
            total += bytes;
        }
    }
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.used < b.used; });
    for (const Entry& entry : entries) {
        if (total <= limitBytes_) return;
        try {
            ops_.remove(entry.path);
            total -= entry.bytes;
        } catch (const std::filesystem::filesystem_error&) {
            continue;  // another program was faster, or it stays
        }
    }
}

PeakReport takePeaks(const std::vector<std::filesystem::path>& files, const SampleDecoder& decoder,
                     const PeakCache* cache, const CoarsePeaksSink& sink, const TaskContext& task) {
    auto take = std::make_shared<TakePeaks>();
    take->files.resize(files.size());
    std::vector<std::optional<PeakKey>> keys(files.size());
    std::vector<char> cached(files.size(), 0);
    if (cache != nullptr) {
        ParallelWork lookups(task, 0);
        lookups.run(files.size(), [&] {
            return [&](std::size_t i) {
                task.checkCancelled();
                keys[i] = cache->keyOf(files[i]);
                std::optional<FilePeaks> found = keys[i] ? cache->find(*keys[i]) : std::nullopt;
                if (!found) return;
                cached[i] = 1;
                FilePeaks& peaks = take->files[i] = std::move(*found);
                const PeakLevel& level = peaks.donneesAudio;
                if (!sink) return;
                CoarsePeaks message{i, peaks.channels, peaks.frames, peaks.sampleRate, level.framesPerBin,
                                    0, level.bins,     level.values};
                lookups.exclusively([&] { sink(std::move(message)); });
            };
        });
    }
    std::vector<PeakRequest> missing;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (cached[i] == 0) missing.push_back({files[i], i});
    }
    PeakReport report{take, {}};
    if (missing.empty()) return report;

    std::vector<FilePeaks> computed = computePeaks(missing, decoder, sink, task);
    for (std::size_t i = 0; i < missing.size(); ++i) {
        FilePeaks& peaks = take->files[missing[i].place] = std::move(computed[i]);
        const std::optional<PeakKey>& key = keys[missing[i].place];
        if (cache == nullptr || !key || report.cacheProblem) continue;
        try {
            cache->store(*key, peaks, task);
        } catch (const std::filesystem::filesystem_error& error) {
            report.cacheProblem = fmt::format("The waveform could not be kept for the next time: {}", userText(error));
        }
    }
    if (cache != nullptr) cache->trim();
    return report;
}

}  // namespace dravik
