// Sonarello: where the bars of a song begin.
#pragma once

#include <cstdint>
#include <vector>

#include "core/Song.h"

namespace Sonarello {

/// Most bars that are listed; a song of 65,535 bars of one beat at 300 bpm lasts three and a half
/// hours.
inline constexpr std::size_t MostBars = 65'535;

/// Times (ms, ascending) at which the bars begin, the first at 0, up to the song's end. Follows the
/// time map: tempi and signatures count. One walk over the map, none over the events.
[[nodiscard]] std::vector<std::int64_t> BarTimes(const Song& song);

}  // namespace Sonarello
