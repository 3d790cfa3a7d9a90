#include "base/byte_source.h"
#include "base/file_handle.h"
#include "base/text.h"
#include "model/audio_file_reader.h"

#include <chrono>
#include <cmath>
#include <memory>
#include <mutex>
#include <string>

#include <mpg123.h>
#include <sndfile.h>
extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/log.h>
}

namespace dravik {
namespace {

/// Bits per sample of the linear encodings; compressed ones have none.
int bitsOf(int sndfileFormat) noexcept {
    switch (sndfileFormat & SF_FORMAT_SUBMASK) {
        case SF_FORMAT_PCM_S8:
        case SF_FORMAT_PCM_U8:
            return 8;
        case SF_FORMAT_PCM_16:
        case SF_FORMAT_ALAC_16:
            return 16;
        case SF_FORMAT_ALAC_20:
            return 20;
        case SF_FORMAT_PCM_24:
        case SF_FORMAT_ALAC_24:
            return 24;
        case SF_FORMAT_PCM_32:
        case SF_FORMAT_FLOAT:
        case SF_FORMAT_ALAC_32:
            return 32;
        case SF_FORMAT_DOUBLE:
            return 64;
        default:
            return 0;
    }
}

std::optional<AudioFormat> formatFromSndfile(const std::filesystem::path& file) noexcept {
    SF_INFO info{};
    const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> sound(::sf_open(file.c_str(), SFM_READ, &info), ::sf_close);
    if (!sound || info.channels <= 0 || info.samplerate <= 0 || info.frames < 0) return std::nullopt;
    return AudioFormat{info.channels, static_cast<double>(info.samplerate), bitsOf(info.format), info.frames};
}

using Mpg123 = std::unique_ptr<mpg123_handle, void (*)(mpg123_handle*)>;

/// A decoder that prints nothing and stands holes in a stream.
Mpg123 makeMpg123() noexcept {
    // Damage wider than this ends the stream; in a file that is no MP3 at all the search for one must end, too.
    constexpr long widestHole = 1024 * 1024;
    Mpg123 decoder(::mpg123_new(nullptr, nullptr), ::mpg123_delete);
    if (!decoder || ::mpg123_param(decoder.get(), MPG123_ADD_FLAGS, MPG123_QUIET, 0) != MPG123_OK ||
        ::mpg123_param(decoder.get(), MPG123_RESYNC_LIMIT, widestHole, 0) != MPG123_OK) {
        decoder.reset();
    }
    return decoder;
}

/// Did the first frame tell how long the stream is (a Xing, Info or VBRI header)?
bool hasLengthHeader(mpg123_handle* decoder) noexcept {
    mpg123_frameinfo info{};
    long delay = -1;
    return (::mpg123_info(decoder, &info) == MPG123_OK && info.vbr != MPG123_CBR) ||
           (::mpg123_getstate(decoder, MPG123_ENC_DELAY, &delay, nullptr) == MPG123_OK && delay >= 0);
}

/// Length of a stream that begins at `begin`, estimated from the average frame in windows all over the file: where the
/// bit rate varies, the first frames say little about the rest. Absent when no window holds a frame.
std::optional<std::int64_t> estimatedFrames(const FileSource& source, std::uint64_t begin) noexcept {
    constexpr std::uint64_t windows = 64;
    constexpr std::size_t windowBytes = 16 * 1024;  // some ten frames of the largest kind
    const Mpg123 decoder = makeMpg123();
    if (!decoder || source.size() <= begin) return std::nullopt;
    const std::uint64_t stride = (source.size() - begin) / windows;
    double bytes = 0;
    double samples = 0;
    for (std::uint64_t i = 0; i < windows; ++i) {
        const Bytes window = source.read(begin + i * stride, windowBytes);
        if (::mpg123_open_feed(decoder.get()) != MPG123_OK ||
            ::mpg123_feed(decoder.get(), reinterpret_cast<const unsigned char*>(window.data()), window.size()) !=
                MPG123_OK) {
            return std::nullopt;
        }
        for (int said = MPG123_OK; said == MPG123_OK || said == MPG123_NEW_FORMAT;) {
            said = ::mpg123_framebyframe_next(decoder.get());
            mpg123_frameinfo info{};
            if (said != MPG123_OK || ::mpg123_info(decoder.get(), &info) != MPG123_OK) continue;
            bytes += info.framesize;
            samples += ::mpg123_spf(decoder.get());
        }
    }
    if (!(bytes > 0)) return std::nullopt;
    return std::llround(static_cast<double>(source.size() - begin) * samples / bytes);
}

/// The MPEG decoder that libsndfile uses, asked by ourselves: libsndfile lets it print its warnings about odd frames
/// and truncated files on our stderr, and takes the first frames for typical of all.
std::optional<AudioFormat> formatFromMpg123(const std::filesystem::path& file) noexcept {
    // A stream that does not tell its length is walked frame by frame up to this size, a moment's work.
    constexpr std::uint64_t mostBytesWalked = 64U * 1024U * 1024U;
    const FileHandle handle = FileHandle::tryOpenForReading(file);
    const Mpg123 decoder = makeMpg123();
    if (!handle.isOpen() || !decoder) return std::nullopt;
    const FileSource source(handle);
    long rate = 0;
    int channels = 0;
    int encoding = 0;
    if (::mpg123_open(decoder.get(), file.c_str()) != MPG123_OK ||
        ::mpg123_getformat(decoder.get(), &rate, &channels, &encoding) != MPG123_OK) {
        return std::nullopt;
    }
    std::optional<std::int64_t> frames;
    if (!hasLengthHeader(decoder.get())) {
        if (source.size() > mostBytesWalked) {
            const off_t at = ::mpg123_tell_stream(decoder.get());
            frames = estimatedFrames(source, at > 0 ? static_cast<std::uint64_t>(at) : 0);
        } else if (::mpg123_scan(decoder.get()) != MPG123_OK) {
            return std::nullopt;
        }
    }
    if (!frames) frames = ::mpg123_length(decoder.get());
    if (channels <= 0 || rate <= 0 || *frames < 0) return std::nullopt;
    return AudioFormat{channels, static_cast<double>(rate), 0, *frames};
}

/// M4A. The library would open whatever a file's bytes seem to be, play lists that lead to other files and to the
/// network among them, and follow them for ever: it is held to this container, to this file and to a time limit.
std::optional<AudioFormat> formatFromLibav(const std::filesystem::path& file) noexcept {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::seconds patience{10};  // enough for a sleeping disk or a slow share
    const AVInputFormat* container = ::av_find_input_format("m4a");
    AVFormatContext* raw = ::avformat_alloc_context();
    if (container == nullptr || raw == nullptr) {
        ::avformat_free_context(raw);
        return std::nullopt;
    }
    Clock::time_point deadline = Clock::now() + patience;
    raw->interrupt_callback.opaque = &deadline;
    raw->interrupt_callback.callback = [](void* end) {
        return Clock::now() > *static_cast<const Clock::time_point*>(end) ? 1 : 0;
    };
    AVDictionary* options = nullptr;
    // The prefix makes a name with a colon ("T1:2.m4a") a name and no protocol.
    const bool narrowed = ::av_dict_set(&options, "protocol_whitelist", "file", 0) >= 0 &&
                          ::av_dict_set(&options, "format_whitelist", container->name, 0) >= 0;
    if (!narrowed) ::avformat_free_context(raw);
    const bool opened =
        narrowed && ::avformat_open_input(&raw, ("file:" + file.native()).c_str(), container, &options) == 0;
    ::av_dict_free(&options);
    if (!opened) return std::nullopt;  // a failed opening has freed the context
    const auto close = [](AVFormatContext* context) { ::avformat_close_input(&context); };
    const std::unique_ptr<AVFormatContext, decltype(close)> context(raw, close);
    if (::avformat_find_stream_info(context.get(), nullptr) < 0) return std::nullopt;
    const int index = ::av_find_best_stream(context.get(), AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (index < 0) return std::nullopt;
    const AVStream* stream = context->streams[index];
    const AVCodecParameters* codec = stream->codecpar;
    if (codec->sample_rate <= 0 || codec->ch_layout.nb_channels <= 0) return std::nullopt;
    // The stream's own duration honours the edit list, so that encoder delay is not counted.
    std::int64_t frames = 0;
    if (stream->duration > 0) {
        frames = ::av_rescale_q(stream->duration, stream->time_base, AVRational{1, codec->sample_rate});
    }
    return AudioFormat{codec->ch_layout.nb_channels, static_cast<double>(codec->sample_rate),
                       codec->bits_per_raw_sample, frames};
}

class MediaReader final : public AudioFileReader {
  public:
    MediaReader() { ::av_log_set_level(AV_LOG_QUIET); }

    [[nodiscard]] std::optional<AudioFormat> format(const std::filesystem::path& file) const noexcept override {
        const std::string extension = file.extension().native();
        if (equalsIgnoringAsciiCase(extension, ".mp3")) return formatFromMpg123(file);
        if (equalsIgnoringAsciiCase(extension, ".m4a")) return formatFromLibav(file);
        return formatFromSndfile(file);  // the reference reader; it does not know M4A
    }
};

}  // namespace
}  // namespace dravik

extern "C" __attribute__((visibility("default"))) dravik::AudioFileReader* dravikMakeMediaReader() {
    return std::make_unique<dravik::MediaReader>().release();
}
