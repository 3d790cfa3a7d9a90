#include "platform/network/lazy_http_fetcher.h"
#include "platform/network/qt_http_fetcher.h"
#include "tests/platform/https_server.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <thread>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using test::answer;
using test::Answer;
using testing::HasSubstr;

/// So long that a test which waits for it has failed.
constexpr seconds never{120};
constexpr seconds soon{20};

class HttpFetcherTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        if (QCoreApplication::instance() == nullptr) {
            static int count = 1;
            static char name[] = "platform_tests";
            static char* arguments[] = {name, nullptr};
            static const QCoreApplication application(count, arguments);
        }
        for (const char* proxy : {"http_proxy", "https_proxy", "HTTP_PROXY", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"})
            qunsetenv(proxy);
    }
    void SetUp() override {
        if (!certificate().isThere()) GTEST_SKIP() << "There is no openssl program to make a certificate with.";
    }
    static const test::Certificate& certificate() {
        static const test::Certificate ours;
        return ours;
    }

    HttpResponse get(const std::string& url, std::chrono::milliseconds timeOut = never) {
        return fetcher->get({url, {{"Cache-Control", "no-cache"}, {"Pragma", "no-cache"}}, timeOut, mostBytes}, token);
    }
    HttpResponse get(const QByteArray& path, const Answer& said, std::chrono::milliseconds timeOut = never) {
        server.set(path, said);
        return get(server.url(path.toStdString()), timeOut);
    }
    /// The sentence with which the request fails; empty when it does not.
    std::string failure(const std::string& url, std::chrono::milliseconds timeOut = never) {
        try {
            static_cast<void>(get(url, timeOut));
        } catch (const TransportError& error) {
            EXPECT_THAT(error.what(), testing::EndsWith(".")) << "a sentence";
            return error.what();
        }
        return {};
    }
    std::string failureOf(const Answer& said, std::chrono::milliseconds timeOut = never) {
        server.set("/a", said);
        return failure(server.url("/a"), timeOut);
    }
    [[nodiscard]] QByteArray redirect(const std::string& to) const {
        return "Location: " + QByteArray::fromStdString(to) + "\r\n";
    }

    static constexpr std::size_t mostBytes = 100'000;
    test::HttpsServer server{certificate()};
    std::unique_ptr<HttpFetcher> fetcher = makeQtHttpFetcher(certificate().pem);
    CancellationToken token;
};

