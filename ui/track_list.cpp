#include "ui/track_list.h"

#include "app/table_edits.h"
#include "app/take_columns.h"
#include "app/text.h"
#include "ui/list_looks.h"
#include "ui/shortcuts.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QClipboard>
#include <QIntValidator>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyledItemDelegate>
#include <functional>
#include <map>

namespace dravik {
namespace {

QStringList clipboardLines() { return firstSpreadsheetColumn(QApplication::clipboard()->text()); }

}  // namespace

/// What the list shows; a copy of the controller's state, renewed by `show`.
class TrackModel final : public QAbstractTableModel {
  public:
    TrackModel(ContentView& content, const Theme& theme, QObject* parent)
        : QAbstractTableModel(parent), content_(content), theme_(theme) {}

    struct Row {
        int numero = 0;
        std::optional<int> channel;
        QString name;
        bool nameEdited = false, channelEdited = false;
        QString file;
        friend bool operator==(const Row&, const Row&) = default;
    };

    /// `take`: a file of the take whose tracks these are.
    void show(std::optional<std::filesystem::path> take, std::vector<Row> rows, bool editable) {
        take_ = std::move(take);
        if (rows.size() != rows_.size() || editable != editable_) {
            beginResetModel();
            rows_ = std::move(rows);
            editable_ = editable;
            endResetModel();
            return;
        }
        if (rows == rows_) return;
        rows_ = std::move(rows);
        emit dataChanged(index(0, 0), index(rowCount({}) - 1, columnCount({}) - 1));
    }

    [[nodiscard]] bool isEditable() const noexcept { return editable_; }
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 3; }

    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& at) const override {
        Qt::ItemFlags flags = Qt::ItemNeverHasChildren | Qt::ItemIsSelectable;
        if (editable_) flags |= Qt::ItemIsEnabled;
        if (editable_ && at.column() != TrackList::number) flags |= Qt::ItemIsEditable;
        return flags;
    }

    [[nodiscard]] QVariant data(const QModelIndex& at, int role) const override {
        const Row& row = rows_.at(static_cast<std::size_t>(at.row()));
        switch (role) {
            case Qt::DisplayRole:
            case Qt::EditRole:
                if (at.column() == TrackList::name) return row.name;
                if (at.column() == TrackList::number) return row.numero;
                return row.channel ? QVariant(*row.channel) : QVariant();
            case Qt::TextAlignmentRole:
                return alignment(at.column());
            case Qt::ForegroundRole:
                if (editable_ && isEdited(row, at.column())) return theme_.pendingText();
                return editable_ && at.column() != TrackList::number ? QVariant() : theme_.dimmed();
            case Qt::ToolTipRole:
                return row.file;
            case Qt::AccessibleTextRole:
                return accessibleText(row, at.column());
            default:
                return {};
        }
    }

    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal) return {};
        if (role == Qt::TextAlignmentRole) return alignment(section);
        if (role != Qt::DisplayRole) return {};
        const QString titles[] = {QStringLiteral("#"), TrackList::tr("Rec"), TrackList::tr("Name")};
        return titles[section];
    }

    bool setData(const QModelIndex& at, const QVariant& value, int role) override {
        if (role != Qt::EditRole || !editable_ || at.column() == TrackList::number) return false;
        const Row& row = rows_.at(static_cast<std::size_t>(at.row()));
        if (at.column() == TrackList::channel) {
            if (data(at, Qt::EditRole).toString() == value.toString()) return true;
            return setNumbers({{row.numero, parseTrackNumber(value.toString().toStdString()).value_or(0)}});
        }
        if (row.name == value.toString()) return true;
        content_.modifications().setTrackName(row.numero, value.toString().toStdString());
        return true;
    }

    /// Of the take that is shown, which need not be the loaded one any more. False, and told, when it cannot be.
    bool setNumbers(const TrackNumbers& numbers) {
        const int row = take_ ? content_.rows().indexOfFile(*take_) : -1;
        const std::optional<QString> problem = editTrackNumbers(content_.rows(), row, numbers);
        if (problem) content_.tell(*problem);
        return !problem;
    }

  private:
    static bool isEdited(const Row& row, int column) {
        return column == TrackList::name ? row.nameEdited : column == TrackList::channel && row.channelEdited;
    }
    static QVariant accessibleText(const Row& row, int column) {
        if (column == TrackList::number) return {};
        const QString text = column == TrackList::name
                                 ? TrackList::tr("Track %1: %2")
                                       .arg(row.numero)
                                       .arg(row.name.isEmpty() ? TrackList::tr("no name") : row.name)
                                 : TrackList::tr("Recorder number of track %1: %2")
                                       .arg(row.numero)
                                       .arg(row.channel ? QString::number(*row.channel) : TrackList::tr("none"));
        return isEdited(row, column) ? TrackList::tr("%1, not saved").arg(text) : text;
    }
    static int alignment(int column) {
        return int(column == TrackList::name ? Qt::AlignLeft | Qt::AlignVCenter : Qt::AlignCenter);
    }

    ContentView& content_;
    const Theme& theme_;
    std::optional<std::filesystem::path> take_;
    std::vector<Row> rows_;
    bool editable_ = false;
};

