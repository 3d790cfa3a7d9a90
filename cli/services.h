#pragma once

#include "base/file_ops.h"
#include "base/progress.h"
#include "cli/console.h"
#include "model/audio_file_reader.h"

namespace dravik {

/// What the commands are given to work with; main owns it.
struct Services {
    FileOps& files;
    const AudioFileReader& codecs;
    const CancellationToken& token;
    Console& console;
};

}  // namespace dravik
