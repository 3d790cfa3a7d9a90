#pragma once

#include "base/file_ops.h"

#include <memory>

namespace dravik {

/// The file operations of the system this program was built for. One object serves the whole process, any thread.
[[nodiscard]] std::unique_ptr<FileOps> makeNativeFileOps();

}  // namespace dravik
