#pragma once

#include "playback/audio_output.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace dravik::test {

/// Outputs without a device and without a clock: sound is made when the test asks for it, as fast as it can be, into
/// memory. The test keeps this and gives the player what `outputs` returns. One thread.
class OfflineOutputs {
  public:
    bool refuse = false;  ///< the next start fails, as without a device
    int started = 0;
    double sampleRate = 0;
    std::vector<float> left, right;  ///< all that was rendered, of all outputs

    [[nodiscard]] MakeAudioOutput outputs() {
        return [this](std::function<void()> configurationChanged) {
            changed_ = std::move(configurationChanged);
            return std::make_unique<Output>(*this);
        };
    }
    /// Lets the output play so many frames.
    void run(std::size_t frames, std::size_t block = 512) {
        for (std::size_t done = 0; source_ != nullptr && done < frames;) {
            const std::size_t count = std::min(block, frames - done);
            const std::size_t at = left.size();
            left.resize(at + count);
            right.resize(at + count);
            source_->render(std::span(left).subspan(at), std::span(right).subspan(at));
            done += count;
        }
    }
    void deviceChanges() { changed_(); }

  private:
    class Output final : public AudioOutput {
      public:
        explicit Output(OfflineOutputs& all) : all_(all) {}
        Output(const Output&) = delete;
        Output& operator=(const Output&) = delete;
        ~Output() override { stop(); }
        void start(double rate, AudioSource& source) override {
            if (all_.refuse) throw AudioOutputError("there is no device.");
            ++all_.started;
            all_.sampleRate = rate;
            all_.source_ = &source;
            mine_ = true;
        }
        void stop() noexcept override {
            if (mine_) all_.source_ = nullptr;
            mine_ = false;
        }

      private:
        OfflineOutputs& all_;
        bool mine_ = false;
    };

    AudioSource* source_ = nullptr;
    std::function<void()> changed_;
};

}  // namespace dravik::test
