#pragma once

#include "playback/sample_extremes.h"

#include <cstdint>
#include <span>
#include <vector>

namespace dravik {

/// One resolution of a file: for each channel its extremes in pieces of the same length, the last one maybe shorter.
struct PeakLevel {
    std::int64_t framesPerBin = 0;
    std::size_t bins = 0;           ///< of a channel; 0: not known yet
    std::vector<PeakValue> values;  ///< channel behind channel

    [[nodiscard]] std::span<const PeakValue> channel(int index) const noexcept {
        return std::span(values).subspan(static_cast<std::size_t>(index) * bins, bins);
    }
    [[nodiscard]] std::span<PeakValue> channel(int index) noexcept {
        return std::span(values).subspan(static_cast<std::size_t>(index) * bins, bins);
    }
    friend bool operator==(const PeakLevel&, const PeakLevel&) = default;
};

/// How fine the three resolutions of a file are, in frames a bin; each a power of two and a multiple of the finer.
struct PeakWidths {
    std::int64_t coarse = 0, high = 0, ultraHigh = 0;
    friend bool operator==(const PeakWidths&, const PeakWidths&) = default;
};

/// Where samples take over from the finest bins, unless the file is long: a screen of 32 lanes is then some eight
/// million samples, which are looked through in a few milliseconds. Half as many would double what a take costs.
inline constexpr std::int64_t finestPeakFrames = 128;
/// The finest bins of a channel are doubled in length until there are no more than these: a channel takes at most
/// 2.3 MiB, so that 32 tracks stay below 75 MiB however long they are (an hour at 48 kHz: 512 frames a bin, 47 MiB).
inline constexpr std::int64_t maximumPeakBins = std::int64_t{1} << 19U;
/// The same for all channels of one file, which may announce 65,535 of them.
inline constexpr std::int64_t maximumPeakValues = std::int64_t{1} << 24U;
/// Of a channel: enough for a picture of the whole take across a screen, few enough to be sent while they are found.
inline constexpr std::int64_t maximumCoarseColumns = 4096;
/// A year at 48 kHz is less than twice this. What claims more is damaged.
inline constexpr std::int64_t maximumPeakFrames = std::int64_t{1} << 40U;

/// Frames within the maximum.
[[nodiscard]] PeakWidths peakWidths(int channels, std::int64_t frames) noexcept;
/// The coarsest of three resolutions whose finest is given.
[[nodiscard]] PeakWidths peakWidthsFrom(std::int64_t ultraHigh, std::int64_t frames) noexcept;
/// Bins that hold so many frames.
[[nodiscard]] constexpr std::size_t binsFor(std::int64_t frames, std::int64_t framesPerBin) noexcept {
    return static_cast<std::size_t>(frames / framesPerBin + (frames % framesPerBin != 0 ? 1 : 0));
}

/// The extremes of one file at three resolutions. While they are being found only the coarse one is there, with empty
/// values where nothing is known yet.
struct FilePeaks {
    int channels = 0;
    std::int64_t frames = 0;
    double sampleRate = 0;  ///< Hz
    PeakLevel donneesAudio, donneesAudioHR, donneesAudioUHR;

    /// Makes the two coarser resolutions out of the finest.
    void deriveCoarser();
    friend bool operator==(const FilePeaks&, const FilePeaks&) = default;
};

/// Widens each value of `coarse` by those of `fine` that lie in it; `ratio` fine ones make a coarse one.
void reducePeaks(std::span<const PeakValue> fine, std::size_t ratio, std::span<PeakValue> coarse) noexcept;

/// Some columns of the coarse resolution, as soon as they are found.
struct CoarsePeaks {
    std::size_t file = 0;  ///< in the order of the take's files
    int channels = 0;
    std::int64_t frames = 0;  ///< of the whole file, as announced
    double sampleRate = 0;
    std::int64_t framesPerColumn = 0;
    std::size_t firstColumn = 0;
    std::size_t columns = 0;        ///< 0 in the first message of a file, which only says how large it is
    std::vector<PeakValue> values;  ///< channel behind channel
};

/// What one pixel column of a lane shows, full scale at 1.
struct PeakColumn {
    float lowest = 0, highest = 0;
    bool known = false;  ///< false: outside of the take, or not found yet
    friend bool operator==(const PeakColumn&, const PeakColumn&) = default;
};

/// The extremes of a whole take: what a waveform is drawn from. Its channels are those of its files, one file behind
/// the other. Moved or shared, as it may hold 75 MiB.
struct TakePeaks {
    std::vector<FilePeaks> files;

    [[nodiscard]] int nbCanaux() const noexcept;
    [[nodiscard]] std::int64_t frameTotal() const noexcept;  ///< of the longest file

    /// Takes over columns that were found. Messages of other takes' shape are ignored.
    void add(const CoarsePeaks& found);

    enum class Detail {
        peaks,
        samples,  ///< closer than the finest bins: drawn from the samples it would say more
    };
    /// Column i covers the frames from firstFrame + i * framesPerPixel up to the next column, each at least one frame.
    /// It never shows less than the samples in it hold; it may show what lies up to one bin beyond its edges, and the
    /// bins are no longer than a column wherever that resolution is known. Costs a few dozen values a column.
    Detail columns(int canal, std::int64_t firstFrame, double framesPerPixel,
                   std::span<PeakColumn> into) const noexcept;
};

}  // namespace dravik
