#include "app/text.h"

#include <QCoreApplication>
#include <QFile>
#include <algorithm>
#include <limits>

namespace dravik {
namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(dravik::Counted)
};

}  // namespace

std::filesystem::path toPath(const QString& path) { return QFile::encodeName(path).toStdString(); }

int pluralOf(std::size_t number) {
    return static_cast<int>(std::min<std::size_t>(number, std::numeric_limits<int>::max()));
}

QString counted(std::size_t number, Noun noun) {
    const int n = pluralOf(number);
    switch (noun) {
        case Noun::take:
            return Texts::tr("%Ln take(s)", nullptr, n);
        case Noun::file:
            return Texts::tr("%Ln file(s)", nullptr, n);
        case Noun::track:
            return Texts::tr("%Ln track(s)", nullptr, n);
        case Noun::audioFile:
            return Texts::tr("%Ln audio file(s)", nullptr, n);
        case Noun::document:
            break;
    }
    return Texts::tr("%Ln document(s)", nullptr, n);
}

}  // namespace dravik
