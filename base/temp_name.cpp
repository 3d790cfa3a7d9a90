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

/// What stands around the token. A name of the kinds that show their target has it in front of the token (behind a
/// dot, so that it is hidden) or behind it.
struct Form {
    std::string_view prefix, suffix;
    enum class Target { absent, inFront, behind } target = Target::absent;
};

Form formOf(TempKind kind) noexcept {
    switch (kind) {
        case TempKind::metadata:
            return {".metadata-", ".tmp"};
        case TempKind::cues:
            return {".cues-", ".tmp"};
        case TempKind::output:
            return {".dravik-op-", "", Form::Target::behind};
        case TempKind::exportWav:
            return {".dravik-export-", ".wav"};
        case TempKind::partialMp3:
            return {".", ".partial.mp3", Form::Target::inFront};
        case TempKind::partialM4a:
            return {".", ".partial.m4a", Form::Target::inFront};
    }
    return {".dravik-op-", "", Form::Target::behind};
}

bool isOfForm(std::string_view name, const Form& form) noexcept {
    if (!name.starts_with(form.prefix) || !name.ends_with(form.suffix)) return false;
    if (name.size() < form.prefix.size() + tokenLength + form.suffix.size()) return false;
    const std::string_view middle =
        name.substr(form.prefix.size(), name.size() - form.prefix.size() - form.suffix.size());
    switch (form.target) {
        case Form::Target::absent:
            return isOurToken(middle);
        case Form::Target::behind:
            return middle.size() > tokenLength + 1 && middle[tokenLength] == '.' &&
                   isOurToken(middle.substr(0, tokenLength));
        case Form::Target::inFront:
            return middle.size() > tokenLength + 1 && middle[middle.size() - tokenLength - 1] == '.' &&
                   isOurToken(middle.substr(middle.size() - tokenLength));
    }
    return false;
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
    const Form form = formOf(kind);
    // A target whose own name is as long as a folder takes must not get a temporary name that is longer.
    const std::size_t around = form.prefix.size() + tokenLength + form.suffix.size() + 1;
    const std::string_view target = truncatedUtf8(targetName, maxFileNameBytes - around);
    switch (form.target) {
        case Form::Target::absent:
            return fmt::format("{}{}{}", form.prefix, freshToken(), form.suffix);
        case Form::Target::behind:
            return fmt::format("{}{}.{}", form.prefix, freshToken(), target);
        case Form::Target::inFront:
            return fmt::format("{}{}.{}{}", form.prefix, target, freshToken(), form.suffix);
    }
    return {};
}

bool isTemporaryName(std::string_view fileName) noexcept {
    // A recording on its way carries a name that the user chose.
    if (isRenameName(fileName)) return false;
    for (const TempKind kind : {TempKind::metadata, TempKind::cues, TempKind::output, TempKind::exportWav,
                                TempKind::partialMp3, TempKind::partialM4a}) {
        if (isOfForm(fileName, formOf(kind))) return true;
    }
    return false;
}

bool isRenameName(std::string_view fileName) noexcept {
    for (const std::string_view prefix : {renamePrefix, batchRenamePrefix}) {
        if (!fileName.starts_with(prefix) || fileName.size() < prefix.size() + tokenLength) continue;
        const std::string_view behind = fileName.substr(prefix.size() + tokenLength);
        if (prefix == batchRenamePrefix && (behind.size() < 2 || behind.front() != '-')) continue;
        if (isOurToken(fileName.substr(prefix.size(), tokenLength))) return true;
    }
    return false;
}

bool hasRenamePrefix(std::string_view fileName) noexcept {
    return fileName.starts_with(renamePrefix) || fileName.starts_with(batchRenamePrefix);
}

std::string freshRenameName(std::string_view extensionWithDot) {
    return fmt::format("{}{}{}", renamePrefix, freshToken(), extensionWithDot);
}

std::string batchRenameName(std::string_view runToken, std::string_view fileName, int attempt) {
    const std::string suffix = attempt == 0 ? std::string() : fmt::format("-{}", attempt);
    const std::size_t around = batchRenamePrefix.size() + runToken.size() + 1 + suffix.size();
    return fmt::format("{}{}-{}{}", batchRenamePrefix, runToken, truncatedUtf8(fileName, maxFileNameBytes - around),
                       suffix);
}

}  // namespace dravik
