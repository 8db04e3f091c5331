// Sonarello: what the desk shows anew while a song plays or is wound.
#pragma once

#include <cstdint>
#include <vector>

#include "playback/MidiPlayer.h"

namespace Sonarello {

/// A slider that is to move.
struct TSliderMove {
  int Channel = 0;  ///< 0-15
  std::uint8_t Controller = 0;
  std::uint8_t Value = 0;
  friend bool operator==(const TSliderMove&, const TSliderMove&) = default;
};

/// What has changed since the last time.
struct TDeskUpdate {
  std::vector<int> Sounds;           ///< channels that have another sound
  std::vector<TSliderMove> Sliders;  ///< the fader of every channel; the panel of the active one
};

/// Takes what the player has met since the last time. Called by the desk's timer on the main thread.
/// `activeChannel` (0-15) is the one whose controllers the panel shows.
[[nodiscard]] TDeskUpdate SlidersUpdateTimerTimer(TMidiPlayer& player, const Song& song, SongGate& gate,
                                                  int activeChannel);

}  // namespace Sonarello
