#include "model/info_fichier.h"

#include "base/text.h"

namespace dravik {

bool isEditable(const std::filesystem::path& file) {
    const std::string extension = lowerAscii(file.extension().native());
    return extension == ".wav" || extension == ".bwf";
}

std::string displayName(std::string_view stored) { return replacedAll(stored, "&amp;", "&"); }

}  // namespace dravik
