#include "cli/demo_day.h"

#include "cli/demo_random.h"
#include "model/wave/timecode.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <fmt/format.h>

namespace dravik {
namespace {

/// Seconds of sound in the whole day, and what one take gets of them.
constexpr double daySeconds = 90;
constexpr double shortestTake = 0.08;
constexpr double longestTake = 4.2;

/// One camera set-up of the call sheet.
struct Setup {
    int scene = 0;
    std::string_view prefix, suffix;
    std::string_view framerate;
    DemoLayout layout = DemoLayout::poly;
    std::vector<DemoTrack> tracks;
};

const std::vector<Setup>& callSheet() {
    using enum DemoSound;
    using enum DemoLayout;
    static const std::vector<Setup> setups = {
        {12,
         "",
         "",
         "25",
         poly,
         {{"Mix L", mixLeft}, {"Mix R", mixRight}, {"Boom", boom}, {"Lav Anna", lavFirst}, {"Lav Ben", lavSecond}}},
        {12, "", "A", "25", poly, {{"Boom", boom}, {"Lav Anna", lavFirst}}},
        {14, "", "", "25", monoLettered, {{"Boom", boom}, {"Lav Anna", lavFirst}, {"Lav Clara", lavThird}}},
        {21,
         "",
         "B",
         "23.976",
         poly,
         {{"Mix L", mixLeft},
          {"Mix R", mixRight},
          {"Boom 1", boom},
          {"Boom 2", plant},
          {"Lav Anna", lavFirst},
          {"Lav Ben", lavSecond},
          {"Lav Clara", lavThird},
          {"Plant car & door", plant}}},
        {22, "", "", "23.976", monoNumbered, {{"Boom", boom}, {"Lav Ben", lavSecond}, {"Plant desk", plant}}},
        {7, "P", "", "29.97 DF", poly, {{"Boom", boom}, {"Lav Host", lavSecond}, {"Playback", playback}}},
        {8, "P", "", "29.97 DF", monoNumbered, {{"Lav Host", lavSecond}, {"Lav Guest", lavFirst}}},
    };
    return setups;
}

constexpr std::array<std::string_view, 8> goodNotes = {"Best for sound",
                                                       "Good for both",
                                                       "Lav Anna clean",
                                                       "",
                                                       "Nice, keep the pause before the door",
                                                       "",
                                                       "Très bien",
                                                       "Boom perspective matches the wide"};
constexpr std::array<std::string_view, 8> badNotes = {
    "Plane at the end",          "Clothes rustle on the lav",     "", "Dog far away",
    "Traffic, hold for the bus", "Café noise under the dialogue", "", "Boom shadow, camera reset"};

class DayPlanner {
  public:
    DayPlanner(int takes, std::uint64_t seed)
        : takes_(takes),
          random_(seed * 0x2545F4914F6CDD1DULL + 1),
          average_(std::clamp(daySeconds / takes, shortestTake, longestTake)) {
        constexpr int daysThatAllMonthsHave = 28;
        day_ = {2024, 5, static_cast<int>(1 + (seed + 12) % daysThatAllMonthsHave)};
    }

    std::vector<DemoTake> plan() {
        // A day worth the name begins with line-up tone and ends with wild tracks.
        const bool whole = takes_ >= 6;
        const int wildTakes = whole ? std::max(2, takes_ / 16) : 0;
        if (whole) tone();
        for (int round = 0; room(wildTakes) > 0; ++round) {
            for (const Setup& setup : callSheet())
                shoot(setup, round, wildTakes);
        }
        for (int number = 1; number <= wildTakes; ++number)
            wild(number);
        return std::move(done_);
    }

  private:
    [[nodiscard]] int room(int reserved) const { return takes_ - reserved - static_cast<int>(done_.size()); }

    DemoTake begin(std::string_view framerate, double seconds) {
        clock_ += random_.between(90, 300) * pace();
        DemoTake take;
        take.project = "The Long Tide";
        take.framerate = framerate;
        take.date = day_;
        take.tape = fmt::format("A{:03}", 1 + done_.size() * 2 / static_cast<std::size_t>(std::max(takes_, 24)));
        take.frames = static_cast<std::int64_t>(std::llround(std::max(seconds, shortestTake / 2) * demoSampleRate));
        const auto second = static_cast<int>(clock_);
        take.time = fmt::format("{:02}:{:02}:{:02}", second / 3600, second / 60 % 60, second % 60);
        const std::string timecode = fmt::format("{}:{:02}", take.time, random_.below(24));
        // Recorders start between two frames.
        take.startSamples = samplesFromTimecode(timecode, framerate, demoSampleRate) + random_.below(700);
        take.seed = random_.next();
        take.familyUID = fmt::format("{:016X}{:016X}", random_.next(), random_.next());
        clock_ += seconds;
        return take;
    }

