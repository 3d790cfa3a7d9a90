#include "update/download_url.h"

#include "base/text.h"

#include <algorithm>

namespace dravik {
namespace {

/// Longer ones are cut or refused by browsers and openers.
constexpr std::size_t longestUrl = 2000;

constexpr bool isHexDigit(char c) noexcept {
    const char lower = toLowerAscii(c);
    return isAsciiDigit(c) || (lower >= 'a' && lower <= 'f');
}

/// The characters that may stand in an address, and nothing else.
bool isPlain(std::string_view url) noexcept {
    constexpr std::string_view marks = "-._~:/?#[]@!$&'()*+,;=%";
    for (std::size_t at = 0; at < url.size(); ++at) {
        const char c = url[at];
        if (!isAsciiLetter(c) && !isAsciiDigit(c) && marks.find(c) == std::string_view::npos) return false;
        if (c == '%' && (url.size() - at < 3 || !isHexDigit(url[at + 1]) || !isHexDigit(url[at + 2]))) return false;
    }
    return true;
}

std::string_view withoutWww(std::string_view host) noexcept {
    constexpr std::string_view prefix = "www.";
    return equalsIgnoringAsciiCase(host.substr(0, prefix.size()), prefix) ? host.substr(prefix.size()) : host;
}

}  // namespace

bool isDownloadURL(std::string_view url, std::string_view webDomain) noexcept {
    constexpr std::string_view scheme = "https://";
    if (url.size() > longestUrl || !isPlain(url)) return false;
    if (!equalsIgnoringAsciiCase(url.substr(0, scheme.size()), scheme)) return false;
    const std::string_view rest = url.substr(scheme.size());
    // Up to the path, the query or the fragment. A user name or a port makes it differ from the domain.
    const std::string_view authority = rest.substr(0, std::min(rest.size(), rest.find_first_of("/?#")));
    const std::string_view domain = withoutWww(webDomain);
    return !domain.empty() && equalsIgnoringAsciiCase(withoutWww(authority), domain);
}

}  // namespace dravik
