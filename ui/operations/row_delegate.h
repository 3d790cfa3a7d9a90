#pragma once

#include "ui/list_looks.h"

#include <QApplication>
#include <QPainter>
#include <QStyledItemDelegate>

namespace dravik {

/// How rows of these lists are drawn: no frame around one cell of a selected row, check boxes in the colours of all
/// others, sentences cut at their end.
class RowDelegate final : public QStyledItemDelegate {
  public:
    /// `sentences`: the column that holds some; -1 for none.
    RowDelegate(int sentences, QObject* parent) : QStyledItemDelegate(parent), sentences_(sentences) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QStyledItemDelegate::paint(painter, option, index);
        QStyleOptionViewItem box = option;
        initStyleOption(&box, index);
        if (!box.features.testFlag(QStyleOptionViewItem::HasCheckIndicator)) return;
        // Once more, without the quiet colours of the selection.
        const QStyle& style = *option.widget->style();
        box.rect = style.subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &box, option.widget);
        box.palette = QApplication::palette();
        box.state.setFlag(QStyle::State_On, box.checkState == Qt::Checked);
        box.state.setFlag(QStyle::State_Off, box.checkState != Qt::Checked);
        style.drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &box, painter, option.widget);
    }

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        option->state.setFlag(QStyle::State_HasFocus, false);
        if (index.column() == sentences_) option->textElideMode = Qt::ElideRight;
        option->text = inItsOwnDirection(option->text, option->direction);
    }

  private:
    int sentences_;
};

}  // namespace dravik