namespace {

/// The field in which a name or a number is typed. What keys mean in it is the list's to say.
class TrackDelegate final : public QStyledItemDelegate {
  public:
    struct Hooks {
        std::function<void(int)> goOn;        ///< to the next track (1) or the one before (-1)
        std::function<bool(int)> pasteLines;  ///< several lines from this row on; false when there is one line only
        std::function<void()> undo, redo;
        std::function<void(QLineEdit*)> opened;
    };
    TrackDelegate(Hooks hooks, QObject* parent) : QStyledItemDelegate(parent), hooks_(std::move(hooks)) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const override {
        auto* line = new QLineEdit(parent);
        line->setFrame(false);
        line->setAutoFillBackground(true);
        line->setPalette(QApplication::palette());  // selected text as in other fields
        line->setProperty("row", index.row());
        line->setProperty("isNumber", index.column() == TrackList::channel);
        if (isNumber(*line)) {
            line->setAccessibleName(TrackList::tr("Recorder number of track %1").arg(index.row() + 1));
            line->setAlignment(Qt::AlignCenter);
            auto* digits = new QIntValidator(1, maxTrackNumber, line);
            digits->setLocale(QLocale::c());
            line->setValidator(digits);
        } else {
            line->setAccessibleName(TrackList::tr("Name of track %1").arg(index.row() + 1));
            auto* self = const_cast<TrackDelegate*>(this);  // the signals of a delegate are not const
            connect(line, &QLineEdit::textEdited, this, [self, line] { emit self->commitData(line); });
        }
        hooks_.opened(line);
        return line;
    }

    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        // Only when it differs: the text comes back with every keystroke, and the cursor must stay.
        auto* line = qobject_cast<QLineEdit*>(editor);
        const QString text = index.data(Qt::EditRole).toString();
        if (line->text() != text && !(isNumber(*line) && line->isModified())) line->setText(text);
    }

    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override {
        const bool taken = model->setData(index, qobject_cast<QLineEdit*>(editor)->text(), Qt::EditRole);
        editor->setProperty("refused", !taken);
    }

    bool eventFilter(QObject* object, QEvent* event) override {
        auto* line = qobject_cast<QLineEdit*>(object);
        if (line == nullptr || (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)) {
            return QStyledItemDelegate::eventFilter(object, event);
        }
        auto* key = static_cast<QKeyEvent*>(event);
        const bool pressed = event->type() == QEvent::KeyPress;
        const int row = line->property("row").toInt();
        if (const std::optional<KeyId> step = undoOrRedo(*key)) {
            if (pressed) replay(*line, *step);
            event->accept();
            return true;
        }
        if (pressed && isKey(KeyId::pasteTracks, *key) && hooks_.pasteLines(row)) return true;
        if (pressed && (isKey(KeyId::nextTrack, *key) || isKey(KeyId::nextField, *key))) return leave(line, 1);
        if (pressed && isKey(KeyId::previousTrack, *key)) return leave(line, -1);
        return QStyledItemDelegate::eventFilter(object, event);
    }

