#pragma once

#include "tests/support/temp_folder.h"

#include <QByteArray>
#include <QObject>
#include <QThread>
#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

class QSslServer;
class QSslSocket;

namespace dravik::test {

/// What the server sends for a path, headers included.
struct Answer {
    QByteArray bytes;
    /// Zero: all at once. Otherwise one byte at a time, this long between them.
    std::chrono::milliseconds between{0};
    bool closes = true;  ///< the connection, behind the last byte
};
[[nodiscard]] Answer answer(int status, const QByteArray& body, const QByteArray& headers = {});

/// A certificate for "localhost" of its own making, with its key. Needs the openssl program.
struct Certificate {
    Certificate();
    [[nodiscard]] bool isThere() const { return !pem.empty() && !key.empty(); }
    std::string pem, key;
};

/// A real HTTPS server on this machine, on a thread of its own.
class HttpsServer {
  public:
    explicit HttpsServer(const Certificate& certificate);
    ~HttpsServer();
    HttpsServer(const HttpsServer&) = delete;
    HttpsServer& operator=(const HttpsServer&) = delete;

    void set(const QByteArray& path, const Answer& answer);
    [[nodiscard]] std::string url(const std::string& path) const;
    /// What was asked, headers included, in the order in which it came.
    [[nodiscard]] std::vector<QByteArray> requests() const;

  private:
    void serve(QSslSocket& socket);
    void reply(QSslSocket& socket, const QByteArray& request);

    QThread thread_;
    QObject context_;  ///< lives on that thread
    QSslServer* server_ = nullptr;
    int port_ = 0;
    mutable std::mutex mutex_;
    std::map<QByteArray, Answer> answers_;
    std::vector<QByteArray> requests_;
};

}  // namespace dravik::test
