#include "platform/network/qt_http_fetcher.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslConfiguration>
#include <QTimer>
#include <QUrl>
#include <optional>

namespace dravik {
namespace {

constexpr int mostRedirects = 5;
/// How soon a cancel is noticed.
constexpr std::chrono::milliseconds cancelPoll{20};

class SystemProxies final : public QNetworkProxyFactory {
  public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override { return systemProxyForQuery(query); }
};

// Behind the server's name.
constexpr const char* tooSlow = " took too long to answer.";
constexpr const char* tooLong = " sent an answer that is too long.";
constexpr const char* cutOff = " sent an answer that ended too early.";
constexpr const char* unencrypted = " is not asked: servers are asked by HTTPS only.";

bool isSecure(const QUrl& url) {
    return url.isValid() && url.scheme() == QLatin1String("https") && !url.host().isEmpty() && url.userInfo().isEmpty();
}

bool isSameServer(const QUrl& one, const QUrl& other) {
    constexpr int standardPort = 443;
    return one.host().compare(other.host(), Qt::CaseInsensitive) == 0 &&
           one.port(standardPort) == other.port(standardPort);
}

/// One request and its redirects, on the thread that it is made on.
class Exchange {
  public:
    Exchange(const HttpRequest& request, const CancellationToken& token, const QList<QSslCertificate>& trusted)
        : request_(request), token_(token), trusted_(trusted) {
        manager_.setProxyFactory(std::make_unique<SystemProxies>().release());  // the manager's from now on
        manager_.setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
        poll_.setInterval(cancelPoll);
        QObject::connect(&poll_, &QTimer::timeout, &loop_, [this] {
            if (token_.isCancelled()) loop_.quit();
        });
        deadline_.setSingleShot(true);
        deadline_.setInterval(request.timeOut);
        QObject::connect(&deadline_, &QTimer::timeout, &loop_, [this] { stop(tooSlow); });
    }

    [[nodiscard]] HttpResponse run() {
        QUrl url(QString::fromStdString(request_.url), QUrl::StrictMode);
        if (!isSecure(url)) throw TransportError(request_.url + unencrypted);
        poll_.start();
        deadline_.start();
        for (int redirects = 0;; ++redirects) {
            HttpResponse response = get(url);
            const QUrl target = url.resolved(redirect_);
            if (redirect_.isEmpty() || redirects == mostRedirects || !isSecure(target) || !isSameServer(url, target)) {
                return response;
            }
            url = target;
        }
    }

  private:
    void stop(const char* why) {
        failure_ = why;
        loop_.quit();
    }

    [[nodiscard]] QNetworkRequest prepared(const QUrl& url) const {
        QNetworkRequest request(url);
        request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
        request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
        request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
        // A small body that unpacks to a huge one would pass the limit.
        request.setRawHeader("Accept-Encoding", "identity");
        // Otherwise the user's language would be told, and a browser's name.
        request.setRawHeader("Accept-Language", "*");
        request.setRawHeader("User-Agent", "Dravik");
        for (const auto& [name, value] : request_.headers)
            request.setRawHeader(QByteArray::fromStdString(name), QByteArray::fromStdString(value));
        if (!trusted_.isEmpty()) {
            QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
            configuration.setCaCertificates(trusted_);
            request.setSslConfiguration(configuration);
        }
        return request;
    }

    HttpResponse get(const QUrl& url) {
        redirect_.clear();
        body_.clear();
        const std::unique_ptr<QNetworkReply> reply(manager_.get(prepared(url)));
        QObject::connect(reply.get(), &QNetworkReply::metaDataChanged, &loop_, [this, &reply] { checkLength(*reply); });
        QObject::connect(reply.get(), &QNetworkReply::readyRead, &loop_, [this, &reply] { readBody(*reply); });
        QObject::connect(reply.get(), &QNetworkReply::finished, &loop_, &QEventLoop::quit);
        if (!reply->isFinished() && failure_ == nullptr && !token_.isCancelled()) loop_.exec();
        reply->disconnect(&loop_);
        if (token_.isCancelled()) {
            reply->abort();
            throw Cancelled();
        }
        if (failure_ == nullptr) readBody(*reply);
        if (failure_ != nullptr) {
            reply->abort();
            throw TransportError(url.host().toStdString() + failure_);
        }
        return answerOf(*reply);
    }

    void checkLength(const QNetworkReply& reply) {
        const std::optional<std::uint64_t> length = lengthOf(reply);
        if (length && *length > request_.mostBytes) stop(tooLong);
    }

    /// No more than one byte above the limit is kept.
    void readBody(QNetworkReply& reply) {
        const std::size_t room = request_.mostBytes - body_.size() + 1;
        body_ += reply.read(static_cast<qint64>(room)).toStdString();
        if (body_.size() > request_.mostBytes) stop(tooLong);
    }

    /// Absent where the server has said nothing that can be understood.
    static std::optional<std::uint64_t> lengthOf(const QNetworkReply& reply) {
        bool ok = false;
        const std::uint64_t length = reply.rawHeader("Content-Length").trimmed().toULongLong(&ok);
        return ok ? std::optional(length) : std::nullopt;
    }

    /// What Qt makes of a status that is no success, 400 and unknown ones included; with any other error there was no
    /// whole answer.
    static bool isOfStatus(QNetworkReply::NetworkError error) {
        return error >= QNetworkReply::ContentAccessDenied && error != QNetworkReply::ProtocolFailure;
    }

    HttpResponse answerOf(const QNetworkReply& reply) {
        const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        const bool isStatus = status >= 400 && isOfStatus(reply.error());
        if (status == 0 || (reply.error() != QNetworkReply::NoError && !isStatus))
            throw TransportError(sentence(reply.errorString()));
        const std::optional<std::uint64_t> length = lengthOf(reply);
        const bool hasBody = status != 204 && status != 304;
        if (hasBody && length && *length != body_.size())
            throw TransportError(reply.url().host().toStdString() + cutOff);
        const bool redirects = status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
        if (redirects) redirect_ = reply.attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
        return {status, std::move(body_)};
    }

    static std::string sentence(const QString& text) {
        return (text.endsWith(QLatin1Char('.')) ? text : text + QLatin1Char('.')).toStdString();
    }

    const HttpRequest& request_;
    const CancellationToken& token_;
    const QList<QSslCertificate>& trusted_;
    QNetworkAccessManager manager_;
    QEventLoop loop_;
    QTimer poll_;
    QTimer deadline_;
    const char* failure_ = nullptr;
    QUrl redirect_;
    std::string body_;
};

class QtHttpFetcher final : public HttpFetcher {
  public:
    explicit QtHttpFetcher(const std::string& trusted)
        : trusted_(QSslCertificate::fromData(QByteArray::fromStdString(trusted), QSsl::Pem)) {}

    [[nodiscard]] HttpResponse get(const HttpRequest& request, const CancellationToken& token) const override {
        return Exchange(request, token, trusted_).run();
    }

  private:
    QList<QSslCertificate> trusted_;
};

}  // namespace

std::unique_ptr<HttpFetcher> makeQtHttpFetcher(const std::string& trusted) {
    return std::make_unique<QtHttpFetcher>(trusted);
}

}  // namespace dravik
