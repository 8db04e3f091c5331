// Sonarello: winding by the position slider: the model follows while it moves, the devices when it is
// let go.
#pragma once

#include <array>
#include <cstdint>

#include "playback/MidiPlayer.h"

namespace Sonarello {

/// One grip of the position slider. What differs at its end from its beginning is parked for the next
/// start, which comes at once if the song was playing.
class PositionSlider {
 public:
  PositionSlider(TMidiPlayer& p, Song& s, TRealtimeData& r, SongGate& g)
      : player(p), song(s), realtime(r), gate(g) {}

  /// The slider is taken: remembers whether the song plays and stops it, and the values in force.
  void TrackBarMouseDown();
  /// The slider is moved to a position, ms.
  void TrackBarChange(std::int32_t position) { player.MoveToTimePosition(position); }
  /// The slider is let go: parks what changed; plays on if the song was playing. False if it could not.
  bool TrackBarMouseUp();

 private:
  struct TChannelSnapshot {
    std::array<std::uint8_t, ControllerCount> Ctrl{};
    std::int8_t Patch = -1;
  };
  void Park(std::size_t channel);
  void ParkDrums(std::size_t channel);

  TMidiPlayer& player;
  Song& song;
  TRealtimeData& realtime;
  SongGate& gate;
  bool PlayingBeforeSeek = false;
  std::array<TChannelSnapshot, ChannelCount> snapshot{};
};

}  // namespace Sonarello
