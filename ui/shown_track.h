#pragma once

#include "app/take_playback.h"
#include "app/text.h"
#include "model/piste.h"
#include "ui/track_name.h"

#include <QCoreApplication>
#include <QString>
#include <cmath>
#include <cstddef>
#include <vector>

namespace dravik {

/// A track as the views of the player head it, which show as many as are heard, known to the take or not.
[[nodiscard]] inline TrackName shownTrack(const std::vector<Piste>& pistes, std::size_t at) {
    if (at < pistes.size()) return {pistes[at].numero, toQt(pistes[at].nom)};
    return {static_cast<int>(at) + 1, {}};
}

/// What such a view says while there is nothing to hear; `idle` when no take is selected.
[[nodiscard]] inline QString playbackHint(const TakePlayback& playback, const QString& idle) {
    if (!playback.error().isEmpty()) return playback.error();
    if (!playback.isLoading()) return idle;
    return QCoreApplication::translate("dravik::TrackNames", "Loading... %1%")
        .arg(std::lround(playback.loadedFraction() * 100));
}

}  // namespace dravik
