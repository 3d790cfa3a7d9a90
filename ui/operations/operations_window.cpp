#include "ui/operations/operations_window.h"

#include "app/text.h"
#include "ui/list_looks.h"
#include "ui/metrics.h"
#include "ui/operations/elided_label.h"
#include "ui/operations/operation_forms.h"
#include "ui/operations/operation_icons.h"
#include "ui/operations/operation_preview_table.h"
#include "ui/operations/take_check_list.h"
#include "ui/shortcuts.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

namespace dravik {
namespace {

constexpr const char* geometryKey = "DravikOperations.geometry";
constexpr const char* acrossKey = "DravikOperations.across";
constexpr const char* downKey = "DravikOperations.down";
constexpr QSize firstSize(1000, 680);
constexpr QSize leastSize(720, 480);
constexpr int tabsWidth = 150;
constexpr int tabHeight = 30;
constexpr int takesWidth = 300;
/// Two documents and what stands around them.
constexpr int reportPreviewHeight = 110;
constexpr int previewHeight = 210;
constexpr int largeText = 16;
constexpr std::chrono::seconds toldTime{6};

/// The button that runs it: called like its tab, but where that would not say what is done.
QString verbOf(const OperationsModel& model) {
    const OperationsTab tab = *model.tab();
    if (tab == OperationsTab::report) return OperationsWindow::tr("Create Report");
    if (tab == OperationsTab::rename && model.needsDestination()) return OperationsWindow::tr("Copy && Rename");
    return textsOf(tab).title;
}

QWidget* line(Qt::Orientation orientation, QWidget* parent) {
    auto* drawn = new QFrame(parent);
    drawn->setFrameShape(orientation == Qt::Horizontal ? QFrame::HLine : QFrame::VLine);
    drawn->setFrameShadow(QFrame::Plain);
    drawn->setForegroundRole(QPalette::Mid);
    return drawn;
}

}  // namespace

OperationsWindow::OperationsWindow(const Services& services, QWidget* parent)
    : QWidget(parent, Qt::Window), services_(services) {
    setObjectName(QStringLiteral("DravikOperations"));
    setWindowTitle(tr("Operations"));
    setMinimumSize(leastSize);

    auto* work = new QWidget(this);
    auto* column = new QVBoxLayout(work);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    across_ = new QSplitter(Qt::Horizontal, work);
    across_->setChildrenCollapsible(false);
    across_->addWidget(makeTakes());
    across_->addWidget(makeForm());
    across_->setStretchFactor(1, 1);
    down_ = new QSplitter(Qt::Vertical, work);
    down_->setChildrenCollapsible(false);
    down_->addWidget(across_);
    down_->addWidget(makePreview());
    down_->setStretchFactor(0, 1);
    column->addWidget(down_, 1);
    column->addWidget(line(Qt::Horizontal, work));
    column->addWidget(makeFoot());

    pages_ = new QStackedWidget(this);
    pages_->addWidget(makeEmpty());
    pages_->addWidget(work);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(makeTabs());
    row->addWidget(line(Qt::Vertical, this));
    row->addWidget(pages_, 1);
    overlay_ = new OperationOverlay(services_.theme, pages_);

    // Keys of the main window that are of use here, too.
    const std::pair<KeyId, void (Commands::*)()> keys[] = {
        {KeyId::nextOperationsTab, &Commands::dravikOperationsNextTab},
        {KeyId::previousOperationsTab, &Commands::dravikOperationsPreviousTab},
        {KeyId::save, &Commands::dravikSaveChanges}};
    for (const auto& [key, command] : keys) {
        auto* made = new QAction(shortcut(key).name(), this);
        made->setShortcut(keyOf(key));
        connect(made, &QAction::triggered, this,
                [&commands = services_.commands, command = command] { emit(commands.*command)(); });
        addAction(made);
    }
    toldFor_.setSingleShot(true);
    toldFor_.setInterval(toldTime);
    connect(&toldFor_, &QTimer::timeout, told_, &QLabel::clear);
    connectModel();
    connect(&services_.theme, &Theme::changed, this, &OperationsWindow::applyTheme);
    applyTheme();
    restoreLayout();
    showTab();
    showRunning();
}

OperationsWindow::~OperationsWindow() {
    stopListeningToChildren(*this);
    services_.model.setAfficherOperations(false);
}

// --- What it is made of --------------------------------------------------------------------------------------------

QWidget* OperationsWindow::makeEmpty() {
    auto* empty = new QWidget(this);
    auto* middle = new QVBoxLayout(empty);
    middle->addStretch();
    emptyTitle_ = new QLabel(empty);
    QFont large = font();
    large.setPixelSize(largeText);
    emptyTitle_->setFont(large);
    emptyMessage_ = new QLabel(empty);
    emptyMessage_->setWordWrap(true);
    for (QLabel* label : {emptyTitle_, emptyMessage_})
        label->setAlignment(Qt::AlignHCenter);
    emptyAll_ = new QPushButton(tr("Use All Takes of the Folder"), empty);
    connect(emptyAll_, &QPushButton::clicked, this, [this] { services_.model.setAppliquerTous(true); });
    middle->addWidget(emptyTitle_, 0, Qt::AlignHCenter);
    middle->addWidget(emptyMessage_);
    middle->addWidget(emptyAll_, 0, Qt::AlignHCenter);
    middle->addStretch();
    return empty;
}

QWidget* OperationsWindow::makeTabs() {
    tabs_ = new QListWidget(this);
    tabs_->setAccessibleName(tr("Operations"));
    tabs_->setFrameShape(QFrame::NoFrame);
    tabs_->setUniformItemSizes(true);
    tabs_->setIconSize(QSize(metrics::toolIconSide, metrics::toolIconSide));
    tabs_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (const OperationsTab tab : allOperationsTabs) {
        tabItems_[tab] = new QListWidgetItem(textsOf(tab).title, tabs_);
        tabItems_[tab]->setIcon(services_.theme.icon(QString::fromLatin1(iconNameOf(tab))));
    }
    const int width = std::max(tabsWidth, tabs_->sizeHintForColumn(0));
    tabs_->setFixedWidth(width);
    for (const auto& [tab, item] : tabItems_)
        item->setSizeHint(QSize(width, tabHeight));
    connect(tabs_, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row < 0) return;
        const OperationsTab tab = allOperationsTabs[static_cast<std::size_t>(row)];
        // Refused while one runs: the list goes back to the tab that is shown, when it has dealt with the click.
        if (!services_.model.setTab(tab)) QTimer::singleShot(0, this, &OperationsWindow::showTab);
    });
    return tabs_;
}

