#include "report/report_form.h"

#include "report/report_document.h"

namespace dravik {
namespace {

using F = ReportForm;

constexpr std::array texts = {
    ReportTextSetting{"rapportProduction", &F::production},
    ReportTextSetting{"rapportNomOeuvre", &F::nomOeuvre},
    ReportTextSetting{"rapportRealisateur", &F::realisateur},
    ReportTextSetting{"rapportIngenieurSon", &F::ingenieurSon},
    ReportTextSetting{"rapportReferenceMode", &F::referenceMode},
    ReportTextSetting{"rapportReferenceAutre", &F::referenceAutre},
    ReportTextSetting{"rapportFramerateMode", &F::framerateMode},
    ReportTextSetting{"rapportFramerateAutre", &F::framerateAutre},
    ReportTextSetting{"rapportSampleRateMode", &F::sampleRateMode},
    ReportTextSetting{"rapportSampleRateAutre", &F::sampleRateAutre},
    ReportTextSetting{"rapportBitDepthMode", &F::bitDepthMode},
    ReportTextSetting{"rapportBitDepthAutre", &F::bitDepthAutre},
    ReportTextSetting{"rapportNotesGlobales", &F::notesGlobales},
};

constexpr std::array switches = {
    ReportSwitchSetting{"rapportInclurePDF", &F::inclurePDF},
    ReportSwitchSetting{"rapportInclureCSV", &F::inclureCSV},
};

std::string choice(const std::string& mode, const std::string& custom, const std::string& ofFiles) {
    if (mode == customChoice) return custom;
    return mode == filesChoice ? ofFiles : mode;
}

}  // namespace

std::span<const ReportTextSetting> reportTextSettings() noexcept { return texts; }
std::span<const ReportSwitchSetting> reportSwitchSettings() noexcept { return switches; }

GenerateurRapport parametersOf(const ReportForm& form, const std::vector<InfoFichier>& fichiers) {
    GenerateurRapport parametres;
    parametres.production = form.production;
    parametres.nomOeuvre = form.nomOeuvre;
    parametres.realisateur = form.realisateur;
    parametres.ingenieurSon = form.ingenieurSon;
    const FileValues ofFiles = valuesOf(fichiers);
    parametres.referenceDBFS = choice(form.referenceMode, form.referenceAutre, {});
    parametres.framerate = choice(form.framerateMode, form.framerateAutre, ofFiles.framerate);
    parametres.sampleRateBits =
        joinedRateAndDepth(choice(form.sampleRateMode, form.sampleRateAutre, ofFiles.sampleRate),
                           choice(form.bitDepthMode, form.bitDepthAutre, ofFiles.bitDepth));
    parametres.notesGlobales = form.notesGlobales;
    parametres.exporterPDF = form.inclurePDF;
    parametres.exporterCSV = form.inclureCSV;
    parametres.colonnes = form.colonnes;
    return parametres;
}

}  // namespace dravik
