// Sonarello: the operations of the song core on one song.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/Options.h"
#include "core/Ports.h"
#include "core/Song.h"

namespace Sonarello {

class SmfCursor;

/// Works on a song that it is handed. Its operations stand in the files named after their topics:
/// reader, time map, note integrity, sysex analysis, device sysex, first values.
/// All run on the main thread with the player stopped, unless they say otherwise.
class TMidiFunctions {
 public:
  TMidiFunctions(Song& s, const Options& o, const IRoutes& r, IMessages& m, const SongHooks& h)
      : song(s), options(o), routes(r), messages(m), hooks(h) {}

  std::vector<std::uint8_t> SourceData;  ///< the file's bytes, from before `DecodeMidiData` to behind it

  /// A sysex of the file and the index of its track.
  struct TSourceSysex {
    std::int32_t Track = 0;
    PtrMidiEvent Event = nullptr;
  };
  /// Every 0xF0 event that the reader kept, in track order and in list order inside a track. Filled by
  /// `DecodeMidiData` for `CheckSysexs`, so that the analysis costs no walk over the whole song.
  std::vector<TSourceSysex> SourceSysexes;

  // --- Reader (MidiFileReader.cpp, Markers.cpp, CountIn.cpp)

  /// Turns `SourceData` (a Standard MIDI File, SMF 1.0) into the song's store and has its sysexes
  /// analysed. Every failure is shown and raised as EMidiError with the same text; the store is then
  /// half built and wants `ClearMidiMemory`.
  void DecodeMidiData();

  // --- Time map (TimeMap.cpp)

  /// Completes the tempo and signature tables, builds `TimeZone`, computes the `MaxSongPosition` values.
  void SetTimeZones();
  /// Recomputes times, measures and beats of the standing table after tempo values changed.
  void UpdateTimeZones();
  /// Sets `TimePosition` of all events, `SongLength` and `TimePositionOfFirstNote`.
  void SetTimePositions();
  /// Rebuilds the tempo and signature tables from the metas of all tracks.
  void ReloadTempoTimeSign();
  /// `ReloadTempoTimeSign`, `SetTimeZones`, `BackupTempo`, `SetTimePositions`; the sentinel zones end
  /// 1 ms behind the song.
  void UpdateTimeZoneData();

  // --- Note integrity (NoteIntegrity.cpp)

  /// Counts note-ons against note-offs per track, channel and key. True if the song is clean; else the
  /// text goes to `MessageToReturn` and into "_NoteOnOff.txt" in `DataPath`.
  bool CheckForNoteOnsNoteOffs(std::string& MessageToReturn);
  /// Lengthens paired notes shorter than `MinNoteLength`.
  void CheckForZeroLength();
  /// Repairs doubled and overlapping notes; counts go to `FoundDoubleNotes`, `FoundOverlappedNotes`.
  void RemoveNoteOverlaps();
  /// Pairs the notes of a list, first in first out. Note-offs without note-on are neutralised. False if
  /// more than 32 notes of one key are open at once.
  static bool SetNoteOnOffPointers(PtrMidiEvent FirstEvent);
  std::int32_t FoundDoubleNotes = 0;
  std::int32_t FoundOverlappedNotes = 0;

  // --- Sysex analysis and first values (SysexAnalysis.cpp, FirstValues.cpp)

  /// Fits the song's sysexes to the main instrument, names the song, makes the extra sysex track; each
  /// as its option says. Raises EMidiError when there is no memory.
  void CheckSysexs();
  /// Fills the channels' first controllers and programs.
  void SetFirstValues();

 private:
  void DecodeHeader(SmfCursor& in);
  void DecodeTracks(SmfCursor& in);

  Song& song;
  const Options& options;
  const IRoutes& routes;
  IMessages& messages;
  const SongHooks& hooks;
};

// --- Position texts (TimeMap.cpp). A position reads measure.beat.ticks, measures and beats from 1.

/// Text of a position in ticks, such as "001.01.000". Needs the time map.
[[nodiscard]] std::string SongPositionToMTC(const Song& song, std::int32_t SongPos);
/// Position in ticks, or -1 if there is no such place in the song. Ticks from 0 to `SourceTimeBase`.
[[nodiscard]] std::int32_t MTCToSongPosition(const Song& song, std::int32_t Measure, std::int32_t Beat,
                                             std::int32_t Ticks);
/// The same, for places at or behind the song's end as well.
[[nodiscard]] std::int32_t MTCToSongPositionEx(const Song& song, std::int32_t Measure, std::int32_t Beat,
                                               std::int32_t Ticks);
/// Milliseconds at a position in ticks, saturated to 32 bits.
[[nodiscard]] std::int32_t TimeOfPosition(const Song& song, std::int32_t SongPos);
/// Position text of the event list; the same as `SongPositionToMTC` at every tick.
[[nodiscard]] std::string TicksToStr(const Song& song, std::int32_t SongPos);
/// Name of a key from 0 to 127, such as "C3".
[[nodiscard]] std::string NoteName(int key);

}  // namespace Sonarello
