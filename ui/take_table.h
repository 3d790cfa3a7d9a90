#pragma once

#include "app/content_view.h"
#include "app/table_edits.h"
#include "app/take_columns.h"
#include "ui/theme.h"

#include <QTimer>
#include <QWidget>
#include <optional>
#include <vector>

class QLabel;
class QLineEdit;
class QMenu;

namespace dravik {

class TakeTableModel;
class TakeTableView;
enum class TakeCommand;

/// The takes of the folder as a table with a filter box: what is shown, sorted and selected, and the editing of cells
/// as in a spreadsheet. The rows themselves, and their pending edits, are the controller's.
class TakeTable : public QWidget {
    Q_OBJECT
  public:
    TakeTable(ContentView& content, UserDefaults& settings, const Theme& theme, QWidget* parent = nullptr);
    ~TakeTable() override;

    /// Rows of the selection (indices into groupesTableau) in the order in which they are shown; the row of the loaded
    /// take when nothing is selected.
    [[nodiscard]] std::vector<int> selectedRows() const;
    /// Number of rows that the filter lets through.
    [[nodiscard]] int visibleRows() const;

    // What menus offer; each acts on the selection and the current column.
    void editCurrentCell();
    void fillDown();
    void incrementTakes();
    void numberTakes();
    void copy();      ///< the current column, a line for each row
    void copyRows();  ///< all visible columns
    void paste();
    void clearCells();
    void toggleCircled();
    void toggleWild();
    /// The take before (-1) or after (1) the current one.
    void goToOtherTake(int step);
    void focusFilter();
    void focusTable();
    /// The first row that the last edit, or its undoing, has changed: scrolled to, with the filter gone if it hides it.
    void showLastChange();
    /// Writes what is being typed into a cell; before a save, for instance.
    void commitEditing();

  signals:
    void selectionChanged();

  private:
    void makeFilterRow(const Theme& theme);
    void connectView();
    void connectContent();
    void restoreHeader();
    void storeHeader();

    void run(TakeCommand command);
    void toggle(TakeColumn column, int deciding);
    void commit(const QModelIndex& index, const QString& text, bool toAll);
    void tell(const TableEditResult& result, TakeColumn column);
    [[nodiscard]] static QString savingRuns();
    [[nodiscard]] bool mayEdit();
    /// Tells why, when two takes would get one name. A single name is for all rows.
    [[nodiscard]] bool refusesNames(const std::vector<int>& rows, const QStringList& names);
    [[nodiscard]] std::optional<TakeColumn> currentColumn() const;

    void showLoadedTake();
    void selectRows(const std::vector<int>& rows);
    void loadCurrentTake();
    void unfoldAsBefore();
    void showCount();
    void showPlaceholder();
    void showMenu(const QPoint& globalPosition);
    bool eventFilter(QObject* watched, QEvent* event) override;

    ContentView& content_;
    UserDefaults& settings_;
    TakeTableModel* model_;
    TakeTableView* view_;
    QLineEdit* filter_ = nullptr;
    QLabel* count_ = nullptr;
    QTimer load_;                ///< the take is loaded when keys and clicks have been dealt with
    QTimer header_;              ///< the header is stored when it has settled
    QTimer filterDelay_;         ///< a word typed at speed is looked for once
    bool showing_ = false;       ///< the selection follows the controller just now, not the other way round
    bool hadSelection_ = false;  ///< before what is shown was arranged anew
    bool readingCancelled_ = false;
    std::vector<int> lastChange_;  ///< rows, as they are told
    int filterColumn_ = 0;         ///< the column in which the user was when the filter got the keyboard
};

}  // namespace dravik
