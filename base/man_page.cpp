#include "base/man_page.h"

#include <algorithm>
#include <cctype>

#include <fmt/format.h>

namespace dravik {
namespace {

/// Text that roff prints as it stands. Plain dashes and quotes would become typographical ones, and commands copied out
/// of the page would not run.
std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
            case '\\':
                result += "\\e";
                break;
            case '-':
                result += "\\-";
                break;
            case '\'':
                result += "\\(aq";
                break;
            case '`':
                result += "\\(ga";
                break;
            case '^':
                result += "\\(ha";
                break;
            case '~':
                result += "\\(ti";
                break;
            default:
                result += c;
        }
    }
    return result;
}

/// A line of its own; one that begins with a dot would be a request.
std::string line(const std::string& escapedText) {
    return (escapedText.starts_with('.') ? "\\&" : "") + escapedText + '\n';
}

std::string bold(std::string_view text) { return "\\fB" + escaped(text) + "\\fR"; }
std::string italic(std::string_view text) { return "\\fI" + escaped(text) + "\\fR"; }

/// Running text, in which `backticks` hold what is typed.
std::string running(std::string_view text) {
    std::string result;
    for (bool typed = false;; typed = !typed) {
        const std::size_t end = text.find('`');
        const std::string_view part = text.substr(0, end);
        result += typed ? bold(part) : escaped(part);
        if (end == std::string_view::npos) return result;
        text.remove_prefix(end + 1);
    }
}

/// Names in capitals and placeholders: all letters of "COMMAND [options] PATH..." are what the user puts in.
std::string placeholders(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto isLetter = [](char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; };
        const auto* const end = std::find_if_not(text.begin(), text.end(), isLetter);
        const auto length = static_cast<std::size_t>(end - text.begin());
        if (length > 0) {
            result += italic(text.substr(0, length));
            text.remove_prefix(length);
        } else {
            result += escaped(text.substr(0, 1));
            text.remove_prefix(1);
        }
    }
    return result;
}

/// Paragraphs; lines that begin with a space keep their shape.
std::string paragraphs(std::string_view text) {
    std::string result;
    bool between = true;
    bool asItStands = false;
    const auto leave = [&] {
        if (asItStands) result += ".fi\n.RE\n";
        asItStands = false;
    };
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::string_view one = text.substr(at, end - at);
        at = end + 1;
        if (one.empty()) {
            leave();
            between = true;
            continue;
        }
        if (between) result += ".PP\n";
        between = false;
        if (one.front() == ' ') {
            if (!asItStands) result += ".RS 4\n.nf\n";
            asItStands = true;
            result += line(escaped(one.substr(std::min(one.find_first_not_of(' '), std::size_t{2}))));
        } else {
            leave();
            result += line(running(one));
        }
    }
    leave();
    return result;
}

std::string options(const Usage& usage) {
    std::string result;
    for (const UsageArgument& argument : usage.arguments) {
        if (argument.description.empty()) continue;
        result += ".TP\n" + line(italic(argument.value.name)) + line(running(argument.description));
    }
    for (const UsageOption& option : usage.options) {
        std::string names;
        for (const std::string& name : option.names)
            names += (names.empty() ? "" : ", ") + bold(name);
        if (option.value) names += ' ' + italic(option.value->name);
        result += ".TP\n" + line(names) + line(running(option.description));
    }
    return result;
}

/// A heading as the macro's one argument.
std::string heading(std::string_view macro, std::string_view text) {
    return fmt::format(".{} \"{}\"\n", macro, escaped(text));
}

}  // namespace

std::string manPage(const Usage& program, std::string_view version, const std::vector<std::string>& seeAlso) {
    std::string title = program.name;
    std::transform(title.begin(), title.end(), title.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    // The convention of the name line: no full stop, no capital, which is what whatis(1) lists.
    std::string summary = program.description;
    if (summary.ends_with('.')) summary.pop_back();
    if (!summary.empty()) {
        summary.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(summary.front())));
    }

    // Without a date: the same sources give the same page on every day.
    std::string page = fmt::format(".TH \"{}\" 1 \"\" \"{} {}\" \"User Commands\"\n", escaped(title),
                                   escaped(program.name), escaped(version));
    page += ".nh\n.ad l\n";
    page += heading("SH", "NAME") + line(escaped(program.name) + " \\- " + escaped(summary));
    page += heading("SH", "SYNOPSIS") + line(bold(program.name) + ' ' + placeholders(synopsis(program)));
    page += heading("SH", "DESCRIPTION") + line(running(program.description)) + paragraphs(program.footer);
    page += heading("SH", "OPTIONS") + options(program);
    if (!program.commands.empty()) page += heading("SH", "COMMANDS");
    for (const Usage& command : program.commands) {
        page += heading("SS", program.name + ' ' + command.name);
        page += line(bold(program.name + ' ' + command.name) + ' ' + placeholders(synopsis(command)));
        page += ".PP\n" + line(running(command.description) + '.');
        page += options(command) + paragraphs(command.footer);
    }
    if (!seeAlso.empty()) {
        page += heading("SH", "SEE ALSO");
        std::string pages;
        for (const std::string& other : seeAlso)
            pages += (pages.empty() ? "" : ", ") + bold(other) + "(1)";
        page += line(pages);
    }
    return page;
}

}  // namespace dravik
