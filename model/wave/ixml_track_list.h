#pragma once

#include <map>
#include <optional>
#include <string>

namespace dravik {

/// The TRACK_LIST part of an edit: writes all names in one pass, so that a large document with many names stays linear.
/// Numbers below 1 name no track and are passed over. See setTrackName for the rules and MetadataValues for the
/// meaning of the arguments.
void writeTrackNames(std::string& document, const std::map<int, std::string>& names,
                     const std::optional<std::string>& soleName);

}  // namespace dravik
