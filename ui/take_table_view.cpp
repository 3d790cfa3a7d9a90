#include "ui/take_table_view.h"

#include "ui/colours.h"
#include "ui/list_looks.h"
#include "ui/shortcuts.h"

#include <QActionEvent>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

namespace dravik {
namespace {

/// Keys of the table, and those of the window that are its own while it has the keyboard.
constexpr std::array<std::pair<KeyId, TakeCommand>, 10> commandKeys = {{
    {KeyId::editCell, TakeCommand::edit},
    {KeyId::fillDown, TakeCommand::fillDown},
    {KeyId::copyColumn, TakeCommand::copyColumn},
    {KeyId::copyRows, TakeCommand::copyRows},
    {KeyId::pasteColumn, TakeCommand::paste},
    {KeyId::clearCells, TakeCommand::clear},
    {KeyId::toggleCircled, TakeCommand::toggleCircled},
    {KeyId::incrementTakes, TakeCommand::incrementTakes},
    {KeyId::find, TakeCommand::find},
    {KeyId::showAllTakes, TakeCommand::leaveFilter},
}};

/// A longer line is hard to read.
constexpr int widestNote = 700;

std::optional<TakeCommand> commandOf(const QKeyEvent& event) {
    for (const auto& [key, command] : commandKeys) {
        if (isKey(key, event)) return command;
    }
    return std::nullopt;
}

/// Does the key begin a text? Scenes, takes and timecodes begin with a digit; letters, signs and Space are the
/// transport's, which must answer while one walks through the takes.
bool types(const QKeyEvent& event) {
    const QString text = event.text();
    const bool command = event.modifiers().testFlag(Qt::ControlModifier) != event.modifiers().testFlag(Qt::AltModifier);
    return !text.isEmpty() && text.front().isDigit() && !command && !event.modifiers().testFlag(Qt::MetaModifier);
}

bool isEnter(const QKeyEvent& event) { return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter; }

TakeColumn columnOf(const QModelIndex& index) { return static_cast<TakeColumn>(index.column()); }

QFont scaled(QFont font, double by) {
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(font.pointSizeF() * by);
    } else {
        font.setPixelSize(static_cast<int>(font.pixelSize() * by));
    }
    return font;
}

}  // namespace

QString shortcutText(TakeCommand command) {
    for (const auto& [key, own] : commandKeys) {
        if (own == command) return keyText(key);
    }
    return {};
}

TakeTableView::TakeTableView(TakeTableModel& model, const Theme& theme, QWidget* parent)
    : QTreeView(parent), model_(model), theme_(theme), delegate_(new TakeDelegate(theme, this)) {
    setHeader(new ListHeader(metrics::cellPadding, this));
    setModel(&model);
    setItemDelegate(delegate_);
    setAccessibleName(tr("Takes"));
    setFrameShape(QFrame::NoFrame);
    setUniformRowHeights(true);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectRows);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    setEditTriggers(DoubleClicked | AnyKeyPressed | EditKeyPressed);
    setExpandsOnDoubleClick(false);
    setAllColumnsShowFocus(false);
    setTextElideMode(Qt::ElideRight);
    setTreePosition(0);
    setIndentation(16);
    setAcceptDrops(false);
    setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_Hover);

    header()->setSectionsClickable(true);
    header()->setSectionsMovable(true);
    header()->setFirstSectionMovable(true);
    header()->setStretchLastSection(false);
    header()->setSortIndicatorClearable(true);
    header()->setMinimumSectionSize(28);
    header()->setAccessibleName(tr("Columns of the takes"));
    header()->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header(), &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        auto* menu = new QMenu(this);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        addColumnActions(*menu);
        menu->popup(header()->mapToGlobal(at));
    });

    connect(delegate_, &TakeDelegate::editorOpened, this, [this] {
        editing_ = true;
        model_.setFrozen(true);
    });
    connect(delegate_, &TakeDelegate::editorClosed, this, &TakeTableView::onEditorClosed);
    connect(delegate_, &TakeDelegate::left, this, &TakeTableView::onEditorLeft);
    connect(&theme_, &Theme::changed, this, &TakeTableView::applyColours);
    keepPlaceDuringLayouts();
    applyColours();
}

