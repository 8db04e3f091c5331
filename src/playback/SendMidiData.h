// Sonarello: how the desk's operations send short messages past the song's flow.
#pragma once

#include <cstdint>
#include <functional>

namespace Sonarello {

/// Sends a short message on a route. Wired to the player, which knows the notes that sound; it is
/// called with the song's gate held, and what a port refuses is lost without a word.
using TSendMidiData =
    std::function<void(int MidiOutIndex, std::uint8_t Command, std::uint8_t Data1, std::uint8_t Data2)>;

/// Ends the notes that the player started on a route and a wire channel (0-15) and forgets them. Called
/// with the gate held, in front of controllers 120 and 123, which end the sound but not the
/// book-keeping.
using TEndNotes = std::function<void(int MidiOutIndex, int MidiChannel)>;

inline constexpr std::uint8_t AllSoundOffController = 120;
inline constexpr std::uint8_t AllNotesOffController = 123;

}  // namespace Sonarello
