#include "update/deployment.h"

#include "base/build_info.h"
#include "base/text.h"

namespace dravik {

bool Deployment::hasPlaceholders() const noexcept {
    constexpr std::string_view reserved = ".test";
    const std::string_view domain = webDomain;
    return domain.size() < reserved.size() ||
           equalsIgnoringAsciiCase(domain.substr(domain.size() - reserved.size()), reserved);
}

const Deployment& deployment() {
    static const Deployment ours{DRAVIK_UPDATE_URL, DRAVIK_WEB_DOMAIN, DRAVIK_SUPPORT_ADDRESS, DRAVIK_WEB_SITE,
                                 Bundle{std::string(buildInfo().version), std::string(buildInfo().build)}};
    return ours;
}

}  // namespace dravik
