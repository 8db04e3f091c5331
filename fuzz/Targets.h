// Sonarello: what the fuzz targets do with an input. Each raises Fault when the input shows a fault.
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>

namespace Sonarello::Fuzz {

/// A property that does not hold; what() says which.
class Fault : public std::logic_error {
 public:
  using std::logic_error::logic_error;
};

using Input = std::span<const std::uint8_t>;

/// Four bytes that choose instrument, options and format, then a file: it is opened, saved, opened and
/// saved again. A refusal says why and leaves a store that opens the next song; a song is sound; what
/// was saved opens; saving comes to rest.
void FuzzSong(Input input);

/// One byte that chooses the routes, then the text of an instrument-name meta.
void FuzzMarker(Input input);

/// A byte that chooses the layout of a sound list and one that sorts, then a file of the user's: its
/// rows are in range, and the list written back reads the same.
void FuzzList(Input input);

/// A registry text file: it is good or refused whole, and what a good one sets is exported and imported
/// unchanged.
void FuzzRegistry(Input input);

/// A time base, tempi, signatures and places: positions go to texts and back.
void FuzzPosition(Input input);

/// A byte that chooses: a sysex is explained as by trying rule by rule; or a text of rules, up to a
/// zero, is read, and the bytes behind that are explained by them.
void FuzzExplain(Input input);

/// A number of steps of a user in the event list, the steps, then the file of the song: the song stays
/// sound, the rows are those of a list read anew, and what is taken back leaves no trace.
void FuzzEvents(Input input);

}  // namespace Sonarello::Fuzz
