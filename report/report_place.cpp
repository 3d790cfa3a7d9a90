#include "report/report_place.h"

#include <cstdlib>
#include <ctime>

namespace dravik {

RecordingDate today() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday};
}

Paper customaryPaper() {
    for (const char* variable : {"LC_ALL", "LC_PAPER", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') return paperOf(value);
    }
    return Paper::a4;
}

}  // namespace dravik
