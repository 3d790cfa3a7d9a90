// The iXML readers against the patterns that define them.
#include "base/text.h"
#include "fuzz/pcre_oracle.h"
#include "fuzz/require.h"
#include "model/wave/ixml_document.h"

#include <cstddef>
#include <cstdint>

using namespace dravik;

namespace {

constexpr std::size_t oracleLimit = 8192;  // the oracle is quadratic

bool same(const std::optional<IxmlElement>& a, const std::optional<IxmlElement>& b) {
    if (a.has_value() != b.has_value()) return false;
    return !a ||
           (a->begin == b->begin && a->valueBegin == b->valueBegin && a->valueEnd == b->valueEnd && a->end == b->end);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > oracleLimit) return 0;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const IxmlDocument document(text);
    for (const char* name : {"PROJECT", "TAKE", "NOTE", "CIRCLED", "CIRCLE", "TAKE_TYPE", "WILD_TRACK", "SPEED",
                             "TRACK", "TRACK_LIST", "NAME", "TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO", "A"}) {
        const auto expected = oracle::plageTag(text, name);
        require(same(plageTag(text, name), expected));
        require(same(document.find(name), expected));
        const auto value = oracle::valeurTag(name, text);
        require(valeurTag(name, text) == value);
        const auto viewed = document.value(name);
        require(viewed.has_value() == value.has_value() && (!value || *viewed == *value));
        if (std::string_view(name) != "NOTE") {
            const auto literal = oracle::literalValue(text, name);
            const auto found = document.literalValue(name);
            require(found.has_value() == literal.has_value() && (!literal || *found == *literal));
        }
    }

    // The note of the take is what is left to find when the SPEED element's tags are made unreadable.
    std::string masked(text);
    if (const auto speed = oracle::plageTag(text, "SPEED")) {
        for (std::size_t i = speed->begin; i < speed->end; ++i)
            masked[i] = '.';
    }
    const auto note = document.literalValue("NOTE");
    const auto maskedNote = oracle::literalValue(masked, "NOTE");
    require(note.has_value() == maskedNote.has_value() && (!note || note->size() == maskedNote->size()));

    const auto [names, numbers] = oracle::readTracks(text);
    require(lireNomsPistes(document) == names);
    require(lireNumerosTracks(document) == numbers);
    (void)lireCircled(document);
    (void)lireWild(document);
    if (const auto decoded = decodeIxml(text)) require(isValidUtf8(*decoded));
    return 0;
}
