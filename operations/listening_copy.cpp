#include "operations/listening_copy.h"

#include "base/text.h"

#include <cmath>
#include <utility>

namespace dravik::OperationsAudio {

bool isMonoOrStereo(const OperationAudioExportRouting& routing) noexcept {
    return !std::holds_alternative<routing::Poly>(routing);
}

bool hasExtension(std::string_view name, std::string_view extension) noexcept {
    return name.size() > extension.size() &&
           equalsIgnoringAsciiCase(name.substr(name.size() - extension.size()), extension);
}

std::uint64_t roomForStream(int kilobitsPerSecond, std::int64_t frames, double sampleRate) noexcept {
    constexpr double bytesPerKilobit = 125;
    constexpr std::uint64_t containerBytes = 64UL * 1024UL;
    const double seconds = static_cast<double>(frames) / sampleRate + 1;
    // The tables of a container count a few bytes for each block.
    constexpr double tables = 1.02;
    return containerBytes +
           static_cast<std::uint64_t>(std::ceil(seconds * kilobitsPerSecond * bytesPerKilobit * tables));
}

std::string cutShortNote(const ExportPCMReader& reader) {
    return reader.isCutShort() ? ". The source is shorter than its header says: all that there is was exported." : "";
}

}  // namespace dravik::OperationsAudio
