// Sonarello: the delay effect of GS instruments.
#pragma once

#include "core/SongSysexs.h"
#include "core/SysexPolicy.h"

namespace Sonarello {

inline constexpr int GSDelayTimes = 116;  ///< values of the delay time centre, 0 to 115

/// Milliseconds of the GS delay time centre for a data byte; the nearest one for a byte out of range.
[[nodiscard]] double GSDelayTimeMs(int index) noexcept;
/// The data byte whose time comes nearest from below, in the range of musical delays (70 ms up to
/// 1000 ms); 0 if there is none.
[[nodiscard]] int GSDelayTimeIndex(int milliseconds) noexcept;

/// Guarantees delay feedback and delay time in front of the music; a song without a time gets an eighth
/// note of its first tempo. `RolandDelayFeedbackSysexEvent` and `RolandDelayTimeSysexEvent` are then
/// set, and the desk's delay controls show byte 7 of each.
void InsertDelaySysex(SongSysexs& sysexs, SysexRoutine routine);

}  // namespace Sonarello
