#include "ui/take_editor.h"

#include "app/table_edits.h"
#include "app/take_columns.h"
#include "app/text.h"
#include "model/wave/timecode.h"
#include "ui/cue_list.h"
#include "ui/list_looks.h"
#include "ui/shortcuts.h"
#include "ui/take_summary.h"
#include "ui/track_list.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScrollArea>
#include <QVBoxLayout>
#include <tuple>
#include <utility>

namespace dravik {
namespace {

using metrics::smallFont;

/// Below this width there is no room for the summary.
constexpr int summaryFrom = 820;
constexpr int leastWidth = 320;
constexpr int leastHeight = 150;

QString mixedText() { return TakeEditor::tr("mixed"); }

QString endText(const GroupeFichiers& groupe) {
    const std::string timecode = endTimecode(groupe);
    return timecode.empty() ? QStringLiteral("–") : toQt(timecode);
}

void setColour(QWidget& widget, QPalette::ColorRole role, const QColor& colour) {
    QPalette palette;
    palette.setColor(role, colour);
    widget.setPalette(palette);
}

/// What lies in the scroll area. A text that wraps would have it be as high as it likes to be; it is scrolled only
/// when there is less room than it needs.
class Page final : public QWidget {
  public:
    using QWidget::QWidget;
    [[nodiscard]] int heightForWidth(int width) const override { return layout()->minimumHeightForWidth(width); }
};

/// A line between two columns.
QFrame* separator(QWidget* parent) {
    auto* line = new QFrame(parent);
    line->setFrameShape(QFrame::VLine);
    line->setFrameShadow(QFrame::Plain);
    line->setForegroundRole(QPalette::Mid);
    return line;
}

}  // namespace

TakeEditor::TakeEditor(ContentView& content, const Theme& theme, QWidget* parent)
    : QWidget(parent), content_(content), theme_(theme) {
    setAccessibleName(tr("Take editor"));
    auto* page = new Page(this);
    auto* columns = new QHBoxLayout(page);
    columns->setContentsMargins(10, metrics::panelMargin, 10, metrics::panelMargin);
    columns->setSpacing(10);
    // No wider than they are of use, however wide the screen is: the summary takes what is left.
    const auto add = [&](QWidget* panel, int widest, int share) {
        panel->setMaximumWidth(widest);
        columns->addWidget(panel, share);
    };
    add(makeFields(), 640, 9);
    columns->addWidget(separator(page));
    add(makeTracks(), 460, 6);
    columns->addWidget(separator(page));
    add(makeCues(), 460, 6);
    summaryLine_ = separator(page);
    columns->addWidget(summaryLine_);
    summary_ = new TakeSummary(content_, theme_, page);
    columns->addWidget(summary_, 5);
    // In a window that is smaller still it can be scrolled.
    auto* scroll = new QScrollArea(this);
    scroll->setWidget(page);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);

    hint_ = new QLabel(tr("Select a take to see and edit its fields."), this);
    hint_->setAlignment(Qt::AlignCenter);
    pages_ = new QStackedLayout(this);
    pages_->addWidget(hint_);
    pages_->addWidget(scroll);

    // Another take is shown at once: what is typed next is typed into it. What else changes comes in threes and fours.
    refreshSoon_.setSingleShot(true);
    connect(&refreshSoon_, &QTimer::timeout, this, &TakeEditor::refresh);
    connect(&content_, &ContentView::selectionChanged, this, &TakeEditor::refresh);
    for (const auto changed :
         {&ContentView::takeChanged, &ContentView::cueMarkersChanged, &ContentView::enChargementChanged,
          &ContentView::sauvegardeEnCoursChanged, &ContentView::pendingChanged}) {
        connect(&content_, changed, &refreshSoon_, qOverload<>(&QTimer::start));
    }
    connect(&content_.rows(), &TakeRows::rowsReset, this, [this](const std::vector<int>& renumbered) {
        const auto at = static_cast<std::size_t>(shownRow_);
        shownRow_ = shownRow_ >= 0 && at < renumbered.size() ? renumbered[at] : -1;
    });
    connect(&theme_, &Theme::changed, this, &TakeEditor::applyTheme);
    applyTheme();
}

TakeEditor::~TakeEditor() { stopListeningToChildren(*this); }

