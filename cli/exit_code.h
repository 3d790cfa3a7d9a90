#pragma once

#include "base/error.h"

namespace dravik {

/// What the program tells the shell. A contract: scripts depend on the numbers.
enum class ExitCode {
    done = 0,
    someFailed = 1,     ///< some item failed; each was named on stderr
    usage = 2,          ///< the command line asks for something that makes no sense
    refused = 3,        ///< a check failed before anything was changed
    interrupted = 130,  ///< stopped by a signal; nothing is half-written
};

/// The command line is wrong. `what()` says how; the program ends with ExitCode::usage.
class UsageError : public Error {
  public:
    using Error::Error;
};

}  // namespace dravik
