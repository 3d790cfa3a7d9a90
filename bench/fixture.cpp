#include "bench/fixture.h"

#include "model/wave/chunk_bytes.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

namespace dravik::bench {
namespace {

// As recorders leave them: a coding history behind the 602 bytes, room for edits behind the document.
constexpr std::size_t bextBytes = 858;
constexpr std::size_t polyIxmlBytes = 5226;
constexpr std::size_t monoIxmlBytes = 2918;
constexpr std::size_t ixtcBytes = 20;
constexpr std::size_t fmtBytes = 16;
constexpr std::uint16_t polyChannels = 8;
constexpr std::size_t headerAreaBytes = 8192;

[[noreturn]] void fail(const char* what, const std::filesystem::path& path) {
    throw std::filesystem::filesystem_error(what, path, std::error_code(errno, std::generic_category()));
}

class Output {
  public:
    explicit Output(const std::filesystem::path& path)
        : path_(path), descriptor_(::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0644)) {
        if (descriptor_ < 0) fail("cannot create", path);
    }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    ~Output() { ::close(descriptor_); }

    void write(std::uint64_t at, ByteSpan bytes) {
        while (!bytes.empty()) {
            const ssize_t written = ::pwrite(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(at));
            if (written <= 0) fail("cannot write", path_);
            at += static_cast<std::uint64_t>(written);
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        }
    }
    void sync() {
        if (::fsync(descriptor_) != 0) fail("cannot sync", path_);
    }

