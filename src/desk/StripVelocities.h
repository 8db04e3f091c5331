// Sonarello: velocity offset and velocity range of the channels.
#pragma once

#include <optional>
#include <string_view>

#include "desk/StripsDesk.h"

namespace Sonarello {

inline constexpr int VelocityRepeatFirst = 700;  ///< ms from the press to the first repeat
inline constexpr int VelocityRepeat = 150;       ///< ms from one repeat to the next
inline constexpr int MostVelocityOffset = 127;   ///< up and down

/// The range editor as it stands.
struct TVelocityRange {
  int Minimum = 0;  ///< velocities of the channel's notes, 1-127
  int Maximum = 0;
  int NewMinimum = 0;  ///< where the sliders stand, 1-127, the first not above the second
  int NewMaximum = 0;
  bool Mapped = false;  ///< false if the sliders stand at the notes' own range: nothing is changed
};

/// Both settings change notes on their way out and when the song is saved, not the song. While a range
/// is mapped, the offset is not applied. Main thread, also during playback.
class TStripVelocities {
 public:
  explicit TStripVelocities(TStripsDesk& d) : desk(d) {}

  // --- Offset. Steps go at most to -127 and 127.

  /// The velocity of a channel (0-15) was pressed: `delta` -1 (left) or 1 (right). Moves by one step;
  /// the timer is then to run once for the interval (ms) that comes back, 0 for not at all.
  [[nodiscard]] int VelocityDown(int channel, int delta);
  /// The timer: one more step. The next interval in ms, 0 when the timer is to stop.
  [[nodiscard]] int VelocityTimerTimer();
  void VelocityUp() { VelocityDelta = 0; }
  /// One step for a key, without repeat.
  void Step(int channel, int delta);
  /// An offset that was typed.
  void SetOffset(int channel, int offset);

  // --- Range

  /// Opens the editor on a channel: reads the velocities of its notes. Nothing for a channel without
  /// notes. One walk over the song.
  std::optional<TVelocityRange> OpenVelocityEditor(int channel);
  /// The lower and the upper slider; each takes the other along.
  void VelocityRangeSliderMinPosChange(int value);
  void VelocityRangeSliderMaxPosChange(int value);
  /// A value was typed beside a slider. What is no number leaves it.
  void E_VelocityExit(bool isMaximum, std::string_view text);
  /// The sliders go back to the notes' own range.
  void ResetVelocityRange();
  void Btn_CloseVelocityEditorClick() { edited = -1; }

  /// Channel of the editor, -1 while it is closed.
  [[nodiscard]] int EditedChannel() const { return edited; }
  /// The editor as it stands; only while it is open.
  [[nodiscard]] TVelocityRange Range() const;

  /// A new song: nothing is pressed or open.
  void SongChanged();

 private:
  bool Move(int channel, int delta);
  void SetRange(int minimum, int maximum);
  [[nodiscard]] TNotesVelocities& Record(int channel) const {
    return desk.song.NotesVelocities[static_cast<std::size_t>(channel)];
  }

  TStripsDesk& desk;
  int VelocityDelta = 0;  ///< direction while a button is held
  int pressed = -1;       ///< its channel
  int edited = -1;
};

}  // namespace Sonarello
