#include "base/rename_journal.h"

#include "base/checksum.h"
#include "base/paths.h"
#include "base/temp_name.h"
#include "base/text.h"

#include <map>

#include <fmt/format.h>

namespace dravik {
namespace {

constexpr std::string_view namePrefix = ".dravik_journal_";
constexpr std::string_view firstLine = "dravik rename journal 1\n";

/// File names may hold any byte but "/" and zero: the few that would break the lines are written as %XX.
std::string escaped(std::string_view name) {
    std::string out;
    for (const char c : name) {
        if (static_cast<unsigned char>(c) < 0x20 || c == '%') {
            fmt::format_to(std::back_inserter(out), "%{:02X}", static_cast<unsigned char>(c));
        } else {
            out.push_back(c);
        }
    }
    return out;
}

std::optional<std::string> unescaped(std::string_view line) {
    const auto digit = [](char c) { return isAsciiDigit(c) ? c - '0' : c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1; };
    std::string out;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] != '%') {
            out.push_back(line[i]);
            continue;
        }
        if (line.size() - i < 3 || digit(line[i + 1]) < 0 || digit(line[i + 2]) < 0) return std::nullopt;
        out.push_back(static_cast<char>(digit(line[i + 1]) * 16 + digit(line[i + 2])));
        i += 2;
    }
    // A journal only ever names files of its own folder; anything else was not written by us.
    const bool plain =
        !out.empty() && out != "." && out != ".." && out.find_first_of(std::string_view("/\0", 2)) == std::string::npos;
    return plain ? std::optional(out) : std::nullopt;
}

std::optional<std::string_view> takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) return std::nullopt;
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    return line;
}

}  // namespace

std::string journalText(const std::vector<JournalEntry>& entries) {
    std::string text(firstLine);
    for (const JournalEntry& entry : entries) {
        text += fmt::format("{}\n{}\n{}\n", escaped(entry.source), escaped(entry.temp), escaped(entry.destination));
    }
    return text + fmt::format("crc32 {:08x}\n", crc32(text));
}

std::optional<std::vector<JournalEntry>> parseJournal(std::string_view text) {
    constexpr std::size_t lastLineBytes = 15;  // "crc32 ", eight digits, line feed
    if (!text.starts_with(firstLine) || text.size() < firstLine.size() + lastLineBytes) return std::nullopt;
    std::string_view body = text.substr(0, text.size() - lastLineBytes);
    if (text.substr(body.size()) != fmt::format("crc32 {:08x}\n", crc32(body))) return std::nullopt;
    body.remove_prefix(firstLine.size());
    std::vector<JournalEntry> entries;
    while (!body.empty()) {
        std::string fields[3];
        for (std::string& field : fields) {
            const auto line = takeLine(body);
            auto name = line ? unescaped(*line) : std::nullopt;
            if (!name) return std::nullopt;
            field = std::move(*name);
        }
        if (!hasRenamePrefix(fields[1])) return std::nullopt;
        entries.push_back({std::move(fields[0]), std::move(fields[1]), std::move(fields[2])});
    }
    return entries;
}

std::string journalName(std::string_view token, JournalPhase phase) {
    return fmt::format("{}{}.{}", namePrefix, token, static_cast<int>(phase));
}

std::optional<JournalName> parseJournalName(std::string_view fileName) {
    if (!fileName.starts_with(namePrefix)) return std::nullopt;
    fileName.remove_prefix(namePrefix.size());
    if (fileName.size() < 2) return std::nullopt;
    const std::string_view token = fileName.substr(0, fileName.size() - 2);
    const char phase = fileName.back();
    if (fileName[token.size()] != '.' || phase < '1' || phase > '3' || !isOurToken(token)) return std::nullopt;
    return JournalName{std::string(token), static_cast<JournalPhase>(phase - '0')};
}

namespace {

/// One journal a folder, also where the files name it in several ways (through a link, with "..").
std::filesystem::path realFolder(const std::filesystem::path& folder) {
    std::error_code unknown;
    std::filesystem::path real = std::filesystem::canonical(folder, unknown);
    return unknown ? folder : real;
}

}  // namespace

RenameJournal::RenameJournal(FileOps& ops, const std::vector<RenameMove>& moves) : ops_(ops), token_(freshToken()) {
    std::map<std::filesystem::path, std::vector<JournalEntry>> byFolder;
    for (const RenameMove& move : moves) {
        byFolder[realFolder(folderOf(move.source))].push_back(
            {fileNameText(move.source), fileNameText(move.temp), fileNameText(move.destination)});
    }
    std::filesystem::path at;
    try {
        for (const auto& [folder, entries] : byFolder) {
            at = folder;
            FilePlan content;
            content.add(toBytes(journalText(entries)));
            Place place{folder, nullptr};
            place.file = std::make_unique<SafeFile>(ops_, pathOf(place), TempKind::output);
            place.file->write(content, FileHandle(), {});
            const UnsyncedFolder written = place.file->commit(SafeFile::Existing::refuse);
            places_.push_back(std::move(place));
            ops_.syncFolder(written.folder);
        }
    } catch (const std::exception& error) {
        for (const Place& place : places_) {
            try {
                ops_.remove(pathOf(place));
            } catch (const std::exception&) {
                continue;  // without moves an orphaned journal asks for nothing; the next opening drops it
            }
        }
        throw TwoPhaseRenameError::journalNotWritten(at, systemText(error));
    }
}

std::filesystem::path RenameJournal::pathOf(const Place& place) const {
    return place.folder / journalName(token_, place.phase);
}

void RenameJournal::syncFolders() {
    for (const Place& place : places_)
        ops_.syncFolder(place.folder);
}

void RenameJournal::enter(JournalPhase phase) {
    syncFolders();
    for (Place& place : places_) {
        try {
            ops_.renameNoReplace(pathOf(place), place.folder / journalName(token_, phase));
        } catch (const std::filesystem::filesystem_error& error) {
            // Nobody knows the journal by its name.
            throw std::filesystem::filesystem_error("cannot rename in", place.folder, error.code());
        }
        place.phase = phase;
    }
    syncFolders();
}

void RenameJournal::retire() noexcept {
    try {
        syncFolders();
        for (const Place& place : places_)
            ops_.remove(pathOf(place));
    } catch (const std::exception&) {
        return;
    }
}

}  // namespace dravik
