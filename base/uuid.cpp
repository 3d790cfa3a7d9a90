#include "base/uuid.h"

#include <random>

#include <fmt/format.h>

namespace dravik {
namespace {

std::mt19937_64 seededGenerator() {
    std::random_device device;
    std::seed_seq seed{device(), device(), device(), device(), device(), device(), device(), device()};
    return std::mt19937_64(seed);
}

}  // namespace

Uuid Uuid::random() {
    // Seeded once a thread: asking the system for every file of a large folder would cost more than probing it.
    thread_local std::mt19937_64 generator = seededGenerator();
    Uuid uuid;
    for (std::size_t half = 0; half < 2; ++half) {
        std::uint64_t bits = generator();
        for (std::size_t i = 0; i < 8; ++i, bits >>= 8U) {
            uuid.bytes_[half * 8 + i] = static_cast<std::uint8_t>(bits & 0xFFU);
        }
    }
    uuid.bytes_[6] = static_cast<std::uint8_t>((uuid.bytes_[6] & 0x0FU) | 0x40U);
    uuid.bytes_[8] = static_cast<std::uint8_t>((uuid.bytes_[8] & 0x3FU) | 0x80U);
    return uuid;
}

std::string Uuid::toString() const {
    std::string text;
    text.reserve(36);
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text.push_back('-');
        fmt::format_to(std::back_inserter(text), "{:02x}", bytes_[i]);
    }
    return text;
}

}  // namespace dravik
