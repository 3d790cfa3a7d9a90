#include "model/sample_decoder.h"

#include "base/file_error.h"
#include "base/text.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <mpg123.h>
#include <sndfile.h>
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/log.h>
}

namespace dravik {
namespace {

[[noreturn]] void refuse(const std::string& reason, const std::filesystem::path& file) {
    throw FileError("it cannot be read as audio: " + reason, file, std::errc::illegal_byte_sequence);
}

/// AIFF, AIFF-C, CAF, FLAC, big-endian WAV and WAV that is not linear.
class SndfileStream final : public SampleStream {
  public:
    explicit SndfileStream(const std::filesystem::path& file) : file_(file), sound_(nullptr, ::sf_close) {
        SF_INFO info{};
        sound_.reset(::sf_open(file.c_str(), SFM_READ, &info));
        if (!sound_) refuse(::sf_strerror(nullptr), file);
        format_ = {info.channels, static_cast<double>(info.samplerate), 0, std::max<std::int64_t>(0, info.frames)};
    }
    [[nodiscard]] const AudioFormat& format() const noexcept override { return format_; }
    [[nodiscard]] std::size_t read(std::span<float> into) override {
        const auto wanted = static_cast<sf_count_t>(into.size() / static_cast<std::size_t>(format_.channels));
        const sf_count_t got = ::sf_readf_float(sound_.get(), into.data(), wanted);
        if (got <= 0 && ::sf_error(sound_.get()) != SF_ERR_NO_ERROR) refuse(::sf_strerror(sound_.get()), file_);
        return static_cast<std::size_t>(std::max<sf_count_t>(0, got));
    }

  private:
    std::filesystem::path file_;
    std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> sound_;
    AudioFormat format_;
};

/// MP3, asked by ourselves: libsndfile lets the decoder print its warnings on our stderr.
class Mpg123Stream final : public SampleStream {
  public:
    explicit Mpg123Stream(const std::filesystem::path& file)
        : file_(file), decoder_(::mpg123_new(nullptr, nullptr), ::mpg123_delete) {
        constexpr long widestHole = 1024 * 1024;  // as the reader of the format has it
        long rate = 0;
        int channels = 0;
        int encoding = 0;
        if (!decoder_ ||
            ::mpg123_param(decoder_.get(), MPG123_ADD_FLAGS, MPG123_QUIET | MPG123_FORCE_FLOAT, 0) != MPG123_OK ||
            ::mpg123_param(decoder_.get(), MPG123_RESYNC_LIMIT, widestHole, 0) != MPG123_OK ||
            ::mpg123_open(decoder_.get(), file.c_str()) != MPG123_OK ||
            ::mpg123_getformat(decoder_.get(), &rate, &channels, &encoding) != MPG123_OK) {
            refuse("no MPEG audio was found in it.", file);
        }
        // Rate and channels stay what the first frame says; a stream that changes them is converted or ends.
        if (::mpg123_format_none(decoder_.get()) != MPG123_OK ||
            ::mpg123_format(decoder_.get(), rate, channels, MPG123_ENC_FLOAT_32) != MPG123_OK ||
            ::mpg123_scan(decoder_.get()) != MPG123_OK) {
            refuse("its frames cannot be followed.", file);
        }
        format_ = {channels, static_cast<double>(rate), 0, std::max<std::int64_t>(0, ::mpg123_length(decoder_.get()))};
    }
    [[nodiscard]] const AudioFormat& format() const noexcept override { return format_; }
    [[nodiscard]] std::size_t read(std::span<float> into) override {
        std::size_t bytes = 0;
        int said = MPG123_OK;
        do {
            said =
                ::mpg123_read(decoder_.get(), reinterpret_cast<unsigned char*>(into.data()), into.size_bytes(), &bytes);
        } while (said == MPG123_NEW_FORMAT && bytes == 0);
        if (said == MPG123_ERR) refuse(::mpg123_strerror(decoder_.get()), file_);
        return bytes / sizeof(float) / static_cast<std::size_t>(format_.channels);
    }
    [[nodiscard]] bool skipTo(std::int64_t frame) override {
        return ::mpg123_seek(decoder_.get(), frame, SEEK_SET) == frame;
    }

