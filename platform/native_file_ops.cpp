#include "platform/native_file_ops.h"

#ifdef __linux__
#include "platform/linux/linux_file_ops.h"
#else
#include "platform/posix/posix_file_ops.h"
#endif

namespace dravik {

std::unique_ptr<FileOps> makeNativeFileOps() {
#ifdef __linux__
    return std::make_unique<LinuxFileOps>();
#else
    return std::make_unique<PosixFileOps>();
#endif
}

}  // namespace dravik
