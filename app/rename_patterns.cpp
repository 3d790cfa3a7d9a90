#include "app/rename_patterns.h"

#include "app/text.h"

#include <QCoreApplication>
#include <QStringList>
#include <algorithm>
#include <optional>

namespace dravik {
namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(dravik::RenamePatterns)
};

constexpr const char* savedKey = "renamePatterns";
constexpr const char* rememberedKey = "renamePattern";

/// As kept: names and texts by turns, of which some may be unreadable.
struct Entry {
    QString name, text;
};

std::vector<Entry> entries(const UserDefaults& settings) {
    const QStringList stored = settings.stored(QLatin1String(savedKey)).toStringList();
    std::vector<Entry> all;
    for (qsizetype at = 0; at + 1 < stored.size(); at += 2)
        all.push_back({stored[at], stored[at + 1]});
    return all;
}

void store(UserDefaults& settings, const std::vector<Entry>& all) {
    QStringList stored;
    for (const Entry& entry : all)
        stored << entry.name << entry.text;
    settings.store(QLatin1String(savedKey), stored);
}

void removeFrom(std::vector<Entry>& all, const QString& name) {
    std::erase_if(all, [&](const Entry& one) { return one.name.compare(name, Qt::CaseInsensitive) == 0; });
}

std::optional<RenamePattern> readable(const QString& text) {
    try {
        return parsePattern(text.toStdString());
    } catch (const RenamePatternError&) {
        return std::nullopt;
    }
}

}  // namespace

std::vector<NamedRenamePattern> builtInRenamePatterns() {
    return {{Texts::tr("Scene_Take"), parsePattern("{scene}_{take}")},
            {Texts::tr("Scene_Take_Track Name"), parsePattern("{scene}_{take}_{trackName}")},
            {Texts::tr("Project_Scene_Take"), parsePattern("{project}_{scene}_{take}")},
            {Texts::tr("Tape_Start Timecode"), parsePattern("{tape}_{startTimecode}")}};
}

std::vector<NamedRenamePattern> savedRenamePatterns(const UserDefaults& settings) {
    std::vector<NamedRenamePattern> saved;
    for (const Entry& entry : entries(settings)) {
        std::optional<RenamePattern> pattern = readable(entry.text);
        if (pattern && !pattern->empty()) saved.push_back({entry.name, std::move(*pattern)});
    }
    std::sort(saved.begin(), saved.end(), [](const NamedRenamePattern& a, const NamedRenamePattern& b) {
        return a.name.compare(b.name, Qt::CaseInsensitive) < 0;
    });
    return saved;
}

void saveRenamePattern(UserDefaults& settings, const QString& name, const RenamePattern& pattern) {
    const QString plain = name.simplified();
    if (plain.isEmpty() || pattern.empty()) return;
    std::vector<Entry> all = entries(settings);
    removeFrom(all, plain);
    all.push_back({plain, toQt(patternText(pattern))});
    store(settings, all);
}

void removeRenamePattern(UserDefaults& settings, const QString& name) {
    std::vector<Entry> all = entries(settings);
    removeFrom(all, name);
    store(settings, all);
}

RenamePattern rememberedRenamePattern(const UserDefaults& settings) {
    return readable(settings.stored(QLatin1String(rememberedKey)).toString()).value_or(RenamePattern());
}

void rememberRenamePattern(UserDefaults& settings, const RenamePattern& pattern) {
    settings.store(QLatin1String(rememberedKey), toQt(patternText(pattern)));
}

}  // namespace dravik