QVBoxLayout* TakeEditor::column(QWidget* parent, const QString& title, QLabel*& label) {
    auto* layout = new QVBoxLayout(parent);
    layout->setContentsMargins({});
    layout->setSpacing(metrics::fieldSpacing);
    label = new QLabel(title, parent);
    label->setFont(smallFont(*label));
    headings_.push_back(label);
    layout->addWidget(label);
    return layout;
}

void TakeEditor::addField(QGridLayout& grid, int row, int side, const QString& title, RowField field, QWidget* widget) {
    auto* label = new QLabel(title, grid.parentWidget());
    label->setFont(smallFont(*label));
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* mark = new QWidget(grid.parentWidget());
    mark->setFixedWidth(metrics::editMark);
    mark->setAutoFillBackground(true);
    QSizePolicy policy(QSizePolicy::Fixed, QSizePolicy::Ignored);
    policy.setRetainSizeWhenHidden(true);
    mark->setSizePolicy(policy);
    const int at = side * 3;
    grid.addWidget(label, row, at, field == RowField::note ? Qt::AlignRight | Qt::AlignTop : Qt::Alignment());
    grid.addWidget(mark, row, at + 1);
    const bool wide = field == RowField::note || field == RowField::project;
    grid.addWidget(widget, row, at + 2, 1, wide ? 4 : 1);
    if (widget->accessibleName().isEmpty()) widget->setAccessibleName(fieldTitle(field));
    fields_.push_back({field, label, mark, widget});
}

QLineEdit* TakeEditor::addText(QGridLayout& grid, int row, int side, RowField field, GetText get, SetText set,
                               const QString& help) {
    auto* line = new QLineEdit(grid.parentWidget());
    line->setToolTip(help);
    line->installEventFilter(this);
    connect(line, &QLineEdit::textEdited, this, [this, set](const QString& text) {
        if (!filling_) (content_.modifications().*set)(text.toStdString());
    });
    // Return goes on, as in a form.
    connect(line, &QLineEdit::returnPressed, this, [this] { focusNextChild(); });
    addField(grid, row, side, fieldTitle(field), field, line);
    texts_.push_back({field, line, get});
    return line;
}

