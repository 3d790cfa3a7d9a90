#include "cli/opened_folder.h"

#include "base/folder_recovery.h"
#include "base/paths.h"
#include "cli/display_text.h"
#include "cli/progress_bar.h"
#include "model/folder_scan.h"

#include <fmt/format.h>

namespace dravik {
namespace {

std::string problem(const std::filesystem::path& path, std::string_view what) {
    return fmt::format("{}: {}", shown(path), what);
}

}  // namespace

bool recoverAndTell(const std::filesystem::path& folder, Services& services) {
    const Recovery recovery = recoverFolder(services.files, folder);
    for (const std::string& sentence : recovery.done)
        services.console.message(sentence);
    for (const std::string& sentence : recovery.failures)
        services.console.message(sentence);
    return recovery.failures.empty();
}

std::string folderProblem(const std::filesystem::path& path) {
    std::error_code error;
    const bool isFolder = std::filesystem::is_directory(path, error);
    if (error) return problem(path, error.message());
    if (!isFolder) return problem(path, "is not a folder.");
    // Listing an unreadable folder gives nothing; here somebody wants to know why.
    const std::filesystem::directory_iterator probe(path, error);
    return error ? problem(path, error.message()) : std::string();
}

std::string fileProblem(const std::filesystem::path& path) {
    std::error_code error;
    const bool isFile = std::filesystem::is_regular_file(path, error);
    if (error) return problem(path, error.message());
    if (!isFile) return problem(path, "is not a file.");
    if (FileHandle::tryOpenForReading(path).isOpen()) return {};
    return problem(path, "cannot be opened for reading.");
}

std::vector<GroupeFichiers> readTakes(const std::vector<std::filesystem::path>& files, bool group, Services& services) {
    ProgressBar bar(services.console, "Reading");
    return construireGroupes(probeFiles(files, services.codecs, {&services.token, bar.sink()}), group);
}

std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files = listerFichiers(folder.empty() ? "." : folder);
    if (folder.empty()) {
        for (std::filesystem::path& file : files)
            file = file.filename();
    }
    return files;
}

}  // namespace dravik
