#include "operations/operation_context.h"

#include "base/file_error.h"
#include "base/paths.h"
#include "base/temp_name.h"
#include "model/audio_metadata.h"

#include <map>

#include <fmt/format.h>

namespace dravik::OperationsAudio {
namespace {

/// Folder -> one of its files to be, and the bytes of all.
std::map<std::filesystem::path, FileToMake> byFolder(const std::vector<FileToMake>& files) {
    std::map<std::filesystem::path, FileToMake> folders;
    for (const FileToMake& file : files)
        folders.try_emplace(folderOf(file.destination), FileToMake{file.destination, 0}).first->second.bytes +=
            file.bytes;
    return folders;
}

}  // namespace

void ensureCreatable(FileOps& ops, const std::filesystem::path& destination) {
    if (fileNameText(destination).size() > maxFileNameBytes) {
        throw FileError(fmt::format("the name is longer than the {} bytes that a file name may have", maxFileNameBytes),
                        destination, std::errc::filename_too_long);
    }
    if (const std::error_code error = ops.creationError(folderOf(destination))) {
        throw std::filesystem::filesystem_error("cannot create", destination, error);
    }
}

std::vector<FileToMake> foldersShortOfRoom(FileOps& ops, const std::vector<FileToMake>& files) {
    std::vector<FileToMake> shortOf;
    for (const auto& [folder, needed] : byFolder(files)) {
        if (!reportsRoom(ops, needed.destination, needed.bytes)) shortOf.push_back({folder, needed.bytes});
    }
    return shortOf;
}

std::string roomText(const FileToMake& folder) {
    return fmt::format("There is not enough room in “{}”: {} are needed.", pathText(folder.destination),
                       sizeText(folder.bytes));
}

void ensureRoomForAll(FileOps& ops, const std::vector<FileToMake>& files) {
    for (const auto& [folder, needed] : byFolder(files))
        ensureRoom(ops, needed.destination, needed.bytes);
}

}  // namespace dravik::OperationsAudio
