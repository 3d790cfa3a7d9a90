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
    /// How another name is offered for a row with a problem.
    enum class KeepBoth { never, inMenu, inMenuAndButton };
    OperationPreviewTable(const QString& accessibleName, const Theme& theme, QWidget* parent = nullptr);

    /// Titles of the columns: "File", "New Name".
    void setHeads(const QString& source, const QString& target);
    /// The line above: "12 files will be renamed"; in the colour of errors when it tells of problems.
    void setCounts(const QString& text, bool problems = false);
    /// As many rows as before leave the list where it was scrolled to.
    void setRows(std::vector<OperationPreviewRow> rows);
    void setKeepBoth(KeepBoth offered);
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
    KeepBoth keepBoth_ = KeepBoth::never;
    bool problems_ = false;
    OperationPreviewModel* model_;  // children, all of them
    QTableView* table_;
    QLabel* counts_;
    QPushButton* button_;
};

}  // namespace dravik
