#include "platform/desktop/system_desktop.h"

#include <QProcess>
#include <QStandardPaths>

namespace dravik {

QString startOpener(const QStringList& openers, const QString& what) {
    for (const QString& opener : openers) {
        const QString program = QStandardPaths::findExecutable(opener);
        if (!program.isEmpty() && QProcess::startDetached(program, {what})) return {};
    }
    return QStringLiteral("“%1” could not be opened: the program “%2” is not there.")
        .arg(what, openers.join(QStringLiteral("” or “")));
}

std::optional<QString> complaintOf(const QString& program, const QStringList& arguments,
                                   std::chrono::milliseconds most) {
    const QString found = QStandardPaths::findExecutable(program);
    if (found.isEmpty()) return std::nullopt;
    QProcess process;
    process.start(found, arguments);
    if (!process.waitForFinished(static_cast<int>(most.count()))) {
        if (process.error() == QProcess::FailedToStart) return process.errorString();
        process.kill();
        process.waitForFinished(1000);
        return QStringLiteral("it is still busy.");
    }
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0) return QString();
    const QString said = QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
    return said.isEmpty() ? QStringLiteral("the system refused.") : said;
}

}  // namespace dravik
