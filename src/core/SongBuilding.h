// Sonarello: from the events of a file to the lists of a song.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/MidiFunctions.h"
#include "core/SmfScan.h"

namespace Sonarello {

/// The reader tells a failed allocation in English in both languages; this is deliberate.
inline constexpr const char* ReaderOutOfMemory = "Error allocating memory!";

/// The reader's second pass: appends each event to its track and analyses what must be seen as it
/// comes. Raises EMidiError, not yet shown, for a data byte above 127 and when there is no memory.
class SongBuilder {
 public:
  SongBuilder(Song& s, const Options& o, std::span<const TMidiRouting> r,
              std::vector<TMidiFunctions::TSourceSysex>& found)
      : song(s), options(o), routes(r), sysexes(found) {}

  /// Lays out `tracks` tracks with their heads and empty tables. `lastTick` is the greatest position of
  /// an event; `tempi` and `signatures` tell how many entries the tables need for the file's metas.
  void Prepare(std::int32_t tracks, bool unmix, std::int32_t lastTick, std::int32_t tempi,
               std::int32_t signatures);
  /// The events that follow stand in this chunk (from 0).
  void BeginChunk(std::int32_t chunk);
  void AddChannelEvent(const SmfEvent& event);
  /// A sysex, an escape or a meta event.
  void AddLongEvent(const SmfEvent& event);
  void DropRealtime(const SmfEvent& event);
  /// Ends the tracks and closes the tables.
  void Finish();

 private:
  TMyTrack& TrackAt(std::int32_t index) { return song.MidiTrack[static_cast<std::size_t>(index)]; }
  PtrMidiEvent Take();
  void Link(std::int32_t track, PtrMidiEvent node);
  [[nodiscard]] std::int32_t StoredPosition(std::int32_t position);
  PtrMidiEvent AddLong(std::int32_t track, const SmfEvent& event,
                       std::span<const std::uint8_t> payload);

  void CollectController(PtrMidiEvent e);
  void CollectProgram(PtrMidiEvent e);
  void CollectTrackChannel(TMyTrack& track, int channel);

  void AddSysex(const SmfEvent& event);
  void AddMeta(const SmfEvent& event);
  [[nodiscard]] bool IsDropped(const SmfEvent& event);
  [[nodiscard]] std::int32_t TrackOfMeta(std::uint8_t type) const;
  void AddText(const SmfEvent& event);
  void AddTrackName(const SmfEvent& event);
  void AddTempo(const SmfEvent& event);
  void AddTimeSignature(const SmfEvent& event);
  void AddKeySignature(const SmfEvent& event);
  void AddSequencerSpecific(const SmfEvent& event);
  void NoteChord(PtrMidiEvent e, std::int32_t track);
  void LogDropped(const SmfEvent& event, const char* germanWhy, const char* englishWhy);
  void LogOddities();
  void BringTracksIntoOrder();

  Song& song;
  const Options& options;
  std::span<const TMidiRouting> routes;
  std::vector<TMidiFunctions::TSourceSysex>& sysexes;

  bool unmix = false;
  std::int32_t chunk = 0;
  std::int32_t tempi = 0;               ///< entries of `SourceTempo` in use
  std::int32_t signatures = 0;          ///< entries of `TimeSignature` in use
  std::int32_t remoteStart = NoRemote;  ///< tick of the remote sequence's bank select on this chunk
  std::vector<std::uint8_t> unordered;  ///< per track: an event stands in front of an earlier one
  std::vector<std::int32_t> implicitNoteOffs;  ///< per track: note-ons of velocity 0
  bool wrapped = false;                        ///< a position left the range of the song

  static constexpr std::int32_t NoRemote = -100;
};

}  // namespace Sonarello
