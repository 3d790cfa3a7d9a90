#include "base/temp_name.h"

#include "base/checksum.h"
#include "base/text.h"
#include "base/uuid.h"

#include <fmt/format.h>

namespace dravik {
namespace {

constexpr std::size_t tokenLength = 36;
constexpr std::size_t checkedLength = tokenLength - 8;

std::string checkDigits(std::string_view checked) {
    return fmt::format("{:08x}", crc32(fmt::format("dravik {}", checked)));
}

std::string_view prefixOf(TempKind kind) noexcept {
    switch (kind) {
        case TempKind::metadata:
            return ".metadata-";
        case TempKind::cues:
            return ".cues-";
        case TempKind::output:
            return ".dravik-op-";
    }
    return ".dravik-op-";
}

}  // namespace

std::string freshToken() {
    const std::string uuid = Uuid::random().toString();
    const std::string_view checked = std::string_view(uuid).substr(0, checkedLength);
    return std::string(checked) + checkDigits(checked);
}

bool isOurToken(std::string_view text) noexcept {
    if (text.size() != tokenLength) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
        const bool hex = isAsciiDigit(text[i]) || (text[i] >= 'a' && text[i] <= 'f');
        if (dash ? text[i] != '-' : !hex) return false;
    }
    return text.substr(checkedLength) == checkDigits(text.substr(0, checkedLength));
}

std::string freshTemporaryName(TempKind kind, std::string_view targetName) {
    const std::string start = fmt::format("{}{}", prefixOf(kind), freshToken());
    if (kind != TempKind::output) return start + ".tmp";
    // A target whose own name is as long as a folder takes must not get a temporary name that is longer.
    return fmt::format("{}.{}", start, truncatedUtf8(targetName, maxFileNameBytes - start.size() - 1));
}

bool isTemporaryName(std::string_view fileName) noexcept {
    for (const TempKind kind : {TempKind::metadata, TempKind::cues, TempKind::output}) {
        const std::string_view prefix = prefixOf(kind);
        if (!fileName.starts_with(prefix)) continue;
        const std::string_view rest = fileName.substr(prefix.size());
        const std::string_view tail = rest.size() > tokenLength ? rest.substr(tokenLength) : std::string_view{};
        const bool tailFits = kind == TempKind::output ? tail.starts_with('.') && tail.size() > 1 : tail == ".tmp";
        if (tailFits && isOurToken(rest.substr(0, tokenLength))) return true;
    }
    return false;
}

bool isRenameName(std::string_view fileName) noexcept {
    return fileName.starts_with(renamePrefix) && fileName.size() >= renamePrefix.size() + tokenLength &&
           isOurToken(fileName.substr(renamePrefix.size(), tokenLength));
}

std::string freshRenameName(std::string_view extensionWithDot) {
    return fmt::format("{}{}{}", renamePrefix, freshToken(), extensionWithDot);
}

}  // namespace dravik
