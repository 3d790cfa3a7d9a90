#pragma once

#include "base/file_ops.h"
#include "base/progress.h"
#include "model/info_fichier.h"
#include "report/pdf_renderer.h"
#include "report/sound_report_columns.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dravik {

/// What a sound report is to say beside its lines, and what it is to be written as. Texts are UTF-8.
struct GenerateurRapport {
    std::string titre = "SOUND REPORT";
    std::optional<double> largeurPDF;  ///< width of the pages in points; absent: that of the paper
    std::string valeur;                ///< what the report is of, under the title: the folder's name, a shooting day
    std::string production;
    std::string nomOeuvre;     ///< work title
    std::string realisateur;   ///< director
    std::string ingenieurSon;  ///< sound mixer
    std::string referenceDBFS;
    std::string framerate;
    std::string sampleRateBits;
    std::string tape;
    std::string notesGlobales;
    bool exporterPDF = true, exporterCSV = true;
    SoundReportColumns colonnes;
};

/// What writing a report takes beside that.
struct ReportServices {
    FileOps& files;
    const PdfRenderer& pdf;
    RecordingDate today;  ///< the day that the report bears
    Paper paper = Paper::a4;
};

/// What a run has written; absent what was not asked for.
struct WrittenReport {
    std::optional<std::filesystem::path> pdf, csv;
};

/// One of its files, as it is told of.
struct NamedReportFile {
    std::string kind;  ///< "PDF"
    std::filesystem::path path;

    [[nodiscard]] std::string createdLine() const;  ///< "PDF report created"
};
[[nodiscard]] std::vector<NamedReportFile> filesOf(const WrittenReport& report);

/// A report goes nowhere by itself.
inline constexpr std::string_view noDestinationSelected = "No destination folder selected";

/// The names that the files of a report get: "<folder>_SoundReport.pdf", both with "-1", "-2" behind the folder where
/// one of them is taken. The folder is the one that the first file lies in.
[[nodiscard]] WrittenReport reportNames(const std::vector<InfoFichier>& fichiers, const GenerateurRapport& parametres,
                                        const std::filesystem::path& dossierDestination);

/// Writes the report of the files, a line for each in their order, into the folder: whole, or not at all, and never
/// over a file that exists. Throws Error where there is nothing to write or nowhere to write it to, Cancelled, and what
/// the file system says; then nothing is left behind. What `parametres` leaves empty stays empty (see `completed`).
[[nodiscard]] WrittenReport genererRapport(const std::vector<InfoFichier>& fichiers,
                                           const GenerateurRapport& parametres,
                                           const std::filesystem::path& dossierDestination,
                                           const ReportServices& services, const TaskContext& task);

/// For the line that tells the user: "PDF and CSV created successfully."
[[nodiscard]] std::string successMessage(const WrittenReport& written);

}  // namespace dravik
