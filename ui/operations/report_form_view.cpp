#include "ui/operations/report_form_view.h"

#include "app/report_defaults.h"
#include "app/text.h"
#include "model/wave/timecode.h"
#include "ui/list_looks.h"
#include "ui/metrics.h"
#include "ui/operations/elided_box.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QScopedValueRollback>
#include <QVBoxLayout>
#include <algorithm>
#include <span>

namespace dravik {
namespace {

constexpr int savedShownMilliseconds = 2500;
constexpr int notesLines = 4;
constexpr int columnsAcross = 4;
/// Boxes are as wide as their usual texts; what files say may be cut.
constexpr int usualLetters = 11;
constexpr int leastNameWidth = 110;
constexpr int customWidth = 96;
/// Of a row, so that those of both sides stand level.
constexpr int fieldRowHeight = 26;

/// Names and their fields, in as many rows on both sides.
void makeRows(QGridLayout& grid) {
    constexpr int rows = 5;
    grid.setColumnStretch(1, 1);
    grid.setVerticalSpacing(metrics::fieldSpacing);
    for (int row = 0; row < rows; ++row)
        grid.setRowMinimumHeight(row, fieldRowHeight);
}

/// An entry of the list, and the text it shows.
void addEntries(QComboBox& box, std::span<const std::string_view> entries) {
    for (const std::string_view entry : entries)
        box.addItem(inItsOwnDirection(toQt(entry), box.layoutDirection()), toQt(entry));
}

}  // namespace

ReportFormView::ReportFormView(UserDefaults& settings, const Theme& theme, QWidget* parent)
    : QWidget(parent), settings_(settings), theme_(theme), form_(reportDefaults(settings)) {
    auto* fields = new QHBoxLayout;
    fields->setSpacing(2 * metrics::panelMargin);
    fields->addWidget(makeNames(), 1);
    fields->addWidget(makeChoices(), 1);
    notes_ = new NoteEdit(static_cast<int>(longestTypedText), this);
    notes_->setAccessibleName(tr("Report Notes"));
    notes_->setTabChangesFocus(true);
    notes_->setFixedHeight(notesLines * fontMetrics().lineSpacing() + 2 * metrics::panelMargin);
    connect(notes_, &QPlainTextEdit::textChanged, this, [this] {
        if (filling_) return;
        form_.notesGlobales = notes_->toPlainText().toStdString();
        changed();
    });
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(metrics::panelMargin);
    layout->addLayout(fields);
    layout->addWidget(heading(tr("Report Notes")));
    layout->addWidget(notes_);
    layout->addWidget(heading(tr("Columns")));
    layout->addWidget(makeColumns());
    layout->addWidget(heading(tr("Documents")));
    layout->addWidget(makeButtons());
    savedShown_.setSingleShot(true);
    savedShown_.setInterval(savedShownMilliseconds);
    connect(&savedShown_, &QTimer::timeout, this, [this] { setDefault_->setText(tr("Set as Default")); });
    connect(&theme_, &Theme::changed, this, &ReportFormView::applyTheme);
    applyTheme();
    refresh();
}

ReportFormView::~ReportFormView() { stopListeningToChildren(*this); }

QLabel* ReportFormView::heading(const QString& text) {
    headings_.push_back(new QLabel(text, this));
    return headings_.back();
}

QLineEdit* ReportFormView::addLine(QGridLayout& grid, int row, const QString& title) {
    auto* line = new QLineEdit(this);
    line->setMaxLength(static_cast<int>(longestTypedText));
    line->setMinimumWidth(leastNameWidth);
    line->setAccessibleName(title);
    auto* label = new QLabel(tr("%1:", "the caption of a field").arg(title), this);
    label->setBuddy(line);
    grid.addWidget(label, row, 0);
    grid.addWidget(line, row, 1);
    return line;
}

void ReportFormView::addText(QGridLayout& grid, int row, const QString& title, std::string ReportForm::*text) {
    QLineEdit* line = addLine(grid, row, title);
    connect(line, &QLineEdit::textEdited, this, [this, text](const QString& typed) {
        form_.*text = typed.toStdString();
        changed();
    });
    texts_.push_back({line, text});
}

QWidget* ReportFormView::makeNames() {
    auto* names = new QWidget(this);
    auto* grid = new QGridLayout(names);
    grid->setContentsMargins({});
    makeRows(*grid);
    addText(*grid, 0, tr("Production"), &ReportForm::production);
    addText(*grid, 1, tr("Work Title"), &ReportForm::nomOeuvre);
    addText(*grid, 2, tr("Director"), &ReportForm::realisateur);
    addText(*grid, 3, tr("Sound Mixer"), &ReportForm::ingenieurSon);
    tape_ = addLine(*grid, 4, tr("Tape"));
    connect(tape_, &QLineEdit::textEdited, this, &ReportFormView::tapeChanged);
    return names;
}

void ReportFormView::addChoice(QGridLayout& grid, int row, const QString& title, const Choice& choice) {
    auto* caption = new QLabel(tr("%1:", "the caption of a field").arg(title), this);
    caption->setBuddy(choice.box);
    choice.box->addItem(tr("Custom…"), toQt(customChoice));
    choice.box->setAccessibleName(title);
    choice.box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    choice.box->setMinimumContentsLength(usualLetters);
    const QString custom = tr("Custom %1").arg(title);
    choice.custom->setAccessibleName(custom);
    choice.custom->setToolTip(custom);
    choice.custom->setPlaceholderText(custom);
    choice.custom->setMaxLength(static_cast<int>(longestTypedText));
    choice.custom->setMinimumWidth(customWidth);
    connect(choice.box, &QComboBox::activated, this, [this, choice] {
        form_.*choice.mode = choice.box->currentData().toString().toStdString();
        refreshChoices();
        if (form_.*choice.mode == customChoice) choice.custom->setFocus(Qt::OtherFocusReason);
        changed();
    });
    connect(choice.custom, &QLineEdit::textEdited, this, [this, choice](const QString& typed) {
        form_.*choice.text = typed.toStdString();
        changed();
    });
    grid.addWidget(caption, row, 0);
    // Beside each other, so that nothing below moves.
    auto* line = new QHBoxLayout;
    line->setSpacing(metrics::fieldSpacing);
    line->addWidget(choice.box, 1);
    line->addWidget(choice.custom, 1);
    grid.addLayout(line, row, 1);
    choices_.push_back(choice);
}

QWidget* ReportFormView::makeChoices() {
    auto* choices = new QWidget(this);
    auto* grid = new QGridLayout(choices);
    grid->setContentsMargins({});
    makeRows(*grid);
    const auto make = [this](std::span<const std::string_view> entries, bool filesSay) {
        auto* box = new ElidedBox(this);
        if (filesSay) box->addItem(QString(), toQt(filesChoice));
        addEntries(*box, entries);
        return box;
    };
    using F = ReportForm;
    addChoice(*grid, 0, tr("Reference Level"),
              {make(referenceChoices, false), new QLineEdit(this), &F::referenceMode, &F::referenceAutre, nullptr});
    addChoice(*grid, 1, tr("Frame Rate"),
              {make(framerateLabels, true), new QLineEdit(this), &F::framerateMode, &F::framerateAutre,
               &FileValues::framerate});
    addChoice(*grid, 2, tr("Sample Rate"),
              {make(sampleRateChoices, true), new QLineEdit(this), &F::sampleRateMode, &F::sampleRateAutre,
               &FileValues::sampleRate});
    addChoice(
        *grid, 3, tr("Bit Depth"),
        {make(bitDepthChoices, true), new QLineEdit(this), &F::bitDepthMode, &F::bitDepthAutre, &FileValues::bitDepth});
    return choices;
}

QWidget* ReportFormView::makeColumns() {
    auto* columns = new QWidget(this);
    auto* grid = new QGridLayout(columns);
    grid->setContentsMargins({});
    grid->setVerticalSpacing(metrics::fieldSpacing);
    auto* name = new QCheckBox(toQt(titleOf(ReportColumn::fileName)), columns);
    name->setChecked(true);
    name->setEnabled(false);
    name->setToolTip(tr("Always the first column"));
    grid->addWidget(name, 0, 0);
    int place = 1;
    for (const ReportColumnInfo& info : optionalColumns()) {
        auto* box = new QCheckBox(toQt(info.title), columns);
        connect(box, &QCheckBox::clicked, this, [this, on = info.chosen](bool checked) {
            form_.colonnes.*on = checked;
            changed();
        });
        grid->addWidget(box, place / columnsAcross, place % columnsAcross);
        columns_.push_back({box, info.chosen});
        ++place;
    }
    return columns;
}

QWidget* ReportFormView::makeButtons() {
    auto* line = new QWidget(this);
    auto* layout = new QHBoxLayout(line);
    layout->setContentsMargins({});
    const std::pair<const char*, bool ReportForm::*> documents[] = {{"PDF", &ReportForm::inclurePDF},
                                                                    {"CSV", &ReportForm::inclureCSV}};
    for (const auto& [title, on] : documents) {
        auto* box = new QCheckBox(QString::fromLatin1(title), line);
        connect(box, &QCheckBox::clicked, this, [this, on = on](bool checked) {
            form_.*on = checked;
            changed();
        });
        layout->addWidget(box);
        layout->addSpacing(metrics::panelMargin);
        switches_.push_back({box, on});
    }
    layout->addStretch();
    auto* load = new QPushButton(tr("Load Defaults"), line);
    load->setToolTip(tr("Fill the form with what was kept"));
    load->setAutoDefault(false);
    connect(load, &QPushButton::clicked, this, [this] {
        setForm(reportDefaults(settings_));
        changed();
    });
    setDefault_ = new QPushButton(tr("✓ Defaults Saved"), line);
    setDefault_->setMinimumWidth(setDefault_->sizeHint().width());
    setDefault_->setText(tr("Set as Default"));
    setDefault_->setToolTip(tr("Keep what the form says for the next report; the tape is not kept"));
    setDefault_->setAutoDefault(false);
    connect(setDefault_, &QPushButton::clicked, this, [this] {
        saveReportDefaults(settings_, form_);
        setDefault_->setText(tr("✓ Defaults Saved"));
        savedShown_.start();
    });
    layout->addWidget(load);
    layout->addWidget(setDefault_);
    return line;
}

void ReportFormView::setForm(const ReportForm& form) {
    form_ = form;
    refresh();
}

void ReportFormView::setTape(const QString& tape) {
    if (tape != tape_->text()) tape_->setText(tape);
}

QString ReportFormView::tape() const { return tape_->text().trimmed(); }

void ReportFormView::setFileValues(const FileValues& values) {
    ofFiles_ = values;
    texts_.front().line->setPlaceholderText(toQt(values.production));
    tape_->setPlaceholderText(values.tape.empty() ? tr("None") : toQt(values.tape));
    refreshChoices();
}

void ReportFormView::refresh() {
    const QScopedValueRollback<bool> fills(filling_, true);
    for (const TextField& field : texts_) {
        const QString text = toQt(form_.*field.text);
        if (field.line->text() != text) field.line->setText(text);
    }
    for (const Switch& one : switches_)
        one.box->setChecked(form_.*one.on);
    for (const Column& one : columns_)
        one.box->setChecked(form_.colonnes.*one.on);
    const QString notes = toQt(form_.notesGlobales);
    if (notes_->toPlainText() != notes) notes_->setPlainText(notes);
    refreshChoices();
}

void ReportFormView::refreshChoices() {
    for (const Choice& choice : choices_) {
        const QString mode = toQt(form_.*choice.mode);
        // One that was kept by another version is no entry of this list yet.
        if (choice.box->findData(mode) < 0) choice.box->insertItem(choice.box->count() - 1, mode, mode);
        choice.box->setCurrentIndex(choice.box->findData(mode));
        choice.custom->setVisible(mode == toQt(customChoice));
        const QString text = toQt(form_.*choice.text);
        if (choice.custom->text() != text) choice.custom->setText(text);
        if (choice.ofFiles == nullptr) continue;
        const QString said = toQt(ofFiles_.*choice.ofFiles);
        choice.box->setItemText(choice.box->findData(toQt(filesChoice)),
                                said.isEmpty()
                                    ? tr("From the files")
                                    : tr("From the files (%1)").arg(inItsOwnDirection(said, layoutDirection())));
        choice.box->setToolTip(choice.box->currentText());
    }
}

void ReportFormView::changed() { emit formChanged(form_); }

void ReportFormView::applyTheme() {
    for (QLabel* one : headings_) {
        one->setFont(metrics::smallFont(*this));
        one->setForegroundRole(QPalette::PlaceholderText);
    }
}

}  // namespace dravik
