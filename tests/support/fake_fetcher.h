#pragma once

#include "update/http_fetcher.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace dravik::test {

/// A server that answers as the test says, at once or when it is let go.
class FakeFetcher final : public HttpFetcher {
  public:
    HttpResponse answer{200, {}};
    std::optional<std::string> failure;  ///< thrown as TransportError in place of an answer
    std::atomic<bool> holds = false;     ///< requests wait while this is set

    [[nodiscard]] HttpResponse get(const HttpRequest& request, const CancellationToken& token) const override {
        {
            const std::lock_guard lock(mutex_);
            asked_.push_back(request);
        }
        while (holds) {
            if (token.isCancelled()) throw Cancelled();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        if (failure) throw TransportError(*failure);
        return answer;
    }
    [[nodiscard]] std::vector<HttpRequest> asked() const {
        const std::lock_guard lock(mutex_);
        return asked_;
    }

  private:
    mutable std::mutex mutex_;
    mutable std::vector<HttpRequest> asked_;
};

}  // namespace dravik::test
