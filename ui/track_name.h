#pragma once

#include <QCoreApplication>
#include <QString>

namespace dravik {

/// A track of a take, as views head it. Its position, from 0, is its place in the list of them.
struct TrackName {
    int numero = 0;  ///< from 1
    QString nom;     ///< empty where it has none
    friend bool operator==(const TrackName&, const TrackName&) = default;

    /// "Boom"; "Track 1" without a name. The one text for it, seen and spoken.
    [[nodiscard]] QString label() const {
        return nom.isEmpty() ? QCoreApplication::translate("dravik::TrackNames", "Track %1").arg(numero) : nom;
    }
    /// "1  Boom"; "Track 1" without a name.
    [[nodiscard]] QString text() const {
        return nom.isEmpty() ? label() : QStringLiteral("%1  %2").arg(numero).arg(nom);
    }
};

}  // namespace dravik