QWidget* OperationsWindow::makeTakes() {
    takesPane_ = new QWidget(this);
    auto* column = new QVBoxLayout(takesPane_);
    column->setContentsMargins(metrics::panelMargin, metrics::panelMargin, metrics::panelMargin, metrics::panelMargin);
    column->setSpacing(metrics::fieldSpacing);
    all_ = new QCheckBox(tr("Apply to all takes of the folder"), takesPane_);
    all_->setToolTip(tr("Otherwise to the takes that are selected in the main window"));
    connect(all_, &QCheckBox::toggled, &services_.model, &OperationsModel::setAppliquerTous);
    column->addWidget(all_);
    takes_ = new TakeCheckList(services_.theme, takesPane_);
    connect(takes_, &TakeCheckList::checkedChanged, &services_.model, &OperationsModel::setChecked);
    connect(takes_, &TakeCheckList::allCheckedChanged, &services_.model, &OperationsModel::setAllChecked);
    connect(takes_, &TakeCheckList::currentChanged, &services_.model, &OperationsModel::setCurrentItem);
    column->addWidget(takes_, 1);
    return takesPane_;
}

QWidget* OperationsWindow::makeForm() {
    auto* pane = new QWidget(this);
    auto* column = new QVBoxLayout(pane);
    column->setContentsMargins(metrics::panelMargin, metrics::panelMargin, metrics::panelMargin, metrics::panelMargin);
    forms_ = new OperationForms(services_.model, services_.settings, services_.dialogs, services_.theme, pane);
    column->addWidget(forms_);
    return pane;
}

QWidget* OperationsWindow::makePreview() {
    previewPane_ = new QWidget(this);
    auto* column = new QVBoxLayout(previewPane_);
    column->setContentsMargins(metrics::panelMargin, metrics::panelMargin, metrics::panelMargin, 0);
    preview_ = new OperationPreviewTable(tr("New files"), services_.theme, previewPane_);
    connect(preview_, &OperationPreviewTable::keepBothRequested, &services_.model, &OperationsModel::keepBothFor);
    column->addWidget(preview_);
    return previewPane_;
}

