#pragma once

#include <QLayout>
#include <memory>
#include <vector>

namespace dravik {

/// Widgets in lines, as words in a text: one after the other, and on the next line when there is no room left.
class FlowLayout final : public QLayout {
    Q_OBJECT
  public:
    FlowLayout(int horizontalGap, int verticalGap, QWidget* parent = nullptr);
    ~FlowLayout() override;

    /// Puts the widgets, which are in the layout already, into this order.
    void arrange(const std::vector<QWidget*>& order);

    void addItem(QLayoutItem* item) override;
    [[nodiscard]] int count() const override { return static_cast<int>(items_.size()); }
    [[nodiscard]] QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    void setGeometry(const QRect& rect) override;
    [[nodiscard]] QSize sizeHint() const override { return minimumSize(); }
    /// Of one line with the widest widget that cannot be narrower.
    [[nodiscard]] QSize minimumSize() const override;

  private:
    /// The height that is needed, margins included; places the widgets when `place`.
    int lay(const QRect& rect, bool place) const;

    int horizontalGap_, verticalGap_;
    std::vector<std::unique_ptr<QLayoutItem>> items_;
};

}  // namespace dravik