  private:
    std::filesystem::path path_;
    int descriptor_;
};

Bytes bextPayload(int number) {
    std::string text = fmt::format(
        "sSPEED=025.000-NDF\r\nsTAKE={}\r\nsUBITS=$00000000\r\nsSWVER=2.81\r\nsPROJECT=Day\r\n"
        "sSCENE=12A\r\nsFILENAME=R{:05}.WAV\r\nsTAPE=R1\r\nsCIRCLED=FALSE\r\nsNOTE=\r\n",
        number % 40 + 1, number);
    text.resize(320);
    text += "2024-05-1710:20:30";
    Bytes payload = toBytes(text);
    appendLE(payload, static_cast<std::uint64_t>(number) * 48'000U * 60U);
    appendLE<std::uint16_t>(payload, 1);
    payload.resize(602);
    append(payload, std::string_view("A=PCM,F=48000,W=24,M=mono,T=recorder\r\n"));
    payload.resize(bextBytes);
    return payload;
}

std::string trackElement(int channel, int interleave) {
    return fmt::format(
        "\t\t<TRACK>\n\t\t\t<CHANNEL_INDEX>{}</CHANNEL_INDEX>\n\t\t\t<INTERLEAVE_INDEX>{}</INTERLEAVE_INDEX>\n"
        "\t\t\t<NAME>Lav {}</NAME>\n\t\t\t<FUNCTION>LAV</FUNCTION>\n\t\t</TRACK>\n",
        channel, interleave, channel);
}

Bytes ixmlPayload(Kind kind, int number) {
    const int tracks = kind == Kind::poly ? polyChannels : 1;
    std::string text = fmt::format(
        "<?xml version=\"1.0\" "
        "encoding=\"UTF-8\"?>\n<BWFXML>\n\t<IXML_VERSION>1.5</IXML_VERSION>\n\t<PROJECT>Day</PROJECT>\n"
        "\t<SCENE>12A</SCENE>\n\t<TAKE>{}</TAKE>\n\t<TAPE>R1</TAPE>\n\t<CIRCLED>FALSE</CIRCLED>\n\t<WILD_TRACK>FALSE"
        "</WILD_TRACK>\n\t<UBITS>00000000</UBITS>\n\t<FILE_UID>RECA{:028}</FILE_UID>\n\t<NOTE></NOTE>\n",
        number % 40 + 1, number);
    text += fmt::format(
        "\t<SPEED>\n\t\t<NOTE></NOTE>\n\t\t<MASTER_SPEED>25/1</MASTER_SPEED>\n\t\t<CURRENT_SPEED>25/1</CURRENT_SPEED>\n"
        "\t\t<TIMECODE_FLAG>NDF</TIMECODE_FLAG>\n\t\t<TIMECODE_RATE>25/1</TIMECODE_RATE>\n"
        "\t\t<FILE_SAMPLE_RATE>48000</FILE_SAMPLE_RATE>\n\t\t<AUDIO_BIT_DEPTH>24</AUDIO_BIT_DEPTH>\n"
        "\t\t<DIGITIZER_SAMPLE_RATE>48000</DIGITIZER_SAMPLE_RATE>\n"
        "\t\t<TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI>0</TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI>\n"
        "\t\t<TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO>{0}</TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO>\n"
        "\t\t<TIMESTAMP_SAMPLE_RATE>48000</TIMESTAMP_SAMPLE_RATE>\n\t</SPEED>\n\t<HISTORY>\n"
        "\t\t<ORIGINAL_FILENAME>R{1:05}.WAV</ORIGINAL_FILENAME>\n\t\t<PARENT_FILENAME>R{1:05}.WAV</PARENT_FILENAME>\n"
        "\t</HISTORY>\n\t<FILE_SET>\n\t\t<TOTAL_FILES>{2}</TOTAL_FILES>\n\t\t<FAMILY_UID>RECA{3:028}</FAMILY_UID>\n"
        "\t\t<FAMILY_NAME>12A</FAMILY_NAME>\n\t\t<FILE_SET_INDEX>A</FILE_SET_INDEX>\n\t</FILE_SET>\n",
        number * 48'000L, number, kind == Kind::poly ? 1 : monoFilesPerSet, number / (monoFilesPerSet + 1));
    text += fmt::format("\t<TRACK_LIST>\n\t\t<TRACK_COUNT>{}</TRACK_COUNT>\n", tracks);
    for (int track = 1; track <= tracks; ++track)
        text += trackElement(kind == Kind::poly ? track : number % 8 + 1, track);
    text += "\t</TRACK_LIST>\n</BWFXML>\n";
    const std::size_t length = kind == Kind::poly ? polyIxmlBytes : monoIxmlBytes;
    if (text.size() > length) throw std::logic_error("the iXML of the benchmark outgrew its chunk");
    text.resize(length, kind == Kind::poly ? '\0' : ' ');
    return toBytes(text);
}

Bytes fmtPayload(Kind kind) {
    const std::uint16_t channels = kind == Kind::poly ? polyChannels : 1;
    Bytes payload;
    appendLE<std::uint16_t>(payload, 1);
    appendLE<std::uint16_t>(payload, channels);
    appendLE<std::uint32_t>(payload, 48000);
    appendLE<std::uint32_t>(payload, 48000U * 3U * channels);
    appendLE<std::uint16_t>(payload, static_cast<std::uint16_t>(channels * 3));
    appendLE<std::uint16_t>(payload, 24);
    return payload;
}

/// A megabyte that no disk can make smaller; the same in every run.
const Bytes& noise() {
    static const Bytes bytes = [] {
        Bytes made;
        std::uint64_t state = 88172645463325252U;
        while (made.size() < 1024U * 1024U) {
            state ^= state << 13U;
            state ^= state >> 7U;
            state ^= state << 17U;
            appendLE(made, state);
        }
        return made;
    }();
    return bytes;
}

void writeRecording(const std::filesystem::path& path, Kind kind, int number, std::uint64_t audioBytes,
                    Filling filling) {
    const Frame frame = frameOf(kind, number, audioBytes);
    Output out(path);
    out.write(0, frame.before);
    for (std::uint64_t at = 0; filling == Filling::written && at < audioBytes; at += noise().size()) {
        const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(noise().size(), audioBytes - at));
        Bytes block(noise().begin(), noise().begin() + static_cast<std::ptrdiff_t>(length));
        if (length >= sizeof at) writeLE(block.data(), at);
        out.write(frame.before.size() + at, block);
    }
    out.write(frame.before.size() + audioBytes, frame.behind);
    out.sync();
}

}  // namespace

BenchFolder::BenchFolder() {
    if (const char* given = std::getenv("DRAVIK_BENCH_FOLDER"); given != nullptr && *given != '\0') {
        path_ = std::filesystem::absolute(given);
        std::filesystem::create_directories(path_);
        return;
    }
    std::string pattern = std::filesystem::current_path() / "dravik-bench-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) fail("cannot create", pattern);
    path_ = pattern;
    temporary_ = true;
}

BenchFolder::~BenchFolder() {
    std::error_code none;
    if (temporary_) std::filesystem::remove_all(path_, none);
}

const BenchFolder& benchFolder() {
    static const BenchFolder folder;
    return folder;
}

Kind kindOf(std::string_view fileName) noexcept {
    return fileName.find("_T") == std::string_view::npos ? Kind::poly : Kind::mono;
}

Layout layoutOf(Kind kind, std::uint64_t audioBytes) noexcept {
    const std::uint64_t behindBext = riffHeaderBytes + chunkHeaderBytes + bextBytes;
    if (kind == Kind::poly) return {behindBext + chunkHeaderBytes, polyIxmlBytes};
    return {behindBext + 2 * chunkHeaderBytes + fmtBytes + audioBytes + chunkHeaderBytes, monoIxmlBytes};
}

Frame frameOf(Kind kind, int number, std::uint64_t audioBytes) {
    Frame frame;
    appendFormHeader(frame.before, "RIFF", "WAVE", 0);  // the size is known at the end
    appendChunk(frame.before, "bext", bextPayload(number));
    Bytes& ixmlSide = kind == Kind::poly ? frame.before : frame.behind;
    appendChunk(ixmlSide, "iXML", ixmlPayload(kind, number));
    if (kind == Kind::mono) appendChunk(frame.behind, "iXTC", Bytes(ixtcBytes));
    appendChunk(frame.before, "fmt ", fmtPayload(kind));
    appendChunkHeader(frame.before, "data", audioBytes);
    const std::uint64_t length = frame.before.size() + audioBytes + frame.behind.size();
    writeLE(frame.before.data() + 4, static_cast<std::uint32_t>(length - chunkHeaderBytes));
    return frame;
}

std::vector<std::filesystem::path> smallRecordings(std::string_view folderName, int count) {
    const std::filesystem::path folder = benchFolder().path() / folderName;
    std::vector<std::filesystem::path> files;
    for (int i = 0; i < count; ++i) {
        const int take = i / (monoFilesPerSet + 1);
        const int track = i % (monoFilesPerSet + 1);
        files.push_back(folder / (track == 0
                                      ? fmt::format("S{:03}-T{:02}_mix.WAV", take / 20 + 1, take % 20 + 1)
                                      : fmt::format("S{:03}-T{:02}_T{:02}.WAV", take / 20 + 1, take % 20 + 1, track)));
    }
    if (std::filesystem::exists(files.back())) return files;
    std::filesystem::create_directories(folder);
    for (int i = 0; i < count; ++i) {
        const std::filesystem::path& file = files[static_cast<std::size_t>(i)];
        writeRecording(file, kindOf(file.filename().native()), i, smallAudioBytes, Filling::written);
    }
    return files;
}

std::filesystem::path largeRecording(std::string_view fileName, std::uint64_t audioBytes, Filling filling) {
    const std::filesystem::path file = benchFolder().path() / fileName;
    if (!std::filesystem::exists(file)) writeRecording(file, Kind::mono, 1, audioBytes, filling);
    return file;
}

std::filesystem::path manyChunksRecording(std::string_view fileName, std::uint64_t bytes) {
    const std::filesystem::path file = benchFolder().path() / fileName;
    Output out(file);
    const std::uint64_t apart = bytes / maxChunks / 2 * 2;
    Bytes header;
    appendFormHeader(header, "RIFF", "WAVE", 0);  // readers go by the length of the file
    appendChunk(header, "fmt ", fmtPayload(Kind::mono));
    out.write(0, header);
    std::uint64_t at = header.size();
    for (std::size_t i = 2; i < maxChunks; ++i) {
        Bytes chunk;
        appendChunkHeader(chunk, i == 2 ? FourCC("data") : FourCC("xtra"), apart - chunkHeaderBytes);
        out.write(at, chunk);
        at += apart;
    }
    Bytes last;
    appendChunk(last, "iXML", ixmlPayload(Kind::mono, 1));
    out.write(at, last);
    return file;
}

PolyTake polyTake(int seconds, Loudness loudness) {
    constexpr std::size_t rate = 48000;
    const bool quarter = loudness == Loudness::quarter;
    PolyTake take{benchFolder().path() / fmt::format("poly-{}s{}.wav", seconds, quarter ? "-quarter" : ""),
                  static_cast<std::size_t>(seconds) * rate};
    if (std::filesystem::exists(take.path)) return take;
    const auto bytes = static_cast<std::uint32_t>(take.audioBytes());
    Bytes head = toBytes("RIFF");
    appendLE(head, 36 + bytes);
    append(head, "WAVEfmt ");
    appendLE(head, std::uint32_t{16});
    appendLE(head, std::uint16_t{1});
    appendLE(head, static_cast<std::uint16_t>(PolyTake::channels));
    appendLE(head, static_cast<std::uint32_t>(rate));
    appendLE(head, static_cast<std::uint32_t>(rate * PolyTake::frameBytes));
    appendLE(head, static_cast<std::uint16_t>(PolyTake::frameBytes));
    appendLE(head, std::uint16_t{24});
    append(head, "data");
    appendLE(head, bytes);
    Bytes second(PolyTake::frameBytes * rate);
    std::uint32_t noise = 1;
    for (std::byte& byte : second) {
        noise = noise * 1664525U + 1013904223U;
        byte = static_cast<std::byte>(noise >> 24U);
    }
    constexpr std::size_t sampleBytes = 3;
    for (std::size_t top = sampleBytes - 1; quarter && top < second.size(); top += sampleBytes)
        second[top] = static_cast<std::byte>(static_cast<std::int8_t>(second[top]) >> 2);
    std::ofstream out(take.path, std::ios::binary);
    out << asText(head);
    for (int i = 0; i < seconds; ++i)
        out << asText(second);
    out.close();
    if (!out) fail("cannot write", take.path);
    return take;
}

std::size_t readBare(const char* path, const Layout& layout) noexcept {
    std::array<std::byte, headerAreaBytes> buffer;
    const int descriptor = ::open(path, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return 0;
    const ssize_t header = ::pread(descriptor, buffer.data(), buffer.size(), 0);
    const ssize_t ixml = ::pread(descriptor, buffer.data(), layout.ixmlBytes, static_cast<off_t>(layout.ixmlOffset));
    ::close(descriptor);
    return static_cast<std::size_t>(std::max<ssize_t>(header, 0) + std::max<ssize_t>(ixml, 0));
}

}  // namespace dravik::bench
