// Sonarello: the moves of the faders and of the panel's controllers.
#pragma once

#include "desk/StripsDesk.h"
#include "desk/StripsPanel.h"

namespace Sonarello {

/// A move overwrites the event in force and reaches the device; it inserts nothing. Its cost does not
/// grow with the song. Main thread, also during playback.
class TStripsMoves {
 public:
  explicit TStripsMoves(TStripsDesk& d) : desk(d) {}

  /// The fader of a channel (0-15) was moved to 0-127. With `MasterVolume`, while the active channel's
  /// fader is held, the others keep their proportion to it. Without an event of the song the value
  /// stays on the desk and in the device.
  void TB_Volume00Change(int channel, int value);
  /// A controller of a channel was moved, such as one of the panel for `ActiveMidiIndex`. Without an
  /// event of the song the value stays on the desk. Controller 7 is the fader.
  void ControllerChange(int channel, int controller, int value);
  /// A controller of the panel was moved, for the active channel.
  void PanelChange(int controller, int value);

  /// A fader is taken: its strip becomes the active one, the faders' values are remembered.
  void TB_Volume00MouseDown(int channel);
  /// It is let go.
  void TB_Volume00MouseUp() { SliderDepressed = false; }
  [[nodiscard]] bool IsSliderDepressed() const { return SliderDepressed; }

  /// Whether the faders are coupled.
  void SetMasterVolume(bool on);
  [[nodiscard]] bool MasterVolume() const;

  /// Sends a value, or parks it for the next start where nothing may be sent now. One that goes out
  /// takes back one that waits: that would undo the move when the song starts.
  void Send(int channel, int controller, int value);

  /// Value of a control (0-127) as it stands on the desk.
  [[nodiscard]] int ValueOf(int channel, int controller) const;
  /// Remembers where the faders of all channels stand, in `TMidiPlayer::SliderSnapshot`.
  void TakeSnapshot();

 private:
  void Set(int channel, int controller, int value);
  void DragOthers(int channel, int value);

  TStripsDesk& desk;
  bool SliderDepressed = false;
};

/// A fader that keeps its proportion: 1-127, where `from` stood when the leading fader stood at
/// `leaderFrom` and stands at `leaderTo` now. A leader at 0 leads only faders that were at 0 as well.
[[nodiscard]] int ProportionalValue(int from, int leaderFrom, int leaderTo) noexcept;

}  // namespace Sonarello
