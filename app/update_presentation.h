#pragma once

#include "update/installed_app_version.h"
#include "update/update_checker.h"

#include <QString>
#include <QStringList>
#include <optional>
#include <string>
#include <vector>

namespace dravik {

/// What the sheet about a release shows. Plain text throughout, without control characters, and of a bounded length,
/// whatever the version document holds.
struct UpdatePresentation {
    QString title;
    QStringList information;
    QStringList notes;                   ///< a paragraph each
    std::optional<QString> downloadURL;  ///< absent: nothing is offered
    QString downloadButton;              ///< with it
    QString closeButton;
};

/// The system that the program runs on, as it is named to the user.
struct RunningSystem {
    std::optional<OperatingSystemVersion> macOS;  ///< where it is that
    QString name;                                 ///< where it is not
};

[[nodiscard]] UpdatePresentation presentationOf(const UpdateAvailable& update, const InstalledAppVersion& installed,
                                                const RunningSystem& system);
/// The notes of the installed version.
[[nodiscard]] UpdatePresentation whatsNewPresentation(const Bundle& bundle, const std::vector<std::string>& notes);

}  // namespace dravik
