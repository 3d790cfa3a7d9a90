#pragma once

#include "app/content_view.h"
#include "ui/theme.h"

#include <QLineEdit>
#include <QTableView>
#include <QToolButton>
#include <QWidget>

namespace dravik {

class CueModel;

/// The cue markers of the loaded take: number, position, label; a field to add one at a typed position. Adding,
/// renaming and deleting are the controller's commands.
class CueList : public QWidget {
    Q_OBJECT
  public:
    CueList(ContentView& content, const Theme& theme, QWidget* parent = nullptr);
    ~CueList() override;

    /// Shows the loaded take's markers as they are now.
    void refresh(bool editable);

    [[nodiscard]] QTableView& table() noexcept { return *table_; }
    [[nodiscard]] QLineEdit& positionField() noexcept { return *position_; }

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    void addTyped();
    void showWhetherValid();
    void renameCurrent();
    void deleteCurrent();
    [[nodiscard]] const GroupeFichiers* groupe() const;

    ContentView& content_;
    const Theme& theme_;
    CueModel* model_;  // children, all of them
    QTableView* table_;
    QLineEdit* position_;
    QToolButton* add_;
    bool editable_ = false;
};

}  // namespace dravik