void TakeTableView::applyColours() {
    setPalette(listPalette(theme_));
    viewport()->update();
}

void TakeTableView::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QList<int>& roles) {
    // The base class asks for the place of each cell, also of the thousands that are not on the screen.
    constexpr int rowsOfAScreen = 200;
    if (bottomRight.row() - topLeft.row() > rowsOfAScreen && !isEditing()) {
        viewport()->update();
        return;
    }
    QTreeView::dataChanged(topLeft, bottomRight, roles);
    // The mark of an edited row stands left of its first cell, which is all that would be drawn again.
    viewport()->update();
}

void TakeTableView::keepPlaceDuringLayouts() {
    connect(&model_, &QAbstractItemModel::layoutAboutToBeChanged, this, [this] {
        const QModelIndex top = indexAt(QPoint(0, 0));
        const bool scrolled = verticalScrollBar()->value() > 0;
        anchor_ = scrolled ? QPersistentModelIndex(top) : QPersistentModelIndex();
        anchorTop_ = scrolled ? visualRect(top).top() : 0;
    });
    connect(&model_, &QAbstractItemModel::layoutChanged, this, [this] {
        executeDelayedItemsLayout();
        if (!anchor_.isValid()) return;
        verticalScrollBar()->setValue(verticalScrollBar()->value() + visualRect(anchor_).top() - anchorTop_);
        anchor_ = QPersistentModelIndex();
    });
}

// --- Where things are ----------------------------------------------------------------------------------------------

std::vector<int> TakeTableView::selectedTakes() const {
    std::vector<bool> chosen(static_cast<std::size_t>(model_.rowCount()), false);
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        if (!range.isValid()) continue;
        if (range.parent().isValid()) {
            chosen[static_cast<std::size_t>(range.parent().row())] = true;
            continue;
        }
        for (int row = range.top(); row <= range.bottom(); ++row)
            chosen[static_cast<std::size_t>(row)] = true;
    }
    std::vector<int> takes;
    for (std::size_t row = 0; row < chosen.size(); ++row) {
        if (chosen[row]) takes.push_back(model_.sourceRow(model_.index(static_cast<int>(row), 0)));
    }
    return takes;
}

std::vector<TakeColumn> TakeTableView::visibleColumns() const {
    std::vector<TakeColumn> columns;
    for (int visual = 0; visual < header()->count(); ++visual) {
        const int logical = header()->logicalIndex(visual);
        if (!header()->isSectionHidden(logical)) columns.push_back(static_cast<TakeColumn>(logical));
    }
    return columns;
}

