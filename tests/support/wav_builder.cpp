#include "tests/support/wav_builder.h"

#include "tests/support/files.h"

#include <algorithm>

#include <fmt/format.h>

namespace dravik::test {
namespace {

void putText(Bytes& into, std::size_t at, std::string_view text, std::size_t room) {
    for (std::size_t i = 0; i < std::min(text.size(), room) && at + i < into.size(); ++i) {
        into[at + i] = static_cast<std::byte>(text[i]);
    }
}

std::string element(std::string_view name, const std::optional<std::string>& value) {
    return value ? fmt::format("<{0}>{1}</{0}>\n", name, *value) : std::string();
}

std::optional<std::string> numberText(std::optional<int> number) {
    return number ? std::optional(std::to_string(*number)) : std::nullopt;
}

}  // namespace

Bytes fmtPayload(const Pcm& pcm) {
    constexpr std::uint16_t integerTag = 1;
    constexpr std::uint16_t floatTag = 3;
    constexpr std::uint16_t extensibleTag = 0xFFFE;
    const std::uint16_t encoding = pcm.isFloat ? floatTag : integerTag;
    Bytes out;
    appendLE(out, pcm.extensible ? extensibleTag : encoding);
    appendLE(out, pcm.channels);
    appendLE(out, pcm.rate);
    appendLE(out, static_cast<std::uint32_t>(pcm.rate * pcm.frameBytes()));
    appendLE(out, static_cast<std::uint16_t>(pcm.frameBytes()));
    appendLE(out, pcm.bits);
    if (!pcm.extensible) return out;
    appendLE(out, std::uint16_t{22});
    appendLE(out, pcm.bits);
    appendLE(out, std::uint32_t{0});  // no speaker positions
    appendLE(out, encoding);
    append(out, std::string_view("\0\0\0\0\x10\0\x80\0\0\xAA\0\x38\x9B\x71", 14));
    return out;
}

Bytes bextPayload(const Bext& bext) {
    constexpr std::size_t dateAt = 320;
    constexpr std::size_t timeReferenceAt = 338;
    Bytes out(bext.bytes);
    putText(out, 0, bext.description, 256);
    putText(out, dateAt, bext.date, 10);
    putText(out, 330, "10:00:00", 8);
    if (out.size() >= timeReferenceAt + 8) writeLE(out.data() + timeReferenceAt, bext.timeReference);
    return out;
}

Bytes cuePayload(const std::vector<Cue>& cues) {
    Bytes out;
    appendLE(out, static_cast<std::uint32_t>(cues.size()));
    for (const Cue& cue : cues) {
        appendLE(out, cue.number);
        appendLE(out, std::uint32_t{0});
        append(out, "data");
        appendLE(out, std::uint64_t{0});
        appendLE(out, cue.frame);
    }
    return out;
}

Bytes adtlPayload(const std::vector<Cue>& cues) {
    Bytes out = toBytes("adtl");
    for (const Cue& cue : cues) {
        if (!cue.label) continue;
        append(out, "labl");
        appendLE(out, static_cast<std::uint32_t>(4 + cue.label->size() + 1));
        appendLE(out, cue.number);
        append(out, *cue.label);
        out.resize(out.size() + 1 + (cue.label->size() + 1) % 2);
    }
    return out;
}

std::string ixmlText(const Ixml& ixml) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<BWFXML>\n<IXML_VERSION>1.52</IXML_VERSION>\n";
    text += element("PROJECT", ixml.project) + element("SCENE", ixml.scene) + element("TAKE", ixml.take) +
            element("TAPE", ixml.tape) + element("NOTE", ixml.note) + element("CIRCLED", ixml.circled) +
            element("WILD_TRACK", ixml.wild) + element("FAMILY_UID", ixml.familyUid);
    if (ixml.fileSetIndex) text += element("FILE_SET_INDEX", std::to_string(*ixml.fileSetIndex));
    if (ixml.totalFiles) text += element("TOTAL_FILES", std::to_string(*ixml.totalFiles));
    text += "<SPEED>\n" + element("TIMECODE_RATE", ixml.rate) + element("TIMECODE_FLAG", ixml.flag);
    if (ixml.samples) {
        text += element("TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI", std::to_string(*ixml.samples >> 32U)) +
                element("TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO", std::to_string(*ixml.samples & 0xFFFFFFFFU));
    }
    text += fmt::format("</SPEED>\n<TRACK_LIST>\n<TRACK_COUNT>{}</TRACK_COUNT>\n", ixml.tracks.size());
    for (const Ixml::Track& track : ixml.tracks) {
        text += "<TRACK>\n" + element("CHANNEL_INDEX", numberText(track.channel)) +
                element("INTERLEAVE_INDEX", numberText(track.interleave)) + element("NAME", track.name) + "</TRACK>\n";
    }
    return text + "</TRACK_LIST>\n</BWFXML>\n";
}