QWidget* OperationsWindow::makeFoot() {
    auto* foot = new QWidget(this);
    auto* row = new QHBoxLayout(foot);
    row->setContentsMargins(metrics::panelMargin, metrics::panelMargin, metrics::panelMargin, metrics::panelMargin);
    row->setSpacing(metrics::panelMargin);
    choose_ = new QPushButton(tr("Destination…"), foot);
    choose_->setToolTip(tr("Choose the folder that the new files go to"));
    connect(choose_, &QPushButton::clicked, &services_.model, &OperationsModel::chooseDestination);
    row->addWidget(choose_);
    destination_ = new ElidedLabel(foot);
    row->addWidget(destination_, 1);
    beside_ = new QPushButton(tr("Beside the Recordings"), foot);
    beside_->setToolTip(tr("New files go into the folder of what they are made of"));
    connect(beside_, &QPushButton::clicked, this, [this] { services_.model.setDestination(std::nullopt); });
    row->addWidget(beside_);
    told_ = new QLabel(foot);
    row->addWidget(told_);
    run_ = new QPushButton(foot);
    run_->setObjectName(QStringLiteral("run"));
    run_->setDefault(true);
    connect(run_, &QPushButton::clicked, &services_.model, &OperationsModel::run);
    row->addWidget(run_);
    return foot;
}

void OperationsWindow::connectModel() {
    OperationsModel& model = services_.model;
    connect(&model, &OperationsModel::presentRequested, this, &OperationsWindow::present);
    connect(&model, &OperationsModel::tabChanged, this, &OperationsWindow::showTab);
    connect(&model, &OperationsModel::itemsChanged, this, &OperationsWindow::showItems);
    connect(&model, &OperationsModel::currentItemChanged, this,
            [this] { takes_->setCurrentRow(services_.model.currentItem()); });
    connect(&model, &OperationsModel::choicesChanged, this, &OperationsWindow::showDestination);
    connect(&model, &OperationsModel::destinationChanged, this, &OperationsWindow::showDestination);
    connect(&model, &OperationsModel::previewChanged, this, &OperationsWindow::showPreview);
    connect(&model, &OperationsModel::notice, this, &OperationsWindow::tell);
    OperationsRun& running = model.running();
    connect(&running, &OperationsRun::overlayChanged, this, &OperationsWindow::showRunning);
    connect(overlay_, &OperationOverlay::cancelRequested, &running, &OperationsRun::cancel);
    connect(overlay_, &OperationOverlay::dismissed, &running, &OperationsRun::dismiss);
    connect(overlay_, &OperationOverlay::revealRequested, &model, &OperationsModel::reveal);
}

// --- What it shows -------------------------------------------------------------------------------------------------

void OperationsWindow::showTab() {
    const std::optional<OperationsTab> tab = services_.model.tab();
    {
        const QSignalBlocker quiet(tabs_);
        tabs_->setCurrentItem(tab ? tabItems_.at(*tab) : nullptr);
    }
    if (!tab) {
        showItems();
        return;
    }
    takesPane_->setVisible(tab != OperationsTab::report);
    showReportLayout(tab == OperationsTab::report);
    const bool renames = tab == OperationsTab::rename;
    const OperationTexts texts = textsOf(*tab);
    takes_->setNoun(texts.noun);
    preview_->setHeads(texts.heading, renames ? tr("New Name") : tr("New File"));
    preview_->setKeepBothOffered(renames);
    showItems();
    showDestination();
    showPreview();
}

void OperationsWindow::showReportLayout(bool report) {
    if (report == downSizes_.has_value()) return;
    previewPane_->setMaximumHeight(report ? reportPreviewHeight : QWIDGETSIZE_MAX);
    if (report) {
        downSizes_ = down_->sizes();
        down_->setSizes({down_->height() - reportPreviewHeight, reportPreviewHeight});
    } else {
        down_->setSizes(*downSizes_);
        downSizes_.reset();
    }
}

void OperationsWindow::showItems() {
    const OperationsModel& model = services_.model;
    const EmptyState empty = model.emptyState();
    emptyTitle_->setText(empty.title);
    emptyTitle_->setVisible(!empty.title.isEmpty());
    emptyMessage_->setText(empty.message);
    // The folder has some, the selection has not.
    emptyAll_->setVisible(model.tab() && empty.title.isEmpty() && model.canChooseAll() && !model.appliquerTous());
    pages_->setCurrentIndex(empty.isEmpty() ? 1 : 0);
    std::vector<TakeCheckRow> rows;
    rows.reserve(model.items().size());
    for (const OperationsModel::Item& item : model.items())
        rows.push_back({item.name, item.summary, item.checked});
    takes_->setRows(std::move(rows));
    takes_->setCurrentRow(model.currentItem());
    const QSignalBlocker quiet(all_);
    all_->setChecked(model.appliquerTous());
}

