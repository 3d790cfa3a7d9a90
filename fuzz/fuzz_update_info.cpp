// What the update server says: the version document, and the address and the version in it, which are looked at before
// anything is made of them.
#include "base/text.h"
#include "fuzz/require.h"
#include "update/download_url.h"
#include "update/operating_system_version.h"
#include "update/update_check_error.h"
#include "update/update_info.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

using namespace dravik;

namespace {

/// The other way round: an address is right when it begins with one of the two that may be visited, and goes on as
/// neither a host nor a port could.
void requireOwnSite(std::string_view url) {
    std::string lower(url);
    std::transform(lower.begin(), lower.end(), lower.begin(), toLowerAscii);
    std::string_view rest = lower;
    bool begins = false;
    for (const std::string_view site : {"https://dravik.test", "https://www.dravik.test"}) {
        if (!rest.starts_with(site)) continue;
        rest.remove_prefix(site.size());
        begins = true;
        break;
    }
    require(begins && (rest.empty() || rest.front() == '/' || rest.front() == '?' || rest.front() == '#'));
    require(std::all_of(url.begin(), url.end(), [](char c) { return c > ' ' && c < '\x7F' && c != '\\'; }));
}

void checkTexts(std::string_view url, std::string_view version) {
    if (isDownloadURL(url, "dravik.test")) requireOwnSite(url);
    require(!isDownloadURL(url, ""));
    if (const std::optional<OperatingSystemVersion> parsed = parseOperatingSystemVersion(version))
        require(parseOperatingSystemVersion(formatOperatingSystemVersion(*parsed)) == parsed);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view document(reinterpret_cast<const char*>(data), size);
    checkTexts(document, document);
    try {
        const UpdateInfo info = decodeUpdateInfo(document);
        for (const std::string& text : {info.version, info.releaseDate, info.minimumMacOS, info.downloadURL})
            require(isValidUtf8(text));
        require(std::all_of(info.releaseNotes.begin(), info.releaseNotes.end(), isValidUtf8));
        checkTexts(info.downloadURL, info.minimumMacOS);
    } catch (const UpdateCheckError& error) {
        require(error.reason() == UpdateCheckError::Case::invalidData);
    }
    return 0;
}
