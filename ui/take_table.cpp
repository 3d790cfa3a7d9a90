#include "ui/take_table.h"

#include "app/text.h"
#include "ui/take_table_model.h"
#include "ui/take_table_view.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QVBoxLayout>
#include <array>
#include <chrono>

namespace dravik {
namespace {

constexpr QLatin1String savingRuns("Wait until saving is done, or cancel it.");
constexpr QLatin1String headerKey("takeTableHeader");
constexpr auto headerSettles = std::chrono::milliseconds(300);
/// Short enough to follow the typing.
constexpr auto filterWaits = std::chrono::milliseconds(60);

/// What a column is wide enough for at first.
constexpr std::array<const char*, takeColumnCount> widthSamples = {"SC0123_T004_recorder-A1",
                                                                   "Circled",
                                                                   "Wild",
                                                                   "00123A/00",
                                                                   "0000",
                                                                   "240101_R1",
                                                                   "A project's name",
                                                                   "A note of a few words here",
                                                                   "00:00:00:00.",
                                                                   "00:00:00:00.",
                                                                   "00:00:00.000",
                                                                   "29.97 DF",
                                                                   "Tracks",
                                                                   "Samplerate",
                                                                   "Bits.",
                                                                   "Format",
                                                                   "000.0 MB",
                                                                   "2026-00-00."};

}  // namespace

TakeTable::TakeTable(ContentView& content, UserDefaults& settings, const Theme& theme, QWidget* parent)
    : QWidget(parent),
      content_(content),
      settings_(settings),
      model_(new TakeTableModel(content.rows(), this)),
      view_(new TakeTableView(*model_, theme, this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    makeFilterRow(theme);
    column->addWidget(view_, 1);
    setFocusProxy(view_);

    for (QTimer* timer : {&load_, &header_, &filterDelay_})
        timer->setSingleShot(true);
    load_.setInterval(0);
    header_.setInterval(headerSettles);
    filterDelay_.setInterval(filterWaits);
    connect(&load_, &QTimer::timeout, this, &TakeTable::loadCurrentTake);
    connect(&header_, &QTimer::timeout, this, &TakeTable::storeHeader);

    restoreHeader();
    connectView();
    connectContent();
    unfoldAsBefore();
    showCount();
    showPlaceholder();
    showLoadedTake();
}

TakeTable::~TakeTable() {
    if (header_.isActive()) storeHeader();
    // The parts outlive this one by a moment, and an open editor speaks when it loses the focus.
    const std::initializer_list<QObject*> speakers = {
        view_, &view_->delegate(), view_->selectionModel(), view_->header(), model_, filter_};
    for (QObject* speaker : speakers)
        speaker->disconnect(this);
}

void TakeTable::makeFilterRow(const Theme& theme) {
    auto* row = new QWidget(this);
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(6, 4, 10, 4);
    line->setSpacing(10);
    filter_ = new QLineEdit(row);
    filter_->setPlaceholderText(QStringLiteral("Filter takes"));
    filter_->setAccessibleName(QStringLiteral("Filter takes"));
    filter_->setToolTip(
        QStringLiteral("Show only takes that hold all of these words (%1)").arg(shortcutText(TakeCommand::find)));
    filter_->setClearButtonEnabled(true);
    filter_->setMaximumWidth(360);
    filter_->setAcceptDrops(false);
    filter_->installEventFilter(this);
    QAction* icon = filter_->addAction(theme.icon(QStringLiteral("search")), QLineEdit::LeadingPosition);
    connect(&theme, &Theme::changed, icon, [icon, &theme] { icon->setIcon(theme.icon(QStringLiteral("search"))); });
    count_ = new QLabel(row);
    count_->setAccessibleName(QStringLiteral("Number of takes shown"));
    const auto dim = [this, &theme] {
        QPalette palette = QApplication::palette();
        palette.setColor(QPalette::WindowText, theme.dimmed());
        count_->setPalette(palette);
    };
    dim();
    connect(&theme, &Theme::changed, count_, dim);
    line->addWidget(filter_, 1);
    line->addStretch(1);
    line->addWidget(count_);
    layout()->addWidget(row);

    connect(filter_, &QLineEdit::textChanged, this,
            [this](const QString& text) { text.isEmpty() ? filterDelay_.start(0) : filterDelay_.start(filterWaits); });
    connect(&filterDelay_, &QTimer::timeout, this, [this] {
        view_->commitEditing();
        model_->setFilter(filter_->text());
        if (!view_->currentIndex().isValid()) showLoadedTake();
        view_->scrollTo(view_->currentIndex());
    });
}

void TakeTable::connectView() {
    TakeDelegate& delegate = view_->delegate();
    delegate.check = [this](const QModelIndex& index, const QString& text) {
        const int row = model_->sourceRow(index);
        if (content_.sauvegardeEnCours()) return QString(savingRuns);
        return row < 0 ? QString() : whyNot(model_->groupe(row), static_cast<TakeColumn>(index.column()), text);
    };
    delegate.isLoaded = [this](const QModelIndex& index) {
        return !index.parent().isValid() && model_->sourceRow(index) == content_.selectedRow();
    };
    connect(&delegate, &TakeDelegate::committed, this, &TakeTable::commit);
    connect(&delegate, &TakeDelegate::dropped, this, [this](const QString& why) {
        emit content_.notice(QStringLiteral("%1 The value is as it was.")
                                 .arg(why.endsWith(QLatin1Char('.')) ? why : why + QLatin1Char('.')));
    });
    connect(&delegate, &TakeDelegate::editorOpened, this, [this] { content_.setEnSaisie(true); });
    connect(&delegate, &TakeDelegate::editorClosed, this, [this] { content_.setEnSaisie(false); });

    connect(view_, &TakeTableView::asked, this, &TakeTable::run);
    connect(view_, &TakeTableView::menuAsked, this, &TakeTable::showMenu);
    connect(view_, &TakeTableView::flagAsked, this, [this](const QModelIndex& index) {
        toggle(static_cast<TakeColumn>(index.column()), model_->sourceRow(index));
    });
    connect(view_, &TakeTableView::refused, this, [this](const QModelIndex& index) {
        const int row = model_->sourceRow(index);
        if (row < 0 || !mayEdit()) return;
        QString why = whyReadOnly(content_.rows(), row);
        if (why.isEmpty() && index.parent().isValid()) {
            why = QStringLiteral("The files of a set are edited together, in the row of the set.");
        }
        const auto column = static_cast<TakeColumn>(index.column());
        if (why.isEmpty() && isTextColumn(column) && content_.rows().canEdit(row)) {
            why = QStringLiteral("This text is too long to be edited here.");
        }
        if (!why.isEmpty()) emit content_.notice(why);
    });
    connect(view_, &TakeTableView::editingEnded, this, [this] { load_.start(); });

    // Expanded rows stay expanded when the folder is read again.
    connect(view_, &QTreeView::expanded, this, [this](const QModelIndex& index) {
        if (const int row = model_->sourceRow(index); row >= 0) content_.rows().setDeplie(row, true);
    });
    connect(view_, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
        if (const int row = model_->sourceRow(index); row >= 0) content_.rows().setDeplie(row, false);
    });

    const QItemSelectionModel* selection = view_->selectionModel();
    connect(selection, &QItemSelectionModel::selectionChanged, this, [this] {
        if (!showing_) load_.start();
        emit selectionChanged();
    });
    connect(selection, &QItemSelectionModel::currentRowChanged, this, [this] {
        if (!showing_) load_.start();
    });
    connect(model_, &QAbstractItemModel::layoutAboutToBeChanged, this,
            [this] { hadSelection_ = view_->selectionModel()->hasSelection(); });
    connect(model_, &QAbstractItemModel::layoutChanged, this, [this] {
        // Qt gives up a selection of everything when it is not everything any more.
        const QModelIndex current = view_->currentIndex();
        if (hadSelection_ && current.isValid() && !view_->selectionModel()->hasSelection()) {
            view_->selectionModel()->select(current, QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
        unfoldAsBefore();
        showCount();
        showPlaceholder();
        emit selectionChanged();
    });

    QHeaderView* header = view_->header();
    for (const auto changed : {&QHeaderView::sectionResized, &QHeaderView::sectionMoved}) {
        connect(header, changed, this, [this] { header_.start(); });
    }
    connect(header, &QHeaderView::sortIndicatorChanged, this, [this] {
        header_.start();
        if (view_->currentIndex().isValid()) view_->scrollTo(view_->currentIndex());
    });
}

void TakeTable::connectContent() {
    connect(&content_, &ContentView::selectionChanged, this, [this] {
        if (load_.isActive() && !view_->isEditing() && content_.selectedRow() >= 0) {
            // The user has gone on to another row in the meantime.
            load_.stop();
            loadCurrentTake();
        }
        showLoadedTake();
        view_->viewport()->update();
        emit selectionChanged();
    });
    connect(&content_, &ContentView::sauvegardeEnCoursChanged, this, [this] { view_->viewport()->update(); });
    connect(&content_, &ContentView::folderChanged, this, [this] {
        readingCancelled_ = false;
        filter_->clear();
        view_->scrollToTop();
        showPlaceholder();
    });
    connect(&content_.listing(), &FolderListing::finished, this, [this](bool cancelled) {
        readingCancelled_ = cancelled;
        showPlaceholder();
    });
}

// --- The header ----------------------------------------------------------------------------------------------------

void TakeTable::restoreHeader() {
    QHeaderView* header = view_->header();
    const QFontMetrics metrics(view_->font());
    constexpr int room = 18;  // the cell's margins and the arrow of the order
    for (int column = 0; column < takeColumnCount; ++column) {
        const QString sample = QString::fromUtf8(widthSamples[static_cast<std::size_t>(column)]);
        header->resizeSection(column, metrics.horizontalAdvance(sample) + room + (column == 0 ? 16 : 0));
    }
    header->setSortIndicator(-1, Qt::AscendingOrder);
    header->restoreState(settings_.stored(headerKey).toByteArray());
    // Whatever was stored: these hold in this version.
    view_->setColumnHidden(0, false);
    header->setSectionsMovable(true);
    header->setSortIndicatorClearable(true);
    header->setStretchLastSection(false);
    view_->setSortingEnabled(true);
}

void TakeTable::storeHeader() {
    header_.stop();
    settings_.store(headerKey, view_->header()->saveState());
}

// --- What is shown -------------------------------------------------------------------------------------------------

std::vector<int> TakeTable::selectedRows() const {
    std::vector<int> rows = view_->selectedTakes();
    if (rows.empty() && content_.selectedRow() >= 0) rows.push_back(content_.selectedRow());
    return rows;
}

int TakeTable::visibleRows() const { return model_->rowCount(); }

void TakeTable::showCount() {
    const auto all = content_.rows().groupesTableau().size();
    const QLocale locale(QLocale::English);
    QString text;
    if (!model_->filter().isEmpty()) {
        text = QStringLiteral("%1 of %2").arg(locale.toString(model_->rowCount()), locale.toString(all));
    } else if (all > 0) {
        text = counted(all, QStringLiteral("take"));
    }
    count_->setText(text);
}

void TakeTable::showPlaceholder() {
    if (model_->rowCount() > 0) {
        view_->setPlaceholder({}, {});
    } else if (!content_.rows().groupesTableau().empty()) {
        view_->setPlaceholder(QStringLiteral("No take matches \u201c%1\u201d").arg(model_->filter().simplified()),
                              QStringLiteral("Press Escape to show all takes."));
    } else if (content_.folderLabel().isEmpty()) {
        view_->setPlaceholder(QStringLiteral("Open a folder of recordings: drop it here or press Ctrl+O"), {});
    } else if (content_.listing().isReading()) {
        view_->setPlaceholder(QStringLiteral("Reading the folder..."), {});
    } else if (readingCancelled_) {
        view_->setPlaceholder(QStringLiteral("Reading was cancelled"), QStringLiteral("Reload the folder to go on."));
    } else {
        view_->setPlaceholder(QStringLiteral("There are no audio files in this folder"),
                              QStringLiteral("Its sub-folders are not looked through: choose one in the browser."));
    }
}

void TakeTable::unfoldAsBefore() {
    const std::vector<RowState>& rows = content_.rows().groupesTableau();
    QModelIndexList folded;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (!rows[row].groupe.estDeplie) continue;
        const QModelIndex index = model_->indexOfRow(static_cast<int>(row));
        if (index.isValid() && !view_->isExpanded(index)) folded << index;
    }
    view_->unfold(folded);
}

void TakeTable::showLoadedTake() {
    const int row = content_.selectedRow();
    const QModelIndex current = view_->currentIndex();
    if (row < 0 || view_->isEditing() || (model_->sourceRow(current) == row && view_->selectionModel()->hasSelection()))
        return;
    const QModelIndex index = model_->indexOfRow(row, std::max(0, current.column()));
    if (!index.isValid()) return;  // the filter hides it
    showing_ = true;
    view_->goTo(index);
    showing_ = false;
}

void TakeTable::loadCurrentTake() {
    if (view_->isEditing()) return;  // once the editing has ended
    const QModelIndex current = view_->currentIndex();
    if (!current.isValid() || !view_->selectionModel()->isSelected(current)) return;
    content_.selectionnerLigne(model_->sourceRow(current));
}

// --- Commands ------------------------------------------------------------------------------------------------------

bool TakeTable::mayEdit() {
    if (!content_.sauvegardeEnCours()) return !view_->isEditing();
    emit content_.notice(savingRuns);
    return false;
}

std::optional<TakeColumn> TakeTable::currentColumn() const {
    const QModelIndex current = view_->currentIndex();
    if (!current.isValid()) return std::nullopt;
    return static_cast<TakeColumn>(current.column());
}

void TakeTable::run(TakeCommand command) {
    switch (command) {
        case TakeCommand::edit:
            return editCurrentCell();
        case TakeCommand::fillDown:
            return fillDown();
        case TakeCommand::copyColumn:
            return copy();
        case TakeCommand::copyRows:
            return copyRows();
        case TakeCommand::paste:
            return paste();
        case TakeCommand::clear:
            return clearCells();
        case TakeCommand::toggleCircled:
            return toggleCircled();
        case TakeCommand::toggleWild:
            return toggleWild();
        case TakeCommand::incrementTakes:
            return incrementTakes();
        case TakeCommand::numberTakes:
            return numberTakes();
        case TakeCommand::find:
            return focusFilter();
        case TakeCommand::leaveFilter:
            return filter_->clear();
    }
}

void TakeTable::tell(const TableEditResult& result, TakeColumn column) {
    QStringList parts;
    if (result.readOnly > 0) {
        parts << QStringLiteral("%1 left out: changes cannot be saved to their format.")
                     .arg(counted(static_cast<std::size_t>(result.readOnly), QStringLiteral("take")));
    }
    if (result.refused > 0) {
        parts << QStringLiteral("%1 left as it was: the value is not valid for %2.")
                     .arg(counted(static_cast<std::size_t>(result.refused), QStringLiteral("take")),
                          columnTitle(column));
    }
    if (!parts.isEmpty()) emit content_.notice(parts.join(QLatin1Char(' ')));
}

void TakeTable::commit(const QModelIndex& index, const QString& text, bool toAll) {
    const int row = model_->sourceRow(index);
    const auto column = static_cast<TakeColumn>(index.column());
    const std::optional<RowField> field = fieldOf(column);
    if (row < 0 || !field) return;
    if (content_.sauvegardeEnCours()) {
        emit content_.notice(savingRuns);
        return;
    }
    std::vector<int> rows = {row};
    if (toAll && view_->selectionModel()->isSelected(index)) rows = view_->selectedTakes();
    tell(setField(content_.rows(), rows, *field, text), column);
}

void TakeTable::editCurrentCell() {
    const QModelIndex current = view_->currentIndex();
    if (!mayEdit() || !current.isValid()) return;
    view_->setFocus();
    if (isFlagColumn(static_cast<TakeColumn>(current.column()))) {
        toggle(static_cast<TakeColumn>(current.column()), model_->sourceRow(current));
    } else {
        view_->editCell(current);
    }
}

void TakeTable::fillDown() {
    const std::optional<TakeColumn> column = currentColumn();
    if (!column || !mayEdit()) return;
    const std::vector<int> rows = selectedRows();
    if (!fieldOf(*column)) {
        emit content_.notice(QStringLiteral("%1 cannot be edited.").arg(columnTitle(*column)));
    } else if (rows.size() < 2) {
        emit content_.notice(QStringLiteral("Select the rows to fill; the first one gives the value."));
    } else if (isMixedCell(model_->groupe(rows.front()), *column)) {
        emit content_.notice(QStringLiteral("The files of the first row do not agree: there is no value to fill."));
    } else {
        tell(dravik::fillDown(content_.rows(), rows, *fieldOf(*column)), *column);
    }
}

void TakeTable::incrementTakes() {
    if (mayEdit()) tell(dravik::incrementTakes(content_.rows(), selectedRows()), TakeColumn::take);
}

void TakeTable::numberTakes() {
    if (!mayEdit()) return;
    const std::vector<int> rows = selectedRows();
    if (rows.size() < 2) {
        emit content_.notice(QStringLiteral("Select the rows to number; the first one keeps its take."));
    } else {
        tell(dravik::numberTakes(content_.rows(), rows), TakeColumn::take);
    }
}

void TakeTable::copy() {
    const std::optional<TakeColumn> column = currentColumn();
    if (!column) return;
    QStringList lines;
    for (const int row : selectedRows())
        lines << spreadsheetLine({toQt(clipboardText(model_->groupe(row), *column))});
    if (!lines.isEmpty()) QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void TakeTable::copyRows() {
    QStringList lines;
    const std::vector<TakeColumn> columns = view_->visibleColumns();
    for (const int row : selectedRows()) {
        QStringList cells;
        for (const TakeColumn column : columns)
            cells << toQt(clipboardText(model_->groupe(row), column));
        lines << spreadsheetLine(cells);
    }
    if (!lines.isEmpty()) QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void TakeTable::paste() {
    const std::optional<TakeColumn> column = currentColumn();
    if (!column || !mayEdit()) return;
    const QStringList lines = firstSpreadsheetColumn(QApplication::clipboard()->text());
    if (lines.isEmpty()) return;
    if (!fieldOf(*column)) {
        emit content_.notice(QStringLiteral("%1 cannot be edited.").arg(columnTitle(*column)));
        return;
    }
    std::vector<int> rows = selectedRows();
    if (rows.size() == 1) {
        // From the one row downwards, as far as there are lines.
        const int first = model_->indexOfRow(rows.front()).row();
        const int last = std::min(model_->rowCount() - 1, first + static_cast<int>(lines.size()) - 1);
        for (int at = first + 1; first >= 0 && at <= last; ++at)
            rows.push_back(model_->sourceRow(model_->index(at, 0)));
    }
    tell(dravik::paste(content_.rows(), rows, *fieldOf(*column), lines.mid(0, static_cast<qsizetype>(rows.size()))),
         *column);
}

void TakeTable::clearCells() {
    const std::optional<TakeColumn> column = currentColumn();
    if (!column || !fieldOf(*column) || !mayEdit()) return;
    const std::vector<int> rows = selectedRows();
    tell(isFlagColumn(*column) ? setFlagField(content_.rows(), rows, *fieldOf(*column), false)
                               : setField(content_.rows(), rows, *fieldOf(*column), QString()),
         *column);
}

void TakeTable::toggle(TakeColumn column, int deciding) {
    if (deciding < 0 || !mayEdit()) return;
    const GroupeFichiers& groupe = model_->groupe(deciding);
    tell(setFlagField(content_.rows(), selectedRows(), *fieldOf(column), !flagOf(groupe, column)), column);
}

void TakeTable::toggleCircled() {
    const std::vector<int> rows = selectedRows();
    if (!rows.empty()) toggle(TakeColumn::circled, rows.front());
}

void TakeTable::toggleWild() {
    const std::vector<int> rows = selectedRows();
    if (!rows.empty()) toggle(TakeColumn::wild, rows.front());
}

void TakeTable::focusFilter() {
    filter_->setFocus(Qt::ShortcutFocusReason);
    filter_->selectAll();
}

void TakeTable::focusTable() {
    view_->setFocus(Qt::ShortcutFocusReason);
    if (!view_->selectionModel()->hasSelection()) {
        const QModelIndex current = view_->currentIndex();
        view_->goTo(current.isValid() ? current : model_->index(0, 0));
    }
}

void TakeTable::commitEditing() { view_->commitEditing(); }

void TakeTable::showMenu(const QPoint& globalPosition) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const std::optional<TakeColumn> column = currentColumn();
    const std::vector<int> rows = selectedRows();
    const bool any = column && !rows.empty();
    const bool writable =
        any && std::any_of(rows.begin(), rows.end(), [this](int row) { return content_.rows().canEdit(row); });
    const bool field = writable && fieldOf(*column);
    const bool several = rows.size() > 1;
    const QString title = column ? columnTitle(*column) : QString();
    // The keys are shown, not registered: the table has them already.
    const auto add = [&](const QString& text, TakeCommand command, bool enabled) {
        const QString keys = shortcutText(command);
        QAction* action = menu->addAction(keys.isEmpty() ? text : text + QLatin1Char('\t') + keys);
        action->setEnabled(enabled);
        connect(action, &QAction::triggered, this, [this, command] { run(command); });
    };
    add(QStringLiteral("Edit %1").arg(title), TakeCommand::edit, field);
    const bool clears = field && whyNot(model_->groupe(rows.front()), *column, {}).isEmpty();
    add(QStringLiteral("Clear %1").arg(title), TakeCommand::clear, clears);
    menu->addSeparator();
    add(QStringLiteral("Copy %1").arg(title), TakeCommand::copyColumn, any);
    add(QStringLiteral("Copy Rows"), TakeCommand::copyRows, any);
    add(QStringLiteral("Paste into %1").arg(title), TakeCommand::paste,
        field && !QApplication::clipboard()->text().isEmpty());
    menu->addSeparator();
    add(QStringLiteral("Fill Down %1").arg(title), TakeCommand::fillDown, field && several);
    add(QStringLiteral("Increment Take"), TakeCommand::incrementTakes, writable);
    add(QStringLiteral("Number Takes"), TakeCommand::numberTakes, writable && several);
    menu->addSeparator();
    add(QStringLiteral("Toggle Circled"), TakeCommand::toggleCircled, writable);
    add(QStringLiteral("Toggle Wild"), TakeCommand::toggleWild, writable);
    menu->addSeparator();
    if (column) {
        connect(menu->addAction(QStringLiteral("Sort by %1").arg(title)), &QAction::triggered, this, [this, column] {
            const QHeaderView& header = *view_->header();
            const auto section = static_cast<int>(*column);
            const bool ascending =
                header.sortIndicatorSection() == section && header.sortIndicatorOrder() == Qt::AscendingOrder;
            view_->sortByColumn(section, ascending ? Qt::DescendingOrder : Qt::AscendingOrder);
        });
    }
    view_->addColumnActions(*menu->addMenu(QStringLiteral("Columns")));
    menu->popup(globalPosition);
}

bool TakeTable::eventFilter(QObject* watched, QEvent* event) {
    if (watched != filter_) return QWidget::eventFilter(watched, event);
    if (event->type() == QEvent::FocusIn) {
        content_.setEnSaisie(true);
        filterColumn_ = std::max(0, view_->currentIndex().column());
    }
    if (event->type() == QEvent::FocusOut) content_.setEnSaisie(false);
    const bool override = event->type() == QEvent::ShortcutOverride;
    if (override || event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        const bool leaves =
            key == Qt::Key_Escape || key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter;
        if (leaves && override) {
            event->accept();
            return true;
        }
        if (leaves) {
            if (key == Qt::Key_Escape) filter_->clear();
            // What was typed holds before the table is looked at.
            filterDelay_.stop();
            model_->setFilter(filter_->text());
            if (!view_->currentIndex().isValid()) showLoadedTake();
            // Back in the column that was left, also when the filter has taken its row away.
            const QModelIndex current = view_->currentIndex();
            view_->goTo(current.isValid() ? current.siblingAtColumn(filterColumn_) : model_->index(0, filterColumn_));
            focusTable();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace dravik
