#pragma once

#include "app/text.h"
#include "ui/theme.h"

#include <QString>
#include <QWidget>
#include <vector>

namespace dravik {

class CheckBar;
class CheckTable;
class TakeCheckModel;

struct TakeCheckRow {
    QString name;
    QString summary;  ///< "4 tracks, 48 kHz"
    bool checked = true;
    friend bool operator==(const TakeCheckRow&, const TakeCheckRow&) = default;
};

/// The takes that an operation can work on, each taken or left out, and one that is looked at.
class TakeCheckList : public QWidget {
    Q_OBJECT
  public:
    explicit TakeCheckList(const Theme& theme, QWidget* parent = nullptr);

    /// What a row is. Before the rows.
    void setNoun(Noun noun);
    /// These tell nobody. As many rows as before leave the list where it was scrolled to, and its current row.
    void setRows(std::vector<TakeCheckRow> rows);
    void setChecked(int row, bool checked);
    void setCurrentRow(int row);  ///< -1 for none
    [[nodiscard]] int currentRow() const;
    [[nodiscard]] const std::vector<TakeCheckRow>& rows() const noexcept;
    [[nodiscard]] CheckTable& table() noexcept { return *table_; }

  signals:
    /// The user has done it; the list shows it already.
    void checkedChanged(int row, bool checked);
    void allCheckedChanged(bool checked);
    void currentChanged(int row);

  private:
    void refreshCount();

    TakeCheckModel* model_;  // children, all of them
    CheckTable* table_;
    CheckBar* bar_;
    bool setting_ = false;  ///< not the user
};

}  // namespace dravik
