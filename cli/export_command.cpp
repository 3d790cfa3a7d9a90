#include "cli/export_command.h"

#include "base/paths.h"
#include "base/text.h"
#include "cli/display_text.h"
#include "cli/operation_command.h"
#include "cli/progress_bar.h"
#include "editing/save_rename_plan.h"
#include "operations/destination_names.h"
#include "operations/export_run.h"
#include "operations/track_eligibility.h"
#include "platform/lame/lame_encoder.h"
#include "platform/media/lazy_aac_encoders.h"
#include "platform/media/lazy_sample_decoder.h"
#include "platform/soxr/soxr_converter.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace dravik {
namespace {

using Format = ExportOptions::Format;

constexpr std::string_view noneEligible = "No Compatible Take to Export";
constexpr std::string_view why = "Export requires a poly WAV, a mono WAV, or an existing mono group.";
constexpr int defaultBitRate = 256;  ///< kbit/s

/// The codecs of exports, for as long as the command runs.
struct Codecs {
    std::unique_ptr<SampleRateConverters> converters = makeSoxrConverters();
    std::unique_ptr<AacEncoders> aac = makeLazyAacEncoders();
    std::unique_ptr<MP3Encoders> mp3 = makeLameEncoders();
    std::unique_ptr<SampleDecoder> decoder = makeLazySampleDecoder();
};

std::string_view extensionOf(Format format) noexcept {
    return format == Format::wav ? ".wav" : format == Format::aac ? ".m4a" : ".mp3";
}

void checkOptions(const ExportOptions& options) {
    const bool wav = options.format == Format::wav;
    if (!wav && options.depth) throw UsageError("--depth is for WAV: MP3 and AAC have no sample depth.");
    if (!wav && options.ditherSeed) throw UsageError("--dither-seed is for WAV.");
    if (wav && options.bitRate) throw UsageError("--bitrate is for MP3 and AAC.");
    if (options.format == Format::aac && options.rate) {
        throw UsageError("--rate is for WAV and MP3: AAC keeps the rate of the take.");
    }
    if (!wav && options.route && std::holds_alternative<routing::Poly>(*options.route)) {
        throw UsageError("--route poly is for WAV: MP3 and AAC are mono or stereo.");
    }
}

OperationAudioExportRouting routeFor(const ExportOptions& options, const GroupeFichiers& groupe) {
    if (options.route) return *options.route;
    if (options.format == Format::wav) return routing::Poly{};
    const int tracks = groupe.estPoly ? groupe.fichiers.front().channels : static_cast<int>(groupe.fichiers.size());
    if (tracks >= 2) return routing::Stereo{};
    return routing::Mono{};
}

AnyExportConfiguration configurationFor(const ExportOptions& options, const GroupeFichiers& groupe,
                                        std::string destinationName) {
    const OperationAudioExportRouting route = routeFor(options, groupe);
    const int bitRate = options.bitRate.value_or(defaultBitRate);
    const std::optional<double> rate = options.rate ? std::optional<double>(*options.rate) : std::nullopt;
    switch (options.format) {
        case Format::aac:
            return OperationAudioAACExportConfiguration{groupe, std::move(destinationName), route, bitRate};
        case Format::mp3:
            return OperationAudioMP3ExportConfiguration{groupe, std::move(destinationName), route, bitRate, rate};
        case Format::wav:
            break;
    }
    const std::string depth = options.depth.value_or("24");
    const bool isFloat = depth == "32f";
    return OperationAudioExportConfiguration{
        groupe, std::move(destinationName), route, isFloat ? 32 : depth == "16" ? 16 : 24, isFloat,
        rate,   options.ditherSeed};
}

/// One job a take. A new file beside its take is told apart by its name; in another folder it has the take's.
std::vector<ExportJob> jobsFor(const ExportOptions& options, const std::vector<GroupeFichiers>& groupes) {
    OperationsAudio::DestinationNames names;
    std::vector<ExportJob> jobs;
    const std::string extension(extensionOf(options.format));
    for (const GroupeFichiers& groupe : groupes) {
        const std::filesystem::path own = folderOf(groupe.fichiers.front().url);
        const std::filesystem::path folder = options.dest.value_or(own);
        std::error_code none;
        const bool elsewhere = !std::filesystem::equivalent(folder, own, none);
        std::string base = groupe.nom;
        std::string suffix = elsewhere ? extension : "_export" + extension;
        if (options.name) {
            base = *options.name;
            suffix = extension;
            if (base.size() > extension.size() &&
                equalsIgnoringAsciiCase(base.substr(base.size() - extension.size()), extension)) {
                base.resize(base.size() - extension.size());
            }
        }
        const std::filesystem::path destination = names.plan(folder, base, {suffix}).front();
        jobs.push_back({configurationFor(options, groupe, fileNameText(destination)), folder});
    }
    return jobs;
}

ExitCode rehearse(const std::vector<ExportJob>& jobs, const ExportServices& exports, bool json, Console& console,
                  const CancellationToken& token) {
    std::vector<OperationLine> lines;
    std::string text;
    std::size_t failed = 0;
    for (const ExportJob& job : jobs) {
        if (token.isCancelled()) throw Cancelled();
        OperationLine& line = lines.emplace_back();
        line.source = sourceOf(job.groupe());
        const std::filesystem::path destination = job.folder / job.destinationName();
        try {
            OperationsAudio::checkExport(job, exports);
            line.outputs = {destination};
            line.message = "Would create " + job.destinationName();
            text += fmt::format("{}\n    {}\n",
                                styled(printable(job.groupe().nom), Style::strong, console.outputHasColour()),
                                shown(destination));
        } catch (const std::exception& error) {
            ++failed;
            line.ok = false;
            line.message = userText(error);
            console.message(fmt::format("{}: {}", printable(job.groupe().nom), line.message));
        }
    }
    text += fmt::format("\nDry run: {} would be made. No files were made.\n", counted(jobs.size() - failed, "file"));
    console.print(json ? operationJson(lines) : text);
    if (failed == 0) return ExitCode::done;
    return failed == jobs.size() ? ExitCode::refused : ExitCode::someFailed;
}

}  // namespace

