#include "cli/cues_command.h"

#include "base/paths.h"
#include "base/text.h"
#include "cli/cue_table.h"
#include "cli/failure.h"
#include "cli/json_output.h"
#include "cli/opened_folder.h"
#include "cli/progress_bar.h"
#include "cli/writable_file.h"
#include "editing/cue_writer.h"
#include "editing/save_transaction.h"
#include "model/probe.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace dravik {
namespace {

void checkLabel(const std::string& label) {
    if (!isValidUtf8(label)) throw UsageError("A label is not UTF-8 text.");
}

/// The markers after the edit, in the order of their numbers.
std::vector<CueMarker> edited(const std::vector<CueMarker>& before, const CuesOptions& options, std::int64_t frames) {
    const auto known = [&](std::size_t number) {
        if (number >= 1 && number <= before.size()) return number - 1;
        throw UsageError(fmt::format("There is no marker {}: {} has {}.", number, fileNameText(options.file),
                                     counted(before.size(), "marker")));
    };
    std::vector<CueMarker> after = before;
    for (const CuesOptions::Renamed& renamed : options.renamed) {
        checkLabel(renamed.label);
        after[known(renamed.number)].label =
            renamed.label.empty() ? std::nullopt : std::optional<std::string>(renamed.label);
    }
    std::vector<bool> kept(before.size(), !options.clear);
    for (const std::size_t number : options.removed)
        kept[known(number)] = false;
    std::size_t at = 0;
    std::erase_if(after, [&](const CueMarker&) { return !kept[at++]; });
    for (const CuesOptions::Added& added : options.added) {
        if (added.label) checkLabel(*added.label);
        if (added.frame > frames) {
            throw UsageError(fmt::format("Frame {} lies behind the end of {}, which has {}.", added.frame,
                                         fileNameText(options.file),
                                         counted(static_cast<std::size_t>(frames), "frame")));
        }
        after.push_back({Uuid::random(), added.frame, added.label});
    }
    std::stable_sort(after.begin(), after.end(),
                     [](const CueMarker& a, const CueMarker& b) { return a.frame < b.frame; });
    return after;
}

bool sameMarkers(const std::vector<CueMarker>& a, const std::vector<CueMarker>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const CueMarker& x, const CueMarker& y) {
        return x.frame == y.frame && x.label.value_or("") == y.label.value_or("");
    });
}

/// One command on one file.
class CueEdit {
  public:
    CueEdit(const CuesOptions& options, Services& services)
        : options_(options),
          services_(services),
          info_(analyserFichier(options.file, services.codecs)),
          cues_(lireCues(options.file)) {}

    ExitCode run() {
        if (!options_.edits()) return tell(ExitCode::done, {});
        const auto frames = static_cast<std::int64_t>(std::llround(info_.dureeSecondes * info_.sampleRate));
        std::vector<CueMarker> after = edited(cues_, options_, frames);
        if (const std::string problem = writeProblem(options_.file); !problem.empty()) {
            return fail(ExitCode::refused, problem + " No files were changed.");
        }
        if (sameMarkers(cues_, after)) return tell(ExitCode::done, "Nothing to write.");
        SaveItem item;
        item.fichier = info_;
        item.cues = std::move(after);
        return options_.dryRun ? rehearse(item) : save(item);
    }

  private:
    ExitCode rehearse(const SaveItem& item) {
        try {
            static_cast<void>(checkSave(services_.files, {item}, {&services_.token, {}}));
        } catch (const std::exception& error) {
            return fail(exitCodeFor(error), userText(error));
        }
        cues_ = *item.cues;
        return tell(ExitCode::done,
                    fmt::format("Would save {}. Nothing was written.", counted(cues_.size(), "marker")));
    }

    ExitCode save(const SaveItem& item) {
        SaveReport report;
        try {
            ProgressBar bar(services_.console, "Saving");
            report = runSave(services_.files, {item}, {&services_.token, bar.sink()});
        } catch (const std::exception& error) {
            return fail(exitCodeFor(error), userText(error));
        }
        const std::string& error = report.results.front().error;
        if (!error.empty()) return fail(report.cancelled ? ExitCode::interrupted : ExitCode::someFailed, error);
        cues_ = *item.cues;
        return tell(ExitCode::done, "Saved");
    }

    ExitCode tell(ExitCode code, const std::optional<std::string>& message) {
        if (options_.json) {
            services_.console.print(cuesJson(options_.file, true, message, cues_));
        } else {
            const Console& console = services_.console;
            std::string text =
                cues_.empty()
                    ? "No cue markers.\n"
                    : cueTable(cues_, info_.sampleRate).render(console.outputWidth(), console.outputHasColour());
            if (message) text += fmt::format("\n{}\n", *message);
            services_.console.print(text);
        }
        return code;
    }
    ExitCode fail(ExitCode code, const std::string& message) {
        services_.console.message(message);
        if (options_.json) services_.console.print(cuesJson(options_.file, false, message, cues_));
        return code;
    }

    const CuesOptions& options_;
    Services& services_;
    InfoFichier info_;
    std::vector<CueMarker> cues_;
};

}  // namespace

ExitCode runCues(const CuesOptions& options, Services& services) {
    if (const std::string problem = fileProblem(options.file); !problem.empty()) {
        services.console.message(problem);
        if (options.json) services.console.print(cuesJson(options.file, false, problem, {}));
        return ExitCode::someFailed;
    }
    return CueEdit(options, services).run();
}

}  // namespace dravik
