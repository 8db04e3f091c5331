#include "playback/LiveTempo.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/EventList.h"
#include "core/TimeMap.h"

namespace Sonarello {

namespace {

constexpr double MicrosPerMinute = 60'000'000.0;

void SetTables(Song& song, std::int32_t offset) {
  const std::size_t count = std::min(song.SourceTempo.size(), song.BackupTempo.size());
  for (std::size_t i = 0; i < count; ++i) {
    const std::int32_t tempo = std::clamp(song.BackupTempo[i] + offset, SlowestTempo, 65535);
    TTempo& entry = song.SourceTempo[i];
    entry.Tempo = static_cast<std::uint16_t>(tempo);
    // Back at its own tempo a song has its fractions of beats again.
    const bool own = offset == 0 && BeatsPerMinute(entry.OriginalTempoLongint) == tempo;
    entry.TempoLongInt = own ? entry.OriginalTempoLongint
                             : static_cast<std::int32_t>(std::nearbyint(MicrosPerMinute / tempo));
  }
}

/// Entry of the tempo table for the first tempo meta of the song.
std::size_t FirstEntry(const Song& song, TempoNumbering numbering) {
  if (numbering == TempoNumbering::Live) return 0;
  std::int32_t first = song.MaxSongPosition;
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t)
    for (const TypMidiEvent* e = song.MidiTrack[static_cast<std::size_t>(t)].TrkFirstEvent;
         e != nullptr && e->Position < first; e = e->NextEvent)
      if (e->IsMeta(MetaTempo)) first = e->Position;
  return first > 0 ? 1 : 0;
}

void RewriteMetas(Song& song, std::size_t entry) {
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t)
    ForEachEvent(song.MidiTrack[static_cast<std::size_t>(t)], [&](PtrMidiEvent e) {
      if (!e->IsMeta(MetaTempo) || e->Meta.size() != 3 || entry >= song.SourceTempo.size()) return;
      const std::int32_t micros = song.SourceTempo[entry++].TempoLongInt;
      const auto bytes = e->Meta.Mutable();
      for (std::size_t i = 0; i < 3; ++i)
        bytes[i] = static_cast<std::uint8_t>(micros >> (16 - 8 * static_cast<int>(i)));
    });
}

}  // namespace

void ApplyTempoOffset(Song& song, TMidiFunctions& functions, std::int32_t offset,
                      TempoNumbering numbering) {
  SetTables(song, offset);
  functions.SetTimeZones();
  RewriteMetas(song, FirstEntry(song, numbering));
  functions.SetTimePositions();
  EndTimeZonesBehindSong(song);
}

std::int32_t TickOfTime(const Song& song, std::int32_t milliseconds) {
  if (milliseconds <= 0 || song.TimeZone.size() < 2) return 0;
  const auto zones = std::span(song.TimeZone).first(song.TimeZone.size() - 1);
  auto zone = std::ranges::upper_bound(zones, milliseconds, {}, &TTimeZone::Time);
  if (zone != zones.begin()) --zone;
  const double ticks =
      static_cast<double>(milliseconds - zone->Time) / static_cast<double>(zone->TempoComp);
  return std::min(zone->SongPosition + RoundToEven(ticks), song.MaxSongPosition);
}

}  // namespace Sonarello
