#include "base/text.h"
#include "model/audio_file_reader.h"

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

/// The MPEG decoder that libsndfile uses, asked by ourselves: libsndfile lets it print its warnings about odd frames
/// and truncated files on our stderr.
std::optional<AudioFormat> formatFromMpg123(const std::filesystem::path& file) noexcept {
    const std::unique_ptr<mpg123_handle, void (*)(mpg123_handle*)> decoder(::mpg123_new(nullptr, nullptr),
                                                                           ::mpg123_delete);
    if (!decoder || ::mpg123_param(decoder.get(), MPG123_ADD_FLAGS, MPG123_QUIET, 0) != MPG123_OK) return std::nullopt;
    long rate = 0;
    int channels = 0;
    int encoding = 0;
    if (::mpg123_open(decoder.get(), file.c_str()) != MPG123_OK ||
        ::mpg123_getformat(decoder.get(), &rate, &channels, &encoding) != MPG123_OK) {
        return std::nullopt;
    }
    const off_t frames = ::mpg123_length(decoder.get());
    if (channels <= 0 || rate <= 0 || frames < 0) return std::nullopt;
    return AudioFormat{channels, static_cast<double>(rate), 0, frames};
}

std::optional<AudioFormat> formatFromLibav(const std::filesystem::path& file) noexcept {
    AVFormatContext* raw = nullptr;
    if (::avformat_open_input(&raw, file.c_str(), nullptr, nullptr) != 0) return std::nullopt;
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
        std::optional<AudioFormat> found;
        if (equalsIgnoringAsciiCase(extension, ".mp3")) {
            found = formatFromMpg123(file);
        } else if (!equalsIgnoringAsciiCase(extension, ".m4a")) {
            found = formatFromSndfile(file);  // the reference reader; it does not know M4A
        }
        return found ? found : formatFromLibav(file);
    }
};

}  // namespace
}  // namespace dravik

extern "C" __attribute__((visibility("default"))) dravik::AudioFileReader* dravikMakeMediaReader() {
    return std::make_unique<dravik::MediaReader>().release();
}