void TakeTableView::goTo(const QModelIndex& index) {
    if (!index.isValid()) return;
    const bool sameRow = index.siblingAtColumn(0) == currentIndex().siblingAtColumn(0);
    const bool keeps = sameRow && selectionModel()->isSelected(index);
    selectionModel()->setCurrentIndex(
        index, keeps ? QItemSelectionModel::NoUpdate : QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(index);
}

void TakeTableView::unfold(const QModelIndexList& sets) {
    if (sets.isEmpty()) return;
    // With a layout to come, unfolding a row does not move all rows below it.
    scheduleDelayedItemsLayout();
    for (const QModelIndex& set : sets)
        expand(set);
    executeDelayedItemsLayout();
}

QModelIndex TakeTableView::rowBeside(const QModelIndex& index, int step) const {
    const QModelIndex take = index.parent().isValid() ? index.parent() : index;
    return model_.index(take.row() + step, index.column());
}

QModelIndex TakeTableView::nextEditable(const QModelIndex& from, int step) const {
    const std::vector<TakeColumn> columns = visibleColumns();
    const auto count = static_cast<int>(columns.size());
    int at = static_cast<int>(std::find(columns.begin(), columns.end(), columnOf(from)) - columns.begin());
    for (int row = from.row(); row >= 0 && row < model_.rowCount();) {
        at += step;
        if (at < 0 || at >= count) {
            row += step;
            at = step > 0 ? -1 : count;
            continue;
        }
        const QModelIndex index = model_.index(row, static_cast<int>(columns[static_cast<std::size_t>(at)]));
        if (index.flags().testFlag(Qt::ItemIsEditable)) return index;
    }
    return {};
}

QModelIndex TakeTableView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    const QModelIndex current = currentIndex();
    if (!current.isValid() || (action != MoveLeft && action != MoveRight)) {
        return QTreeView::moveCursor(action, modifiers);
    }
    const bool onward = (action == MoveRight) != isRightToLeft();
    if (current.column() == 0 && model_.hasChildren(current) && isExpanded(current) != onward) {
        setExpanded(current, onward);
        return current;
    }
    if (current.column() == 0 && !onward && current.parent().isValid()) return current.parent();
    const std::vector<TakeColumn> columns = visibleColumns();
    const auto found = std::find(columns.begin(), columns.end(), columnOf(current));
    const auto at = (found - columns.begin()) + (onward ? 1 : -1);
    if (found == columns.end() || at < 0 || at >= static_cast<std::ptrdiff_t>(columns.size())) return current;
    return current.siblingAtColumn(static_cast<int>(columns[static_cast<std::size_t>(at)]));
}

QItemSelectionModel::SelectionFlags TakeTableView::selectionCommand(const QModelIndex& index,
                                                                    const QEvent* event) const {
    // Going along a row changes the cell that edits go to, not what is selected.
    const bool key = event != nullptr && event->type() == QEvent::KeyPress;
    if (key && index.isValid() && index.siblingAtColumn(0) == currentIndex().siblingAtColumn(0) &&
        selectionModel()->isSelected(index)) {
        return QItemSelectionModel::NoUpdate;
    }
    return QTreeView::selectionCommand(index, event);
}

// --- Keys ----------------------------------------------------------------------------------------------------------

bool TakeTableView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = static_cast<QKeyEvent&>(*event);
        const QModelIndex current = currentIndex();
        const bool flag = isKey(KeyId::switchFlag, key) && current.isValid() && isFlagColumn(columnOf(current));
        const bool edits = types(key) && current.flags().testFlag(Qt::ItemIsEditable);
        const std::optional<TakeCommand> command = commandOf(key);
        const bool escapes = command == TakeCommand::leaveFilter && model_.filter().isEmpty();
        if (flag || edits || isEnter(key) || (command && !escapes)) {
            event->accept();
            return true;
        }
    }
    return QTreeView::event(event);
}

void TakeTableView::keyPressEvent(QKeyEvent* event) {
    const QModelIndex current = currentIndex();
    if (const std::optional<TakeCommand> command = commandOf(*event)) {
        if (*command == TakeCommand::leaveFilter && model_.filter().isEmpty()) {
            event->ignore();
        } else {
            emit asked(*command);
        }
    } else if (isEnter(*event)) {
        goTo(rowBeside(current, event->modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1));
    } else if (isKey(KeyId::switchFlag, *event)) {
        if (current.isValid() && isFlagColumn(columnOf(current))) {
            emit flagAsked(current);
        } else {
            event->ignore();
        }
    } else if (types(*event)) {
        if (!current.isValid() || !isTextColumn(columnOf(current))) {
            event->ignore();
        } else if (current.flags().testFlag(Qt::ItemIsEditable)) {
            scrollTo(current);
            edit(current, AnyKeyPressed, event);
        } else {
            emit refused(current);
        }
    } else if ((isKey(KeyId::firstTake, *event) || isKey(KeyId::lastTake, *event)) && model_.rowCount() > 0) {
        // Selects the row as well, as a spreadsheet does.
        const bool first = isKey(KeyId::firstTake, *event);
        goTo(model_.index(first ? 0 : model_.rowCount() - 1, first || !current.isValid() ? 0 : current.column()));
    } else {
        QTreeView::keyPressEvent(event);
    }
}

