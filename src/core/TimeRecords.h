// Sonarello: the records of a song's tempi, signatures and time map.
#pragma once

#include <cstdint>

namespace Sonarello {

/// A tempo change. Durations are microseconds per quarter note.
struct TTempo {
  std::int32_t SongPosition = -1;  ///< ticks
  std::int32_t TempoLongInt = 0;
  std::int32_t OldTempoLongInt = 0;
  std::int32_t OriginalTempoLongint = 0;
  std::uint16_t Tempo = 0;  ///< beats per minute, rounded
};

/// A time signature.
struct TTimeSign {
  std::int32_t SongPosition = -1;  ///< ticks
  std::uint8_t Numerator = 0;
  std::uint8_t Denominator = 0;  ///< the note value itself: 4 for a quarter
  std::uint8_t TicksInMClick = 0;
  std::uint8_t _32NotesInQNote = 0;
};

/// One segment of the time map, valid from its `SongPosition` to the next segment's.
struct TTimeZone {
  std::int32_t SongPosition = 0;  ///< ticks
  std::int32_t Measure = 0;       ///< from 1
  std::uint8_t Beat = 0;          ///< from 1
  std::uint16_t Ticks = 0;        ///< from 0
  std::uint16_t Tempo = 0;        ///< beats per minute
  std::int32_t TempoLongInt = 0;  ///< microseconds per quarter
  float TempoComp = 0;            ///< milliseconds per tick
  std::int32_t Time = 0;          ///< milliseconds at `SongPosition`
  std::int32_t DisplayTimeOffset = 0;
  std::int32_t DisplayTimerPrep = 0;
  std::uint8_t TS_Denominator = 0;
  std::uint8_t TS_Numerator = 0;
};

}  // namespace Sonarello
