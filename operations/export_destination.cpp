#include "operations/export_destination.h"

#include "base/file_error.h"
#include "base/paths.h"
#include "operations/operation_audio_error.h"

namespace dravik::OperationsAudio {
namespace {

/// By name, in whatever case, or because a link leads there.
bool isSameFile(const std::filesystem::path& a, const std::filesystem::path& b) {
    std::error_code none;
    return normalisedPath(a) == normalisedPath(b) || std::filesystem::equivalent(a, b, none);
}

}  // namespace

std::filesystem::path exportDestination(const GroupeFichiers& groupe, const std::filesystem::path& folder,
                                        const std::string& name) {
    const std::filesystem::path named(name);
    if (name.empty() || named.filename() != named || name == "." || name == "..") {
        throw FileError("it is not the name of a file", named, std::errc::invalid_argument);
    }
    const std::filesystem::path destination = folder / named;
    for (const InfoFichier& source : groupe.fichiers) {
        if (isSameFile(destination, source.url)) {
            throw OperationAudioError::groupeIncompatible("An export can’t overwrite its source file.");
        }
    }
    for (const InfoFichier& source : groupe.fichiers) {
        if (!pathExists(source.url)) {
            throw OperationAudioError::groupeIncompatible("Source file does not exist: " + pathText(source.url));
        }
    }
    if (pathExists(destination)) {
        throw FileError("a file of this name exists already", destination, std::errc::file_exists);
    }
    return destination;
}

}  // namespace dravik::OperationsAudio
