#include "base/completions.h"

#include <algorithm>
#include <string_view>

#include <fmt/format.h>

namespace dravik {
namespace {

std::string joined(const std::vector<std::string>& words, std::string_view between) {
    return fmt::format("{}", fmt::join(words, between));
}

std::string replaced(std::string_view text, std::string_view what, std::string_view with) {
    std::string result;
    for (std::size_t found; (found = text.find(what)) != std::string_view::npos;) {
        result.append(text.substr(0, found)).append(with);
        text.remove_prefix(found + what.size());
    }
    return result.append(text);
}

/// The text in single quotes, as bash and zsh read them.
std::string quoted(std::string_view text) { return '\'' + replaced(text, "'", "'\\''") + '\''; }

/// The name of the function in bash, which as a POSIX shell takes no dash in one.
std::string functionName(std::string_view program) { return '_' + replaced(program, "-", "_"); }

std::vector<std::string> allNames(const Usage& usage) {
    std::vector<std::string> names;
    for (const UsageOption& option : usage.options)
        names.insert(names.end(), option.names.begin(), option.names.end());
    return names;
}

std::vector<std::string> commandNames(const Usage& program) {
    std::vector<std::string> names;
    for (const Usage& command : program.commands)
        names.push_back(command.name);
    return names;
}

// ------------------------------------------------------------------------------------------------------------- bash

/// What bash is to offer for the value: assignments that the frame of the script acts on.
std::string bashOffer(const UsageValue& value) {
    if (!value.choices.empty()) {
        const std::string choices = "choices=$" + quoted(joined(value.choices, "\\n"));
        return (value.isList ? "kind=list " : "kind=choice ") + choices;
    }
    switch (value.kind) {
        case ValueKind::path:
            return "kind=path";
        case ValueKind::folder:
            return "kind=folder";
        case ValueKind::text:
            break;
    }
    return "kind=text";
}

std::string bashCommand(const Usage& command, const std::string& name) {
    std::string text = fmt::format("        {})\n", name);
    text += fmt::format("            options='{}'\n", joined(allNames(command), " "));
    if (!command.arguments.empty()) {
        text += fmt::format("            {}\n", bashOffer(command.arguments.front().value));
    } else if (!command.commands.empty()) {
        text += fmt::format("            kind=choice choices=$'{}'\n", joined(commandNames(command), "\\n"));
    }
    std::string values;
    for (const UsageOption& option : command.options) {
        if (!option.value) continue;
        values +=
            fmt::format("                {}) value=yes {} ;;\n", joined(option.names, " | "), bashOffer(*option.value));
    }
    if (!values.empty()) text += "            case $prev in\n" + values + "            esac\n";
    return text + "            ;;\n";
}

std::string bash(const Usage& program) {
    const std::string function = functionName(program.name);
    std::string text = fmt::format(R"(# Completion of {0} for bash.
{1}() {{
    local cur=${{COMP_WORDS[COMP_CWORD]}} prev=${{COMP_WORDS[COMP_CWORD - 1]}}
    local command='' options='' kind='' choices='' value='' ended='' before='' i
    # To bash "--name=value" is three words.
    if [ "$prev" = '=' ] && [ "$COMP_CWORD" -gt 2 ]; then
        prev=${{COMP_WORDS[COMP_CWORD - 2]}}
    elif [ "$cur" = '=' ]; then
        cur=''
    fi
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${{COMP_WORDS[i]}} in
            --) ended=yes ;;
            -*) ;;
            *) if [ -z "$command" ]; then command=${{COMP_WORDS[i]}}; fi ;;
        esac
    done
    if [ -n "$ended" ]; then prev=''; fi
)",
                                   program.name, function);

    text += "    case $command in\n" + bashCommand(program, program.commands.empty() ? "*" : "''");
    for (const Usage& command : program.commands)
        text += bashCommand(command, command.name);
    text += fmt::format(R"(    esac
    local IFS=$'\n'
    COMPREPLY=()
    if [ -z "$value$ended" ] && [ "${{cur:0:1}}" = - ]; then
        mapfile -t COMPREPLY < <(compgen -W "${{options// /$'\n'}}" -- "$cur")
        return
    fi
    case $kind in
        choice)
            mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$cur")
            for i in "${{!COMPREPLY[@]}}"; do printf -v "COMPREPLY[i]" %q "${{COMPREPLY[i]}}"; done
            ;;
        list)
            case $cur in *,*) before=${{cur%,*}}, ;; esac
            mapfile -t COMPREPLY < <(compgen -P "$before" -W "$choices" -- "${{cur##*,}}")
            compopt -o nospace
            ;;
        path) compopt -o default ;;
        folder) compopt -o dirnames ;;
    esac
}}
complete -F {} {}
)",
                        function, program.name);
    return text;
}

// -------------------------------------------------------------------------------------------------------------- zsh

/// Text inside the brackets and between the colons of a specification of _arguments.
std::string zshEscaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '\\' || c == '[' || c == ']' || c == ':') result += '\\';
        result += c;
    }
    return result;
}

std::string zshOffer(const UsageValue& value) {
    std::string offer = ':' + zshEscaped(value.name) + ':';
    if (!value.choices.empty()) {
        std::vector<std::string> choices;
        for (const std::string& choice : value.choices)
            choices.push_back(replaced(choice, " ", "\\ "));
        const std::string all = joined(choices, " ");
        return offer + (value.isList ? "_sequence compadd - " + all : '(' + all + ')');
    }
    switch (value.kind) {
        case ValueKind::path:
            return offer + "_files";
        case ValueKind::folder:
            return offer + "_files -/";
        case ValueKind::text:
            break;
    }
    return offer + ' ';
}

