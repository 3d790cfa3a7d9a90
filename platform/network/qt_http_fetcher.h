#pragma once

#include "update/http_fetcher.h"

#include <memory>
#include <string>

namespace dravik {

/// HTTPS by Qt Network, over the system's proxy. Needs a QCoreApplication, but no event loop of the caller. Sends no
/// cookies and keeps nothing from one request to the next.
///
/// `trusted`: certificates in PEM form that are trusted in place of the system's, for servers that a test starts.
[[nodiscard]] std::unique_ptr<HttpFetcher> makeQtHttpFetcher(const std::string& trusted = {});

}  // namespace dravik
