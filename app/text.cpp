#include "app/text.h"

#include <QFile>
#include <QLocale>

namespace dravik {

std::filesystem::path toPath(const QString& path) { return QFile::encodeName(path).toStdString(); }

QString counted(std::size_t number, const QString& noun) {
    const QString digits = QLocale(QLocale::English).toString(static_cast<qulonglong>(number));
    return digits + QLatin1Char(' ') + noun + (number == 1 ? QString() : QStringLiteral("s"));
}

}  // namespace dravik
