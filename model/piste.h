#pragma once

#include "base/uuid.h"

#include <optional>
#include <string>

namespace dravik {

/// One track of the take shown to the user.
struct Piste {
    Uuid id;
    int numero = 0;                  ///< position in the take, from 1
    std::string nom;                 ///< as shown ("&", not "&amp;"); empty when the recorder gave none
    std::optional<int> numeroTrack;  ///< the recorder's channel number
};

}  // namespace dravik
