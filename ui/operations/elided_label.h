#pragma once

#include <QLabel>
#include <QPainter>
#include <QStyle>

namespace dravik {

/// One line of plain text that gives way: cut in its middle where it is wider than its room, whole in the tool tip.
class ElidedLabel final : public QLabel {
  public:
    explicit ElidedLabel(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

    void show(const QString& text) {
        if (text == this->text()) return;
        setText(text);
        setToolTip(text);
    }
    [[nodiscard]] QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
        painter.drawText(contentsRect(), int(alignment()) | int(Qt::TextSingleLine),
                         fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width()));
    }
};

}  // namespace dravik
