#include "update/update_check_error.h"

namespace dravik {
namespace {

const char* textOf(UpdateCheckError::Case reason) noexcept {
    switch (reason) {
        case UpdateCheckError::Case::invalidResponse:
            return "The update server returned an invalid response.";
        case UpdateCheckError::Case::invalidData:
            return "The update information is invalid.";
        case UpdateCheckError::Case::invalidDownloadURL:
            return "The update download URL is invalid.";
        case UpdateCheckError::Case::invalidMinimumMacOS:
            return "The minimum macOS version is invalid.";
        case UpdateCheckError::Case::invalidLocalBuild:
            return "The installed build number could not be read.";
    }
    return "";
}

}  // namespace

UpdateCheckError::UpdateCheckError(Case reason) : Error(textOf(reason)), case_(reason) {}

}  // namespace dravik
