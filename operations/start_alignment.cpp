#include "operations/start_alignment.h"

#include "base/text.h"
#include "model/wave/bext.h"
#include "model/wave/ixml_document.h"

#include <algorithm>

namespace dravik {

RecordedStart recordedStart(const ByteSource& file, const ChunkTable& table) {
    RecordedStart start;
    if (const Chunk* chunk = table.first("bext")) {
        const Bytes payload = file.read(chunk->payload(), std::min<std::uint64_t>(chunk->size, 1024));
        if (payload.size() >= bext::timeReferenceEnd) {
            start.bext = readLE<std::uint64_t>(payload.data() + bext::timeReferenceOffset);
        }
    }
    if (const Chunk* chunk = table.first("iXML"); chunk != nullptr && chunk->size <= maxIxmlBytes) {
        const Bytes payload = file.read(chunk->payload(), chunk->size);
        const std::optional<std::string> text = decodeIxml(asText(payload));
        const IxmlDocument document(text ? std::string_view(*text) : std::string_view());
        const auto half = [&](std::string_view name) {
            return parseUnsigned32(document.value(name).value_or(std::string_view()));
        };
        if (const auto low = half("TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO")) {
            start.ixml = std::uint64_t{half("TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI").value_or(0)} << 32U | *low;
        }
    }
    return start;
}

bool StartAlignment::accepts(const RecordedStart& start) noexcept {
    const auto same = [](auto& known, const auto& other) {
        if (!known) known = other;
        return !other || *known == *other;
    };
    const bool sameBext = same(known_.bext, start.bext);
    return same(known_.ixml, start.ixml) && sameBext;
}

}  // namespace dravik
