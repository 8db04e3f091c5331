#include "desk/StripsPosition.h"

#include <algorithm>
#include <array>

#include "core/MidiFunctions.h"
#include "core/Texts.h"
#include "core/TimeMap.h"
#include "playback/LiveTempo.h"
#include "playback/Transpose.h"

namespace Sonarello {

namespace {

constexpr std::int32_t MostSharps = 7;

/// Keys in the order of fifths, from seven flats to seven sharps.
constexpr std::array<const char*, 15> GermanMajor = {"Ces", "Ges", "Des", "As", "Es", "B",   "F",  "C",
                                                     "G",   "D",   "A",   "E",  "H",  "Fis", "Cis"};
constexpr std::array<const char*, 15> GermanMinor = {"as", "es", "b",   "f",   "c",   "g",   "d",  "a",
                                                     "e",  "h",  "fis", "cis", "gis", "dis", "ais"};
constexpr std::array<const char*, 15> EnglishMajor = {"Cb", "Gb", "Db", "Ab", "Eb", "Bb", "F", "C",
                                                      "G",  "D",  "A",  "E",  "B",  "F#", "C#"};
constexpr std::array<const char*, 15> EnglishMinor = {"Ab", "Eb", "Bb", "F",  "C",  "G",  "D", "A",
                                                      "E",  "B",  "F#", "C#", "G#", "D#", "A#"};

TPlace PlaceIn(const Song& song, const TTimeZone& zone, std::int32_t tick) {
  const std::int64_t ticks = std::max<std::int64_t>(std::int64_t{tick} - zone.SongPosition, 0);
  TPlace place = CountFrom(zone, ticks, song.SourceTimeBase, zone.TS_Denominator);
  CarryBeats(place, BeatsPerMeasure(zone));
  return place;
}

/// A tenth of a beat per minute is as fine as anybody reads.
std::string TempoText(std::int32_t tenths) {
  return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10);
}

}  // namespace

std::string MeasureText(std::int32_t measure, std::int32_t beat) {
  return std::to_string(measure) + (beat < 10 ? ":0" : ":") + std::to_string(beat);
}

std::string ClockText(std::int32_t milliseconds) {
  constexpr std::int32_t second = 1000;
  constexpr std::int32_t minute = 60 * second;
  const std::int32_t time = std::max(milliseconds, 0);
  const std::string seconds = std::to_string(time % minute / second);
  const std::string thousandths = std::to_string(time % second);
  return std::to_string(time / minute) + (seconds.size() < 2 ? ":0" : ":") + seconds + '.' +
         std::string(3 - thousandths.size(), '0') + thousandths;
}

std::string KeySignatureName(std::int32_t SF, std::int32_t MI) {
  if (SF < -MostSharps || SF > MostSharps) return {};
  const auto key = static_cast<std::size_t>(SF + MostSharps);
  if (MI == 1)
    return Text(std::string(GermanMinor[key]) + "-Moll", std::string(EnglishMinor[key]) + " minor");
  return Text(std::string(GermanMajor[key]) + "-Dur", std::string(EnglishMajor[key]) + " major");
}

TPositionView TStripsPosition::At(std::int32_t milliseconds) const {
  constexpr double tenthsPerMinute = 600'000'000.0;
  TPositionView view;
  view.Time = std::max(milliseconds, 0);
  view.Clock = ClockText(view.Time);
  const auto held = gate.Enter();
  view.SongPosition = TickOfTime(song, view.Time);
  view.MTC = SongPositionToMTC(song, view.SongPosition);
  if (!song.TimeZone.empty()) {
    const std::size_t index = ZoneAt(song, view.SongPosition);
    const TTimeZone& zone = song.TimeZone[index];
    const TPlace place = PlaceIn(song, zone, view.SongPosition);
    view.TimeZone = static_cast<std::int32_t>(index);
    view.Measure = Saturated(place.Measure);
    view.Beat = Saturated(place.Beat);
    const std::int32_t tenths = RoundToEven(tenthsPerMinute / std::max(zone.TempoLongInt, 1));
    view.Tempo = tenths / 10.0;
    view.TempoText = TempoText(tenths);
    view.Signature = std::to_string(zone.TS_Numerator) + '/' + std::to_string(zone.TS_Denominator);
  }
  view.Position = MeasureText(view.Measure, view.Beat);
  view.Key = KeyAt(view.SongPosition);
  return view;
}

std::int32_t TStripsPosition::TempoAt(std::int32_t milliseconds) const {
  const auto held = gate.Enter();
  const std::size_t zone = ZoneAt(song, TickOfTime(song, milliseconds));
  return zone < song.TimeZone.size() ? song.TimeZone[zone].Tempo : song.CurrentTempo;
}

void TStripsPosition::Follow(std::int32_t milliseconds) {
  const auto held = gate.Enter();
  const std::size_t zone = ZoneAt(song, TickOfTime(song, milliseconds));
  if (zone >= song.TimeZone.size()) return;
  song.CurrentTimeZone = static_cast<std::int32_t>(zone);
  song.CurrentTempo = song.TimeZone[zone].Tempo;
}

void TStripsPosition::SignaturesChanged() {
  keys.clear();
  for (const TKeySignArray& track : song.KeySignArray)
    for (const TKeySigns& key : track.ValArray)
      if (key.MidiEvent != nullptr && !key.MidiEvent->IsRemoved())
        keys.push_back({key.MidiEvent->Position, key.SF, key.MI});
  std::ranges::stable_sort(keys, {}, &TKey::SongPosition);
}

std::string TStripsPosition::KeyAt(std::int32_t tick) const {
  const auto behind = std::ranges::upper_bound(keys, tick, {}, &TKey::SongPosition);
  if (behind == keys.begin()) return {};
  const TKey& key = *std::prev(behind);
  return KeySignatureName(TransposeKeySignature(key.SF, song.TransposeNew), key.MI);
}

}  // namespace Sonarello
