#include "ui/folder_browser.h"

#include "app/text.h"
#include "base/paths.h"
#include "editing/folder_actions.h"
#include "model/audio_metadata.h"
#include "ui/folder_tree.h"

#include <QDir>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QVBoxLayout>
#include <chrono>

namespace dravik {
namespace {

using namespace std::chrono_literals;

/// Cards and drives come and go at a human pace.
constexpr auto volumesEvery = 3s;
/// A recorder that empties itself into a folder changes it many times in a row.
constexpr auto settleTime = 300ms;
/// What the system grants a user is a few thousand; no screen shows more open folders than this.
constexpr int maxWatched = 256;
constexpr auto progressEvery = 100ms;
constexpr int smallPixels = 11;

/// A result of work on another thread: a path, or why there is none.
struct Outcome {
    std::filesystem::path path;
    QString error;
    bool cancelled = false;
};

template <typename Work>
Outcome outcomeOf(Work work) {
    Outcome outcome;
    try {
        outcome.path = work();
    } catch (const Cancelled&) {
        outcome.cancelled = true;
    } catch (const std::exception& error) {
        outcome.error = toQt(userText(error));
    }
    return outcome;
}

QString shownName(const std::filesystem::path& folder) {
    return folder.has_filename() ? toQt(folder.filename()) : toQt(folder);
}

}  // namespace

FolderBrowser::FolderBrowser(ContentView& content, Workspace& workspace, Dialogs& dialogs, FileOps& files,
                             const Theme& theme, QWidget* parent)
    : QWidget(parent),
      content_(content),
      workspace_(workspace),
      dialogs_(dialogs),
      files_(files),
      theme_(theme),
      model_(new FolderTreeModel(files, theme, this)),
      tree_(new FolderTree(this)) {
    setAccessibleName(QStringLiteral("Folder browser"));
    title_ = new QLabel(QStringLiteral("Folders"), this);
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
    tree_->setAccessibleName(QStringLiteral("Volumes and folders"));
    makeActions();
    FolderTree::Hooks hooks;
    hooks.open = [this](const QModelIndex& index) { openIndex(index); };
    hooks.eject = [this](const QModelIndex& index) { eject(index); };
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
    connect(model_, &FolderTreeModel::renameWanted, this, &FolderBrowser::renameTo, Qt::QueuedConnection);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, &FolderBrowser::onFolderChanged);
    settled_.setSingleShot(true);
    settled_.setInterval(settleTime);
    connect(&settled_, &QTimer::timeout, this, [this] {
        for (const QString& path : std::exchange(changed_, {}))
            model_->readAgain(toPath(path));
    });
    connect(&content_, &ContentView::folderChanged, this,
            [this] { model_->setCurrentFolder(content_.dossierSelectionne()); });
    model_->setCurrentFolder(content_.dossierSelectionne());
    volumesTimer_.setInterval(volumesEvery);
    connect(&volumesTimer_, &QTimer::timeout, this, [this] {
        if (isVisible()) askVolumes();
    });
    volumesTimer_.start();
    connect(&theme_, &Theme::changed, this, &FolderBrowser::applyTheme);
    applyTheme();
    askVolumes();
}

FolderBrowser::~FolderBrowser() {
    if (copying_) copying_->cancel();
}

QTreeView& FolderBrowser::tree() noexcept { return *tree_; }

