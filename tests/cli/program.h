#pragma once

#include "tests/support/temp_folder.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>
#include <sys/types.h>

namespace dravik::test {

/// What a run of the program left behind.
struct Ran {
    int exitCode = -1;  ///< minus the signal's number when one ended it
    std::string out, err;

    /// Standard output as the one JSON document it must be.
    [[nodiscard]] nlohmann::ordered_json json() const { return nlohmann::ordered_json::parse(out); }
};

/// The program (DRAVIK_CLI names it) as a process, standard input empty, both outputs caught.
class Program {
  public:
    struct Surroundings {
        std::filesystem::path workingFolder = {};             ///< empty: the test's
        std::map<std::string, std::string> environment = {};  ///< beside the test's
        std::filesystem::path standardOutput = {};            ///< a device instead of a file of our own
    };
    explicit Program(const std::vector<std::string>& arguments) : Program(arguments, Surroundings()) {}
    Program(const std::vector<std::string>& arguments, const Surroundings& surroundings);

    void signal(int number) const;
    [[nodiscard]] Ran wait();

  private:
    TempFolder folder_;
    pid_t child_ = -1;
};

[[nodiscard]] Ran run(const std::vector<std::string>& arguments);
[[nodiscard]] Ran run(const std::vector<std::string>& arguments, const Program::Surroundings& surroundings);

/// Everything that a look at a folder can tell apart: bytes, inodes, times of all files in it.
[[nodiscard]] std::map<std::string, std::string> stateOf(const std::filesystem::path& folder);

}  // namespace dravik::test