Bytes audioBytes(std::size_t count, unsigned seed) {
    Bytes out(count);
    std::uint32_t state = seed * 2654435761U + 1;
    for (std::byte& byte : out) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<std::byte>(state >> 24U);
    }
    return out;
}

WavBuilder::WavBuilder(std::string_view form, std::string_view type) : form_(form), type_(type) {}

WavBuilder& WavBuilder::chunk(std::string_view id, ByteSpan payload, Pad pad) {
    chunkClaiming(id, payload, static_cast<std::uint32_t>(payload.size()));
    if (payload.size() % 2 == 1 && pad != Pad::missing)
        body_.push_back(pad == Pad::zero ? std::byte{0} : std::byte{'x'});
    return *this;
}

WavBuilder& WavBuilder::chunk(std::string_view id, std::string_view payload, Pad pad) {
    return chunk(id, asBytes(payload), pad);
}

WavBuilder& WavBuilder::chunkClaiming(std::string_view id, ByteSpan payload, std::uint32_t size) {
    append(body_, id);
    appendLE(body_, size);
    append(body_, payload);
    return *this;
}

WavBuilder& WavBuilder::raw(ByteSpan bytes) {
    append(body_, bytes);
    return *this;
}

WavBuilder& WavBuilder::riffSize(std::uint32_t size) {
    riffSize_ = size;
    return *this;
}

WavBuilder& WavBuilder::fmt(const Pcm& pcm) {
    pcm_ = pcm;
    return chunk("fmt ", fmtPayload(pcm));
}

WavBuilder& WavBuilder::audio(std::size_t frames, unsigned seed) {
    return chunk("data", audioBytes(frames * pcm_.frameBytes(), seed));
}

WavBuilder& WavBuilder::cues(const std::vector<Cue>& cues) {
    chunk("cue ", cuePayload(cues));
    if (const Bytes labels = adtlPayload(cues); labels.size() > 4) chunk("LIST", labels);
    return *this;
}

WavBuilder& WavBuilder::ds64(std::uint64_t dataBytes,
                             const std::vector<std::pair<std::string, std::uint64_t>>& others) {
    Bytes payload;
    appendLE(payload, std::uint64_t{0});  // form size: nobody reads it
    appendLE(payload, dataBytes);
    appendLE(payload, std::uint64_t{0});
    appendLE(payload, static_cast<std::uint32_t>(others.size()));
    for (const auto& [id, size] : others) {
        append(payload, id);
        appendLE(payload, size);
    }
    return chunk("ds64", payload);
}

Bytes WavBuilder::bytes() const {
    Bytes out = toBytes(form_);
    appendLE(out, riffSize_.value_or(static_cast<std::uint32_t>(type_.size() + body_.size())));
    append(out, type_);
    append(out, ByteSpan(body_));
    return out;
}

std::filesystem::path WavBuilder::write(const std::filesystem::path& path) const {
    writeFile(path, bytes());
    return path;
}

WavBuilder recorderFile(const Ixml& ixml, const Pcm& pcm, std::size_t frames, unsigned seed) {
    WavBuilder builder;
    builder.bext({.description = "sSCENE=" + ixml.scene.value_or("") + "\r\nsTAKE=" + ixml.take.value_or("") + "\r\n",
                  .timeReference = ixml.samples.value_or(0)});
    builder.ixml(ixml).fmt(pcm).audio(frames, seed).chunk("LIST", std::string_view("INFOICMT\3\0\0\0abc", 15));
    return builder;
}

}  // namespace dravik::test
