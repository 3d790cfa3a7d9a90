#pragma once

#include "app/background.h"
#include "app/folder_contents.h"
#include "base/file_ops.h"
#include "base/progress.h"
#include "ui/theme.h"

#include <QAbstractItemModel>
#include <QIcon>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace dravik {

/// The home folder and the volumes, with the folders below them as far as they were asked for. Folders are read in the
/// background; a folder that is read again keeps the rows that stayed. The file operations outlive what readings leave
/// behind (LooseBackground).
class FolderTreeModel : public QAbstractItemModel {
    Q_OBJECT
  public:
    enum Role {
        pathRole = Qt::UserRole,  ///< text
        audioFilesRole,           ///< number of audio files, absent when not counted yet
        ejectableRole,
    };
    struct Root {
        std::filesystem::path path;
        QString name;
        QString toolTip;
        bool ejectable = false;
        friend bool operator==(const Root&, const Root&) = default;
    };

    FolderTreeModel(FileOps& files, const Theme& theme, QObject* parent = nullptr);
    ~FolderTreeModel() override;

    void setRoots(const std::vector<Root>& roots);
    /// The folder whose takes are shown is marked.
    void setCurrentFolder(const std::optional<std::filesystem::path>& folder);

    /// Reads the folder's names (again).
    void read(const QModelIndex& index);
    /// Shows this folder although it is hidden, and reads the one it lies in. False when that was asked for before.
    bool showAnyway(const QModelIndex& parent, const std::filesystem::path& folder);
    /// Every place in the tree that shows this folder and was read: reads it again.
    void readAgain(const std::filesystem::path& folder);
    /// Is it being read, or was it never?
    [[nodiscard]] bool isReading(const QModelIndex& index) const;
    [[nodiscard]] bool wasRead(const QModelIndex& index) const;

    [[nodiscard]] std::filesystem::path pathOf(const QModelIndex& index) const;
    [[nodiscard]] QModelIndex childAt(const QModelIndex& parent, const std::filesystem::path& path) const;
    [[nodiscard]] bool isRoot(const QModelIndex& index) const { return index.isValid() && !parent(index).isValid(); }

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
    using QObject::parent;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] bool hasChildren(const QModelIndex& parent = {}) const override;
    [[nodiscard]] bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    /// A new name is only a wish; the folder has it once that is done.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  signals:
    void folderRead(const QModelIndex& index);
    void renameWanted(const QModelIndex& index, const QString& name);

  private:
    struct Node {
        std::filesystem::path path;
        QString name, toolTip;
        bool ejectable = false;
        Node* parent = nullptr;
        bool read = false, reading = false, again = false;
        std::optional<FolderSummary> summary;
        std::vector<std::unique_ptr<Node>> children;
    };
    [[nodiscard]] Node& nodeAt(const QModelIndex& index) const;
    [[nodiscard]] QModelIndex indexOf(const Node& node) const;
    void takeIcons();
    void applyFolders(const QModelIndex& index, std::vector<SubFolder> folders);
    void summarise(const QModelIndex& index);
    void removeChild(Node& parent, std::size_t at);
    void insertChild(Node& parent, std::size_t at, std::unique_ptr<Node> child);

    FileOps& files_;
    const Theme& theme_;
    QIcon folderIcon_, volumeIcon_;
    const std::unique_ptr<Node> top_ = std::make_unique<Node>();  ///< holds the roots; has no index
    std::optional<std::filesystem::path> current_;
    std::set<std::filesystem::path> shownAnyway_;
    std::shared_ptr<CancellationToken> closing_ = std::make_shared<CancellationToken>();
    LooseBackground background_;
};

}  // namespace dravik
