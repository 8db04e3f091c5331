#include "core/CountIn.h"

#include <algorithm>
#include <cstdlib>

namespace Sonarello {

namespace {

constexpr std::int32_t Tolerance = 15;    ///< ticks by which a step may miss the beat
constexpr std::uint8_t ClickPatch = 119;  ///< a percussive click opens no song
constexpr int DrumChannel = 9;

/// A step of half a beat or a beat; in a signature of eighths the beat has three of them.
bool IsRegular(const Song& song, std::int32_t step) {
  const std::int32_t base = song.SourceTimeBase;
  const std::int32_t beat = song.TimeSignature[0].Denominator == 8 ? base * 3 / 2 : base;
  return std::abs(step - base / 2) < Tolerance || std::abs(step - beat) < Tolerance;
}

/// Follows the channel's equal notes from the second on until one breaks the pattern. A walk that no
/// note stops leaves the first note at the song's end.
void FollowPattern(const Song& song, TCountIn& entry) {
  const TypMidiEvent& first = *entry.Notes[0];
  for (int n = 1; n < entry.NoteCount; ++n) {
    const TypMidiEvent& note = *entry.Notes[static_cast<std::size_t>(n)];
    const TypMidiEvent& previous = *entry.Notes[static_cast<std::size_t>(n - 1)];
    if (note.Value[0] != first.Value[0]) {
      entry.FirstNotePos = note.Position;
      return;
    }
    if (!IsRegular(song, note.Position - previous.Position)) {
      entry.FirstNotePos = entry.Count == 0 ? first.Position : note.Position;
      return;
    }
    if (entry.Count == 0) {
      entry.Count = 2;
      entry.Key = note.Value[0];
      entry.Start = previous.Position;
      entry.End = note.Position;
      continue;
    }
    if (++entry.Count > song.TimeSignature[0].Numerator) {
      entry.FirstNotePos = note.Position;
      return;
    }
    entry.End = note.Position;
  }
}

void AnalyseChannel(const Song& song, TCountIn& entry) {
  if (entry.NoteCount == 0) return;
  if (entry.NoteCount >= 3 && entry.Notes[0]->Value[0] == entry.Notes[1]->Value[0])
    FollowPattern(song, entry);
  else
    entry.FirstNotePos = entry.Notes[0]->Position;
}

bool IsClick(const Song& song, std::size_t channel) {
  const PtrMidiEvent patch = song.FirstPatches[channel];
  return patch != nullptr && patch->Value[0] == ClickPatch;
}

}  // namespace

void BeginCountIn(Song& song) {
  for (TCountIn& entry : song.CountInArray) {
    entry = TCountIn{};
    entry.FirstNotePos = entry.Start = entry.End = song.MaxSongPosition;
  }
  song.CountInIdx = -1;
  song.TickPositionOfFirstNote = song.MaxSongPosition;
}

void AnalyseCountIn(Song& song) {
  for (std::size_t c = 0; c < ChannelCount; ++c) {
    TCountIn& entry = song.CountInArray[c];
    AnalyseChannel(song, entry);
    if (!IsClick(song, c))
      song.TickPositionOfFirstNote = std::min(song.TickPositionOfFirstNote, entry.FirstNotePos);
    const bool earlier =
        song.CountInIdx < 0 ||
        entry.Start < song.CountInArray[static_cast<std::size_t>(song.CountInIdx)].Start;
    if (entry.Count >= 2 && earlier) song.CountInIdx = static_cast<std::int32_t>(c);
  }
  // A count-in on another channel than the drums' is believed only in front of the song.
  if (song.CountInIdx >= 0 && song.CountInIdx != DrumChannel &&
      song.CountInArray[static_cast<std::size_t>(song.CountInIdx)].Start >=
          song.TickPositionOfFirstNote)
    song.CountInIdx = -1;
}

}  // namespace Sonarello
