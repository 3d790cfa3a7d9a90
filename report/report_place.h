#pragma once

#include "model/info_fichier.h"
#include "report/pdf_renderer.h"

namespace dravik {

/// What a report takes from where and when it is made. Ask the system; any thread.

/// The day, by the local clock.
[[nodiscard]] RecordingDate today();
/// The paper of the place that the user's environment names, as the system's own programs look it up.
[[nodiscard]] Paper customaryPaper();

}  // namespace dravik
