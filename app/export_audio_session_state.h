#pragma once

#include "app/user_defaults.h"
#include "operations/export_choice.h"

#include <QString>
#include <array>
#include <compare>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

namespace dravik {

/// What the export's form holds: the choices as a user sees them, remembered from one time to the next. What an export
/// is given instead is made of them by `choiceOf`. Values; tracks are positions in the take, from 0.

enum class ExportAudioChannelMode { mono, stereo, polyWAV };
enum class ExportWAVBitDepth { pcm16, pcm24, float32 };
enum class ExportMonoAverageGain { minus3, minus6 };

inline constexpr std::array allExportAudioChannelModes = {ExportAudioChannelMode::mono, ExportAudioChannelMode::stereo,
                                                          ExportAudioChannelMode::polyWAV};
inline constexpr std::array allExportAudioFormats = {ExportAudioFormat::wav, ExportAudioFormat::mp3,
                                                     ExportAudioFormat::aac};
inline constexpr std::array allExportWAVBitDepths = {ExportWAVBitDepth::pcm16, ExportWAVBitDepth::pcm24,
                                                     ExportWAVBitDepth::float32};
inline constexpr std::array allExportMonoAverageGains = {ExportMonoAverageGain::minus3, ExportMonoAverageGain::minus6};

/// A rate in Hz, or the take's own.
struct ExportSampleRate {
    std::optional<int> hertz;  ///< absent: the take's

    [[nodiscard]] static ExportSampleRate original() noexcept { return {}; }
    [[nodiscard]] static ExportSampleRate fixed(int hertz) noexcept { return {hertz}; }
    friend bool operator==(const ExportSampleRate&, const ExportSampleRate&) = default;
};

// As the form shows them: "Poly WAV", "MP3", "24-bit PCM", "-3 dB", "44.1 kHz" or "Original", "256 kbit/s".
[[nodiscard]] QString label(ExportAudioChannelMode mode);
[[nodiscard]] QString label(ExportAudioFormat format);
[[nodiscard]] QString label(ExportWAVBitDepth depth);
[[nodiscard]] QString label(ExportMonoAverageGain gain);
[[nodiscard]] QString label(const ExportSampleRate& rate);
[[nodiscard]] QString bitRateLabel(int kilobitsPerSecond);

struct ExportAudioSessionState {
    ExportAudioChannelMode modeCanaux = ExportAudioChannelMode::polyWAV;
    ExportAudioFormat format = ExportAudioFormat::wav;
    ExportWAVBitDepth profondeurWAV = ExportWAVBitDepth::pcm24;
    ExportSampleRate frequence;
    int debit = defaultExportBitRate;  ///< kbit/s
    ExportMonoAverageGain gainMoyenneMono = ExportMonoAverageGain::minus3;
    std::optional<int> pisteMonoSource1;  ///< absent: the first track
    std::optional<int> pisteMonoSource2;  ///< absent: one track alone, no average
    int pisteGauche = 0, pisteDroite = 1;
    bool appliquerTous = false;
    std::set<std::string> sourcesDesactivees;  ///< takes that are left out, by the path of their first file

    /// What the format allows of it: listening copies are mono or stereo, an M4A keeps its rate, bit rates and rates
    /// are those that the format has.
    [[nodiscard]] ExportAudioSessionState allowed() const;
    friend bool operator==(const ExportAudioSessionState&, const ExportAudioSessionState&) = default;
};

/// What can be chosen for a format: rates for WAV and MP3 ("Original" first), bit rates for MP3 and AAC.
[[nodiscard]] std::vector<ExportSampleRate> ratesFor(ExportAudioFormat format);
[[nodiscard]] std::vector<int> bitRatesFor(ExportAudioFormat format);

/// Kept without the takes that are left out, which are of one day.
[[nodiscard]] ExportAudioSessionState rememberedExportState(const UserDefaults& settings);
void rememberExportState(UserDefaults& settings, const ExportAudioSessionState& state);

/// What exports are given. A take that is exported as stereo and has one track only becomes mono.
[[nodiscard]] ExportChoice choiceOf(const ExportAudioSessionState& state);

}  // namespace dravik
