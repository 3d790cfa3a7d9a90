#include "platform/lame/lame_encoder.h"

#include <algorithm>
#include <climits>
#include <utility>

#include <lame/lame.h>

namespace dravik {
namespace {

/// As much as the library puts out beyond the samples it is given: what it holds back, and one frame.
constexpr std::size_t heldBackBytes = 7200;

unsigned char* asLame(Bytes& bytes) noexcept { return reinterpret_cast<unsigned char*>(bytes.data()); }

void sayNothing(const char*, va_list) {}

class MP3EncoderAdapter final : public MP3Encoder {
  public:
    void initialise(const MP3EncoderConfiguration& configuration) override {
        if (!configuration.isValid()) throw MP3EncoderError::invalidConfiguration();
        close();
        handle_.reset(::lame_init());
        if (!handle_) throw MP3EncoderError::unavailable();
        ::lame_set_errorf(handle_.get(), sayNothing);
        ::lame_set_msgf(handle_.get(), sayNothing);
        ::lame_set_debugf(handle_.get(), sayNothing);
        constexpr int quality = 2;
        accept(::lame_set_in_samplerate(handle_.get(), configuration.sampleRate));
        accept(::lame_set_num_channels(handle_.get(), configuration.channels));
        accept(::lame_set_brate(handle_.get(), configuration.bitRate));
        accept(::lame_set_quality(handle_.get(), quality));
        if (const int code = ::lame_init_params(handle_.get()); code < 0) accept(code);
        configuration_ = configuration;
        isInitialized_ = true;
    }

    [[nodiscard]] Bytes encode(std::span<const std::int16_t> samples, std::size_t frames) override {
        if (!isInitialized_) throw MP3EncoderError::unavailable();
        const auto channels = static_cast<std::size_t>(configuration_.channels);
        Bytes all;
        // The library counts frames in an int.
        constexpr std::size_t most = 1024UL * 1024UL;
        for (std::size_t from = 0; from < frames;) {
            const std::size_t count = std::min(most, frames - from);
            Bytes out(std::max(heldBackBytes, count + count / 4 + 1 + heldBackBytes));
            // The library takes a writable pointer and only reads. One channel is not "interleaved" for it: the name
            // reads two samples a frame whatever the channels are.
            auto* first = const_cast<short*>(samples.data() + from * channels);
            const int size = static_cast<int>(out.size());
            const int frameCount = static_cast<int>(count);
            const int made =
                channels == 1 ? ::lame_encode_buffer(handle_.get(), first, first, frameCount, asLame(out), size)
                              : ::lame_encode_buffer_interleaved(handle_.get(), first, frameCount, asLame(out), size);
            if (made < 0) throw MP3EncoderError::encodingFailed(made);
            append(all, ByteSpan(out).first(static_cast<std::size_t>(made)));
            from += count;
        }
        return all;
    }

    [[nodiscard]] Bytes flush() override {
        if (!isInitialized_) throw MP3EncoderError::unavailable();
        Bytes out(heldBackBytes);
        const int made = ::lame_encode_flush(handle_.get(), asLame(out), static_cast<int>(out.size()));
        if (made < 0) throw MP3EncoderError::flushingFailed(made);
        out.resize(static_cast<std::size_t>(made));
        isInitialized_ = false;
        return out;
    }

    [[nodiscard]] Bytes headerFrame() override {
        if (!handle_ || isInitialized_) throw MP3EncoderError::unavailable();
        Bytes out(::lame_get_lametag_frame(handle_.get(), nullptr, 0));
        if (out.empty()) return out;
        out.resize(std::min(out.size(), ::lame_get_lametag_frame(handle_.get(), asLame(out), out.size())));
        return out;
    }

    void close() noexcept override {
        handle_.reset();
        isInitialized_ = false;
    }

  private:
    struct Close {
        void operator()(lame_global_flags* handle) const noexcept { ::lame_close(handle); }
    };

    void accept(int code) {
        if (code == 0) return;
        close();
        throw MP3EncoderError::initializationFailed(code);
    }

    std::unique_ptr<lame_global_flags, Close> handle_;
    MP3EncoderConfiguration configuration_;
    bool isInitialized_ = false;
};

class LameEncoders final : public MP3Encoders {
  public:
    [[nodiscard]] std::unique_ptr<MP3Encoder> make() const override { return std::make_unique<MP3EncoderAdapter>(); }
};

}  // namespace

std::unique_ptr<MP3Encoders> makeLameEncoders() { return std::make_unique<LameEncoders>(); }

}  // namespace dravik
