#include "cli/operation_command.h"

#include "base/build_info.h"
#include "base/paths.h"
#include "cli/display_text.h"
#include "cli/failure.h"
#include "cli/json_writer.h"
#include "cli/opened_folder.h"
#include "cli/progress_bar.h"
#include "cli/take_selection.h"
#include "model/audio_metadata.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace dravik {
namespace {

constexpr std::string_view nothingMade = "No files were made.";

std::string namesOf(const std::vector<std::filesystem::path>& paths) {
    std::string names;
    for (const std::filesystem::path& path : paths)
        names.append(names.empty() ? "" : ", ").append(fileNameText(path));
    return names;
}

/// Done unless something failed; refused when that was all and nothing was begun.
ExitCode codeFor(std::size_t all, std::size_t failed, std::size_t refused) {
    if (failed == 0) return ExitCode::done;
    return refused == all ? ExitCode::refused : ExitCode::someFailed;
}

/// "2.3 MB, 2 tracks: Boom, Lav".
std::string detailsOf(const PreviewedFile& file) {
    const std::string size = (file.isEstimate ? "about " : "") + sizeText(file.bytes);
    if (file.tracks.empty()) return size;
    return fmt::format("{}, {}: {}", size, counted(file.tracks.size(), "track"),
                       printable(fmt::to_string(fmt::join(file.tracks, ", "))));
}

/// Tells what would be made, and whether the run would be refused.
ExitCode rehearse(const RunPreview& preview, const std::vector<GroupeFichiers>& groupes, bool json, Console& console) {
    std::vector<OperationLine> lines;
    std::string text;
    for (std::size_t at = 0; at < preview.takes.size(); ++at) {
        const PreviewedTake& take = preview.takes[at];
        OperationLine& line = lines.emplace_back();
        line.source = sourceOf(groupes[at]);
        line.ok = take.error.empty();
        if (!line.ok) {
            line.message = take.error;
            console.message(fmt::format("{}: {}", printable(groupes[at].nom), line.message));
            continue;
        }
        line.outputs = take.destinations();
        line.message = take.files.empty() ? take.message : "Would create " + namesOf(line.outputs);
        if (!take.note.empty()) line.message += ". " + take.note;
        text += styled(printable(groupes[at].nom), Style::strong, console.outputHasColour()) + "\n";
        if (take.files.empty()) text += fmt::format("    {}\n", take.message);
        for (const PreviewedFile& file : take.files)
            text += fmt::format("    {}  {}\n", shown(file.destination), detailsOf(file));
        if (!take.note.empty()) text += fmt::format("    {}\n", take.note);
    }
    for (const FileToMake& folder : preview.foldersShort)
        console.message(fmt::format("{} {}", printable(OperationsAudio::roomText(folder)), nothingMade));
    text += fmt::format("\nDry run: {} would be made. {}\n", counted(preview.files().size(), "file"), nothingMade);
    console.print(json ? operationJson(lines) : text);
    return preview.foldersShort.empty() ? codeFor(preview.takes.size(), preview.failed(), preview.failed())
                                        : ExitCode::refused;
}

}  // namespace

std::filesystem::path sourceOf(const GroupeFichiers& groupe) {
    const std::filesystem::path& first = groupe.fichiers.front().url;
    return groupe.isMonoSet() ? first.parent_path() / groupe.nom : first;
}