QWidget* TakeEditor::makeFields() {
    using Edits = ModificationsEnCours;
    auto* panel = new QWidget(this);
    QVBoxLayout* layout = column(panel, QString(), takeName_);
    takeName_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // A long name must not widen the window.
    takeName_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    message_ = new QLabel(panel);
    message_->setWordWrap(true);
    message_->setTextFormat(Qt::PlainText);  // names of files may look like markup
    message_->setFont(smallFont(*message_));
    layout->addWidget(message_);

    auto* form = new QWidget(panel);
    auto* grid = new QGridLayout(form);
    grid->setContentsMargins({});
    grid->setHorizontalSpacing(metrics::fieldSpacing);
    grid->setVerticalSpacing(metrics::fieldSpacing);
    grid->setColumnStretch(2, 1);
    grid->setColumnStretch(5, 1);

    addText(*grid, 0, 0, RowField::project, &Edits::project, &Edits::setProject, tr("Name of the project"));
    addText(*grid, 1, 0, RowField::scene, &Edits::scene, &Edits::setScene, tr("Scene, as on the slate"));
    addText(*grid, 1, 1, RowField::prise, &Edits::prise, &Edits::setPrise, tr("Take number"));
    addText(*grid, 2, 0, RowField::tape, &Edits::tape, &Edits::setTape, tr("Tape or sound roll"));

    auto* flags = new QWidget(form);
    auto* flagRow = new QHBoxLayout(flags);
    flagRow->setContentsMargins({});
    flagRow->setSpacing(metrics::editMark + 2);
    const auto addFlag = [&](RowField field, const QString& help, void (Edits::*set)(bool)) {
        auto* mark = new QWidget(flags);
        mark->setFixedWidth(metrics::editMark);
        mark->setAutoFillBackground(true);
        QSizePolicy policy(QSizePolicy::Fixed, QSizePolicy::Ignored);
        policy.setRetainSizeWhenHidden(true);
        mark->setSizePolicy(policy);
        auto* box = new QCheckBox(fieldTitle(field), flags);
        box->setToolTip(help);
        connect(box, &QCheckBox::clicked, this, [this, set](bool on) {
            (content_.modifications().*set)(on);
            content_.rows().endCollapsing();
        });
        flagRow->addWidget(mark);
        flagRow->addWidget(box);
        fields_.push_back({field, nullptr, mark, box});
        return box;
    };
    circled_ = addFlag(RowField::circled, tr("A take to print"), &Edits::setCircled);
    wild_ = addFlag(RowField::wild, tr("Wild track: no picture"), &Edits::setWild);
    flagRow->addStretch(1);
    grid->addWidget(flags, 2, 3, 1, 3);

    rate_ = new QComboBox(form);
    rate_->setPlaceholderText(tr("none"));
    rate_->setToolTip(tr("Frame rate in which the timecode counts"));
    rate_->installEventFilter(this);
    connect(rate_, &QComboBox::activated, this, [this](int index) {
        if (filling_ || index < 0) return;
        content_.modifications().setFramerate(rate_->itemText(index).toStdString());
        content_.rows().endCollapsing();
    });
    timecode_ = new QLineEdit(form);
    timecode_->setLayoutDirection(Qt::LeftToRight);
    timecode_->setMinimumWidth(timecode_->fontMetrics().horizontalAdvance(QStringLiteral("00:00:00:00")) + 16);
    timecode_->installEventFilter(this);
    connect(timecode_, &QLineEdit::textEdited, this, &TakeEditor::timecodeTyped);
    connect(timecode_, &QLineEdit::editingFinished, this, &TakeEditor::takeOverTimecode);
    addField(*grid, 3, 0, tr("Start TC"), RowField::timecode, timecode_);
    addField(*grid, 3, 1, tr("fps"), RowField::framerate, rate_);
    timecode_->setAccessibleName(tr("Start timecode"));
    rate_->setAccessibleName(tr("Frame rate"));

    end_ = new QLabel(form);
    end_->setFont(smallFont(*end_));
    end_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* endCaption = new QLabel(tr("End TC"), form);
    endCaption->setFont(smallFont(*endCaption));
    endCaption->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    captions_.push_back(endCaption);
    grid->addWidget(endCaption, 4, 0);
    grid->addWidget(end_, 4, 2, 1, 4);

    note_ = new NoteEdit(longestTypedText, form);
    connect(note_, &NoteEdit::cutShort, this, [this](int longest) {
        content_.tell(tr("A note has room for %L1 characters; the rest was left out.").arg(longest));
    });
    note_->setTabChangesFocus(true);
    note_->setUndoRedoEnabled(false);
    note_->setMinimumHeight(44);
    note_->setToolTip(tr("Note of the sound mixer"));
    note_->installEventFilter(this);
    connect(note_, &QPlainTextEdit::textChanged, this, [this] {
        if (filling_) return;
        noteShown_ = note_->toPlainText();
        content_.modifications().setNote(noteShown_.toStdString());
    });
    addField(*grid, 5, 0, fieldTitle(RowField::note), RowField::note, note_);
    grid->setRowStretch(5, 1);
    layout->addWidget(form, 1);
    return panel;
}

QWidget* TakeEditor::makeTracks() {
    auto* panel = new QWidget(this);
    QVBoxLayout* layout = column(panel, tr("Tracks"), tracksTitle_);
    tracks_ = new TrackList(content_, theme_, panel);
    connect(tracks_, &TrackList::stepReplayed, this, &TakeEditor::stepReplayed);
    layout->addWidget(tracks_, 1);
    panel->setMinimumWidth(150);
    return panel;
}

QWidget* TakeEditor::makeCues() {
    auto* panel = new QWidget(this);
    QVBoxLayout* layout = column(panel, tr("Cues"), cuesTitle_);
    cues_ = new CueList(content_, theme_, panel);
    layout->addWidget(cues_, 1);
    panel->setMinimumWidth(170);
    return panel;
}

void TakeEditor::focusFirstField() {
    if (content_.selectedRow() >= 0) texts_.front().line->setFocus(Qt::ShortcutFocusReason);
}

void TakeEditor::focusTimecode() {
    timecode_->setFocus(Qt::OtherFocusReason);
    timecode_->selectAll();
}

QSize TakeEditor::minimumSizeHint() const { return {leastWidth, leastHeight}; }

void TakeEditor::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    // What is only told gives way to what is edited.
    const bool room = width() >= summaryFrom;
    summary_->setVisible(room);
    summaryLine_->setVisible(room);
}

