#pragma once

#include <QAction>
#include <QColor>
#include <QIcon>
#include <QTreeView>
#include <functional>
#include <vector>

namespace dravik {

/// The view of the folder browser: how rows are drawn, and what mouse and keys mean on them. What follows from it is
/// the browser's to decide, through the hooks.
class FolderTree : public QTreeView {
    Q_OBJECT
  public:
    struct Hooks {
        std::function<void(const QModelIndex&)> open;
        std::function<void(const QModelIndex&)> eject;
        std::function<void(bool)> typing;                ///< a name is being typed, or not any more
        std::function<std::vector<QAction*>()> actions;  ///< whose shortcuts the tree answers, brought up to date
        std::function<void()> touched;                   ///< the user moves about in the tree
    };
    explicit FolderTree(QWidget* parent = nullptr);

    void setHooks(Hooks hooks) { hooks_ = std::move(hooks); }
    void setLook(const QColor& dimmed, const QIcon& eject);

    [[nodiscard]] QColor dimmed() const { return dimmed_; }
    [[nodiscard]] const QIcon& ejectIcon() const noexcept { return eject_; }
    /// Where a row of a volume that can be ejected has its button.
    [[nodiscard]] static QRect ejectRect(const QRect& row, Qt::LayoutDirection direction);
    [[nodiscard]] bool isTyping() const { return state() == EditingState; }
    void typingStarted() { hooks_.typing(true); }

  protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) override;

  private:
    [[nodiscard]] QModelIndex ejectAt(const QPoint& where) const;
    [[nodiscard]] QAction* actionFor(const QKeyEvent& key) const;

    Hooks hooks_;
    QColor dimmed_;
    QIcon eject_;
    QPersistentModelIndex pressed_;  ///< the row whose button is held down
};

}  // namespace dravik
