#pragma once

#include <optional>
#include <string>
#include <vector>

namespace dravik {

/// What a command line takes, as values: its help, its manual page and its completions are made from these, so that
/// they cannot differ.

enum class ValueKind { text, path, folder };

/// What stands behind an option, or by itself.
struct UsageValue {
    std::string name;  ///< as the help calls it, "DIR"
    ValueKind kind = ValueKind::text;
    std::vector<std::string> choices = {};  ///< worth offering; others may be allowed, too
    bool isList = false;                    ///< several choices, with commas between them
};

struct UsageOption {
    std::vector<std::string> names;   ///< with their dashes
    std::optional<UsageValue> value;  ///< absent for a switch
    std::string description;
    bool repeats = false;
};

struct UsageArgument {
    UsageValue value;
    bool isOptional = false;
    bool repeats = false;
    std::string description = {};  ///< empty where the name says it
};

/// A program, or one of its commands.
struct Usage {
    std::string name;
    std::string description;  ///< one sentence
    std::string footer;       ///< paragraphs; lines that begin with a space stand as they are
    std::vector<UsageOption> options = {};
    std::vector<UsageArgument> arguments = {};
    std::vector<Usage> commands = {};
};

/// What follows the name: "COMMAND [options]", "[options] PATH...".
[[nodiscard]] std::string synopsis(const Usage& usage);

}  // namespace dravik