void TakeEditor::refresh() {
    refreshSoon_.stop();
    const int row = content_.selectedRow();
    if (row != shownRow_ || row < 0) leaveTimecode();
    pages_->setCurrentIndex(row < 0 ? 0 : 1);
    if (row < 0) {
        shownRow_ = -1;
        tracks_->refresh(false);
        cues_->refresh(false);
        return;
    }
    const RowState& state = content_.rows().groupesTableau().at(static_cast<std::size_t>(row));
    const GroupeFichiers& groupe = state.groupe;
    if (row != shownRow_) summary_->scrollToTop();
    shownRow_ = row;
    shownName_ = toQt(groupe.nom);
    const bool editable = isEditable(groupe) && !content_.rows().isMissing(row);
    // What is being written must not change under the pen.
    const bool mayEdit = editable && !content_.sauvegardeEnCours();
    const QString warning = warningOf(content_.rows(), row);
    message_->setVisible(!warning.isEmpty());
    message_->setText(warning);
    setColour(*message_, QPalette::WindowText, isDamaged(groupe) ? theme_.error() : theme_.dimmed());
    takeName_->setTextFormat(Qt::PlainText);  // a name may look like markup
    takeName_->setText(toQt(groupe.nom));
    takeName_->setToolTip(toQt(groupe.nom));

    filling_ = true;
    refreshFields(state, editable, mayEdit);
    refreshRates(groupe);
    refreshTimecode(state, editable, mayEdit);
    filling_ = false;
    tracks_->refresh(mayEdit);
    const std::size_t tracks = tracksOfGroup(groupe).size();
    tracksTitle_->setText(tr("Tracks  %1").arg(tracks));
    cues_->refresh(mayEdit && !content_.enChargement());
    const std::size_t cues = content_.cueMarkers().size();
    cuesTitle_->setText(cues == 0 ? tr("Cues") : tr("Cues  %1").arg(cues));
    summary_->refresh(groupe);
    refreshMarks(row);
}

void TakeEditor::refreshFields(const RowState& row, bool editable, bool mayEdit) {
    const GroupeFichiers& groupe = row.groupe;
    for (const TextField& text : texts_) {
        // During a save fields stay enabled, so that the one with the cursor keeps it.
        text.line->setEnabled(editable);
        text.line->setPlaceholderText(isMixed(groupe, text.field) ? mixedText() : QString());
        const QString whole = toQt((content_.modifications().*text.get)());
        const QString value = shortened(whole, longestTypedText);
        text.line->setReadOnly(!mayEdit || value != whole);
        if (text.line->text() == value) continue;
        text.line->setText(value);
        if (!text.line->hasFocus()) text.line->setCursorPosition(0);  // a long text is read from its start
    }
    note_->setEnabled(editable);
    note_->setPlaceholderText(isMixed(groupe, RowField::note) ? mixedText() : QString());
    const QString note = toQt(content_.modifications().note());
    const QString shownNote = shortened(note, longestTypedText);
    note_->setReadOnly(!mayEdit || shownNote != note);
    // By what was put in: the field gives line ends and fixed blanks back as others.
    if (std::exchange(noteShown_, shownNote) != shownNote) note_->setPlainText(shownNote);
    for (const auto& [box, field, on] : {std::tuple(circled_, RowField::circled, content_.modifications().circled()),
                                         std::tuple(wild_, RowField::wild, content_.modifications().wild())}) {
        const bool mixed = isMixed(groupe, field);
        box->setEnabled(mayEdit);
        box->setTristate(mixed);
        box->setCheckState(mixed ? Qt::PartiallyChecked : on ? Qt::Checked : Qt::Unchecked);
    }
    rate_->setEnabled(mayEdit);
}

void TakeEditor::refreshRates(const GroupeFichiers& groupe) {
    const QString label = toQt(content_.modifications().framerate());
    QStringList labels;
    for (const std::string_view one : framerateLabels)
        labels << toQt(one);
    // A file may count in a rate that is not offered; it is shown as long as it is the one.
    if (!label.isEmpty() && !labels.contains(label)) labels << label;
    QStringList shown;
    for (int at = 0; at < rate_->count(); ++at)
        shown << rate_->itemText(at);
    if (shown != labels) {
        rate_->clear();
        rate_->addItems(labels);
    }
    rate_->setPlaceholderText(isMixed(groupe, RowField::framerate) ? mixedText() : tr("none"));
    rate_->setCurrentIndex(label.isEmpty() ? -1 : static_cast<int>(labels.indexOf(label)));
}

