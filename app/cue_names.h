#pragma once

#include "app/text.h"
#include "editing/cue_marker.h"

#include <QCoreApplication>
#include <QString>
#include <cstddef>

namespace dravik {

/// What a cue is called: its label, or its number from 1 in the order of the take.
[[nodiscard]] inline QString cueName(const CueMarker& marker, std::size_t number) {
    return marker.label && !marker.label->empty()
               ? toQt(*marker.label)
               : QCoreApplication::translate("dravik::CueNames", "Cue %1").arg(number);
}

}  // namespace dravik
