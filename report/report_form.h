#pragma once

#include "report/generateur_rapport.h"

#include <array>
#include <span>
#include <string>
#include <string_view>

namespace dravik {

/// The form in which a user asks for a report, as far as it is kept from one time to the next. What is of the day alone
/// (tape, folder) is not in it. A value; where it is kept is the caller's.
struct ReportForm {
    std::string production, nomOeuvre, realisateur, ingenieurSon;
    /// The entry chosen from the list, or `customChoice` for the text beside it.
    std::string referenceMode = "-20 dBFS", referenceAutre;
    std::string framerateMode = "files", framerateAutre;
    std::string sampleRateMode = "files", sampleRateAutre;
    std::string bitDepthMode = "files", bitDepthAutre;
    std::string notesGlobales;
    bool inclurePDF = true, inclureCSV = true;
    SoundReportColumns colonnes;
    friend bool operator==(const ReportForm&, const ReportForm&) = default;
};

/// The entry of a list that stands for the user's own text, and the one that stands for what the files say.
inline constexpr std::string_view customChoice = "custom";
inline constexpr std::string_view filesChoice = "files";

/// What the lists offer beside these two.
inline constexpr std::array<std::string_view, 6> referenceChoices = {"-20 dBFS", "-18 dBFS", "-16 dBFS",
                                                                     "-14 dBFS", "-12 dBFS", "-9 dBFS"};
inline constexpr std::array<std::string_view, 5> sampleRateChoices = {"44.1 kHz", "48 kHz", "88.2 kHz", "96 kHz",
                                                                      "192 kHz"};
inline constexpr std::array<std::string_view, 3> bitDepthChoices = {"16 bit", "24 bit", "32 bit"};

/// Under which keys the values of the form are kept.
struct ReportTextSetting {
    std::string_view key;
    std::string ReportForm::*text;
};
[[nodiscard]] std::span<const ReportTextSetting> reportTextSettings() noexcept;
/// Two of the switches; those of the columns are in `optionalColumns`.
struct ReportSwitchSetting {
    std::string_view key;
    bool ReportForm::*on;
};
[[nodiscard]] std::span<const ReportSwitchSetting> reportSwitchSettings() noexcept;

/// What the form asks for. What it leaves to the files is empty: `completed` looks it up there.
[[nodiscard]] GenerateurRapport parametersOf(const ReportForm& form, const std::vector<InfoFichier>& fichiers);

}  // namespace dravik
