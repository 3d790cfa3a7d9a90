// The bext updater and date reader. The first bytes of the input choose the edit, the rest is the payload.
#include "base/text.h"
#include "fuzz/require.h"
#include "model/wave/bext.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

using namespace dravik;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t choiceBytes = 3;
    if (size < choiceBytes) return 0;
    const unsigned choice = data[0];
    const ByteSpan payload(reinterpret_cast<const std::byte*>(data) + choiceBytes, size - choiceBytes);
    const std::string_view text = asText(payload);

    if (const auto date = parseOriginationDate(text.substr(0, 10))) {
        require(formatRecordingDate(*date) == trimmed(text.substr(0, 10)));
    }

    BextValues values;
    const auto piece = [&](std::size_t shift) { return std::string(text.substr(0, (data[1] >> shift) & 15U)); };
    if ((choice & 1U) != 0) values.edited.project = piece(0);
    if ((choice & 2U) != 0) values.edited.scene = std::string(data[2], 'x');
    if ((choice & 4U) != 0) values.edited.note = piece(4);
    if ((choice & 8U) != 0) values.edited.prise = "7";
    if ((choice & 16U) != 0) values.circled = (choice & 32U) != 0;
    if ((choice & 64U) != 0) values.wild = (choice & 32U) != 0;
    if ((choice & 128U) != 0) {
        values.edited.timecode = "10:00:00:00";
        values.edited.framerate = "25";
        values.edited.sampleRate = 48000;
    }
    const Bytes updated = updatedBext(payload, values);
    require(updated.size() == payload.size());
    if (payload.size() < bext::descriptionBytes) {
        require(std::equal(updated.begin(), updated.end(), payload.begin()));
        return 0;
    }
    for (std::size_t i = bext::descriptionBytes; i < updated.size(); ++i) {
        const bool isTime = (choice & 128U) != 0 && updated.size() >= bext::timeReferenceEnd &&
                            i >= bext::timeReferenceOffset && i < bext::timeReferenceEnd;
        require(isTime || updated[i] == payload[i]);
    }
    const std::string_view before = descriptionText(payload);
    const std::string_view after = descriptionText(updated);
    if (isValidUtf8(before) && (!values.edited.project || isValidUtf8(*values.edited.project)) &&
        (!values.edited.note || isValidUtf8(*values.edited.note))) {
        require(isValidUtf8(after));
    }
    if (after == before) {
        require(std::equal(payload.begin(), payload.begin() + bext::descriptionBytes, updated.begin()));
    }
    // A second save of the same values finds nothing to change, except where a cut text left half a line behind.
    if (after.size() + 64 < bext::descriptionBytes) {
        const Bytes again = updatedBext(updated, values);
        require(std::equal(updated.begin(), updated.end(), again.begin()));
    }
    return 0;
}
