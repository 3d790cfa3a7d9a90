#pragma once

#include "model/audio_file_reader.h"

#include <atomic>

namespace dravik::test {

/// Says the same of every file, and counts how often it was asked.
class FakeCodecs final : public AudioFileReader {
  public:
    explicit FakeCodecs(std::optional<AudioFormat> answer = {}) : answer_(answer) {}
    [[nodiscard]] std::optional<AudioFormat> format(const std::filesystem::path&) const noexcept override {
        ++asked;
        return answer_;
    }
    mutable std::atomic<int> asked{0};

  private:
    std::optional<AudioFormat> answer_;
};

}  // namespace dravik::test