// --- Editing -------------------------------------------------------------------------------------------------------

void TakeTableView::editCell(const QModelIndex& index) {
    if (!index.isValid()) return;
    if (!index.flags().testFlag(Qt::ItemIsEditable)) {
        emit refused(index);
        return;
    }
    goTo(index);
    QTreeView::edit(index);
}

void TakeTableView::commitEditing() {
    if (editing_) setFocus();
}

void TakeTableView::onEditorLeft(QWidget* editor, const QModelIndex& index, CellMove move) {
    const QPersistentModelIndex from(index);
    closeEditor(editor, QAbstractItemDelegate::NoHint);
    if (!from.isValid()) return;
    switch (move) {
        case CellMove::stay:
            break;
        case CellMove::down:
        case CellMove::up:
            goTo(rowBeside(from, move == CellMove::down ? 1 : -1));
            break;
        case CellMove::next:
        case CellMove::previous:
            if (const QModelIndex next = nextEditable(from, move == CellMove::next ? 1 : -1); next.isValid()) {
                editCell(next);
            }
            break;
    }
}

void TakeTableView::onEditorClosed() {
    editing_ = false;
    // Not from within the closing itself, and not when Tab has opened the next cell.
    QTimer::singleShot(0, this, [this] {
        if (editing_) return;
        // A row that went away took its editor with it.
        if (state() == EditingState) setState(NoState);
        model_.setFrozen(false);
        emit editingEnded();
    });
}

// --- Mouse ---------------------------------------------------------------------------------------------------------

QModelIndex TakeTableView::flagAt(const QMouseEvent& event) const {
    if (event.button() != Qt::LeftButton || event.modifiers() != Qt::NoModifier) return {};
    const QPoint at = event.position().toPoint();
    const QModelIndex index = indexAt(at);
    constexpr int reach = 12;
    const bool onMark = index.isValid() && !index.parent().isValid() && isFlagColumn(columnOf(index)) &&
                        std::abs(visualRect(index).center().x() - at.x()) <= reach;
    return onMark ? index : QModelIndex();
}

void TakeTableView::mousePressEvent(QMouseEvent* event) {
    const QPersistentModelIndex flag(flagAt(*event));
    if (!flag.isValid()) {
        QTreeView::mousePressEvent(event);
        return;
    }
    clickDone_ = true;
    setFocus(Qt::MouseFocusReason);
    // In a selection of several rows the click is for all of them.
    if (selectionModel()->isSelected(flag)) {
        selectionModel()->setCurrentIndex(flag, QItemSelectionModel::NoUpdate);
    } else {
        goTo(flag);
    }
    emit flagAsked(flag);
}

void TakeTableView::mouseMoveEvent(QMouseEvent* event) {
    if (!clickDone_) QTreeView::mouseMoveEvent(event);
}

void TakeTableView::mouseReleaseEvent(QMouseEvent* event) {
    if (!std::exchange(clickDone_, false)) QTreeView::mouseReleaseEvent(event);
}

void TakeTableView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (flagAt(*event).isValid()) {
        mousePressEvent(event);
        return;
    }
    const QModelIndex index = indexAt(event->position().toPoint());
    if (index.isValid() && event->button() == Qt::LeftButton && isTextColumn(columnOf(index)) &&
        !index.flags().testFlag(Qt::ItemIsEditable)) {
        emit refused(index);
    }
    QTreeView::mouseDoubleClickEvent(event);
}

void TakeTableView::contextMenuEvent(QContextMenuEvent* event) {
    const bool keyboard = event->reason() == QContextMenuEvent::Keyboard && currentIndex().isValid();
    emit menuAsked(keyboard ? viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft()) : event->globalPos());
    event->accept();
}

