#include "tools/RemoveCountIns.h"

#include <cstdlib>
#include <deque>
#include <map>
#include <span>

#include "core/CountIn.h"
#include "core/EventList.h"
#include "core/Texts.h"
#include "instruments/InstrumentArray.h"

namespace Sonarello {

namespace {

constexpr int DrumChannel = 9;
constexpr std::size_t MostCandidates = 7;
constexpr std::size_t FewestCandidates = 2;
constexpr std::int32_t SmallestSong = 999;  ///< ticks

/// Ticks by which a count-in note may miss its beat: as much as the analysis allows a step, less where
/// the time base is coarse.
std::int32_t Tolerance(const Song& song) { return std::min(14, song.SourceTimeBase / 8); }

bool IsNear(std::int32_t ticks, std::int32_t target, std::int32_t tolerance) {
  return std::abs(ticks - target) <= tolerance;
}

/// True if a position is near a multiple of a beat.
bool IsOnBeat(std::int32_t position, std::int32_t beat, std::int32_t tolerance) {
  const std::int32_t off = position % beat;
  return off <= tolerance || beat - off <= tolerance;
}

/// True for notes one beat apart, each on a beat.
bool CountsBeats(const std::vector<PtrMidiEvent>& notes, std::int32_t beat, std::int32_t tolerance) {
  if (beat <= 2 * tolerance) return false;
  for (std::size_t n = 0; n < notes.size(); ++n) {
    if (!IsOnBeat(notes[n]->Position, beat, tolerance)) return false;
    if (n > 0 && !IsNear(notes[n]->Position - notes[n - 1]->Position, beat, tolerance)) return false;
  }
  return true;
}

std::int64_t MeasureLength(const Song& song, const TTimeSign& signature) {
  return std::int64_t{song.SourceTimeBase} * 4 * signature.Numerator / signature.Denominator;
}

bool IsNote(const TypMidiEvent& e, Status kind) { return e.Kind() == kind && e.DLength == 3; }

}  // namespace

bool TRemoveCountIns::RemoveCountIn() {
  const bool radical = options.RemoveCountInRadical && !options.QuickTakerPresent;
  switch (song.TimeSignature.empty() ? 0 : song.TimeSignature[0].Numerator) {
    case 2: return Measure24(radical);
    case 3: return Measure34(radical);
    case 4: return Measure44(radical);
    case 6: return Measure68(radical);
    default: return false;
  }
}

bool TRemoveCountIns::Remove(int numerator, bool radical) {
  if (song.TimeSignature.empty() || song.TimeSignature[0].Numerator != numerator) return false;
  // Clicks that nothing follows are the song itself.
  if (song.CountInIdx != DrumChannel || song.TickPositionOfFirstNote >= song.MaxSongPosition)
    return false;
  const std::vector<PtrMidiEvent> notes = Candidates();
  if (notes.size() < FewestCandidates || !MatchesBeats(notes)) return false;

  const TSpan measures = MeasuresFrom(notes.front()->Position);
  DeleteNotes(notes);
  if (radical && measures.End > measures.Start) CutMeasures(measures);
  ForgetCountIn();
  return true;
}

std::vector<PtrMidiEvent> TRemoveCountIns::Candidates() const {
  const TCountIn& entry = song.CountInArray[DrumChannel];
  std::vector<PtrMidiEvent> notes;
  for (const PtrMidiEvent note :
       std::span(entry.Notes).first(static_cast<std::size_t>(entry.NoteCount)))
    if (note != nullptr && notes.size() < MostCandidates && IsNote(*note, NoteOn) &&
        note->Value[0] == entry.Key && note->Position < song.TickPositionOfFirstNote)
      notes.push_back(note);
  return notes;
}

bool TRemoveCountIns::MatchesBeats(const std::vector<PtrMidiEvent>& notes) const {
  const std::int32_t base = song.SourceTimeBase;
  const std::int32_t tolerance = Tolerance(song);
  // Eighths may be counted one by one or by three; a 2/2 is counted in quarters, as it is shown.
  if (song.TimeSignature[0].Denominator == 8)
    return CountsBeats(notes, base / 2, tolerance) || CountsBeats(notes, base * 3 / 2, tolerance);
  return CountsBeats(notes, base, tolerance);
}

void TRemoveCountIns::DeleteNotes(const std::vector<PtrMidiEvent>& notes) {
  const std::uint8_t key = notes.front()->Value[0];
  const std::int32_t last = notes.back()->Position;
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t) DeleteNotesOn(t, notes, key, last);
}

