#pragma once

#include "app/operation_preview.h"
#include "ui/theme.h"

#include <QLabel>
#include <QPushButton>
#include <QString>
#include <QTableView>
#include <QWidget>
#include <vector>

namespace dravik {

class OperationPreviewModel;

/// What an operation would do: from which file, to which. Of hundreds of thousands of rows only those in sight cost.
class OperationPreviewTable : public QWidget {
    Q_OBJECT
  public:
    OperationPreviewTable(const QString& accessibleName, const Theme& theme, QWidget* parent = nullptr);

    /// Titles of the columns: "File", "New Name".
    void setHeads(const QString& source, const QString& target);
    /// The line above: "12 files will be renamed"; in the colour of errors when it tells of problems.
    void setCounts(const QString& text, bool problems = false);
    /// As many rows as before leave the list where it was scrolled to.
    void setRows(std::vector<OperationPreviewRow> rows);
    /// Is another name offered where it would solve a row's problem?
    void setKeepBothOffered(bool offered);
    [[nodiscard]] const std::vector<OperationPreviewRow>& rows() const noexcept;
    [[nodiscard]] QTableView& table() noexcept { return *table_; }

  signals:
    /// Only of a row with a problem.
    void keepBothRequested(int row);

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    void openMenu(const QPoint& where);
    void showButton();
    void applyTheme();
    [[nodiscard]] bool mayKeepBoth(int row) const;

    const Theme& theme_;
    bool keepBothOffered_ = false;
    bool problems_ = false;
    OperationPreviewModel* model_;  // children, all of them
    QTableView* table_;
    QLabel* counts_;
    QPushButton* button_;
};

}  // namespace dravik
