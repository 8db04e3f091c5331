#include "SongFacts.h"

#include <fmt/format.h>

#include <algorithm>
#include <tuple>

#include "core/EventList.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr std::size_t BankMSB = 0;
constexpr std::size_t BankLSB = 32;
constexpr double MicrosPerMinute = 60'000'000.0;

std::optional<DeskValue> ValueOf(const TCtrl& controller) {
  if (controller.Value == NoControllerValue) return std::nullopt;
  return DeskValue{controller.Value, controller.Event != nullptr && controller.Event->IsRemoved()};
}

ChannelFacts FactsOfChannel(const SongDesk& desk, std::size_t c) {
  const Song& song = desk.song;
  const TMidiChannelData& data = song.MidiData[c];
  ChannelFacts facts;
  facts.Channel = static_cast<int>(c) + 1;
  facts.Active = data.Active;
  facts.Output = data.MidiChannel + 1;
  facts.Route = song.MidiOutIndex[c];
  facts.BankMSB = ValueOf(data.CtrlArray[BankMSB]);
  facts.BankLSB = ValueOf(data.CtrlArray[BankLSB]);
  if (data.Patch >= 0) facts.Program = DeskValue{data.Patch, false};
  if (data.Active && data.Patch >= 0) facts.Sound = desk.names.CurrentName(static_cast<int>(c));
  facts.DrumPart = data.DrumPart;
  facts.Notes = data.ActiveNotes;
  for (std::size_t i = 0; i < DeskControllers.size(); ++i)
    facts.Controllers[i] = ValueOf(data.CtrlArray[static_cast<std::size_t>(DeskControllers[i])]);
  return facts;
}

std::string TitleOf(const Song& song) {
  if (!song.SequenceNameOrg.empty()) return song.SequenceNameOrg;
  return song.MidiTrack.empty() ? std::string() : song.MidiTrack[0].TrkName;
}

bool HasNotes(const Song& song) {
  return std::any_of(song.MidiData.begin(), song.MidiData.end(),
                     [](const TMidiChannelData& channel) { return channel.ActiveNotes > 0; });
}

/// Measures that the song reaches into. A song that ends on the first tick of a measure does not.
int MeasureCount(const Song& song) {
  const std::string end = SongPositionToMTC(song, song.MaxSongPosition);
  const std::size_t point = end.find('.');
  const bool onFirstTick = end.find_first_not_of('0', point + sizeof(".01.") - 1) == end.npos &&
                           end.compare(point, sizeof(".01.") - 1, ".01.") == 0;
  return song.MaxSongPositionMeasure - (onFirstTick ? 1 : 0);
}

std::optional<CountInFacts> CountInOf(const Song& song) {
  if (song.CountInIdx < 0) return std::nullopt;
  const TCountIn& entry = song.CountInArray[static_cast<std::size_t>(song.CountInIdx)];
  // The analysis counts the note that ends the pattern; the count-in's own lie from start to end.
  const auto notes = std::count_if(
      entry.Notes.begin(), entry.Notes.begin() + entry.NoteCount, [&](const TypMidiEvent* note) {
        return note != nullptr && note->Position >= entry.Start && note->Position <= entry.End;
      });
  return CountInFacts{song.CountInIdx + 1, static_cast<int>(notes), PlaceOf(song, entry.Start),
                      PlaceOf(song, entry.End)};
}

}  // namespace

Place PlaceOf(const Song& song, std::int32_t tick) {
  return {tick, SongPositionToMTC(song, tick), TimeOfPosition(song, tick)};
}

std::string TimeText(std::int32_t milliseconds) {
  return fmt::format("{}:{:02}.{:03}", milliseconds / 60000, milliseconds / 1000 % 60,
                     milliseconds % 1000);
}

SongFacts GatherFacts(const SongDesk& desk) {
  const Song& song = desk.song;
  SongFacts facts;
  facts.Title = TitleOf(song);
  facts.FormatRead = song.MidiFileOrgFormat;
  facts.FormatWorking = song.MidiFileFormat;
  facts.Tracks = song.NumberOfSourceTracks;
  facts.TimeBase = song.SourceTimeBase;
  // The tables end in spare entries behind the song.
  for (const TTempo& tempo : song.SourceTempo)
    if (tempo.SongPosition <= song.MaxSongPosition)
      facts.Tempi.push_back({PlaceOf(song, tempo.SongPosition), MicrosPerMinute / tempo.TempoLongInt});
  for (const TTimeSign& signature : song.TimeSignature)
    if (signature.SongPosition <= song.MaxSongPosition)
      facts.Signatures.push_back(
          {PlaceOf(song, signature.SongPosition), signature.Numerator, signature.Denominator});
  facts.Measures = MeasureCount(song);
  facts.End = {song.MaxSongPosition, SongPositionToMTC(song, song.MaxSongPosition),
               song.MaxSongPositionTime};
  if (HasNotes(song)) facts.FirstNote = PlaceOf(song, song.TickPositionOfFirstNote);
  facts.CountIn = CountInOf(song);
  for (std::size_t c = 0; c < ChannelCount; ++c) facts.Channels[c] = FactsOfChannel(desk, c);
  return facts;
}

std::vector<TChange> ChangesInOrder(const SongDesk& desk) {
  std::vector<TChange> changes = desk.changes.Changes();
  std::stable_sort(changes.begin(), changes.end(), [](const TChange& a, const TChange& b) {
    return std::tie(a.Track, a.Position) < std::tie(b.Track, b.Position);
  });
  return changes;
}

std::string KindText(ChangeKind kind) {
  switch (kind) {
    case ChangeKind::Dropped: return Text("entfernt", "dropped");
    case ChangeKind::Inserted: return Text("eingefügt", "inserted");
    case ChangeKind::Moved: return Text("verschoben", "moved");
    case ChangeKind::Rewritten: return Text("geändert", "rewritten");
  }
  return {};
}

}  // namespace Sonarello
