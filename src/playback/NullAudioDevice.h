// Sonarello: an audio device for computers without one.
#pragma once

#include <cstdint>

#include "playback/AudioDevice.h"

namespace Sonarello {

/// Takes its buffers at the pace of a real device and lets them go unheard, so that a song plays
/// without sound hardware.
class NullAudioDriver final : public IAudioDriver {
 public:
  [[nodiscard]] std::string ApiName() const override { return "null"; }
  [[nodiscard]] std::vector<std::string> DeviceNames() override;
  [[nodiscard]] std::unique_ptr<IAudioStream> Start(int device, int bufferFrames,
                                                    TAudioCallback callback) override;

  /// When a buffer (from 0) is due: nanoseconds after the start, at 44,100 Hz, never early. Errors of
  /// rounding do not add up.
  [[nodiscard]] static constexpr std::int64_t DueTime(std::int64_t buffer, int bufferFrames) noexcept {
    constexpr std::int64_t rate = 44100, second = 1'000'000'000;
    const std::int64_t frames = buffer * bufferFrames;
    return frames / rate * second + (frames % rate * second + rate - 1) / rate;
  }
};

}  // namespace Sonarello
