#include "report/sound_report_columns.h"

#include "base/text.h"

#include <algorithm>
#include <array>

namespace dravik {
namespace {

using C = SoundReportColumns;

constexpr std::array columns = {
    ReportColumnInfo{ReportColumn::tape, "tape", "Tape", &C::tape, ""},
    ReportColumnInfo{ReportColumn::scene, "scene", "Scene", &C::scene, ""},
    ReportColumnInfo{ReportColumn::take, "take", "Take", &C::take, ""},
    ReportColumnInfo{ReportColumn::circled, "circled", "Circled", &C::circled, "rapportColCircled"},
    ReportColumnInfo{ReportColumn::wild, "wild", "Wild", &C::wild, ""},
    ReportColumnInfo{ReportColumn::notes, "notes", "Notes", &C::notes, ""},
    ReportColumnInfo{ReportColumn::channel, "channel", "Channel", &C::channel, "rapportColChannel"},
    ReportColumnInfo{ReportColumn::duration, "duration", "Duration", &C::duration, "rapportColDuration"},
    ReportColumnInfo{ReportColumn::tcStart, "tcStart", "TC Start", &C::tcStart, "rapportColTCStart"},
    ReportColumnInfo{ReportColumn::tcEnd, "tcEnd", "TC End", &C::tcEnd, ""},
    ReportColumnInfo{ReportColumn::frameRate, "frameRate", "fps", &C::frameRate, "rapportColFrameRate"},
    ReportColumnInfo{ReportColumn::bitDepth, "bitDepth", "Bits", &C::bitDepth, "rapportColBitDepth"},
    ReportColumnInfo{ReportColumn::sampleRate, "sampleRate", "Samplerate", &C::sampleRate, "rapportColSampleRate"},
    ReportColumnInfo{ReportColumn::size, "size", "Size", &C::size, ""},
    ReportColumnInfo{ReportColumn::format, "format", "Format", &C::format, "rapportColFormat"},
};

}  // namespace

std::span<const ReportColumnInfo> optionalColumns() noexcept { return columns; }

std::string_view titleOf(ReportColumn column) noexcept {
    const auto* const found = std::find_if(columns.begin(), columns.end(),
                                           [&](const ReportColumnInfo& info) { return info.column == column; });
    return found == columns.end() ? "File Name" : found->title;
}

std::vector<ReportColumn> columnsOf(const SoundReportColumns& chosen) {
    std::vector<ReportColumn> result = {ReportColumn::fileName};
    for (const ReportColumnInfo& info : columns) {
        if (chosen.*info.chosen) result.push_back(info.column);
    }
    return result;
}

std::optional<SoundReportColumns> parseColumns(std::string_view list, std::string& unknown) {
    SoundReportColumns chosen;
    for (const ReportColumnInfo& info : columns)
        chosen.*info.chosen = false;
    for (bool more = true; more;) {
        const std::size_t comma = list.find(',');
        const std::string_view key = trimmed(list.substr(0, comma));
        const auto* const found = std::find_if(columns.begin(), columns.end(), [&](const ReportColumnInfo& info) {
            return equalsIgnoringAsciiCase(info.key, key);
        });
        if (found == columns.end()) {
            unknown = key;
            return std::nullopt;
        }
        chosen.*found->chosen = true;
        more = comma != std::string_view::npos;
        if (more) list.remove_prefix(comma + 1);
    }
    return chosen;
}

}  // namespace dravik
