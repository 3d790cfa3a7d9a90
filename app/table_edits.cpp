#include "app/table_edits.h"

#include "app/text.h"

#include <QCoreApplication>
#include <functional>

namespace dravik {
namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(dravik::TableEdits)
};

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
            return Texts::tr("Name");
        case RowField::project:
            return Texts::tr("Project");
        case RowField::scene:
            return Texts::tr("Scene");
        case RowField::prise:
            return Texts::tr("Take");
        case RowField::tape:
            return Texts::tr("Tape");
        case RowField::note:
            return Texts::tr("Note");
        case RowField::circled:
            return Texts::tr("Circled");
        case RowField::wild:
            return Texts::tr("Wild");
        case RowField::timecode:
            return Texts::tr("Start TC");
        case RowField::framerate:
            return Texts::tr("Frame Rate");
        case RowField::tracks:
            return Texts::tr("Track Names");
        case RowField::trackNumbers:
            return Texts::tr("Recorder Number");
        case RowField::cues:
            return Texts::tr("Cues");
    }
    return {};
}

TableEditResult setField(TakeRows& rows, const std::vector<int>& which, RowField field, const QString& text) {
    const std::string value = text.toStdString();
    return editEach(rows, which, Texts::tr("Edit %1").arg(fieldTitle(field)),
                    [&](GroupeFichiers& groupe, std::size_t) { return setText(groupe, field, value); });
}

TableEditResult setFlagField(TakeRows& rows, const std::vector<int>& which, RowField field, bool valeur) {
    return editEach(rows, which, Texts::tr("Edit %1").arg(fieldTitle(field)), [&](GroupeFichiers& groupe, std::size_t) {
        setFlag(groupe, field, valeur);
        return true;
    });
}

TableEditResult fillDown(TakeRows& rows, const std::vector<int>& which, RowField field) {
    if (which.size() < 2) return {};
    const GroupeFichiers first = rows.groupesTableau().at(static_cast<std::size_t>(which.front())).groupe;
    const std::vector<int> below(which.begin() + 1, which.end());
    return editEach(rows, below, Texts::tr("Fill Down %1").arg(fieldTitle(field)),
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
    return editEach(rows, targets, Texts::tr("Paste %1").arg(fieldTitle(field)),
                    [&](GroupeFichiers& groupe, std::size_t position) {
                        const QString& line = lines.at(count == 1 ? 0 : static_cast<qsizetype>(position));
                        if (!isFlag(field)) return setText(groupe, field, line.toStdString());
                        setFlag(groupe, field, flagFrom(line));
                        return true;
                    });
}

TableEditResult incrementTakes(TakeRows& rows, const std::vector<int>& which) {
    return editEach(rows, which, Texts::tr("Increment Take"), [](GroupeFichiers& groupe, std::size_t) {
        return setText(groupe, RowField::prise, incrementedTake(textOf(groupe, RowField::prise)));
    });
}

TableEditResult numberTakes(TakeRows& rows, const std::vector<int>& which) {
    if (which.size() < 2) return {};
    std::string take =
        textOf(rows.groupesTableau().at(static_cast<std::size_t>(which.front())).groupe, RowField::prise);
    const std::vector<int> below(which.begin() + 1, which.end());
    return editEach(rows, below, Texts::tr("Number Takes"), [&](GroupeFichiers& groupe, std::size_t) {
        take = incrementedTake(take);
        return setText(groupe, RowField::prise, take);
    });
}

std::optional<QString> editTrackNumbers(TakeRows& rows, int row, const TrackNumbers& numeros) {
    const auto at = static_cast<std::size_t>(row);
    if (row < 0 || at >= rows.groupesTableau().size() || !rows.canEdit(row) || rows.isLocked()) {
        return Texts::tr("The recorder numbers of this take cannot be edited now.");
    }
    if (const auto problem = trackNumberProblem(rows.groupesTableau()[at].groupe, numeros)) return toQt(*problem);
    static_cast<void>(editEach(rows, {row}, Texts::tr("Edit %1").arg(fieldTitle(RowField::trackNumbers)),
                               [&](GroupeFichiers& groupe, std::size_t) { return setTrackNumbers(groupe, numeros); }));
    return std::nullopt;
}

}  // namespace dravik
