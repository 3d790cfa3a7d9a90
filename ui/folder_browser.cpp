#include "ui/folder_browser.h"

#include "app/text.h"
#include "editing/folder_actions.h"
#include "model/audio_metadata.h"
#include "ui/folder_tree.h"
#include "ui/list_looks.h"
#include "ui/shortcuts.h"

#include <QDir>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>

namespace dravik {
namespace {

using namespace std::chrono_literals;

/// Cards and drives come and go at a human pace.
constexpr auto volumesEvery = 3s;
/// A recorder that empties itself into a folder changes it many times in a row.
constexpr auto settleTime = 300ms;
/// What the system grants a user is a few thousand; no screen shows more open folders than this.
constexpr std::size_t maxWatched = 256;

/// Is it this folder or one above it? Letter case counts: a folder may just have got another.
bool leadsTo(const std::filesystem::path& folder, const std::filesystem::path& target) {
    return std::mismatch(folder.begin(), folder.end(), target.begin(), target.end()).first == folder.end();
}

}  // namespace

FolderBrowser::FolderBrowser(ContentView& content, Workspace& workspace, Dialogs& dialogs, FileOps& files,
                             const Theme& theme, QWidget* parent)
    : QWidget(parent),
      content_(content),
      theme_(theme),
      commands_({content, workspace, dialogs, files}),
      model_(new FolderTreeModel(files, theme, this)),
      tree_(new FolderTree(this)) {
    setAccessibleName(tr("Folder browser"));
    title_ = new QLabel(tr("Folders"), this);
    newButton_ = new QToolButton(this);
    refreshButton_ = new QToolButton(this);
    auto* head = new QHBoxLayout;
    head->setContentsMargins(8, 2, 4, 0);
    head->setSpacing(0);
    head->addWidget(title_, 1);
    head->addWidget(newButton_);
    head->addWidget(refreshButton_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(2);
    layout->addLayout(head);
    layout->addWidget(tree_, 1);
    makeProgress();
    layout->addWidget(progress_);

    tree_->setModel(model_);
    tree_->setAccessibleName(tr("Volumes and folders"));
    makeActions();
    FolderTree::Hooks hooks;
    hooks.open = [this](const QModelIndex& index) {
        if (index.isValid()) commands_.open(model_->pathOf(index));
    };
    hooks.eject = [this](const QModelIndex& index) { commands_.eject(model_->pathOf(index)); };
    hooks.typing = [this](bool typing) { content_.setEnSaisie(typing); };
    hooks.actions = [this] {
        updateActions();
        return std::vector<QAction*>{open_, newFolder_, duplicate_, rename_, trash_, reveal_, eject_, refresh_};
    };
    hooks.touched = [this] { revealing_.reset(); };
    tree_->setHooks(std::move(hooks));
    connect(tree_, &QWidget::customContextMenuRequested, this, &FolderBrowser::showMenu);
    connect(tree_, &QTreeView::expanded, this, &FolderBrowser::updateWatched);
    connect(tree_, &QTreeView::collapsed, this, &FolderBrowser::updateWatched);
    connect(model_, &FolderTreeModel::folderRead, this, [this] {
        updateWatched();
        continueReveal();
    });
    // After the field in which the name was typed has closed.
    connect(
        model_, &FolderTreeModel::renameWanted, this,
        [this](const QPersistentModelIndex& index, const QString& name) {
            if (index.isValid()) commands_.rename(model_->pathOf(index), name);
        },
        Qt::QueuedConnection);
    connect(&watch_, &FolderWatch::changed, this, &FolderBrowser::onFolderChanged);
    settled_.setSingleShot(true);
    settled_.setInterval(settleTime);
    connect(&settled_, &QTimer::timeout, this, [this] {
        for (const std::filesystem::path& folder : std::exchange(changed_, {}))
            model_->readAgain(folder);
    });
    connect(&content_, &ContentView::folderChanged, this,
            [this] { model_->setCurrentFolder(content_.dossierSelectionne()); });
    model_->setCurrentFolder(content_.dossierSelectionne());
    volumesTimer_.setInterval(volumesEvery);
    connect(&volumesTimer_, &QTimer::timeout, this, [this] {
        if (isVisible()) commands_.askVolumes();
    });
    volumesTimer_.start();
    connectCommands();
    connect(&theme_, &Theme::changed, this, &FolderBrowser::applyTheme);
    applyTheme();
    showRoots();  // the home folder needs no answer
    tree_->setCurrentIndex(model_->index(0, 0));
    commands_.askVolumes();
}

void FolderBrowser::connectCommands() {
    connect(&commands_, &FolderCommands::volumesChanged, this, [this] {
        volumesKnown_ = true;
        showRoots();
        continueReveal();
    });
    // Watches would tell of every name that goes.
    connect(&commands_, &FolderCommands::aboutToEject, this, [this](const std::filesystem::path& root) {
        for (int row = 0; row < model_->rowCount(); ++row) {
            const QModelIndex index = model_->index(row, 0);
            if (model_->pathOf(index) == root) tree_->collapse(index);
        }
    });
    connect(&commands_, &FolderCommands::contentsChanged, model_, &FolderTreeModel::readAgain);
    connect(&commands_, &FolderCommands::arrived, this, &FolderBrowser::reveal);
    connect(&commands_, &FolderCommands::created, this,
            [this](const std::filesystem::path& folder) { revealThen(folder, Then::rename); });
    connect(&commands_, &FolderCommands::copyingChanged, this,
            [this] { progress_->setVisible(commands_.isCopying()); });
    connect(&commands_, &FolderCommands::copyProgressed, this, &FolderBrowser::showProgress);
}

QTreeView& FolderBrowser::tree() noexcept { return *tree_; }

void FolderBrowser::makeActions() {
    const auto make = [this](KeyId key, const auto& run) {
        auto* action = new QAction(shortcut(key).name(), this);
        action->setShortcut(keyOf(key));
        // The tree itself answers the keys, so that they mean this only where the focus is.
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, run);
        return action;
    };
    open_ = make(KeyId::openFolder, [this] { commands_.open(currentPath()); });
    newFolder_ = make(KeyId::newFolder, [this] { commands_.createIn(currentPath()); });
    duplicate_ = make(KeyId::duplicateFolder, [this] { commands_.duplicate(currentPath()); });
    rename_ = make(KeyId::renameFolder, [this] { tree_->edit(tree_->currentIndex()); });
    trash_ = make(KeyId::trashFolder, [this] { commands_.moveToTrash(currentPath()); });
    reveal_ = make(KeyId::revealFolder, [this] { commands_.reveal(currentPath()); });
    eject_ = make(KeyId::ejectVolume, [this] { commands_.eject(currentPath()); });
    refresh_ = make(KeyId::refreshBrowser, [this] { refresh(); });
    for (const auto& [button, action] : {std::pair(newButton_, newFolder_), std::pair(refreshButton_, refresh_)}) {
        button->setAutoRaise(true);
        button->setIconSize({metrics::iconSide, metrics::iconSide});
        button->setAccessibleName(action->text());
        button->setToolTip(
            QStringLiteral("%1 (%2)").arg(action->text(), action->shortcut().toString(QKeySequence::NativeText)));
        connect(button, &QToolButton::clicked, this, [this, action = action] {
            updateActions();
            action->trigger();
        });
    }
}

void FolderBrowser::makeProgress() {
    progress_ = new QWidget(this);
    progressText_ = new QLabel(progress_);
    progressText_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    progressBar_ = new QProgressBar(progress_);
    progressBar_->setRange(0, 1000);
    progressBar_->setTextVisible(false);
    progressBar_->setFixedHeight(8);
    progressBar_->setAccessibleName(tr("Progress of the copy"));
    auto* cancel = new QToolButton(progress_);
    cancel->setText(tr("Cancel"));
    cancel->setAutoRaise(true);
    cancel->setToolTip(tr("Stop copying; what was copied is removed"));
    cancel->setAccessibleName(tr("Cancel copying"));
    connect(cancel, &QToolButton::clicked, &commands_, &FolderCommands::cancelCopy);
    auto* row = new QHBoxLayout;
    row->setSpacing(6);
    row->addWidget(progressBar_, 1);
    row->addWidget(cancel);
    auto* layout = new QVBoxLayout(progress_);
    layout->setContentsMargins(8, 2, 4, 4);
    layout->setSpacing(0);
    layout->addWidget(progressText_);
    layout->addLayout(row);
    progress_->hide();
}

void FolderBrowser::applyTheme() {
    for (QLabel* label : {title_, progressText_}) {
        label->setFont(metrics::smallFont(*this));
        QPalette palette;
        palette.setColor(QPalette::WindowText, theme_.dimmed());
        label->setPalette(palette);
    }
    newButton_->setIcon(theme_.icon(QStringLiteral("new_folder")));
    refreshButton_->setIcon(theme_.icon(QStringLiteral("refresh")));
    tree_->setPalette(listPalette(theme_));
    tree_->setLook(theme_.dimmed(), theme_.icon(QStringLiteral("eject")));
}

void FolderBrowser::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    commands_.askVolumes();
}

