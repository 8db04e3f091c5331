// Sonarello: one controller over all sixteen channels, by its first values in the song.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "desk/Strips.h"

namespace Sonarello {

/// A column of the overview.
struct TControllerColumn {
  TStripView Strip;      ///< the channel as its strip shows it
  std::string Name;      ///< of its sound
  int Value = 0;         ///< 0-127; without an event of the song where the controller stands by itself
  int Shown = 0;         ///< as the user reads it
  bool InSong = false;   ///< the song has an event for it that is played
  std::string Position;  ///< where the first event stands, if there is one
  bool CanInsert = false;  ///< it has an event, or a track that can take one

  friend bool operator==(const TControllerColumn&, const TControllerColumn&) = default;
};

/// What the overview asks and tells; unset ones do nothing. Called with the gate free.
struct TControllerOverviewHooks {
  std::function<std::string(int channel)> PatchName;  ///< of a channel (0-15)
  std::function<void()> ShowController;               ///< columns have changed
  std::function<void(int channel)> EventInserted;     ///< an event came into a channel's (0-15) track
};

/// The overview without its window. Main thread, also during playback.
class TControllerOverview {
 public:
  explicit TControllerOverview(TStrips& s) : strips(s) {}

  TControllerOverviewHooks Hooks;

  /// The controllers that can be shown: those with a name, but the ones that choose a sound, carry the
  /// data of others or switch the whole channel.
  [[nodiscard]] static std::vector<int> Choices();
  /// "Volume · CC 7".
  [[nodiscard]] static std::string ChoiceText(int controller);
  /// The controller that is shown, 7 at first. One that cannot be shown is not taken.
  [[nodiscard]] int Controller() const noexcept { return controller; }
  void SetController(int number);

  [[nodiscard]] bool HasSong() const { return strips.Desk.song.MidiFileLoaded; }
  [[nodiscard]] TControllerColumn Column(int channel) const;
  /// A channel's (0-15) fader was moved to 0-127: its first event takes the value, or comes in at the
  /// song's start where there is none. The value goes out at once. False if no track can take it.
  bool MidiCh00_CtrlValueChange(int channel, int value);

  /// What is said where there is no song.
  [[nodiscard]] static std::string NoSongText();

 private:
  [[nodiscard]] PtrMidiEvent FirstEvent(int channel) const;
  [[nodiscard]] TMyTrack* TrackFor(int channel) const;
  bool InsertFirst(int channel, int value);
  void ChangeFirst(int channel, PtrMidiEvent first, int value);

  TStrips& strips;
  int controller = VolumeController;
};

}  // namespace Sonarello
