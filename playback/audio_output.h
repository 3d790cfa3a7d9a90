#pragma once

#include "base/error.h"

#include <functional>
#include <memory>
#include <span>
#include <string>

namespace dravik {

/// Where an output gets its sound from.
class AudioSource {
  public:
    virtual ~AudioSource() = default;
    /// Fills both channels, which are of the same length. On the output's own thread, one call at a time: no
    /// allocation, no waiting, no system call.
    virtual void render(std::span<float> left, std::span<float> right) noexcept = 0;
};

/// The output could not be opened; the text is for the user.
class AudioOutputError final : public Error {
  public:
    explicit AudioOutputError(const std::string& reason) : Error("The audio output could not be opened: " + reason) {}
};

/// A device that plays stereo float at the rate of the take and converts to what its hardware wants. Used from one
/// thread; calls the source on another.
class AudioOutput {
  public:
    virtual ~AudioOutput() = default;
    /// Asks `source` for sound from now on. Once in the life of an output. Throws AudioOutputError.
    virtual void start(double sampleRate, AudioSource& source) = 0;
    /// When it returns, the source is not called any more.
    virtual void stop() noexcept = 0;
};

/// Makes one output, which is not started yet; `configurationChanged` is called, on any thread, whenever devices came
/// or went, and for the last time before the output is destroyed.
using MakeAudioOutput = std::function<std::unique_ptr<AudioOutput>(std::function<void()> configurationChanged)>;

}  // namespace dravik
