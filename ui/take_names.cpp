#include "ui/take_names.h"

#include "app/text.h"
#include "base/paths.h"

#include <QCoreApplication>
#include <QSet>
#include <set>
#include <unordered_map>

namespace dravik {
namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(dravik::TakeNames)
};

/// Equal for what the file system may take for one name.
QString folded(const QString& name) { return name.normalized(QString::NormalizationForm_C).toCaseFolded(); }

/// Where the take stands, and what kind of files it has.
std::string placeOf(const GroupeFichiers& groupe) {
    const std::filesystem::path& file = groupe.fichiers.front().url;
    return folderOf(file).native() + '/' + toQt(file.extension()).toCaseFolded().toStdString();
}

}  // namespace

QString whyNotNames(const TakeRows& rows, const std::vector<std::pair<int, QString>>& names) {
    const auto& all = rows.groupesTableau();
    std::unordered_map<std::string, QSet<QString>> given;  // by place
    std::set<int> renamed;
    for (const auto& [row, name] : names) {
        if (row < 0 || !rows.canEdit(row)) continue;
        renamed.insert(row);
        QSet<QString>& there = given[placeOf(all.at(static_cast<std::size_t>(row)).groupe)];
        const QString key = folded(name);
        if (there.contains(key)) {
            return Texts::tr("Each take needs a name of its own: %1 would be the name of several.").arg(name);
        }
        there.insert(key);
    }
    if (renamed.empty()) return {};
    for (std::size_t at = 0; at < all.size(); ++at) {
        const int row = static_cast<int>(at);
        if (renamed.contains(row) || rows.isMissing(row)) continue;
        const GroupeFichiers& other = all[at].groupe;
        const auto there = given.find(placeOf(other));
        if (there == given.end() || !there->second.contains(folded(toQt(other.nom)))) continue;
        return Texts::tr("Another take of this folder is called %1.").arg(toQt(other.nom));
    }
    return {};
}

}  // namespace dravik
