#include "operations/track_lines.h"

#include "base/text.h"

#include <algorithm>
#include <map>
#include <optional>
#include <vector>

#include <fmt/format.h>

namespace dravik::OperationsAudio {
namespace {

constexpr std::string_view trackKey = "TRK";
constexpr std::string_view defaultLineEnd = "\r\n";
/// Of a name that has to be shortened at least this much is kept; with less, the line would tell nothing.
constexpr std::size_t leastNameBytes = 8;

/// "sTRK3=Boom" taken apart.
struct TrackLine {
    std::string_view prefix;  ///< one small letter, or nothing
    int numero = 0;
    std::string_view nom;
};

struct Line {
    std::string_view content, lineEnd;
    std::optional<TrackLine> track;
};

std::optional<TrackLine> trackLineIn(std::string_view content) {
    constexpr std::size_t mostDigits = 6;
    const std::size_t prefix = !content.empty() && content.front() >= 'a' && content.front() <= 'z' ? 1 : 0;
    std::string_view rest = content.substr(prefix);
    if (!rest.starts_with(trackKey)) return std::nullopt;
    rest.remove_prefix(trackKey.size());
    const std::size_t equals = rest.find('=');
    if (equals == std::string_view::npos || equals == 0 || equals > mostDigits) return std::nullopt;
    const std::string_view digits = rest.substr(0, equals);
    if (!std::all_of(digits.begin(), digits.end(), isAsciiDigit)) return std::nullopt;
    const auto numero = parseUnsigned32(digits);
    if (!numero) return std::nullopt;
    return TrackLine{content.substr(0, prefix), static_cast<int>(*numero), rest.substr(equals + 1)};
}

/// CR, LF and CR LF all end a line.
std::vector<Line> linesOf(std::string_view text) {
    std::vector<Line> lines;
    while (!text.empty()) {
        const std::size_t contentEnd = std::min(text.find_first_of("\r\n"), text.size());
        const std::string_view behind = text.substr(contentEnd);
        const std::size_t lineEndBytes = behind.starts_with("\r\n") ? 2 : std::min<std::size_t>(behind.size(), 1);
        const std::string_view content = text.substr(0, contentEnd);
        lines.push_back({content, behind.substr(0, lineEndBytes), trackLineIn(content)});
        text.remove_prefix(contentEnd + lineEndBytes);
    }
    return lines;
}

/// A name on one line: what would end the line or the text becomes a blank.
std::string onOneLine(std::string_view name) {
    std::string out(name);
    std::replace_if(
        out.begin(), out.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
    return out;
}

/// A rebuilt line.
struct Entry {
    std::string_view prefix;
    int numero = 0;
    std::string nom;

    [[nodiscard]] std::string text() const { return fmt::format("{}{}{}={}", prefix, trackKey, numero, nom); }
};

/// The lines of one prefix by the number under which the recorder filed a track.
using NamesByNumber = std::map<int, std::string_view>;

/// Channel of the source -> number of the line that is its own.
using LineOfChannel = std::map<std::size_t, int>;

/// The lines whose name is that of one channel, when no other line and no other channel has it.
LineOfChannel linesByName(const NamesByNumber& names, std::span<const SourceTrack> own) {
    struct Match {
        int lines = 0, channels = 0, line = 0;
        std::size_t canal = 0;
    };
    std::map<std::string_view, Match> matches;
    for (const auto& [numero, nom] : names) {
        Match& match = matches[trimmed(nom)];
        match.line = numero;
        ++match.lines;
    }
    for (std::size_t canal = 0; canal < own.size(); ++canal) {
        if (!own[canal].nom) continue;
        const auto match = matches.find(trimmed(*own[canal].nom));
        if (match == matches.end()) continue;
        match->second.canal = canal;
        ++match->second.channels;
    }
    LineOfChannel found;
    for (const auto& [nom, match] : matches) {
        if (!nom.empty() && match.lines == 1 && match.channels == 1) found.emplace(match.canal, match.line);
    }
    return found;
}

/// Lines count either as the TRACK_LIST does or by position, and the numbers of the list may have been changed since
/// they were written. A name tells a line for certain; for the rest that way of counting holds which leaves fewer
/// channels without a line, the list's where both do alike. The sole line of a file of one channel is that channel's.
LineOfChannel linesOfChannels(const NamesByNumber& names, std::span<const SourceTrack> own) {
    if (names.size() == 1 && own.size() == 1) return {{0, names.begin()->first}};
    const LineOfChannel named = linesByName(names, own);
    NamesByNumber rest = names;
    for (const auto& [canal, line] : named)
        rest.erase(line);
    LineOfChannel byNumber = named, byPosition = named;
    for (std::size_t canal = 0; canal < own.size() && !rest.empty(); ++canal) {
        const int position = static_cast<int>(canal) + 1;
        if (rest.contains(own[canal].numero)) byNumber.emplace(canal, own[canal].numero);
        if (rest.contains(position)) byPosition.emplace(canal, position);
    }
    return byNumber.size() < byPosition.size() ? byPosition : byNumber;
}

/// The lines of one prefix for the new tracks.
std::vector<Entry> rebuilt(std::string_view prefix, const NamesByNumber& names, std::span<const OutputTrack> tracks,
                           std::size_t source, std::span<const SourceTrack> own) {
    const LineOfChannel lines = linesOfChannels(names, own);
    std::vector<Entry> entries;
    for (const OutputTrack& track : tracks) {
        if (track.source != source) {
            entries.push_back({prefix, track.numero, onOneLine(trackLabel(track))});
        } else if (const auto line = lines.find(track.canal); line != lines.end()) {
            entries.push_back(
                {prefix, track.numero, track.nom ? onOneLine(*track.nom) : std::string(names.at(line->second))});
        }
    }
    return entries;
}

/// Shortens the names, and leaves out the last lines, until no more than `room` bytes are taken.
void fit(std::vector<Entry>& entries, std::size_t lineEndBytes, std::size_t room) {
    // However many names of whatever length a file claims: no more lines and letters are looked at than can have room.
    constexpr std::size_t shortestLine = std::string_view("TRK1=").size();
    entries.resize(std::min(entries.size(), room / shortestLine));
    std::size_t bytes = 0;
    for (Entry& entry : entries) {
        entry.nom.resize(truncatedUtf8(entry.nom, room).size());
        bytes += entry.text().size() + lineEndBytes;
    }
    while (!entries.empty() && bytes > room) {
        const auto longest = std::max_element(
            entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.nom.size() < b.nom.size(); });
        const std::size_t before = longest->nom.size();
        if (before <= truncatedUtf8(longest->nom, leastNameBytes).size()) {
            bytes -= entries.back().text().size() + lineEndBytes;
            entries.pop_back();
        } else {
            longest->nom.resize(truncatedUtf8(longest->nom, before - 1).size());
            bytes -= before - longest->nom.size();
        }
    }
}

}  // namespace

std::string descriptionWithTracks(std::string_view description, std::span<const OutputTrack> tracks, std::size_t source,
                                  std::span<const SourceTrack> own, std::size_t maxBytes) {
    const std::vector<Line> lines = linesOf(description);
    std::map<std::string_view, NamesByNumber> names;
    std::vector<std::string_view> prefixes;  // in the order in which they are met
    std::size_t otherBytes = 0;
    for (const Line& line : lines) {
        if (!line.track) {
            otherBytes += line.content.size() + line.lineEnd.size();
            continue;
        }
        if (!names.contains(line.track->prefix)) prefixes.push_back(line.track->prefix);
        names[line.track->prefix][line.track->numero] = line.track->nom;
    }
    if (prefixes.empty()) return std::string(description);

    const std::string_view lineEnd = lines.front().lineEnd.empty() ? defaultLineEnd : lines.front().lineEnd;
    std::vector<Entry> entries;
    for (const std::string_view prefix : prefixes) {
        std::vector<Entry> more = rebuilt(prefix, names[prefix], tracks, source, own);
        entries.insert(entries.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    }
    fit(entries, lineEnd.size(), maxBytes - std::min(maxBytes, otherBytes));

    std::string out;
    for (const Line& line : lines) {
        if (!line.track) {
            out.append(line.content).append(line.lineEnd);
            continue;
        }
        // All lines of a prefix stand where its first one stood.
        for (const Entry& entry : entries) {
            if (entry.prefix == line.track->prefix) out.append(entry.text()).append(lineEnd);
        }
        std::erase_if(entries, [&](const Entry& entry) { return entry.prefix == line.track->prefix; });
    }
    const Line& last = lines.back();
    if (last.track && last.lineEnd.empty() && out.ends_with(lineEnd)) out.resize(out.size() - lineEnd.size());
    return out;
}

}  // namespace dravik::OperationsAudio
