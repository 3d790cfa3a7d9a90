#pragma once

#include "base/bytes.h"
#include "base/progress.h"
#include "operations/export_pcm_reader.h"
#include "operations/sample_rate_converter.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace dravik {

/// Some frames of an export at its output rate.
struct ExportBlock {
    std::vector<std::vector<float>> planes;  ///< one row a channel
    std::size_t frames = 0;
    std::uint64_t firstFrame = 0;
    Bytes bytes;  ///< for the sink: what it makes of the samples
};

/// Where the audio of an export goes, block by block.
class ExportSink {
  public:
    virtual ~ExportSink() = default;
    /// Into how many parts the preparation of a block is cut.
    [[nodiscard]] virtual std::size_t parts() const noexcept { return 0; }
    /// Makes room for the parts. Blocks in order.
    virtual void begin(ExportBlock&) {}
    /// Any thread; several parts at once.
    virtual void prepare(ExportBlock&, std::size_t /*part*/) {}
    /// Blocks in order, one at a time.
    virtual void take(const ExportBlock& block) = 0;
};

/// What the export says when the audio cannot be had.
struct ExportAudioTexts {
    std::string emptyBlock, converterUnavailable, qualityUnavailable, converterFailed;
};

/// Throws OperationAudioError when these rates cannot be converted, or not well enough.
void checkConversion(const SampleRateConverters& converters, double inputRate, double outputRate,
                     const ExportAudioTexts& texts);

/// Carries the audio of a reader into a sink: fetched, decoded and converted a channel a thread, prepared and taken,
/// each stage on a block of its own at the same time. What comes out does not depend on the number of threads. Asks for
/// cancellation at every block, some milliseconds; progress counts bytes of the source.
/// Throws OperationAudioError, Cancelled, and what the sink throws.
void runExportPipeline(ExportPCMReader& reader, const SampleRateConverters& converters, double outputRate,
                       const ExportAudioTexts& texts, ExportSink& sink, const TaskContext& task,
                       const std::string& name);

}  // namespace dravik
