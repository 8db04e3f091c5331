// Positions as users read and enter them.
#include <array>
#include <optional>
#include <tuple>

#include "core/MidiFunctions.h"
#include "core/Texts.h"
#include "core/TimeMap.h"

namespace Sonarello {

namespace {

void PadTo(std::string& text, std::int32_t length) {
  const auto wanted = static_cast<std::size_t>(std::max(length, 0));
  if (text.size() < wanted) text.insert(0, wanted - text.size(), '0');
}

TPlace PlaceOf(const Song& song, std::int32_t position) {
  if (song.TimeZone.empty()) return {};
  const TTimeZone& zone = song.TimeZone[ZoneAt(song, position)];
  const std::int64_t ticks = std::max<std::int64_t>(std::int64_t{position} - zone.SongPosition, 0);
  TPlace place = CountFrom(zone, ticks, song.SourceTimeBase, zone.TS_Denominator);
  CarryBeats(place, BeatsPerMeasure(zone));
  return place;
}

/// Places compare as the number that their digits form, measure before beat before ticks. They are
/// compared part by part, as beats above 99 would spill into the measure's digits.
using Key = std::tuple<std::int64_t, std::int64_t, std::int64_t>;

Key KeyOf(const TTimeZone& zone) { return {zone.Measure, zone.Beat, zone.Ticks}; }

bool CanBeAPlace(const Song& song, const TPlace& place) {
  // Ticks may be equal to the time base: the start of the next beat. This is deliberate.
  return !song.TimeZone.empty() && place.Measure >= 1 && place.Beat >= 1 && place.Ticks >= 0 &&
         place.Ticks <= song.SourceTimeBase;
}

/// Index of the first zone below `end` whose place is at or before `key` and whose successor's is
/// behind it, else `end`.
std::size_t ZoneOfPlace(const Song& song, const Key& key, std::size_t end) {
  for (std::size_t z = 0; z < end; ++z)
    if (KeyOf(song.TimeZone[z]) <= key && key < KeyOf(song.TimeZone[z + 1])) return z;
  return end;
}

/// Position of a place, counted from a zone; may be negative or leave 32 bits.
std::int64_t PositionFrom(const Song& song, const TTimeZone& zone, const TPlace& place) {
  const std::int64_t beats =
      (place.Measure - zone.Measure) * BeatsPerMeasure(zone) + place.Beat - zone.Beat;
  // The product is divided, not the beat's length: where the time base does not divide, this counts
  // fractions of ticks that the way there dropped. This is deliberate.
  return beats * (std::int64_t{song.SourceTimeBase} * 4) /
             std::max<std::int64_t>(zone.TS_Denominator, 1) +
         zone.SongPosition + place.Ticks - zone.Ticks;
}

}  // namespace

std::string SongPositionToMTC(const Song& song, std::int32_t SongPos) {
  const TPlace place = PlaceOf(song, SongPos);
  std::string beat = std::to_string(place.Beat);
  std::string text = std::to_string(place.Ticks);
  PadTo(beat, 2);
  PadTo(text, song.MTB_Length);
  text = std::to_string(place.Measure) + '.' + beat + '.' + text;
  PadTo(text, song.MTC_Length);
  return text;
}

std::string TicksToStr(const Song& song, std::int32_t SongPos) {
  return SongPositionToMTC(song, SongPos);
}

std::int32_t MTCToSongPosition(const Song& song, std::int32_t Measure, std::int32_t Beat,
                               std::int32_t Ticks) {
  const TPlace place{Measure, Beat, Ticks};
  if (!CanBeAPlace(song, place)) return -1;
  const std::size_t sentinels = song.TimeZone.size() - std::min<std::size_t>(song.TimeZone.size(), 2);
  const std::size_t zone = ZoneOfPlace(song, {Measure, Beat, Ticks}, sentinels);
  if (zone == sentinels) return -1;
  const std::int64_t position = PositionFrom(song, song.TimeZone[zone], place);
  return position >= 0 && position < song.MaxSongPosition ? static_cast<std::int32_t>(position) : -1;
}

std::int32_t MTCToSongPositionEx(const Song& song, std::int32_t Measure, std::int32_t Beat,
                                 std::int32_t Ticks) {
  const TPlace place{Measure, Beat, Ticks};
  if (!CanBeAPlace(song, place)) return -1;
  // What no zone holds is counted from the last sentinel, at the song's end.
  const std::size_t zone = ZoneOfPlace(song, {Measure, Beat, Ticks}, song.TimeZone.size() - 1);
  const std::int64_t position = PositionFrom(song, song.TimeZone[zone], place);
  return position >= 0 && position <= std::numeric_limits<std::int32_t>::max()
             ? static_cast<std::int32_t>(position)
             : -1;
}

std::string TimeToStr(std::int32_t Milliseconds) {
  constexpr std::int32_t second = 1000;
  constexpr std::int32_t minute = 60 * second;
  const std::int32_t time = std::max(Milliseconds, 0);
  std::string text = std::to_string(time % second);
  PadTo(text, 3);
  text = std::to_string(time % minute / second) + Text(",", ".") + text;
  PadTo(text, 6);
  text = std::to_string(time / minute) + ':' + text;
  PadTo(text, 10);
  return text;
}

std::string NoteName(int key) {
  constexpr std::array<const char*, 12> names = {"C",  "C#", "D",  "D#", "E",  "F",
                                                 "F#", "G",  "G#", "A",  "A#", "B"};
  constexpr int lowestOctave = -2;
  return names[static_cast<std::size_t>(key % 12)] + std::to_string(key / 12 + lowestOctave);
}

}  // namespace Sonarello
