#pragma once

#include "base/error.h"

#include <string>
#include <utility>

namespace dravik {

/// Why an operation on audio could not make its file. `what()` is the line that the user reads in the list of results.
/// Nothing of the file that failed is left on disk, and no source is ever touched. File-system errors are not wrapped:
/// they pass as std::filesystem::filesystem_error.
class OperationAudioError : public Error {
  public:
    enum class Case {
        groupeIncompatible,         ///< the selection or a file does not qualify for the operation
        impossibleCreerFormat,      ///< an audio format, channel layout, converter or buffer cannot be made
        donneesAudioInaccessibles,  ///< the audio cannot be read as its header promises
    };

    [[nodiscard]] static OperationAudioError groupeIncompatible(std::string message);
    [[nodiscard]] static OperationAudioError impossibleCreerFormat(std::string message);
    [[nodiscard]] static OperationAudioError donneesAudioInaccessibles(std::string message);

    [[nodiscard]] Case errorCase() const noexcept { return case_; }

  private:
    OperationAudioError(Case errorCase, std::string message) : Error(std::move(message)), case_(errorCase) {}

    Case case_;
};

}  // namespace dravik