void FolderBrowser::makeActions() {
    const auto make = [this](const QString& text, const QKeySequence& key, const auto& run) {
        auto* action = new QAction(text, this);
        action->setShortcut(key);
        // The tree itself answers the keys, so that they mean this only where the focus is.
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, run);
        return action;
    };
    open_ = make(QStringLiteral("Open"), Qt::Key_Return, [this] { openCurrent(); });
    newFolder_ = make(QStringLiteral("New Folder"), Qt::CTRL | Qt::SHIFT | Qt::Key_N, [this] { newFolder(); });
    duplicate_ = make(QStringLiteral("Duplicate"), Qt::CTRL | Qt::Key_D, [this] { duplicate(); });
    rename_ = make(QStringLiteral("Rename"), Qt::Key_F2, [this] { tree_->edit(tree_->currentIndex()); });
    trash_ = make(QStringLiteral("Move to Trash"), Qt::Key_Delete, [this] { trash(); });
    reveal_ = make(QStringLiteral("Show in File Manager"), Qt::CTRL | Qt::SHIFT | Qt::Key_R, [this] {
        const QString error = workspace_.reveal(currentPath());
        if (!error.isEmpty()) fail(QStringLiteral("Show in File Manager"), error);
    });
    eject_ = make(QStringLiteral("Eject"), Qt::CTRL | Qt::Key_E, [this] { eject(tree_->currentIndex()); });
    refresh_ = make(QStringLiteral("Refresh"), Qt::Key_F5, [this] { refresh(); });
    for (const auto& [button, action] : {std::pair(newButton_, newFolder_), std::pair(refreshButton_, refresh_)}) {
        button->setAutoRaise(true);
        button->setIconSize({16, 16});
        button->setAccessibleName(action->text());
        button->setToolTip(
            QStringLiteral("%1 (%2)").arg(action->text(), action->shortcut().toString(QKeySequence::NativeText)));
        connect(button, &QToolButton::clicked, action, &QAction::trigger);
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
    progressBar_->setAccessibleName(QStringLiteral("Progress of the copy"));
    auto* cancel = new QToolButton(progress_);
    cancel->setText(QStringLiteral("Cancel"));
    cancel->setAutoRaise(true);
    cancel->setToolTip(QStringLiteral("Stop copying; what was copied is removed"));
    cancel->setAccessibleName(QStringLiteral("Cancel copying"));
    connect(cancel, &QToolButton::clicked, this, [this] {
        if (copying_) copying_->cancel();
    });
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
    QFont small = font();
    small.setPixelSize(smallPixels);
    for (QLabel* label : {title_, progressText_}) {
        label->setFont(small);
        QPalette palette;
        palette.setColor(QPalette::WindowText, theme_.dimmed());
        label->setPalette(palette);
    }
    newButton_->setIcon(theme_.icon(QStringLiteral("new_folder")));
    refreshButton_->setIcon(theme_.icon(QStringLiteral("refresh")));
    tree_->setLook(theme_.dimmed(), theme_.icon(QStringLiteral("eject")));
}

void FolderBrowser::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    askVolumes();
}

// --- Volumes, watching, finding a folder ---------------------------------------------------------------------------

void FolderBrowser::askVolumes() {
    if (volumesAsked_) return;
    volumesAsked_ = true;
    background_.run(
        this, [this] { return workspace_.volumes(); },
        [this](std::vector<Volume> volumes) {
            volumesAsked_ = false;
            showVolumes(std::move(volumes));
        });
}

void FolderBrowser::showVolumes(std::vector<Volume> volumes) {
    std::vector<FolderTreeModel::Root> roots;
    const std::filesystem::path home = toPath(QDir::homePath());
    roots.push_back({home, QStringLiteral("Home"), toQt(home), false});
    for (const Volume& volume : volumes) {
        if (volume.root == home) continue;
        roots.push_back({volume.root, volume.name,
                         QStringLiteral("%1\n%2 free of %3")
                             .arg(toQt(volume.root), toQt(sizeText(volume.freeBytes)), toQt(sizeText(volume.allBytes))),
                         volume.ejectable});
    }
    volumes_ = std::move(volumes);
    model_->setRoots(roots);
    const bool first = !std::exchange(volumesKnown_, true);
    if (first && !tree_->currentIndex().isValid()) tree_->setCurrentIndex(model_->index(0, 0));
    continueReveal();
}

void FolderBrowser::updateWatched() {
    QSet<QString> wanted;
    std::vector<QModelIndex> open{QModelIndex()};
    while (!open.empty() && wanted.size() < maxWatched) {
        const QModelIndex parent = open.back();
        open.pop_back();
        for (int row = 0; row < model_->rowCount(parent); ++row) {
            const QModelIndex index = model_->index(row, 0, parent);
            if (!tree_->isExpanded(index)) continue;
            wanted.insert(index.data(FolderTreeModel::pathRole).toString());
            open.push_back(index);
        }
    }
    const QStringList now = watcher_.directories();
    const QSet<QString> watched(now.begin(), now.end());
    if (const QSet<QString> gone = watched - wanted; !gone.isEmpty()) watcher_.removePaths({gone.begin(), gone.end()});
    if (const QSet<QString> fresh = wanted - watched; !fresh.isEmpty()) {
        watcher_.addPaths({fresh.begin(), fresh.end()});
        // What changed while nobody watched.
        for (const QString& path : fresh) {
            changed_.insert(path);
        }
        settled_.start();
    }
}

void FolderBrowser::onFolderChanged(const QString& path) {
    changed_.insert(path);
    settled_.start();
}

void FolderBrowser::reveal(const std::filesystem::path& folder) { revealThen(folder, Then::mark); }

void FolderBrowser::revealThen(const std::filesystem::path& folder, Then then) {
    revealing_ = folder;
    revealThen_ = then;
    continueReveal();
}