/// A note-off belongs to the oldest open note of its key. The notes are freed as they are met, so that
/// their common key and the tick of the last one are handed on.
void TRemoveCountIns::DeleteNotesOn(std::int32_t index, const std::vector<PtrMidiEvent>& notes,
                                    std::uint8_t key, std::int32_t last) {
  TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(index)];
  std::deque<bool> open;  // per sounding note of the key: it is one of the count-in
  std::size_t wanted = 0;
  for (PtrMidiEvent next = nullptr, e = track.TrkFirstEvent; e != nullptr; e = next) {
    next = e->NextEvent;
    if (e->Position > last && wanted == 0) return;
    if (e->Channel() != DrumChannel || e->Value[0] != key) continue;
    bool goes = false;
    if (IsNote(*e, NoteOn)) {
      goes = std::find(notes.begin(), notes.end(), e) != notes.end();
      open.push_back(goes);
      wanted += goes;
      track.TrkNoteOnCnt -= goes;
    } else if (IsNote(*e, NoteOff) && !open.empty()) {
      goes = open.front();
      open.pop_front();
      wanted -= goes;
    }
    if (!goes) continue;
    LogChange(song, ChangeKind::Dropped, index, *e, "Der Vorzähler wird entfernt",
              "The count-in is removed");
    Sonarello::Remove(song, track, e);
  }
}

/// The measures of a count-in that starts at a position. Empty if the song begins in the count-in's own
/// measure, or if the signature changes on the way, as no whole measures can be told then.
TRemoveCountIns::TSpan TRemoveCountIns::MeasuresFrom(std::int32_t start) const {
  const std::int32_t tolerance = Tolerance(song);
  const std::int32_t first = song.TickPositionOfFirstNote;
  std::int64_t anchor = 0;
  std::int64_t length = MeasureLength(song, song.TimeSignature[0]);
  for (const TTimeSign& signature : song.TimeSignature) {
    if (signature.SongPosition > start + tolerance) break;
    anchor = signature.SongPosition;
    length = MeasureLength(song, signature);
  }
  if (length <= 0) return {};
  const auto measureAt = [&](std::int64_t position) {
    return static_cast<std::int32_t>(anchor + (position + tolerance - anchor) / length * length);
  };
  const TSpan span = {measureAt(start), measureAt(first)};
  for (const TTimeSign& signature : song.TimeSignature)
    if (signature.SongPosition > span.Start && signature.SongPosition < span.End) return {};
  return span;
}

void TRemoveCountIns::CutMeasures(TSpan span) {
  LogText(song, ChangeKind::Dropped, 0, span.Start,
          "Takte, " + std::to_string(span.End - span.Start) + " Ticks",
          "Measures, " + std::to_string(span.End - span.Start) + " ticks",
          "Die Takte des Vorzählers werden entfernt; was folgt, rückt nach vorn",
          "The count-in's measures are removed; what follows moves to the front");
  for (TMyTrack& track : song.MidiTrack) DropNotesInside(track, span);
  song.MaxSongPosition = std::max(span.Moved(song.MaxSongPosition), SmallestSong);
  for (TMyTrack& track : song.MidiTrack)
    ForEachEvent(track, [&](PtrMidiEvent e) {
      e->Position = e->IsEndOfTrack() ? song.MaxSongPosition : span.Moved(e->Position);
    });
  for (const TInstrument& instrument : InstrumentArray)
    if (TMyTrack* effects = song.DSPTrackOf(instrument.Value);
        effects != nullptr && effects->TrkFirstEvent != nullptr)
      EndTrack(song.Pool, *effects, song.MaxSongPosition);
  for (std::int32_t* position :
       {&song.TickPositionOfFirstNote, &song.TickOrgPosOfFirstNote, &song.RolandGSResetPosition})
    *position = span.Moved(*position);
}

/// Notes that both start and end in the cut measures would be left as clicks of no length.
void TRemoveCountIns::DropNotesInside(TMyTrack& track, TSpan span) {
  const auto index = static_cast<std::int32_t>(&track - song.MidiTrack.data());
  std::map<int, std::deque<PtrMidiEvent>> open;  // by channel and key
  for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr && e->Position < span.End; e = e->NextEvent) {
    if (!IsNote(*e, NoteOn) && !IsNote(*e, NoteOff)) continue;
    auto& notes = open[e->Channel() * KeyCount + e->Value[0]];
    if (e->Kind() == NoteOn) {
      notes.push_back(e);
    } else if (!notes.empty()) {
      const PtrMidiEvent on = notes.front();
      notes.pop_front();
      if (on->Position < span.Start) continue;
      --track.TrkNoteOnCnt;
      for (const PtrMidiEvent end : {on, e}) {
        LogChange(song, ChangeKind::Dropped, index, *end, "Steht in den Takten des Vorzählers",
                  "Stands in the count-in's measures");
        Neutralise(end);
      }
    }
  }
}

void TRemoveCountIns::ForgetCountIn() {
  const std::int32_t first = song.TickPositionOfFirstNote;
  BeginCountIn(song);
  song.TickPositionOfFirstNote = first;
}

}  // namespace Sonarello
