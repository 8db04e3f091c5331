// Sonarello: the operations of the song core on one song.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/EventList.h"
#include "core/Options.h"
#include "core/Ports.h"
#include "core/Song.h"

namespace Sonarello {

class SmfCursor;

/// The note-offs that pairing found without a note-on. They are told to the change log as well.
struct TStrayNoteOffs {
  Song& Owner;
  std::int32_t Track = 0;  ///< index of the track that is paired
  std::vector<TRemoval> Found;
};

/// Works on a song that it is handed. Its operations stand in the files named after their topics:
/// reader, time map, note integrity, sysex analysis, device sysex, first values.
/// All run on the main thread with the player stopped, unless they say otherwise.
class TMidiFunctions {
 public:
  TMidiFunctions(Song& s, const Options& o, const IRoutes& r, IMessages& m, const SongHooks& h)
      : song(s), options(o), routes(r), messages(m), hooks(h) {}

  /// The file's bytes, from before `DecodeMidiData` to behind it.
  std::vector<std::uint8_t> SourceData;

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

  // --- Time map (TimeMap.cpp, TimeTables.cpp)

  /// Completes the tempo and signature tables (in order of time, a first entry at 0, halves as
  /// quarters), builds `TimeZone`, computes the `MaxSongPosition` values. Times that leave 32 bits
  /// saturate.
  void SetTimeZones();
  /// Recomputes times, measures and beats of the standing table after tempo values changed.
  void UpdateTimeZones();
  /// Sets `TimePosition` of all events, `SongLength` and `TimePositionOfFirstNote`; then the times of
  /// the main instrument's effect memory. Where a zone begins, a time may be 1 ms behind its
  /// predecessor's, as zones and events are rounded apart.
  void SetTimePositions();
  /// Sets `SongLength` and `TimePositionOfFirstNote` alone, from the song's end, where all tracks end.
  void SetSongLength();
  /// Rebuilds the tempo and signature tables from the metas of all tracks, in the order in which they
  /// are met.
  void ReloadTempoTimeSign();
  /// `ReloadTempoTimeSign`, `SetTimeZones`, `BackupTempo`, `SetTimePositions`; the sentinel zones end
  /// 1 ms behind the song.
  void UpdateTimeZoneData();

  // --- Note integrity (NoteIntegrity.cpp, NoteOverlaps.cpp). Tracks with `TrkIgnore` and events
  // --- marked as removed are passed over.

  /// Counts note-ons against note-offs per track, channel and key. True if the song is clean; else the
  /// text on the first faulty track goes to `MessageToReturn`, and into "_NoteOnOff.txt" in `DataPath`
  /// if that can be written. Needs the time map.
  bool CheckForNoteOnsNoteOffs(std::string& MessageToReturn);
  /// Lengthens paired notes shorter than `MinNoteLength`, at most to the song's end. Needs the time
  /// map.
  void CheckForZeroLength();
  /// Repairs doubled notes (two starts of a key within a tick) and overlapping ones, and tells of
  /// doubled note-offs, each once; the user may then end the search. Counts go to `FoundDoubleNotes`
  /// and `FoundOverlappedNotes`. What is repaired stays paired as SetNoteOnOffPointers pairs.
  void RemoveNoteOverlaps();
  /// Pairs the notes of a list, first in first out; what an earlier pairing left is forgotten.
  /// Note-offs without note-on are neutralised and, if asked for, gathered in `Strays`. False if more
  /// than 32 notes of one key are open at once; the list is then paired up to that note-on.
  static bool SetNoteOnOffPointers(PtrMidiEvent FirstEvent, TStrayNoteOffs* Strays = nullptr);
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
  void FitSysexs(int instrumValue);

  Song& song;
  const Options& options;
  const IRoutes& routes;
  IMessages& messages;
  const SongHooks& hooks;
};

// --- Position texts (PositionTexts.cpp). A position reads measure.beat.ticks, measures and beats
// --- counted from 1, ticks from 0. They need the time map; without one every position reads 1, 1, 0.
//
// Text and position lead back to each other at every tick of a song in halves, quarters and eighths.
// They do not for beats of a whole note, for finer beats that are no whole number of ticks or that
// begin too late in a quarter to end inside it, and for the last ticks of eighths when quarters begin
// inside an eighth.

/// Text of a position in ticks, such as "001.01.000".
[[nodiscard]] std::string SongPositionToMTC(const Song& song, std::int32_t SongPos);
/// Position in ticks, below `MaxSongPosition`, or -1 if there is no such place in the song. Ticks from
/// 0 to `SourceTimeBase`; beats may lie beyond the measure.
[[nodiscard]] std::int32_t MTCToSongPosition(const Song& song, std::int32_t Measure, std::int32_t Beat,
                                             std::int32_t Ticks);
/// The same, for places at or behind the song's end as well.
[[nodiscard]] std::int32_t MTCToSongPositionEx(const Song& song, std::int32_t Measure,
                                               std::int32_t Beat, std::int32_t Ticks);
/// Milliseconds at a position in ticks, saturated to 32 bits.
[[nodiscard]] std::int32_t TimeOfPosition(const Song& song, std::int32_t SongPos);
/// Position text of the event list; the same as `SongPositionToMTC` at every tick.
[[nodiscard]] std::string TicksToStr(const Song& song, std::int32_t SongPos);
/// Minutes, seconds and thousandths of a time in ms, such as "000:12.345", with a comma in German.
[[nodiscard]] std::string TimeToStr(std::int32_t Milliseconds);
/// Name of a key from 0 to 127, such as "C3" for 60.
[[nodiscard]] std::string NoteName(int key);

}  // namespace Sonarello
