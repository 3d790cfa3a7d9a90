#include "tests/support/faulty_file_ops.h"

#include "base/byte_source.h"
#include "platform/native_file_ops.h"

#include <system_error>
#include <utility>

namespace dravik::test {

FaultyFileOps::FaultyFileOps() : native_(makeNativeFileOps()) {}
FaultyFileOps::~FaultyFileOps() = default;

void FaultyFileOps::failAt(const Fault& fault) {
    fault_ = fault;
    met_ = 0;
    failures_ = 0;
}

int FaultyFileOps::calls(Call call) const {
    const auto found = callsOf_.find(call);
    return found == callsOf_.end() ? 0 : found->second;
}

bool FaultyFileOps::isDue(Call call) {
    int number = 0;
    {
        const std::lock_guard lock(counting_);
        number = ++calls_;
        ++callsOf_[call];
    }
    if (hook_) hook_(call, number);
    if (!fault_) return false;
    const bool canThrow = call != Call::lock && call != Call::share;
    if (fault_->kinds.empty() ? !canThrow : !fault_->kinds.contains(call)) return false;
    ++met_;
    const bool due = fault_->allLater ? met_ >= fault_->nth : met_ == fault_->nth || met_ == fault_->andNth;
    if (due) ++failures_;
    return due;
}

void FaultyFileOps::enter(Call call, const std::filesystem::path& path) {
    if (!isDue(call)) return;
    throw std::filesystem::filesystem_error("made to fail", path,
                                            std::error_code(fault_->errorNumber, std::generic_category()));
}

FileHandle FaultyFileOps::createExclusive(const std::filesystem::path& path, Rights rights) {
    enter(Call::create, path);
    return native_->createExclusive(path, rights);
}

FileOps::Lock FaultyFileOps::tryLock(const FileHandle& file) noexcept {
    if (isDue(Call::lock)) return Lock::heldByAnother;
    return locking ? native_->tryLock(file) : Lock::unsupported;
}

bool FaultyFileOps::isSameFile(const FileHandle& file, const std::filesystem::path& path) noexcept {
    return native_->isSameFile(file, path);
}

FileStamp FaultyFileOps::stampOf(const FileHandle& file, const std::filesystem::path& path) {
    return native_->stampOf(file, path);
}

std::optional<FileStamp> FaultyFileOps::stampAt(const std::filesystem::path& path) noexcept {
    return native_->stampAt(path);
}

void FaultyFileOps::writeAt(const FileHandle& file, const std::filesystem::path& path, std::uint64_t offset,
                            ByteSpan bytes) {
    enter(Call::write, path);
    native_->writeAt(file, path, offset, bytes);
}

void FaultyFileOps::truncate(const FileHandle& file, const std::filesystem::path& path, std::uint64_t size) {
    enter(Call::truncate, path);
    native_->truncate(file, path, size);
}

std::uint64_t FaultyFileOps::copyRange(const FileHandle& from, std::uint64_t fromOffset, const FileHandle& to,
                                       const std::filesystem::path& toPath, std::uint64_t toOffset,
                                       std::uint64_t length) {
    enter(Call::copy, toPath);
    return native_->copyRange(from, fromOffset, to, toPath, toOffset, length);
}

bool FaultyFileOps::shareBlocks(const FileHandle& from, const FileHandle& to) noexcept {
    if (isDue(Call::share)) return false;
    if (!sharing) return native_->shareBlocks(from, to);
    const FileSource source(from);
    const Bytes all = source.read(0, source.size());
    native_->writeAt(to, "the sharing file", 0, all);
    return true;
}

void FaultyFileOps::reserve(const FileHandle& file, std::uint64_t size) noexcept { native_->reserve(file, size); }
void FaultyFileOps::forget(const FileHandle& file, std::uint64_t offset, std::uint64_t length) noexcept {
    native_->forget(file, offset, length);
}
void FaultyFileOps::closeReplaced(FileHandle old) noexcept { native_->closeReplaced(std::move(old)); }
void FaultyFileOps::finishClosing() noexcept {
    native_->finishClosing();
    if (freeOnceClosed) free = freeOnceClosed;
}
void FaultyFileOps::startWriteback(const FileHandle& file, std::uint64_t offset, std::uint64_t length) noexcept {
    native_->startWriteback(file, offset, length);
}
void FaultyFileOps::waitForWriteback(const FileHandle& file, std::uint64_t offset, std::uint64_t length) noexcept {
    native_->waitForWriteback(file, offset, length);
}

void FaultyFileOps::copyAttributes(const FileHandle& from, const FileHandle& to, const std::filesystem::path& toPath) {
    enter(Call::attributes, toPath);
    native_->copyAttributes(from, to, toPath);
}

void FaultyFileOps::sync(const FileHandle& file, const std::filesystem::path& path) {
    enter(Call::sync, path);
    if (syncing) native_->sync(file, path);
}

void FaultyFileOps::renameReplacing(const std::filesystem::path& from, const std::filesystem::path& to) {
    enter(Call::rename, to);
    native_->renameReplacing(from, to);
}

void FaultyFileOps::renameNoReplace(const std::filesystem::path& from, const std::filesystem::path& to) {
    enter(Call::renameNoReplace, to);
    native_->renameNoReplace(from, to);
}

void FaultyFileOps::syncFolder(const std::filesystem::path& folder) {
    enter(Call::syncFolder, folder);
    if (syncing) native_->syncFolder(folder);
}

void FaultyFileOps::remove(const std::filesystem::path& path) {
    enter(Call::remove, path);
    native_->remove(path);
}

std::error_code FaultyFileOps::creationError(const std::filesystem::path& folder) noexcept {
    return readOnlyFolders ? std::make_error_code(std::errc::permission_denied) : native_->creationError(folder);
}

std::optional<std::uint64_t> FaultyFileOps::freeBytes(const std::filesystem::path& folder) noexcept {
    return free ? free : native_->freeBytes(folder);
}

}  // namespace dravik::test
