#include "base/paths.h"

#include "base/file_error.h"
#include "base/text.h"

#include <fmt/format.h>

namespace dravik {

std::string normalisedPath(const std::filesystem::path& path) {
    std::error_code ignored;
    std::filesystem::path whole = std::filesystem::absolute(path, ignored);
    if (whole.empty()) whole = path;
    return foldedCase(whole.lexically_normal().native());
}

std::string pathText(const std::filesystem::path& path) { return path.native(); }
std::string fileNameText(const std::filesystem::path& path) { return path.filename().native(); }
std::string baseNameText(const std::filesystem::path& path) { return path.stem().native(); }

std::filesystem::path folderOf(const std::filesystem::path& file) {
    const std::filesystem::path folder = file.parent_path();
    return folder.empty() ? std::filesystem::path(".") : folder;
}

bool pathExists(const std::filesystem::path& path) noexcept {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

std::string userText(const std::exception& error) {
    if (const auto* fileError = dynamic_cast<const std::filesystem::filesystem_error*>(&error)) {
        const std::string name = fileNameText(fileError->path1());
        if (!name.empty()) return fmt::format("{}: {}", name, systemText(error));
    }
    return systemText(error);
}

std::string systemText(const std::exception& error) {
    if (const auto* own = dynamic_cast<const FileError*>(&error)) return own->reason();
    const auto* systemError = dynamic_cast<const std::system_error*>(&error);
    return systemError != nullptr ? systemError->code().message() : error.what();
}

}  // namespace dravik
