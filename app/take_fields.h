#pragma once

#include "app/take_rows.h"
#include "editing/modifications_en_cours.h"

#include <QObject>
#include <QString>
#include <functional>

namespace dravik {

/// The fields of one take and its row, which are two views of the same pending edits: what is put into a field is an
/// edit of the row, and a row that was edited elsewhere is shown in the fields. Main thread only.
class TakeFields : public QObject {
    Q_OBJECT
  public:
    /// `row` says which row the take is now, -1 for none: rows move.
    TakeFields(TakeRows& rows, std::function<int()> row);

    [[nodiscard]] ModificationsEnCours& modifications() noexcept { return modifications_; }
    /// The fields are those of the take that is the one now.
    void show();
    /// The row has changed, by whatever edit.
    void follow();

  signals:
    /// Why an edit was not taken over.
    void notice(const QString& text);

  private:
    void fill(int row);
    void onEdited(RowField field);

    TakeRows& rows_;
    ModificationsEnCours modifications_;
    std::function<int()> row_;
    bool filling_ = false;  ///< the fields follow the row just now, not the other way round
};

}  // namespace dravik
