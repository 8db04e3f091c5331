// Sonarello: programs and banks in the shape that an instrument needs.
#pragma once

#include <functional>

#include "core/ChannelStock.h"
#include "core/Song.h"

namespace Sonarello {

/// Moves every program change in front of the setup window into it: behind 300/384 of a quarter note,
/// staggered by channel, so that sounds are set after the resets. Songs that end at tick 999 are left
/// as they are. The remote sequence's program stays.
void MovePrograms(Song& song);

/// Gives an active channel 10 without program the standard kit, and enters it into the index.
void EnsureDrumProgram(Song& song, TProgramIndex& programs);

/// Drops doubled program changes (less than 5 ticks in front of the next one). With `repair` every
/// sound change then reads bank MSB, bank LSB, program, 2 ticks apart: superfluous banks go, missing
/// ones come in with the values of `missing`, 0 without it.
void NormalisePrograms(Song& song, TProgramIndex& programs, bool repair,
                       const std::function<TBank(const Song&, int)>& missing = {});

}  // namespace Sonarello
