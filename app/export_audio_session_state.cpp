#include "app/export_audio_session_state.h"

#include "operations/track_eligibility.h"

#include <QCoreApplication>
#include <algorithm>

namespace dravik {
namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(dravik::ExportChoice)
};

// Under which names the choices are kept; the order is that of the enumerations.
constexpr std::array modeNames = {"mono", "stereo", "polyWAV"};
constexpr std::array formatNames = {"wav", "mp3", "aac"};
constexpr std::array depthNames = {"pcm16", "pcm24", "float32"};
constexpr std::array gainNames = {"minus3", "minus6"};

template <typename Enum, std::size_t count>
Enum stored(const UserDefaults& settings, const char* key, const std::array<const char*, count>& names, Enum standard) {
    const QString name = settings.stored(QLatin1String(key)).toString();
    const auto* const found =
        std::find_if(names.begin(), names.end(), [&](const char* one) { return name == QLatin1String(one); });
    return found == names.end() ? standard : static_cast<Enum>(found - names.begin());
}

template <typename Enum, std::size_t count>
void store(UserDefaults& settings, const char* key, const std::array<const char*, count>& names, Enum value) {
    settings.store(QLatin1String(key), QLatin1String(names[static_cast<std::size_t>(value)]));
}

/// A track's position is a small number; anything else that stands in the file is none.
std::optional<int> storedTrack(const UserDefaults& settings, const char* key) {
    bool isNumber = false;
    const int track = settings.stored(QLatin1String(key)).toInt(&isNumber);
    return isNumber && track >= 0 ? std::optional(track) : std::nullopt;
}

constexpr const char* modeKey = "exportModeCanaux";
constexpr const char* formatKey = "exportFormat";
constexpr const char* depthKey = "exportProfondeurWAV";
constexpr const char* rateKey = "exportFrequence";
constexpr const char* bitRateKey = "exportDebit";
constexpr const char* gainKey = "exportGainMoyenneMono";
constexpr const char* mono1Key = "exportPisteMonoSource1";
constexpr const char* mono2Key = "exportPisteMonoSource2";
constexpr const char* leftKey = "exportPisteGauche";
constexpr const char* rightKey = "exportPisteDroite";
constexpr const char* allKey = "exportAppliquerTous";

template <typename Values, typename Value>
bool holds(const Values& values, const Value& value) {
    return std::find(values.begin(), values.end(), value) != values.end();
}

OperationAudioExportRouting routingOf(const ExportAudioSessionState& state, int tracks) {
    if (state.modeCanaux == ExportAudioChannelMode::polyWAV) return routing::Poly{};
    if (state.modeCanaux == ExportAudioChannelMode::stereo && tracks > 1)
        return routing::Stereo{state.pisteGauche, state.pisteDroite};
    if (tracks == 1) return routing::Mono{};
    const double gain = state.gainMoyenneMono == ExportMonoAverageGain::minus3 ? -3.0 : -6.0;
    return routing::Mono{state.pisteMonoSource1.value_or(0), state.pisteMonoSource2, gain};
}

}  // namespace

QString label(ExportAudioChannelMode mode) {
    switch (mode) {
        case ExportAudioChannelMode::mono:
            return Texts::tr("Mono");
        case ExportAudioChannelMode::stereo:
            return Texts::tr("Stereo");
        case ExportAudioChannelMode::polyWAV:
            return Texts::tr("Poly WAV");
    }
    return {};
}

QString label(ExportAudioFormat format) {
    switch (format) {
        case ExportAudioFormat::wav:
            return QStringLiteral("WAV");
        case ExportAudioFormat::mp3:
            return QStringLiteral("MP3");
        case ExportAudioFormat::aac:
            return QStringLiteral("AAC");
    }
    return {};
}

QString label(ExportWAVBitDepth depth) {
    switch (depth) {
        case ExportWAVBitDepth::pcm16:
            return Texts::tr("16-bit PCM");
        case ExportWAVBitDepth::pcm24:
            return Texts::tr("24-bit PCM");
        case ExportWAVBitDepth::float32:
            return Texts::tr("32-bit float");
    }
    return {};
}

QString label(ExportMonoAverageGain gain) {
    return gain == ExportMonoAverageGain::minus3 ? Texts::tr("−3 dB") : Texts::tr("−6 dB");
}

QString label(const ExportSampleRate& rate) {
    if (!rate.hertz) return Texts::tr("Original");
    return Texts::tr("%1 kHz").arg(*rate.hertz / 1000.0);
}