  private:
    std::filesystem::path file_;
    std::unique_ptr<mpg123_handle, void (*)(mpg123_handle*)> decoder_;
    AudioFormat format_;
};

/// M4A. Held to this container and to this file, as the reader of the format is.
class LibavStream final : public SampleStream {
  public:
    explicit LibavStream(const std::filesystem::path& file) : file_(file) {
        ::av_log_set_level(AV_LOG_QUIET);
        open();
        if (::avformat_find_stream_info(container_.get(), nullptr) < 0) refuse("it is damaged.", file_);
        const AVCodec* codec = nullptr;
        index_ = ::av_find_best_stream(container_.get(), AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
        if (index_ < 0 || codec == nullptr) refuse("there is no audio in it.", file_);
        const AVStream* stream = container_->streams[index_];
        decoder_.reset(::avcodec_alloc_context3(codec));
        if (!decoder_ || ::avcodec_parameters_to_context(decoder_.get(), stream->codecpar) < 0) throw std::bad_alloc();
        decoder_->pkt_timebase = stream->time_base;  // lets it trim the encoder's delay
        if (::avcodec_open2(decoder_.get(), codec, nullptr) < 0) refuse("its codec cannot be opened.", file_);
        const int channels = stream->codecpar->ch_layout.nb_channels;
        const int rate = stream->codecpar->sample_rate;
        if (channels <= 0 || rate <= 0) refuse("it has no channels.", file_);
        const std::int64_t frames =
            stream->duration > 0 ? ::av_rescale_q(stream->duration, stream->time_base, AVRational{1, rate}) : 0;
        format_ = {channels, static_cast<double>(rate), 0, frames};
        packet_.reset(::av_packet_alloc());
        frame_.reset(::av_frame_alloc());
        if (!packet_ || !frame_) throw std::bad_alloc();
    }
    [[nodiscard]] const AudioFormat& format() const noexcept override { return format_; }
    [[nodiscard]] std::string_view codec() const noexcept override { return ::avcodec_get_name(decoder_->codec_id); }

    [[nodiscard]] std::size_t read(std::span<float> into) override {
        const auto channels = static_cast<std::size_t>(format_.channels);
        // The end of the last packet is not cut by the decoder: the announced length is.
        const auto wanted =
            std::min<std::size_t>(into.size() / channels, static_cast<std::size_t>(format_.frames - given_));
        std::size_t done = 0;
        while (done < wanted) {
            if (used_ == ready_ && !nextFrame()) break;
            const std::size_t count = std::min(wanted - done, ready_ - used_);
            for (std::size_t c = 0; c < channels; ++c) {
                const auto* plane = reinterpret_cast<const float*>(frame_->extended_data[c]);
                for (std::size_t i = 0; i < count; ++i)
                    into[(done + i) * channels + c] = plane[used_ + i];
            }
            used_ += count;
            done += count;
        }
        given_ += static_cast<std::int64_t>(done);
        return done;
    }

  private:
    struct Close {
        void operator()(AVFormatContext* context) const noexcept { ::avformat_close_input(&context); }
        void operator()(AVCodecContext* context) const noexcept { ::avcodec_free_context(&context); }
        void operator()(AVPacket* packet) const noexcept { ::av_packet_free(&packet); }
        void operator()(AVFrame* frame) const noexcept { ::av_frame_free(&frame); }
    };

    void open() {
        const AVInputFormat* container = ::av_find_input_format("m4a");
        if (container == nullptr) refuse("this build has no reader of M4A.", file_);
        AVFormatContext* raw = nullptr;
        AVDictionary* options = nullptr;
        const bool narrowed = ::av_dict_set(&options, "protocol_whitelist", "file", 0) >= 0 &&
                              ::av_dict_set(&options, "format_whitelist", container->name, 0) >= 0;
        const bool opened =
            narrowed && ::avformat_open_input(&raw, ("file:" + file_.native()).c_str(), container, &options) == 0;
        ::av_dict_free(&options);
        if (!opened) refuse("it is not an M4A file.", file_);
        container_.reset(raw);
    }

    /// The next decoded samples into frame_; false at the end.
    bool nextFrame() {
        for (;;) {
            const int said = ::avcodec_receive_frame(decoder_.get(), frame_.get());
            if (said == 0) {
                if (frame_->format != AV_SAMPLE_FMT_FLTP || frame_->ch_layout.nb_channels != format_.channels) {
                    refuse("its format changes in the middle.", file_);
                }
                used_ = 0;
                ready_ = static_cast<std::size_t>(std::max(0, frame_->nb_samples));
                if (ready_ > 0) return true;
                continue;
            }
            if (said == AVERROR_EOF) return false;
            if (said != AVERROR(EAGAIN)) refuse("it is damaged.", file_);
            feed();
        }
    }

    void feed() {
        for (;;) {
            if (::av_read_frame(container_.get(), packet_.get()) < 0) {
                static_cast<void>(::avcodec_send_packet(decoder_.get(), nullptr));  // drains what is left
                return;
            }
            const bool ours = packet_->stream_index == index_;
            // A damaged packet is left out, as a hole in a tape would be.
            const int said = ours ? ::avcodec_send_packet(decoder_.get(), packet_.get()) : AVERROR_INVALIDDATA;
            ::av_packet_unref(packet_.get());
            if (said == 0) return;
        }
    }

    std::filesystem::path file_;
    std::unique_ptr<AVFormatContext, Close> container_;
    std::unique_ptr<AVCodecContext, Close> decoder_;
    std::unique_ptr<AVPacket, Close> packet_;
    std::unique_ptr<AVFrame, Close> frame_;
    int index_ = -1;
    AudioFormat format_;
    std::size_t used_ = 0, ready_ = 0;
    std::int64_t given_ = 0;
};

class MediaDecoder final : public SampleDecoder {
  public:
    [[nodiscard]] std::unique_ptr<SampleStream> open(const std::filesystem::path& file) const override {
        const std::string extension = file.extension().native();
        if (equalsIgnoringAsciiCase(extension, ".mp3")) return std::make_unique<Mpg123Stream>(file);
        if (equalsIgnoringAsciiCase(extension, ".m4a")) return std::make_unique<LibavStream>(file);
        return std::make_unique<SndfileStream>(file);
    }
};

}  // namespace
}  // namespace dravik

extern "C" __attribute__((visibility("default"))) dravik::SampleDecoder* dravikMakeSampleDecoder() {
    return std::make_unique<dravik::MediaDecoder>().release();
}
