#pragma once

#include "playback/audio_lock.h"
#include "playback/audio_output.h"
#include "playback/level_meters.h"
#include "playback/mix_plan.h"
#include "playback/pcm_buffer.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace dravik {

/// Where a take is played from and to.
struct Transport {
    bool enLecture = false;
    std::int64_t frameCourante = 0;  ///< the next frame to be heard
    std::int64_t fin = 0;            ///< where the range ends
    std::int64_t retour = -1;        ///< where to begin again at the end; negative: stop there
    std::int64_t finRetour = 0;      ///< where the range ends from then on
};

/// The audio thread's part of the player: mixes a take that is in memory into stereo, moves the position on, measures
/// levels. Everything it needs is allocated when it is made. What the other side changes is copied under locks that the
/// audio thread only tries: when it cannot have one, it goes on with its last copy and asks again with the next block.
class TakeRenderer final : public AudioSource {
  public:
    /// `mediaTime` (seconds) is where the clock of the meters stands at the first frame; `meters` is what they show
    /// then, when it has an entry for every channel.
    TakeRenderer(std::shared_ptr<const PcmTake> take, double mediaTime, const LevelMeters& meters = {});

    /// Audio thread.
    void render(std::span<float> left, std::span<float> right) noexcept override;

    /// All others: one other thread.
    void setMix(const std::vector<MixTerm>& plan, float outputVolume);
    void setTransport(const Transport& transport);
    /// The range alone: the position moves on from where the audio thread has it.
    void setRange(const Transport& range);

    struct Heard {
        std::int64_t frameCourante = 0;
        bool finAtteinte = false;  ///< the end was reached and nothing is played any more
        std::uint64_t tours = 0;   ///< how often it began again since the position was set
        double mediaTime = 0;      ///< seconds of sound that the output has asked for, from `mediaTime` on
    };
    [[nodiscard]] Heard heard() const;
    /// Copies the meters when a step was made since the last time.
    bool copyMeters(LevelMeters& into);
    void resetMeters(bool clearClip);

  private:
    void takeNews() noexcept;
    void mixBlock(std::span<float> left, std::span<float> right) noexcept;
    void measure(std::int64_t from, std::size_t count) noexcept;
    void tellPosition() noexcept;

    const std::shared_ptr<const PcmTake> take_;
    const double mediaStart_;

    // Both sides, each under its lock.
    mutable AudioLock lockVolume_, lockPosition_, lockMeters_;
    std::vector<MixTerm> plan_;  // as long as there are channels; the first planCount_ count
    std::size_t planCount_ = 0;
    float outputVolume_ = 0;
    std::uint64_t planRevision_ = 0;
    Transport transport_;
    Heard heard_;
    std::uint64_t transportRevision_ = 0, rangeRevision_ = 0;
    LevelMeters meters_;
    bool metersChanged_ = false;

    // The audio thread's own.
    std::vector<MixTerm> ownPlan_;
    std::size_t ownPlanCount_ = 0;
    float ownOutputVolume_ = 0;
    std::uint64_t ownPlanRevision_ = 0;
    Transport own_;
    Heard ownHeard_;
    std::uint64_t ownTransportRevision_ = 0, ownRangeRevision_ = 0;
    std::vector<float> levels_;
    std::int64_t framesAsked_ = 0;
    std::int64_t lastMeasured_ = -1;  // framesAsked_ at the last publication of levels
};

}  // namespace dravik
