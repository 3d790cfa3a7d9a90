#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <filesystem>
#include <vector>

namespace dravik {

/// One running program for each user: a second start hands its files to the first, through a local socket that only
/// this user can open. Main thread; nothing throws.
class SingleInstance : public QObject {
    Q_OBJECT
  public:
    /// `name`: what the socket is called; programs of the same name are one.
    explicit SingleInstance(QString name);

    /// Hands the files to the program that runs already. False when there is none; then this one is to be it.
    [[nodiscard]] bool handOver(const std::vector<std::filesystem::path>& files) const;
    /// Makes this the program that others hand their files to. False when the socket cannot be had; the program works
    /// without it.
    bool listen();

  signals:
    /// Another start handed these over (none at all when it was started without files).
    void received(const std::vector<std::filesystem::path>& files);

  private:
    void accept();

    QString name_;
    QLocalServer server_;
    QLockFile lock_;  ///< held by the program that listens: only it may clear away a socket that was left behind
};

}  // namespace dravik
