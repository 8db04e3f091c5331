// Sonarello: the time map's arithmetic, from ticks to milliseconds and to measure, beat and ticks.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

#include "core/Song.h"

namespace Sonarello {

/// Rounds to the nearest integer, ties to even, and saturates to 32 bits.
[[nodiscard]] inline std::int32_t RoundToEven(double value) noexcept {
  // 1.5 * 2^52 leaves a double no bits behind the point, so the addition itself rounds, in the
  // processor's mode. A call of std::lrint would cost more than all the rest of an event's time.
  constexpr double shift = 6755399441055744.0;
  value = std::clamp(value, double{std::numeric_limits<std::int32_t>::min()},
                     double{std::numeric_limits<std::int32_t>::max()});
  return static_cast<std::int32_t>((value + shift) - shift);
}

/// A number that may not leave 32 bits.
[[nodiscard]] constexpr std::int32_t Saturated(std::int64_t value) noexcept {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(
      value, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}

// --- The source tables

/// Beats per minute of a tempo in microseconds per quarter (above 0), rounded, at most 65535.
[[nodiscard]] std::uint16_t BeatsPerMinute(std::int32_t microseconds) noexcept;
/// Entry of the tempo table for the three bytes of a tempo meta. A tempo of 0 counts as 500000.
[[nodiscard]] TTempo TempoEntry(std::int32_t position, std::span<const std::uint8_t> bytes) noexcept;
/// Entry of the signature table for the four bytes of a time signature meta. One in which no measure
/// can be counted (numerator 0, denominator above 128) takes 4/4.
[[nodiscard]] TTimeSign TimeSignEntry(std::int32_t position,
                                      std::span<const std::uint8_t> bytes) noexcept;
/// Fills the entries whose `SongPosition` is still -1: a first one stands at 0 with 120 or 4/4, later
/// ones copy their predecessor and stand behind the song, at `MaxSongPosition` + 1.
void CloseTimeTables(Song& song);
/// Keeps the beats per minute of every entry of the tempo table in `BackupTempo`.
void BackupTempi(Song& song);

// --- Zones

/// A count of measures and beats from 1 and of ticks from 0; wide enough for any sum of zones.
struct TPlace {
  std::int64_t Measure = 1;
  std::int64_t Beat = 1;
  std::int64_t Ticks = 0;
};

/// Ticks of a signature's beat, at least 1. 16 and finer round down where the time base does not
/// divide.
[[nodiscard]] constexpr std::int64_t TicksPerBeat(std::int32_t timeBase, int denominator) noexcept {
  return std::max(timeBase * 4 / std::max(denominator, 1), 1);
}
/// Ticks that are carried into a beat, at least 1: an eighth in a signature of eighths, in any other
/// one a quarter, whatever its beat. This is deliberate.
[[nodiscard]] constexpr std::int64_t CarriedTicks(std::int32_t timeBase, int denominator) noexcept {
  return std::max(denominator == 8 ? timeBase / 2 : timeBase, 1);
}

/// Beats of a zone's measure; at least 1.
[[nodiscard]] inline std::int64_t BeatsPerMeasure(const TTimeZone& zone) noexcept {
  return std::max<std::int64_t>(zone.TS_Numerator, 1);
}
/// The place `ticks` (0 or more) behind a zone's start, the ticks carried as in a signature of the
/// denominator `carry`, the beats not carried yet.
[[nodiscard]] TPlace CountFrom(const TTimeZone& zone, std::int64_t ticks, std::int32_t timeBase,
                               int carry) noexcept;
/// Carries beats above `beats` into measures.
void CarryBeats(TPlace& place, std::int64_t beats) noexcept;

/// Index of the zone that holds a position: the last one that starts at or before it, but never the
/// last of the table: a position behind the song belongs to the zone before the last. 0 without a map.
[[nodiscard]] std::size_t ZoneAt(const Song& song, std::int32_t position) noexcept;
/// Lets the zones behind the song begin 1 ms behind its last event. Needs `SongLength`.
void EndTimeZonesBehindSong(Song& song) noexcept;

/// Tells the milliseconds of one position after the other. Ascending positions cost no search.
class ZoneCursor {
 public:
  explicit ZoneCursor(const Song& s) noexcept : song(s) {}

  /// Milliseconds at a position in ticks; 0 at or before the song's start, and without a map.
  [[nodiscard]] std::int32_t TimeOf(std::int32_t position) noexcept {
    if (position <= 0) return 0;
    if (position < from || position >= until) Seek(position);
    return Saturated(std::int64_t{time} +
                     RoundToEven(static_cast<double>(position - from) * msPerTick));
  }

 private:
  void Seek(std::int32_t position) noexcept;
  void Enter(std::size_t index) noexcept;

  const Song& song;
  std::size_t zone = 0;
  std::int32_t from = 0;
  std::int64_t until = 0;  ///< tick behind the zone; no zone has been entered while it is 0
  std::int32_t time = 0;   ///< ms at `from`
  double msPerTick = 0;
};

}  // namespace Sonarello
