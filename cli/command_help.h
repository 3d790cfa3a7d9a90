#pragma once

#include "base/usage.h"

#include <map>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace dravik {

/// Values that a completion offers for an option or an argument; CLI11 does not give back those that it checks.
struct Offer {
    std::vector<std::string> choices;
    bool isList = false;  ///< the value is several of them, with commas between
};
using Offers = std::map<const CLI::Option*, Offer>;

/// What is declared, with its commands; hidden ones (group "") are left out, as in the help.
[[nodiscard]] Usage usageOf(const CLI::App& app, const Offers& offers);

/// CLI11's help without its shouting: "--scene TEXT", not "--scene TEXT REQUIRED".
class HelpFormatter final : public CLI::Formatter {
  public:
    HelpFormatter();
    std::string make_option_opts(const CLI::Option* option) const override;
    std::string make_positionals(const CLI::App* app) const override;
    std::string make_usage(const CLI::App* app, std::string name) const override;
};

}  // namespace dravik
