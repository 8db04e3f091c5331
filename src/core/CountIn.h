// Sonarello: where a song proper begins behind its count-in.
#pragma once

#include "core/Song.h"

namespace Sonarello {

/// Makes the count-in table empty: no notes, no finding, everything at the song's end.
void BeginCountIn(Song& song);

/// Remembers a note-on as one of the first sixteen of its channel. Notes before tick 5 are no count-in.
inline void CollectCountIn(Song& song, int track, PtrMidiEvent note) noexcept {
  TCountIn& entry = song.CountInArray[static_cast<std::size_t>(note->Channel())];
  if (entry.NoteCount == CountInNotes || note->Position < 5) return;
  if (entry.NoteCount == 0) entry.Track = track;
  entry.Notes[static_cast<std::size_t>(entry.NoteCount++)] = note;
}

/// Judges the collected notes: `CountInIdx`, `TickPositionOfFirstNote` and the channels' findings.
/// Needs the closed tempo and signature tables and `FirstPatches`.
void AnalyseCountIn(Song& song);

}  // namespace Sonarello
