#pragma once

#include "model/info_fichier.h"
#include "report/generateur_rapport.h"
#include "report/sound_report_columns.h"

#include <string>
#include <utility>
#include <vector>

namespace dravik {

/// What files have in common, for the heading: the one value they share, or the first few of several, "24, 25".
struct FileValues {
    std::string production, tape, framerate;
    std::string sampleRate;  ///< "48 kHz"
    std::string bitDepth;    ///< "24 bit"
};
[[nodiscard]] FileValues valuesOf(const std::vector<InfoFichier>& fichiers);
/// "48 kHz / 24 bit", or one of them where the other is empty.
[[nodiscard]] std::string joinedRateAndDepth(const std::string& sampleRate, const std::string& bitDepth);
/// With what the files say in the fields that were left empty: production, tape, frame rate, rate and depth, and the
/// name of the folder as `valeur`.
[[nodiscard]] GenerateurRapport completed(GenerateurRapport parametres, const std::vector<InfoFichier>& fichiers);

/// Name of the folder that the first file lies in.
[[nodiscard]] std::string folderNameOf(const std::vector<InfoFichier>& fichiers);

/// One line of the table: a file.
struct ReportRow {
    std::vector<std::string> cells;  ///< one a column
    bool circled = false;
};

/// A whole report as texts, all UTF-8, before it is a CSV file or pages.
struct ReportDocument {
    std::string title, subject;
    std::string date;  ///< "MM-dd-yy"
    std::string production, workTitle, director, soundMixer, tape;
    std::string reference, frameRate, sampleRateBits, fileType;
    std::string notes;
    std::vector<ReportColumn> columns;
    std::vector<ReportRow> rows;
    std::string totals;  ///< "40 files, 12 takes, 1:02:33, 3.4 GB"
};

/// How a circled or wild file is marked in its cell.
inline constexpr std::string_view reportMark = "X";

[[nodiscard]] ReportDocument composeReport(const std::vector<InfoFichier>& fichiers,
                                           const GenerateurRapport& parametres, const RecordingDate& today);

/// The document as CSV: UTF-8 without a mark in front, every field between quotes, rows ended by a line feed.
[[nodiscard]] std::string csvText(const ReportDocument& document);

}  // namespace dravik
