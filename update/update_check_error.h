#pragma once

#include "base/error.h"

namespace dravik {

/// Why a check for updates has no result although the server could be asked.
class UpdateCheckError : public Error {
  public:
    enum class Case { invalidResponse, invalidData, invalidDownloadURL, invalidMinimumMacOS, invalidLocalBuild };

    explicit UpdateCheckError(Case reason);
    [[nodiscard]] Case reason() const noexcept { return case_; }

  private:
    Case case_;
};

}  // namespace dravik
