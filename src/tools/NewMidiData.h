// Sonarello: a new, empty song.
#pragma once

#include <cstdint>

#include "core/MidiFunctions.h"

namespace Sonarello {

/// What the user wishes of a new song.
struct TNewSong {
  std::uint16_t SourceTimeBase = 480;  ///< ticks per quarter note, 384 or 480
  std::uint8_t Numerator = 4;          ///< signature: 2/4, 3/4, 4/4 or 6/8
  std::uint8_t Denominator = 4;
  std::uint16_t Tempo = 120;  ///< beats per minute, `MinTempo` to `MaxTempo`

  static constexpr std::uint16_t MinTempo = 20;
  static constexpr std::uint16_t MaxTempo = 300;
};

/// Builds a song that every channel can take events in: a conductor track, a track for each of the
/// sixteen channels, and the setup of the main instrument. It has four measures; a marker shortly
/// before their end keeps that length when the song is saved and read again.
class TNewMidiData {
 public:
  TNewMidiData(Song& s, TMidiFunctions& f, const IRoutes& r, IMessages& m)
      : song(s), functions(f), routes(r), messages(m) {}

  /// Fills the empty store. Raises EMidiError, after it was shown, when there is no memory; the store
  /// then wants `ClearMidiMemory`.
  void CreateMidiData(const TNewSong& wishes);

 private:
  void SetUpSong(const TNewSong& wishes);
  void SetUpTables(const TNewSong& wishes);
  void BuildTracks(const TNewSong& wishes);
  void BuildConductor(const TNewSong& wishes);
  void BuildChannel(int channel);

  Song& song;
  TMidiFunctions& functions;
  const IRoutes& routes;
  IMessages& messages;
};

}  // namespace Sonarello
