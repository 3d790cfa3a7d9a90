#include "cli/demo_file.h"

#include "base/text.h"
#include "cli/demo_random.h"
#include "model/wave/chunk_bytes.h"
#include "model/wave/timecode.h"

#include <algorithm>
#include <cmath>
#include <span>

#include <fmt/format.h>

namespace dravik {
namespace {

constexpr std::uint16_t bitsPerSample = 24;
constexpr std::size_t bytesPerSample = bitsPerSample / 8;
constexpr std::string_view recorderName = "Dravik demo";

void appendText(Bytes& out, std::string_view text, std::size_t fieldBytes) {
    text = truncatedUtf8(text, fieldBytes);
    append(out, text);
    out.resize(out.size() + fieldBytes - text.size());
}

/// Which tracks of the take a file holds.
std::span<const DemoTrack> tracksOf(const DemoTake& take, std::size_t position) {
    const std::span all(take.tracks);
    return take.layout == DemoLayout::poly ? all : all.subspan(position, 1);
}

std::string noteOf(const DemoTake& take, std::size_t position) {
    return take.noteOnFirstFileOnly && position > 0 ? std::string() : take.note;
}

std::string fileUid(const DemoTake& take, std::size_t position) {
    DemoRandom random(take.seed + position);
    return fmt::format("{:016X}{:016X}", random.next(), random.next());
}

Bytes fmtPayload(std::size_t channels) {
    Bytes out;
    const auto count = static_cast<std::uint16_t>(channels);
    const auto block = static_cast<std::uint16_t>(channels * bytesPerSample);
    const bool extensible = channels > 2;
    appendLE<std::uint16_t>(out, extensible ? 0xFFFE : 1);
    appendLE(out, count);
    appendLE<std::uint32_t>(out, demoSampleRate);
    appendLE<std::uint32_t>(out, demoSampleRate * std::uint32_t{block});
    appendLE(out, block);
    appendLE(out, bitsPerSample);
    if (!extensible) return out;
    appendLE<std::uint16_t>(out, 22);  // bytes that follow
    appendLE(out, bitsPerSample);
    appendLE<std::uint32_t>(out, 0);  // tracks are no loudspeakers
    appendLE<std::uint16_t>(out, 1);  // PCM, and the rest of the sub-format's identifier
    append(out, std::string_view("\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71", 14));
    return out;
}

Bytes bextPayload(const DemoTake& take, std::size_t position) {
    std::string description;
    const auto line = [&](std::string_view key, std::string_view value) {
        description += fmt::format("s{}={}\r\n", key, value);
    };
    line("PROJECT", take.project);
    line("SCENE", take.scene);
    line("TAKE", take.take);
    line("TAPE", take.tape);
    line("CIRCLED", take.circled ? "TRUE" : "FALSE");
    if (take.wild) line("WILD_TRACK", "TRUE");
    line("SPEED", speedText(take.framerate));
    if (const std::string note = noteOf(take, position); !note.empty()) line("NOTE", note);
    int channel = static_cast<int>(position);
    for (const DemoTrack& track : tracksOf(take, position))
        line(fmt::format("TRK{}", ++channel), track.name);

    Bytes out;
    appendText(out, description, bext::descriptionBytes);
    appendText(out, recorderName, 32);                           // Originator
    appendText(out, fileUid(take, position).substr(0, 32), 32);  // OriginatorReference
    appendText(out, formatRecordingDate(take.date), bext::originationDateBytes);
    appendText(out, take.time, 8);           // OriginationTime
    appendLE(out, take.startSamples);        // TimeReference
    appendLE<std::uint16_t>(out, 1);         // version
    constexpr std::size_t fixedBytes = 602;  // UMID and reserved bytes, none used
    out.resize(fixedBytes);
    append(out, fmt::format("A=PCM,F={},W={},M={},T={}\r\n", demoSampleRate, bitsPerSample,
                            tracksOf(take, position).size() == 1 ? "mono" : "multitrack", recorderName));
    return out;
}

/// Indented lines between "<NAME>" and "</NAME>".
class XmlWriter {
  public:
    void open(std::string_view name) {
        indent();
        out_ += fmt::format("<{}>\n", name);
        ++depth_;
    }
    void close(std::string_view name) {
        --depth_;
        indent();
        out_ += fmt::format("</{}>\n", name);
    }
    template <typename Value>
    void element(std::string_view name, const Value& value) {
        indent();
        out_ += fmt::format("<{0}>{1}</{0}>\n", name, replacedAll(fmt::format("{}", value), "&", "&amp;"));
    }
    [[nodiscard]] std::string text() && { return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + out_; }