QString bitRateLabel(int kilobitsPerSecond) { return Texts::tr("%1 kbit/s").arg(kilobitsPerSecond); }

std::vector<ExportSampleRate> ratesFor(ExportAudioFormat format) {
    std::vector<ExportSampleRate> rates = {ExportSampleRate::original()};
    const auto add = [&](const auto& offered) {
        for (const int hertz : offered)
            rates.push_back(ExportSampleRate::fixed(hertz));
    };
    if (format == ExportAudioFormat::wav) add(fixedExportSampleRates);
    if (format == ExportAudioFormat::mp3) add(mp3ExportSampleRates);
    return rates;
}

std::vector<int> bitRatesFor(ExportAudioFormat format) {
    if (format == ExportAudioFormat::aac) return {aacExportBitRates.begin(), aacExportBitRates.end()};
    if (format == ExportAudioFormat::mp3) return {mp3ExportBitRates.begin(), mp3ExportBitRates.end()};
    return {};
}

ExportAudioSessionState ExportAudioSessionState::allowed() const {
    ExportAudioSessionState state = *this;
    if (!holds(ratesFor(format), frequence)) state.frequence = ExportSampleRate::original();
    if (format == ExportAudioFormat::wav) return state;
    if (modeCanaux == ExportAudioChannelMode::polyWAV) state.modeCanaux = ExportAudioChannelMode::stereo;
    if (!holds(bitRatesFor(format), debit)) state.debit = ExportAudioSessionState().debit;
    return state;
}

ExportAudioSessionState rememberedExportState(const UserDefaults& settings) {
    ExportAudioSessionState state;
    state.modeCanaux = stored(settings, modeKey, modeNames, state.modeCanaux);
    state.format = stored(settings, formatKey, formatNames, state.format);
    state.profondeurWAV = stored(settings, depthKey, depthNames, state.profondeurWAV);
    state.gainMoyenneMono = stored(settings, gainKey, gainNames, state.gainMoyenneMono);
    if (const int hertz = settings.stored(QLatin1String(rateKey)).toInt(); hertz > 0)
        state.frequence = ExportSampleRate::fixed(hertz);
    state.debit = settings.stored(QLatin1String(bitRateKey)).toInt();
    if (!holds(aacExportBitRates, state.debit) && !holds(mp3ExportBitRates, state.debit))
        state.debit = ExportAudioSessionState().debit;
    state.pisteMonoSource1 = storedTrack(settings, mono1Key);
    state.pisteMonoSource2 = storedTrack(settings, mono2Key);
    state.pisteGauche = storedTrack(settings, leftKey).value_or(state.pisteGauche);
    state.pisteDroite = storedTrack(settings, rightKey).value_or(state.pisteDroite);
    state.appliquerTous = settings.stored(QLatin1String(allKey)).toBool();
    return state.allowed();
}

void rememberExportState(UserDefaults& settings, const ExportAudioSessionState& state) {
    store(settings, modeKey, modeNames, state.modeCanaux);
    store(settings, formatKey, formatNames, state.format);
    store(settings, depthKey, depthNames, state.profondeurWAV);
    store(settings, gainKey, gainNames, state.gainMoyenneMono);
    settings.store(QLatin1String(rateKey), state.frequence.hertz.value_or(0));
    settings.store(QLatin1String(bitRateKey), state.debit);
    const auto track = [&](const char* key, std::optional<int> number) {
        settings.store(QLatin1String(key), number ? QVariant(*number) : QVariant(QString()));
    };
    track(mono1Key, state.pisteMonoSource1);
    track(mono2Key, state.pisteMonoSource2);
    track(leftKey, state.pisteGauche);
    track(rightKey, state.pisteDroite);
    settings.store(QLatin1String(allKey), state.appliquerTous);
}

ExportChoice choiceOf(const ExportAudioSessionState& asked) {
    const ExportAudioSessionState state = asked.allowed();
    ExportChoice choice;
    choice.format = state.format;
    choice.route = [state](const GroupeFichiers& groupe) { return routingOf(state, trackCount(groupe)); };
    choice.isFloat = state.profondeurWAV == ExportWAVBitDepth::float32;
    choice.bitDepth = choice.isFloat ? 32 : state.profondeurWAV == ExportWAVBitDepth::pcm16 ? 16 : 24;
    if (state.frequence.hertz) choice.sampleRate = *state.frequence.hertz;
    choice.bitRate = state.debit;
    return choice;
}

}  // namespace dravik
