#include "platform/network/lazy_http_fetcher.h"

#include "platform/module.h"

#include <mutex>

namespace dravik {
namespace {

class LazyHttpFetcher final : public HttpFetcher {
  public:
    [[nodiscard]] HttpResponse get(const HttpRequest& request, const CancellationToken& token) const override {
        std::call_once(loaded_, [this] {
            const ModuleFunction function = moduleFunction("dravik_network", "dravikMakeHttpFetcher");
            if (function.address != nullptr) real_.reset(reinterpret_cast<MakeHttpFetcher>(function.address)());
            reason_ = function.reason;
        });
        if (!real_) throw TransportError("The network cannot be used: " + reason_);
        return real_->get(request, token);
    }

  private:
    mutable std::once_flag loaded_;
    mutable std::unique_ptr<HttpFetcher> real_;
    mutable std::string reason_;
};

}  // namespace

std::shared_ptr<const HttpFetcher> makeLazyHttpFetcher() { return std::make_shared<LazyHttpFetcher>(); }

}  // namespace dravik