void OperationsWindow::showDestination() {
    const OperationsModel& model = services_.model;
    if (!model.tab()) return;
    const std::optional<std::filesystem::path> folder = model.destination();
    const bool inPlace = model.tab() == OperationsTab::rename && !model.needsDestination();
    choose_->setVisible(!inPlace);
    beside_->setVisible(!inPlace && folder && !model.needsDestination());
    if (inPlace) {
        destination_->show(tr("The files are renamed where they are; their contents stay as they are."));
    } else if (folder) {
        destination_->show(toQt(*folder));
    } else {
        destination_->show(model.needsDestination()
                               ? QString::fromUtf8(noDestinationSelected.data(), std::ssize(noDestinationSelected))
                               : tr("Beside the recordings"));
    }
    run_->setText(verbOf(model));
}

void OperationsWindow::showPreview() {
    const OperationsModel& model = services_.model;
    const OperationPreview& preview = model.preview();
    run_->setEnabled(model.canRun());
    if (model.isPlanning()) return;  // what is shown is about to be replaced: no flicker while somebody types
    preview_->setRows(preview.rows);
    const bool told = !preview.problems.isEmpty();
    preview_->setCounts(told && !preview.summary.isEmpty()
                            ? QStringLiteral("%1 — %2").arg(preview.summary, preview.problems)
                            : preview.summary + preview.problems,
                        told && !preview.waits);
}

void OperationsWindow::showRunning() {
    overlay_->setState(services_.model.running().overlay());
    showPreview();
}

void OperationsWindow::applyTheme() {
    for (const auto& [tab, item] : tabItems_)
        item->setIcon(services_.theme.icon(QLatin1String(iconNameOf(tab))));
    tabs_->setPalette(listPalette(services_.theme));
    QPalette dimmed = palette();
    dimmed.setColor(QPalette::WindowText, services_.theme.dimmed());
    for (QLabel* label : std::initializer_list<QLabel*>{destination_, emptyMessage_})
        label->setPalette(dimmed);
    QPalette error = palette();
    error.setColor(QPalette::WindowText, services_.theme.error());
    told_->setPalette(error);
}

void OperationsWindow::tell(const QString& text) {
    told_->setText(text);
    toldFor_.start();
}

// --- The window ----------------------------------------------------------------------------------------------------

void OperationsWindow::present() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void OperationsWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    services_.model.setAfficherOperations(true);
    if (services_.model.tab()) takes_->setFocus();
}

void OperationsWindow::closeEvent(QCloseEvent* event) {
    // What runs goes on, and the window shows it when it is opened again.
    rememberLayout();
    services_.model.setAfficherOperations(false);
    QWidget::closeEvent(event);
}

bool OperationsWindow::event(QEvent* event) {
    // Plain keys are the controls' here, not the transport's of the main window.
    if (event->type() == QEvent::ShortcutOverride &&
        (static_cast<QKeyEvent*>(event)->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::NoModifier) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void OperationsWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        // Whoever leaves a field does not leave the window.
        const QWidget* focused = focusWidget();
        const bool types = qobject_cast<const QLineEdit*>(focused) || qobject_cast<const QPlainTextEdit*>(focused);
        if (!types) {
            close();
        } else if (takes_->isVisible()) {
            takes_->setFocus();
        } else {
            tabs_->setFocus();
        }
    } else {
        QWidget::keyPressEvent(event);
    }
}

void OperationsWindow::restoreLayout() {
    if (!restoreGeometry(services_.settings.stored(QLatin1String(geometryKey)).toByteArray())) resize(firstSize);
    if (!across_->restoreState(services_.settings.stored(QLatin1String(acrossKey)).toByteArray()))
        across_->setSizes({takesWidth, firstSize.width() - takesWidth});
    if (!down_->restoreState(services_.settings.stored(QLatin1String(downKey)).toByteArray()))
        down_->setSizes({firstSize.height() - previewHeight, previewHeight});
}

void OperationsWindow::rememberLayout() {
    services_.settings.store(QLatin1String(geometryKey), saveGeometry());
    services_.settings.store(QLatin1String(acrossKey), across_->saveState());
    if (!downSizes_) services_.settings.store(QLatin1String(downKey), down_->saveState());
}

}  // namespace dravik
