// Sonarello: the messages that make a part of an instrument a drum part.
#pragma once

#include "core/SongSysexs.h"
#include "core/SysexPolicy.h"

namespace Sonarello {

/// Gives each of the 16 parts one drum-part sysex in a fixed place behind the instrument's reset, in
/// ascending order: the song's own, or else a placeholder that the drum editor can fill. The
/// instrument's table and `DrumPart` of the channels follow. Does nothing for a routine without drum
/// parts.
void InsertDrumPartSysexs(SongSysexs& sysexs, SysexRoutine routine);

}  // namespace Sonarello