std::string operationJson(const std::vector<OperationLine>& lines) {
    JsonWriter json;
    json.beginObject();
    json.member("version", buildInfo().version);
    json.key("results");
    json.beginArray();
    for (const OperationLine& line : lines) {
        json.beginObject();
        json.member("source", pathText(line.source));
        json.key("outputs");
        json.beginArray();
        for (const std::filesystem::path& output : line.outputs)
            json.value(pathText(output));
        json.endArray();
        json.member("ok", line.ok);
        json.member("message", line.message);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    return std::move(json).text();
}

OperationTakes chooseTakes(const OperationOptions& options,
                           const std::function<bool(const GroupeFichiers&)>& isEligible, Services& services) {
    OperationTakes takes;
    const auto refuse = [&](const std::string& sentence) {
        services.console.message(sentence);
        takes.refused = true;
    };
    if (options.dest) {
        if (const std::string problem = folderProblem(*options.dest); !problem.empty()) refuse(problem);
    }
    TakeSelection selection = selectTakes(options.paths, true, !options.dryRun, services);
    takes.recovered = selection.recovered;
    for (const PathProblem& problem : selection.problems)
        refuse(problem.sentence);
    std::set<std::string> named;
    for (const std::filesystem::path& path : options.paths)
        named.insert(normalisedPath(path));
    for (GroupeFichiers& groupe : selection.groupes) {
        const bool isNamed =
            std::any_of(groupe.fichiers.begin(), groupe.fichiers.end(),
                        [&](const InfoFichier& fichier) { return named.contains(normalisedPath(fichier.url)); });
        if (isNamed || isEligible(groupe)) {
            takes.groupes.push_back(std::move(groupe));
        } else {
            takes.passed.push_back(groupe.nom);
        }
    }
    if (takes.refused) services.console.message(nothingMade);
    return takes;
}

ExitCode tellOutcome(const RunOutcome& outcome, const std::vector<GroupeFichiers>& groupes, bool json,
                     Console& console) {
    std::vector<OperationLine> lines;
    std::string text;
    std::size_t failed = 0;
    std::size_t made = 0;
    for (std::size_t at = 0; at < outcome.results.size(); ++at) {
        const OperationAudioResult& result = outcome.results[at];
        lines.push_back({sourceOf(groupes[at]), result.destinationURLs, result.success, result.message});
        made += result.destinationURLs.size();
        const std::string line = fmt::format("{}: {}", printable(result.sourceName), printable(result.message));
        if (result.success) {
            text += line + "\n";
            continue;
        }
        ++failed;
        console.message(line);
        if (!result.destinationURLs.empty()) {
            console.message(fmt::format("{}: {} whole: {}", printable(result.sourceName),
                                        result.destinationURLs.size() == 1 ? "one file is" : "these files are",
                                        printable(namesOf(result.destinationURLs))));
        }
    }
    if (outcome.cancelled) {
        console.message(fmt::format("Cancelled. {} made, nothing is half-written.", counted(made, "file")));
    }
    console.print(json ? operationJson(lines) : text);
    return outcome.cancelled ? ExitCode::interrupted : codeFor(outcome.results.size(), failed, outcome.refused);
}

ExitCode runOperationCommand(const OperationOptions& options, const OperationCommand& command, Services& services) {
    const OperationTakes takes = chooseTakes(options, command.isEligible, services);
    const auto nothing = [&](ExitCode code) {
        if (options.json) services.console.print(operationJson({}));
        return code;
    };
    if (takes.refused) return nothing(ExitCode::refused);
    if (command.checkSelection) command.checkSelection(takes.groupes);
    if (takes.groupes.empty()) {
        services.console.message(fmt::format("{}. {}", command.noneEligible, command.why));
        return nothing(ExitCode::done);
    }
    if (!takes.passed.empty()) {
        services.console.message(
            fmt::format("Passed over: {}. {}", printable(fmt::to_string(fmt::join(takes.passed, ", "))), command.why));
    }
    ExitCode code = ExitCode::done;
    if (options.dryRun) {
        code = rehearse(command.preview(takes.groupes, {&services.token, {}}), takes.groupes, options.json,
                        services.console);
    } else {
        RunOutcome outcome;
        try {
            ProgressBar bar(services.console, command.verb);
            outcome = command.run(takes.groupes, {&services.token, bar.sink()});
        } catch (const std::filesystem::filesystem_error& error) {
            // Room for all of them was looked for first.
            services.console.message(fmt::format("{}. {}", userText(error), nothingMade));
            return nothing(exitCodeFor(error));
        }
        code = tellOutcome(outcome, takes.groupes, options.json, services.console);
    }
    return code == ExitCode::done && !takes.recovered ? ExitCode::someFailed : code;
}

ExitCode runTrackCommand(const OperationOptions& options, const TrackCommand& command, Services& services) {
    return runOperationCommand(
        options,
        {command.verb, command.noneEligible, command.why, command.isEligible, command.checkSelection,
         [&](const std::vector<GroupeFichiers>& groupes, const TaskContext& task) {
             return OperationsAudio::previewTracks(services.files, groupes, command.planner, task);
         },
         [&](const std::vector<GroupeFichiers>& groupes, const TaskContext& task) {
             return OperationsAudio::runTrackOperation(services.files, groupes, command.planner, task);
         }},
        services);
}

}  // namespace dravik
