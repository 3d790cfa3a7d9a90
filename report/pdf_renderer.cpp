#include "report/pdf_renderer.h"

#include <algorithm>
#include <array>

namespace dravik {

Paper paperOf(std::string_view locale) noexcept {
    // Where Letter is what offices have in their printers.
    static constexpr std::array letter = {"US", "CA", "MX", "BZ", "CL", "CO", "CR",
                                          "GT", "NI", "PA", "PH", "PR", "SV", "VE"};
    const std::string_view name = locale.substr(0, locale.find_first_of(".@"));
    const std::size_t behind = name.find_last_of("_-");
    if (behind == std::string_view::npos) return Paper::a4;
    const std::string_view place = name.substr(behind + 1);
    const bool isLetter = std::any_of(letter.begin(), letter.end(), [&](const char* one) { return place == one; });
    return isLetter ? Paper::letter : Paper::a4;
}

}  // namespace dravik