    static bool isNumber(const QLineEdit& line) { return line.property("isNumber").toBool(); }

  private:
    void replay(QLineEdit& line, KeyId step) {
        // Digits that are not an edit yet are taken back first.
        if (step == KeyId::undo) {
            isNumber(line) && line.isUndoAvailable() ? line.undo() : hooks_.undo();
        } else {
            isNumber(line) && line.isRedoAvailable() ? line.redo() : hooks_.redo();
        }
    }

    bool leave(QLineEdit* line, int steps) {
        emit commitData(line);
        if (isNumber(*line) && line->property("refused").toBool()) {
            line->selectAll();  // why was told; another number, or Escape
            return true;
        }
        emit closeEditor(line, NoHint);
        hooks_.goOn(steps);
        return true;
    }

    Hooks hooks_;
};

}  // namespace

TrackList::TrackList(ContentView& content, const Theme& theme, QWidget* parent)
    : QTableView(parent), content_(content), model_(new TrackModel(content, theme, this)) {
    setModel(model_);
    makeDense(*this, theme, tr("Tracks"), {32, 38});
    setEditTriggers(DoubleClicked | SelectedClicked | EditKeyPressed | AnyKeyPressed);
    horizontalHeader()->setToolTip(
        tr("Position in the take, channel number of the recorder, name.\n"
           "Type or press Return to edit a name or number; Return and Tab go on to the next one."));
    TrackDelegate::Hooks hooks;
    hooks.goOn = [this](int steps) { goOn(steps); };
    hooks.pasteLines = [this](int row) {
        if (clipboardLines().size() < 2) return false;
        setFocus();  // which closes the field
        pasteFrom(row);
        return true;
    };
    hooks.undo = [this] {
        content_.undo();
        emit stepReplayed();
    };
    hooks.redo = [this] {
        content_.redo();
        emit stepReplayed();
    };
    hooks.opened = [this](QLineEdit* line) {
        field_ = line;
        setTyping(true);
    };
    setItemDelegate(new TrackDelegate(std::move(hooks), this));
}

TrackList::~TrackList() { stopListeningToChildren(*this); }

void TrackList::refresh(bool editable) {
    const int row = content_.selectedRow();
    if (content_.fichierSelectionne() != shown_) {
        commitPending();  // what was typed for the take before
        shown_ = content_.fichierSelectionne();
    }
    std::vector<TrackModel::Row> rows;
    if (row >= 0) {
        const GroupeFichiers& groupe = content_.rows().groupesTableau().at(static_cast<std::size_t>(row)).groupe;
        const EditedFields& before = content_.modifications().originals();
        for (const Piste& piste : tracksOfGroup(groupe)) {
            const auto nameBefore = before.nomsPistes.find(piste.numero);
            const auto numberBefore = before.numerosPistes.find(piste.numero);
            const auto file = groupe.isMonoSet() ? static_cast<std::size_t>(piste.numero - 1) : 0U;
            rows.push_back({piste.numero, piste.numeroTrack, toQt(piste.nom),
                            nameBefore != before.nomsPistes.end() && nameBefore->second != piste.nom,
                            numberBefore == before.numerosPistes.end() ? piste.numeroTrack.has_value()
                                                                       : piste.numeroTrack != numberBefore->second,
                            file < groupe.fichiers.size() ? toQt(groupe.fichiers[file].url.filename()) : QString()});
        }
    }
    model_->show(shown_, std::move(rows), editable);
    if (!currentIndex().isValid() && model_->rowCount() > 0) {
        selectionModel()->setCurrentIndex(model_->index(0, name), QItemSelectionModel::NoUpdate);
    }
}

void TrackList::goOn(int steps) {
    const int next = currentIndex().row() + steps;
    if (next < 0 || next >= model_->rowCount()) {
        setFocus();
        return;
    }
    setCurrentIndex(model_->index(next, column()));
    edit(currentIndex());
}

