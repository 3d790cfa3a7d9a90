#include "report/generateur_rapport.h"

#include "base/error.h"
#include "base/free_names.h"
#include "base/safe_file.h"
#include "base/text.h"
#include "report/report_document.h"

#include <memory>

namespace dravik {
namespace {

constexpr std::string_view pdfSuffix = "_SoundReport.pdf";
constexpr std::string_view csvSuffix = "_SoundReport.csv";
constexpr std::size_t roomForNumber = 8;  ///< "-1234567", long before which somebody cleans up

/// One file of the report, hidden until it is put in place.
class ReportFile {
  public:
    ReportFile(FileOps& ops, const std::filesystem::path& target, ByteSpan bytes)
        : file_(ops, target, TempKind::output), target_(target) {
        file_.writeAt(0, bytes);
        file_.sync();
    }
    [[nodiscard]] UnsyncedFolder commit() { return file_.commit(SafeFile::Existing::refuse); }
    [[nodiscard]] const std::filesystem::path& target() const noexcept { return target_; }

  private:
    SafeFile file_;
    std::filesystem::path target_;
};

/// Puts all of them in place or none.
void commitAll(FileOps& ops, const std::vector<std::unique_ptr<ReportFile>>& files) {
    std::vector<std::filesystem::path> inPlace;
    try {
        FolderSyncs syncs;
        for (const auto& file : files) {
            syncs.add(file->commit());
            inPlace.push_back(file->target());
        }
        syncs.syncAll(ops);
    } catch (...) {
        for (const std::filesystem::path& path : inPlace) {
            try {
                ops.remove(path);
            } catch (const std::filesystem::filesystem_error&) {  // NOLINT(bugprone-empty-catch)
                // What cannot be taken back is whole. What went wrong first is what the user has to know.
            }
        }
        throw;
    }
}

}  // namespace

WrittenReport reportNames(const std::vector<InfoFichier>& fichiers, const GenerateurRapport& parametres,
                          const std::filesystem::path& dossierDestination) {
    const std::string folder = folderNameOf(fichiers);
    const std::string_view prefix = truncatedUtf8(folder, maxFileNameBytes - pdfSuffix.size() - roomForNumber);
    std::vector<std::string> suffixes;
    if (parametres.exporterPDF) suffixes.emplace_back(pdfSuffix);
    if (parametres.exporterCSV) suffixes.emplace_back(csvSuffix);
    const std::vector<std::filesystem::path> names = freeNames(dossierDestination, prefix, suffixes);
    WrittenReport report;
    if (parametres.exporterPDF) report.pdf = names.front();
    if (parametres.exporterCSV) report.csv = names.back();
    return report;
}

WrittenReport genererRapport(const std::vector<InfoFichier>& fichiers, const GenerateurRapport& parametres,
                             const std::filesystem::path& dossierDestination, const ReportServices& services,
                             const TaskContext& task) {
    if (fichiers.empty()) throw Error("No files available.");
    if (dossierDestination.empty()) throw Error(std::string(noDestinationSelected));
    if (!parametres.exporterPDF && !parametres.exporterCSV) throw Error("Neither a PDF nor a CSV file is asked for.");
    const ReportDocument document = composeReport(fichiers, parametres, services.today);
    task.checkCancelled();
    const WrittenReport names = reportNames(fichiers, parametres, dossierDestination);
    std::vector<std::unique_ptr<ReportFile>> files;
    if (names.pdf) {
        const Bytes pdf = services.pdf.render(document, {services.paper, parametres.largeurPDF}, task);
        files.push_back(std::make_unique<ReportFile>(services.files, *names.pdf, pdf));
    }
    if (names.csv) {
        files.push_back(std::make_unique<ReportFile>(services.files, *names.csv, asBytes(csvText(document))));
    }
    task.checkCancelled();
    commitAll(services.files, files);
    return names;
}

std::string NamedReportFile::createdLine() const { return kind + " report created"; }

std::vector<NamedReportFile> filesOf(const WrittenReport& report) {
    std::vector<NamedReportFile> files;
    if (report.pdf) files.push_back({"PDF", *report.pdf});
    if (report.csv) files.push_back({"CSV", *report.csv});
    return files;
}

std::string successMessage(const WrittenReport& written) {
    if (written.pdf && written.csv) return "PDF and CSV created successfully.";
    return written.pdf ? "PDF created successfully." : "CSV created successfully.";
}

}  // namespace dravik
