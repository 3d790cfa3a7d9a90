#include "ui/folder_tree_model.h"

#include "app/text.h"
#include "base/text.h"
#include "editing/folder_actions.h"

#include <QFont>
#include <algorithm>
#include <functional>
#include <utility>

namespace dravik {

FolderTreeModel::FolderTreeModel(FileOps& files, const Theme& theme, QObject* parent)
    : QAbstractItemModel(parent), files_(files), theme_(theme) {
    top_->read = true;
    takeIcons();
    connect(&theme_, &Theme::changed, this, [this] {
        takeIcons();
        emit layoutChanged();
    });
}

void FolderTreeModel::takeIcons() {
    folderIcon_ = theme_.icon(QStringLiteral("folder"));
    volumeIcon_ = theme_.icon(QStringLiteral("volume"));
}

FolderTreeModel::~FolderTreeModel() { closing_->cancel(); }

FolderTreeModel::Node& FolderTreeModel::nodeAt(const QModelIndex& index) const {
    return index.isValid() ? *static_cast<Node*>(index.internalPointer()) : *top_;
}

QModelIndex FolderTreeModel::indexOf(const Node& node) const {
    if (node.parent == nullptr) return {};
    const auto& siblings = node.parent->children;
    const auto at = std::find_if(siblings.begin(), siblings.end(), [&](const auto& one) { return one.get() == &node; });
    return createIndex(static_cast<int>(at - siblings.begin()), 0, &node);
}

void FolderTreeModel::removeChild(Node& parent, std::size_t at) {
    beginRemoveRows(indexOf(parent), static_cast<int>(at), static_cast<int>(at));
    parent.children.erase(parent.children.begin() + static_cast<std::ptrdiff_t>(at));
    endRemoveRows();
}

void FolderTreeModel::insertChild(Node& parent, std::size_t at, std::unique_ptr<Node> child) {
    child->parent = &parent;
    beginInsertRows(indexOf(parent), static_cast<int>(at), static_cast<int>(at));
    parent.children.insert(parent.children.begin() + static_cast<std::ptrdiff_t>(at), std::move(child));
    endInsertRows();
}

void FolderTreeModel::setRoots(const std::vector<Root>& roots) {
    auto& now = top_->children;
    for (std::size_t at = now.size(); at-- > 0;) {
        const auto same = [&](const Root& root) { return root.path == now[at]->path; };
        if (std::none_of(roots.begin(), roots.end(), same)) removeChild(*top_, at);
    }
    for (std::size_t at = 0; at < roots.size(); ++at) {
        const Root& root = roots[at];
        // The others keep their order: what is new goes behind the one that it follows.
        if (at >= now.size() || now[at]->path != root.path) {
            const auto elsewhere =
                std::find_if(now.begin(), now.end(), [&](const auto& one) { return one->path == root.path; });
            if (elsewhere != now.end()) removeChild(*top_, static_cast<std::size_t>(elsewhere - now.begin()));
            auto node = std::make_unique<Node>();
            node->path = root.path;
            insertChild(*top_, std::min(at, now.size()), std::move(node));
        }
        Node& node = *now[at];
        if (node.name == root.name && node.toolTip == root.toolTip && node.ejectable == root.ejectable) continue;
        node.name = root.name;
        node.toolTip = root.toolTip;
        node.ejectable = root.ejectable;
        emit dataChanged(indexOf(node), indexOf(node));
    }
}

void FolderTreeModel::setCurrentFolder(const std::optional<std::filesystem::path>& folder) {
    if (folder == current_) return;
    current_ = folder;
    emit layoutChanged();
}

void FolderTreeModel::read(const QModelIndex& index) {
    if (!index.isValid()) return;
    Node& node = nodeAt(index);
    if (node.reading) {
        node.again = true;
        return;
    }
    node.reading = true;
    background_.run(
        this,
        [&files = files_, folder = node.path, shownAnyway = shownAnyway_] {
            removeAbandonedCopies(files, folder);
            return subFoldersOf(folder, shownAnyway);
        },
        [this, at = QPersistentModelIndex(index)](std::vector<SubFolder> folders) {
            if (at.isValid()) applyFolders(at, std::move(folders));
        });
}

void FolderTreeModel::applyFolders(const QModelIndex& index, std::vector<SubFolder> folders) {
    Node& node = nodeAt(index);
    node.reading = false;
    const bool first = !std::exchange(node.read, true);
    const auto make = [&](SubFolder& folder) {
        auto child = std::make_unique<Node>();
        child->path = std::move(folder.path);
        child->name = std::move(folder.name);
        child->parent = &node;
        return child;
    };
    if (node.children.empty() && !folders.empty()) {
        beginInsertRows(index, 0, static_cast<int>(folders.size()) - 1);
        for (SubFolder& folder : folders)
            node.children.push_back(make(folder));
        endInsertRows();
    } else {
        // Both lists are in the same order.
        std::size_t at = 0;
        for (SubFolder& folder : folders) {
            const auto order = [&] {
                return at == node.children.size() ? 1
                                                  : compareNatural(node.children[at]->path.filename().native(),
                                                                   folder.path.filename().native());
            };
            while (order() < 0)
                removeChild(node, at);
            if (order() != 0) insertChild(node, at, make(folder));
            ++at;
        }
        while (node.children.size() > at)
            removeChild(node, node.children.size() - 1);
    }
    if (first) emit layoutChanged({index});  // whether there is an arrow is known now
    // Before anybody is told: what was asked for since is not in this reading.
    if (std::exchange(node.again, false)) {
        read(index);
    } else {
        summarise(index);
    }
    emit folderRead(index);
}

void FolderTreeModel::summarise(const QModelIndex& index) {
    std::vector<std::filesystem::path> paths;
    for (const auto& child : nodeAt(index).children)
        paths.push_back(child->path);
    if (paths.empty()) return;
    using Summaries = std::vector<std::pair<std::filesystem::path, FolderSummary>>;
    background_.run(
        this,
        [closing = closing_, paths = std::move(paths)] {
            Summaries summaries;
            for (const std::filesystem::path& path : paths) {
                if (closing->isCancelled()) break;
                summaries.emplace_back(path, summaryOf(path));
            }
            return summaries;
        },
        [this, at = QPersistentModelIndex(index)](const Summaries& summaries) {
            if (!at.isValid()) return;
            auto& children = nodeAt(at).children;
            auto child = children.begin();
            for (const auto& [path, summary] : summaries) {
                // In the same order still, though some may have come or gone since.
                const auto found =
                    std::find_if(child, children.end(), [&](const auto& one) { return one->path == path; });
                if (found == children.end()) continue;
                (*found)->summary = summary;
                child = found + 1;
            }
            emit layoutChanged({at});  // views ask whether there is an arrow only then
        });
}

bool FolderTreeModel::showAnyway(const QModelIndex& parent, const std::filesystem::path& folder) {
    if (!shownAnyway_.insert(folder).second) return false;
    read(parent);
    return true;
}

void FolderTreeModel::readAgain(const std::filesystem::path& folder) {
    std::vector<QModelIndex> found;
    const std::function<void(const Node&)> visit = [&](const Node& node) {
        for (const auto& child : node.children) {
            if (child->path == folder && (child->read || child->reading)) {
                found.push_back(indexOf(*child));
            } else if (isWithin(folder, child->path)) {
                visit(*child);
            }
        }
    };
    visit(*top_);
    for (const QModelIndex& index : found)
        read(index);
}

bool FolderTreeModel::isReading(const QModelIndex& index) const { return nodeAt(index).reading; }
bool FolderTreeModel::wasRead(const QModelIndex& index) const { return nodeAt(index).read; }
std::filesystem::path FolderTreeModel::pathOf(const QModelIndex& index) const { return nodeAt(index).path; }

QModelIndex FolderTreeModel::childAt(const QModelIndex& parent, const std::filesystem::path& path) const {
    for (const auto& child : nodeAt(parent).children) {
        if (child->path == path) return indexOf(*child);
    }
    return {};
}

QModelIndex FolderTreeModel::index(int row, int column, const QModelIndex& parent) const {
    const Node& node = nodeAt(parent);
    if (column != 0 || row < 0 || static_cast<std::size_t>(row) >= node.children.size()) return {};
    return createIndex(row, column, node.children[static_cast<std::size_t>(row)].get());
}

QModelIndex FolderTreeModel::parent(const QModelIndex& child) const {
    return child.isValid() ? indexOf(*nodeAt(child).parent) : QModelIndex();
}

int FolderTreeModel::rowCount(const QModelIndex& parent) const {
    return parent.column() > 0 ? 0 : static_cast<int>(nodeAt(parent).children.size());
}

int FolderTreeModel::columnCount(const QModelIndex&) const { return 1; }

bool FolderTreeModel::hasChildren(const QModelIndex& parent) const {
    const Node& node = nodeAt(parent);
    if (node.read) return !node.children.empty();
    return !node.summary || node.summary->hasFolders;
}

bool FolderTreeModel::canFetchMore(const QModelIndex& parent) const {
    const Node& node = nodeAt(parent);
    return parent.isValid() && !node.read && !node.reading;
}

void FolderTreeModel::fetchMore(const QModelIndex& parent) { read(parent); }

Qt::ItemFlags FolderTreeModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.isValid() && !isRoot(index)) flags |= Qt::ItemIsEditable;
    return flags;
}

