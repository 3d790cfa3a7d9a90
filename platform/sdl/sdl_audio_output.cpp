#include "platform/sdl/sdl_audio_output.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdint>

#include <SDL2/SDL.h>

namespace dravik {
namespace {

/// About ten milliseconds: what a fader needs to feel immediate, and what every server can keep up with.
constexpr int blockFrames = 512;

/// The audio subsystem, running while this lives.
class SdlAudio {
  public:
    SdlAudio() = default;
    SdlAudio(const SdlAudio&) = delete;
    SdlAudio& operator=(const SdlAudio&) = delete;
    ~SdlAudio() { end(); }

    void begin() {
        if (running_) return;
        // Ctrl-C stays the program's own affair.
        ::SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
        if (::SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) throw AudioOutputError(::SDL_GetError());
        running_ = true;
    }
    /// A sound server that was restarted is only found again by a subsystem that is.
    void beginAgain() {
        end();
        begin();
    }

  private:
    void end() noexcept {
        if (running_) ::SDL_QuitSubSystem(SDL_INIT_AUDIO);
        running_ = false;
    }
    bool running_ = false;
};

class SdlAudioOutput final : public AudioOutput {
  public:
    SdlAudioOutput(std::shared_ptr<SdlAudio> audio, std::function<void()> configurationChanged)
        : audio_(std::move(audio)), configurationChanged_(std::move(configurationChanged)) {}
    SdlAudioOutput(const SdlAudioOutput&) = delete;
    SdlAudioOutput& operator=(const SdlAudioOutput&) = delete;
    ~SdlAudioOutput() override { stop(); }

    void start(double sampleRate, AudioSource& source) override {
        source_ = &source;
        audio_->begin();
        bool opened = open(sampleRate);
        if (!opened) {
            audio_->beginAgain();
            opened = open(sampleRate);
        }
        const std::string reason = opened ? "" : ::SDL_GetError();
        // Not before: a subsystem that begins announces all devices as new. Also without a device, for the one that
        // comes.
        ::SDL_AddEventWatch(&watch, this);
        watching_ = true;
        if (!opened) throw AudioOutputError(reason);
        ::SDL_PauseAudioDevice(device_, 0);
    }

    void stop() noexcept override {
        if (watching_) ::SDL_DelEventWatch(&watch, this);
        watching_ = false;
        // Waits for a callback that runs; none follows.
        if (device_ != 0) ::SDL_CloseAudioDevice(device_);
        device_ = 0;
    }

  private:
    bool open(double sampleRate) {
        SDL_AudioSpec wanted{};
        wanted.freq = static_cast<int>(std::lround(sampleRate));
        wanted.format = AUDIO_F32SYS;
        wanted.channels = 2;
        wanted.samples = blockFrames;
        wanted.callback = &fill;
        wanted.userdata = this;
        SDL_AudioSpec got{};
        device_ = ::SDL_OpenAudioDevice(nullptr, 0, &wanted, &got, 0);
        return device_ != 0;
    }

    /// SDL's audio thread.
    static void fill(void* self, Uint8* bytes, int length) noexcept {
        static_cast<SdlAudioOutput*>(self)->fill(reinterpret_cast<float*>(bytes),
                                                 static_cast<std::size_t>(length) / (2 * sizeof(float)));
    }
    void fill(float* out, std::size_t frames) noexcept {
        for (std::size_t done = 0; done < frames;) {
            const std::size_t count = std::min(frames - done, left_.size());
            source_->render(std::span(left_).first(count), std::span(right_).first(count));
            for (std::size_t i = 0; i < count; ++i) {
                out[2 * (done + i)] = left_[i];
                out[2 * (done + i) + 1] = right_[i];
            }
            done += count;
        }
    }

    /// Any thread.
    static int SDLCALL watch(void* self, SDL_Event* event) {
        auto& output = *static_cast<SdlAudioOutput*>(self);
        const bool removed = event->type == SDL_AUDIODEVICEREMOVED && event->adevice.iscapture == 0 &&
                             event->adevice.which == output.device_;
        const bool added = event->type == SDL_AUDIODEVICEADDED && event->adevice.iscapture == 0;
        if (removed || added) output.configurationChanged_();
        return 1;
    }

    std::shared_ptr<SdlAudio> audio_;
    std::function<void()> configurationChanged_;
    AudioSource* source_ = nullptr;
    std::atomic<SDL_AudioDeviceID> device_{0};
    bool watching_ = false;
    std::array<float, blockFrames> left_{}, right_{};
};

}  // namespace

MakeAudioOutput sdlAudioOutputs() {
    return [audio = std::make_shared<SdlAudio>()](std::function<void()> configurationChanged) {
        return std::make_unique<SdlAudioOutput>(audio, std::move(configurationChanged));
    };
}

}  // namespace dravik
