#include "update/update_info.h"

#include "update/update_check_error.h"

#include <limits>

#include <nlohmann/json.hpp>

namespace dravik {
namespace {

using Json = nlohmann::json;

[[noreturn]] void refuse() { throw UpdateCheckError(UpdateCheckError::Case::invalidData); }

const Json& member(const Json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end()) refuse();
    return *found;
}

std::string text(const Json& value) {
    if (!value.is_string()) refuse();
    return value.get<std::string>();
}

std::int64_t integer(const Json& value) {
    // A number with a fraction, an exponent, or more than 64 bits is a float to the parser.
    if (!value.is_number_integer()) refuse();
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (value.is_number_unsigned() && value.get<std::uint64_t>() > most) refuse();
    return value.get<std::int64_t>();
}

}  // namespace

UpdateInfo decodeUpdateInfo(std::string_view document) {
    // The parser keeps its own stack, as its destructor does: depth costs memory alone. It refuses what is not UTF-8.
    const Json json = Json::parse(document, nullptr, false);
    if (!json.is_object()) refuse();
    UpdateInfo info;
    info.version = text(member(json, "version"));
    info.build = integer(member(json, "build"));
    info.releaseDate = text(member(json, "releaseDate"));
    info.minimumMacOS = text(member(json, "minimumMacOS"));
    info.downloadURL = text(member(json, "downloadURL"));
    const Json& notes = member(json, "releaseNotes");
    if (!notes.is_array()) refuse();
    for (const Json& note : notes)
        info.releaseNotes.push_back(text(note));
    return info;
}

}  // namespace dravik