// --- Volumes, watching, finding a folder ---------------------------------------------------------------------------

void FolderBrowser::showRoots() {
    std::vector<FolderTreeModel::Root> roots;
    const std::filesystem::path home = toPath(QDir::homePath());
    roots.push_back({home, tr("Home"), toQt(home), false});
    for (const Volume& volume : commands_.volumes()) {
        if (volume.root == home) continue;
        roots.push_back({volume.root, volume.name,
                         tr("%1\n%2 free of %3")
                             .arg(toQt(volume.root), toQt(sizeText(volume.freeBytes)), toQt(sizeText(volume.allBytes))),
                         volume.ejectable});
    }
    model_->setRoots(roots);
}

void FolderBrowser::updateWatched() {
    std::set<std::filesystem::path> wanted;
    std::vector<QModelIndex> open{QModelIndex()};
    while (!open.empty() && wanted.size() < maxWatched) {
        const QModelIndex parent = open.back();
        open.pop_back();
        for (int row = 0; row < model_->rowCount(parent); ++row) {
            const QModelIndex index = model_->index(row, 0, parent);
            if (!tree_->isExpanded(index)) continue;
            wanted.insert(model_->pathOf(index));
            open.push_back(index);
        }
    }
    // What changed while nobody watched.
    for (const std::filesystem::path& folder : wanted) {
        if (!watch_.folders().contains(folder)) onFolderChanged(folder);
    }
    watch_.setFolders(wanted);
}