void TakeEditor::refreshTimecode(const RowState& row, bool editable, bool mayEdit) {
    const GroupeFichiers& groupe = row.groupe;
    const bool countable = groupe.framerate && isWritableLabel(*groupe.framerate);
    timecode_->setEnabled(editable && countable);
    timecode_->setReadOnly(!mayEdit);
    timecode_->setPlaceholderText(isMixed(groupe, RowField::timecode) ? mixedText() : QStringLiteral("HH:MM:SS:FF"));
    timecode_->setToolTip(countable ? tr("Start timecode, HH:MM:SS:FF or HHMMSSFF; Return takes it over")
                                    : tr("A start timecode needs a frame rate"));
    if (!timecodeTyped_) {
        if (const QString value = toQt(content_.modifications().timecode()); timecode_->text() != value) {
            timecode_->setText(value);
            timecode_->setCursorPosition(0);
        }
    }
    showTimecodeState();
}

void TakeEditor::timecodeTyped() {
    timecodeTyped_ = true;
    timecodeTold_ = false;
    showTimecodeState();
}

QString TakeEditor::invalidTimecode() const {
    const int row = content_.selectedRow();
    if (!timecodeTyped_ || row < 0 || timecode_->text() == toQt(content_.modifications().timecode())) return {};
    const GroupeFichiers& groupe = content_.rows().groupesTableau().at(static_cast<std::size_t>(row)).groupe;
    const bool valid = parseTypedTimecode(timecode_->text().toStdString(), groupe.framerate.value_or("")).has_value();
    if (valid) return {};
    return timecode_->text().isEmpty() ? tr("nothing") : timecode_->text();
}

void TakeEditor::showTimecodeState() {
    const int row = content_.selectedRow();
    if (row < 0) return;
    const bool wrong = !invalidTimecode().isEmpty();
    end_->setText(wrong ? tr("Invalid Timecode")
                        : endText(content_.rows().groupesTableau().at(static_cast<std::size_t>(row)).groupe));
    if (wrong) {
        setColour(*timecode_, QPalette::Text, theme_.error());
        setColour(*end_, QPalette::WindowText, theme_.error());
    } else {
        timecode_->setPalette({});
        end_->setPalette({});
    }
    timecode_->setAccessibleDescription(wrong ? tr("Invalid Timecode") : QString());
}

void TakeEditor::takeOverTimecode() {
    const int row = content_.selectedRow();
    // Of another take than is shown nothing is typed.
    if (!timecodeTyped_ || row < 0 || row != shownRow_ || content_.sauvegardeEnCours()) return;
    const GroupeFichiers& groupe = content_.rows().groupesTableau().at(static_cast<std::size_t>(row)).groupe;
    const auto valid = parseTypedTimecode(timecode_->text().toStdString(), groupe.framerate.value_or(""));
    if (!valid) {
        // Back to what was there is no mistake; anything else stays and says what it is.
        if (timecode_->text() == toQt(content_.modifications().timecode())) timecodeTyped_ = false;
        showTimecodeState();
        return;
    }
    timecodeTyped_ = false;
    timecode_->setText(toQt(*valid));
    content_.modifications().setTimecode(*valid);
    content_.rows().endCollapsing();
    showTimecodeState();
}

void TakeEditor::commitPending() {
    tracks_->commitPending();
    takeOverTimecode();
    if (!invalidTimecode().isEmpty()) tellInvalidTimecode();
}

void TakeEditor::leaveTimecode() {
    if (!std::exchange(timecodeTyped_, false)) return;
    const TakeRows& rows = content_.rows();
    const bool isThere = shownRow_ >= 0 && static_cast<std::size_t>(shownRow_) < rows.groupesTableau().size();
    if (isThere && rows.canEdit(shownRow_)) {
        const GroupeFichiers& groupe = rows.groupesTableau().at(static_cast<std::size_t>(shownRow_)).groupe;
        if (timecode_->text() == toQt(textOf(groupe, RowField::timecode))) return;
        if (const auto valid = parseTypedTimecode(timecode_->text().toStdString(), groupe.framerate.value_or(""))) {
            setField(content_.rows(), {shownRow_}, RowField::timecode, toQt(*valid));
            return;
        }
    }
    tellInvalidTimecode();
}