void TakeTableView::addColumnActions(QMenu& menu) {
    for (int column = 0; column < takeColumnCount; ++column) {
        QAction* action = menu.addAction(columnTitle(static_cast<TakeColumn>(column)));
        action->setCheckable(true);
        action->setChecked(!isColumnHidden(column));
        action->setEnabled(column != 0);  // without names there is nothing to go by
        connect(action, &QAction::toggled, this, [this, column](bool shown) { setColumnHidden(column, !shown); });
    }
}

// --- Columns -------------------------------------------------------------------------------------------------------

void TakeTableView::giveRoomToNotes(int leastWidth) {
    givesRoom_ = true;
    noteWidth_ = leastWidth;
    giveRoom();
    connect(header(), &QHeaderView::sectionResized, this, [this](int, int before, int now) {
        if (before == 0 || now == 0) {
            giveRoom();  // a column was shown or hidden
        } else if (!givingRoom_) {
            givesRoom_ = false;
        }
    });
}

void TakeTableView::giveRoom() {
    constexpr auto note = static_cast<int>(TakeColumn::note);
    if (!givesRoom_ || givingRoom_ || isColumnHidden(note)) return;
    const int others = header()->length() - columnWidth(note);
    givingRoom_ = true;
    setColumnWidth(note, std::clamp(viewport()->width() - others, noteWidth_, widestNote));
    givingRoom_ = false;
}

void TakeTableView::resizeEvent(QResizeEvent* event) {
    QTreeView::resizeEvent(event);
    giveRoom();
}

// --- Painting ------------------------------------------------------------------------------------------------------

void TakeTableView::setPlaceholder(const QString& text, const QString& hint) {
    if (text == placeholder_ && hint == placeholderHint_) return;
    placeholder_ = text;
    placeholderHint_ = hint;
    setAccessibleDescription(model_.rowCount() == 0 ? text + QLatin1Char(' ') + hint : QString());
    viewport()->update();
}

void TakeTableView::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    if (model_.rowCount() > 0 || placeholder_.isEmpty()) return;
    QPainter painter(viewport());
    const QRect area = viewport()->rect().adjusted(24, 0, -24, 0);
    const QFont large = scaled(font(), 1.15);
    const int line = QFontMetrics(large).height();
    painter.setFont(large);
    painter.setPen(palette().color(QPalette::Text));
    const int middle = area.center().y();
    painter.drawText(QRect(area.left(), middle - line - 4, area.width(), line), Qt::AlignCenter, placeholder_);
    painter.setFont(font());
    painter.setPen(theme_.dimmed());
    painter.drawText(QRect(area.left(), middle + 4, area.width(), 3 * line), Qt::AlignHCenter | Qt::TextWordWrap,
                     placeholderHint_);
}

void TakeTableView::drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QRect row(0, option.rect.y(), viewport()->width(), option.rect.height());
    const bool member = index.parent().isValid();
    const bool loaded = !member && delegate_->isLoaded && delegate_->isLoaded(index);
    if (selectionModel()->isSelected(index)) {
        // Also where there are no columns any more.
        const auto group = option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
        painter->fillRect(row, palette().color(group, QPalette::Highlight));
    } else if (loaded) {
        painter->fillRect(row, mixed(palette().color(QPalette::Base), theme_.accent(), 0.1));
    } else if (!member && index.row() % 2 != 0) {
        painter->fillRect(row, palette().color(QPalette::AlternateBase));
    }
    QTreeView::drawRow(painter, option, index);
    if (index.data(TakeTableModel::EditedRowRole).toBool()) {
        const QRect mark(0, row.y(), metrics::editMark, row.height());
        painter->fillRect(QStyle::visualRect(layoutDirection(), row, mark), theme_.pending());
    }
}

}  // namespace dravik
