#include "base/abandoned_work.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace dravik {
namespace {

using Abandoned = std::vector<std::function<bool(std::chrono::milliseconds)>>;

/// Never destroyed: whatever is in there may still run when the process ends.
Abandoned& abandoned() {
    static Abandoned& all = *std::make_unique<Abandoned>().release();
    return all;
}

}  // namespace

void abandonWork(std::function<bool(std::chrono::milliseconds)> ended) { abandoned().push_back(std::move(ended)); }

bool waitForAbandonedWork(std::chrono::milliseconds most) {
    const auto end = std::chrono::steady_clock::now() + most;
    std::erase_if(abandoned(), [&](const auto& ended) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        return ended(std::max(left, std::chrono::milliseconds(0)));
    });
    return abandoned().empty();
}

}  // namespace dravik
