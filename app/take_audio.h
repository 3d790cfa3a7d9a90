#pragma once

#include "app/file_moves.h"
#include "model/groupe_fichiers.h"

#include <filesystem>
#include <vector>

namespace dravik {

/// Which audio a take is: equal as long as the files and the sound in them are the same, whatever a save has changed of
/// their metadata. Empty for no take.
struct TakeAudio {
    struct File {
        std::filesystem::path url;
        double dureeSecondes = 0;
        int channels = 0;
        double sampleRate = 0;
        friend bool operator==(const File&, const File&) = default;
    };
    std::vector<File> files;

    [[nodiscard]] static TakeAudio of(const GroupeFichiers& groupe);
    /// The same audio, in files that were renamed.
    void follow(const FileMoves& moved);
    /// Does it lie on that volume, or in that folder?
    [[nodiscard]] bool isUnder(const std::filesystem::path& root) const;
    [[nodiscard]] std::vector<std::filesystem::path> urls() const;
    friend bool operator==(const TakeAudio&, const TakeAudio&) = default;
};

}  // namespace dravik
