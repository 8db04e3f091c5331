// Sonarello: a song at another tempo.
#pragma once

#include <cstdint>

#include "core/MidiFunctions.h"

namespace Sonarello {

inline constexpr std::int32_t SlowestTempo = 25;  ///< bpm

/// Which entry of the tempo table the first tempo meta of the song takes.
enum class TempoNumbering {
  Live,     ///< entry 0, always
  Stopped,  ///< entry 1 if the first meta does not stand at tick 0: entry 0 is then the implied start
};

/// Sets every tempo of the song to its tempo on load plus `offset` (bpm), at least 25: tables, time
/// map, the bytes of the tempo metas, the times of all events. Two walks over the song.
void ApplyTempoOffset(Song& song, TMidiFunctions& functions, std::int32_t offset,
                      TempoNumbering numbering = TempoNumbering::Live);

/// The tick that a time (ms, 0 or more) falls on, by the time map.
[[nodiscard]] std::int32_t TickOfTime(const Song& song, std::int32_t milliseconds);

}  // namespace Sonarello
