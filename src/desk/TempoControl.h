// Sonarello: the tempo of the song, up and down as a whole.
#pragma once

#include <cstdint>
#include <functional>

#include "desk/StripsDesk.h"

namespace Sonarello {

inline constexpr std::int32_t FastestTempo = 999;  ///< bpm: as fast as the offset makes a song

/// The tempo offset (`Tag` of `Tempo_Null`), in bpm, added to every tempo that the song had on load.
/// Main thread.
class TTempoControl {
 public:
  explicit TTempoControl(TStripsDesk& d) : desk(d) {}

  /// One bpm up or down; back to the song's own tempi. Beyond the limits nothing happens.
  void Tempo_PlusClick() { SetOffset(offset + 1); }
  void Tempo_MinusClick() { SetOffset(offset - 1); }
  void Tempo_NullClick() { SetOffset(0); }
  /// An offset in bpm, brought into the limits.
  void SetOffset(std::int32_t bpm);

  [[nodiscard]] std::int32_t Offset() const { return offset; }
  /// The lowest offset brings the song's fastest tempo to 25 bpm, the highest one to `FastestTempo`.
  [[nodiscard]] std::int32_t LowestOffset() const;
  [[nodiscard]] std::int32_t HighestOffset() const;

  /// Applies the offset. While the song plays, the player does it with its next pass. Else it is done
  /// here: the position and the loop stay at their musical places, and `TempoChange` tells of new
  /// times: position slider, lyrics and texts follow `Song::SongLength` and `Song::TimeZone`.
  void TempoChange();
  /// Calls a change of tempi or signatures by others; position and loop stay at their musical places,
  /// whether the song plays or not. Gate held.
  void ChangeTimes(const std::function<void()>& change);
  /// True while a player that played has not taken the offset yet.
  [[nodiscard]] bool IsPending() const { return desk.player.TempoChanged; }
  /// For the display while the song plays: tells `TempoChange` once the player has taken the offset.
  void TellTaken();
  /// The player was stopped or has come to the song's end: applies an offset that it did not take.
  void PlayerStopped();

  /// A new song, or its tempi were edited and are its own ones now: the offset is 0 again.
  void SongChanged();

 private:
  void ApplyHere();
  [[nodiscard]] std::int32_t FastestOfSong() const;

  TStripsDesk& desk;
  std::int32_t offset = 0;
  bool untold = false;  ///< the player was given an offset, and nobody was told of the new times
};

}  // namespace Sonarello
