#include "app/protected_termination.h"

#include <utility>

namespace dravik {

void ProtectedTermination::applicationShouldTerminate() {
    if (std::exchange(pending_, true)) return;
    emit commands_.demanderQuitterAvecProtection();
}

void ProtectedTermination::replyToApplicationShouldTerminate(bool terminates) {
    if (!std::exchange(pending_, false)) return;
    if (terminates) terminate_();
    emit commands_.dravikProtectedTerminationDidReply();
}

}  // namespace dravik