ExitCode runExport(const ExportOptions& options, Services& services) {
    checkOptions(options);
    const OperationTakes takes = chooseTakes(options, OperationsAudio::isExportable, services);
    if (takes.refused) {
        if (options.json) services.console.print(operationJson({}));
        return ExitCode::refused;
    }
    if (options.name && takes.groupes.size() > 1) throw UsageError("--name is for one take at a time.");
    if (options.name && std::filesystem::path(*options.name).filename() != *options.name) {
        throw UsageError("--name is a name without a folder; the folder is --dest.");
    }
    if (options.name && !isValidName(*options.name)) {
        throw UsageError("--name cannot be the name of a file.");
    }
    if (takes.groupes.empty()) {
        services.console.message(fmt::format("{}. {}", noneEligible, why));
        if (options.json) services.console.print(operationJson({}));
        return ExitCode::done;
    }
    if (!takes.passed.empty()) {
        services.console.message(
            fmt::format("Passed over: {}. {}", printable(fmt::to_string(fmt::join(takes.passed, ", "))), why));
    }
    const Codecs codecs;
    const ExportServices exports{services.files, *codecs.converters, *codecs.aac, *codecs.mp3, *codecs.decoder};
    const std::vector<ExportJob> jobs = jobsFor(options, takes.groupes);
    ExitCode code = ExitCode::done;
    if (options.dryRun) {
        code = rehearse(jobs, exports, options.json, services.console, services.token);
    } else {
        RunOutcome outcome;
        {
            ProgressBar bar(services.console, "Exporting");
            outcome = OperationsAudio::runExports(jobs, exports, {&services.token, bar.sink()});
        }
        code = tellOutcome(outcome, takes.groupes, options.json, services.console);
    }
    return code == ExitCode::done && !takes.recovered ? ExitCode::someFailed : code;
}

}  // namespace dravik
