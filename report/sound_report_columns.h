#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dravik {

/// The columns of a report. The file's name always comes first; the others stand in this order, each if it is chosen.
enum class ReportColumn {
    fileName,
    tape,
    scene,
    take,
    circled,
    wild,
    notes,
    channel,
    duration,
    tcStart,
    tcEnd,
    frameRate,
    bitDepth,
    sampleRate,
    size,
    format,
};

/// Which of the optional columns a report has. As it stands it is what a form shows where nothing was saved: what
/// editorial reads; what is mostly the same in every line, and so in the heading, is left out.
struct SoundReportColumns {
    bool tape = false;
    bool scene = true, take = true, circled = true, wild = true, notes = true;
    bool channel = true, duration = true, tcStart = true, tcEnd = true;
    bool frameRate = true, bitDepth = true, sampleRate = true;
    bool size = false, format = false;
    friend bool operator==(const SoundReportColumns&, const SoundReportColumns&) = default;
};

struct ReportColumnInfo {
    ReportColumn column;
    std::string_view key;    ///< on a command line
    std::string_view title;  ///< in the form, and at the head of the column
    bool SoundReportColumns::*chosen;
    std::string_view setting;  ///< key under which a user's choice is kept; empty where none is
};
/// The optional columns in their order.
[[nodiscard]] std::span<const ReportColumnInfo> optionalColumns() noexcept;
[[nodiscard]] std::string_view titleOf(ReportColumn column) noexcept;

/// The file's name and the chosen ones, in their order.
[[nodiscard]] std::vector<ReportColumn> columnsOf(const SoundReportColumns& chosen);

/// The columns that a list of keys names, "scene,take": these and no others, in any order, in any letter case. Absent
/// when a key is unknown, which is then in `unknown`.
[[nodiscard]] std::optional<SoundReportColumns> parseColumns(std::string_view list, std::string& unknown);

}  // namespace dravik
