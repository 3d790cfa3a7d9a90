#pragma once

#include "report/pdf_renderer.h"

#include <memory>

namespace dravik {

/// Pages painted with Qt, fonts embedded. Needs a QGuiApplication for as long as it is used.
[[nodiscard]] std::unique_ptr<PdfRenderer> makePdfRenderer();

}  // namespace dravik
