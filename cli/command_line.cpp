#include "cli/command_line.h"

#include "base/text.h"
#include "editing/row_edits.h"

#include <algorithm>
#include <memory>
#include <sstream>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace dravik {
namespace {

constexpr const char* programFooter =
    R"(Results go to standard output, everything else to standard error. Nothing ever asks a question.
`dravik-cli COMMAND --help` explains a command.

Exit codes:
  0    all done
  1    some item failed; each is named on standard error
  2    the command line is wrong
  3    refused before any change
  130  interrupted; nothing is half-written)";

constexpr const char* scanFooter =
    R"(Mono files that belong to one take are one line. A folder is looked at without its sub-folders.

Examples:
  dravik-cli scan /media/card/2024Y05M14D
  dravik-cli scan --json day1 day2 | jq '.groups[] | select(.circled) | .name'
  dravik-cli scan --no-group take7_*.wav)";

constexpr const char* showFooter = R"(Examples:
  dravik-cli show 12A-T03.WAV
  dravik-cli show --json 12A-T03.WAV | jq .chunks
  dravik-cli show --ixml 12A-T03.WAV > 12A-T03.xml)";

constexpr const char* setFooter =
    R"(A folder stands for all its takes, a file of a mono set for the whole set (unless --no-group).
Everything is checked before the first file is touched. The audio stays as it is, to the byte.
Frame rates: 23.976, 24, 25, 29.97, "29.97 DF", 30, or another whole number.

Examples:
  dravik-cli set --scene 12A --take 3 12A-T03.WAV
  dravik-cli set --circled --note "Best for sound" T05_01.WAV
  dravik-cli set --track 1=Boom --track 2="Lav Anna" T05_01.WAV
  dravik-cli set --channel 1=2 --channel 2=1 T05_01.WAV
  dravik-cli set --timecode 10:12:44:03 --framerate 25 wild.wav
  dravik-cli set --project "The Long Tide" --dry-run /media/card/day1
  dravik-cli set --name 12B-T03 12A-T03.WAV)";

constexpr const char* cuesFooter =
    R"(Without an edit the markers are listed. Numbers are those of the list, as they are before the edit;
frames are sample frames from the start of the file. Markers are stored in the order of their frames.

Examples:
  dravik-cli cues take.wav
  dravik-cli cues take.wav --add 48000=Slate --add 96000
  dravik-cli cues take.wav --remove 2 --rename 1="Second slate"
  dravik-cli cues take.wav --clear --dry-run)";

constexpr const char* demoFooter =
    R"(Poly files and mono sets, circled and wild takes, notes, markers, three frame rates. The same seed gives
the same day. A file that exists is never written over: the command is refused.

Examples:
  dravik-cli demo demo-day
  dravik-cli demo --takes 2000 --seed 7 many)";

constexpr const char* recoverFooter =
    R"(Unfinished renames are finished or rolled back, temporary files of dead processes removed. `scan` and `set`
do the same for the folders they open.

Example:
  dravik-cli recover /media/card/day1)";

/// CLI11's help without its shouting: "--scene TEXT", not "--scene TEXT REQUIRED".
class HelpFormatter final : public CLI::Formatter {
  public:
    HelpFormatter() {
        column_width(30);
        label("OPTIONS", "options");
        label("Subcommands", "Commands");
    }
    std::string make_option_opts(const CLI::Option* option) const override {
        const std::string type = option->get_type_name();
        return type.empty() || option->get_items_expected_max() == 0 ? std::string() : " " + type;
    }
    std::string make_positionals(const CLI::App*) const override { return {}; }
    std::string make_usage(const CLI::App* app, std::string name) const override {
        std::string usage = "\nUsage: " + (name.empty() ? app->get_name() : name);
        if (app->get_parent() == nullptr) return usage + " COMMAND [options]\n";
        usage += " [options]";
        for (const CLI::Option* option : app->get_options([](const CLI::Option* o) { return o->get_positional(); })) {
            usage += " " + option->get_name(true) + (option->get_items_expected_max() > 1 ? "..." : "");
        }
        return usage + "\n";
    }
};

/// "N=TEXT" or "N" split at the first "=".
struct NumberedText {
    std::int64_t number = 0;
    std::optional<std::string> text;
};

NumberedText numberedText(const std::string& option, const std::string& argument, std::int64_t least) {
    const std::size_t equals = argument.find('=');
    const std::optional<std::int64_t> number = parseInteger(std::string_view(argument).substr(0, equals));
    if (!number || *number < least) {
        throw CLI::ValidationError(option,
                                   fmt::format("\"{}\" does not begin with a number from {} on", argument, least));
    }
    NumberedText result{*number, {}};
    if (equals != std::string::npos) result.text = argument.substr(equals + 1);
    return result;
}

NumberedText numberedName(const std::string& option, const std::string& argument) {
    NumberedText result = numberedText(option, argument, 1);
    if (!result.text) throw CLI::ValidationError(option, fmt::format("\"{}\" is not NUMBER=NAME", argument));
    return result;
}

