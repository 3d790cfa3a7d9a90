#include "base/file_copy.h"

namespace dravik {

UnsyncedFolder copyFile(FileOps& ops, const std::filesystem::path& from, const std::filesystem::path& to,
                        std::uint64_t bytes, const TaskContext& task) {
    const FileHandle source = FileHandle::openForReading(from);
    const FileStamp stamp = ops.stampOf(source, from);
    if (stamp.size != bytes) throw ChangedWhileCopied(from);
    const std::filesystem::file_time_type time = std::filesystem::last_write_time(from);
    FilePlan plan;
    if (bytes > 0) plan.add(SourceRange{0, bytes});
    SafeFile copy(ops, to, TempKind::output);
    copy.write(plan, source, task);
    copy.copyAttributesFrom(source);
    copy.sync();
    if (ops.stampAt(from) != stamp) throw ChangedWhileCopied(from);
    const UnsyncedFolder folder = copy.commit(SafeFile::Existing::refuse);
    // Some network shares keep times of their own; the copy is as good without.
    std::error_code refused;
    std::filesystem::last_write_time(to, time, refused);
    return folder;
}

}  // namespace dravik
