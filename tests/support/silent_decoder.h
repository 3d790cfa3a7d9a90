#pragma once

#include "model/sample_decoder.h"

#include <filesystem>
#include <memory>
#include <semaphore>
#include <system_error>

namespace dravik::test {

/// Of a volume that does not answer before the test does; then the file cannot be read. For what is no linear WAV file.
class SilentDecoder final : public SampleDecoder {
  public:
    [[nodiscard]] std::unique_ptr<SampleStream> open(const std::filesystem::path&) const override {
        asked.release();
        answer.acquire();
        throw std::filesystem::filesystem_error("silent", std::make_error_code(std::errc::io_error));
    }
    mutable std::counting_semaphore<8> asked{0}, answer{0};
};

}  // namespace dravik::test
