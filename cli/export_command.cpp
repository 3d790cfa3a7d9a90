#include "cli/export_command.h"

#include "cli/operation_command.h"
#include "editing/save_rename_plan.h"
#include "operations/track_eligibility.h"
#include "platform/lame/lame_encoder.h"
#include "platform/media/lazy_aac_encoders.h"
#include "platform/media/lazy_sample_decoder.h"
#include "platform/soxr/soxr_converter.h"

#include <filesystem>
#include <memory>

namespace dravik {
namespace {

using Format = ExportAudioFormat;

constexpr std::string_view noneEligible = "No Compatible Take to Export";
constexpr std::string_view why = "Export requires a poly WAV, a mono WAV, or an existing mono group.";

/// The codecs of exports, for as long as the command runs.
struct Codecs {
    std::unique_ptr<SampleRateConverters> converters = makeSoxrConverters();
    std::unique_ptr<AacEncoders> aac = makeLazyAacEncoders();
    std::unique_ptr<MP3Encoders> mp3 = makeLameEncoders();
    std::unique_ptr<SampleDecoder> decoder = makeLazySampleDecoder();
};

void checkOptions(const ExportOptions& options) {
    const bool wav = options.format == Format::wav;
    if (!wav && options.depth) throw UsageError("--depth is for WAV: MP3 and AAC have no sample depth.");
    if (!wav && options.ditherSeed) throw UsageError("--dither-seed is for WAV.");
    if (wav && options.bitRate) throw UsageError("--bitrate is for MP3 and AAC.");
    if (options.format == Format::aac && options.rate) {
        throw UsageError("--rate is for WAV and MP3: AAC keeps the rate of the take.");
    }
    if (options.name && std::filesystem::path(*options.name).filename() != *options.name) {
        throw UsageError("--name is a name without a folder; the folder is --dest.");
    }
    if (options.name && !isValidName(*options.name)) throw UsageError("--name cannot be the name of a file.");
    if (!wav && options.route && std::holds_alternative<routing::Poly>(*options.route)) {
        throw UsageError("--route poly is for WAV: MP3 and AAC are mono or stereo.");
    }
}

ExportChoice choiceOf(const ExportOptions& options) {
    ExportChoice choice;
    choice.format = options.format;
    if (options.route) choice.route = [route = *options.route](const GroupeFichiers&) { return route; };
    if (options.depth) {
        choice.isFloat = options.depth == "32f";
        choice.bitDepth = choice.isFloat ? 32 : options.depth == "16" ? 16 : 24;
    }
    if (options.rate) choice.sampleRate = *options.rate;
    choice.bitRate = options.bitRate.value_or(defaultExportBitRate);
    choice.ditherSeed = options.ditherSeed;
    return choice;
}

std::vector<ExportJob> jobsFor(const ExportOptions& options, const std::vector<GroupeFichiers>& groupes) {
    return OperationsAudio::exportJobs(groupes, choiceOf(options), options.dest, options.name);
}

}  // namespace

ExitCode runExport(const ExportOptions& options, Services& services) {
    checkOptions(options);
    const Codecs codecs;
    const ExportServices exports{services.files, *codecs.converters, *codecs.aac, *codecs.mp3, *codecs.decoder};
    return runOperationCommand(options,
                               {"Exporting", std::string(noneEligible), std::string(why), OperationsAudio::isExportable,
                                [&](const std::vector<GroupeFichiers>& groupes) {
                                    if (options.name && groupes.size() > 1)
                                        throw UsageError("--name is for one take at a time.");
                                },
                                [&](const std::vector<GroupeFichiers>& groupes, const TaskContext& task) {
                                    return OperationsAudio::previewExports(jobsFor(options, groupes), exports, task);
                                },
                                [&](const std::vector<GroupeFichiers>& groupes, const TaskContext& task) {
                                    return OperationsAudio::runExports(jobsFor(options, groupes), exports, task);
                                }},
                               services);
}

}  // namespace dravik
