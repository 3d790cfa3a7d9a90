#pragma once

#include <optional>
#include <string>
#include <vector>

namespace dravik {

/// What a command line takes, as values: its help, its manual page and its completions are made from these, so that
/// they cannot differ. Texts are English. In descriptions and footers `backticks` hold what is typed: the manual page
/// prints it bold, the help as it stands.

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
    std::string description;          ///< a phrase without a full stop: "Print the version"
    bool repeats = false;
};

struct UsageArgument {
    UsageValue value;
    bool isOptional = false;
    bool repeats = false;
    std::string description = {};  ///< as an option's; empty where the name says it
};

/// A program, or one of its commands.
struct Usage {
    std::string name;         ///< the file's of a program, the word behind it of a command
    std::string description;  ///< of a program a sentence with its full stop, of a command a phrase without
    /// Paragraphs with an empty line between them. Lines that begin with a space stand as they are, indented: the
    /// manual page takes two of their spaces for its own.
    std::string footer;
    std::vector<UsageOption> options = {};
    std::vector<UsageArgument> arguments = {};
    std::vector<Usage> commands = {};  ///< of a program alone: a command has none
};

/// What follows the name: "COMMAND [options]", "[options] PATH...".
[[nodiscard]] std::string synopsis(const Usage& usage);

}  // namespace dravik
