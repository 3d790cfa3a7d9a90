#pragma once

#include "operations/rename_pattern.h"
#include "ui/spoken_control.h"
#include "ui/theme.h"

#include <QLineEdit>
#include <QPoint>
#include <QToolButton>
#include <QWidget>

namespace dravik {

/// One block of a pattern: a token by its label, a separator by its character, free text in a field that grows with it.
/// Says what the user wants of it; the row does it.
class PatternChip : public QWidget, public SpokenControl {
    Q_OBJECT
  public:
    PatternChip(const BlocRenommage& block, const Theme& theme, QWidget* parent);

    [[nodiscard]] const Uuid& id() const noexcept { return id_; }
    /// Of free text; null otherwise.
    [[nodiscard]] QLineEdit* field() const noexcept { return field_; }
    [[nodiscard]] QToolButton& cross() noexcept { return *cross_; }
    void setText(const QString& text);
    /// For those who hear instead of see: the place counts from 0.
    void setPlace(int place, int count);
    void setDragged(bool dragged);
    /// As a move by the arrow keys brings the keyboard here: from the left (1) or from the right (-1).
    void enter(int direction);

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::ListItem; }
    /// Free text, or what the block is called.
    [[nodiscard]] QString spokenValue() const override { return field_ != nullptr ? field_->text() : label_; }

    /// Does the key begin a text where there is no field?
    [[nodiscard]] static bool isTyping(const QKeyEvent& key);

  signals:
    void textTyped(const QString& text);
    /// `direction`: who has the keyboard next, the one behind (1) or before (-1).
    void removeRequested(int direction);
    void moveRequested(int by);
    /// To the neighbour; to the first or last one with `far`.
    void leaveRequested(int direction, bool far);
    /// Something was typed that is no command, to stand behind this block.
    void typed(const QString& text);
    void draggedTo(const QPoint& global);
    void dropped();
    void dragCancelled();

  protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    /// Moves the block, in whichever widget the keyboard is. False for other keys.
    bool handleMove(const QKeyEvent& key);
    bool handleFieldKey(const QKeyEvent& key);
    void cancelDrag();
    void applyTheme();

    const Theme& theme_;
    const Uuid id_;
    QString label_;  ///< what it shows, or what it is called when that is a field
    bool isToken_ = false;
    QLineEdit* field_ = nullptr;  // children
    QToolButton* cross_;
    QPoint pressed_;
    bool mayDrag_ = false, dragging_ = false, faded_ = false;
};

}  // namespace dravik
