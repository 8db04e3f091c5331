#include "editors/EventPosition.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "core/MidiFunctions.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

using TParts = std::array<std::int64_t, 3>;  ///< measure, beat, ticks

constexpr std::int64_t MostOfPart = 100'000'000;

std::string TooLarge(std::string_view german, std::string_view english, std::int64_t limit) {
  const std::string number = std::to_string(limit);
  return Text("Position ungültig: " + std::string(german) + " darf nicht grösser als " + number +
                  " sein. Bitte erneut eingeben!",
              "Position not valid: " + std::string(english) + " greater than " + number +
                  " are not allowed. Please enter again!");
}

bool ReadParts(std::string text, TParts& parts) {
  std::ranges::replace(text, ':', '.');
  std::string_view rest = text;
  for (std::size_t n = 0; n < parts.size(); ++n) {
    const std::size_t point = n + 1 < parts.size() ? rest.find('.') : std::string_view::npos;
    const std::string_view part = rest.substr(0, point);
    parts[n] = 0;
    if (!part.empty() && !ReadNumber(part, parts[n])) return false;
    if (n == 0 && part.empty()) return false;
    if (parts[n] < 0 || parts[n] > MostOfPart) return false;
    rest = point == std::string_view::npos ? std::string_view() : rest.substr(point + 1);
  }
  for (std::size_t n = 0; n < 2; ++n) parts[n] = std::max<std::int64_t>(parts[n], 1);
  return true;
}

/// Places are compared as one number: measure, two digits of beat, five of ticks.
std::int64_t KeyOf(std::int64_t measure, std::int64_t beat, std::int64_t ticks) {
  return measure * 10'000'000 + beat * 100'000 + ticks;
}

const TTimeZone& ZoneOf(const Song& song, const TParts& parts) {
  const std::int64_t key = KeyOf(parts[0], parts[1], parts[2]);
  const TTimeZone* found = &song.TimeZone.front();
  for (const TTimeZone& zone : song.TimeZone)
    if (KeyOf(zone.Measure, zone.Beat, zone.Ticks) <= key) found = &zone;
  return *found;
}

std::int64_t MostTicks(const Song& song, int denominator) {
  switch (denominator) {
    case 8: return song.SourceTimeBase / 2;
    case 16: return song.SourceTimeBase / 4;
    case 32: return song.SourceTimeBase / 8;
    case 64: return song.SourceTimeBase / 16;
    default: return song.SourceTimeBase;
  }
}

}  // namespace

bool ReadNumber(std::string_view text, std::int64_t& number) noexcept {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  if (text.starts_with('+')) text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && end == text.data() + text.size() && !text.empty();
}

TTypedPosition ParsePosition(const Song& song, std::string_view text) {
  TParts parts{};
  if (song.TimeZone.empty() || !ReadParts(std::string(text), parts)) return {};
  const auto [measure, beat, ticks] = parts;
  if (measure > song.TimeZone.back().Measure)
    return {-1, TooLarge("Takt", "measures", song.TimeZone.back().Measure)};
  const TTimeZone& zone = ZoneOf(song, parts);
  if (beat > zone.TS_Numerator) return {-1, TooLarge("Schlag", "beats", zone.TS_Numerator)};
  const std::int64_t mostTicks = MostTicks(song, zone.TS_Denominator);
  if (ticks > mostTicks) return {-1, TooLarge("Ticks", "ticks", mostTicks)};
  const std::int32_t position =
      MTCToSongPositionEx(song, static_cast<std::int32_t>(measure), static_cast<std::int32_t>(beat),
                          static_cast<std::int32_t>(ticks));
  if (position >= 0 && position <= song.MaxSongPosition) return {position, {}};
  const std::string limit = TicksToStr(song, song.MaxSongPosition);
  return {-1, Text("Position darf nicht grösser als " + limit + " sein. Bitte erneut eingeben!",
                   "Position greater than " + limit + " is not allowed. Please enter again!")};
}

}  // namespace Sonarello
