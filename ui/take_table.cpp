#include "ui/take_table.h"

#include "app/text.h"
#include "ui/list_looks.h"
#include "ui/shortcuts.h"
#include "ui/take_names.h"
#include "ui/take_table_model.h"
#include "ui/take_table_view.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QVBoxLayout>
#include <array>
#include <chrono>

namespace dravik {
namespace {

constexpr QLatin1String headerKey("takeTableHeader");
constexpr QLatin1String notesKey("takeTableNotesTakeRoom");
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
                                                                   "3 of 4 × WAV",
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
    // The header and three rows, whatever else wants room.
    view_->setMinimumHeight(metrics::headerHeight + 3 * metrics::rowHeight +
                            view_->horizontalScrollBar()->sizeHint().height());

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
    stopListeningToChildren(*this);
}

void TakeTable::makeFilterRow(const Theme& theme) {
    auto* row = new QWidget(this);
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(6, 4, 10, 4);
    line->setSpacing(10);
    filter_ = new QLineEdit(row);
    filter_->setPlaceholderText(tr("Filter takes"));
    filter_->setAccessibleName(tr("Filter takes"));
    filter_->setToolTip(tr("Show only takes that hold all of these words (%1)").arg(shortcutText(TakeCommand::find)));
    filter_->setClearButtonEnabled(true);
    filter_->setMaximumWidth(360);
    filter_->setAcceptDrops(false);
    filter_->installEventFilter(this);
    QAction* icon = filter_->addAction(theme.icon(QStringLiteral("search")), QLineEdit::LeadingPosition);
    connect(&theme, &Theme::changed, icon, [icon, &theme] { icon->setIcon(theme.icon(QStringLiteral("search"))); });
    count_ = new QLabel(row);
    count_->setAccessibleName(tr("Number of takes shown"));
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
        if (content_.sauvegardeEnCours()) return savingRuns();
        if (row < 0) return QString();
        const auto column = static_cast<TakeColumn>(index.column());
        const QString why = whyNot(model_->groupe(row), column, text);
        return why.isEmpty() && column == TakeColumn::name ? whyNotNames(content_.rows(), {{row, text}}) : why;
    };
    delegate.isLoaded = [this](const QModelIndex& index) {
        return !index.parent().isValid() && model_->sourceRow(index) == content_.selectedRow();
    };
    connect(&delegate, &TakeDelegate::committed, this, &TakeTable::commit);
    connect(&delegate, &TakeDelegate::dropped, this, [this](const QString& why) {
        emit content_.notice(
            tr("%1 The value is as it was.").arg(why.endsWith(QLatin1Char('.')) ? why : why + QLatin1Char('.')));
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
            why = tr("The files of a set are edited together, in the row of the set.");
        }
        const auto column = static_cast<TakeColumn>(index.column());
        if (why.isEmpty() && isTextColumn(column) && content_.rows().canEdit(row)) {
            why = tr("This text is too long to be edited here.");
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
    const TakeRows& rows = content_.rows();
    connect(&rows, &TakeRows::rowsChanged, this, [this](const std::vector<int>& changed) { lastChange_ = changed; });
    connect(&rows, &TakeRows::rowsReset, this, [this] { lastChange_.clear(); });
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
    connect(&content_, &ContentView::rowsToSelect, this, &TakeTable::selectRows);
    connect(&content_, &ContentView::sauvegardeEnCoursChanged, this, [this] {
        lastChange_.clear();  // what a save has changed nobody has edited
        view_->viewport()->update();
    });
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
        const int text = std::max(metrics.horizontalAdvance(sample),
                                  metrics.horizontalAdvance(columnTitle(static_cast<TakeColumn>(column))));
        header->resizeSection(column, text + room + (column == 0 ? 16 : 0));
    }
    const int noteWidth = header->sectionSize(static_cast<int>(TakeColumn::note));
    header->setSortIndicator(-1, Qt::AscendingOrder);
    header->restoreState(settings_.stored(headerKey).toByteArray());
    // Whatever was stored: these hold in this version.
    view_->setColumnHidden(0, false);
    header->setSectionsMovable(true);
    header->setSortIndicatorClearable(true);
    header->setStretchLastSection(false);
    view_->setSortingEnabled(true);
    if (settings_.stored(notesKey).value<bool>() || !settings_.stored(headerKey).isValid()) {
        view_->giveRoomToNotes(noteWidth);
    }
}

void TakeTable::storeHeader() {
    header_.stop();
    settings_.store(headerKey, view_->header()->saveState());
    settings_.store(notesKey, view_->givesRoomToNotes());
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
    const QLocale locale;
    QString text;
    if (!model_->filter().isEmpty()) {
        text = tr("%1 of %2").arg(locale.toString(model_->rowCount()), locale.toString(all));
    } else if (all > 0) {
        text = counted(all, Noun::take);
    }
    count_->setText(text);
}

void TakeTable::showPlaceholder() {
    if (model_->rowCount() > 0) {
        view_->setPlaceholder({}, {});
    } else if (!content_.rows().groupesTableau().empty()) {
        view_->setPlaceholder(tr("No take matches \u201c%1\u201d").arg(model_->filter().simplified()),
                              tr("Press Escape to show all takes."));
    } else if (content_.folderLabel().isEmpty()) {
        view_->setPlaceholder(
            tr("Open a folder of recordings"),
            tr("Drop it here, choose it in the browser, or press %1.").arg(keyText(KeyId::loadFolder)));
    } else if (content_.listing().isReading()) {
        view_->setPlaceholder(tr("Reading the folder..."), {});
    } else if (readingCancelled_) {
        view_->setPlaceholder(tr("Reading was cancelled"), tr("Reload the folder to go on."));
    } else {
        view_->setPlaceholder(tr("There are no audio files in this folder"),
                              tr("Its sub-folders are not looked through: choose one in the browser."));
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

void TakeTable::selectRows(const std::vector<int>& rows) {
    showLoadedTake();
    QItemSelection selection;
    for (const int row : rows) {
        const QModelIndex index = model_->indexOfRow(row, 0);
        if (index.isValid()) selection.select(index, index);
    }
    showing_ = true;
    view_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    showing_ = false;
    emit selectionChanged();
}

void TakeTable::goToOtherTake(int step) {
    const QModelIndex current = view_->currentIndex();
    const QModelIndex take = current.parent().isValid() ? current.parent() : current;
    const QModelIndex other = model_->index(take.row() + step, std::max(0, current.column()));
    if (take.isValid() && other.isValid()) view_->goTo(other);
}

void TakeTable::loadCurrentTake() {
    if (view_->isEditing()) return;  // once the editing has ended
    const QModelIndex current = view_->currentIndex();
    if (!current.isValid() || !view_->selectionModel()->isSelected(current)) return;
    content_.selectionnerLigne(model_->sourceRow(current));
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
        const std::optional<KeyId> key = keyIn(KeyContext::filter, *static_cast<QKeyEvent*>(event));
        const bool leaves = key.has_value();
        if (leaves && override) {
            event->accept();
            return true;
        }
        if (leaves) {
            if (key == KeyId::clearFilter) filter_->clear();
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