void FolderBrowser::continueReveal() {
    if (!revealing_ || !volumesKnown_) return;
    const std::filesystem::path target = *revealing_;
    QModelIndex at = tree_->currentIndex();
    if (!at.isValid() || model_->pathOf(at) != target) {
        // From the root that is nearest.
        at = {};
        std::size_t nearest = 0;
        for (int row = 0; row < model_->rowCount(); ++row) {
            const QModelIndex root = model_->index(row, 0);
            const std::filesystem::path path = model_->pathOf(root);
            if (!isWithin(target, path) || path.native().size() <= nearest) continue;
            nearest = path.native().size();
            at = root;
        }
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
    duplicate_->setEnabled(isFolder && !isCopying());
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

void FolderBrowser::openCurrent() { openIndex(tree_->currentIndex()); }

void FolderBrowser::openIndex(const QModelIndex& index) {
    if (!index.isValid()) return;
    const std::filesystem::path folder = model_->pathOf(index);
    if (content_.dossierSelectionne() == folder) return;
    content_.gererActionProtegee(OuvrirDossier{folder});
}

void FolderBrowser::fail(const QString& title, const QString& text) {
    Alert alert;
    alert.title = title;
    alert.text = text;
    alert.buttons = {QStringLiteral("OK")};
    dialogs_.ask(alert, [](AlertAnswer) {});
}

QString FolderBrowser::refusal(const std::filesystem::path& folder, const QString& doing) const {
    const QString name = shownName(folder);
    const TakeRows& rows = content_.rows();
    for (const int row : rows.editedRows()) {
        for (const InfoFichier& fichier : rows.groupesTableau().at(static_cast<std::size_t>(row)).groupe.fichiers) {
            if (!isWithin(fichier.url, folder)) continue;
            return content_.sauvegardeEnCours()
                       ? QStringLiteral("“%1” is being saved into. Wait until that is done before %2 it.")
                             .arg(name, doing)
                       : QStringLiteral("“%1” holds takes with unsaved changes. Save or discard them before %2 it.")
                             .arg(name, doing);
        }
    }
    return {};
}

void FolderBrowser::newFolder() {
    const std::filesystem::path parent = currentPath();
    if (parent.empty()) return;
    background_.run(
        this, [this, parent] { return outcomeOf([&] { return createFolder(files_, parent); }); },
        [this, parent](const Outcome& outcome) {
            if (!outcome.error.isEmpty()) {
                fail(QStringLiteral("New Folder Failed"), outcome.error);
                return;
            }
            model_->readAgain(parent);
            revealThen(outcome.path, Then::rename);
        });
}

void FolderBrowser::renameTo(const QModelIndex& index, const QString& name) {
    if (!index.isValid()) return;
    const std::filesystem::path folder = model_->pathOf(index);
    if (const QString why = refusal(folder, QStringLiteral("renaming")); !why.isEmpty()) {
        fail(QStringLiteral("Rename Refused"), why);
        return;
    }
    background_.run(
        this,
        [this, folder, name = name.toStdString()] {
            return outcomeOf([&] { return renameFolder(files_, folder, name); });
        },
        [this, folder](const Outcome& outcome) {
            if (!outcome.error.isEmpty()) {
                fail(QStringLiteral("Rename Failed"), outcome.error);
                return;
            }
            model_->readAgain(folderOf(folder));
            reveal(outcome.path);
            follow(folder, outcome.path);
        });
}

void FolderBrowser::follow(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (const auto& open = content_.dossierSelectionne()) {
        if (isWithin(*open, from)) content_.gererActionProtegee(OuvrirDossier{movedAlong(*open, from, to)});
        return;
    }
    // Takes from several folders.
    OuvrirDepotFichiers moved;
    bool touched = false;
    for (const GroupeFichiers& groupe : content_.rows().groupesOriginauxTableau()) {
        for (const InfoFichier& fichier : groupe.fichiers) {
            const bool inside = isWithin(fichier.url, from);
            touched = touched || inside;
            moved.fichiers.push_back(inside ? movedAlong(fichier.url, from, to) : fichier.url);
        }
    }
    if (touched) content_.gererActionProtegee(moved);
}

void FolderBrowser::trash() {
    const QModelIndex current = tree_->currentIndex();
    if (!current.isValid() || model_->isRoot(current)) return;
    const std::filesystem::path folder = model_->pathOf(current);
    const QString doing = QStringLiteral("moving");
    if (const QString why = refusal(folder, doing); !why.isEmpty()) {
        fail(QStringLiteral("Move to Trash Refused"), why);
        return;
    }
    Alert alert;
    alert.title = QStringLiteral("Move “%1” to the Trash?").arg(shownName(folder));
    alert.text = QStringLiteral("The folder %1 goes there with everything in it.").arg(toQt(folder));
    alert.buttons = {QStringLiteral("Move to Trash"), QStringLiteral("Cancel")};
    alert.destructive = true;
    dialogs_.ask(alert, [this, folder, doing](AlertAnswer answer) {
        if (answer.button != 0) return;
        // Another look: the question may have been open for long.
        if (const QString why = refusal(folder, doing); !why.isEmpty()) {
            fail(QStringLiteral("Move to Trash Refused"), why);
            return;
        }
        background_.run(
            this, [this, folder] { return workspace_.moveToTrash(folder); },
            [this, folder](const QString& error) {
                model_->readAgain(folderOf(folder));
                if (!error.isEmpty()) {
                    fail(QStringLiteral("Move to Trash Failed"), error);
                    return;
                }
                reveal(folderOf(folder));
                const auto& open = content_.dossierSelectionne();
                if (open && isWithin(*open, folder)) content_.reload();
            });
    });
}

void FolderBrowser::eject(const QModelIndex& index) {
    if (!index.isValid()) return;
    const std::filesystem::path root = model_->pathOf(index);
    const auto volume =
        std::find_if(volumes_.begin(), volumes_.end(), [&](const Volume& one) { return one.root == root; });
    if (volume == volumes_.end() || !volume->ejectable) return;
    if (const QString why = refusal(root, QStringLiteral("ejecting")); !why.isEmpty()) {
        fail(QStringLiteral("Eject Refused"), why);
        return;
    }
    // Watches would tell of every name that goes.
    tree_->collapse(index);
    background_.run(
        this, [this, volume = *volume] { return workspace_.eject(volume); },
        [this](const QString& error) {
            if (!error.isEmpty()) fail(QStringLiteral("Eject Failed"), error);
            askVolumes();
        });
}

void FolderBrowser::refresh() {
    askVolumes();
    for (const QString& path : watcher_.directories())
        model_->readAgain(toPath(path));
    if (const QModelIndex current = tree_->currentIndex(); current.isValid()) model_->read(current);
}

void FolderBrowser::duplicate() {
    const QModelIndex current = tree_->currentIndex();
    if (!current.isValid() || model_->isRoot(current) || isCopying()) return;
    const std::filesystem::path folder = model_->pathOf(current);
    if (content_.sauvegardeEnCours()) {
        if (const QString why = refusal(folder, QStringLiteral("duplicating")); !why.isEmpty()) {
            fail(QStringLiteral("Duplicate Refused"), why);
            return;
        }
    }
    copying_ = std::make_shared<CancellationToken>();
    copyTime_.start();
    progressText_->setText(QStringLiteral("Copying “%1”…").arg(shownName(folder)));
    progressBar_->setValue(0);
    progress_->show();
    auto work = [this, self = QPointer<QObject>(this), token = copying_, folder] {
        std::chrono::steady_clock::time_point told;
        const auto report = [&](const Progress& progress) {
            const auto now = std::chrono::steady_clock::now();
            if (now - told < progressEvery) return;
            told = now;
            copies_.post(self, [this, done = progress.doneBytes, all = progress.allBytes,
                                name = std::string(progress.currentName)] {
                showProgress({done, all, name});
            });
        };
        return outcomeOf([&] { return duplicateFolder(files_, folder, {token.get(), report}); });
    };
    copies_.run(this, std::move(work), [this, folder](const Outcome& outcome) {
        copying_.reset();
        progress_->hide();
        if (outcome.cancelled) {
            emit content_.notice(QStringLiteral("Copying was cancelled; nothing is left of the copy."));
        } else if (!outcome.error.isEmpty()) {
            fail(QStringLiteral("Duplicate Failed"), outcome.error);
        } else {
            model_->readAgain(folderOf(folder));
            reveal(outcome.path);
        }
    });
}

void FolderBrowser::showProgress(const Progress& progress) {
    if (!copying_ || progress.allBytes == 0) return;
    const double fraction = static_cast<double>(progress.doneBytes) / static_cast<double>(progress.allBytes);
    progressBar_->setValue(static_cast<int>(fraction * progressBar_->maximum()));
    QString text = toQt(progress.currentName);
    const double seconds = static_cast<double>(copyTime_.elapsed()) / 1000;
    if (seconds > 1 && fraction > 0) {
        const int left = static_cast<int>(seconds / fraction - seconds) + 1;
        text += left < 60 ? QStringLiteral(" – %1 s left").arg(left)
                          : QStringLiteral(" – %1 min left").arg((left + 59) / 60);
    }
    progressText_->setText(text);
    progressText_->setToolTip(text);
}

}  // namespace dravik
