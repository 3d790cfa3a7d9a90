#include "platform/media/lazy_sample_decoder.h"

#include "base/file_error.h"
#include "platform/media/media_module.h"

#include <mutex>
#include <string>

namespace dravik {
namespace {

class LazySampleDecoder final : public SampleDecoder {
  public:
    [[nodiscard]] std::unique_ptr<SampleStream> open(const std::filesystem::path& file) const override {
        std::call_once(loaded_, [this] {
            const MediaFunction function = mediaFunction("dravikMakeSampleDecoder");
            if (function.address != nullptr) decoder_.reset(reinterpret_cast<MakeSampleDecoder>(function.address)());
            reason_ = function.reason;
        });
        if (!decoder_) throw FileError("it cannot be decoded: " + reason_, file, std::errc::not_supported);
        return decoder_->open(file);
    }

  private:
    mutable std::once_flag loaded_;
    mutable std::unique_ptr<SampleDecoder> decoder_;
    mutable std::string reason_;
};

}  // namespace

std::unique_ptr<SampleDecoder> makeLazySampleDecoder() { return std::make_unique<LazySampleDecoder>(); }

}  // namespace dravik
