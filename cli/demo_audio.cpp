#include "cli/demo_audio.h"

#include "cli/demo_random.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace dravik {
namespace {

using Signal = std::vector<float>;
constexpr double rate = demoSampleRate;

/// A two-pole resonance: one formant.
class Resonator {
  public:
    void tune(double hertz, double bandwidth) {
        const double radius = std::exp(-std::numbers::pi * bandwidth / rate);
        feedback1_ = 2 * radius * std::cos(2 * std::numbers::pi * hertz / rate);
        feedback2_ = -radius * radius;
        gain_ = 1 - feedback1_ - feedback2_;
    }
    double operator()(double in) {
        const double out = gain_ * in + feedback1_ * last_ + feedback2_ * beforeLast_;
        beforeLast_ = last_;
        last_ = out;
        return out;
    }

  private:
    double feedback1_ = 0, feedback2_ = 0, gain_ = 1, last_ = 0, beforeLast_ = 0;
};

struct Vowel {
    double first, second, third;  ///< formants, Hz
};
constexpr std::array<Vowel, 7> vowels = {{{730, 1090, 2440},
                                          {530, 1840, 2480},
                                          {390, 1990, 2550},
                                          {270, 2290, 3010},
                                          {570, 840, 2410},
                                          {300, 870, 2240},
                                          {490, 1350, 1690}}};

double noise(DemoRandom& random) { return 2 * random.unit() - 1; }

/// One person's voice, to which phrases are added.
class Speaker {
  public:
    Speaker(double pitchHertz, double formantScale, std::uint64_t seed)
        : pitch_(pitchHertz), scale_(formantScale), random_(seed) {}

    void say(Signal& into, std::int64_t begin, std::int64_t end) {
        double intonation = random_.between(1.05, 1.2);
        std::int64_t at = begin;
        while (at < end) {
            const auto length = static_cast<std::int64_t>(random_.between(0.14, 0.26) * rate);
            syllable(into, at, std::min(at + length, end), intonation);
            intonation *= 0.97;
            at += length + static_cast<std::int64_t>((random_.chance(0.25) ? 0.09 : 0.012) * rate);
        }
    }

  private:
    void syllable(Signal& into, std::int64_t begin, std::int64_t end, double intonation) {
        const Vowel& vowel = vowels[random_.below(vowels.size())];
        formants_[0].tune(vowel.first * scale_, 90);
        formants_[1].tune(vowel.second * scale_, 110);
        formants_[2].tune(vowel.third * scale_, 170);
        const double loudness = random_.between(0.5, 1.0);
        const auto consonant = static_cast<std::int64_t>(random_.between(0.0, 0.05) * rate);
        constexpr double pulseMean = 0.1944;
        const double step = pitch_ * intonation / rate;
        const auto length = static_cast<double>(end - begin);
        for (std::int64_t at = begin; at < end; ++at) {
            phase_ += step;
            if (phase_ >= 1) phase_ -= 1;
            // The glottis opens for 60 % of the cycle and closes quickly; less the mean, which no microphone passes.
            const double voiced = phase_ < 0.6 ? phase_ * phase_ * (0.6 - phase_) * 18 - pulseMean : -pulseMean;
            const bool hiss = at - begin < consonant;
            const double source = hiss ? 0.5 * noise(random_) : voiced + 0.03 * noise(random_);
            const double vocal = formants_[0](source) + 0.55 * formants_[1](source) + 0.3 * formants_[2](source);
            const double position = static_cast<double>(at - begin) / length;
            const double envelope = std::min(1.0, 8 * position) * (1 - position * position);
            into[static_cast<std::size_t>(at)] +=
                static_cast<float>(loudness * envelope * (hiss ? 0.35 * vocal + 0.05 * source : 0.5 * vocal));
        }
    }

