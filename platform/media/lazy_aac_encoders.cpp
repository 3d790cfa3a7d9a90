#include "platform/media/lazy_aac_encoders.h"

#include "operations/operation_audio_error.h"
#include "platform/media/media_module.h"

#include <mutex>

namespace dravik {
namespace {

class LazyAacEncoders final : public AacEncoders {
  public:
    [[nodiscard]] std::vector<int> sampleRates(int channels) const override {
        const AacEncoders* real = loaded();
        return real == nullptr ? std::vector<int>() : real->sampleRates(channels);
    }
    [[nodiscard]] bool takesBitRate(int channels, int sampleRate, int bitRate) const override {
        const AacEncoders* real = loaded();
        return real != nullptr && real->takesBitRate(channels, sampleRate, bitRate);
    }
    [[nodiscard]] std::unique_ptr<AacEncoder> make(const AacSettings& settings, EncodedOutput& output) const override {
        const AacEncoders* real = loaded();
        if (real == nullptr) {
            throw OperationAudioError::impossibleCreerFormat("Unable to prepare PCM input for the Apple AAC encoder.");
        }
        return real->make(settings, output);
    }

  private:
    const AacEncoders* loaded() const {
        std::call_once(once_, [this] {
            const MediaFunction function = mediaFunction("dravikMakeAacEncoders");
            if (function.address != nullptr) real_.reset(reinterpret_cast<MakeAacEncoders>(function.address)());
        });
        return real_.get();
    }

    mutable std::once_flag once_;
    mutable std::unique_ptr<AacEncoders> real_;
};

}  // namespace

std::unique_ptr<AacEncoders> makeLazyAacEncoders() { return std::make_unique<LazyAacEncoders>(); }

}  // namespace dravik