TEST_F(HttpFetcherTest, GivesStatusAndBodyOfAnyAnswer) {
    for (const int status : {200, 201, 400, 401, 404, 410, 500, 503}) {
        const HttpResponse response = get("/a", answer(status, "It is {so}."));
        EXPECT_EQ(response.status, status);
        EXPECT_EQ(response.body, "It is {so}.") << status;
    }
    for (const int status : {204, 304}) {
        const HttpResponse response =
            get("/a", {"HTTP/1.1 " + QByteArray::number(status) + " Nothing\r\nConnection: close\r\n\r\n"});
        EXPECT_EQ(response.status, status);
        EXPECT_EQ(response.body, "");
    }
    EXPECT_EQ(get("/a", {"HTTP/1.1 200 OK\r\nConnection: close\r\n\r\nup to the end"}).body, "up to the end");
    EXPECT_EQ(get("/a", {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n"}).body,
              "abcde");
    EXPECT_EQ(get("/a", {answer(200, "in small steps").bytes, milliseconds(1)}).body, "in small steps");
}

TEST_F(HttpFetcherTest, AsksForPlainBytesPastEveryCacheAndWithoutCookies) {
    static_cast<void>(get("/a?b=c", answer(200, "x", "Set-Cookie: seen=1; Path=/\r\nCache-Control: max-age=9999\r\n")));
    static_cast<void>(get(server.url("/a?b=c")));
    ASSERT_EQ(server.requests().size(), 2U) << "the second one is asked, too";
    const QByteArray asked = server.requests().back();
    EXPECT_TRUE(asked.startsWith("GET /a?b=c HTTP/1.1\r\n")) << asked.constData();
    for (const char* header : {"Cache-Control: no-cache\r\n", "Pragma: no-cache\r\n", "Accept-Encoding: identity\r\n"})
        EXPECT_TRUE(asked.contains(header)) << header;
    EXPECT_FALSE(asked.contains("Cookie")) << asked.constData();
}

TEST_F(HttpFetcherTest, FollowsRedirectsOnTheSameServerAlone) {
    server.set("/end", answer(200, "here"));
    for (const int status : {301, 302, 303, 307, 308}) {
        EXPECT_EQ(get("/a", answer(status, "", redirect("/end"))).body, "here") << status;
        EXPECT_EQ(get("/a", answer(status, "", redirect(server.url("/end")))).body, "here") << status;
    }
    test::HttpsServer other(certificate());
    other.set("/end", answer(200, "elsewhere"));
    std::string plain = server.url("/end");
    plain.erase(4, 1);
    std::string user = server.url("/end");
    user.insert(8, "someone@");
    for (const std::string& to : {other.url("/end"), plain, user, std::string("https://evil.example/"),
                                  std::string("file:///etc/passwd"), std::string("//evil.example/end")}) {
        const HttpResponse response = get("/a", answer(302, "moved", redirect(to)));
        EXPECT_EQ(response.status, 302) << to;
        EXPECT_EQ(response.body, "moved");
    }
    EXPECT_TRUE(other.requests().empty());
    EXPECT_EQ(get("/a", answer(302, "", {})).status, 302) << "one that leads nowhere";

    const std::size_t before = server.requests().size();
    EXPECT_EQ(get("/loop", answer(302, "", redirect("/loop"))).status, 302);
    EXPECT_EQ(server.requests().size() - before, 6U) << "the request and five redirects";
}

TEST_F(HttpFetcherTest, StopsWhereAnAnswerTakesTooLong) {
    constexpr milliseconds brief{400};
    const auto began = steady_clock::now();
    EXPECT_THAT(failureOf({answer(200, "x").bytes, milliseconds(50)}, brief), HasSubstr("too long to answer"))
        << "headers";
    const QByteArray headers = "HTTP/1.1 200 OK\r\nContent-Length: 90000\r\n\r\n";
    EXPECT_THAT(failureOf({headers + QByteArray(1000, 'x'), milliseconds(4)}, brief), HasSubstr("too long to answer"))
        << "a body of which something comes all the time";
    EXPECT_LT(steady_clock::now() - began, soon);
}

TEST_F(HttpFetcherTest, HoldsNoMoreThanItMay) {
    EXPECT_EQ(get("/a", answer(200, QByteArray(mostBytes, 'x'))).body.size(), mostBytes);
    const QByteArray tooMuch(mostBytes + 1, 'x');
    EXPECT_THAT(failureOf(answer(200, tooMuch)), HasSubstr("too long"));
    EXPECT_THAT(failureOf({"HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + tooMuch}), HasSubstr("too long"));
    EXPECT_THAT(failureOf(answer(404, tooMuch)), HasSubstr("too long"));
    EXPECT_THAT(failureOf({"HTTP/1.1 200 OK\r\nContent-Length: 99999999999\r\n\r\nx", milliseconds(0), false}),
                HasSubstr("too long"))
        << "refused before it comes";
    EXPECT_THAT(
        failureOf({"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n7FFFFFFF\r\n" + QByteArray(300'000, 'x'),
                   milliseconds(0), false}),
        HasSubstr("too long"));
}

TEST_F(HttpFetcherTest, HalfAnAnswerIsNone) {
    for (const char* bytes : {"", "HTTP/1.1 20", "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n",
                              "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nonly this", "SSH-2.0-OpenSSH_9\r\n",
                              "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n9\r\nabc"}) {
        EXPECT_NE(failureOf(Answer{bytes}), "") << bytes;
    }
}

TEST_F(HttpFetcherTest, TrustsNoOtherCertificateAndNoOtherProtocol) {
    server.set("/a", answer(200, "x"));
    std::string byNumber = server.url("/a");
    byNumber.replace(8, 9, "127.0.0.1");
    EXPECT_NE(failure(byNumber), "") << "the certificate is for another name";
    fetcher = makeQtHttpFetcher();
    EXPECT_NE(failure(server.url("/a")), "") << "the system does not know who made the certificate";
    fetcher = makeQtHttpFetcher(test::Certificate().pem);
    EXPECT_NE(failure(server.url("/a")), "") << "made by somebody else of that name";
    EXPECT_TRUE(server.requests().empty()) << "nothing is said to a server before it is trusted";

    std::string plain = server.url("/a");
    plain.erase(4, 1);
    for (const std::string& url :
         {plain, std::string("ftp://localhost/"), std::string("file:///etc/hostname"), std::string("https://"),
          std::string("https://user@localhost/"), std::string(), std::string("data:text/plain,x")}) {
        EXPECT_THAT(failure(url), HasSubstr("HTTPS only")) << url;
    }
    EXPECT_NE(failure("https://localhost:1/"), "") << "nobody listens";
    EXPECT_NE(failure("https://nowhere.invalid/"), "") << "no such host";
}

TEST_F(HttpFetcherTest, ACancelEndsItWhateverItWaitsFor) {
    server.set("/drip",
               {"HTTP/1.1 200 OK\r\nContent-Length: 90000\r\n\r\n" + QByteArray(90'000, 'x'), milliseconds(5)});
    constexpr seconds atOnce{2};  // a tenth of one is promised; the rest is for a busy machine
    for (const char* path : {"/never", "/drip"}) {
        CancellationToken mine;
        const auto began = steady_clock::now();
        std::thread canceller([&mine] {
            std::this_thread::sleep_for(milliseconds(200));
            mine.cancel();
        });
        EXPECT_THROW(static_cast<void>(fetcher->get({server.url(path), {}, never, mostBytes}, mine)), Cancelled);
        canceller.join();
        EXPECT_LT(steady_clock::now() - began, atOnce);
    }
    token.cancel();
    EXPECT_THROW(static_cast<void>(get(server.url("/never"))), Cancelled) << "before it began";
}

TEST_F(HttpFetcherTest, ThreadsWithoutAnEventLoopMayAskAtTheSameTime) {
    server.set("/a", answer(200, "x"));
    std::atomic<int> right = 0;
    std::vector<std::thread> threads;
    for (int one = 0; one < 4; ++one) {
        threads.emplace_back([&] {
            if (get(server.url("/a")).body == "x") ++right;
        });
    }
    for (std::thread& one : threads)
        one.join();
    EXPECT_EQ(right, 4);
}

TEST_F(HttpFetcherTest, GoesOverTheSystemsProxy) {
    QTcpServer proxy;
    ASSERT_TRUE(proxy.listen(QHostAddress::LocalHost));
    qputenv("https_proxy", "http://127.0.0.1:" + QByteArray::number(proxy.serverPort()));
    std::string said;
    std::thread asking([&] { said = failure("https://releases.invalid/", seconds(20)); });
    ASSERT_TRUE(proxy.waitForNewConnection(20'000));
    QTcpSocket* socket = proxy.nextPendingConnection();
    ASSERT_TRUE(socket->waitForReadyRead(20'000));
    EXPECT_TRUE(socket->readAll().startsWith("CONNECT releases.invalid:443 HTTP/1.1\r\n"));
    socket->write("HTTP/1.1 403 Forbidden\r\nContent-Length: 0\r\n\r\n");
    socket->waitForBytesWritten(20'000);
    socket->disconnectFromHost();
    asking.join();
    qunsetenv("https_proxy");
    EXPECT_NE(said, "");
}

TEST_F(HttpFetcherTest, TheModuleIsLoadedAndAsksTheSameWay) {
    const std::shared_ptr<const HttpFetcher> lazy = makeLazyHttpFetcher();
    try {
        static_cast<void>(lazy->get({"http://localhost/", {}, never, mostBytes}, token));
        ADD_FAILURE() << "asked by plain HTTP";
    } catch (const TransportError& error) {
        EXPECT_THAT(error.what(), HasSubstr("HTTPS only"));
    }
}

}  // namespace
}  // namespace dravik
