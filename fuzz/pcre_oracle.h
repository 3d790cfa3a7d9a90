#pragma once

#include "model/wave/ixml_document.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

namespace dravik::oracle {

/// The iXML readers and primitives again, this time with the regular expressions that define them, on PCRE2 in bytes
/// mode. Says what is right; slow, and neither linear nor safe on large documents. For tests and fuzz targets only.

/// A compiled pattern: ASCII case ignored, the dot matches line ends.
class Pattern {
  public:
    explicit Pattern(const std::string& pattern) {
        int error = 0;
        PCRE2_SIZE offset = 0;
        code_.reset(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(),
                                  PCRE2_CASELESS | PCRE2_DOTALL, &error, &offset, nullptr));
        if (!code_) throw std::logic_error("cannot compile " + pattern);
        pcre2_jit_compile(code_.get(), PCRE2_JIT_COMPLETE);  // where there is no JIT, matching is slower but the same
        match_.reset(pcre2_match_data_create_from_pattern(code_.get(), nullptr));
    }

    /// Offsets of the first match at or after `from`: [0] the whole, then its groups.
    [[nodiscard]] std::optional<std::vector<std::pair<std::size_t, std::size_t>>> first(std::string_view subject,
                                                                                        std::size_t from = 0) const {
        const int groups = pcre2_match(code_.get(), reinterpret_cast<PCRE2_SPTR>(subject.data()), subject.size(), from,
                                       0, match_.get(), nullptr);
        if (groups == PCRE2_ERROR_NOMATCH) return std::nullopt;
        if (groups < 0) throw std::runtime_error("the oracle gave up on this document");
        const PCRE2_SIZE* offsets = pcre2_get_ovector_pointer(match_.get());
        std::vector<std::pair<std::size_t, std::size_t>> result;
        for (int group = 0; group < groups; ++group) {
            const auto at = static_cast<std::size_t>(group) * 2;
            result.emplace_back(offsets[at], offsets[at + 1]);
        }
        return result;
    }

  private:
    struct Free {
        void operator()(pcre2_code* code) const noexcept { pcre2_code_free(code); }
        void operator()(pcre2_match_data* match) const noexcept { pcre2_match_data_free(match); }
    };
    std::unique_ptr<pcre2_code, Free> code_;
    std::unique_ptr<pcre2_match_data, Free> match_;
};

inline const Pattern& pattern(const std::string& text) {
    static std::map<std::string, Pattern> compiled;
    const auto known = compiled.find(text);
    return known != compiled.end() ? known->second : compiled.try_emplace(text, text).first->second;
}

inline std::string elementPattern(std::string_view name) {
    return std::string("(<").append(name).append("\\b[^>]*>)(.*?)(</").append(name).append(">)");
}

inline std::string_view slice(std::string_view text, std::pair<std::size_t, std::size_t> range) {
    return text.substr(range.first, range.second - range.first);
}

inline std::string trim(std::string_view text) {
    static const Pattern ends("^\\s*(.*?)\\s*\\z");
    const auto match = ends.first(text);
    return match ? std::string(slice(text, (*match)[1])) : std::string(text);
}

inline std::optional<IxmlElement> plageTag(std::string_view document, std::string_view name) {
    const auto match = pattern(elementPattern(name)).first(document);
    if (!match) return std::nullopt;
    return IxmlElement{(*match)[0].first, (*match)[2].first, (*match)[2].second, (*match)[0].second};
}

inline std::optional<std::string> valeurTag(std::string_view name, std::string_view document) {
    const auto match = pattern(elementPattern(name)).first(document);
    return match ? std::optional<std::string>(trim(slice(document, (*match)[2]))) : std::nullopt;
}

inline std::string remplacerValeurTag(std::string_view document, std::string_view name, std::string_view value) {
    std::string out(document);
    if (const auto match = pattern(elementPattern(name)).first(document)) {
        out.replace((*match)[2].first, (*match)[2].second - (*match)[2].first, value);
    }
    return out;
}

inline std::string supprimerTags(std::string_view document, std::string_view name) {
    const Pattern& removed = pattern(elementPattern(name) + "[ \\t\\n\\r]*");
    std::string out(document);
    while (const auto match = removed.first(out))
        out.erase((*match)[0].first, (*match)[0].second - (*match)[0].first);
    return out;
}

inline std::optional<int> positiveNumber(const std::optional<std::string>& text) {
    static const Pattern number("^[+-]?[0-9]+\\z");
    if (!text || !number.first(*text)) return std::nullopt;
    errno = 0;
    const long long value = std::strtoll(text->c_str(), nullptr, 10);
    if (errno != 0 || value <= 0 || value > std::numeric_limits<int>::max()) return std::nullopt;
    return static_cast<int>(value);
}

/// lireNomsPistes and lireNumerosTracks in one.
inline std::pair<std::map<int, std::string>, std::map<int, int>> readTracks(std::string_view document) {
    std::pair<std::map<int, std::string>, std::map<int, int>> result;
    const Pattern& track = pattern(elementPattern("TRACK"));
    int ordinal = 0;
    for (auto match = track.first(document); match; match = track.first(document, (*match)[0].second)) {
        ++ordinal;
        const std::string_view inner = slice(document, (*match)[2]);
        const auto interleave = positiveNumber(oracle::valeurTag("INTERLEAVE_INDEX", inner));
        const auto channel = positiveNumber(oracle::valeurTag("CHANNEL_INDEX", inner));
        for (const char* name : {"NAME", "TRACK_NAME", "CHANNEL_NAME"}) {
            const auto value = oracle::valeurTag(name, inner);
            if (!value) continue;
            result.first[interleave ? *interleave : channel.value_or(ordinal)] = *value;
            break;
        }
        if (interleave && channel) result.second[*interleave] = *channel;
    }
    return result;
}

/// The text between two literal tags, case-sensitive.
inline std::optional<std::string> literalValue(std::string_view document, std::string_view name) {
    const std::string opening = std::string("<").append(name).append(">");
    const std::string closing = std::string("</").append(name).append(">");
    const std::size_t begin = document.find(opening);
    const std::size_t end = document.find(closing);
    if (begin == std::string_view::npos || end == std::string_view::npos || end < begin + opening.size()) {
        return std::nullopt;
    }
    return std::string(document.substr(begin + opening.size(), end - begin - opening.size()));
}

}  // namespace dravik::oracle
