#include "ui/operations/operation_forms.h"

#include "app/text.h"
#include "base/paths.h"
#include "report/report_document.h"
#include "ui/metrics.h"
#include "ui/operations/export_form.h"
#include "ui/operations/rename_pattern_editor.h"
#include "ui/operations/report_form_view.h"
#include "ui/operations/track_checks.h"
#include "ui/operations/track_order_list.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace dravik {
namespace {

bool isOfTracks(std::optional<OperationsTab> tab) {
    return tab == OperationsTab::merge || tab == OperationsTab::split || tab == OperationsTab::deleteTracks ||
           tab == OperationsTab::reorderTracks;
}

/// What the form asks for, above the tracks of a take.
QString headingOf(OperationsTab tab) {
    switch (tab) {
        case OperationsTab::merge:
            return OperationForms::tr("Files to merge");
        case OperationsTab::split:
            return OperationForms::tr("Tracks to split off");
        case OperationsTab::deleteTracks:
            return OperationForms::tr("Tracks to delete");
        case OperationsTab::reorderTracks:
            return OperationForms::tr("New order of the tracks");
        case OperationsTab::rename:
        case OperationsTab::export_:
        case OperationsTab::report:
            break;  // their forms say it themselves
    }
    return {};
}

std::vector<TrackName> namesOf(const std::vector<Piste>& tracks) {
    std::vector<TrackName> names;
    for (const Piste& piste : tracks)
        names.push_back({piste.numero, toQt(piste.nom)});
    return names;
}

QWidget* scrolling(QWidget* content, QWidget* parent) {
    auto* area = new QScrollArea(parent);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);  // its content has the keyboard
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setMinimumWidth(content->minimumSizeHint().width());
    area->setWidget(content);
    return area;
}

}  // namespace

OperationForms::OperationForms(OperationsModel& model, UserDefaults& settings, Dialogs& dialogs, const Theme& theme,
                               QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(metrics::fieldSpacing);
    column->addWidget(makeTracksHead());
    pages_ = new QStackedWidget(this);
    // In the order of the tabs.
    for (QWidget* page : {makeMerge(), makeSplit(), makeDelete(), makeReorder(), makeRename(settings, dialogs),
                          makeExport(), makeReport(settings)})
        pages_->addWidget(page);
    column->addWidget(pages_, 1);

    connect(&model_, &OperationsModel::tabChanged, this, &OperationForms::showTab);
    connect(&model_, &OperationsModel::currentItemChanged, this, &OperationForms::showTracks);
    connect(&model_, &OperationsModel::choicesChanged, this, &OperationForms::showChoices);
    connect(&model_, &OperationsModel::itemsChanged, this, &OperationForms::showSimilar);
    connect(&theme_, &Theme::changed, this, &OperationForms::applyTheme);
    applyTheme();
    showTab();
}

QWidget* OperationForms::makeTracksHead() {
    auto* head = new QWidget(this);
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(metrics::panelMargin);
    title_ = new QLabel(head);
    title_->setFont(metrics::smallFont(*this));
    row->addWidget(title_);
    hint_ = new QLabel(head);
    hint_->setFont(metrics::smallFont(*this));
    hint_->setTextFormat(Qt::PlainText);
    hint_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    row->addWidget(hint_, 1);
    similar_ = new QPushButton(head);
    similar_->setToolTip(tr("The checked takes whose tracks have the same names get the same choices"));
    connect(similar_, &QPushButton::clicked, &model_, &OperationsModel::copyChoicesToSimilar);
    row->addWidget(similar_);
    return head;
}

QWidget* OperationForms::makeMerge() {
    merge_ = new TrackChecks(TrackChecks::Meaning::taken, theme_, this);
    connect(merge_, &TrackChecks::checkedChanged, this, [this](const std::set<int>& taken) {
        TrackChoices choices = model_.currentChoices();
        choices.exclus.clear();
        for (int member = 0; member < mergeMembers(); ++member) {
            if (!taken.contains(member)) choices.exclus.insert(member);
        }
        model_.setCurrentChoices(choices);
    });
    return merge_;
}

QWidget* OperationForms::makeSplit() {
    split_ = new TrackChecks(TrackChecks::Meaning::taken, theme_, this);
    split_->setStereoOffered(true);
    connect(split_, &TrackChecks::checkedChanged, this, [this](const std::set<int>& tracks, bool stereo) {
        TrackChoices choices = model_.currentChoices();
        choices.monoCanaux = tracks;
        choices.stereoTracks12 = stereo;
        model_.setCurrentChoices(choices);
    });
    return split_;
}

