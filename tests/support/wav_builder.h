#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dravik::test {

/// The one place where RIFF fixtures are made: byte by byte, with nothing of the code under test, and as wrong as a
/// test wants them. Everything is deterministic: the same calls give the same bytes.

/// What stands in the `fmt ` chunk. Of 16, 24 and 32 bits, integer or float.
struct Pcm {
    std::uint16_t channels = 1;
    std::uint32_t rate = 48000;
    std::uint16_t bits = 24;
    bool isFloat = false;
    bool extensible = false;  ///< 40 bytes with a sub-format instead of 16

    [[nodiscard]] std::size_t frameBytes() const { return std::size_t{channels} * (bits / 8U); }
};
[[nodiscard]] Bytes fmtPayload(const Pcm& pcm);

struct Bext {
    std::string description = {};     ///< up to 256 bytes; zeros behind
    std::string date = "2024-03-07";  ///< up to 10 bytes; zeros behind
    std::uint64_t timeReference = 0;
    std::size_t bytes = 602;  ///< length of the payload; what does not fit is left out
};
[[nodiscard]] Bytes bextPayload(const Bext& bext);

struct Cue {
    std::uint32_t number = 1;
    std::uint32_t frame = 0;
    std::optional<std::string> label = {};
};
[[nodiscard]] Bytes cuePayload(const std::vector<Cue>& cues);
[[nodiscard]] Bytes adtlPayload(const std::vector<Cue>& cues);

/// An iXML document as recorders write it. Absent values give no element.
struct Ixml {
    std::optional<std::string> project = "Film", scene = "12A", take = "3", tape = "R001", note = "";
    std::optional<std::string> circled = "FALSE", wild = {};
    std::optional<std::string> familyUid = {};
    std::optional<int> totalFiles = {}, fileSetIndex = {};
    std::optional<std::string> rate = "25/1", flag = "NDF";
    std::optional<std::uint64_t> samples = 1'728'000'000;  ///< since midnight; ten hours at 48 kHz
    struct Track {
        std::optional<int> channel = {}, interleave = {};
        std::optional<std::string> name = {};
    };
    std::vector<Track> tracks = {{1, 1, "Boom"}};
};
[[nodiscard]] std::string ixmlText(const Ixml& ixml);

/// Audio that differs by seed and never holds what looks like a chunk header for long.
[[nodiscard]] Bytes audioBytes(std::size_t count, unsigned seed = 1);

/// Puts a file together, chunk behind chunk, in the order of the calls.
class WavBuilder {
  public:
    /// What follows a payload of odd length.
    enum class Pad { zero, missing, notZero };

    explicit WavBuilder(std::string_view form = "RIFF", std::string_view type = "WAVE");

    WavBuilder& chunk(std::string_view id, ByteSpan payload, Pad pad = Pad::zero);
    WavBuilder& chunk(std::string_view id, std::string_view payload, Pad pad = Pad::zero);
    /// A chunk whose size field says something else than how much follows. Without a pad byte.
    WavBuilder& chunkClaiming(std::string_view id, ByteSpan payload, std::uint32_t size);
    /// Bytes that belong to no chunk.
    WavBuilder& raw(ByteSpan bytes);
    WavBuilder& raw(std::string_view bytes) { return raw(asBytes(bytes)); }
    /// The form size to write instead of the true one.
    WavBuilder& riffSize(std::uint32_t size);

    WavBuilder& fmt(const Pcm& pcm = {});
    /// A `data` chunk of that many frames of the `fmt ` given before.
    WavBuilder& audio(std::size_t frames, unsigned seed = 1);
    WavBuilder& bext(const Bext& bext = {}) { return chunk("bext", bextPayload(bext)); }
    WavBuilder& ixml(const Ixml& ixml = {}) { return chunk("iXML", ixmlText(ixml)); }
    /// `cue ` and, when one has a label, `LIST` of type adtl.
    WavBuilder& cues(const std::vector<Cue>& cues);
    /// The sizes of an RF64 or BW64 file; `others` for chunks other than data.
    WavBuilder& ds64(std::uint64_t dataBytes, const std::vector<std::pair<std::string, std::uint64_t>>& others = {});

    [[nodiscard]] Bytes bytes() const;
    /// Writes the file and returns its path.
    std::filesystem::path write(const std::filesystem::path& path) const;

  private:
    std::string form_, type_;
    Bytes body_;
    Pcm pcm_;
    std::optional<std::uint32_t> riffSize_;
};

/// A take as a recorder writes it: bext, iXML, fmt and audio, a text list behind.
[[nodiscard]] WavBuilder recorderFile(const Ixml& ixml = {}, const Pcm& pcm = {}, std::size_t frames = 1000,
                                      unsigned seed = 1);

}  // namespace dravik::test
