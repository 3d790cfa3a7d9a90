#include "report/report_document.h"

#include "base/paths.h"
#include "model/audio_metadata.h"
#include "model/folder_scan.h"
#include "report/report_cells.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace dravik {
namespace {

constexpr std::size_t mostValuesNamed = 4;

/// Collects what files say of one thing, each value once, in the order in which they come.
class Values {
  public:
    void add(const std::string& value) {
        if (value.empty() || std::find(values_.begin(), values_.end(), value) != values_.end()) return;
        if (values_.size() < mostValuesNamed) {
            values_.push_back(value);
        } else {
            more_ = true;
        }
    }
    [[nodiscard]] std::string text() const {
        return fmt::format("{}{}", fmt::join(values_, ", "), more_ ? ", ..." : "");
    }

  private:
    std::vector<std::string> values_;
    bool more_ = false;
};

std::string fileTypeOf(const std::vector<InfoFichier>& fichiers) {
    bool mono = false;
    bool poly = false;
    for (const InfoFichier& fichier : fichiers) {
        if (fichier.channels == 1) mono = true;
        if (fichier.channels > 1) poly = true;
    }
    // A day of both kinds is neither: which one a file is, its line says.
    return mono == poly ? "B-WAV" : mono ? "B-WAV Mono" : "B-WAV Poly";
}

std::string countText(std::size_t count, std::string_view noun) {
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

/// The files of one take were recorded at the same time: the longest of them counts.
std::string totalsOf(const std::vector<InfoFichier>& fichiers) {
    std::uint64_t bytes = 0;
    for (const InfoFichier& fichier : fichiers)
        bytes += fichier.taille;
    double seconds = 0;
    const std::vector<GroupeFichiers> takes = construireGroupes(fichiers, true);
    for (const GroupeFichiers& take : takes) {
        double longest = 0;
        for (const InfoFichier& fichier : take.fichiers) {
            if (fichier.dureeSecondes <= longestDuration) longest = std::max(longest, fichier.dureeSecondes);
        }
        seconds += longest;
    }
    const auto whole = static_cast<std::int64_t>(std::llround(seconds));
    return fmt::format("{}   {}   {}:{:02}:{:02} recorded   {}", countText(fichiers.size(), "file"),
                       countText(takes.size(), "take"), whole / 3600, whole / 60 % 60, whole % 60, sizeText(bytes));
}

void addField(std::string& csv, std::string_view field) {
    csv += '"';
    for (const char c : field) {
        if (c == '"') csv += '"';
        csv += c;
    }
    csv += '"';
}

template <typename Fields>
void addRow(std::string& csv, const Fields& fields) {
    bool first = true;
    for (const auto& field : fields) {
        if (!first) csv += ',';
        addField(csv, field);
        first = false;
    }
    csv += '\n';
}

}  // namespace

FileValues valuesOf(const std::vector<InfoFichier>& fichiers) {
    Values production, tape, framerate, sampleRate, bitDepth;
    for (const InfoFichier& fichier : fichiers) {
        production.add(documentText(fichier.project.value_or("")));
        tape.add(documentText(fichier.tape.value_or("")));
        framerate.add(documentText(fichier.framerate.value_or("")));
        sampleRate.add(sampleRateText(fichier.sampleRate));
        if (fichier.bits > 0) bitDepth.add(fmt::format("{} bit", fichier.bits));
    }
    return {production.text(), tape.text(), framerate.text(), sampleRate.text(), bitDepth.text()};
}

std::string joinedRateAndDepth(const std::string& sampleRate, const std::string& bitDepth) {
    return sampleRate + (sampleRate.empty() || bitDepth.empty() ? "" : " / ") + bitDepth;
}

std::string folderNameOf(const std::vector<InfoFichier>& fichiers) {
    if (fichiers.empty()) return {};
    std::error_code error;
    std::filesystem::path folder = folderOf(fichiers.front().url);
    // ".", "..", and links by other names: the name that the folder itself bears.
    if (std::filesystem::path real = std::filesystem::canonical(folder, error); !error) folder = std::move(real);
    return fileNameText(folder);
}

GenerateurRapport completed(GenerateurRapport parametres, const std::vector<InfoFichier>& fichiers) {
    const FileValues ofFiles = valuesOf(fichiers);
    const auto fill = [](std::string& field, std::string value) {
        if (field.empty()) field = std::move(value);
    };
    fill(parametres.valeur, folderNameOf(fichiers));
    fill(parametres.production, ofFiles.production);
    fill(parametres.framerate, ofFiles.framerate);
    fill(parametres.sampleRateBits, joinedRateAndDepth(ofFiles.sampleRate, ofFiles.bitDepth));
    fill(parametres.tape, ofFiles.tape);
    return parametres;
}

ReportDocument composeReport(const std::vector<InfoFichier>& fichiers, const GenerateurRapport& parametres,
                             const RecordingDate& today) {
    ReportDocument document;
    document.title = parametres.titre;
    document.subject = parametres.valeur;
    document.date = fmt::format("{:02}-{:02}-{:02}", today.month, today.day, today.year % 100);
    document.production = parametres.production;
    document.workTitle = parametres.nomOeuvre;
    document.director = parametres.realisateur;
    document.soundMixer = parametres.ingenieurSon;
    document.tape = parametres.tape;
    document.reference = parametres.referenceDBFS;
    document.frameRate = parametres.framerate;
    document.sampleRateBits = parametres.sampleRateBits;
    document.fileType = fileTypeOf(fichiers);
    document.notes = parametres.notesGlobales;
    document.columns = columnsOf(parametres.colonnes);
    document.rows.reserve(fichiers.size());
    for (const InfoFichier& fichier : fichiers) {
        ReportRow& row = document.rows.emplace_back();
        row.circled = fichier.circled;
        row.cells.reserve(document.columns.size());
        for (const ReportColumn column : document.columns)
            row.cells.push_back(cellText(fichier, column));
    }
    document.totals = totalsOf(fichiers);
    return document;
}

std::string csvText(const ReportDocument& document) {
    using Row = std::vector<std::string_view>;
    std::string csv;
    addRow(csv, Row{"Tape", document.tape});
    addRow(csv, Row{document.date});
    csv += '\n';
    addRow(csv, Row{"Production", document.production});
    addRow(csv, Row{"Work Title", document.workTitle});
    addRow(csv, Row{"Director", document.director});
    addRow(csv, Row{"Sound Mixer", document.soundMixer});
    csv += '\n';
    addRow(csv, Row{"Reference", document.reference});
    addRow(csv, Row{"Frame Rate", document.frameRate});
    addRow(csv, Row{"Sample Rate / Bit Depth", document.sampleRateBits});
    addRow(csv, Row{"File Type", document.fileType});
    if (!document.notes.empty()) addRow(csv, Row{"Report Notes", document.notes});
    csv += '\n';
    Row titles;
    for (const ReportColumn column : document.columns)
        titles.push_back(titleOf(column));
    addRow(csv, titles);
    for (const ReportRow& row : document.rows)
        addRow(csv, row.cells);
    return csv;
}

}  // namespace dravik