QWidget* OperationForms::makeDelete() {
    delete_ = new TrackChecks(TrackChecks::Meaning::removed, theme_, this);
    connect(delete_, &TrackChecks::checkedChanged, this, [this](const std::set<int>& tracks) {
        TrackChoices choices = model_.currentChoices();
        choices.supprimes = tracks;
        model_.setCurrentChoices(choices);
    });
    return delete_;
}

QWidget* OperationForms::makeReorder() {
    auto* page = new QWidget(this);
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(metrics::fieldSpacing);
    order_ = new TrackOrderList(theme_, page);
    connect(order_, &TrackOrderList::orderChanged, this, [this](const std::vector<int>& order) {
        TrackChoices choices = model_.currentChoices();
        choices.ordre = order;
        model_.setCurrentChoices(choices);
    });
    column->addWidget(order_, 1);
    preserve_ = new QCheckBox(tr("Preserve Track Numbers"), page);
    preserve_->setToolTip(tr("Each track keeps its own number; otherwise they are numbered anew"));
    connect(preserve_, &QCheckBox::toggled, &model_, &OperationsModel::setPreserveTrackNumbers);
    column->addWidget(preserve_);
    return page;
}

QWidget* OperationForms::makeRename(UserDefaults& settings, Dialogs& dialogs) {
    auto* page = new QWidget(this);
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(metrics::panelMargin);
    pattern_ = new RenamePatternEditor(settings, dialogs, theme_, page);
    connect(pattern_, &RenamePatternEditor::patternChanged, &model_, &OperationsModel::setRenamePattern);
    column->addWidget(pattern_);
    auto* modes = new QHBoxLayout;
    modes->setSpacing(metrics::panelMargin * 2);
    inPlace_ = new QRadioButton(toQt(label(OperationAudioBatchRenameMode::renameInPlace)), page);
    copies_ = new QRadioButton(
        toQt(label(OperationAudioBatchRenameMode::copyAndRename)).replace(QLatin1Char('&'), QStringLiteral("&&")),
        page);
    inPlace_->setToolTip(tr("The files get their new names where they are"));
    copies_->setToolTip(tr("The files stay; copies with the new names are made in another folder"));
    connect(copies_, &QRadioButton::toggled, this, [this](bool copies) {
        model_.setRenameMode(copies ? OperationAudioBatchRenameMode::copyAndRename
                                    : OperationAudioBatchRenameMode::renameInPlace);
    });
    keepBoth_ = new QCheckBox(tr("Keep Both wherever names collide"), page);
    keepBoth_->setToolTip(tr("Names that collide get a number"));
    connect(keepBoth_, &QCheckBox::toggled, &model_, &OperationsModel::setKeepBoth);
    leaves_ = new QCheckBox(tr("Keep separators of empty values"), page);
    leaves_->setToolTip(tr("Otherwise the separator before a value that a file does not have goes, too"));
    connect(leaves_, &QCheckBox::toggled, &model_, &OperationsModel::setLeavesSeparators);
    auto* rules = new QHBoxLayout;
    rules->setSpacing(metrics::panelMargin * 2);
    for (const auto& [line, one] : std::initializer_list<std::pair<QHBoxLayout*, QWidget*>>{
             {modes, inPlace_}, {modes, copies_}, {rules, keepBoth_}, {rules, leaves_}})
        line->addWidget(one);
    for (QHBoxLayout* line : {modes, rules}) {
        line->addStretch();
        column->addLayout(line);
    }
    column->addStretch();
    return scrolling(page, this);
}

QWidget* OperationForms::makeExport() {
    export_ = new ExportForm;
    connect(export_, &ExportForm::stateChanged, &model_, &OperationsModel::setExportState);
    return scrolling(export_, this);
}

QWidget* OperationForms::makeReport(UserDefaults& settings) {
    report_ = new ReportFormView(settings, theme_);
    connect(report_, &ReportFormView::formChanged, &model_, &OperationsModel::setReportForm);
    connect(report_, &ReportFormView::tapeChanged, &model_, &OperationsModel::setReportTape);
    auto* page = new QWidget(this);
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(report_);
    column->addStretch();
    return scrolling(page, this);
}

