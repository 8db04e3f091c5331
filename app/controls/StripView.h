// All that a strip shows, as a value.
#pragma once

#include <QString>

namespace Sonarello {

struct StripView {
  int Channel = 0;      ///< the strip's own channel, 0..15
  int WireChannel = 0;  ///< the channel it goes out on, 0..15
  QString Name = {};    ///< of the sound
  QString Hint = {};    ///< the two bank lines, for the plate's tooltip
  int Volume = -1;      ///< 0..127; -1: none
  int Velocity = 0;     ///< offset, -127..127
  int Octave = 0;       ///< -1, 0, +1
  bool Song = true;     ///< false: no song is open
  bool HasNotes = true;
  bool Active = false;  ///< the channel that the controller panel shows
  bool Drum = false;
  bool Solo = false;
  bool Mute = false;
  bool MutedBySolo = false;  ///< another channel's solo mutes it
  bool Armed = false;
  bool Recording = false;
  QString NoRecord = {};  ///< why nothing can be recorded; empty: the button works

  [[nodiscard]] bool Redirected() const { return WireChannel != Channel; }
  [[nodiscard]] bool Silent() const { return Mute || MutedBySolo; }
  /// Nothing plays here: no notes, or no song at all.
  [[nodiscard]] bool Noteless() const { return !Song || !HasNotes; }

  bool operator==(const StripView&) const = default;
};

}  // namespace Sonarello
