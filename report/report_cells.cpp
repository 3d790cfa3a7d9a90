#include "report/report_cells.h"

#include "base/paths.h"
#include "base/text.h"
#include "model/audio_metadata.h"
#include "model/wave/timecode.h"
#include "report/report_document.h"

#include <cmath>

#include <fmt/format.h>

namespace dravik {
namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

std::string orEmpty(const std::optional<std::string>& text) { return text ? documentText(*text) : std::string(); }

/// Lengths are counted as start times are: in samples, at the file's rate.
std::uint64_t samplesOf(const InfoFichier& fichier) {
    const double seconds = fichier.dureeSecondes;
    if (!(seconds > 0) || seconds > longestDuration || !(fichier.sampleRate > 0)) return 0;
    return static_cast<std::uint64_t>(std::llround(seconds * fichier.sampleRate));
}

std::string timecodeText(const InfoFichier& fichier, std::uint64_t samples) {
    return timecodeFromSamples(samples, actualRate(fichier.framerate.value_or("")), fichier.sampleRate).value_or("");
}

std::string endText(const InfoFichier& fichier) {
    if (!fichier.timecode) return {};
    const std::uint64_t start =
        samplesFromTimecode(*fichier.timecode, fichier.framerate.value_or(""), fichier.sampleRate);
    return timecodeText(fichier, start + samplesOf(fichier));
}

std::string kilohertz(double hertz) {
    std::string text = fmt::format("{:.3f}", hertz / 1000);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.pop_back();
    return text;
}

constexpr double megabyte = 1e6;

}  // namespace

std::string documentText(std::string_view stored) {
    if (isValidUtf8(stored)) return displayName(stored);
    std::string text;
    while (!stored.empty()) {
        const Utf8Character character = firstCharacter(stored);
        text.append(character.isValid() ? stored.substr(0, character.bytes) : replacement);
        stored.remove_prefix(character.bytes);
    }
    return displayName(text);
}

std::string cellText(const InfoFichier& fichier, ReportColumn column) {
    const bool isAudio = fichier.channels > 0;
    switch (column) {
        case ReportColumn::fileName: {
            // A name is no value of an XML document: "&amp;" in it is itself.
            const std::string name = fileNameText(fichier.url);
            return isValidUtf8(name) ? name : documentText(name);
        }
        case ReportColumn::tape:
            return orEmpty(fichier.tape);
        case ReportColumn::scene:
            return orEmpty(fichier.scene);
        case ReportColumn::take:
            return orEmpty(fichier.prise);
        case ReportColumn::circled:
            return std::string(fichier.circled ? reportMark : "");
        case ReportColumn::wild:
            return std::string(fichier.wild ? reportMark : "");
        case ReportColumn::notes:
            return orEmpty(fichier.notes);
        case ReportColumn::channel:
            return isAudio ? std::to_string(fichier.channels) : std::string();
        case ReportColumn::duration:
            return isAudio ? timecodeText(fichier, samplesOf(fichier)) : std::string();
        case ReportColumn::tcStart:
            return orEmpty(fichier.timecode);
        case ReportColumn::tcEnd:
            return endText(fichier);
        case ReportColumn::frameRate:
            return orEmpty(fichier.framerate);
        case ReportColumn::bitDepth:
            return fichier.bits > 0 ? std::to_string(fichier.bits) : std::string();
        case ReportColumn::sampleRate:
            return fichier.sampleRate > 0 ? kilohertz(fichier.sampleRate) : std::string();
        case ReportColumn::size:
            return fmt::format("{:.1f} MB", static_cast<double>(fichier.taille) / megabyte);
        case ReportColumn::format:
            return fichier.format;
    }
    return {};
}

}  // namespace dravik