void TrackList::commitPending() {
    // Names are taken over with every keystroke.
    if (field_ && typing_ && TrackDelegate::isNumber(*field_)) commitData(field_);
}

TrackList::Column TrackList::column() const { return currentIndex().column() == channel ? channel : name; }

void TrackList::setTyping(bool typing) {
    if (typing == typing_) return;
    typing_ = typing;
    content_.setEnSaisie(typing);
    if (!typing) content_.rows().endCollapsing();
}

void TrackList::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    QTableView::closeEditor(editor, hint);
    setTyping(false);
}

void TrackList::reset() {
    QTableView::reset();  // drops an open field
    setTyping(false);
}

void TrackList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    // Positions are of no use to the keyboard.
    if (current.isValid() && current.column() == number) {
        const Column beside = previous.row() == current.row() && previous.column() == channel ? channel : name;
        selectionModel()->setCurrentIndex(model_->index(current.row(), beside), QItemSelectionModel::NoUpdate);
    }
}

bool TrackList::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && model_->isEditable()) {
        // Keys that mean something here, and characters that begin a name, are not for the window's menus.
        auto* key = static_cast<QKeyEvent*>(event);
        const bool character = !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) &&
                               !key->text().isEmpty() && key->text().at(0).isPrint() && key->key() != Qt::Key_Space;
        const std::optional<KeyId> own = keyIn(KeyContext::tracks, *key);
        // Tab and the arrows go on to other names only while one is edited.
        if (character || (own && own != KeyId::nextTrack && own != KeyId::previousTrack)) {
            event->accept();
            return true;
        }
    }
    return QTableView::event(event);
}

void TrackList::keyPressEvent(QKeyEvent* event) {
    if (isKey(KeyId::copyTracks, *event)) {
        copyCells();
    } else if (isKey(KeyId::pasteTracks, *event)) {
        pasteFrom(currentIndex().row());
    } else if (isKey(KeyId::editTrack, *event) && currentIndex().isValid()) {
        edit(model_->index(currentIndex().row(), column()));
    } else if (isKey(KeyId::clearTracks, *event) && column() == channel) {
        content_.tell(tr("A recorder number cannot be emptied, only changed."));
    } else if (isKey(KeyId::clearTracks, *event)) {
        for (const QModelIndex& index : selectionModel()->selectedRows(name))
            model_->setData(index, QString(), Qt::EditRole);
        content_.rows().endCollapsing();
    } else if (event->key() == Qt::Key_Space) {
        event->ignore();  // never begins a name
    } else {
        QTableView::keyPressEvent(event);
    }
}

void TrackList::copyCells() {
    QModelIndexList selected = selectionModel()->selectedRows(column());
    if (selected.isEmpty() && currentIndex().isValid()) selected << currentIndex();
    std::sort(selected.begin(), selected.end());
    QStringList texts;
    for (const QModelIndex& index : selected)
        texts << index.data(Qt::EditRole).toString();
    if (!texts.isEmpty()) QApplication::clipboard()->setText(texts.join(QLatin1Char('\n')));
}

void TrackList::pasteFrom(int row) {
    if (!model_->isEditable() || row < 0) return;
    if (column() == channel) {
        pasteNumbers(row, clipboardLines());
        return;
    }
    content_.rows().endCollapsing();
    for (const QString& line : clipboardLines()) {
        if (row >= model_->rowCount()) break;
        model_->setData(model_->index(row++, name), line.trimmed(), Qt::EditRole);
    }
    content_.rows().endCollapsing();
}

void TrackList::pasteNumbers(int row, const QStringList& lines) {
    // All at once: numbers may change places. An empty cell leaves its track as it is.
    TrackNumbers numbers;
    for (const QString& line : lines) {
        if (row >= model_->rowCount()) break;
        const int track = model_->index(row++, number).data().toInt();
        if (const QString text = line.trimmed(); !text.isEmpty()) {
            numbers[track] = parseTrackNumber(text.toStdString()).value_or(0);
        }
    }
    if (!numbers.empty()) model_->setNumbers(numbers);
}

}  // namespace dravik
