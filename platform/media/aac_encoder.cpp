#include "operations/aac_encoder.h"

#include "operations/operation_audio_error.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <optional>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/log.h>
#include <libavutil/opt.h>
}

namespace dravik {
namespace {

struct Close {
    void operator()(AVCodecContext* context) const noexcept { ::avcodec_free_context(&context); }
    void operator()(AVFormatContext* context) const noexcept { ::avformat_free_context(context); }
    void operator()(AVPacket* packet) const noexcept { ::av_packet_free(&packet); }
    void operator()(AVFrame* frame) const noexcept { ::av_frame_free(&frame); }
    void operator()(AVIOContext* io) const noexcept {
        // The library may have put another buffer in the place of ours.
        ::av_freep(&io->buffer);
        ::avio_context_free(&io);
    }
};
template <typename Library>
using Owned = std::unique_ptr<Library, Close>;

[[noreturn]] void refuseInput() {
    throw OperationAudioError::impossibleCreerFormat("Unable to prepare PCM input for the Apple AAC encoder.");
}
[[noreturn]] void refuseBuffer() {
    throw OperationAudioError::impossibleCreerFormat("Unable to allocate an AAC encoder input buffer.");
}
void accept(int code) {
    if (code < 0) refuseInput();
}

/// The system's encoder where there is one, then the one known for its quality, then the library's own.
const AVCodec* bestCodec() noexcept {
    for (const char* name : {"aac_at", "libfdk_aac", "aac"}) {
        if (const AVCodec* codec = ::avcodec_find_encoder_by_name(name)) return codec;
    }
    return nullptr;
}

/// Sample formats that this file fills, the exact ones first.
std::optional<AVSampleFormat> inputFormat(const AVCodec& codec) noexcept {
    for (const AVSampleFormat wanted : {AV_SAMPLE_FMT_FLTP, AV_SAMPLE_FMT_FLT, AV_SAMPLE_FMT_S16}) {
        for (const AVSampleFormat* format = codec.sample_fmts; format != nullptr && *format != AV_SAMPLE_FMT_NONE;
             ++format) {
            if (*format == wanted) return wanted;
        }
    }
    return std::nullopt;
}

/// Most bits of one channel in one block of the format, which has 1,024 frames.
constexpr std::int64_t mostBitsOfBlock = 6144;
constexpr std::int64_t blockFrames = 1024;

/// The output as the library writes to it. Exceptions do not pass through the library: the first is kept.
class Io {
  public:
    explicit Io(EncodedOutput& output) : output_(output) {
        constexpr std::size_t bufferBytes = 256UL * 1024UL;
        auto* buffer = static_cast<unsigned char*>(::av_malloc(bufferBytes));
        if (buffer == nullptr) refuseBuffer();
        io_.reset(::avio_alloc_context(buffer, bufferBytes, 1, this, nullptr, &Io::write, &Io::seek));
        if (!io_) {
            ::av_free(buffer);
            refuseBuffer();
        }
    }
    [[nodiscard]] AVIOContext* context() const noexcept { return io_.get(); }
    void flush() {
        ::avio_flush(io_.get());
        rethrow();
    }
    /// What went wrong in the output matters more than what the library made of it.
    void rethrow() {
        if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
    }

  private:
    static int write(void* self, std::uint8_t* bytes, int size) noexcept {
        auto& io = *static_cast<Io*>(self);
        try {
            io.output_.writeAt(io.at_, {reinterpret_cast<const std::byte*>(bytes), static_cast<std::size_t>(size)});
        } catch (...) {
            if (!io.failure_) io.failure_ = std::current_exception();
            return AVERROR(EIO);
        }
        io.at_ += static_cast<std::uint64_t>(size);
        io.end_ = std::max(io.end_, io.at_);
        return size;
    }
    static std::int64_t seek(void* self, std::int64_t offset, int whence) noexcept {
        auto& io = *static_cast<Io*>(self);
        if ((whence & AVSEEK_SIZE) != 0) return static_cast<std::int64_t>(io.end_);
        if (whence != SEEK_SET || offset < 0) return AVERROR(EINVAL);
        io.at_ = static_cast<std::uint64_t>(offset);
        return offset;
    }

