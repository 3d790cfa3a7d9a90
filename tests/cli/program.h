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

/// The program as a process (the one beside the test, unless DRAVIK_CLI names another), standard input empty, both
/// outputs caught.
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

}  // namespace dravik::test
