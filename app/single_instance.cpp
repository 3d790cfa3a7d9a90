#include "app/single_instance.h"

#include "app/text.h"

#include <QDir>
#include <QLocalSocket>
#include <QTimer>
#include <memory>

namespace dravik {
namespace {

/// A running program answers at once; one that hangs is not waited for.
constexpr int answerMilliseconds = 500;
/// The names of a large drop; more is no list of files.
constexpr qsizetype maxMessageBytes = 16 * 1024 * 1024;

}  // namespace

SingleInstance::SingleInstance(QString name)
    : name_(std::move(name)), lock_(QStringLiteral("%1/%2.lock").arg(QDir::tempPath(), name_)) {
    lock_.setStaleLockTime(0);  // a lock is stale when its process is gone, however long that one runs
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&server_, &QLocalServer::newConnection, this, &SingleInstance::accept);
}

bool SingleInstance::handOver(const std::vector<std::filesystem::path>& files) const {
    QLocalSocket socket;
    socket.connectToServer(name_);
    if (!socket.waitForConnected(answerMilliseconds)) return false;
    QByteArray message;
    for (const std::filesystem::path& file : files) {
        // The other program has another current folder.
        std::error_code error;
        const std::filesystem::path whole = std::filesystem::absolute(file, error);
        message.append(QByteArray::fromStdString((error ? file : whole).native())).append('\0');
    }
    message.append('\0');  // an empty name ends the list
    socket.write(message);
    while (socket.bytesToWrite() > 0) {
        if (!socket.waitForBytesWritten(answerMilliseconds)) return false;
    }
    // One byte back says that the list has arrived. A program that is too busy to say so has it all the same.
    static_cast<void>(socket.waitForReadyRead(answerMilliseconds));
    return true;
}

bool SingleInstance::listen() {
    if (!lock_.tryLock(0)) return false;
    if (server_.listen(name_)) return true;
    // Left behind by a program that was killed.
    QLocalServer::removeServer(name_);
    return server_.listen(name_);
}

void SingleInstance::accept() {
    while (QLocalSocket* socket = server_.nextPendingConnection()) {
        const auto message = std::make_shared<QByteArray>();
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        const auto read = [this, socket, message] {
            message->append(socket->readAll());
            if (message->size() > maxMessageBytes) {
                socket->abort();
                return;
            }
            const bool whole = *message == QByteArray(1, '\0') || message->endsWith(QByteArray(2, '\0'));
            if (!whole) return;
            std::vector<std::filesystem::path> files;
            for (const QByteArray& name : message->split('\0')) {
                if (!name.isEmpty()) files.emplace_back(name.toStdString());
            }
            message->clear();
            socket->write("\1", 1);
            socket->flush();
            emit received(files);
        };
        connect(socket, &QLocalSocket::readyRead, this, read);
        read();
    }
}

}  // namespace dravik
