#include "base/safe_file.h"

#include "base/file_error.h"
#include "base/paths.h"
#include "base/writeback.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace dravik {
namespace {

/// One step of a kernel copy: small enough to answer a cancel at once, large enough to cost nothing.
constexpr std::uint64_t copyStepBytes = 8U * 1024U * 1024U;
/// Another process's clean-up may win the race for a file it sees unlocked; a few tries are far more than enough.
constexpr int createAttempts = 16;

/// What takes the place of a file is for its owner alone until it has that file's rights.
FileOps::Rights rightsOf(TempKind kind) noexcept {
    return kind == TempKind::metadata || kind == TempKind::cues ? FileOps::Rights::owner : FileOps::Rights::ordinary;
}

/// What cannot be asked counts as room. Files that were replaced a moment ago may still be taking it.
bool hasRoom(FileOps& ops, const std::filesystem::path& folder, std::uint64_t bytes) {
    const auto fits = [&] { return ops.freeBytes(folder).value_or(bytes) >= bytes; };
    if (fits()) return true;
    ops.finishClosing();
    return fits();
}

FileError noRoomFor(const std::filesystem::path& file) {
    constexpr std::errc code = std::errc::no_space_on_device;
    // The system's words stay: they are what people look for.
    return {"no room for the new file (" + std::make_error_code(code).message() + ")", file, code};
}

}  // namespace

void FolderSyncs::syncAll(FileOps& ops) {
    std::exception_ptr failure;
    for (const std::filesystem::path& folder : std::exchange(folders_, {})) {
        try {
            ops.syncFolder(folder);
        } catch (const std::exception&) {
            if (!failure) failure = std::current_exception();
        }
    }
    if (failure) std::rethrow_exception(failure);
}

void ensureRoom(FileOps& ops, const std::filesystem::path& target, std::uint64_t bytes) {
    if (reportsRoom(ops, target, bytes)) return;
    const std::filesystem::path file = resolvedTarget(target);
    if (const FileHandle source = FileHandle::tryOpenForReading(file); source.isOpen()) {
        const SafeFile trial(ops, file, TempKind::output);
        if (ops.shareBlocks(source, trial.file())) return;
    }
    throw noRoomFor(file);
}

bool reportsRoom(FileOps& ops, const std::filesystem::path& target, std::uint64_t bytes) {
    return hasRoom(ops, folderOf(resolvedTarget(target)), bytes);
}

std::filesystem::path resolvedTarget(const std::filesystem::path& path) {
    std::error_code none;
    return std::filesystem::is_symlink(path, none) ? std::filesystem::canonical(path) : path;
}

SafeFile::SafeFile(FileOps& ops, std::filesystem::path target, TempKind kind) : ops_(ops), target_(std::move(target)) {
    for (int attempt = 1;; ++attempt) {
        temporary_ = folderOf(target_) / freshTemporaryName(kind, fileNameText(target_));
        try {
            file_ = ops_.createExclusive(temporary_, rightsOf(kind));
        } catch (const std::filesystem::filesystem_error& error) {
            if (error.code() != std::errc::file_exists || attempt == createAttempts) {
                throw std::filesystem::filesystem_error("cannot create", target_, error.code());
            }
            continue;
        }
        // Between creation and lock another process may have taken the file for an abandoned one.
        if (ops_.tryLock(file_) != FileOps::Lock::heldByAnother && ops_.isSameFile(file_, temporary_)) return;
        discard();
        if (attempt == createAttempts) {
            throw FileError("another program keeps taking its temporary file", target_,
                            std::errc::resource_unavailable_try_again);
        }
    }
}

SafeFile::~SafeFile() {
    if (!inPlace_) discard();
}

void SafeFile::discard() noexcept {
    try {
        ops_.remove(temporary_);
    } catch (const std::exception&) {
        // Nothing more can be done here: the lock goes with the handle, and the next opening of the folder removes it.
        return;
    }
}

void SafeFile::write(const FilePlan& plan, const FileHandle& source, const TaskContext& task, Source afterwards) {
    synced_ = false;
    Progress progress;
    progress.allBytes = plan.size();
    const std::string name = fileNameText(target_);
    progress.currentName = name;
    task.advance(progress);

    // Sharing is worth it when most of the file stays where it is; what differs is then written over the shared copy.
    const bool shared = plan.unmovedBytes() > plan.size() / 2 && ops_.shareBlocks(source, file_);
    if (!shared && !hasRoom(ops_, folderOf(target_), plan.size())) {
        throw noRoomFor(target_);
    }
    const bool large = plan.size() > copyStepBytes;
    if (!shared && large) ops_.reserve(file_, plan.size());
    Writeback writeback(ops_);
    std::uint64_t at = 0;
    for (const FilePlan::Piece& piece : plan.pieces()) {
        if (const auto* bytes = std::get_if<Bytes>(&piece)) {
            ops_.writeAt(file_, target_, at, *bytes);
            at += bytes->size();
        } else {
            SourceRange rest = std::get<SourceRange>(piece);
            if (shared && rest.offset == at) {
                at += rest.length;
                rest.length = 0;
            }
            while (rest.length > 0) {
                // Steps end at whole blocks of the new file: one that is being written out is not touched again.
                const std::uint64_t step = std::min(rest.length, copyStepBytes - at % copyStepBytes);
                const std::uint64_t copied = ops_.copyRange(source, rest.offset, file_, target_, at, step);
                if (copied == 0) {
                    throw FileError("it ended while it was copied", target_, std::errc::io_error);
                }
                if (large && afterwards == Source::replaced) ops_.forget(source, rest.offset, copied);
                if (large) writeback.wrote(file_, at, copied);
                rest.offset += copied;
                rest.length -= copied;
                at += copied;
                progress.doneBytes = at;
                task.advance(progress);
            }
        }
        progress.doneBytes = at;
        task.advance(progress);
    }
    if (shared) ops_.truncate(file_, target_, plan.size());
}

void SafeFile::writeAt(std::uint64_t offset, ByteSpan bytes) {
    synced_ = false;
    ops_.writeAt(file_, target_, offset, bytes);
}

void SafeFile::copyAttributesFrom(const FileHandle& original) {
    synced_ = false;
    ops_.copyAttributes(original, file_, target_);
}

void SafeFile::sync() {
    if (!synced_) ops_.sync(file_, target_);
    synced_ = true;
}

UnsyncedFolder SafeFile::commit(Existing existing, Durability durability) {
    if (durability == Durability::onMedium) sync();
    // The rename comes before the close: the lock guards the name until it is gone.
    if (existing == Existing::replace) {
        ops_.renameReplacing(temporary_, target_);
    } else {
        ops_.renameNoReplace(temporary_, target_);
    }
    inPlace_ = true;
    return {folderOf(target_)};
}

}  // namespace dravik
