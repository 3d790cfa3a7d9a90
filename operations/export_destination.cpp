#include "operations/export_destination.h"

#include "base/file_error.h"
#include "base/paths.h"
#include "operations/destination_names.h"
#include "operations/listening_copy.h"
#include "operations/operation_audio_error.h"
#include "operations/operation_context.h"

namespace dravik::OperationsAudio {
namespace {

/// By name, in whatever case, or because a link leads there.
bool isSameFile(const std::filesystem::path& a, const std::filesystem::path& b) {
    std::error_code none;
    return normalisedPath(a) == normalisedPath(b) || std::filesystem::equivalent(a, b, none);
}

}  // namespace

std::filesystem::path exportDestination(FileOps& ops, const GroupeFichiers& groupe, const std::filesystem::path& folder,
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
    ensureCreatable(ops, destination);
    return destination;
}

std::vector<std::filesystem::path> exportDestinations(const std::vector<GroupeFichiers>& groupes,
                                                      std::string_view extension,
                                                      const std::optional<std::filesystem::path>& folder,
                                                      const std::optional<std::string>& name) {
    DestinationNames names;
    std::vector<std::filesystem::path> destinations;
    for (const GroupeFichiers& groupe : groupes) {
        const std::filesystem::path own = folderOf(groupe.fichiers.front().url);
        const std::filesystem::path into = folder.value_or(own);
        std::string base = name.value_or(groupe.nom);
        std::string suffix(extension);
        std::error_code none;
        if (name) {
            if (hasExtension(*name, extension)) base.resize(base.size() - extension.size());
        } else if (std::filesystem::equivalent(into, own, none)) {
            suffix.insert(0, "_export");
        }
        destinations.push_back(names.plan(into, base, {suffix}).front());
    }
    return destinations;
}

}  // namespace dravik::OperationsAudio
