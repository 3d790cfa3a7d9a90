#include "operations/renamed_name.h"

#include "base/paths.h"
#include "base/temp_name.h"
#include "base/text.h"
#include "model/audio_metadata.h"
#include "operations/name_characters.h"
#include "operations/xml_text.h"

#include <algorithm>
#include <vector>

#include <fmt/format.h>

namespace dravik::OperationsAudio {
namespace {

std::string fitForName(std::string_view value) {
    std::string out;
    for (std::string_view rest = trimmed(value); !rest.empty();) {
        const Utf8Character character = firstCharacter(rest);
        const std::string_view bytes = rest.substr(0, character.bytes);
        out += isForbiddenInNames(character) ? "-" : bytes;
        rest.remove_prefix(bytes.size());
    }
    return out;
}

std::string fieldText(const std::optional<std::string>& stored) {
    return stored ? fitForName(unescapedXml(*stored)) : std::string();
}

std::string trackNames(const InfoFichier& fichier) {
    std::string names;
    for (const auto& [number, stored] : fichier.nomsPistes) {
        const std::string name = fitForName(unescapedXml(stored));
        if (name.empty()) continue;
        names.append(names.empty() ? "" : "-").append(name);
    }
    return names;
}

/// One block's contribution, until the empty tokens have had their say.
struct Part {
    std::string text;
    bool isSeparator = false;
};

}  // namespace

std::string tokenText(TokenRenommage token, const InfoFichier& fichier) {
    switch (token) {
        case TokenRenommage::originalName:
            return fitForName(baseNameText(fichier.url));
        case TokenRenommage::project:
            return fieldText(fichier.project);
        case TokenRenommage::trackName:
            return trackNames(fichier);
        case TokenRenommage::scene:
            return fieldText(fichier.scene);
        case TokenRenommage::take:
            return fieldText(fichier.prise);
        case TokenRenommage::tape:
            return fieldText(fichier.tape);
        case TokenRenommage::startTimecode:
            return fichier.timecode ? fitForName(replacedAll(*fichier.timecode, ":", ".")) : std::string();
        case TokenRenommage::recordingDate:
            return fichier.recordingDate ? formatRecordingDate(*fichier.recordingDate) : std::string();
        case TokenRenommage::circled:
            return fichier.circled ? "CIRC" : "";
        case TokenRenommage::wild:
            return fichier.wild ? "WILD" : "";
        case TokenRenommage::fps:
            return fichier.framerate ? fitForName(replacedAll(*fichier.framerate, " DF", "DF")) : std::string();
        case TokenRenommage::bits:
            return fichier.bits > 0 ? fmt::format("{}bit", fichier.bits) : std::string();
        case TokenRenommage::sampleRate:
            return replacedAll(sampleRateText(fichier.sampleRate), " ", "");
    }
    return {};
}

std::string assembledBase(const RenamePattern& pattern, const InfoFichier& fichier, EmptyTokens empty) {
    std::vector<Part> parts;
    bool startIsEmpty = false;  // nothing yet but tokens without a value
    for (const BlocRenommage& block : pattern) {
        if (const auto* separateur = std::get_if<BlocRenommage::Separateur>(&block.contenu)) {
            if (!startIsEmpty || !parts.empty()) parts.push_back({separateur->text, true});
            continue;
        }
        const auto* texte = std::get_if<BlocRenommage::Texte>(&block.contenu);
        std::string text = texte != nullptr ? texte->text : tokenText(std::get<TokenRenommage>(block.contenu), fichier);
        if (!text.empty()) {
            parts.push_back({std::move(text)});
        } else if (texte == nullptr && empty == EmptyTokens::takeSeparatorsAlong) {
            while (!parts.empty() && parts.back().isSeparator)
                parts.pop_back();
            if (parts.empty()) startIsEmpty = true;
        }
    }
    std::string base;
    for (const Part& part : parts)
        base += part.text;
    return base;
}

std::string assembledName(const RenamePattern& pattern, const InfoFichier& fichier, EmptyTokens empty) {
    const std::string base = assembledBase(pattern, fichier, empty);
    return trimmed(base).empty() ? std::string() : base + fichier.url.extension().native();
}

bool isPossibleName(std::string_view fileName) noexcept {
    if (fileName.empty() || fileName.front() == '.' || fileName.size() > maxFileNameBytes) return false;
    for (std::string_view rest = fileName; !rest.empty();) {
        const Utf8Character character = firstCharacter(rest);
        if (rest.front() == '/' || rest.front() == ':' || isControlCharacter(character)) return false;
        rest.remove_prefix(character.bytes);
    }
    return true;
}

}  // namespace dravik::OperationsAudio
