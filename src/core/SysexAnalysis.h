// Sonarello: which of a song's sysexes are foreign to an instrument, and which belong to its parts.
#pragma once

#include "core/SongSysexs.h"
#include "core/SysexPolicy.h"

namespace Sonarello {

/// Drops the sysexes that one of the given Remove routines names.
void RemoveSysexs(SongSysexs& sysexs, std::span<const SysexRoutine> routines);

/// Notes each part's organ-flute settings (drawbars) in the instrument's table; the last of a part
/// counts.
void SearchOrganFluteSysex(SongSysexs& sysexs, int instrumValue);

}  // namespace Sonarello
