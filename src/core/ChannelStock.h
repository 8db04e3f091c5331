// Sonarello: what each channel holds, gathered in one walk over the song.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "core/Song.h"

namespace Sonarello {

/// A program change or bank select and the track it stands on.
struct TProgramEvent {
  PtrMidiEvent Event = nullptr;
  std::int32_t Track = 0;
};

/// Values of the two bank selects of a sound change, 0-127.
struct TBank {
  std::uint8_t MSB = 0;
  std::uint8_t LSB = 0;
};

/// The program changes and bank selects (controllers 0 and 32) of each channel in the order of their
/// positions, whichever tracks hold them.
using TProgramIndex = std::array<std::vector<TProgramEvent>, ChannelCount>;

/// Sets `Active`, `ActiveNotes` and the velocities of every channel and returns the program index.
/// Tracks held out of the song's working, removed events and the remote sequence do not count.
TProgramIndex TakeStock(Song& song);

/// Finds the remote sequence of a song player at the head of a track and sets the three `Prompta`
/// events: bank select MSB 77, LSB and program on channel 16 within the first 30 ticks.
void FindRemoteSequence(Song& song);

/// Inserts placeholders for the eleven controllers of a full mixer that an active channel lacks. They
/// have `DLength` 0: a fader makes them real, until then they are neither played nor saved.
void InsertDefaultControllers(Song& song);

}  // namespace Sonarello
