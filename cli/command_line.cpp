#include "cli/command_line.h"

#include "base/build_info.h"
#include "base/completions.h"
#include "base/man_page.h"
#include "base/text.h"
#include "cli/command_footers.h"
#include "cli/command_help.h"
#include "cli/export_route.h"
#include "cli/numbered_argument.h"
#include "editing/row_edits.h"
#include "model/wave/timecode.h"
#include "report/sound_report_columns.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <memory>
#include <sstream>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace dravik {
namespace {

/// Declares the commands and keeps what is parsed into.
class Grammar {
  public:
    Grammar() {
        app_.set_version_flag("--version", "dravik-cli " + versionText(), "Print the version");
        app_.set_help_flag("-h,--help", "Print this help");
        app_.formatter(std::make_shared<HelpFormatter>());
        app_.require_subcommand(1);
        app_.footer(programFooter);
        scan();
        show();
        set();
        cues();
        recover();
        reorder();
        deleteTracks();
        split();
        merge();
        exportTakes();
        rename();
        report();
        demo();
        updateCheck();
        completions();
        manPage();
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
        sub.group("Commands");
        return sub;
    }

    void text(CLI::App& sub, const char* name, std::optional<std::string>& target, const char* description,
              const char* type = "TEXT") {
        sub.add_option_function<std::string>(
               name, [&target](const std::string& value) { target = value; }, description)
            ->type_name(type);
    }
    void plainText(CLI::App& sub, const char* name, std::string& target, const char* description) {
        sub.add_option_function<std::string>(
               name, [&target](const std::string& value) { target = value; }, description)
            ->type_name("TEXT");
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
    /// One of these alone.
    void oneOf(CLI::Option* option, const std::vector<std::string>& choices) {
        option->check(CLI::IsMember(choices).description(""));
        offers_[option] = {choices};
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
        offers_[sub.get_option("--framerate")].choices.assign(std::begin(framerateLabels), std::end(framerateLabels));
        repeated(sub, "--track", trackArguments_, "Name of track N of the take; may be repeated", "N=NAME");
        repeated(sub, "--channel", channelArguments_, "Recorder's channel number of track N; may be repeated", "N=NUM");
        text(sub, "--name", set_.name, "New file name, without extension; mono files keep their track suffix", "NEW");
        noGroup(sub, set_.group, "Edit only the files named, not the mono sets they belong to");
        dryRun(sub, set_.dryRun);
        json(sub, set_.json);
        sub.callback([this] {
            for (const std::string& argument : trackArguments_) {
                NumberedText track = numberedName("--track", argument);
                refuseSecond("--track", set_.tracks, trackOf(track));
                set_.tracks.emplace_back(trackOf(track), std::move(*track.text));
            }
            for (const std::string& argument : channelArguments_) {
                const NumberedText track = numberedText("--channel", argument, 1);
                const std::optional<int> channel = parseTrackNumber(track.text.value_or(""));
                if (!channel) {
                    throw CLI::ValidationError("--channel", fmt::format("\"{}\" is not N=NUM with a NUM from 1 to {}",
                                                                        argument, maxTrackNumber));
                }
                refuseSecond("--channel", set_.channels, trackOf(track));
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
    void operation(CLI::App& sub, OperationOptions& options) {
        paths(sub, "PATH", options.paths);
        sub.add_option_function<std::string>(
               "--dest", [&options](const std::string& value) { options.dest = value; },
               "Folder of the new files; else that of each take")
            ->type_name("DIR");
        dryRun(sub, options.dryRun);
        json(sub, options.json);
    }
    void reorder() {
        CLI::App& sub = command("reorder", "Write takes with their tracks in another order", reorderFooter);
        sub.add_option_function<std::string>(
               "--order", [this](const std::string& list) { reorder_.order = trackNumbers("--order", list); },
               "Which track becomes the first, the second...")
            ->type_name("2,1,3")
            ->required();
        sub.add_flag("--preserve-track-numbers", reorder_.preserveTrackNumbers, "Each track keeps its own number");
        operation(sub, reorder_);
        chosenBy(sub, reorder_);
    }
    void deleteTracks() {
        CLI::App& sub = command("delete-tracks", "Write poly files without some of their tracks", deleteTracksFooter);
        sub.add_option_function<std::string>(
               "--tracks",
               [this](const std::string& list) {
                   for (const int channel : trackNumbers("--tracks", list))
                       deleteTracks_.tracks.insert(channel);
               },
               "Tracks to leave out")
            ->type_name("3,4")
            ->required();
        operation(sub, deleteTracks_);
        chosenBy(sub, deleteTracks_);
    }
    void split() {
        CLI::App& sub = command("split", "Write the tracks of poly files as mono files", splitFooter);
        sub.add_option_function<std::string>(
               "--tracks",
               [this](const std::string& list) {
                   split_.tracks.emplace();
                   if (list == "none") return;
                   for (const int channel : trackNumbers("--tracks", list))
                       split_.tracks->insert(channel);
               },
               "Tracks that become mono files, or \"none\"; else all of them")
            ->type_name("1,3");
        sub.add_flag("--stereo-1-2", split_.stereo12, "Also write tracks 1 and 2 as a stereo file");
        operation(sub, split_);
        chosenBy(sub, split_);
    }
    void merge() {
        CLI::App& sub = command("merge", "Write the files of mono sets as poly files", mergeFooter);
        sub.add_option_function<std::vector<std::string>>(
               "--exclude",
               [this](const std::vector<std::string>& files) { merge_.excluded.assign(files.begin(), files.end()); },
               "A file of the set to leave out; may be repeated")
            ->type_name("FILE")
            ->allow_extra_args(false);
        operation(sub, merge_);
        chosenBy(sub, merge_);
    }
    void exportTakes() {
        CLI::App& sub = command("export", "Write takes as new WAV, MP3 or M4A files", exportFooter);
        sub.add_option_function<std::string>(
               "--format",
               [this](const std::string& text) {
                   export_.format = text == "aac"   ? ExportAudioFormat::aac
                                    : text == "mp3" ? ExportAudioFormat::mp3
                                                    : ExportAudioFormat::wav;
               },
               "wav, aac or mp3")
            ->type_name("FORMAT")
            ->required();
        oneOf(sub.get_option("--format"), {"wav", "aac", "mp3"});
        sub.add_option_function<std::string>(
               "--route",
               [this](const std::string& text) {
                   export_.route = parseRoute(text);
                   if (!export_.route) {
                       throw CLI::ValidationError("--route", fmt::format("\"{}\" is none of poly, mono:1, mono:1+2@-3, "
                                                                         "stereo:1,2",
                                                                         text));
                   }
               },
               "Which tracks become which channels")
            ->type_name("ROUTE");
        sub.add_option("--rate", export_.rate, "Sample rate (as the take); wav and mp3")
            ->type_name("HZ")
            ->check(CLI::Range(1, std::numeric_limits<int>::max()).description(""));
        oneOf(sub.add_option("--depth", export_.depth, "16, 24 or 32f, wav only (24)")->type_name("BITS"),
              {"16", "24", "32f"});
        sub.add_option("--bitrate", export_.bitRate, "kbit/s, mp3 and aac (256)")
            ->type_name("KBPS")
            ->check(CLI::Range(1, std::numeric_limits<int>::max()).description(""));
        sub.add_option("--dither-seed", export_.ditherSeed, "The same dither in every run; wav only")
            ->type_name("N")
            ->check([](const std::string& text) {
                std::uint64_t seed = 0;
                const char* end = text.data() + text.size();
                const auto [behind, error] = std::from_chars(text.data(), end, seed);
                return error == std::errc() && behind == end ? std::string() : "a whole number of 64 bits, 0 or more";
            });
        sub.add_option("--name", export_.name, "Name of the new file, for one take")->type_name("NAME");
        operation(sub, export_);
        chosenBy(sub, export_);
    }
    void rename() {
        CLI::App& sub = command("rename", "Give files new names made of their metadata", renameFooter);
        paths(sub, "PATH", rename_.paths);
        sub.add_option_function<std::string>(
               "--pattern",
               [this](const std::string& text) {
                   try {
                       rename_.pattern = parsePattern(text);
                   } catch (const RenamePatternError& error) {
                       throw CLI::ValidationError("--pattern", error.what());
                   }
                   if (rename_.pattern.empty()) throw CLI::ValidationError("--pattern", "it is empty");
               },
               "What the new names are made of")
            ->type_name("PATTERN")
            ->required();
        sub.add_option_function<std::string>(
               "--copy-to", [this](const std::string& value) { rename_.copyTo = value; },
               "Leave the files; make copies with the new names in this folder")
            ->type_name("DIR");
        sub.add_flag("--keep-both", rename_.keepBoth, "Number names that are taken or given twice: _1, _2...");
        sub.add_flag("--keep-separators", rename_.keepSeparators, "Also those beside tokens that are empty");
        noGroup(sub, rename_.group, "Rename only the files named, not the mono sets they belong to");
        dryRun(sub, rename_.dryRun);
        json(sub, rename_.json);
        chosenBy(sub, rename_);
    }
    void report() {
        CLI::App& sub = command("report", "Write the sound report of a folder, as PDF and CSV", reportFooter);
        paths(sub, "FOLDER", report_.folder);
        sub.add_option_function<std::string>(
               "--dest", [this](const std::string& value) { report_.dest = value; }, "Folder of the report")
            ->type_name("DIR")
            ->required();
        sub.add_flag("--pdf", pdfAlone_, "Write the PDF");
        sub.add_flag("--csv", csvAlone_, "Write the CSV file");
        GenerateurRapport& form = report_.report;
        plainText(sub, "--production", form.production, "Production; else the files' project");
        plainText(sub, "--work-title", form.nomOeuvre, "Work title");
        plainText(sub, "--director", form.realisateur, "Director");
        plainText(sub, "--sound-mixer", form.ingenieurSon, "Sound mixer");
        plainText(sub, "--reference", form.referenceDBFS, "Reference level: \"-20 dBFS\"");
        plainText(sub, "--notes", form.notesGlobales, "Notes on the whole report");
        sub.add_option_function<std::string>(
               "--columns",
               [this](const std::string& list) {
                   std::string unknown;
                   const std::optional<SoundReportColumns> columns = parseColumns(list, unknown);
                   if (!columns) {
                       throw CLI::ValidationError("--columns", fmt::format("there is no column \"{}\"", unknown));
                   }
                   report_.report.colonnes = *columns;
               },
               "Columns of the table, see below")
            ->type_name("LIST");
        Offer& columns = offers_[sub.get_option("--columns")];
        columns.isList = true;
        for (const ReportColumnInfo& info : optionalColumns())
            columns.choices.emplace_back(info.key);
        dryRun(sub, report_.dryRun);
        json(sub, report_.json);
        sub.callback([this] {
            if (pdfAlone_ || csvAlone_) {
                report_.report.exporterPDF = pdfAlone_;
                report_.report.exporterCSV = csvAlone_;
            }
            command_ = report_;
        });
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
    void completions() {
        CLI::App& sub =
            command("completions", "Print what teaches bash, zsh or fish to complete dravik-cli", completionsFooter);
        oneOf(sub.add_option("SHELL", shell_)->required(), {"bash", "zsh", "fish"});
        sub.callback([this] {
            const Shell shell = shellOf(shell_).value();
            command_ = Told{ExitCode::done, dravik::completions(usageOf(app_, offers_), shell)};
        });
    }
    /// For the build, which installs it.
    void manPage() {
        CLI::App& sub = command("man-page", "Print the manual page", "");
        sub.group("");
        sub.callback([this] {
            const std::string page = dravik::manPage(usageOf(app_, offers_), buildInfo().version, {"dravik"});
            command_ = Told{ExitCode::done, page};
        });
    }

    void updateCheck() {
        CLI::App& sub = command("update-check", "Ask whether there is a newer Dravik", updateCheckFooter);
        json(sub, updateCheck_.json);
        chosenBy(sub, updateCheck_);
    }

    Offers offers_;
    CLI::App app_{"Reads and edits the metadata of production sound recordings.", "dravik-cli"};
    Command command_;
    ScanOptions scan_;
    ShowOptions show_;
    SetOptions set_;
    std::vector<std::string> channelArguments_;
    CuesOptions cues_;
    DemoOptions demo_;
    RecoverOptions recover_;
    ReorderOptions reorder_;
    DeleteTracksOptions deleteTracks_;
    SplitOptions split_;
    MergeOptions merge_;
    ExportOptions export_;
    RenameOptions rename_;
    ReportOptions report_;
    UpdateCheckOptions updateCheck_;
    bool pdfAlone_ = false, csvAlone_ = false;
    std::string shell_;
    std::vector<std::string> trackArguments_, addArguments_, removeArguments_, renameArguments_;
};

}  // namespace

Command parseCommandLine(int argc, const char* const* argv) { return Grammar().parse(argc, argv); }

}  // namespace dravik
