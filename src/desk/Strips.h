// Sonarello: the sixteen strips of the desk, without their window.
#pragma once

#include <array>

#include "desk/GroupFader.h"
#include "desk/MuteSolo.h"
#include "desk/StripVelocities.h"
#include "desk/StripsDesk.h"
#include "desk/StripsMoves.h"
#include "desk/StripsPanel.h"
#include "desk/StripsPosition.h"
#include "desk/TempoControl.h"
#include "playback/Redirection.h"

namespace Sonarello {

/// A strip as it is shown.
struct TStripView {
  int Channel = 0;      ///< 0-15
  TChannelLabel Label;  ///< the channel that it goes out on
  bool Active = false;  ///< it has events
  bool Drums = false;
  bool Selected = false;
  bool Mute = false;
  bool MutedBySolo = false;  ///< mute, but only because another one is solo
  bool Solo = false;
  bool Rec = false;
  int Volume = 0;               ///< where the fader stands, 0-127
  bool VolumeInSong = false;    ///< the song has an event for it
  int VelocityOffset = 0;       ///< -127 to 127
  bool VelocityMapped = false;  ///< the range editor has a range for it
  int Octave = 0;               ///< -1 to 1
  friend bool operator==(const TStripView&, const TStripView&) = default;
};

/// A controller of the panel as it is shown.
struct TPanelControl {
  int Controller = 0;
  int Value = 0;        ///< 0-127
  int Shown = 0;        ///< as the user reads it
  bool InSong = false;  ///< the song has an event for it
  friend bool operator==(const TPanelControl&, const TPanelControl&) = default;
};
using TPanelView = std::array<TPanelControl, std::size(PanelControllerNumbers)>;

/// The strips. All operations run on the main thread, also during playback; each takes the gate for
/// itself. Without a song they do nothing.
class TStrips {
 public:
  explicit TStrips(const TStripsParts& parts) : Desk(parts) {}

  TStripsDesk Desk;  ///< hooks, settings, the active channel
  TStripsMoves Moves{Desk};
  TGroupFader GroupFader{Desk, Moves};
  TMuteSolo MuteSolo{Desk};
  TStripVelocities Velocities{Desk};
  TTempoControl Tempo{Desk};
  TStripsPosition Position{Desk.song, Desk.gate};

  /// A new song is in the store, behind `TMidiPlayer::SongChanged`.
  void SongChanged();
  /// The arrow up or down of a channel was pressed: its notes move by an octave (1 or -1), at most one
  /// from how they were loaded.
  void TransposePlus00MouseDown(int channel) { MoveOctave(channel, 1); }
  void TransposeMinus00MouseDown(int channel) { MoveOctave(channel, -1); }
  void MoveOctave(int channel, int octaves);
  /// Arms a channel for recording, or no longer; at most one is armed.
  void SetRec(int channel, bool armed);
  /// The armed channel (0-15), -1 for none.
  [[nodiscard]] int RecMidiIndex() const;
  /// The song's first values come back, as if it had not been played, and everything is shown anew.
  /// Called behind a second stop, with the gate free: not from `TPlayerHooks::ReadFirstValues`.
  void ReadFirstValues();

  [[nodiscard]] TStripView View(int channel) const;
  /// The panel of the active channel; without one, defaults.
  [[nodiscard]] TPanelView Panel() const;
};

}  // namespace Sonarello
