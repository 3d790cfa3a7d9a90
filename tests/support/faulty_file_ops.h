#pragma once

#include "base/file_ops.h"

#include <cerrno>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>

namespace dravik::test {

/// The calls that can be counted, hooked and made to fail.
enum class Call {
    create,
    lock,
    write,
    truncate,
    copy,
    share,
    attributes,
    sync,
    rename,
    renameNoReplace,
    syncFolder,
    remove,
};

/// The native file operations, with faults. Counts every call; fails those it is told to, before they have any effect;
/// runs a hook before each. One thread at a time where faults are set.
class FaultyFileOps final : public FileOps {
  public:
    FaultyFileOps();
    ~FaultyFileOps() override;

    struct Fault {
        std::set<Call> kinds = {};  ///< empty: every call that can throw
        int nth = 1;                ///< which of them fails, from 1
        int andNth = 0;             ///< and which other one
        bool allLater = false;      ///< and every one behind it
        int errorNumber = EIO;
    };
    /// From now on; counts from now on, too.
    void failAt(const Fault& fault);
    /// How often the fault was met since.
    [[nodiscard]] int failures() const noexcept { return failures_; }

    /// Called before every call with how many there were, this one included. Must not throw.
    void before(std::function<void(Call, int)> hook) { hook_ = std::move(hook); }
    [[nodiscard]] int calls() const noexcept { return calls_; }
    [[nodiscard]] int calls(Call call) const;

    std::optional<std::uint64_t> free;            ///< said instead of the truth
    std::optional<std::uint64_t> freeOnceClosed;  ///< said when the closing of replaced files was waited for
    bool readOnlyFolders = false;                 ///< says that no file can be made
    bool sharing = false;                         ///< pretends that the file system shares blocks (by copying them)
    bool syncing = true;  ///< false: a sync succeeds and does nothing, where only logic is tested
    bool locking = true;  ///< false: a file system without locks

    FileHandle createExclusive(const std::filesystem::path& path, Rights rights) override;
    Lock tryLock(const FileHandle& file) noexcept override;
    bool isSameFile(const FileHandle& file, const std::filesystem::path& path) noexcept override;
    FileStamp stampOf(const FileHandle& file, const std::filesystem::path& path) override;
    std::optional<FileStamp> stampAt(const std::filesystem::path& path) noexcept override;
    void writeAt(const FileHandle& file, const std::filesystem::path& path, std::uint64_t offset,
                 ByteSpan bytes) override;
    void truncate(const FileHandle& file, const std::filesystem::path& path, std::uint64_t size) override;
    std::uint64_t copyRange(const FileHandle& from, std::uint64_t fromOffset, const FileHandle& to,
                            const std::filesystem::path& toPath, std::uint64_t toOffset, std::uint64_t length) override;
    bool shareBlocks(const FileHandle& from, const FileHandle& to) noexcept override;
    void reserve(const FileHandle& file, std::uint64_t size) noexcept override;
    void forget(const FileHandle& file, std::uint64_t offset, std::uint64_t length) noexcept override;
    void closeReplaced(FileHandle old) noexcept override;
    void finishClosing() noexcept override;
    void startWriteback(const FileHandle& file, std::uint64_t offset, std::uint64_t length) noexcept override;
    void waitForWriteback(const FileHandle& file, std::uint64_t offset, std::uint64_t length) noexcept override;
    void copyAttributes(const FileHandle& from, const FileHandle& to, const std::filesystem::path& toPath) override;
    void sync(const FileHandle& file, const std::filesystem::path& path) override;
    void renameReplacing(const std::filesystem::path& from, const std::filesystem::path& to) override;
    void renameNoReplace(const std::filesystem::path& from, const std::filesystem::path& to) override;
    void syncFolder(const std::filesystem::path& folder) override;
    void remove(const std::filesystem::path& path) override;
    std::error_code creationError(const std::filesystem::path& folder) noexcept override;
    std::optional<std::uint64_t> freeBytes(const std::filesystem::path& folder) noexcept override;

  private:
    /// Counts and hooks; true when this call is to fail.
    bool isDue(Call call);
    void enter(Call call, const std::filesystem::path& path);

    std::unique_ptr<FileOps> native_;
    std::optional<Fault> fault_;
    int met_ = 0;
    int failures_ = 0;
    int calls_ = 0;
    std::mutex counting_;  ///< runs without faults may be of several threads
    std::map<Call, int> callsOf_;
    std::function<void(Call, int)> hook_;
};

}  // namespace dravik::test
