// Sonarello: the position as the display shows it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/Song.h"
#include "playback/SongGate.h"

namespace Sonarello {

/// What the display shows at a position.
struct TPositionView {
  std::int32_t Time = 0;          ///< ms
  std::int32_t SongPosition = 0;  ///< ticks
  std::int32_t Measure = 1;
  std::int32_t Beat = 1;
  std::string Position;       ///< measure and beat: "17:03"
  std::string MTC;            ///< measure, beat and ticks: "017.03.120"
  std::string Clock;          ///< minutes, seconds and ms: "0:41.382"
  double Tempo = 120;         ///< beats per minute
  std::string TempoText;      ///< with one decimal: "96.0"
  std::string Signature;      ///< "4/4"
  std::string Key;            ///< "F-Dur" or "F major"; empty if the song tells none
  std::int32_t TimeZone = 0;  ///< index of the zone that holds the position
  friend bool operator==(const TPositionView&, const TPositionView&) = default;
};

/// Measure and beat: a single digit of the beat has a 0 in front.
[[nodiscard]] std::string MeasureText(std::int32_t measure, std::int32_t beat);
/// Minutes, seconds and ms of a time in ms.
[[nodiscard]] std::string ClockText(std::int32_t milliseconds);
/// Name of a key signature: sharps (positive) or flats, minor if `MI` is 1. Empty if there is no such.
[[nodiscard]] std::string KeySignatureName(std::int32_t SF, std::int32_t MI);

/// Tells positions by the time map, without a walk: a display tick costs a few searches in short
/// tables. Main thread, also during playback.
class TStripsPosition {
 public:
  TStripsPosition(Song& s, SongGate& g) : song(s), gate(g) {}

  /// What is shown at a time in ms.
  [[nodiscard]] TPositionView At(std::int32_t milliseconds) const;
  /// Tempo at a time, bpm as the song's table has it.
  [[nodiscard]] std::int32_t TempoAt(std::int32_t milliseconds) const;
  /// Brings `CurrentTimeZone` and `CurrentTempo` of the song to a time.
  void Follow(std::int32_t milliseconds);

  /// The song's key signatures are others: a new song, or they were edited. Not needed for a
  /// transposition, by which they are shown.
  void SignaturesChanged();

 private:
  struct TKey {
    std::int32_t SongPosition = 0;  ///< ticks
    std::int32_t SF = 0;            ///< as the song came
    std::int32_t MI = 0;
  };
  [[nodiscard]] std::string KeyAt(std::int32_t tick) const;

  Song& song;
  SongGate& gate;
  std::vector<TKey> keys;  ///< in order of their positions
};

}  // namespace Sonarello
