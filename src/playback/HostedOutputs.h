// Sonarello: the host's instruments as outputs, and the audio that they are heard through.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "playback/AudioDevice.h"
#include "playback/Routes.h"
#include "playback/VSTInstruments.h"

namespace Sonarello {

/// The slots of a host as routes see them: one for each, empty or not.
[[nodiscard]] std::vector<TInstrumentSlot> SlotsOf(const TVSTInstruments& host);

/// Plays a host through the first device of the first of these systems that takes it; behind them the
/// null device, which joins `drivers`, always does. The drivers outlive the host's audio. The system
/// and the device that play, such as "ALSA: Speakers".
std::string StartFirstAudio(TVSTInstruments& host, std::vector<std::unique_ptr<IAudioDriver>>& drivers);

}  // namespace Sonarello
