#pragma once

#include "report/pdf_renderer.h"

#include <memory>

namespace dravik {

/// The PDF pages of Qt Gui, loaded from the module "dravik_pdf" beside the program when the first one is asked for,
/// without a display. Without the module every PDF is refused with the reason. For the main thread of a program that
/// has no windows.
[[nodiscard]] std::unique_ptr<PdfRenderer> makeLazyPdfRenderer();

/// What the module exports under the name "dravikMakePdfRenderer".
using MakePdfRenderer = PdfRenderer* (*)();

}  // namespace dravik
