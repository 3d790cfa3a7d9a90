#pragma once

#include "base/error.h"
#include "base/progress.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace dravik {

/// A GET request.
struct HttpRequest {
    std::string url;
    std::vector<std::pair<std::string, std::string>> headers;
    std::chrono::milliseconds timeOut;  ///< for all of it, up to the last byte of the answer
    std::size_t mostBytes;              ///< a longer body is refused
};

struct HttpResponse {
    int status = 0;  ///< 200, 404…: what it means is for the caller to say
    std::string body;
};

/// There is no answer: no connection, no trust, too slow, too long, cut off. `what()` is a sentence.
class TransportError : public Error {
  public:
    using Error::Error;
};

/// Asks a server, and no cache. HTTPS alone; up to five redirects are followed, on the same server only;
/// otherwise the redirect is the answer. Blocks: for a background thread; any thread, also several at a time.
class HttpFetcher {
  public:
    virtual ~HttpFetcher() = default;
    /// Throws TransportError, and Cancelled at the latest 100 ms after the token says so.
    [[nodiscard]] virtual HttpResponse get(const HttpRequest& request, const CancellationToken& token) const = 0;

  protected:
    HttpFetcher() = default;
    HttpFetcher(const HttpFetcher&) = default;
    HttpFetcher& operator=(const HttpFetcher&) = default;
};

}  // namespace dravik
