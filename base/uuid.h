#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace dravik {

/// A random (version 4) UUID, for identities within one run. Not for secrets.
class Uuid {
  public:
    /// The nil UUID.
    Uuid() = default;
    /// A fresh one; any thread.
    [[nodiscard]] static Uuid random();
    /// "8-4-4-4-12" lower-case hexadecimal digits.
    [[nodiscard]] std::string toString() const;

    friend bool operator==(const Uuid&, const Uuid&) = default;
    friend auto operator<=>(const Uuid&, const Uuid&) = default;

  private:
    std::array<std::uint8_t, 16> bytes_{};
};

}  // namespace dravik
