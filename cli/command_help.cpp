#include "cli/command_help.h"

namespace dravik {
namespace {

UsageValue valueOf(const CLI::Option& option, const std::string& name, const Offers& offers) {
    UsageValue value{name};
    if (name == "DIR" || name == "FOLDER") value.kind = ValueKind::folder;
    if (name == "FILE" || name == "PATH") value.kind = ValueKind::path;
    if (const auto offer = offers.find(&option); offer != offers.end()) {
        value.choices = offer->second.choices;
        value.isList = offer->second.isList;
    }
    return value;
}

UsageOption optionOf(const CLI::Option& option, const Offers& offers) {
    UsageOption result;
    for (const std::string& name : option.get_snames())
        result.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        result.names.push_back("--" + name);
    if (option.get_items_expected_max() > 0) result.value = valueOf(option, option.get_type_name(), offers);
    result.description = option.get_description();
    result.repeats = option.get_items_expected_max() > 1;
    return result;
}

}  // namespace

Usage usageOf(const CLI::App& app, const Offers& offers) {
    Usage usage{app.get_name(), app.get_description(), app.get_footer()};
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_positional()) {
            usage.arguments.push_back({valueOf(*option, option->get_name(true), offers), !option->get_required(),
                                       option->get_items_expected_max() > 1});
        } else {
            usage.options.push_back(optionOf(*option, offers));
        }
    }
    const auto isShown = [](const CLI::App* command) { return !command->get_group().empty(); };
    for (const CLI::App* command : app.get_subcommands(isShown))
        usage.commands.push_back(usageOf(*command, offers));
    return usage;
}

HelpFormatter::HelpFormatter() {
    column_width(30);
    label("OPTIONS", "options");
}

std::string HelpFormatter::make_option_opts(const CLI::Option* option) const {
    const std::string type = option->get_type_name();
    return type.empty() || option->get_items_expected_max() == 0 ? std::string() : " " + type;
}

std::string HelpFormatter::make_positionals(const CLI::App*) const { return {}; }

std::string HelpFormatter::make_usage(const CLI::App* app, std::string name) const {
    return "\nUsage: " + (name.empty() ? app->get_name() : name) + " " + synopsis(usageOf(*app, {})) + "\n";
}

}  // namespace dravik