QVariant FolderTreeModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const Node& node = nodeAt(index);
    const bool isCurrent = current_ && node.path == *current_;
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
            return node.name;
        case Qt::DecorationRole:
            return isRoot(index) ? volumeIcon_ : folderIcon_;
        case Qt::ToolTipRole:
            return node.toolTip.isEmpty() ? toQt(node.path) : node.toolTip;
        case Qt::FontRole: {
            QFont font;
            font.setBold(isCurrent);
            return font;
        }
        case Qt::AccessibleTextRole: {
            QString text = node.name;
            if (isCurrent) text = tr("%1, open").arg(text);
            if (node.summary && node.summary->audioFiles > 0) {
                text +=
                    QStringLiteral(", ") + counted(static_cast<std::size_t>(node.summary->audioFiles), Noun::audioFile);
            }
            return text;
        }
        case pathRole:
            return toQt(node.path);
        case audioFilesRole:
            return node.summary ? QVariant(node.summary->audioFiles) : QVariant();
        case ejectableRole:
            return node.ejectable;
        default:
            return {};
    }
}

bool FolderTreeModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    const QString name = value.toString();
    if (role != Qt::EditRole || isRoot(index) || name.isEmpty() || name == nodeAt(index).name) return false;
    emit renameWanted(index, name);
    return false;
}

}  // namespace dravik
