#include "ui/cue_list.h"

#include "app/take_times.h"
#include "app/text.h"
#include "ui/list_looks.h"
#include "ui/shortcuts.h"

#include <QAbstractTableModel>
#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QVBoxLayout>
#include <algorithm>

namespace dravik {

/// What the list shows; a copy of the controller's state, renewed by `show`.
class CueModel final : public QAbstractTableModel {
  public:
    CueModel(const Theme& theme, QObject* parent) : QAbstractTableModel(parent), theme_(theme) {}

    struct Row {
        Uuid id;
        QString position, label;
        bool edited = false;
        friend bool operator==(const Row&, const Row&) = default;
    };
    enum Column { number, position, label };

    void show(std::vector<Row> rows, bool editable) {
        if (rows == rows_ && editable == editable_) return;
        const bool sameCount = rows.size() == rows_.size();
        if (!sameCount) beginResetModel();
        rows_ = std::move(rows);
        editable_ = editable;
        if (!sameCount) {
            endResetModel();
        } else if (!rows_.empty()) {
            emit dataChanged(index(0, 0), index(rowCount({}) - 1, columnCount({}) - 1));
        }
    }
    [[nodiscard]] const Row* row(int at) const {
        return at >= 0 && at < rowCount({}) ? &rows_[static_cast<std::size_t>(at)] : nullptr;
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 3; }

    [[nodiscard]] QVariant data(const QModelIndex& at, int role) const override {
        const Row& row = rows_.at(static_cast<std::size_t>(at.row()));
        switch (role) {
            case Qt::DisplayRole:
                if (at.column() == number) return at.row() + 1;
                return at.column() == position ? row.position : row.label;
            case Qt::TextAlignmentRole:
                return alignment(at.column());
            case Qt::ForegroundRole:
                if (!editable_ || at.column() == number) return theme_.dimmed();
                return row.edited ? QVariant(theme_.pendingText()) : QVariant();
            case Qt::AccessibleTextRole:
                if (at.column() != number) return {};
                return accessibleText(row, at.row() + 1);
            default:
                return {};
        }
    }

    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal) return {};
        if (role == Qt::TextAlignmentRole) return alignment(section);
        if (role != Qt::DisplayRole) return {};
        const QString titles[] = {QStringLiteral("#"), CueList::tr("Position"), CueList::tr("Label")};
        return titles[section];
    }

  private:
    static QString accessibleText(const Row& row, int number) {
        const QString text = CueList::tr("Cue %1 at %2").arg(number).arg(row.position);
        return row.edited ? CueList::tr("%1, not saved").arg(text) : text;
    }
    static int alignment(int column) {
        return int(column == number ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignVCenter);
    }

    const Theme& theme_;
    std::vector<Row> rows_;
    bool editable_ = false;
};

