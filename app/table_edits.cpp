#include "app/table_edits.h"

#include "app/text.h"

#include <functional>

namespace dravik {
namespace {

bool isFlag(RowField field) { return field == RowField::circled || field == RowField::wild; }

bool flagFrom(const QString& text) {
    const QString plain = text.trimmed().toLower();
    return plain == QLatin1String("yes") || plain == QLatin1String("true") || plain == QLatin1String("x") ||
           plain == QLatin1String("1") || plain == QLatin1String("circled") || plain == QLatin1String("wild");
}

bool flagOf(const GroupeFichiers& groupe, RowField field) {
    return field == RowField::circled ? groupe.circled : groupe.wild;
}

/// Gives one row its value; false when it is none.
using Setter = std::function<bool(GroupeFichiers&, std::size_t position)>;

TableEditResult editEach(TakeRows& rows, const std::vector<int>& which, const QString& name, const Setter& set) {
    TableEditResult result;
    std::vector<std::pair<int, RowState>> changes;
    if (rows.isLocked()) return result;
    changes.reserve(which.size());
    for (std::size_t position = 0; position < which.size(); ++position) {
        RowState row = rows.groupesTableau().at(static_cast<std::size_t>(which[position]));
        if (!rows.canEdit(which[position])) {
            ++result.readOnly;
        } else if (!set(row.groupe, position)) {
            ++result.refused;
        } else {
            changes.emplace_back(which[position], std::move(row));
            ++result.changed;
        }
    }
    rows.endCollapsing();
    rows.edit(name, std::move(changes));
    return result;
}

}  // namespace

QString fieldTitle(RowField field) {
    switch (field) {
        case RowField::name:
            return QStringLiteral("Name");
        case RowField::project:
            return QStringLiteral("Project");
        case RowField::scene:
            return QStringLiteral("Scene");
        case RowField::prise:
            return QStringLiteral("Take");
        case RowField::tape:
            return QStringLiteral("Tape");
        case RowField::note:
            return QStringLiteral("Note");
        case RowField::circled:
            return QStringLiteral("Circled");
        case RowField::wild:
            return QStringLiteral("Wild");
        case RowField::timecode:
            return QStringLiteral("Start TC");
        case RowField::framerate:
            return QStringLiteral("Frame Rate");
        case RowField::tracks:
            return QStringLiteral("Track Names");
        case RowField::trackNumbers:
            return QStringLiteral("Recorder Number");
        case RowField::cues:
            return QStringLiteral("Cues");
    }
    return {};
}

TableEditResult setField(TakeRows& rows, const std::vector<int>& which, RowField field, const QString& text) {
    const std::string value = text.toStdString();
    return editEach(rows, which, QStringLiteral("Edit %1").arg(fieldTitle(field)),
                    [&](GroupeFichiers& groupe, std::size_t) { return setText(groupe, field, value); });
}

TableEditResult setFlagField(TakeRows& rows, const std::vector<int>& which, RowField field, bool valeur) {
    return editEach(rows, which, QStringLiteral("Edit %1").arg(fieldTitle(field)),
                    [&](GroupeFichiers& groupe, std::size_t) {
                        setFlag(groupe, field, valeur);
                        return true;
                    });
}

TableEditResult fillDown(TakeRows& rows, const std::vector<int>& which, RowField field) {
    if (which.size() < 2) return {};
    const GroupeFichiers first = rows.groupesTableau().at(static_cast<std::size_t>(which.front())).groupe;
    const std::vector<int> below(which.begin() + 1, which.end());
    return editEach(rows, below, QStringLiteral("Fill Down %1").arg(fieldTitle(field)),
                    [&](GroupeFichiers& groupe, std::size_t) {
                        if (!isFlag(field)) return setText(groupe, field, textOf(first, field));
                        setFlag(groupe, field, flagOf(first, field));
                        return true;
                    });
}

TableEditResult paste(TakeRows& rows, const std::vector<int>& which, RowField field, const QStringList& lines) {
    if (lines.isEmpty()) return {};
    std::vector<int> targets = which;
    const auto count = static_cast<std::size_t>(lines.size());
    if (count > 1 && targets.size() > count) targets.resize(count);
    return editEach(rows, targets, QStringLiteral("Paste %1").arg(fieldTitle(field)),
                    [&](GroupeFichiers& groupe, std::size_t position) {
                        const QString& line = lines.at(count == 1 ? 0 : static_cast<qsizetype>(position));
                        if (!isFlag(field)) return setText(groupe, field, line.toStdString());
                        setFlag(groupe, field, flagFrom(line));
                        return true;
                    });
}

TableEditResult incrementTakes(TakeRows& rows, const std::vector<int>& which) {
    return editEach(rows, which, QStringLiteral("Increment Take"), [](GroupeFichiers& groupe, std::size_t) {
        return setText(groupe, RowField::prise, incrementedTake(textOf(groupe, RowField::prise)));
    });
}

TableEditResult numberTakes(TakeRows& rows, const std::vector<int>& which) {
    if (which.size() < 2) return {};
    std::string take =
        textOf(rows.groupesTableau().at(static_cast<std::size_t>(which.front())).groupe, RowField::prise);
    const std::vector<int> below(which.begin() + 1, which.end());
    return editEach(rows, below, QStringLiteral("Number Takes"), [&](GroupeFichiers& groupe, std::size_t) {
        take = incrementedTake(take);
        return setText(groupe, RowField::prise, take);
    });
}

std::optional<QString> editTrackNumbers(TakeRows& rows, int row, const TrackNumbers& numeros) {
    const auto at = static_cast<std::size_t>(row);
    if (row < 0 || at >= rows.groupesTableau().size() || !rows.canEdit(row) || rows.isLocked()) {
        return QStringLiteral("The recorder numbers of this take cannot be edited now.");
    }
    if (const auto problem = trackNumberProblem(rows.groupesTableau()[at].groupe, numeros)) return toQt(*problem);
    static_cast<void>(editEach(rows, {row}, QStringLiteral("Edit %1").arg(fieldTitle(RowField::trackNumbers)),
                               [&](GroupeFichiers& groupe, std::size_t) { return setTrackNumbers(groupe, numeros); }));
    return std::nullopt;
}

}  // namespace dravik
