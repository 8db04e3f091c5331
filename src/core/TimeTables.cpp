// The tables that the time map is made of: tempi and time signatures.
#include "core/MidiFunctions.h"
#include "core/TimeMap.h"

namespace Sonarello {

namespace {

constexpr std::int32_t StandardTempo = 500'000;  ///< microseconds per quarter: 120 beats per minute
constexpr std::uint8_t LargestDenominatorExponent = 7;

/// Gives each unused entry the values of its predecessor, a first one those of `standard`.
template <class Entry>
void CloseTable(std::vector<Entry>& table, Entry standard, std::int32_t behind) {
  for (Entry& entry : table) {
    if (entry.SongPosition == -1) entry = standard;
    standard = entry;
    standard.SongPosition = behind;
  }
}

/// A table's size for its entries: one to spare behind the song, and at least 2.
std::size_t WithSpare(std::size_t entries) { return std::max<std::size_t>(entries, 1) + 1; }

bool IsMetaWith(const TypMidiEvent& event, int type, std::size_t size) {
  return event.IsMeta(type) && event.DType == LongEvent && !event.IsRemoved() &&
         event.Meta.size() == size;
}

}  // namespace

std::uint16_t BeatsPerMinute(std::int32_t microseconds) noexcept {
  const std::int32_t rounded = RoundToEven(60'000'000.0 / std::max(microseconds, 1));
  return static_cast<std::uint16_t>(
      std::min<std::int32_t>(rounded, std::numeric_limits<std::uint16_t>::max()));
}

TTempo TempoEntry(std::int32_t position, std::span<const std::uint8_t> bytes) noexcept {
  const std::int32_t read = bytes[0] << 16 | bytes[1] << 8 | bytes[2];
  const std::int32_t microseconds = read == 0 ? StandardTempo : read;
  return {.SongPosition = position,
          .TempoLongInt = microseconds,
          .OldTempoLongInt = microseconds,
          .OriginalTempoLongint = microseconds,
          .Tempo = BeatsPerMinute(microseconds)};
}

TTimeSign TimeSignEntry(std::int32_t position, std::span<const std::uint8_t> bytes) noexcept {
  TTimeSign entry{.SongPosition = position,
                  .Numerator = bytes[0],
                  .Denominator = 4,
                  .TicksInMClick = bytes[2],
                  ._32NotesInQNote = bytes[3]};
  const int exponent = bytes[1] % 32;
  if (entry.Numerator == 0 || exponent > LargestDenominatorExponent)
    entry.Numerator = 4;
  else
    entry.Denominator = static_cast<std::uint8_t>(1U << exponent);
  return entry;
}

void CloseTimeTables(Song& song) {
  const std::int32_t behind = song.MaxSongPosition + 1;
  CloseTable(song.SourceTempo,
             {.SongPosition = 0,
              .TempoLongInt = StandardTempo,
              .OldTempoLongInt = StandardTempo,
              .OriginalTempoLongint = StandardTempo,
              .Tempo = 120},
             behind);
  CloseTable(song.TimeSignature, {.SongPosition = 0, .Numerator = 4, .Denominator = 4}, behind);
}

void BackupTempi(Song& song) {
  song.BackupTempo.resize(song.SourceTempo.size());
  std::transform(song.SourceTempo.begin(), song.SourceTempo.end(), song.BackupTempo.begin(),
                 [](const TTempo& tempo) { return tempo.Tempo; });
}

void TMidiFunctions::ReloadTempoTimeSign() {
  song.SourceTempo.clear();
  song.TimeSignature.clear();
  // All tracks count, in contrast to the reader, for which track 0 is the tempo track. The entries
  // stand in the order in which the metas are met; SetTimeZones brings them into the order of time.
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t) {
    const PtrMidiEvent first = song.MidiTrack[static_cast<std::size_t>(t)].TrkFirstEvent;
    for (PtrMidiEvent e = first; e != nullptr; e = Following(e)) {
      if (e->Command != MetaEvent) continue;
      if (IsMetaWith(*e, MetaTempo, 3))
        song.SourceTempo.push_back(TempoEntry(e->Position, e->Meta.Bytes()));
      else if (IsMetaWith(*e, MetaTimeSignature, 4))
        song.TimeSignature.push_back(TimeSignEntry(e->Position, e->Meta.Bytes()));
    }
  }
  song.SourceTempo.resize(WithSpare(song.SourceTempo.size()));
  song.TimeSignature.resize(WithSpare(song.TimeSignature.size()));
  song.SourceTempoElements = static_cast<std::int32_t>(song.SourceTempo.size());
  song.TimeSignElements = static_cast<std::int32_t>(song.TimeSignature.size());
  CloseTimeTables(song);
}

}  // namespace Sonarello
