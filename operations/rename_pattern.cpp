#include "operations/rename_pattern.h"

#include "base/text.h"

#include <algorithm>

#include <fmt/format.h>

namespace dravik {
namespace {

struct TokenName {
    TokenRenommage token;
    std::string_view name;
    PaletteRenommage button;
};
constexpr TokenName tokens[] = {
    {TokenRenommage::originalName, "originalName", PaletteRenommage::originalName},
    {TokenRenommage::project, "project", PaletteRenommage::project},
    {TokenRenommage::trackName, "trackName", PaletteRenommage::trackName},
    {TokenRenommage::scene, "scene", PaletteRenommage::scene},
    {TokenRenommage::take, "take", PaletteRenommage::take},
    {TokenRenommage::tape, "tape", PaletteRenommage::tape},
    {TokenRenommage::startTimecode, "startTimecode", PaletteRenommage::startTimecode},
    {TokenRenommage::recordingDate, "recordingDate", PaletteRenommage::recordingDate},
    {TokenRenommage::circled, "circled", PaletteRenommage::circled},
    {TokenRenommage::wild, "wild", PaletteRenommage::wild},
    {TokenRenommage::fps, "fps", PaletteRenommage::fps},
    {TokenRenommage::bits, "bits", PaletteRenommage::bits},
    {TokenRenommage::sampleRate, "sampleRate", PaletteRenommage::sampleRate},
};

struct ButtonLabel {
    PaletteRenommage button;
    std::string_view full, brief;
};
constexpr ButtonLabel buttons[] = {
    {PaletteRenommage::originalName, "Original Name", "Original Name"},
    {PaletteRenommage::project, "Project", "Project"},
    {PaletteRenommage::scene, "Scene", "Scene"},
    {PaletteRenommage::take, "Take", "Take"},
    {PaletteRenommage::tape, "Tape", "Tape"},
    {PaletteRenommage::recordingDate, "Recording Date", "Rec Date"},
    {PaletteRenommage::startTimecode, "Start Timecode", "Start TC"},
    {PaletteRenommage::trackName, "Track Name", "Track Name"},
    {PaletteRenommage::circled, "Circled", "Circled"},
    {PaletteRenommage::wild, "Wild", "Wild"},
    {PaletteRenommage::fps, "fps", "fps"},
    {PaletteRenommage::bits, "bits", "bits"},
    {PaletteRenommage::sampleRate, "samplerate", "samplerate"},
    {PaletteRenommage::separator, "Separator", "_"},
    {PaletteRenommage::dash, "Dash", "-"},
    {PaletteRenommage::text, "Free Text", "Free Text"},
};

constexpr std::string_view textPrefix = "text:";
constexpr std::string_view separatorPrefix = "separator:";

const ButtonLabel& labelsOf(PaletteRenommage button) noexcept {
    return *std::find_if(std::begin(buttons), std::end(buttons),
                         [&](const ButtonLabel& one) { return one.button == button; });
}

const TokenName& nameOf(TokenRenommage token) noexcept {
    return *std::find_if(std::begin(tokens), std::end(tokens),
                         [&](const TokenName& one) { return one.token == token; });
}

bool isSeparator(char c) noexcept { return c == '_' || c == '-'; }

class Parser {
  public:
    explicit Parser(std::string_view text) : rest_(text) {}

    RenamePattern parse() {
        while (!rest_.empty()) {
            const char c = rest_.front();
            const bool isDoubled = rest_.size() > 1 && rest_[1] == c;
            if ((c == '{' || c == '}') && isDoubled) {
                literal_.push_back(c);
                rest_.remove_prefix(2);
            } else if (c == '{') {
                rest_.remove_prefix(1);
                add(inBraces());
            } else if (c == '}') {
                throw RenamePatternError("The pattern has a \"}\" without its \"{\". A brace in a name is \"}}\".");
            } else {
                rest_.remove_prefix(1);
                if (isSeparator(c)) {
                    add(BlocRenommage::separateur(std::string(1, c)));
                } else {
                    literal_.push_back(c);
                }
            }
        }
        endLiteral();
        return std::move(pattern_);
    }

