#include "desk/BarTimes.h"

#include <algorithm>

#include "core/TimeMap.h"

namespace Sonarello {

std::vector<std::int64_t> BarTimes(const Song& song) {
  std::vector<std::int64_t> times{0};
  ZoneCursor cursor(song);
  const auto zones =
      std::min(static_cast<std::size_t>(std::max(song.TimeZoneElements, 0)), song.TimeZone.size());
  for (std::size_t z = 0; z < zones; ++z) {
    const TTimeZone& zone = song.TimeZone[z];
    const std::int64_t end = std::min<std::int64_t>(
        z + 1 < zones ? song.TimeZone[z + 1].SongPosition : song.MaxSongPosition, song.MaxSongPosition);
    const std::int64_t beat = TicksPerBeat(song.SourceTimeBase, zone.TS_Denominator);
    const std::int64_t bar = beat * BeatsPerMeasure(zone);
    const std::int64_t intoBar = (std::max<int>(zone.Beat, 1) - 1) * beat + zone.Ticks;
    std::int64_t tick =
        zone.SongPosition + (intoBar == 0 ? 0 : std::max<std::int64_t>(bar - intoBar, 0));
    for (; tick < end && times.size() < MostBars; tick += bar) {
      const std::int64_t time = cursor.TimeOf(static_cast<std::int32_t>(tick));
      if (tick > 0 && time > times.back() && time < song.SongLength) times.push_back(time);
    }
  }
  return times;
}

}  // namespace Sonarello
