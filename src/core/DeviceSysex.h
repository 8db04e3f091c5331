// Sonarello: the messages that an instrument wants at the start of a song.
#pragma once

#include "core/SongSysexs.h"
#include "core/SysexPolicy.h"

namespace Sonarello {

/// Guarantees the reset or setup message that an Insert routine names. A song that has it in its first
/// eight beats keeps it where it is. Sets `SysexTrack`; a reset sets `ResetPosition`.
void InsertDeviceSysex(SongSysexs& sysexs, SysexRoutine routine);

/// Guarantees the insert switches of a Motif in front of the music and fills `MotifInsertsArray`.
void InsertMotifInsertsSysex(SongSysexs& sysexs, SysexRoutine routine);

}  // namespace Sonarello
