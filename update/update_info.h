#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace dravik {

/// The newest release, as the version document describes it. Nothing of it can be trusted: texts are any UTF-8, of any
/// length, and the address is any text until UpdateChecker has looked at it.
struct UpdateInfo {
    std::string version;       ///< shown, never compared
    std::int64_t build = 0;    ///< what is compared
    std::string releaseDate;   ///< "2026-05-14"
    std::string minimumMacOS;  ///< "14", "14.2" or "14.2.1"
    std::string downloadURL;
    std::vector<std::string> releaseNotes;  ///< a paragraph each
};

/// Reads a JSON document (UTF-8) whose keys are the names of the fields; other keys are passed over. Throws
/// UpdateCheckError when it is not JSON, lacks a key, or has a value of another type; a build is an integer of 64 bits.
[[nodiscard]] UpdateInfo decodeUpdateInfo(std::string_view document);

}  // namespace dravik
