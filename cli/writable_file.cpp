#include "cli/writable_file.h"

#include "base/paths.h"
#include "cli/display_text.h"
#include "editing/wave_rewrite.h"
#include "model/info_fichier.h"

#include <fmt/format.h>
#include <unistd.h>

namespace dravik {

std::string writeProblem(const std::filesystem::path& file) {
    if (!isEditable(file)) return fmt::format("{} {}", shown(file), onlyWavAndBwf);
    try {
        // A recording that somebody locked against writing is not replaced behind their back.
        if (::access(file.c_str(), W_OK) != 0) {
            return fmt::format("{} is write-protected.", shown(file));
        }
        const WaveFile wave(file);
        return wave.isRiffWave() ? std::string()
                                 : fmt::format("{} is read-only: it is not a RIFF/WAVE file.", shown(file));
    } catch (const std::exception& error) {
        return fmt::format("{}: {}.", shown(file), systemText(error));
    }
}

}  // namespace dravik
