#pragma once

#include "app/text.h"
#include "ui/theme.h"

#include <QLabel>
#include <QPushButton>
#include <QString>
#include <QTableView>
#include <QWidget>
#include <cstddef>
#include <initializer_list>

namespace dravik {

/// A list whose rows have a check box in their first column: Space checks or unchecks all selected rows, as the current
/// one is not. What a check means is the model's, which hears of it by `setData`.
class CheckTable : public QTableView {
    Q_OBJECT
  public:
    CheckTable(QAbstractItemModel& model, const Theme& theme, const QString& accessibleName,
               std::initializer_list<int> widths, QWidget* parent);

  signals:
    /// Space, while every row is selected; then instead of the model.
    void allRequested(bool checked);

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

/// The line above such a list: how many are checked, and the buttons for all and none.
class CheckBar : public QWidget {
    Q_OBJECT
  public:
    /// `noun`: what one of them is.
    CheckBar(Noun noun, QWidget* parent);
    /// From the next count on.
    void setNoun(Noun noun);
    void setCount(std::size_t checked, std::size_t all);
    /// Where there is more to check than what is counted.
    void enable(bool canCheck, bool canUncheck);

  signals:
    void allRequested(bool checked);

  private:
    Noun noun_;
    QLabel* count_;
    QPushButton* all_;
    QPushButton* none_;
};

}  // namespace dravik
