#pragma once

#include <QString>

namespace dravik {

/// A track of a take, as the lists of the operations show it. Its position, from 0, is its place in the list of them.
struct TrackName {
    int numero = 0;  ///< from 1
    QString nom;     ///< empty where it has none
    friend bool operator==(const TrackName&, const TrackName&) = default;

    /// "1  Boom"; "1" without a name.
    [[nodiscard]] QString text() const {
        return nom.isEmpty() ? QString::number(numero) : QStringLiteral("%1  %2").arg(numero).arg(nom);
    }
};

}  // namespace dravik
