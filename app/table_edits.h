#pragma once

#include "app/take_rows.h"

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace dravik {

/// What is done to many rows of the take table at once. Each call is one named step of TakeRows; rows that cannot be
/// edited are passed over. Rows are indices into groupesTableau, in the order in which they are shown. Main thread.
///
/// The number of rows that could not take the value comes back, so that the window can say so.
struct TableEditResult {
    int changed = 0;
    int readOnly = 0;
    int refused = 0;  ///< the text is no value of this field: a timecode, a name, a frame rate
};

/// One text, or one flag, for all.
TableEditResult setField(TakeRows& rows, const std::vector<int>& which, RowField field, const QString& text);
TableEditResult setFlagField(TakeRows& rows, const std::vector<int>& which, RowField field, bool valeur);
/// The value of the first row for all below it.
TableEditResult fillDown(TakeRows& rows, const std::vector<int>& which, RowField field);
/// Lines of a spreadsheet column onto the rows, one each; a single line goes onto all of them. For flags "yes", "true",
/// "x", "1" and "circled"/"wild" mean yes, everything else no.
TableEditResult paste(TakeRows& rows, const std::vector<int>& which, RowField field, const QStringList& lines);
/// Each row's take becomes the one after it.
TableEditResult incrementTakes(TakeRows& rows, const std::vector<int>& which);
/// The first row keeps its take, each row below gets the one after the row above.
TableEditResult numberTakes(TakeRows& rows, const std::vector<int>& which);

/// The recorder's channel numbers of one take, all at once. The sentence says why nothing was changed; absent when it
/// was, or when there was nothing to change.
[[nodiscard]] std::optional<QString> editTrackNumbers(TakeRows& rows, int row, const TrackNumbers& numeros);

/// "Scene", "Take", …: how a field is called in the interface.
[[nodiscard]] QString fieldTitle(RowField field);

}  // namespace dravik
