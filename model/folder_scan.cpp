#include "model/folder_scan.h"

#include "base/paths.h"
#include "base/text.h"
#include "model/mono_name.h"
#include "model/probe.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <compare>
#include <cstdint>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <system_error>
#include <thread>
#include <tuple>

namespace dravik {
namespace {

/// With fewer files in memory a further thread costs more than it saves.
constexpr std::size_t filesPerThread = 16;
/// A file whose bytes are in memory takes some ten microseconds, one that comes from a disk a hundred and more.
constexpr std::chrono::microseconds slowProbe{50};
/// Work ahead that is worth a further thread: where other programs keep the cores busy it takes some milliseconds until
/// a new thread runs, and its end is waited for.
constexpr std::chrono::milliseconds worthAThread{4};

/// What two mono files must share to be of one take, but for their timecodes.
struct SetKey {
    std::filesystem::path folder;  ///< files of two folders are two takes, also when both are asked for at once
    std::string base;
    double sampleRate = 0;
    bool modifiable = false;  ///< a proxy in another format is never edited together with the recording
    std::string famille;      ///< FAMILY_UID where it decides, else empty
    friend auto operator<=>(const SetKey&, const SetKey&) = default;
};

struct Member {
    InfoFichier fichier;
    std::string base;
    int numero = 0;
};

/// Files that cannot be read as audio but are named like tracks.
class LostTracks {
  public:
    void add(const InfoFichier& fichier, bool severalMonoFiles) {
        // Its FAMILY_UID is as unreadable as the rest; whether there is a family to belong to is seen later.
        const std::optional<TrackSuffix> suffix = trackSuffix(fichier.nom, true, severalMonoFiles);
        if (!suffix) return;
        const Place place{folderOf(fichier.url), baseNameKey(suffix->nom.base), isEditable(fichier.url)};
        lost_[place].push_back({{fichier.url, suffix->nom.numero}, suffix->withinFamilyOnly});
    }

    /// Those that a set of that key lacks. Each belongs to one set only.
    std::vector<UnreadableTrack> takenBy(const SetKey& key, const std::vector<Member>& members) {
        std::vector<UnreadableTrack> found;
        const auto here = lost_.find(Place{key.folder, key.base, key.modifiable});
        if (here == lost_.end()) return found;
        std::erase_if(here->second, [&](const Lost& lost) {
            // Endings that mean a track only within a family mean nothing beside a single file.
            const bool fits = !lost.withinFamilyOnly || (!key.famille.empty() && members.size() > 1);
            const bool isThere = std::any_of(members.begin(), members.end(),
                                             [&](const Member& member) { return member.numero == lost.track.numero; });
            if (!fits || isThere) return false;
            found.push_back(lost.track);
            return true;
        });
        return found;
    }

