#pragma once

#include "update/http_fetcher.h"

#include <memory>

namespace dravik {

/// HTTPS by Qt Network, loaded from the module "dravik_network" beside the program when the first server is asked.
/// Without the module every request fails with the reason. In a program without windows the first request must come
/// from the main thread.
[[nodiscard]] std::shared_ptr<const HttpFetcher> makeLazyHttpFetcher();

/// What the module exports under the name "dravikMakeHttpFetcher": a new fetcher, which is the caller's; throws
/// nothing.
using MakeHttpFetcher = HttpFetcher* (*)();

}  // namespace dravik
