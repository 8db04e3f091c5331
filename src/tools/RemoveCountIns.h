// Sonarello: a count-in on the drum channel is taken out.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "core/Options.h"
#include "core/Song.h"

namespace Sonarello {

/// Works on a song as the reader leaves it: the count-in is analysed, notes are not paired yet, the
/// time map is not built. After a removal the count-in is forgotten (`CountInIdx` -1).
class TRemoveCountIns {
 public:
  TRemoveCountIns(Song& s, const Options& o) : song(s), options(o) {}

  /// Takes out the count-in by the routine of the first time signature; other signatures than those
  /// below keep theirs. Its measures go as well with `RemoveCountInRadical`, except for a Quick-Taker,
  /// which counts on the song's times. True if a count-in was taken out.
  bool RemoveCountIn();

  // One routine per signature. Each deletes the notes of a count-in on channel 10: up to seven notes of
  // one key, one per beat, in front of `TickPositionOfFirstNote`. With `radical` the measures from the
  // one where the count-in starts up to the song's first measure go as well: what follows moves to the
  // front, what else stands in them moves to their start, in order, and their notes are dropped.
  // The tempo and signature tables then want `ReloadTempoTimeSign`.
  bool Measure24(bool radical) { return Remove(2, radical); }
  bool Measure34(bool radical) { return Remove(3, radical); }
  bool Measure44(bool radical) { return Remove(4, radical); }
  bool Measure68(bool radical) { return Remove(6, radical); }

 private:
  struct TSpan {
    std::int32_t Start = 0;  ///< tick of the first measure that goes
    std::int32_t End = 0;    ///< tick of the first measure that stays
    /// Where a position of the old song stands in the new one.
    [[nodiscard]] std::int32_t Moved(std::int32_t position) const {
      if (position >= End) return position - (End - Start);
      return std::min(position, Start);
    }
  };

  bool Remove(int numerator, bool radical);
  [[nodiscard]] std::vector<PtrMidiEvent> Candidates() const;
  [[nodiscard]] bool MatchesBeats(const std::vector<PtrMidiEvent>& notes) const;
  void DeleteNotes(const std::vector<PtrMidiEvent>& notes);
  void DeleteNotesOn(std::int32_t track, const std::vector<PtrMidiEvent>& notes, std::uint8_t key,
                     std::int32_t last);
  [[nodiscard]] TSpan MeasuresFrom(std::int32_t start) const;
  void CutMeasures(TSpan span);
  void DropNotesInside(TMyTrack& track, TSpan span);
  void ForgetCountIn();

  Song& song;
  const Options& options;
};

}  // namespace Sonarello