    EncodedOutput& output_;
    std::uint64_t at_ = 0, end_ = 0;
    std::exception_ptr failure_;
    Owned<AVIOContext> io_;
};

class LibavEncoder final : public AacEncoder {
  public:
    LibavEncoder(const AVCodec& codec, AVSampleFormat format, const AacSettings& settings, EncodedOutput& output)
        : channels_(settings.channels), io_(output) {
        open(codec, format, settings);
        startFile(settings);
        packet_.reset(::av_packet_alloc());
        frame_.reset(::av_frame_alloc());
        if (!packet_ || !frame_) refuseBuffer();
        frame_->format = format;
        frame_->sample_rate = settings.sampleRate;
        frame_->nb_samples = codec_->frame_size > 0 ? codec_->frame_size : static_cast<int>(blockFrames);
        if (::av_channel_layout_copy(&frame_->ch_layout, &codec_->ch_layout) < 0 ||
            ::av_frame_get_buffer(frame_.get(), 0) < 0) {
            refuseBuffer();
        }
        frameSize_ = static_cast<std::size_t>(frame_->nb_samples);
    }

    [[nodiscard]] std::int64_t bitRate() const noexcept override { return codec_->bit_rate; }

    void encode(std::span<const float* const> planes, std::size_t frames) override {
        for (std::size_t from = 0; from < frames;) {
            if (filled_ == 0 && ::av_frame_make_writable(frame_.get()) < 0) refuseBuffer();
            const std::size_t count = std::min(frames - from, frameSize_ - filled_);
            for (std::size_t c = 0; c < planes.size(); ++c)
                fill(c, planes[c] + from, count);
            filled_ += count;
            from += count;
            if (filled_ == frameSize_) sendFrame();
        }
    }

    void finish() override {
        if (filled_ > 0) sendFrame();
        send(nullptr);
        if (::av_write_trailer(container_.get()) < 0) {
            io_.rethrow();
            refuseInput();
        }
        io_.flush();
    }

  private:
    void open(const AVCodec& codec, AVSampleFormat format, const AacSettings& settings) {
        codec_.reset(::avcodec_alloc_context3(&codec));
        if (!codec_) refuseBuffer();
        codec_->bit_rate = std::int64_t{settings.bitRate} * 1000;
        codec_->sample_rate = settings.sampleRate;
        codec_->sample_fmt = format;
        codec_->time_base = {1, settings.sampleRate};
        ::av_channel_layout_default(&codec_->ch_layout, settings.channels);
        codec_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
        // Noise substitution is dealt out at random: without it the same audio gives the same file.
        static_cast<void>(::av_opt_set(codec_->priv_data, "aac_pns", "0", 0));
        accept(::avcodec_open2(codec_.get(), &codec, nullptr));
    }

    void startFile(const AacSettings& settings) {
        AVFormatContext* raw = nullptr;
        accept(::avformat_alloc_output_context2(&raw, nullptr, "ipod", nullptr));
        container_.reset(raw);
        container_->pb = io_.context();
        container_->flags |= AVFMT_FLAG_CUSTOM_IO | AVFMT_FLAG_BITEXACT;
        stream_ = ::avformat_new_stream(container_.get(), nullptr);
        if (stream_ == nullptr) refuseBuffer();
        accept(::avcodec_parameters_from_context(stream_->codecpar, codec_.get()));
        stream_->time_base = codec_->time_base;
        if (!settings.title.empty()) accept(::av_dict_set(&container_->metadata, "title", settings.title.c_str(), 0));
        if (!settings.comment.empty()) {
            accept(::av_dict_set(&container_->metadata, "comment", settings.comment.c_str(), 0));
        }
        // The list that says which part is heard counts in this unit: milliseconds, if nothing is said.
        accept(::av_opt_set_int(container_->priv_data, "movie_timescale", settings.sampleRate, 0));
        if (::avformat_write_header(container_.get(), nullptr) < 0) {
            io_.rethrow();
            refuseInput();
        }
    }