CueList::CueList(ContentView& content, const Theme& theme, QWidget* parent)
    : QWidget(parent),
      content_(content),
      theme_(theme),
      model_(new CueModel(theme, this)),
      table_(new QTableView(this)),
      position_(new QLineEdit(this)),
      add_(new QToolButton(this)) {
    table_->setModel(model_);
    makeDense(*table_, theme, tr("Cue markers"), {32, 96});
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setToolTip(tr("Double click or F2 to name a cue, Delete to delete it"));
    table_->installEventFilter(this);
    table_->viewport()->installEventFilter(this);
    connect(table_, &QTableView::doubleClicked, this, &CueList::renameCurrent);

    position_->setLayoutDirection(Qt::LeftToRight);
    position_->setAccessibleName(tr("Position of a new cue"));
    position_->installEventFilter(this);
    connect(position_, &QLineEdit::returnPressed, this, &CueList::addTyped);
    connect(position_, &QLineEdit::textChanged, this, &CueList::showWhetherValid);
    add_->setText(tr("Add Cue"));
    add_->setAccessibleName(tr("Add Cue"));
    add_->setToolTip(tr("Add a cue at the typed position (Return)"));
    connect(add_, &QToolButton::clicked, this, &CueList::addTyped);

    auto* adding = new QHBoxLayout;
    adding->setSpacing(metrics::fieldSpacing);
    adding->addWidget(position_, 1);
    adding->addWidget(add_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(metrics::fieldSpacing);
    layout->addWidget(table_, 1);
    layout->addLayout(adding);
    connect(&theme_, &Theme::changed, this, &CueList::showWhetherValid);
}

CueList::~CueList() { stopListeningToChildren(*this); }

const GroupeFichiers* CueList::groupe() const {
    const int row = content_.selectedRow();
    return row < 0 ? nullptr : &content_.rows().groupesTableau().at(static_cast<std::size_t>(row)).groupe;
}

void CueList::refresh(bool editable) {
    editable_ = editable;
    const GroupeFichiers* take = groupe();
    std::vector<CueModel::Row> rows;
    if (take != nullptr) {
        const std::vector<CueMarker>& before = content_.cues().originaux();
        for (const CueMarker& marker : content_.cueMarkers()) {
            const bool asRead = std::any_of(before.begin(), before.end(), [&](const CueMarker& one) {
                return one.frame == marker.frame && one.label == marker.label;
            });
            rows.push_back(
                {marker.id, toQt(positionText(*take, marker.frame)), toQt(marker.label.value_or("")), !asRead});
        }
        position_->setPlaceholderText(toQt(positionText(*take, 0)));
    }
    model_->show(std::move(rows), editable);
    position_->setEnabled(editable);
    add_->setEnabled(editable);
    showWhetherValid();
}

void CueList::showWhetherValid() {
    const GroupeFichiers* take = groupe();
    const QString text = position_->text().trimmed();
    const bool wrong = take != nullptr && !text.isEmpty() && !parsePosition(*take, text.toStdString());
    QPalette palette;
    if (wrong) palette.setColor(QPalette::Text, theme_.error());
    position_->setPalette(palette);
    position_->setToolTip(take == nullptr ? QString()
                          : wrong
                              ? tr("Not a position in this take (%1 to %2)")
                                    .arg(toQt(positionText(*take, 0)), toQt(positionText(*take, lastFrameOf(*take))))
                              : tr("Timecode, or minutes and seconds from the start; Return adds a cue"));
}

void CueList::addTyped() {
    const GroupeFichiers* take = groupe();
    if (take == nullptr || !editable_) return;
    if (position_->text().trimmed().isEmpty()) {
        position_->setFocus();
        return;
    }
    const auto frame = parsePosition(*take, position_->text().toStdString());
    if (!frame) {
        position_->setFocus();
        position_->selectAll();
        return;
    }
    position_->clear();
    content_.cues().add(*frame);
}

void CueList::renameCurrent() {
    const CueModel::Row* row = model_->row(table_->currentIndex().row());
    if (row != nullptr && editable_) content_.cues().rename(row->id);
}

void CueList::deleteCurrent() {
    const CueModel::Row* row = model_->row(table_->currentIndex().row());
    if (row != nullptr && editable_) content_.cues().remove(row->id);
}

bool CueList::eventFilter(QObject* object, QEvent* event) {
    if (object == position_) {
        if (event->type() == QEvent::FocusIn) content_.setEnSaisie(true);
        if (event->type() == QEvent::FocusOut) content_.setEnSaisie(false);
        return QWidget::eventFilter(object, event);
    }
    if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<QKeyEvent&>(*event);
        const bool pressed = event->type() == QEvent::KeyPress;
        const bool renames = isKey(KeyId::renameCue, key);
        const bool deletes = isKey(KeyId::deleteCue, key);
        if (renames || deletes) {
            if (pressed) renames ? renameCurrent() : deleteCurrent();
            event->accept();
            return true;
        }
    } else if (event->type() == QEvent::ContextMenu && object == table_->viewport()) {
        const QPoint where = static_cast<QContextMenuEvent*>(event)->pos();
        const QModelIndex under = table_->indexAt(where);
        if (!under.isValid() || !editable_) return true;
        table_->setCurrentIndex(under);
        auto* menu = new QMenu(this);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->addAction(tr("Edit Cue Name…"), this, &CueList::renameCurrent);
        menu->addAction(tr("Delete Cue"), this, &CueList::deleteCurrent);
        menu->popup(table_->viewport()->mapToGlobal(where));
        return true;
    }
    return QWidget::eventFilter(object, event);
}

}  // namespace dravik
