// Sonarello: the equalizers of the parts of Korg and Roland instruments.
#pragma once

#include "core/SongSysexs.h"
#include "core/SysexPolicy.h"

namespace Sonarello {

/// Gives each of the 16 parts one equalizer message between the instrument's reset and the first note,
/// in ascending order, and fills the instrument's table with them. What the song sets is taken over and
/// removed where it stood; a part that the song leaves alone gets the instrument's default.
void SearchPartEQSysex(SongSysexs& sysexs, SysexRoutine routine);

}  // namespace Sonarello