    void fill(std::size_t c, const float* from, std::size_t count) {
        if (frame_->format == AV_SAMPLE_FMT_FLTP) {
            std::copy_n(from, count, reinterpret_cast<float*>(frame_->extended_data[c]) + filled_);
        } else if (frame_->format == AV_SAMPLE_FMT_FLT) {
            auto* into = reinterpret_cast<float*>(frame_->extended_data[0]) + filled_ * channels();
            for (std::size_t i = 0; i < count; ++i)
                into[i * channels() + c] = from[i];
        } else {
            auto* into = reinterpret_cast<std::int16_t*>(frame_->extended_data[0]) + filled_ * channels();
            constexpr float scale = 32768.0F, most = 32767.0F;
            for (std::size_t i = 0; i < count; ++i) {
                if (std::fabs(from[i]) > 1.0F) {
                    throw OperationAudioError::groupeIncompatible(
                        "The export exceeds the integer PCM range; no clipped file was created.");
                }
                into[i * channels() + c] = static_cast<std::int16_t>(std::min(most, std::round(from[i] * scale)));
            }
        }
    }

    [[nodiscard]] std::size_t channels() const noexcept { return static_cast<std::size_t>(channels_); }

    void sendFrame() {
        frame_->nb_samples = static_cast<int>(filled_);
        frame_->pts = sent_;
        sent_ += static_cast<std::int64_t>(filled_);
        filled_ = 0;
        send(frame_.get());
    }

    /// Gives a frame, or the end, to the encoder and puts what comes out into the file.
    void send(const AVFrame* frame) {
        accept(::avcodec_send_frame(codec_.get(), frame));
        for (;;) {
            const int said = ::avcodec_receive_packet(codec_.get(), packet_.get());
            if (said == AVERROR(EAGAIN) || said == AVERROR_EOF) return;
            accept(said);
            ::av_packet_rescale_ts(packet_.get(), codec_->time_base, stream_->time_base);
            packet_->stream_index = stream_->index;
            const int written = ::av_interleaved_write_frame(container_.get(), packet_.get());
            io_.rethrow();
            accept(written);
        }
    }

    int channels_;
    Io io_;
    Owned<AVCodecContext> codec_;
    Owned<AVFormatContext> container_;
    AVStream* stream_ = nullptr;  ///< the container's
    Owned<AVPacket> packet_;
    Owned<AVFrame> frame_;
    std::size_t frameSize_ = 0, filled_ = 0;
    std::int64_t sent_ = 0;
};

class LibavEncoders final : public AacEncoders {
  public:
    LibavEncoders() { ::av_log_set_level(AV_LOG_QUIET); }

    [[nodiscard]] std::vector<int> sampleRates(int channels) const override {
        const AVCodec* codec = bestCodec();
        std::vector<int> rates;
        if (codec == nullptr || !inputFormat(*codec) || channels < 1 || channels > 2) return rates;
        for (const int* rate = codec->supported_samplerates; rate != nullptr && *rate != 0; ++rate)
            rates.push_back(*rate);
        return rates;
    }

    [[nodiscard]] bool takesBitRate(int channels, int sampleRate, int bitRate) const override {
        const std::vector<int> rates = sampleRates(channels);
        if (bitRate <= 0 || std::find(rates.begin(), rates.end(), sampleRate) == rates.end()) return false;
        if (std::int64_t{bitRate} * 1000 * blockFrames > mostBitsOfBlock * channels * sampleRate) return false;
        // What else the encoder minds it says when it is opened: it goes back on what it cannot do.
        const AVCodec* codec = bestCodec();
        const Owned<AVCodecContext> trial(::avcodec_alloc_context3(codec));
        if (!trial) return false;
        trial->bit_rate = std::int64_t{bitRate} * 1000;
        trial->sample_rate = sampleRate;
        trial->sample_fmt = *inputFormat(*codec);
        ::av_channel_layout_default(&trial->ch_layout, channels);
        return ::avcodec_open2(trial.get(), codec, nullptr) >= 0 && trial->bit_rate == std::int64_t{bitRate} * 1000;
    }

    [[nodiscard]] std::unique_ptr<AacEncoder> make(const AacSettings& settings, EncodedOutput& output) const override {
        const AVCodec* codec = bestCodec();
        if (codec == nullptr) refuseInput();
        const std::optional<AVSampleFormat> format = inputFormat(*codec);
        if (!format) refuseInput();
        return std::make_unique<LibavEncoder>(*codec, *format, settings, output);
    }
};

}  // namespace
}  // namespace dravik

extern "C" __attribute__((visibility("default"))) dravik::AacEncoders* dravikMakeAacEncoders() {
    return std::make_unique<dravik::LibavEncoders>().release();
}
