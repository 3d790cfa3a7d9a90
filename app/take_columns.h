#pragma once

#include "app/take_rows.h"

#include <QString>
#include <QStringList>
#include <optional>
#include <string>

namespace dravik {

/// What the columns of the take table say, as texts, and what a text put into one of them means. Pure functions on
/// values; no widget.

/// In the order in which they are shown at first. A stored header counts on it: new ones go to the end.
enum class TakeColumn {
    name,
    circled,
    wild,
    scene,
    take,
    tape,
    project,
    note,
    startTimecode,
    endTimecode,
    duration,
    fps,
    tracks,
    sampleRate,
    bits,
    format,
    size,
    date
};
inline constexpr int takeColumnCount = 18;

[[nodiscard]] QString columnTitle(TakeColumn column);
/// The field that an edit of the column changes; absent for what is only told.
[[nodiscard]] std::optional<RowField> fieldOf(TakeColumn column);
/// Circled and Wild: shown as a mark, switched rather than typed.
[[nodiscard]] bool isFlagColumn(TakeColumn column);
/// Edited by a text: editable and no flag.
[[nodiscard]] bool isTextColumn(TakeColumn column);
/// Numbers stand at the right.
[[nodiscard]] bool isNumberColumn(TakeColumn column);

/// The cell of a take: empty for what is absent, mixed, or a flag.
[[nodiscard]] std::string cellText(const GroupeFichiers& groupe, TakeColumn column);
/// The cell of one file of a mono set: what tells it from its set, and its own value where the set is mixed.
[[nodiscard]] std::string memberText(const GroupeFichiers& groupe, std::size_t member, TakeColumn column);
[[nodiscard]] bool isMixedCell(const GroupeFichiers& groupe, TakeColumn column);
/// Of the two flag columns.
[[nodiscard]] bool flagOf(const GroupeFichiers& groupe, TakeColumn column);
/// Start plus duration at the take's rate; empty without a start or a rate.
[[nodiscard]] std::string endTimecode(const GroupeFichiers& groupe);

/// Why the text cannot be the row's value in this column; empty when it can.
[[nodiscard]] QString whyNot(const GroupeFichiers& groupe, TakeColumn column, const QString& text);
/// Why nothing in the row can be edited; empty when it can.
[[nodiscard]] QString whyReadOnly(const GroupeFichiers& groupe);
/// The same, also of takes whose files are gone.
[[nodiscard]] QString whyReadOnly(const TakeRows& rows, int row);
/// Is the file cut off, or can it not be read? Is that so of a file of the take, or is one not there? Cheap enough for
/// painting.
[[nodiscard]] bool isDamaged(const InfoFichier& fichier);
[[nodiscard]] bool isDamaged(const GroupeFichiers& groupe);
/// What is wrong with the file, or with the take: a line each; empty when nothing is.
[[nodiscard]] QString whatIsWrong(const InfoFichier& fichier);
[[nodiscard]] QString whatIsWrong(const GroupeFichiers& groupe);
/// Why nothing in the row can be edited, and what is wrong with the take.
[[nodiscard]] QString warningOf(const TakeRows& rows, int row);

/// The cell as other programs take it: of flags "yes" or nothing.
[[nodiscard]] std::string clipboardText(const GroupeFichiers& groupe, TakeColumn column);
/// Cells as a spreadsheet takes them: tabs between, quoted where they hold a tab, a line end or a quote.
[[nodiscard]] QString spreadsheetLine(const QStringList& cells);
/// The first column of what a spreadsheet, or any program that copies lines, has put on the clipboard.
[[nodiscard]] QStringList firstSpreadsheetColumn(const QString& text);

}  // namespace dravik
