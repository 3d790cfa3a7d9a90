#include "platform/media/lazy_media_reader.h"

#include "platform/media/media_module.h"

#include <mutex>

namespace dravik {
namespace {

class LazyMediaReader final : public AudioFileReader {
  public:
    explicit LazyMediaReader(std::function<void(const std::string&)> complain) : complain_(std::move(complain)) {}

    [[nodiscard]] std::optional<AudioFormat> format(const std::filesystem::path& file) const noexcept override {
        std::call_once(loaded_, [this] { load(); });
        return reader_ ? reader_->format(file) : std::nullopt;
    }

  private:
    void load() const noexcept {
        const MediaFunction function = mediaFunction("dravikMakeMediaReader");
        if (function.address != nullptr) {
            reader_.reset(reinterpret_cast<MakeMediaReader>(function.address)());
        } else if (complain_) {
            complain_("Files other than WAV cannot be read: " + function.reason);
        }
    }

    std::function<void(const std::string&)> complain_;
    mutable std::once_flag loaded_;
    mutable std::unique_ptr<AudioFileReader> reader_;
};

}  // namespace

std::unique_ptr<AudioFileReader> makeLazyMediaReader(std::function<void(const std::string&)> complain) {
    return std::make_unique<LazyMediaReader>(std::move(complain));
}

}  // namespace dravik