int trackOf(const NumberedText& track) {
    constexpr std::int64_t beyondAnyTake = 1'000'000;
    return static_cast<int>(std::min(track.number, beyondAnyTake));
}

/// Declares the commands and keeps what is parsed into.
class Grammar {
  public:
    Grammar() {
        app_.set_version_flag("--version", std::string("dravik-cli ") + DRAVIK_VERSION, "Print the version");
        app_.set_help_flag("-h,--help", "Print this help");
        app_.formatter(std::make_shared<HelpFormatter>());
        app_.require_subcommand(1);
        app_.footer(programFooter);
        scan();
        show();
        set();
        cues();
        recover();
        demo();
    }

    Command parse(int argc, const char* const* argv) {
        try {
            app_.parse(arguments(argc, argv));
            return command_;
        } catch (const CLI::Success& asked) {
            std::ostringstream text;
            std::ostringstream none;
            app_.exit(asked, text, none);
            return Told{ExitCode::done, text.str()};
        } catch (const CLI::ParseError& error) {
            return Told{ExitCode::usage, wrongUsage(error)};
        }
    }

  private:
    /// The arguments as CLI11 takes them: without the program's name, last first. It takes what follows "--note=" for
    /// the note; here the note is empty.
    static std::vector<std::string> arguments(int argc, const char* const* argv) {
        std::vector<std::string> result;
        bool options = true;
        for (int i = 1; i < argc; ++i) {
            std::string argument = argv[i];
            if (argument == "--") options = false;
            const bool emptyValue = options && argument.starts_with("--") && argument.find('=') == argument.size() - 1;
            if (emptyValue) argument.pop_back();
            result.push_back(std::move(argument));
            if (emptyValue) result.emplace_back();
        }
        std::reverse(result.begin(), result.end());
        return result;
    }

    std::string wrongUsage(const CLI::ParseError& error) const {
        const CLI::App* at = &app_;
        for (const CLI::App* sub : app_.get_subcommands())
            at = sub;
        if (at == &app_) {
            const std::vector<std::string> unknown = app_.remaining();
            const std::string what = unknown.empty() ? "A command is required"
                                     : unknown.front().starts_with('-')
                                         ? fmt::format("There is no option {}", unknown.front())
                                         : fmt::format("There is no command \"{}\"", unknown.front());
            return what + "\nusage: dravik-cli COMMAND [options]; see dravik-cli --help";
        }
        std::string usage(trimmed(HelpFormatter().make_usage(at, "dravik-cli " + at->get_name())));
        usage.replace(0, 1, "u");
        return fmt::format("{}\n{}; see dravik-cli {} --help", error.what(), usage, at->get_name());
    }

    CLI::App& command(const char* name, const char* description, const char* footer) {
        CLI::App& sub = *app_.add_subcommand(name, description);
        sub.footer(footer);
        return sub;
    }

    void text(CLI::App& sub, const char* name, std::optional<std::string>& target, const char* description,
              const char* type = "TEXT") {
        sub.add_option_function<std::string>(
               name, [&target](const std::string& value) { target = value; }, description)
            ->type_name(type);
    }
    /// "--name" and "--no-name", of which one may be given.
    void yesNo(CLI::App& sub, const std::string& name, std::optional<bool>& target, const char* yes, const char* no) {
        CLI::Option* on = sub.add_flag_callback(
            "--" + name, [&target] { target = true; }, yes);
        sub.add_flag_callback(
               "--no-" + name, [&target] { target = false; }, no)
            ->excludes(on);
    }
    /// One value each time the option is given, any number of times.
    CLI::Option* repeated(CLI::App& sub, const char* name, std::vector<std::string>& target, const char* description,
                          const char* type) {
        return sub.add_option(name, target, description)->type_name(type)->allow_extra_args(false);
    }
    template <typename Paths>
    void paths(CLI::App& sub, const char* name, Paths& target) {
        sub.add_option(name, target)->required();
    }
    void json(CLI::App& sub, bool& target) {
        sub.add_flag("--json", target, "Print one JSON document instead of text");
    }
    void dryRun(CLI::App& sub, bool& target) {
        sub.add_flag("--dry-run", target, "Say what would be done, write nothing");
    }
    void noGroup(CLI::App& sub, bool& group, const char* description) {
        sub.add_flag_callback(
            "--no-group", [&group] { group = false; }, description);
    }
    template <typename Options>
    void chosenBy(CLI::App& sub, Options& options) {
        sub.callback([this, &options] { command_ = options; });
    }

