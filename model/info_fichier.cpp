#include "model/info_fichier.h"

#include "base/text.h"

namespace dravik {

bool isEditable(const std::filesystem::path& file) {
    // Asked of every row of a table at once: without taking the path apart. A name that is nothing but ".wav" has no
    // extension.
    constexpr std::size_t length = 4;
    const std::string_view path = file.native();
    if (path.size() <= length || path[path.size() - length - 1] == '/') return false;
    const std::string extension = lowerAscii(path.substr(path.size() - length));
    return extension == ".wav" || extension == ".bwf";
}

std::string displayName(std::string_view stored) { return replacedAll(stored, "&amp;", "&"); }

}  // namespace dravik
