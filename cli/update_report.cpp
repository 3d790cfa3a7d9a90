#include "cli/update_report.h"

#include "base/build_info.h"
#include "base/text.h"
#include "cli/display_text.h"
#include "cli/json_writer.h"

#include <fmt/format.h>

namespace dravik {
namespace {

const UpdateInfo& infoOf(const UpdateAvailability& found) {
    return std::visit([](const auto& result) -> const UpdateInfo& { return result.info; }, found);
}

void releaseMembers(JsonWriter& json, const UpdateInfo& info) {
    json.member("version", info.version);
    json.member("build", info.build);
    json.member("releaseDate", info.releaseDate);
    json.member("minimumMacOS", info.minimumMacOS);
    json.member("downloadURL", info.downloadURL);
    json.key("releaseNotes");
    json.beginArray();
    for (const std::string& note : info.releaseNotes)
        json.value(note);
    json.endArray();
}

}  // namespace

std::string updateText(const UpdateAvailability& found, const InstalledAppVersion& installed) {
    const UpdateInfo& info = infoOf(found);
    const std::string version = printable(info.version);
    const auto* available = std::get_if<UpdateAvailable>(&found);
    std::string text;
    if (available == nullptr) {
        text = "Dravik is up to date.\n";
    } else if (available->isCompatibleWithCurrentMac) {
        text = fmt::format("Dravik {} is available.\n", version);
    } else {
        text = fmt::format("Dravik {} requires macOS {} or later.\n", version, printable(info.minimumMacOS));
    }
    text += fmt::format("Installed: {} (build {})\n", printable(installed.version), installed.build);
    if (available == nullptr) return text;
    text += fmt::format("Released:  {}\n", printable(info.releaseDate));
    if (available->isCompatibleWithCurrentMac) text += fmt::format("Download:  {}\n", printable(info.downloadURL));
    if (!info.releaseNotes.empty()) text += '\n';
    for (const std::string& note : info.releaseNotes)
        text += fmt::format("- {}\n", printable(note));
    return text;
}

std::string updateJson(const std::optional<UpdateAvailability>& found, const Bundle& installed,
                       const std::optional<std::string>& message) {
    JsonWriter json;
    json.beginObject();
    json.member("version", buildInfo().version);
    json.member("ok", found.has_value());
    json.member("message", message);
    json.key("installed");
    json.beginObject();
    json.member("version", installed.shortVersion);
    json.member("build", installed.build ? parseInteger(*installed.build) : std::nullopt);
    json.endObject();
    const auto* available = found ? std::get_if<UpdateAvailable>(&*found) : nullptr;
    json.member("updateAvailable", found ? std::optional(available != nullptr) : std::nullopt);
    json.member("compatible",
                available != nullptr ? std::optional(available->isCompatibleWithCurrentMac) : std::nullopt);
    json.key("latest");
    if (found) {
        json.beginObject();
        releaseMembers(json, infoOf(*found));
        json.endObject();
    } else {
        json.null();
    }
    json.endObject();
    return std::move(json).text();
}

}  // namespace dravik