    /// The clock must not run past midnight on a day of thousands of takes.
    [[nodiscard]] double pace() const { return std::min(1.0, 100.0 / takes_); }

    void tone() {
        DemoTake take = begin("25", 0.8 * average_);
        take.name = "TONE-01";
        take.scene = "TONE";
        take.take = "1";
        take.note = "1 kHz at -20 dBFS";
        take.slate = false;
        take.tracks = {{"Tone L", DemoSound::tone}, {"Tone R", DemoSound::tone}};
        done_.push_back(std::move(take));
    }

    void shoot(const Setup& setup, int round, int wildTakes) {
        const int wanted = 2 + static_cast<int>(random_.below(3));
        const int count = std::min(wanted, room(wildTakes));
        clock_ += 1200 * pace();
        constexpr int scenesARound = 20;
        const std::string scene = fmt::format("{}{}{}", setup.prefix, setup.scene + scenesARound * round, setup.suffix);
        for (int number = 1; number <= count; ++number) {
            const bool last = number == count;
            const bool falseStart = !last && random_.chance(0.2);
            DemoTake take = begin(setup.framerate, (falseStart ? 0.35 : random_.between(0.6, 1.35)) * average_);
            take.scene = scene;
            take.take = fmt::format("{}", number);
            take.layout = setup.layout;
            take.name = setup.layout == DemoLayout::monoLettered ? fmt::format("{}-{:02}", scene, number)
                                                                 : fmt::format("{}-T{:02}", scene, number);
            take.tracks = setup.tracks;
            take.falseStart = falseStart;
            take.circled = last || (!falseStart && random_.chance(0.15));
            take.note = falseStart     ? "False start"
                        : take.circled ? goodNotes[notes_++ % goodNotes.size()]
                                       : badNotes[notes_++ % badNotes.size()];
            if (setup.layout == DemoLayout::monoLettered && number == 2) {
                take.note = "Checked by the editor";
                take.noteOnFirstFileOnly = true;
            }
            mark(take);
            done_.push_back(std::move(take));
        }
    }

    void wild(int number) {
        static constexpr std::array<std::string_view, 3> notes = {"Room tone, kitchen", "Door, three times",
                                                                  "Footsteps on gravel"};
        DemoTake take = begin("25", average_);
        take.scene = "12";
        take.take = fmt::format("WT{}", number);
        take.name = fmt::format("12-WT{:02}", number);
        take.wild = true;
        take.slate = false;
        take.note = notes[static_cast<std::size_t>(number - 1) % notes.size()];
        take.tracks = {{"Boom", DemoSound::room}};
        if (number % 2 == 0) take.tracks.push_back({"Plant", DemoSound::plant});
        done_.push_back(std::move(take));
    }

    void mark(DemoTake& take) {
        const auto at = [&](double share) {
            return static_cast<std::int64_t>(share * static_cast<double>(take.frames));
        };
        const auto add = [&](std::int64_t frame, std::optional<std::string> label) {
            take.cues.push_back({static_cast<std::uint32_t>(take.cues.size() + 1), frame, std::move(label)});
        };
        if (take.falseStart || random_.chance(0.4)) return;
        add(std::min<std::int64_t>(14'400, at(0.2)), "Slate");
        if (random_.chance(0.6)) add(at(random_.between(0.4, 0.6)), "Plane");
        if (random_.chance(0.4)) add(at(random_.between(0.65, 0.85)), std::nullopt);
    }

    int takes_;
    DemoRandom random_;
    double average_;
    RecordingDate day_;
    double clock_ = 8.5 * 3600;  ///< seconds since midnight
    std::size_t notes_ = 0;
    std::vector<DemoTake> done_;
};

}  // namespace

std::vector<DemoTake> demoDay(int takes, std::uint64_t seed) { return DayPlanner(takes, seed).plan(); }

}  // namespace dravik
