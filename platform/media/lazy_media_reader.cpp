#include "platform/media/lazy_media_reader.h"

#include <mutex>

#include <dlfcn.h>

namespace dravik {
namespace {

/// Folder of the running program or test, wherever it was started from.
std::filesystem::path programFolder() {
    Dl_info info{};
    if (::dladdr(reinterpret_cast<const void*>(&programFolder), &info) == 0 || info.dli_fname == nullptr) return {};
    std::error_code none;
    // For the main program the name may be as typed on the command line; the system knows the real one.
    std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", none);
    if (none) self = std::filesystem::weakly_canonical(info.dli_fname, none);
    return self.parent_path();
}

class LazyMediaReader final : public AudioFileReader {
  public:
    explicit LazyMediaReader(std::function<void(const std::string&)> complain) : complain_(std::move(complain)) {}

    [[nodiscard]] std::optional<AudioFormat> format(const std::filesystem::path& file) const noexcept override {
        std::call_once(loaded_, [this] { load(); });
        return reader_ ? reader_->format(file) : std::nullopt;
    }

  private:
    void load() const noexcept {
#ifdef __APPLE__
        constexpr const char* moduleName = "dravik_media.bundle";
#else
        constexpr const char* moduleName = "dravik_media.so";
#endif
        std::optional<std::string> reason;
        // Beside the program in a build, in lib/dravik where it is installed.
        const std::filesystem::path folder = programFolder();
        for (const std::filesystem::path& place :
             {folder / moduleName, folder / ".." / "lib" / "dravik" / moduleName}) {
            // Never unloaded: the libraries keep threads and tables of their own.
            void* module = ::dlopen(place.c_str(), RTLD_NOW | RTLD_LOCAL);
            void* symbol = module != nullptr ? ::dlsym(module, "dravikMakeMediaReader") : nullptr;
            if (symbol != nullptr) {
                reader_.reset(reinterpret_cast<MakeMediaReader>(symbol)());
                return;
            }
            // A module that is there and does not load is what is wrong, not that there is none in the other place.
            const char* said = ::dlerror();
            std::error_code none;
            if (!reason && said != nullptr && std::filesystem::exists(place, none)) reason = said;
        }
        if (complain_) {
            complain_("Files other than WAV cannot be read: " +
                      reason.value_or(std::string(moduleName) + " was not found."));
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
