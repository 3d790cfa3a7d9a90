#pragma once

#include "base/error.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace dravik {

/// A take that cannot be played; the text is for the user.
class PlaybackError final : public Error {
  public:
    enum class Case { tooLong, noRoom, ratesDiffer, notMono, noAudio };

    [[nodiscard]] static PlaybackError tooLong(const std::filesystem::path& file);
    /// No buffer of that size could be had.
    [[nodiscard]] static PlaybackError noRoom(std::uint64_t needed, std::optional<std::uint64_t> available);
    [[nodiscard]] static PlaybackError ratesDiffer(const std::filesystem::path& file);
    [[nodiscard]] static PlaybackError notMono(const std::filesystem::path& file);
    [[nodiscard]] static PlaybackError noAudio(const std::filesystem::path& file);

    [[nodiscard]] Case kind() const noexcept { return kind_; }

  private:
    PlaybackError(Case kind, const std::string& text) : Error(text), kind_(kind) {}
    Case kind_;
};

}  // namespace dravik
