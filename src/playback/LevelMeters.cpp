#include "playback/LevelMeters.h"

#include <algorithm>
#include <limits>

namespace Sonarello {

void MeterNoteOn(TRMSValue& meter, int velocity) noexcept {
  meter.Peak = std::max(meter.Peak, static_cast<std::int16_t>(velocity));
  if (meter.Count < std::numeric_limits<std::int16_t>::max()) ++meter.Count;
}

void MeterNoteOff(TRMSValue& meter) noexcept {
  if (meter.Count > 0) --meter.Count;
}

void UpdateRMS(std::span<TRMSValue> meters) noexcept {
  constexpr int slowestFall = 2;
  for (TRMSValue& meter : meters) {
    if (meter.Level < meter.Peak) {
      meter.Level = meter.Peak;
    } else if (meter.Level > meter.Peak) {
      const int fallen = meter.Level - std::max(meter.Level / 16, slowestFall);
      meter.Level = static_cast<std::int16_t>(std::max({fallen, int{meter.Peak}, 0}));
    }
    if (meter.Count == 0) meter.Peak = 0;
  }
}

std::bitset<KeyCount> UpdateDrumLights(std::span<TDrumsRec, KeyCount> drums, std::int32_t position,
                                       std::int32_t holdTime) noexcept {
  std::bitset<KeyCount> lit;
  for (std::size_t note = 0; note < KeyCount; ++note) {
    TDrumsRec& drum = drums[note];
    const std::int64_t age = std::int64_t{position} - drum.XValue;
    // The player may be a little ahead of the position that the display knows; no jump is that small.
    if (drum.XValue != 0 && (age >= holdTime || age <= -std::int64_t{holdTime})) drum.XValue = 0;
    lit[note] = drum.XValue > 0;
  }
  return lit;
}

}  // namespace Sonarello
