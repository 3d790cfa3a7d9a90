#include "app/external_file_open_router.h"

#include "app/single_main_window_coordinator.h"
#include "base/paths.h"

#include <set>
#include <string>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <spdlog/spdlog.h>

namespace dravik {
namespace {

std::string listed(const ExternalFileOpenRouter::Urls& urls) {
    std::vector<std::string> texts;
    for (const std::filesystem::path& url : urls)
        texts.push_back(pathText(url));
    return fmt::format("[{}]", fmt::join(texts, ", "));
}

}  // namespace

void ExternalFileOpenRouter::registerConsumer(const Uuid& consumerID, Handler handler) {
    consumer_ = Consumer{consumerID, std::move(handler)};
    spdlog::info("consumer registered; active consumer=true; pending count {}", pending_.size());
    if (pending_.empty()) return;
    const Urls waiting = std::exchange(pending_, {});
    spdlog::info("draining pending {}; pending count now {}", waiting.size(), pending_.size());
    // A copy: the handler may register another consumer.
    const Handler deliver = consumer_->handler;
    deliver(waiting);
}

void ExternalFileOpenRouter::clear(const Uuid& consumerID) {
    if (!consumer_ || consumer_->id != consumerID) {
        spdlog::info("stale consumer clear ignored; active consumer={}", consumer_.has_value());
        return;
    }
    consumer_.reset();
    spdlog::info("consumer cleared; active consumer=false; pending count {}", pending_.size());
}

void ExternalFileOpenRouter::route(const Urls& urls) {
    spdlog::info("received URL event: {}; active consumer={}; pending before filter={}", listed(urls),
                 consumer_.has_value(), pending_.size());
    std::set<std::string> known;
    for (const std::filesystem::path& url : pending_)
        known.insert(normalisedPath(url));
    Urls fresh;
    for (const std::filesystem::path& url : urls) {
        if (known.insert(normalisedPath(url)).second) fresh.push_back(url);
    }
    if (fresh.empty()) {
        spdlog::info("duplicate URL event ignored: {}", listed(urls));
        return;
    }
    if (!consumer_) {
        pending_.insert(pending_.end(), fresh.begin(), fresh.end());
        spdlog::info("no active consumer; queueing {}; pending count now {}", fresh.size(), pending_.size());
        windows_.presentMainWindow();
        return;
    }
    spdlog::info("active consumer found; forwarding immediately {}", fresh.size());
    const Handler deliver = consumer_->handler;
    deliver(fresh);
}

}  // namespace dravik
