#pragma once

#include "ui/folder_tree.h"
#include "ui/spoken_control.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QSpinBox>
#include <QTabBar>
#include <QTextEdit>
#include <QTreeView>
#include <QWidget>
#include <functional>

namespace dravik::test {

/// Where a text is, and the text.
using TextVisitor = std::function<void(const QString& where, const QString& text)>;

namespace detail {

inline void textsOf(const QAction& action, const QString& where, const TextVisitor& say) {
    say(where + QStringLiteral(" action"), action.text());
    say(where + QStringLiteral(" action tool tip"), action.toolTip());
    say(where + QStringLiteral(" action status tip"), action.statusTip());
}

inline void textsOf(const QAbstractItemView& view, const QString& where, const TextVisitor& say) {
    const QAbstractItemModel* model = view.model();
    if (model == nullptr || qobject_cast<const QHeaderView*>(&view) != nullptr) return;
    for (int column = 0; column < model->columnCount(); ++column) {
        for (const int role : {Qt::DisplayRole, Qt::ToolTipRole})
            say(where + QStringLiteral(" header"), model->headerData(column, Qt::Horizontal, role).toString());
    }
    // All that it says is what folders and volumes are called.
    if (qobject_cast<const FolderTree*>(&view) != nullptr) return;
    for (int row = 0; row < model->rowCount(); ++row) {
        for (int column = 0; column < model->columnCount(); ++column) {
            for (const int role : {Qt::DisplayRole, Qt::ToolTipRole, Qt::AccessibleTextRole})
                say(where + QStringLiteral(" cell"), model->index(row, column).data(role).toString());
        }
    }
}

inline void textsOf(const QWidget& widget, const QString& where, const TextVisitor& say) {
    say(where + QStringLiteral(" title"), widget.windowTitle());
    say(where + QStringLiteral(" tool tip"), widget.toolTip());
    say(where + QStringLiteral(" name"), widget.accessibleName());
    say(where + QStringLiteral(" description"), widget.accessibleDescription());
    for (const QAction* action : widget.actions())
        textsOf(*action, where, say);
    if (const auto* spoken = dynamic_cast<const SpokenControl*>(&widget))
        say(where + QStringLiteral(" value"), spoken->spokenValue());
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
        say(where, button->text());
    } else if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        say(where, label->text());
    } else if (const auto* box = qobject_cast<const QGroupBox*>(&widget)) {
        say(where, box->title());
    } else if (const auto* line = qobject_cast<const QLineEdit*>(&widget)) {
        say(where, line->text());
        say(where + QStringLiteral(" placeholder"), line->placeholderText());
    } else if (const auto* text = qobject_cast<const QTextEdit*>(&widget)) {
        say(where, text->toPlainText());
        say(where + QStringLiteral(" placeholder"), text->placeholderText());
    } else if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) {
        for (int at = 0; at < combo->count(); ++at)
            say(where, combo->itemText(at));
    } else if (const auto* tabs = qobject_cast<const QTabBar*>(&widget)) {
        for (int at = 0; at < tabs->count(); ++at)
            say(where, tabs->tabText(at));
    } else if (const auto* menu = qobject_cast<const QMenu*>(&widget)) {
        say(where, menu->title());
    } else if (const auto* view = qobject_cast<const QAbstractItemView*>(&widget)) {
        textsOf(*view, where, say);
    }
}

}  // namespace detail

/// Every text of the window: of its parts, seen or not yet, of their actions, items and headers, shown or spoken.
inline void visitTexts(const QWidget& window, const QString& name, const TextVisitor& say) {
    QList<const QWidget*> all{&window};
    for (const QWidget* child : window.findChildren<QWidget*>()) {
        // Other windows come by themselves.
        if (child->window() == &window) all << child;
    }
    for (const QWidget* one : all) {
        const QString where = name + QStringLiteral(": ") + QString::fromLatin1(one->metaObject()->className());
        detail::textsOf(*one, where, say);
    }
}

}  // namespace dravik::test
