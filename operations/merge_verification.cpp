#include "operations/merge_verification.h"

#include "model/audio_metadata.h"
#include "operations/source_wav.h"

#include <fmt/format.h>

namespace dravik::OperationsAudio {

std::string mergeVerification(const std::vector<std::filesystem::path>& sources, std::size_t frameBytes,
                              const std::filesystem::path& output) {
    try {
        std::uint64_t sum = 0;
        for (const std::filesystem::path& source : sources) {
            const std::uint64_t bytes = audioDataSize(source);
            sum += bytes - bytes % frameBytes;
        }
        const std::uint64_t poly = audioDataSize(output);
        if (sum == poly) return fmt::format("Audio data preserved: {}.", sizeText(poly));
        return fmt::format("Warning: audio data mismatch. Sources: {}, poly: {}.", sizeText(sum), sizeText(poly));
    } catch (const std::exception&) {
        return "Audio data verification unavailable.";
    }
}

}  // namespace dravik::OperationsAudio