void TakeEditor::tellInvalidTimecode() {
    if (std::exchange(timecodeTold_, true)) return;
    const QString typed = timecode_->text();
    content_.tell(typed.isEmpty()
                      ? tr("The start timecode of %1 was emptied, which is no timecode: it is as it "
                           "was.")
                            .arg(shownName_)
                      : tr("%1 is no timecode: the start timecode of %2 is as it was.").arg(typed, shownName_));
}

void TakeEditor::refreshMarks(int row) {
    const std::set<RowField> edited = content_.rows().editedFields(row);
    const GroupeFichiers& before = content_.rows().groupesOriginauxTableau().at(static_cast<std::size_t>(row));
    const auto colourOf = [&](RowField field) {
        return edited.contains(field) ? theme_.pendingText() : theme_.dimmed();
    };
    for (const Field& field : fields_) {
        const bool isEdited = edited.contains(field.field);
        field.mark->setVisible(isEdited);
        setColour(*field.mark, QPalette::Window, theme_.pending());
        if (field.label != nullptr) setColour(*field.label, QPalette::WindowText, colourOf(field.field));
        if (field.widget == timecode_ && timecodeTyped_) continue;
        const QString was = toQt(textOf(before, field.field));
        field.widget->setAccessibleDescription(!isEdited                      ? QString()
                                               : isMixed(before, field.field) ? tr("not saved; was mixed")
                                               : field.label == nullptr       ? tr("not saved")
                                               : was.isEmpty()                ? tr("not saved; was empty")
                                                                              : tr("not saved; was %1").arg(was));
        if (field.label != nullptr) field.label->setToolTip(field.widget->accessibleDescription());
    }
    setColour(*tracksTitle_, QPalette::WindowText,
              colourOf(edited.contains(RowField::trackNumbers) ? RowField::trackNumbers : RowField::tracks));
    setColour(*cuesTitle_, QPalette::WindowText, colourOf(RowField::cues));
    if (edited.contains(RowField::name)) {
        setColour(*takeName_, QPalette::WindowText, theme_.pendingText());
    } else {
        takeName_->setPalette({});
    }
}

void TakeEditor::applyTheme() {
    for (QLabel* label : headings_)
        setColour(*label, QPalette::WindowText, theme_.dimmed());
    for (QLabel* label : captions_)
        setColour(*label, QPalette::WindowText, theme_.dimmed());
    setColour(*hint_, QPalette::WindowText, theme_.dimmed());
    QFont name = font();
    name.setBold(true);
    takeName_->setFont(name);
    refresh();
}

bool TakeEditor::eventFilter(QObject* object, QEvent* event) {
    switch (event->type()) {
        case QEvent::FocusIn:
            content_.setEnSaisie(object != rate_);
            break;
        case QEvent::FocusOut:
            content_.setEnSaisie(false);
            content_.rows().endCollapsing();
            break;
        case QEvent::Wheel:
            // Scrolling past the menu must not change a frame rate.
            if (object == rate_) {
                event->ignore();
                return true;
            }
            break;
        case QEvent::ShortcutOverride:
        case QEvent::KeyPress: {
            if (object == rate_) break;
            auto* key = static_cast<QKeyEvent*>(event);
            const bool pressed = event->type() == QEvent::KeyPress;
            // Undo is the window's everywhere: a field has no history of its own beside it.
            if (const std::optional<KeyId> step = undoOrRedo(*key)) {
                event->accept();
                if (!pressed) return true;
                if (object == timecode_ && std::exchange(timecodeTyped_, false)) {
                    refresh();  // what was typed is no step yet
                } else {
                    step == KeyId::undo ? content_.undo() : content_.redo();
                    emit stepReplayed();
                }
                return true;
            }
            if (object != timecode_) break;
            if (!pressed && (key->modifiers() & Qt::ControlModifier) && key->key() != Qt::Key_Control) {
                takeOverTimecode();  // the shortcut may be Save
            } else if (pressed && isKey(KeyId::timecodeAsItWas, *key) && timecodeTyped_) {
                timecodeTyped_ = false;
                refresh();
                timecode_->selectAll();
                return true;
            }
            break;
        }
        default:
            break;
    }
    return QWidget::eventFilter(object, event);
}

}  // namespace dravik