/// The specifications of one command, each a quoted word.
std::vector<std::string> zshSpecifications(const Usage& usage) {
    std::vector<std::string> all;
    for (const UsageOption& option : usage.options) {
        for (const std::string& name : option.names) {
            std::string one;
            if (option.repeats) {
                one = "*";
            } else if (option.names.size() > 1) {
                one = '(' + joined(option.names, " ") + ')';
            }
            one += name;
            if (option.value && name.starts_with("--")) one += '=';
            one += '[' + zshEscaped(option.description) + ']';
            if (option.value) one += zshOffer(*option.value);
            all.push_back(quoted(one));
        }
    }
    for (const UsageArgument& argument : usage.arguments) {
        const std::string place = argument.repeats ? "*" : argument.isOptional ? ":" : "";
        all.push_back(quoted((place.empty() ? "1" : place) + zshOffer(argument.value)));
    }
    return all;
}

std::string zsh(const Usage& program) {
    // With its dashes: the function bears the name of its file, by which zsh finds it.
    const std::string function = '_' + program.name;
    std::string text = fmt::format("#compdef {0}\n# Completion of {0} for zsh.\n{1}() {{\n", program.name, function);
    const std::string own = joined(zshSpecifications(program), " \\\n        ");
    if (program.commands.empty()) {
        text += "    _arguments -S \\\n        " + own + '\n';
    } else {
        text += fmt::format(R"(    local curcontext=$curcontext state line ret=1
    typeset -A opt_args
    _arguments -C \
        {} \
        '1:command:->command' '*::argument:->arguments' && ret=0
    case $state in
        command)
            local -a commands=(
)",
                            own);
        for (const Usage& command : program.commands) {
            text += "                " + quoted(command.name + ':' + zshEscaped(command.description)) + '\n';
        }
        text += R"(            )
            _describe -t commands command commands && ret=0
            ;;
        arguments)
            case $line[1] in
)";
        for (const Usage& command : program.commands) {
            text += fmt::format(
                "                {})\n                    _arguments -S \\\n                        {} && ret=0\n"
                "                    ;;\n",
                command.name, joined(zshSpecifications(command), " \\\n                        "));
        }
        text += "            esac\n            ;;\n    esac\n    return ret\n";
    }
    // Found in $fpath the file is the function's body, sourced it is not.
    text += fmt::format("}}\nif [ \"$funcstack[1]\" = {0} ]; then {0} \"$@\"; else compdef {0} {1}; fi\n", function,
                        program.name);
    return text;
}

// ------------------------------------------------------------------------------------------------------------- fish

std::string fishQuoted(std::string_view text) {
    return '\'' + replaced(replaced(text, "\\", "\\\\"), "'", "\\'") + '\'';
}

/// Options of `complete` that say what is offered.
std::string fishOffer(const UsageValue& value) {
    if (!value.choices.empty()) {
        std::vector<std::string> choices;
        for (const std::string& choice : value.choices)
            choices.push_back(choice.find(' ') == std::string::npos ? choice : '"' + choice + '"');
        const std::string all = joined(choices, " ");
        return " -f -a " + fishQuoted(value.isList ? "(__fish_append , " + all + ')' : all);
    }
    switch (value.kind) {
        case ValueKind::path:
            return " -F";
        case ValueKind::folder:
            return " -f -a '(__fish_complete_directories)'";
        case ValueKind::text:
            break;
    }
    return " -f";
}

std::string fishCommand(const Usage& usage, const std::string& begin) {
    std::string text;
    for (const UsageArgument& argument : usage.arguments)
        text += begin + fishOffer(argument.value) + '\n';
    for (const UsageOption& option : usage.options) {
        text += begin;
        for (const std::string& name : option.names)
            text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
        if (option.value) text += " -r" + fishOffer(*option.value);
        text += " -d " + fishQuoted(option.description) + '\n';
    }
    return text;
}

std::string fish(const Usage& program) {
    std::string text = fmt::format("# Completion of {} for fish.\n", program.name);
    const std::string begin = "complete -c " + program.name;
    if (program.commands.empty()) return text + fishCommand(program, begin);
    const std::string first = begin + " -n __fish_use_subcommand";
    for (const Usage& command : program.commands) {
        text += fmt::format("{} -f -a {} -d {}\n", first, command.name, fishQuoted(command.description));
    }
    text += fishCommand(program, first);
    for (const Usage& command : program.commands)
        text += fishCommand(command, fmt::format("{} -n '__fish_seen_subcommand_from {}'", begin, command.name));
    return text;
}

}  // namespace

std::optional<Shell> shellOf(std::string_view name) {
    if (name == "bash") return Shell::bash;
    if (name == "zsh") return Shell::zsh;
    if (name == "fish") return Shell::fish;
    return std::nullopt;
}

std::string completions(const Usage& program, Shell shell) {
    switch (shell) {
        case Shell::bash:
            return bash(program);
        case Shell::zsh:
            return zsh(program);
        case Shell::fish:
            return fish(program);
    }
    return {};
}

}  // namespace dravik