  private:
    void indent() { out_.append(static_cast<std::size_t>(depth_), '\t'); }
    std::string out_;
    int depth_ = 0;
};

void appendSpeed(XmlWriter& xml, const DemoTake& take) {
    constexpr std::uint64_t lowBits = 0xFFFFFFFF;
    xml.open("SPEED");
    xml.element("NOTE", "");
    xml.element("MASTER_SPEED", ixmlRateText(take.framerate));
    xml.element("CURRENT_SPEED", ixmlRateText(take.framerate));
    xml.element("TIMECODE_RATE", ixmlRateText(take.framerate));
    xml.element("TIMECODE_FLAG", flagText(take.framerate));
    xml.element("FILE_SAMPLE_RATE", demoSampleRate);
    xml.element("AUDIO_BIT_DEPTH", bitsPerSample);
    xml.element("DIGITIZER_SAMPLE_RATE", demoSampleRate);
    xml.element("TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI", take.startSamples >> 32U);
    xml.element("TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO", take.startSamples & lowBits);
    xml.element("TIMESTAMP_SAMPLE_RATE", demoSampleRate);
    xml.close("SPEED");
}

std::string ixmlText(const DemoTake& take, std::size_t position) {
    const std::vector<std::string> names = demoFileNames(take);
    const std::span<const DemoTrack> tracks = tracksOf(take, position);
    XmlWriter xml;
    xml.open("BWFXML");
    xml.element("IXML_VERSION", "1.61");
    xml.element("PROJECT", take.project);
    xml.element("SCENE", take.scene);
    xml.element("TAKE", take.take);
    xml.element("TAPE", take.tape);
    xml.element("CIRCLED", take.circled ? "TRUE" : "FALSE");
    xml.element("WILD_TRACK", take.wild ? "TRUE" : "FALSE");
    xml.element("FALSE_START", take.falseStart ? "TRUE" : "FALSE");
    xml.element("NO_GOOD", "FALSE");
    xml.element("FILE_UID", fileUid(take, position));
    xml.element("UBITS", "00000000");
    xml.element("NOTE", noteOf(take, position));
    appendSpeed(xml, take);
    xml.open("HISTORY");
    xml.element("ORIGINAL_FILENAME", names[position]);
    xml.close("HISTORY");
    xml.open("FILE_SET");
    xml.element("TOTAL_FILES", names.size());
    xml.element("FAMILY_UID", take.familyUID);
    xml.element("FAMILY_NAME", take.name);
    xml.element("FILE_SET_INDEX", position + 1);
    xml.close("FILE_SET");
    xml.open("TRACK_LIST");
    xml.element("TRACK_COUNT", tracks.size());
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        xml.open("TRACK");
        xml.element("CHANNEL_INDEX", position + i + 1);
        xml.element("INTERLEAVE_INDEX", i + 1);
        xml.element("NAME", tracks[i].name);
        xml.close("TRACK");
    }
    xml.close("TRACK_LIST");
    xml.close("BWFXML");
    return std::move(xml).text();
}

Bytes audioPayload(std::span<const std::vector<float>> tracks) {
    constexpr double fullScale = 8388607;
    const std::size_t frames = tracks.front().size();
    Bytes out(frames * tracks.size() * bytesPerSample);
    for (std::size_t track = 0; track < tracks.size(); ++track) {
        std::byte* at = out.data() + track * bytesPerSample;
        for (std::size_t frame = 0; frame < frames; ++frame, at += tracks.size() * bytesPerSample) {
            const double value = std::clamp(static_cast<double>(tracks[track][frame]), -1.0, 1.0);
            const auto sample = static_cast<std::uint32_t>(std::lround(value * fullScale));
            at[0] = static_cast<std::byte>(sample & 0xFFU);
            at[1] = static_cast<std::byte>(sample >> 8U & 0xFFU);
            at[2] = static_cast<std::byte>(sample >> 16U & 0xFFU);
        }
    }
    return out;
}

}  // namespace

std::vector<std::string> demoFileNames(const DemoTake& take) {
    if (take.layout == DemoLayout::poly) return {take.name + ".WAV"};
    const std::string_view suffix = take.layout == DemoLayout::monoLettered ? "_T" : "_";
    std::vector<std::string> names;
    for (std::size_t track = 1; track <= take.tracks.size(); ++track) {
        names.push_back(fmt::format("{}{}{:02}.WAV", take.name, suffix, track));
    }
    return names;
}

Bytes demoFile(const DemoTake& take, std::size_t position, const std::vector<std::vector<float>>& tracks) {
    const bool poly = take.layout == DemoLayout::poly;
    const std::span all(tracks);
    const Bytes audio = audioPayload(poly ? all : all.subspan(position, 1));
    std::string ixml = ixmlText(take, position);

    Bytes out;
    out.reserve(audio.size() + 16 * 1024);
    appendFormHeader(out, "RIFF", "WAVE", 0);  // the size is known at the end
    if (poly) {
        // Room to edit in without moving the audio.
        constexpr std::size_t paddedTo = 4096;
        ixml.resize(std::max(paddedTo, ixml.size()), ' ');
        appendChunk(out, "bext", bextPayload(take, position));
        appendChunk(out, "iXML", asBytes(ixml));
        appendChunk(out, "fmt ", fmtPayload(take.tracks.size()));
        appendChunk(out, "data", audio);
    } else {
        appendChunk(out, "fmt ", fmtPayload(1));
        appendChunk(out, "bext", bextPayload(take, position));
        appendChunk(out, "data", audio);
        appendChunk(out, "iXML", asBytes(ixml));
    }
    if (!take.cues.empty()) {
        appendChunk(out, "cue ", cueChunkPayload(take.cues));
        if (const Bytes labels = labelListPayload(take.cues); !labels.empty()) appendChunk(out, "LIST", labels);
    }
    writeLE(out.data() + 4, static_cast<std::uint32_t>(out.size() - chunkHeaderBytes));
    return out;
}

}  // namespace dravik
