#include "cli/report_command.h"

#include "base/paths.h"
#include "cli/display_text.h"
#include "cli/opened_folder.h"
#include "cli/operation_command.h"
#include "cli/progress_bar.h"
#include "model/folder_scan.h"
#include "platform/pdf/lazy_pdf_renderer.h"
#include "report/report_document.h"
#include "report/report_place.h"

#include <fmt/format.h>

namespace dravik {
namespace {

constexpr std::string_view nothingMade = "No files were made.";

/// The files that a run writes, or has written, as the lines of the commands that make files.
std::vector<OperationLine> linesOf(const std::filesystem::path& folder, const WrittenReport& report, bool done) {
    std::vector<OperationLine> lines;
    for (const NamedReportFile& file : filesOf(report))
        lines.push_back(
            {folder, {file.path}, true, done ? file.createdLine() : "Would create " + fileNameText(file.path)});
    return lines;
}

/// Files are written under hidden names, which mean nothing to the user: the folder is what cannot be written to.
std::string reasonOf(const std::exception& error, const std::filesystem::path& dest) {
    if (dynamic_cast<const std::filesystem::filesystem_error*>(&error) == nullptr) return userText(error);
    return fmt::format("{}: {}.", pathText(dest), systemText(error));
}

ExitCode refuse(const std::vector<std::string>& sentences, bool json, Console& console) {
    for (const std::string& sentence : sentences)
        console.message(sentence);
    console.message(nothingMade);
    if (json) console.print(operationJson({}));
    return ExitCode::refused;
}

/// Names the files of which the report can say no more than that they are there. True when there is one.
bool tellUnreadable(const std::vector<InfoFichier>& fichiers, Console& console) {
    bool any = false;
    for (const InfoFichier& fichier : fichiers) {
        if (fichier.channels > 0) continue;
        console.message(shown(fichier.url) + ": cannot be read as audio. It is in the report by its name.");
        any = true;
    }
    return any;
}

}  // namespace

ExitCode runReport(const ReportOptions& options, Services& services) {
    Console& console = services.console;
    std::vector<std::string> problems;
    for (const std::filesystem::path& folder : {options.folder, options.dest}) {
        if (std::string problem = folderProblem(folder); !problem.empty()) problems.push_back(std::move(problem));
    }
    if (!problems.empty()) return refuse(problems, options.json, console);
    const bool recovered = options.dryRun || recoverAndTell(options.folder, services);
    const std::vector<std::filesystem::path> files = filesIn(options.folder);
    if (files.empty()) {
        return refuse(
            {"No Files Available for Sound Report. Select a folder that contains audio files to build a report."},
            options.json, console);
    }
    std::vector<InfoFichier> fichiers;
    {
        ProgressBar bar(console, "Reading");
        fichiers = probeFiles(files, services.codecs, {&services.token, bar.sink()});
    }
    const bool unreadable = tellUnreadable(fichiers, console);
    const GenerateurRapport parametres = completed(options.report, fichiers);
    std::vector<OperationLine> lines;
    if (options.dryRun) {
        lines = linesOf(options.folder, reportNames(fichiers, parametres, options.dest), false);
    } else {
        const std::unique_ptr<PdfRenderer> pdf = makeLazyPdfRenderer();
        const ReportServices with{services.files, *pdf, today(), customaryPaper()};
        try {
            lines = linesOf(options.folder,
                            genererRapport(fichiers, parametres, options.dest, with, {&services.token, {}}), true);
        } catch (const Cancelled&) {
            throw;
        } catch (const std::exception& error) {
            const std::string reason = reasonOf(error, options.dest);
            console.message(fmt::format("Sound Report Failed. {} {}", printable(reason), nothingMade));
            if (options.json) console.print(operationJson({{options.folder, {}, false, reason}}));
            return ExitCode::someFailed;
        }
    }
    std::string text;
    for (const OperationLine& line : lines)
        text += fmt::format("{}: {}\n", shown(line.outputs.front()), line.message);
    if (options.dryRun)
        text += fmt::format("\nDry run: {} in the report. {}\n", counted(fichiers.size(), "file"), nothingMade);
    console.print(options.json ? operationJson(lines) : text);
    return unreadable || !recovered ? ExitCode::someFailed : ExitCode::done;
}

}  // namespace dravik
