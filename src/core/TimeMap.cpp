#include "core/TimeMap.h"

#include <string>

#include "core/MidiFunctions.h"

namespace Sonarello {

namespace {

// --- Completing the source tables

/// Ascending positions, the entries of one tick in the order in which they stand. Unused entries, at
/// -1, become spare ones behind the song.
template <class Entry>
void BringIntoOrder(std::vector<Entry>& table, std::int32_t behind) {
  for (Entry& entry : table)
    if (entry.SongPosition < 0) entry.SongPosition = behind;
  const auto earlier = [](const Entry& a, const Entry& b) { return a.SongPosition < b.SongPosition; };
  if (!std::is_sorted(table.begin(), table.end(), earlier))
    std::stable_sort(table.begin(), table.end(), earlier);
}

template <class Entry>
void GuaranteeFirst(std::vector<Entry>& table, const Entry& first) {
  if (table.empty() || table.front().SongPosition != 0) table.insert(table.begin(), first);
}

/// A measure in halves counts and shows as one of quarters: 2/2 as 4/4. Only the table is changed.
void RewriteHalves(TTimeSign& sign) {
  if (sign.Denominator != 2) return;
  sign.Denominator = 4;
  // Above 127 halves the byte holds no more: 255 quarters keep the map countable.
  sign.Numerator = static_cast<std::uint8_t>(std::min(2 * sign.Numerator, 255));
}

void CompleteTables(Song& song) {
  // The tables of ReloadTempoTimeSign stand in track order. Merged as they are they would give zones
  // that go back in time, so they are sorted here, where every table passes.
  const std::int32_t behind = song.MaxSongPosition + 1;
  BringIntoOrder(song.SourceTempo, behind);
  BringIntoOrder(song.TimeSignature, behind);
  GuaranteeFirst(song.SourceTempo, {.SongPosition = 0,
                                    .TempoLongInt = 500'000,
                                    .OldTempoLongInt = 500'000,
                                    .OriginalTempoLongint = 500'000,
                                    .Tempo = 120});
  GuaranteeFirst(
      song.TimeSignature,
      {.SongPosition = 0, .Numerator = 4, .Denominator = 4, .TicksInMClick = 36, ._32NotesInQNote = 8});
  song.SourceTempoElements = static_cast<std::int32_t>(song.SourceTempo.size());
  song.TimeSignElements = static_cast<std::int32_t>(song.TimeSignature.size());
  song.CurrentTempo = song.SourceTempo.front().Tempo;
  for (TTimeSign& sign : song.TimeSignature) RewriteHalves(sign);
}

// --- Merging them

/// Milliseconds per tick, kept as a 32-bit float.
float TempoCompOf(std::int32_t microseconds, std::int32_t timeBase) {
  return static_cast<float>(microseconds / 1000.0 / std::max(timeBase, 1));
}

TTimeZone ZoneOf(std::int32_t position, const TTempo& tempo, const TTimeSign& sign,
                 std::int32_t timeBase) {
  TTimeZone zone;
  zone.SongPosition = position;
  zone.Tempo = tempo.Tempo;
  zone.TempoLongInt = tempo.TempoLongInt;
  zone.TempoComp = TempoCompOf(tempo.TempoLongInt, timeBase);
  zone.TS_Denominator = sign.Denominator;
  zone.TS_Numerator = sign.Numerator;
  return zone;
}

/// One zone for each tick with a change; two changes of one kind at a tick give a zone of no length,
/// and the last one is in force. Two sentinels behind the song end the table.
void MergeTables(Song& song) {
  const std::int32_t behind = song.MaxSongPosition + 1;
  const auto positionOf = [behind](const auto& table, std::size_t index) {
    return index < table.size() ? table[index].SongPosition : behind;
  };
  song.TimeZone.clear();
  song.TimeZone.reserve(song.SourceTempo.size() + song.TimeSignature.size());
  std::size_t i = 0;
  std::size_t j = 0;
  do {
    const std::int32_t tempoAt = positionOf(song.SourceTempo, i);
    const std::int32_t signAt = positionOf(song.TimeSignature, j);
    if (tempoAt <= signAt) ++i;
    if (signAt <= tempoAt) ++j;
    song.TimeZone.push_back(ZoneOf(std::min(tempoAt, signAt), song.SourceTempo[i - 1],
                                   song.TimeSignature[j - 1], song.SourceTimeBase));
  } while (positionOf(song.SourceTempo, i) <= song.MaxSongPosition ||
           positionOf(song.TimeSignature, j) <= song.MaxSongPosition);
  TTimeZone sentinel = song.TimeZone.back();
  sentinel.SongPosition = behind;
  song.TimeZone.insert(song.TimeZone.end(), 2, sentinel);
  song.TimeZoneElements = static_cast<std::int32_t>(song.TimeZone.size()) - 1;
}

// --- Counting through the zones

void SetDisplayValues(TTimeZone& zone, float tempoCompBefore) {
  zone.DisplayTimeOffset = RoundToEven(zone.Ticks * double{tempoCompBefore});
  zone.DisplayTimerPrep =
      Saturated(std::int64_t{zone.TempoLongInt} * 4 / std::max<std::int64_t>(zone.TS_Denominator, 1));
}

void SetPlace(TTimeZone& zone, const TPlace& place) {
  zone.Measure = Saturated(place.Measure);
  zone.Beat = static_cast<std::uint8_t>(place.Beat);     // carried: at most a numerator
  zone.Ticks = static_cast<std::uint16_t>(place.Ticks);  // carried: below the time base
}

void CountZones(Song& song) {
  std::vector<TTimeZone>& zones = song.TimeZone;
  SetPlace(zones[0], {});
  zones[0].Time = 0;
  SetDisplayValues(zones[0], 0);
  // The exact sum is carried on and rounded per zone, so that roundings never accumulate.
  double milliseconds = 0;
  for (std::size_t z = 1; z < zones.size(); ++z) {
    TTimeZone& zone = zones[z];
    const TTimeZone& before = zones[z - 1];
    const std::int64_t length = std::int64_t{zone.SongPosition} - before.SongPosition;
    milliseconds += static_cast<double>(length) * double{before.TempoComp};
    zone.Time = RoundToEven(milliseconds);
    // Ticks are carried by the signature that begins here, beats by the one that ends. This is
    // deliberate.
    TPlace place = CountFrom(before, length, song.SourceTimeBase, zone.TS_Denominator);
    CarryBeats(place, BeatsPerMeasure(before));
    SetPlace(zone, place);
    SetDisplayValues(zone, before.TempoComp);
  }
}

// --- The song's end

std::string Padded(std::int64_t number, int digits) {
  std::string text = std::to_string(number);
  if (std::ssize(text) < digits) text.insert(0, static_cast<std::size_t>(digits) - text.size(), '0');
  return text;
}

int DigitsOfTicks(std::int32_t timeBase) {
  if (timeBase < 10) return 1;
  if (timeBase < 100) return 2;
  if (timeBase < 1000) return 3;
  return timeBase < 10000 ? 4 : 5;
}

void CountSongEnd(Song& song) {
  const std::vector<TTimeZone>& zones = song.TimeZone;
  const auto found =
      std::lower_bound(zones.begin() + 1, zones.end() - 1, song.MaxSongPosition,
                       [](const TTimeZone& z, std::int32_t p) { return z.SongPosition < p; });
  const TTimeZone& zone = *found;
  const TTimeZone& before = *(found - 1);
  const std::int64_t length =
      std::max<std::int64_t>(std::int64_t{song.MaxSongPosition} - before.SongPosition, 0);
  TPlace place = CountFrom(before, length, song.SourceTimeBase, zone.TS_Denominator);
  if (place.Beat > BeatsPerMeasure(before)) {
    // Here the beat comes from the zone behind and may be 0 or less. This is deliberate.
    ++place.Measure;
    place.Beat = zone.Beat - BeatsPerMeasure(before);
  }
  song.MaxSongPositionTime = Saturated(
      std::int64_t{before.Time} + RoundToEven(static_cast<double>(length) * double{before.TempoComp}));
  song.MaxSongPositionTicks = Saturated(place.Ticks);
  song.MaxSongPositionBeat = Saturated(place.Beat);
  song.MaxSongPositionMeasure = Saturated(place.Measure);
  song.MTB_Length = DigitsOfTicks(song.SourceTimeBase);
  song.MaxSongPositionMTC = std::to_string(song.MaxSongPositionMeasure) +
                            Padded(song.MaxSongPositionBeat, 2) +
                            Padded(song.MaxSongPositionTicks, song.MTB_Length);
  song.MTC_Length = song.MTB_Length + (song.MaxSongPositionMeasure >= 1000 ? 8 : 7);
}

}  // namespace

// --- Zones

TPlace CountFrom(const TTimeZone& zone, std::int64_t ticks, std::int32_t timeBase, int carry) noexcept {
  const std::int64_t beat = TicksPerBeat(timeBase, zone.TS_Denominator);
  const std::int64_t beats = ticks / beat;
  TPlace place{.Measure = zone.Measure + beats / BeatsPerMeasure(zone),
               .Beat = zone.Beat + beats % BeatsPerMeasure(zone),
               .Ticks = zone.Ticks + ticks % beat};
  const std::int64_t carried = CarriedTicks(timeBase, carry);
  place.Beat += place.Ticks / carried;
  place.Ticks %= carried;
  return place;
}

void CarryBeats(TPlace& place, std::int64_t beats) noexcept {
  if (place.Beat <= beats) return;
  const std::int64_t measures = (place.Beat - 1) / beats;
  place.Measure += measures;
  place.Beat -= measures * beats;
}

std::size_t ZoneAt(const Song& song, std::int32_t position) noexcept {
  const std::vector<TTimeZone>& zones = song.TimeZone;
  if (zones.size() < 2) return 0;
  // Not searched are the first zone, which holds what no other does, and the last, which holds nothing.
  const auto behind =
      std::upper_bound(zones.begin() + 1, zones.end() - 1, position,
                       [](std::int32_t p, const TTimeZone& z) { return p < z.SongPosition; });
  return static_cast<std::size_t>(behind - zones.begin()) - 1;
}

void ZoneCursor::Enter(std::size_t index) noexcept {
  const std::vector<TTimeZone>& zones = song.TimeZone;
  zone = index;
  from = zones[index].SongPosition;
  until = index + 2 < zones.size() ? zones[index + 1].SongPosition
                                   : std::numeric_limits<std::int64_t>::max();
  time = zones[index].Time;
  msPerTick = double{zones[index].TempoComp};
}

void ZoneCursor::Seek(std::int32_t position) noexcept {
  constexpr std::size_t nearby = 8;
  const std::vector<TTimeZone>& zones = song.TimeZone;
  if (zones.empty()) return;
  // The next event is mostly in one of the next zones; only a jump is searched for.
  std::size_t next = zone;
  const std::size_t last = zones.size() - std::min<std::size_t>(zones.size(), 2);
  const std::size_t end = std::min(zone + nearby, last);
  while (next < end && zones[next + 1].SongPosition <= position) ++next;
  const bool found = until != 0 && position >= from && (next < end || next == last);
  Enter(found ? next : ZoneAt(song, position));
}

void EndTimeZonesBehindSong(Song& song) noexcept {
  for (auto zone = song.TimeZone.rbegin(); zone != song.TimeZone.rend(); ++zone) {
    if (zone->SongPosition <= song.MaxSongPosition) return;
    zone->Time = Saturated(std::int64_t{song.SongLength} + 1);
  }
}

std::int32_t TimeOfPosition(const Song& song, std::int32_t SongPos) {
  return ZoneCursor(song).TimeOf(SongPos);
}

// --- Operations

void TMidiFunctions::SetTimeZones() {
  CompleteTables(song);
  MergeTables(song);
  CountZones(song);
  CountSongEnd(song);
}

void TMidiFunctions::UpdateTimeZones() {
  if (song.TimeZone.size() < 2) return;
  for (TTimeZone& zone : song.TimeZone)
    zone.TempoComp = TempoCompOf(zone.TempoLongInt, song.SourceTimeBase);
  CountZones(song);
  CountSongEnd(song);
}

void TMidiFunctions::SetTimePositions() {
  ZoneCursor cursor(song);
  std::int32_t greatest = 0;
  const auto setTimes = [&](const TMyTrack& track) {
    for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr; e = Following(e)) {
      e->TimePosition = cursor.TimeOf(e->Position);
      greatest = std::max(greatest, e->TimePosition);
    }
  };
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t)
    setTimes(song.MidiTrack[static_cast<std::size_t>(t)]);
  song.SongLength = greatest;
  song.TimePositionOfFirstNote = cursor.TimeOf(song.TickPositionOfFirstNote);

  const TMyTrack* effects = song.DSPTrackOf(routes.MidiRouting()[0].InstrumValue);
  const auto& dsp = song.DSPTracks;
  const bool motif = effects == &dsp.MotifESDSPTrack || effects == &dsp.MotifXSDSPTrack ||
                     effects == &dsp.MotifXFDSPTrack;
  if (effects != nullptr && (!motif || options.MotifDSPsEnabled)) setTimes(*effects);
}

void TMidiFunctions::SetSongLength() {
  ZoneCursor cursor(song);
  song.SongLength = cursor.TimeOf(song.MaxSongPosition);
  song.TimePositionOfFirstNote = cursor.TimeOf(song.TickPositionOfFirstNote);
}

void TMidiFunctions::UpdateTimeZoneData() {
  ReloadTempoTimeSign();
  SetTimeZones();
  BackupTempi(song);
  song.CurrentTimeZone = 0;
  SetTimePositions();
  EndTimeZonesBehindSong(song);
}

}  // namespace Sonarello
