#pragma once

#include "app/content_view.h"
#include "ui/theme.h"

#include <QTableView>

namespace dravik {

class TrackModel;

/// The tracks of the loaded take: position, recorder's channel number, and the name, which is edited in place. Each
/// keystroke is an edit. Enter and Tab go on to the next name; several lines of text are pasted downwards.
class TrackList : public QTableView {
    Q_OBJECT
  public:
    TrackList(ContentView& content, const Theme& theme, QWidget* parent = nullptr);
    ~TrackList() override;
    enum Column { number, channel, name };

  signals:
    /// A key has undone or redone a step.
    void stepReplayed();

  public:
    /// Shows the loaded take's tracks as they are now.
    void refresh(bool editable);

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
    void reset() override;

  private:
    void goOn(int steps);
    void setTyping(bool typing);
    void copyNames();
    void pasteFrom(int row);

    ContentView& content_;
    TrackModel* model_;  ///< a child
    bool typing_ = false;
};

}  // namespace dravik
