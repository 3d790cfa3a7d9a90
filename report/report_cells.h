#pragma once

#include "model/info_fichier.h"
#include "report/sound_report_columns.h"

#include <string>

namespace dravik {

/// What a file's line says in a column. Empty where the file does not tell.
[[nodiscard]] std::string cellText(const InfoFichier& fichier, ReportColumn column);

/// The text as it may stand in a document: "&amp;" as "&", bytes that are not UTF-8 as U+FFFD.
[[nodiscard]] std::string documentText(std::string_view stored);

}  // namespace dravik