    double pitch_, scale_, phase_ = 0;
    DemoRandom random_;
    std::array<Resonator, 3> formants_;
};

constexpr std::size_t people = 3;

/// Who talks when is decided once for the take: people let each other finish.
std::array<Signal, people> conversation(std::int64_t frames, std::int64_t begin, std::uint64_t seed) {
    std::array<Signal, people> voices;
    for (Signal& voice : voices)
        voice.assign(static_cast<std::size_t>(frames), 0.0F);
    std::array<Speaker, people> speakers = {Speaker(205, 1.12, seed + 1), Speaker(112, 1.0, seed + 2),
                                            Speaker(178, 1.07, seed + 3)};
    DemoRandom random(seed + 4);
    std::size_t turn = random.below(people);
    for (std::int64_t at = begin; at < frames;) {
        const std::int64_t end = std::min(frames, at + static_cast<std::int64_t>(random.between(0.6, 1.6) * rate));
        speakers[turn].say(voices[turn], at, end);
        at = end + static_cast<std::int64_t>(random.between(0.15, 0.4) * rate);
        turn = (turn + 1 + random.below(people - 1)) % people;
    }
    return voices;
}

Signal clap(std::int64_t frames, std::int64_t at, std::uint64_t seed) {
    Signal signal(static_cast<std::size_t>(frames), 0.0F);
    DemoRandom random(seed);
    Resonator wood;
    wood.tune(2100, 500);
    const std::int64_t end = std::min(frames, at + static_cast<std::int64_t>(0.12 * rate));
    for (std::int64_t i = at; i < end; ++i) {
        const double age = static_cast<double>(i - at) / rate;
        const double burst = noise(random) * std::exp(-age / 0.012);
        signal[static_cast<std::size_t>(i)] = static_cast<float>(0.3 * burst + 1.2 * wood(burst));
    }
    return signal;
}

/// How much of each source a microphone hears, and its own noise.
struct Hearing {
    std::array<double, people> voices{};
    double clap = 0;
    double noise = 0;
    double tone = 0;   ///< level of a steady 1 kHz
    double music = 0;  ///< level of the playback chords
};

Hearing hearingOf(DemoSound sound) {
    switch (sound) {
        case DemoSound::boom:
            return {{0.32, 0.30, 0.28}, 0.5, 0.0016, 0, 0};
        case DemoSound::lavFirst:
            return {{0.55, 0.05, 0.03}, 0.12, 0.0008, 0, 0};
        case DemoSound::lavSecond:
            return {{0.04, 0.6, 0.05}, 0.16, 0.0009, 0, 0};
        case DemoSound::lavThird:
            return {{0.03, 0.04, 0.5}, 0.1, 0.0010, 0, 0};
        case DemoSound::mixLeft:
            return {{0.36, 0.24, 0.30}, 0.32, 0.0012, 0, 0};
        case DemoSound::mixRight:
            return {{0.26, 0.36, 0.30}, 0.32, 0.0012, 0, 0};
        case DemoSound::plant:
            return {{0.10, 0.12, 0.08}, 0.2, 0.0030, 0, 0};
        case DemoSound::playback:
            return {{}, 0, 0.0002, 0, 0.15};
        case DemoSound::tone:
            return {{}, 0, 0, 0.1, 0};  // -20 dBFS, the line-up level
        case DemoSound::room:
            return {{}, 0, 0.0040, 0, 0};
    }
    return {};
}

void addMusic(Signal& signal, double level) {
    constexpr std::array<double, 4> notes = {220.0, 277.18, 329.63, 440.0};
    const double beat = 0.5 * rate;
    for (std::size_t i = 0; i < signal.size(); ++i) {
        const double position = static_cast<double>(i) / beat;
        const double age = position - std::floor(position);
        const double hertz = notes[static_cast<std::size_t>(position) % notes.size()];
        const double phase = 2 * std::numbers::pi * hertz * static_cast<double>(i) / rate;
        signal[i] += static_cast<float>(level * std::exp(-3 * age) * (std::sin(phase) + 0.3 * std::sin(3 * phase)));
    }
}

void addTone(Signal& signal, double level) {
    constexpr double hertz = 1000;
    for (std::size_t i = 0; i < signal.size(); ++i) {
        signal[i] += static_cast<float>(level * std::sin(2 * std::numbers::pi * hertz * static_cast<double>(i) / rate));
    }
}

/// A room's noise is darker than white.
void addNoise(Signal& signal, double level, DemoRandom random) {
    double low = 0;
    for (float& value : signal) {
        const double white = noise(random);
        low += 0.06 * (white - low);
        value += static_cast<float>(level * (3 * low + 0.25 * white));
    }
}

void mixIn(Signal& into, const Signal& from, double level, std::size_t delay) {
    if (level <= 0) return;
    for (std::size_t i = delay; i < into.size(); ++i)
        into[i] += static_cast<float>(level) * from[i - delay];
}

}  // namespace

std::vector<std::vector<float>> demoTracks(const std::vector<DemoSound>& sounds, std::int64_t frames, bool slate,
                                           std::uint64_t seed) {
    constexpr double clapSecond = 0.3;
    constexpr double talkSecond = 0.7;
    const bool talk = std::any_of(sounds.begin(), sounds.end(), [](DemoSound s) { return hearingOf(s).voices[0] > 0; });
    std::array<Signal, people> voices;
    Signal slateClap;
    if (talk) {
        const double second = slate ? talkSecond : 0.1;
        voices = conversation(frames, std::min(frames, static_cast<std::int64_t>(second * rate)), seed);
        slateClap = clap(frames, std::min(frames, static_cast<std::int64_t>(clapSecond * rate)), seed + 5);
    }
    std::vector<Signal> tracks;
    for (std::size_t track = 0; track < sounds.size(); ++track) {
        const Hearing hearing = hearingOf(sounds[track]);
        Signal signal(static_cast<std::size_t>(frames), 0.0F);
        // Sound takes its time to a boom or a plant: three milliseconds a metre.
        const std::size_t delay = sounds[track] == DemoSound::boom ? 110 : sounds[track] == DemoSound::plant ? 260 : 20;
        if (talk) {
            for (std::size_t person = 0; person < people; ++person) {
                mixIn(signal, voices[person], hearing.voices[person], delay);
            }
            if (slate) mixIn(signal, slateClap, hearing.clap, delay);
        }
        if (hearing.tone > 0) addTone(signal, hearing.tone);
        if (hearing.music > 0) addMusic(signal, hearing.music);
        if (hearing.noise > 0) addNoise(signal, hearing.noise, DemoRandom(seed + 100 + track));
        tracks.push_back(std::move(signal));
    }
    return tracks;
}

}  // namespace dravik
