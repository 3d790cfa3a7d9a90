// Any bytes as a whole recording: everything the probe reads out of it must be in its range, and the takes made of such
// recordings must hold every file once, in order, by the rules of mono sets. A chunk "name" in the input gives the file
// names, one a line.

#include "base/byte_source.h"
#include "base/text.h"
#include "fuzz/require.h"
#include "model/audio_metadata.h"
#include "model/folder_scan.h"
#include "model/mono_name.h"
#include "model/probe.h"
#include "model/wave/ixml_document.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <set>

namespace {

using namespace dravik;

/// Grouping compares names pairwise: a few say as much as thousands.
constexpr std::size_t maxNames = 24;
constexpr std::size_t maxNameBytes = 64;

bool isDay(const RecordingDate& date) {
    using namespace std::chrono;
    return year_month_day(year(date.year), month(static_cast<unsigned>(date.month)),
                          day(static_cast<unsigned>(date.day)))
        .ok();
}

/// The document is valid UTF-8, and values are cut out of it at ASCII characters.
void requireText(const std::optional<std::string>& text) {
    if (text) require(isValidUtf8(*text));
}

InfoFichier probed(const ByteSource& source, const ChunkTable& table) {
    InfoFichier info;
    info.taille = source.size();
    info.recordingDate = recordingDateIn(source, table);
    if (info.recordingDate) require(isDay(*info.recordingDate));
    if (const std::optional<AudioFormat> format = linearFormatIn(source, table)) {
        require(format->channels > 0 && format->frames >= 0 && format->sampleRate >= 0);
        require(static_cast<std::uint64_t>(format->frames) <= source.size());
        info.channels = format->channels;
        info.sampleRate = format->sampleRate;
        info.bits = format->bits;
    }
    const std::optional<std::string> ixml = ixmlTextIn(source, table);
    if (!ixml) return info;
    require(!ixml->empty() && isValidUtf8(*ixml));
    fillFromIxml(info, *ixml);
    for (const auto& text :
         {info.project, info.scene, info.tape, info.prise, info.notes, info.timecode, info.framerate}) {
        requireText(text);
    }
    require(!info.notes || !info.notes->empty());
    require(!info.familleUID || !info.familleUID->empty());
    require(!info.timecode || info.framerate);
    for (const auto& [key, nom] : info.nomsPistes)
        require(key > 0 && isValidUtf8(nom));
    for (const auto& [position, track] : info.numerosTracks)
        require(position > 0 && track > 0);
    return info;
}

void checkSplit(std::string_view nom, const std::optional<MonoName>& split) {
    if (!split) return;
    require(!split->base.empty() && split->base.data() == nom.data() && split->numero >= 0);
    require(split->suffixe.data() == nom.data() + split->base.size());
    require(split->base.size() + split->suffixe.size() == nom.size());
}

std::vector<std::string> namesIn(const ByteSource& source, const ChunkTable& table) {
    std::vector<std::string> names;
    const Chunk* chunk = table.first("name");
    if (chunk == nullptr) return names;
    const Bytes bytes = source.read(chunk->payload(), std::min<std::uint64_t>(chunk->size, maxNames * maxNameBytes));
    for (std::string_view rest = asText(bytes); !rest.empty() && names.size() < maxNames;) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(rest.size(), line.size() + 1));
        names.emplace_back(line.substr(0, maxNameBytes));
    }
    return names;
}

/// Sorting by anything but a strict order is undefined, so the order of names must be one.
void checkOrder(const std::vector<std::string>& names) {
    const std::size_t count = std::min<std::size_t>(names.size(), 6);
    for (std::size_t a = 0; a < count; ++a) {
        require(compareNatural(names[a], names[a]) == 0);
        for (std::size_t b = 0; b < count; ++b) {
            const int order = compareNatural(names[a], names[b]);
            require((order == 0) == (names[a] == names[b]));
            require((order < 0) == (compareNatural(names[b], names[a]) > 0));
            for (std::size_t c = 0; c < count && order < 0; ++c) {
                if (compareNatural(names[b], names[c]) < 0) require(compareNatural(names[a], names[c]) < 0);
            }
        }
    }
}

/// One record a name, alike but for what decides between one take and two.
std::vector<InfoFichier> filesOf(const InfoFichier& info, const std::vector<std::string>& names) {
    std::vector<InfoFichier> files;
    for (const std::string& name : names) {
        InfoFichier file = info;
        file.nom = name;
        file.url = name + ".wav";
        if (files.size() % 4 == 1) file.timecode.reset();
        if (files.size() % 8 == 2) file.timecode = "01:00:00:00";
        if (files.size() % 8 != 3) file.channels = 1;
        if (files.size() % 16 == 4) file.sampleRate += 1000;
        files.push_back(std::move(file));
    }
    return files;
}

void checkGroups(const std::vector<InfoFichier>& files, bool regrouped) {
    const std::vector<GroupeFichiers> groups = construireGroupes(files, regrouped);
    require(regrouped || groups.size() == files.size());
    std::multiset<std::string> left;
    for (const InfoFichier& file : files)
        left.insert(file.nom);
    const std::string* before = nullptr;
    for (const GroupeFichiers& group : groups) {
        require(!group.fichiers.empty());
        require(before == nullptr || compareNatural(*before, group.nom) <= 0);
        before = &group.nom;
        require(!group.estPoly || (group.fichiers.size() == 1 && group.fichiers.front().channels > 1));
        for (const InfoFichier& file : group.fichiers) {
            const auto found = left.find(file.nom);
            require(found != left.end());
            left.erase(found);
            if (group.fichiers.size() == 1) continue;
            const InfoFichier& first = group.fichiers.front();
            require(file.channels == 1 && file.sampleRate == first.sampleRate);
            require(!file.timecode || !first.timecode || *file.timecode == *first.timecode);
        }
        require(summary(group).nom == group.nom);
        if (group.isMonoSet()) require(tracksOfGroup(group).size() == group.fichiers.size());
    }
    require(left.empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemorySource source(std::as_bytes(std::span(data, size)));
    const std::optional<ChunkTable> table = walkChunks(source);
    if (!table) return 0;
    const InfoFichier info = probed(source, *table);

    const std::vector<std::string> names = namesIn(source, *table);
    for (const std::string& name : names) {
        checkSplit(name, numeroPisteMono(name, true));
        checkSplit(name, numeroPisteMono(name, false));
        checkSplit(name, familyTrackNumber(name));
        require(withoutTrailingSeparators(name).size() <= name.size());
    }
    checkOrder(names);
    const std::vector<InfoFichier> files = filesOf(info, names);
    checkGroups(files, true);
    checkGroups(files, false);
    return 0;
}