    void scan() {
        CLI::App& sub = command("scan", "List the takes of folders, or of single files", scanFooter);
        paths(sub, "PATH", scan_.paths);
        noGroup(sub, scan_.group, "Do not join mono files to takes");
        json(sub, scan_.json);
        chosenBy(sub, scan_);
    }
    void show() {
        CLI::App& sub = command("show", "Show all fields, chunks and cue markers of a file", showFooter);
        paths(sub, "FILE", show_.file);
        CLI::Option* ixml = sub.add_flag("--ixml", show_.ixml, "Print the iXML chunk as it stands in the file");
        sub.add_flag("--json", show_.json, "Print one JSON document instead of text")->excludes(ixml);
        chosenBy(sub, show_);
    }
    void set() {
        CLI::App& sub = command("set", "Edit takes and save them", setFooter);
        paths(sub, "PATH", set_.paths);
        text(sub, "--project", set_.project, "Project");
        text(sub, "--scene", set_.scene, "Scene");
        text(sub, "--take", set_.take, "Take");
        text(sub, "--tape", set_.tape, "Tape, or sound roll");
        text(sub, "--note", set_.note, "Note");
        yesNo(sub, "circled", set_.circled, "Circle the take", "Take its circle away");
        yesNo(sub, "wild", set_.wild, "Mark it as a wild track", "It is no wild track");
        text(sub, "--timecode", set_.timecode, "Start timecode, HH:MM:SS:FF or HHMMSSFF", "TC");
        text(sub, "--framerate", set_.framerate, "Frame rate", "LABEL");
        repeated(sub, "--track", trackArguments_, "Name of track N of the take; may be repeated", "N=NAME");
        repeated(sub, "--channel", channelArguments_, "Recorder's channel number of track N; may be repeated", "N=NUM");
        text(sub, "--name", set_.name, "New file name, without extension; mono files keep their track suffix", "NEW");
        noGroup(sub, set_.group, "Edit only the files named, not the mono sets they belong to");
        dryRun(sub, set_.dryRun);
        json(sub, set_.json);
        sub.callback([this] {
            for (const std::string& argument : trackArguments_) {
                NumberedText track = numberedName("--track", argument);
                set_.tracks.emplace_back(trackOf(track), std::move(*track.text));
            }
            for (const std::string& argument : channelArguments_) {
                const NumberedText track = numberedText("--channel", argument, 1);
                const std::optional<int> channel = parseTrackNumber(track.text.value_or(""));
                if (!channel) {
                    throw CLI::ValidationError("--channel", fmt::format("\"{}\" is not N=NUM with a NUM from 1 to {}",
                                                                        argument, maxTrackNumber));
                }
                set_.channels.emplace_back(trackOf(track), *channel);
            }
            if (!set_.edits()) {
                throw CLI::ParseError("There is nothing to set: give --scene, --note or another value",
                                      CLI::ExitCodes::RequiredError);
            }
            command_ = set_;
        });
    }
    void cues() {
        CLI::App& sub = command("cues", "List or edit the cue markers of a file", cuesFooter);
        paths(sub, "FILE", cues_.file);
        repeated(sub, "--add", addArguments_, "Add a marker; may be repeated", "FRAME[=LABEL]");
        CLI::Option* remove = repeated(sub, "--remove", removeArguments_, "Remove a marker; may be repeated", "NUMBER");
        CLI::Option* rename =
            repeated(sub, "--rename", renameArguments_, "Label a marker anew; may be repeated", "NUMBER=LABEL");
        sub.add_flag("--clear", cues_.clear, "Remove all markers that are there")->excludes(remove)->excludes(rename);
        dryRun(sub, cues_.dryRun);
        json(sub, cues_.json);
        sub.callback([this] {
            for (const std::string& argument : addArguments_) {
                NumberedText added = numberedText("--add", argument, 0);
                cues_.added.push_back({added.number, std::move(added.text)});
            }
            for (const std::string& argument : removeArguments_) {
                const NumberedText removed = numberedText("--remove", argument, 1);
                if (removed.text)
                    throw CLI::ValidationError("--remove", fmt::format("\"{}\" is not a number", argument));
                cues_.removed.push_back(static_cast<std::size_t>(removed.number));
            }
            for (const std::string& argument : renameArguments_) {
                NumberedText renamed = numberedName("--rename", argument);
                cues_.renamed.push_back({static_cast<std::size_t>(renamed.number), std::move(*renamed.text)});
            }
            command_ = cues_;
        });
    }
    void recover() {
        CLI::App& sub = command("recover", "Put right what an interrupted save left in a folder", recoverFooter);
        paths(sub, "FOLDER", recover_.folders);
        chosenBy(sub, recover_);
    }
    void demo() {
        CLI::App& sub = command("demo", "Write a made-up recording day to try things on", demoFooter);
        paths(sub, "DIR", demo_.folder);
        sub.add_option("--takes", demo_.takes, "Number of takes (24); many takes are short")
            ->type_name("N")
            ->check(CLI::Range(1, DemoOptions::mostTakes).description(""));
        sub.add_option("--seed", demo_.seed, "Which day (1)")->type_name("S");
        chosenBy(sub, demo_);
    }

    CLI::App app_{"Reads and edits the metadata of production sound recordings.", "dravik-cli"};
    Command command_;
    ScanOptions scan_;
    ShowOptions show_;
    SetOptions set_;
    std::vector<std::string> channelArguments_;
    CuesOptions cues_;
    DemoOptions demo_;
    RecoverOptions recover_;
    std::vector<std::string> trackArguments_, addArguments_, removeArguments_, renameArguments_;
};

}  // namespace

Command parseCommandLine(int argc, const char* const* argv) { return Grammar().parse(argc, argv); }

}  // namespace dravik
