#include "app/take_order.h"

#include "base/text.h"
#include "model/wave/timecode.h"

#include <algorithm>
#include <numeric>

#include <fmt/format.h>

namespace dravik {
namespace {

/// A row's place in an order: the index it has, and what it is compared by. Nothing to compare by: it comes last.
template <typename Value>
struct Keyed {
    int row = 0;
    std::optional<Value> value;
};

template <typename Value, typename ValueOf>
std::vector<int> sortedBy(const std::vector<RowState>& rows, bool descending, ValueOf valueOf) {
    std::vector<Keyed<Value>> keyed;
    keyed.reserve(rows.size());
    for (const RowState& row : rows)
        keyed.push_back({static_cast<int>(keyed.size()), valueOf(row.groupe)});
    const auto middle = std::stable_partition(keyed.begin(), keyed.end(),
                                              [](const Keyed<Value>& key) { return key.value.has_value(); });
    std::stable_sort(keyed.begin(), middle, [descending](const Keyed<Value>& a, const Keyed<Value>& b) {
        return descending ? *b.value < *a.value : *a.value < *b.value;
    });
    std::vector<int> order;
    order.reserve(keyed.size());
    for (const Keyed<Value>& key : keyed)
        order.push_back(key.row);
    return order;
}

std::optional<double> numberOf(const GroupeFichiers& groupe, TakeColumn column) {
    const InfoFichier& premier = groupe.fichiers.front();
    const auto present = [](double value) { return value > 0 ? std::optional(value) : std::nullopt; };
    switch (column) {
        case TakeColumn::circled:
        case TakeColumn::wild:
            return flagOf(groupe, column) ? 0 : isMixedCell(groupe, column) ? 1 : 2;
        case TakeColumn::duration:
            return present(premier.dureeSecondes);
        case TakeColumn::fps: {
            if (!groupe.framerate) return std::nullopt;
            // Drop frame behind the plain rate of the same number.
            constexpr double justAbove = 1e-6;
            return actualRate(*groupe.framerate) + (isDropFrame(*groupe.framerate) ? justAbove : 0);
        }
        case TakeColumn::tracks:
            return present(groupe.isMonoSet() ? static_cast<double>(groupe.fichiers.size())
                                              : static_cast<double>(tracksOfGroup(groupe).size()));
        case TakeColumn::sampleRate:
            return present(premier.sampleRate);
        case TakeColumn::bits:
            return present(premier.bits);
        case TakeColumn::size:
            return present(std::accumulate(
                groupe.fichiers.begin(), groupe.fichiers.end(), 0.0,
                [](double sum, const InfoFichier& fichier) { return sum + static_cast<double>(fichier.taille); }));
        default:
            return std::nullopt;
    }
}

std::optional<std::string> keyOf(const GroupeFichiers& groupe, TakeColumn column) {
    if (column == TakeColumn::format) {
        // By the format, whatever the number of files that stands before it.
        return naturalKey(fmt::format("{} {}", groupe.fichiers.front().format, groupe.fichiers.size()));
    }
    const std::string text = cellText(groupe, column);
    return text.empty() ? std::nullopt : std::optional(naturalKey(text));
}

}  // namespace

std::vector<int> sortedRows(const std::vector<RowState>& rows, const TakeSort& sort) {
    if (!sort.column) {
        std::vector<int> order(rows.size());
        std::iota(order.begin(), order.end(), 0);
        return order;
    }
    const TakeColumn column = *sort.column;
    if (isFlagColumn(column) || isNumberColumn(column)) {
        return sortedBy<double>(rows, sort.descending,
                                [column](const GroupeFichiers& groupe) { return numberOf(groupe, column); });
    }
    return sortedBy<std::string>(rows, sort.descending,
                                 [column](const GroupeFichiers& groupe) { return keyOf(groupe, column); });
}

TakeFilter::TakeFilter(const QString& text) {
    const QStringList words = text.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString& word : words)
        words_.push_back(foldedCase(word.toStdString()));
}

bool TakeFilter::matches(const std::string& searchable) const {
    return std::all_of(words_.begin(), words_.end(),
                       [&](const std::string& word) { return searchable.find(word) != std::string::npos; });
}

std::string searchableText(const GroupeFichiers& groupe) {
    // A line each, so that no word is found across two of them.
    std::string text = groupe.nom;
    for (const std::optional<std::string>* part :
         {&groupe.scene, &groupe.prise, &groupe.tape, &groupe.project, &groupe.notes}) {
        if (*part) text.append("\n").append(**part);
    }
    for (const InfoFichier& fichier : groupe.fichiers) {
        text.append("\n").append(fichier.nom).append("\n").append(fichier.format);
        for (const auto& [numero, nom] : fichier.nomsPistes)
            text.append("\n").append(displayName(nom));
        // Where the files of a set disagree, each value finds the set.
        for (const auto& [field, part] :
             {std::pair(MetadataField::scene, &fichier.scene), std::pair(MetadataField::prise, &fichier.prise),
              std::pair(MetadataField::tape, &fichier.tape), std::pair(MetadataField::project, &fichier.project),
              std::pair(MetadataField::note, &fichier.notes)}) {
            if (*part && groupe.mixedFields.contains(field)) text.append("\n").append(**part);
        }
    }
    return foldedCase(text);
}

}  // namespace dravik