  private:
    void endLiteral() {
        if (!literal_.empty()) pattern_.push_back(BlocRenommage::texte(std::exchange(literal_, {})));
    }
    void add(BlocRenommage block) {
        endLiteral();
        pattern_.push_back(std::move(block));
    }

    static RenamePatternError notClosed() { return RenamePatternError("The pattern has a \"{\" without its \"}\"."); }

    BlocRenommage inBraces() {
        if (rest_.starts_with(textPrefix)) return BlocRenommage::texte(content(textPrefix));
        if (rest_.starts_with(separatorPrefix)) return BlocRenommage::separateur(content(separatorPrefix));
        const std::size_t end = rest_.find('}');
        if (end == std::string_view::npos) throw notClosed();
        const std::string_view name = rest_.substr(0, end);
        rest_.remove_prefix(end + 1);
        for (const TokenName& one : tokens) {
            if (equalsIgnoringAsciiCase(one.name, name)) return BlocRenommage::token(one.token);
        }
        std::string known;
        for (const TokenName& one : tokens)
            known.append(known.empty() ? "" : ", ").append(one.name);
        throw RenamePatternError(fmt::format("There is no token \"{}\"; there are {}.", name, known));
    }

    /// Up to the single brace that ends it.
    std::string content(std::string_view prefix) {
        rest_.remove_prefix(prefix.size());
        std::string text;
        while (!rest_.empty()) {
            const char c = rest_.front();
            const bool isDoubled = rest_.size() > 1 && rest_[1] == c;
            const bool isBrace = c == '{' || c == '}';
            if (c == '{' && !isDoubled) {
                throw RenamePatternError("Inside of {text:...} and {separator:...} a brace is written twice.");
            }
            rest_.remove_prefix(isBrace && isDoubled ? 2 : 1);
            if (c == '}' && !isDoubled) return text;
            text.push_back(c);
        }
        throw notClosed();
    }

    std::string_view rest_;
    std::string literal_;
    RenamePattern pattern_;
};

std::string escaped(std::string_view text) { return replacedAll(replacedAll(text, "{", "{{"), "}", "}}"); }

/// Free text that would not read back as this one block where it stands, without braces around it.
bool needsBraces(std::string_view text, bool behindText) noexcept {
    return behindText || text.empty() || text.front() == '}' || text.find_first_of("_-") != std::string_view::npos;
}

}  // namespace

std::string_view label(PaletteRenommage button) noexcept { return labelsOf(button).full; }
std::string_view shortLabel(PaletteRenommage button) noexcept { return labelsOf(button).brief; }
std::string_view label(TokenRenommage token) noexcept { return label(nameOf(token).button); }

BlocRenommage newBlock(PaletteRenommage button) {
    for (const TokenName& one : tokens) {
        if (one.button == button) return BlocRenommage::token(one.token);
    }
    if (button == PaletteRenommage::text) return BlocRenommage::texte({});
    return BlocRenommage::separateur(std::string(shortLabel(button)));
}

RenamePattern parsePattern(std::string_view text) { return Parser(text).parse(); }

std::string patternText(const RenamePattern& pattern) {
    std::string out;
    bool behindText = false;
    for (const BlocRenommage& block : pattern) {
        const auto* texte = std::get_if<BlocRenommage::Texte>(&block.contenu);
        if (texte != nullptr) {
            const std::string text = escaped(texte->text);
            out += needsBraces(texte->text, behindText) ? fmt::format("{{{}{}}}", textPrefix, text) : text;
        } else if (const auto* separateur = std::get_if<BlocRenommage::Separateur>(&block.contenu)) {
            const bool plain = separateur->text == "_" || separateur->text == "-";
            out += plain ? separateur->text : fmt::format("{{{}{}}}", separatorPrefix, escaped(separateur->text));
        } else {
            out += fmt::format("{{{}}}", nameOf(std::get<TokenRenommage>(block.contenu)).name);
        }
        behindText = texte != nullptr;
    }
    return out;
}

bool isSamePattern(const RenamePattern& a, const RenamePattern& b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const BlocRenommage& x, const BlocRenommage& y) { return x.contenu == y.contenu; });
}

}  // namespace dravik
