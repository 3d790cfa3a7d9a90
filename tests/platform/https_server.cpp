#include "tests/platform/https_server.h"

#include "tests/support/files.h"

#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTimer>

namespace dravik::test {

Answer answer(int status, const QByteArray& body, const QByteArray& headers) {
    return {"HTTP/1.1 " + QByteArray::number(status) + " Said\r\nContent-Length: " + QByteArray::number(body.size()) +
            "\r\n" + headers + "\r\n" + body};
}

Certificate::Certificate() {
    const TempFolder folder;
    const std::filesystem::path keyFile = folder / "key.pem";
    const std::filesystem::path file = folder / "certificate.pem";
    QProcess openssl;
    openssl.start(
        QStringLiteral("openssl"),
        {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"), QStringLiteral("ec"),
         QStringLiteral("-pkeyopt"), QStringLiteral("ec_paramgen_curve:prime256v1"), QStringLiteral("-nodes"),
         QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-subj"), QStringLiteral("/CN=localhost"),
         QStringLiteral("-addext"), QStringLiteral("subjectAltName=DNS:localhost"), QStringLiteral("-keyout"),
         QString::fromStdString(keyFile), QStringLiteral("-out"), QString::fromStdString(file)});
    if (!openssl.waitForFinished(60'000) || openssl.exitCode() != 0) return;
    pem = asText(readFile(file));
    key = asText(readFile(keyFile));
}

HttpsServer::HttpsServer(const Certificate& certificate) {
    context_.moveToThread(&thread_);
    thread_.start();
    QMetaObject::invokeMethod(
        &context_,
        [this, &certificate] {
            QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
            configuration.setLocalCertificate(QSslCertificate(QByteArray::fromStdString(certificate.pem), QSsl::Pem));
            configuration.setPrivateKey(QSslKey(QByteArray::fromStdString(certificate.key), QSsl::Ec));
            server_ = new QSslServer(&context_);
            server_->setSslConfiguration(configuration);
            QObject::connect(server_, &QTcpServer::pendingConnectionAvailable, &context_, [this] {
                while (auto* socket = qobject_cast<QSslSocket*>(server_->nextPendingConnection()))
                    serve(*socket);
            });
            if (server_->listen(QHostAddress::LocalHost)) port_ = server_->serverPort();
        },
        Qt::BlockingQueuedConnection);
}

HttpsServer::~HttpsServer() {
    QMetaObject::invokeMethod(
        &context_, [this] { delete server_; }, Qt::BlockingQueuedConnection);
    thread_.quit();
    thread_.wait();
}

void HttpsServer::set(const QByteArray& path, const Answer& answer) {
    const std::lock_guard lock(mutex_);
    answers_[path] = answer;
}

std::string HttpsServer::url(const std::string& path) const {
    return "https://localhost:" + std::to_string(port_) + path;
}

std::vector<QByteArray> HttpsServer::requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

void HttpsServer::serve(QSslSocket& socket) {
    const auto request = std::make_shared<QByteArray>();
    const auto read = [this, &socket, request] {
        *request += socket.readAll();
        if (!request->endsWith("\r\n\r\n")) return;
        reply(socket, *request);
        request->clear();
    };
    QObject::connect(&socket, &QIODevice::readyRead, &context_, read);
    QObject::connect(&socket, &QAbstractSocket::disconnected, &socket, &QObject::deleteLater);
    read();
}

void HttpsServer::reply(QSslSocket& socket, const QByteArray& request) {
    const QByteArray path = request.split(' ').value(1);
    Answer answer;
    {
        const std::lock_guard lock(mutex_);
        requests_.push_back(request);
        const auto found = answers_.find(path);
        if (found == answers_.end()) return;  // never answered
        answer = found->second;
    }
    if (answer.between.count() == 0) {
        socket.write(answer.bytes);
        if (answer.closes) socket.disconnectFromHost();
        return;
    }
    auto* timer = new QTimer(&socket);
    QObject::connect(timer, &QTimer::timeout, &socket, [&socket, timer, answer, sent = qsizetype(0)]() mutable {
        if (sent == answer.bytes.size()) {
            timer->stop();
            socket.disconnectFromHost();
            return;
        }
        socket.write(answer.bytes.mid(sent++, 1));
    });
    timer->start(answer.between);
}

}  // namespace dravik::test