void FolderBrowser::onFolderChanged(const std::filesystem::path& folder) {
    changed_.insert(folder);
    settled_.start();
}

void FolderBrowser::reveal(const std::filesystem::path& folder) { revealThen(folder, Then::mark); }

void FolderBrowser::revealThen(const std::filesystem::path& folder, Then then) {
    revealing_ = folder;
    revealThen_ = then;
    continueReveal();
}

QModelIndex FolderBrowser::startOfReveal(const std::filesystem::path& target) const {
    // A folder may be in several places of the tree: the one where the user is comes first.
    for (QModelIndex at = tree_->currentIndex(); at.isValid(); at = at.parent()) {
        if (leadsTo(model_->pathOf(at), target)) return at;
    }
    // From the root that is nearest.
    QModelIndex start;
    std::size_t nearest = 0;
    for (int row = 0; row < model_->rowCount(); ++row) {
        const QModelIndex root = model_->index(row, 0);
        const std::filesystem::path path = model_->pathOf(root);
        if (!isWithin(target, path) || path.native().size() <= nearest) continue;
        nearest = path.native().size();
        start = root;
    }
    return start;
}

void FolderBrowser::continueReveal() {
    if (!revealing_) return;
    const std::filesystem::path target = *revealing_;
    if (!volumesKnown_ && !isWithin(target, toPath(QDir::homePath()))) return;
    QModelIndex at = startOfReveal(target);
    while (at.isValid() && model_->pathOf(at) != target) {
        std::filesystem::path next = target;
        const std::filesystem::path here = model_->pathOf(at);
        while (next.has_relative_path() && next.parent_path() != here)
            next = next.parent_path();
        const QModelIndex child = model_->childAt(at, next);
        if (child.isValid()) {
            at = child;
            continue;
        }
        if (!model_->wasRead(at) && !model_->isReading(at)) model_->read(at);
        if (model_->isReading(at)) return;  // goes on when its folders are there
        // Hidden, but where the user works; or gone, and this is as near as it gets.
        if (next.filename().native().starts_with('.') && model_->showAnyway(at, next)) return;
        break;
    }
    revealing_.reset();
    if (!at.isValid()) return;
    tree_->setCurrentIndex(at);
    tree_->scrollTo(at);
    if (revealThen_ == Then::rename && model_->pathOf(at) == target) tree_->edit(at);
}

void FolderBrowser::focusTree() { tree_->setFocus(Qt::ShortcutFocusReason); }

// --- What is done --------------------------------------------------------------------------------------------------

std::filesystem::path FolderBrowser::currentPath() const {
    const QModelIndex current = tree_->currentIndex();
    return current.isValid() ? model_->pathOf(current) : std::filesystem::path();
}

void FolderBrowser::updateActions() {
    const QModelIndex current = tree_->currentIndex();
    const bool any = current.isValid();
    const bool isFolder = any && !model_->isRoot(current);
    for (QAction* action : {open_, newFolder_, reveal_})
        action->setEnabled(any);
    rename_->setEnabled(isFolder);
    trash_->setEnabled(isFolder);
    duplicate_->setEnabled(isFolder && !commands_.isCopying());
    eject_->setEnabled(any && current.data(FolderTreeModel::ejectableRole).toBool());
}

void FolderBrowser::showMenu(const QPoint& where) {
    const QModelIndex under = tree_->indexAt(where);
    if (under.isValid()) tree_->setCurrentIndex(under);
    updateActions();
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(open_);
    menu->addSeparator();
    menu->addActions({newFolder_, duplicate_, rename_, trash_});
    menu->addSeparator();
    menu->addAction(reveal_);
    if (eject_->isEnabled()) menu->addAction(eject_);
    menu->addAction(refresh_);
    menu->popup(tree_->viewport()->mapToGlobal(where));
}

void FolderBrowser::refresh() {
    commands_.askVolumes();
    for (const std::filesystem::path& folder : watch_.folders())
        model_->readAgain(folder);
    if (const QModelIndex current = tree_->currentIndex(); current.isValid()) model_->read(current);
    content_.reload();
}

void FolderBrowser::showProgress(double fraction, const QString& name, const QString& remaining) {
    progressBar_->setValue(static_cast<int>(fraction * progressBar_->maximum()));
    const QString text = remaining.isEmpty() ? name : QStringLiteral("%1 – %2").arg(name, remaining);
    progressText_->setText(text);
    progressText_->setToolTip(text);
}

}  // namespace dravik
