#include <algorithm>
#include <charconv>
#include <string>

#include "InputReader.h"
#include "StandIns.h"
#include "Targets.h"
#include "core/EventList.h"
#include "core/MidiFunctions.h"

namespace Sonarello::Fuzz {

namespace {

/// Makes one track of tempo and signature metas as the input says; positions ascend.
void BuildSong(Song& song, InputReader& in) {
  song.SourceTimeBase = static_cast<std::uint16_t>(std::max(1, in.Number16()));
  song.NumberOfSourceTracks = 1;
  song.MidiTrack.resize(1);
  song.KeySignArray.resize(1);
  TMyTrack& track = song.MidiTrack[0];
  BeginTrack(song.Pool, track);
  std::int64_t position = 0;
  for (int count = in.Byte() % 16; count > 0; --count) {
    const bool tempo = in.Flag();
    position = std::min<std::int64_t>(position + in.Number24(), LastPosition);
    const std::array<std::uint8_t, 4> bytes = {in.Byte(), in.Byte(), in.Byte(), 8};
    const Input payload = Input(bytes).first(tempo ? 3 : 4);
    Append(track, NewMeta(song.Pool, tempo ? MetaTempo : MetaTimeSignature, payload,
                          static_cast<std::int32_t>(position)));
  }
  song.MaxSongPosition = std::max(999, static_cast<std::int32_t>(position) + 10);
  EndTrack(song.Pool, track, song.MaxSongPosition);
}

/// The three numbers of a position text such as "001.01.000".
std::array<std::int32_t, 3> NumbersOf(const std::string& text) {
  std::array<std::int32_t, 3> numbers{};
  const char* at = text.data();
  const char* const end = at + text.size();
  for (std::size_t i = 0; i < 3; ++i) {
    const auto [next, error] = std::from_chars(at, end, numbers[i]);
    if (error != std::errc{}) throw Fault("no position text: " + text);
    if ((i < 2) != (next < end) || (i < 2 && *next != '.')) throw Fault("no position text: " + text);
    at = next + (i < 2 ? 1 : 0);
  }
  return numbers;
}

/// One signature whose beats are a quarter or an eighth of a time base that divides: text and position
/// tell the same then. With several, the carry of ticks may pass a zone's edge, which is deliberate.
bool GoesBothWays(const Song& song) {
  for (const TTimeZone& zone : song.TimeZone)
    if (zone.TS_Denominator != song.TimeZone[0].TS_Denominator ||
        zone.TS_Numerator != song.TimeZone[0].TS_Numerator)
      return false;
  const int denominator = song.TimeZone[0].TS_Denominator;
  const int numerator = song.TimeZone[0].TS_Numerator;
  if (song.SourceTimeBase % 2 != 0 || numerator < 1 || numerator > 99) return false;
  return denominator == 4 || denominator == 8;
}

void CheckPlace(const Song& song, std::int32_t position, bool bothWays) {
  const std::string text = SongPositionToMTC(song, position);
  const std::array<std::int32_t, 3> place = NumbersOf(text);
  const std::int32_t inside = MTCToSongPosition(song, place[0], place[1], place[2]);
  if (inside < -1 || inside >= song.MaxSongPosition) throw Fault("a position outside the song");
  const std::int32_t back = MTCToSongPositionEx(song, place[0], place[1], place[2]);
  if (back < -1) throw Fault("a negative position");
  if (inside >= 0 && back != inside)
    throw Fault("the two ways from a text to a position disagree at " + text);
  if (bothWays && position < song.MaxSongPosition && inside != position)
    throw Fault(text + " is " + std::to_string(position) + " but reads " + std::to_string(inside));
}

}  // namespace

void FuzzPosition(Input input) {
  InputReader in(input);
  Song song;
  const Options options;
  const OneRoute routes;
  YesMessages messages;
  const SongHooks hooks;
  TMidiFunctions functions(song, options, routes, messages, hooks);
  BuildSong(song, in);
  functions.UpdateTimeZoneData();
  const bool bothWays = GoesBothWays(song);
  for (int i = 0; i < 64; ++i) {
    const std::int64_t share = in.Empty() ? i * 262144 : in.Number24();
    const std::int64_t position = song.MaxSongPosition * share >> 24;
    CheckPlace(song, static_cast<std::int32_t>(position), bothWays);
  }
  for (int i = 0; i < 8; ++i)
    if (MTCToSongPositionEx(song, in.Number24() - 99, in.Byte() - 9, in.Number16() - 99) < -1)
      throw Fault("a negative position");
}

}  // namespace Sonarello::Fuzz
