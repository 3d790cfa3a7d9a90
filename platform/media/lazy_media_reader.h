#pragma once

#include "model/audio_file_reader.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace dravik {

/// The codec libraries (libsndfile, libmpg123, FFmpeg) behind AudioFileReader, loaded from the module "dravik_media"
/// beside the program when the first file is asked for. A module that cannot be loaded is reported once, through
/// `complain`; its files then read as unreadable.
[[nodiscard]] std::unique_ptr<AudioFileReader> makeLazyMediaReader(std::function<void(const std::string&)> complain);

/// What the module exports under the name "dravikMakeMediaReader".
using MakeMediaReader = AudioFileReader* (*)();

}  // namespace dravik
