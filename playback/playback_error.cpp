#include "playback/playback_error.h"

#include "base/paths.h"
#include "model/audio_metadata.h"

#include <fmt/format.h>

namespace dravik {

PlaybackError PlaybackError::tooLong(const std::filesystem::path& file) {
    return {Case::tooLong,
            fmt::format("{} is too long to be played: it has more than 4,294,967,295 samples in a channel.",
                        fileNameText(file))};
}

PlaybackError PlaybackError::noRoom(std::uint64_t needed, std::optional<std::uint64_t> available) {
    if (!available) {
        return {Case::noRoom, fmt::format("This take is too large to be played: it needs {} of memory, and that much "
                                          "could not be had.",
                                          sizeText(needed))};
    }
    return {Case::noRoom,
            fmt::format("This take is too large to be played: it needs {} of memory, and {} are available now.",
                        sizeText(needed), sizeText(*available))};
}

PlaybackError PlaybackError::ratesDiffer(const std::filesystem::path& file) {
    return {Case::ratesDiffer, fmt::format("The files of this take cannot be played together: {} has another sample "
                                           "rate than the first.",
                                           fileNameText(file))};
}

PlaybackError PlaybackError::notMono(const std::filesystem::path& file) {
    return {Case::notMono,
            fmt::format("The files of this take cannot be played together: {} has more than one channel.",
                        fileNameText(file))};
}

PlaybackError PlaybackError::noAudio(const std::filesystem::path& file) {
    return {Case::noAudio, fmt::format("{} cannot be played: it says neither how many channels it has nor at which "
                                       "sample rate.",
                                       fileNameText(file))};
}

}  // namespace dravik
