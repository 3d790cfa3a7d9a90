#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace dravik::bench {

/// Most memory that the process held at once since this was made, what it held then included, as the kernel counts it
/// (Linux). One at a time: a new one starts the count of all of them anew.
class PeakMemory {
  public:
    PeakMemory();
    [[nodiscard]] double mebibytes() const;
};

/// Bytes that the process asked of the system by read calls in a piece of work, from the page cache or not (Linux).
class ReadBytes {
  public:
    ReadBytes();
    [[nodiscard]] std::uint64_t count() const;

  private:
    std::uint64_t before_ = 0;
    std::uint64_t cost_ = 0;  ///< what asking costs by itself
};

/// The next read of these files comes from the disk. As root the names and inodes of the whole system are forgotten
/// too.
void dropFromCache(const std::vector<std::filesystem::path>& files);

/// Runs a program with its output thrown away and waits. Ends the benchmark when it does not return 0.
void runProgram(const std::vector<std::string>& arguments);

}  // namespace dravik::bench
