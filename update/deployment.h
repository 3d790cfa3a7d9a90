#pragma once

#include "update/installed_app_version.h"

#include <string>

namespace dravik {

/// Where this build of the program belongs: set when it is configured (cmake/deployment.cmake).
struct Deployment {
    std::string updateInfoURL;   ///< document that describes the newest release
    std::string webDomain;       ///< where releases are downloaded from, with or without "www."
    std::string supportAddress;  ///< of mail, without "mailto:"
    std::string webSite;
    Bundle bundle;

    /// Nothing was set: there is nobody to be asked for updates.
    [[nodiscard]] bool hasPlaceholders() const noexcept;
};

/// That of this build. Any thread.
[[nodiscard]] const Deployment& deployment();

}  // namespace dravik
