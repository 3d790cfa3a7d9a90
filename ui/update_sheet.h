#pragma once

#include "app/update_presentation.h"

#include <QDialog>
#include <functional>

namespace dravik {

/// The sheet about a release, to be opened by its owner: what it is called, what is known, its notes, which can be
/// selected and copied, and buttons. `download` is called with the address when the user wants it. Belongs to the
/// window.
[[nodiscard]] QDialog* makeUpdateSheet(const UpdatePresentation& presentation,
                                       std::function<void(const QString& url)> download, QWidget* window);

}  // namespace dravik
