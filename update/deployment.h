#pragma once

#include "update/installed_app_version.h"

#include <string>

namespace dravik {

/// Addresses and version that this build was configured with (cmake/deployment.cmake).
struct Deployment {
    std::string updateInfoURL;   ///< document that describes the newest release
    std::string webDomain;       ///< where releases are downloaded from, with or without "www."
    std::string supportAddress;  ///< an e-mail address, without "mailto:"
    std::string webSite;
    Bundle bundle;

    /// The web domain is still the placeholder, below ".test": there is nobody to be asked for updates. The other
    /// addresses are placeholders then, too; configuring refuses a mixture.
    [[nodiscard]] bool hasPlaceholders() const noexcept;
};

/// That of this build. Any thread.
[[nodiscard]] const Deployment& deployment();

}  // namespace dravik
