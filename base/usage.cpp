#include "base/usage.h"

namespace dravik {

std::string synopsis(const Usage& usage) {
    std::string text = usage.commands.empty() ? "[options]" : "COMMAND [options]";
    for (const UsageArgument& argument : usage.arguments) {
        const std::string name = argument.value.name + (argument.repeats ? "..." : "");
        text += argument.isOptional ? " [" + name + "]" : " " + name;
    }
    return text;
}

}  // namespace dravik