void OperationForms::showTab() {
    const std::optional<OperationsTab> tab = model_.tab();
    if (!tab) return;
    title_->setText(headingOf(*tab));
    title_->parentWidget()->setVisible(isOfTracks(tab));
    pages_->setCurrentIndex(static_cast<int>(*tab));
    showTracks();
}

int OperationForms::mergeMembers() const {
    return static_cast<int>(model_.currentFiles().size() + model_.currentUnreadable().size());
}

void OperationForms::showTracks() {
    const std::optional<OperationsTab> tab = model_.tab();
    const int item = model_.currentItem();
    const bool ofTake = isOfTracks(tab) && item >= 0;
    const std::vector<Piste> tracks = model_.currentTracks();
    hint_->setText(ofTake ? model_.items()[static_cast<std::size_t>(item)].name : QString());
    if (tab == OperationsTab::merge) {
        std::vector<TrackName> members = namesOf(tracks);
        const std::vector<std::filesystem::path> files = model_.currentFiles();
        for (std::size_t at = 0; at < std::min(members.size(), files.size()); ++at) {
            const QString file = toQt(fileNameText(files[at]));
            members[at].nom = members[at].nom.isEmpty() ? file : QStringLiteral("%1 — %2").arg(members[at].nom, file);
        }
        for (const UnreadableTrack& track : model_.currentUnreadable())
            members.push_back(
                {static_cast<int>(members.size()) + 1, tr("%1 cannot be read").arg(toQt(fileNameText(track.url)))});
        merge_->setTracks(std::move(members));
    } else if (tab == OperationsTab::split) {
        split_->setTracks(namesOf(tracks));
    } else if (tab == OperationsTab::deleteTracks) {
        delete_->setTracks(namesOf(tracks));
    } else if (tab == OperationsTab::export_) {
        export_->setTracks(namesOf(tracks));
    } else if (tab == OperationsTab::report) {
        report_->setFileValues(model_.fileValues());
    }
    showChoices();
}

void OperationForms::showChoices() {
    const TrackChoices choices = model_.currentChoices();
    const std::optional<OperationsTab> tab = model_.tab();
    if (tab == OperationsTab::merge) {
        std::set<int> taken;
        for (int member = 0; member < mergeMembers(); ++member) {
            if (!choices.exclus.contains(member)) taken.insert(member);
        }
        merge_->setChecked(taken);
    } else if (tab == OperationsTab::split) {
        split_->setChecked(choices.monoCanaux, choices.stereoTracks12);
    } else if (tab == OperationsTab::deleteTracks) {
        delete_->setChecked(choices.supprimes);
    } else if (tab == OperationsTab::reorderTracks) {
        const std::vector<TrackName> tracks = namesOf(model_.currentTracks());
        if (order_->order() != choices.ordre || shownOrder_ != model_.currentFiles()) {
            order_->setTracks(tracks, choices.ordre);
            shownOrder_ = model_.currentFiles();
        }
        const QSignalBlocker quiet(preserve_);
        preserve_->setChecked(model_.preserveTrackNumbers());
    } else if (tab == OperationsTab::rename) {
        const BatchRenameChoice& rename = model_.renameChoice();
        if (!isSamePattern(rename.pattern, pattern_->pattern())) pattern_->setPattern(rename.pattern);
        const bool copies = rename.mode == OperationAudioBatchRenameMode::copyAndRename;
        for (const auto& [button, on] :
             {std::pair<QAbstractButton*, bool>{inPlace_, !copies},
              {copies_, copies},
              {keepBoth_, rename.keepBoth},
              {leaves_, rename.emptyTokens == OperationsAudio::EmptyTokens::leaveSeparators}}) {
            const QSignalBlocker quiet(button);
            button->setChecked(on);
        }
    } else if (tab == OperationsTab::export_) {
        export_->setState(model_.exportState());
    } else if (tab == OperationsTab::report) {
        if (report_->form() != model_.reportForm()) report_->setForm(model_.reportForm());
        if (report_->tape() != model_.reportTape()) report_->setTape(model_.reportTape());
    }
    showSimilar();
}

void OperationForms::showSimilar() {
    const bool offered = isOfTracks(model_.tab());
    const int others = offered ? model_.similarCount() : 0;
    similar_->setVisible(others > 0);
    if (others > 0) {
        similar_->setText(tr("Use for %Ln More Take(s)", nullptr, others));
    }
}

void OperationForms::applyTheme() {
    QPalette palette = this->palette();
    palette.setColor(QPalette::WindowText, theme_.dimmed());
    title_->setPalette(palette);
}

}  // namespace dravik