  private:
    struct Place {
        std::filesystem::path folder;
        std::string base;
        bool modifiable = false;
        friend auto operator<=>(const Place&, const Place&) = default;
    };
    struct Lost {
        UnreadableTrack track;
        bool withinFamilyOnly = false;
    };
    std::map<Place, std::vector<Lost>> lost_;
};

/// Can two files of one base name be two tracks of one take? Not with one number (a backup, a proxy, a link), nor when
/// they start at different times or their recorder says that they are of different families.
bool canShareTake(const Member& a, const Member& b) {
    const auto agree = [](const auto& one, const auto& other) { return !one || !other || *one == *other; };
    return a.numero != b.numero && agree(a.fichier.timecode, b.fichier.timecode) &&
           agree(a.fichier.familleUID, b.fichier.familleUID);
}

/// Parts the members of one key into sets whose files agree pairwise. Shorter names come first, so that of two files
/// with one number the plain one ("A_T01" before "A_T01_old") gets the place.
std::vector<std::vector<Member>> partedIntoTakes(std::vector<Member> members) {
    std::sort(members.begin(), members.end(), [](const Member& a, const Member& b) {
        const std::string& left = a.fichier.nom;
        const std::string& right = b.fichier.nom;
        return left.size() != right.size() ? left.size() < right.size() : left < right;
    });
    std::vector<std::vector<Member>> sets;
    for (Member& member : members) {
        const auto fits = std::find_if(sets.begin(), sets.end(), [&](const std::vector<Member>& set) {
            return std::all_of(set.begin(), set.end(),
                               [&](const Member& other) { return canShareTake(other, member); });
        });
        if (fits != sets.end()) {
            fits->push_back(std::move(member));
        } else {
            sets.emplace_back().push_back(std::move(member));
        }
    }
    return sets;
}

/// Sorts by the natural order of what `nameOf` says; `isBefore` decides between names that differ only in case or
/// zeros.
template <typename Item, typename NameOf, typename IsBefore>
std::vector<Item> sortedNaturally(std::vector<Item> items, NameOf nameOf, IsBefore isBefore) {
    struct Place {
        std::string key;
        std::size_t index = 0;
    };
    std::vector<Place> places;
    places.reserve(items.size());
    for (const Item& item : items)
        places.push_back({naturalKey(nameOf(item)), places.size()});
    std::sort(places.begin(), places.end(), [&](const Place& a, const Place& b) {
        if (const int order = a.key.compare(b.key); order != 0) return order < 0;
        return isBefore(items[a.index], items[b.index]);
    });
    std::vector<Item> sorted;
    sorted.reserve(items.size());
    for (const Place& place : places)
        sorted.push_back(std::move(items[place.index]));
    return sorted;
}

GroupeFichiers groupOf(std::vector<InfoFichier> fichiers, std::string nom) {
    GroupeFichiers groupe;
    groupe.id = Uuid::random();
    groupe.nom = std::move(nom);
    groupe.fichiers = std::move(fichiers);
    groupe.estPoly = groupe.fichiers.size() == 1 && groupe.fichiers.front().channels > 1;
    mergeMetadata(groupe);
    return groupe;
}

GroupeFichiers groupOfOne(InfoFichier fichier) {
    std::string nom = fichier.nom;
    std::vector<InfoFichier> fichiers;
    fichiers.push_back(std::move(fichier));
    return groupOf(std::move(fichiers), std::move(nom));
}

GroupeFichiers groupOfSet(std::vector<Member> members) {
    std::sort(members.begin(), members.end(), [](const Member& a, const Member& b) {
        if (a.numero != b.numero) return a.numero < b.numero;
        return compareNatural(fileNameText(a.fichier.url), fileNameText(b.fichier.url)) < 0;
    });
    std::string nom = members.front().base;
    std::vector<InfoFichier> fichiers;
    fichiers.reserve(members.size());
    for (Member& member : members)
        fichiers.push_back(std::move(member.fichier));
    return groupOf(std::move(fichiers), std::move(nom));
}

}  // namespace

std::span<const std::string_view> listedExtensions() noexcept {
    static constexpr std::array<std::string_view, 9> listed = {".wav", ".bwf",  ".rf64", ".aif", ".aiff",
                                                               ".caf", ".flac", ".mp3",  ".m4a"};
    return listed;
}

bool isListed(const std::filesystem::path& file) {
    const std::span<const std::string_view> listed = listedExtensions();
    const std::string extension = lowerAscii(file.extension().native());
    return std::find(listed.begin(), listed.end(), extension) != listed.end();
}

std::vector<std::filesystem::path> listerFichiers(const std::filesystem::path& dossier) {
    std::vector<std::filesystem::path> fichiers;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(dossier, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code unknown;
        if (entry->path().filename().native().starts_with('.') || !isListed(entry->path())) continue;
        if (entry->is_regular_file(unknown)) fichiers.push_back(entry->path());
    }
    return sortedNaturally(
        std::move(fichiers), [](const std::filesystem::path& file) { return fileNameText(file); },
        [](const std::filesystem::path& a, const std::filesystem::path& b) { return a.native() < b.native(); });
}

std::vector<InfoFichier> probeFiles(const std::vector<std::filesystem::path>& fichiers, const AudioFileReader& codecs,
                                    const TaskContext& task) {
    std::vector<InfoFichier> infos(fichiers.size());
    std::atomic<std::size_t> next{0};
    std::mutex reporting;
    std::size_t done = 0;
    std::exception_ptr failure;

    const auto work = [&](auto behindEach) {
        try {
            for (std::size_t i = next.fetch_add(1); i < fichiers.size(); i = next.fetch_add(1)) {
                task.checkCancelled();
                infos[i] = analyserFichier(fichiers[i], codecs);
                behindEach();
                if (!task.report) continue;
                const std::scoped_lock lock(reporting);
                ++done;
                task.advance({done, fichiers.size(), infos[i].nom});
            }
        } catch (...) {
            next.store(fichiers.size());  // the others finish the file at hand and stop
            const std::scoped_lock lock(reporting);
            if (!failure) failure = std::current_exception();
        }
    };
    std::size_t most = probeThreads;
    std::vector<std::jthread> helpers;
    const auto runOn = [&](std::size_t threads) {
        try {
            while (helpers.size() + 1 < std::min(threads, most))
                helpers.emplace_back([&] { work([] {}); });
        } catch (const std::system_error&) {
            most = helpers.size() + 1;  // the system gives no more threads: those that there are do the work
        }
    };
    // One thread a core as long as the bytes are in memory: more would only be in each other's way. When the files
    // prove slow, what is waited for is the disk, which answers several questions at once; a folder of few files, too,
    // gets its threads right behind the first.
    helpers.reserve(most);
    runOn(std::min<std::size_t>(fichiers.size() / filesPerThread, std::max(1U, std::thread::hardware_concurrency())));
    const auto begin = std::chrono::steady_clock::now();
    std::int64_t own = 0;
    work([&] {
        ++own;
        if (helpers.size() + 1 >= most) return;
        const std::chrono::nanoseconds each = (std::chrono::steady_clock::now() - begin) / own;
        if (each < slowProbe) return;
        const std::size_t left = fichiers.size() - std::min(next.load(), fichiers.size());
        const auto ahead = each * static_cast<std::int64_t>(left);
        runOn(std::min(left, 1 + static_cast<std::size_t>(ahead / worthAThread)));
    });
    helpers.clear();
    if (failure) std::rethrow_exception(failure);
    return infos;
}

std::vector<GroupeFichiers> construireGroupes(std::vector<InfoFichier> fichiers, bool regrouperFichiersMono) {
    std::vector<GroupeFichiers> groupes;
    groupes.reserve(fichiers.size());
    const auto candidates =
        std::count_if(fichiers.begin(), fichiers.end(), [](const InfoFichier& f) { return f.channels <= 1; });

    std::map<SetKey, std::vector<Member>> sets;
    LostTracks lost;
    for (InfoFichier& fichier : fichiers) {
        if (!regrouperFichiersMono || fichier.channels != 1) {
            if (regrouperFichiersMono && fichier.channels == 0) lost.add(fichier, candidates > 1);
            groupes.push_back(groupOfOne(std::move(fichier)));
            continue;
        }
        const std::optional<TrackSuffix> suffix =
            trackSuffix(fichier.nom, fichier.familleUID.has_value(), candidates > 1);
        if (!suffix) {
            groupes.push_back(groupOfOne(std::move(fichier)));
            continue;
        }
        const SetKey key{folderOf(fichier.url), baseNameKey(suffix->nom.base), fichier.sampleRate,
                         isEditable(fichier.url), suffix->withinFamilyOnly ? *fichier.familleUID : std::string()};
        Member member;
        member.base = std::string(suffix->nom.base);
        member.numero = suffix->nom.numero;
        member.fichier = std::move(fichier);
        sets[key].push_back(std::move(member));
    }
    for (auto& [key, all] : sets) {
        for (std::vector<Member>& members : partedIntoTakes(std::move(all))) {
            std::vector<UnreadableTrack> unreadable = lost.takenBy(key, members);
            groupes.push_back(members.size() == 1 ? groupOfOne(std::move(members.front().fichier))
                                                  : groupOfSet(std::move(members)));
            groupes.back().unreadableTracks = std::move(unreadable);
        }
    }
    return sortedNaturally(
        std::move(groupes), [](const GroupeFichiers& groupe) -> std::string_view { return groupe.nom; },
        [](const GroupeFichiers& a, const GroupeFichiers& b) {
            if (a.nom != b.nom) return a.nom < b.nom;
            return a.fichiers.front().url < b.fichiers.front().url;
        });
}

void countFilesNotThere(std::vector<GroupeFichiers>& groupes) {
    using Family = std::tuple<std::filesystem::path, std::string, int>;
    // A recorder that writes a poly file beside the mono files gives both one family, and counts each kind apart.
    const auto familyOf = [](const InfoFichier& fichier) -> std::optional<Family> {
        if (!fichier.familleUID || !fichier.filesOfFamily || !fichier.indexInFamily) return std::nullopt;
        return Family{folderOf(fichier.url), *fichier.familleUID, *fichier.filesOfFamily};
    };
    // What was made of a recording bears the index of its source: a merged file, a copy. It stands for no other file.
    std::map<Family, std::set<std::string>> present;
    std::map<std::filesystem::path, int> silent;
    for (const GroupeFichiers& groupe : groupes) {
        for (const InfoFichier& fichier : groupe.fichiers) {
            const bool damaged = fichier.channels == 0 || fichier.missingAudioBytes > 0;
            if (const auto family = familyOf(fichier)) {
                present[*family].insert(*fichier.indexInFamily);
            } else if (damaged && isEditable(fichier.url)) {
                ++silent[folderOf(fichier.url)];  // may be any file of any take
            }
        }
    }
    for (GroupeFichiers& groupe : groupes) {
        groupe.filesWritten = groupe.filesNotThere = 0;
        // A single file may well be all that somebody wanted of a take.
        if (!groupe.isMonoSet()) continue;
        std::set<Family> families;
        std::set<std::string> indexes;
        int saying = 0;
        for (const InfoFichier& fichier : groupe.fichiers) {
            const auto family = familyOf(fichier);
            if (!family) continue;
            ++saying;
            families.insert(*family);
            indexes.insert(*fichier.indexInFamily);
        }
        // Files of one index were split off one file; the recorder has not written them.
        if (families.size() != 1 || std::ssize(indexes) != saying) continue;
        const auto& [folder, uid, written] = *families.begin();
        groupe.filesWritten = written;
        const auto there = static_cast<int>(present[*families.begin()].size()) + silent[folder];
        groupe.filesNotThere = std::max(0, written - there);
    }
}

std::vector<GroupeFichiers> scanFolder(const std::filesystem::path& dossier, const AudioFileReader& codecs,
                                       bool regrouperFichiersMono, const TaskContext& task) {
    std::vector<GroupeFichiers> groupes =
        construireGroupes(probeFiles(listerFichiers(dossier), codecs, task), regrouperFichiersMono);
    countFilesNotThere(groupes);
    return groupes;
}

}  // namespace dravik
