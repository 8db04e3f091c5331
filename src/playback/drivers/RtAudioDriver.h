// Sonarello: the sound systems of the computer.
#pragma once

#include <memory>
#include <vector>

#include "playback/AudioDevice.h"

namespace Sonarello {

/// The sound systems that have an output at this moment, the best first: JACK, PulseAudio, ALSA. None
/// is no failure. A system of another sample rate than 44,100 Hz that does not convert it is in the
/// list; starting it raises TAudioError.
[[nodiscard]] std::vector<std::unique_ptr<IAudioDriver>> FindAudioDrivers();

}  // namespace Sonarello
