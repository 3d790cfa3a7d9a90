#pragma once

#include <QComboBox>
#include <QStyleOptionComboBox>
#include <QStylePainter>

namespace dravik {

/// A list box whose current entry is cut with an ellipsis where it is wider than the box.
class ElidedBox final : public QComboBox {
  public:
    using QComboBox::QComboBox;

  protected:
    void paintEvent(QPaintEvent*) override {
        QStylePainter painter(this);
        painter.setPen(palette().color(QPalette::Text));
        QStyleOptionComboBox option;
        initStyleOption(&option);
        constexpr int padding = 4;  // which the style leaves on both sides of the text
        const QRect field = style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
        option.currentText = fontMetrics().elidedText(option.currentText, Qt::ElideRight, field.width() - padding);
        painter.drawComplexControl(QStyle::CC_ComboBox, option);
        painter.drawControl(QStyle::CE_ComboBoxLabel, option);
    }
};

}  // namespace dravik
