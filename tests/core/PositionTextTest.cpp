// Positions and times as texts, and the way back.
#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "helpers/SongBuilder.h"

namespace Sonarello {
namespace {

/// The position that a text leads to, by the operation for the song's end as well.
std::int32_t PositionOf(const Song& song, const std::string& text, bool ex = true) {
  int measure = 0;
  int beat = 0;
  int ticks = 0;
  if (std::sscanf(text.c_str(), "%d.%d.%d", &measure, &beat, &ticks) != 3) return -2;
  return ex ? MTCToSongPositionEx(song, measure, beat, ticks)
            : MTCToSongPosition(song, measure, beat, ticks);
}

TEST(PositionText, ReadsMeasureBeatAndTicksOfOneWidth) {
  TestSong s;
  s.NewTrack().Finish(9000).Map();
  EXPECT_EQ(SongPositionToMTC(s.song, 0), "001.01.000");
  EXPECT_EQ(SongPositionToMTC(s.song, 479), "001.01.479");
  EXPECT_EQ(SongPositionToMTC(s.song, 480), "001.02.000");
  EXPECT_EQ(SongPositionToMTC(s.song, 1919), "001.04.479");
  EXPECT_EQ(SongPositionToMTC(s.song, 1920), "002.01.000");
  EXPECT_EQ(SongPositionToMTC(s.song, -100), "001.01.000");
  EXPECT_EQ(TicksToStr(s.song, 1921), "002.01.001");
}

TEST(PositionText, CountsEighthsInSixEight) {
  TestSong s;
  s.NewTrack().Sign(0, 6, 3).Finish(9000).Map();
  EXPECT_EQ(SongPositionToMTC(s.song, 239), "001.01.239");
  EXPECT_EQ(SongPositionToMTC(s.song, 240), "001.02.000");
  EXPECT_EQ(SongPositionToMTC(s.song, 1439), "001.06.239");
  EXPECT_EQ(SongPositionToMTC(s.song, 1440), "002.01.000");
}

TEST(PositionText, CountsTheTicksOfTheZoneItself) {
  TestSong s;
  s.NewTrack().Tempo(0, 500000).Tempo(300, 400000).Finish(9000).Map();
  EXPECT_EQ(SongPositionToMTC(s.song, 479), "001.01.479");
  EXPECT_EQ(SongPositionToMTC(s.song, 480), "001.02.000");
  EXPECT_EQ(TicksToStr(s.song, 2000), "002.01.080");
}

TEST(PositionText, GoesOnBehindTheSong) {
  TestSong s;
  s.NewTrack().Tempo(0, 500000).Tempo(300, 400000).Finish(1910).Map();
  EXPECT_EQ(SongPositionToMTC(s.song, 1920), "002.01.000");
  EXPECT_EQ(SongPositionToMTC(s.song, 1921), "002.01.001");
  EXPECT_EQ(SongPositionToMTC(s.song, 3 * 1920), "004.01.000");
}

TEST(PositionText, WidensWithTimeBaseAndMeasures) {
  TestSong coarse(5);
  coarse.NewTrack().Finish().Map();
  EXPECT_EQ(SongPositionToMTC(coarse.song, 4), "001.01.4");
  TestSong fine(20000);
  fine.NewTrack().Finish().Map();
  EXPECT_EQ(SongPositionToMTC(fine.song, 19999), "001.01.19999");
  TestSong longSong;
  longSong.NewTrack().Finish(1000 * 1920).Map();
  EXPECT_EQ(SongPositionToMTC(longSong.song, 0), "0001.01.000");
  EXPECT_EQ(SongPositionToMTC(longSong.song, 999 * 1920), "1000.01.000");
}

TEST(PositionText, WritesBeatsOfThreeDigitsInFull) {
  TestSong s;
  s.NewTrack().Sign(0, 200, 2).Tempo(150 * 480, 400000).Finish(200'000).Map();
  EXPECT_EQ(SongPositionToMTC(s.song, 120 * 480), "01.121.000");
  EXPECT_EQ(PositionOf(s.song, "01.121.000", false), 120 * 480);
  EXPECT_EQ(SongPositionToMTC(s.song, 199 * 480 + 7), "01.200.007");
  EXPECT_EQ(PositionOf(s.song, "01.200.007", false), 199 * 480 + 7);
  EXPECT_EQ(PositionOf(s.song, "002.01.000", false), 200 * 480);
}

TEST(PositionText, ReadsTheStartWithoutAMap) {
  Song song;
  EXPECT_EQ(SongPositionToMTC(song, 480), "001.01.000");
  EXPECT_EQ(MTCToSongPosition(song, 1, 1, 0), -1);
  EXPECT_EQ(MTCToSongPositionEx(song, 1, 1, 0), -1);
}

TEST(PositionText, RefusesWhatCannotBeAPlace) {
  TestSong s;
  s.NewTrack().Finish(9000).Map();
  EXPECT_EQ(MTCToSongPosition(s.song, 0, 1, 0), -1);
  EXPECT_EQ(MTCToSongPosition(s.song, 1, 0, 0), -1);
  EXPECT_EQ(MTCToSongPosition(s.song, 1, 1, -1), -1);
  EXPECT_EQ(MTCToSongPosition(s.song, 1, 1, 481), -1);
  EXPECT_EQ(MTCToSongPosition(s.song, -5, 1, 0), -1);
  EXPECT_EQ(MTCToSongPositionEx(s.song, 0, 1, 0), -1);
  EXPECT_EQ(MTCToSongPositionEx(s.song, 1, 0, 0), -1);
  EXPECT_EQ(MTCToSongPositionEx(s.song, 1, 1, 481), -1);
}

TEST(PositionText, AcceptsTicksEqualToTheTimeBase) {
  TestSong s;
  s.NewTrack().Finish(9000).Map();
  EXPECT_EQ(MTCToSongPosition(s.song, 1, 1, 480), 480);
  EXPECT_EQ(MTCToSongPosition(s.song, 1, 4, 480), 1920);
}

TEST(PositionText, AcceptsBeatsBeyondTheMeasure) {
  TestSong s;
  s.NewTrack().Finish(9000).Map();
  EXPECT_EQ(MTCToSongPosition(s.song, 1, 5, 0), 1920);
}

TEST(PositionText, EndsInFrontOfTheSongsLastTick) {
  TestSong s;
  s.NewTrack().Finish(1910).Map();
  EXPECT_EQ(s.song.MaxSongPosition, 1920);
  EXPECT_EQ(MTCToSongPosition(s.song, 1, 4, 479), 1919);
  EXPECT_EQ(MTCToSongPosition(s.song, 2, 1, 0), -1);
  EXPECT_EQ(MTCToSongPosition(s.song, 900, 1, 0), -1);
  EXPECT_EQ(MTCToSongPositionEx(s.song, 2, 1, 0), 1920);
  EXPECT_EQ(MTCToSongPositionEx(s.song, 2, 1, 1), 1921);
  EXPECT_EQ(MTCToSongPositionEx(s.song, 2, 1, 2), 1922);
  EXPECT_EQ(MTCToSongPositionEx(s.song, 900, 1, 0), 899 * 1920);
}

TEST(PositionText, HasNoPlaceBeyond32Bits) {
  TestSong s(65535);
  s.NewTrack().Sign(0, 255, 0).Finish(9000).Map();
  constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(MTCToSongPositionEx(s.song, most, most, 0), -1);
  EXPECT_EQ(MTCToSongPosition(s.song, most, most, 0), -1);
}

TEST(PositionText, TellsAPlaceInsideAGapByTheZoneInFront) {
  // 6/8 begins 300 ticks behind the start, which counts as beat 2, tick 60: nothing reads 1.2.0.
  TestSong s;
  s.NewTrack().Sign(300, 6, 3).Finish(9000).Map();
  EXPECT_EQ(SongPositionToMTC(s.song, 299), "001.01.299");
  EXPECT_EQ(SongPositionToMTC(s.song, 300), "001.02.060");
  EXPECT_EQ(MTCToSongPosition(s.song, 1, 2, 0), 480) << "counted in the quarters of the zone in front";
  EXPECT_EQ(MTCToSongPosition(s.song, 1, 2, 60), 300);
}

// --- Where text and position do not lead back to each other; all of it deliberate

TEST(PositionText, TellsTwoPositionsOfAWholeNoteBeatAlike) {
  TestSong s;
  s.NewTrack().Sign(0, 4, 0).Finish(20000).Map();
  EXPECT_EQ(SongPositionToMTC(s.song, 480), "001.02.000") << "ticks are carried by the quarter";
  EXPECT_EQ(SongPositionToMTC(s.song, 1920), "001.02.000") << "beats are counted by the whole note";
  EXPECT_EQ(PositionOf(s.song, "001.02.000"), 1920);
}

TEST(PositionText, CountsDroppedFractionsOfTicksOnTheWayBack) {
  // A thirty-second of 100 ticks per quarter is 12.5 ticks: 12 on the way there.
  TestSong s(100);
  s.NewTrack().Sign(0, 16, 5).Finish(20000).Map();
  EXPECT_EQ(SongPositionToMTC(s.song, 24), "001.03.000");
  EXPECT_EQ(PositionOf(s.song, "001.03.000"), 25);
}

TEST(PositionText, CarriesTheQuarterOutOfASixteenthThatBeginsLateInIt) {
  TestSong s;
  s.NewTrack().Sign(400, 4, 4).Finish(20000).Map();
  EXPECT_EQ(SongPositionToMTC(s.song, 400 + 79), "001.01.479");
  EXPECT_EQ(PositionOf(s.song, "001.01.479"), 479);
  EXPECT_EQ(SongPositionToMTC(s.song, 400 + 80), "001.02.000");
  EXPECT_EQ(PositionOf(s.song, "001.02.000"), 400 + 120 - 400);
  EXPECT_EQ(SongPositionToMTC(s.song, 400 + 120), "001.02.400");
  EXPECT_EQ(PositionOf(s.song, "001.02.400"), 520);
}

TEST(PositionText, StepsBackWhereQuartersEndABrokenEighth) {
  // The last ticks of the eighths are carried, the place where the quarters begin is not.
  TestSong s;
  s.NewTrack().Tempo(0, 500000).Sign(0, 4, 2).Sign(100, 6, 3).Sign(400, 4, 2).Finish(9000).Map();
  EXPECT_EQ(SongPositionToMTC(s.song, 339), "001.02.099");
  EXPECT_EQ(SongPositionToMTC(s.song, 399), "001.02.159");
  TestSong broken;
  broken.NewTrack().Tempo(0, 500000).Sign(0, 4, 2).Sign(100, 6, 3).Sign(300, 4, 2).Finish(9000).Map();
  EXPECT_EQ(SongPositionToMTC(broken.song, 299), "001.02.059");
  EXPECT_EQ(SongPositionToMTC(broken.song, 300), "001.01.300");
  EXPECT_EQ(PositionOf(broken.song, "001.01.300"), 300);
  EXPECT_EQ(PositionOf(broken.song, "001.02.059"), 539) << "read in the quarters";
  EXPECT_EQ(PositionOf(broken.song, "001.01.239"), 239);
}

/// True where the arithmetic leads back to a tick.
bool IsRegular(const Song& song, std::int32_t position) {
  const std::size_t z = ZoneAt(song, position);
  const TTimeZone& zone = song.TimeZone[z];
  const TTimeZone& next = song.TimeZone[z + 1];
  const int beat = song.SourceTimeBase * 4 / zone.TS_Denominator;
  const int eighth = song.SourceTimeBase / 2;
  const int carried = zone.TS_Denominator == 8 ? eighth : song.SourceTimeBase;
  if (song.SourceTimeBase * 4 % zone.TS_Denominator != 0) return false;
  const bool broken = zone.TS_Denominator == 8 && next.TS_Denominator != 8 && next.Ticks >= eighth;
  if (broken && next.SongPosition - position <= next.Ticks - eighth) return false;
  return beat == carried || zone.Ticks + beat <= carried;
}

struct TRoundTrip {
  int Regular = 0;    ///< ticks tried in regular zones
  int Irregular = 0;  ///< ticks tried in others
};

void TryEveryTick(TestSong& s, TRoundTrip& tried) {
  for (std::int32_t p = 0; p < s.song.MaxSongPosition + 1000; ++p) {
    const std::string text = SongPositionToMTC(s.song, p);
    ASSERT_EQ(TicksToStr(s.song, p), text);
    if (!IsRegular(s.song, p)) {
      ++tried.Irregular;
      continue;
    }
    ++tried.Regular;
    ASSERT_EQ(PositionOf(s.song, text), p) << text;
    ASSERT_EQ(PositionOf(s.song, text, false), p < s.song.MaxSongPosition ? p : -1) << text;
  }
}

TEST(PositionText, LeadsBackToEveryTickWhereTheMapIsRegular) {
  std::mt19937 random(42);
  const auto upTo = [&random](int most) { return std::uniform_int_distribution<>(0, most)(random); };
  constexpr std::array timeBases = {1, 2, 24, 96, 120, 384, 480, 481, 960};
  TRoundTrip tried;
  for (int round = 0; round < 36; ++round) {
    TestSong s(timeBases[static_cast<std::size_t>(round) % timeBases.size()]);
    s.NewTrack();
    std::int32_t position = upTo(1) * upTo(500);
    for (int n = upTo(12); n > 0; --n, position += upTo(3) * upTo(700)) {
      if (upTo(1) == 0) s.Tempo(position, 1 + upTo(16'777'214));
      if (upTo(2) == 0) s.Sign(position, 1 + upTo(11), upTo(9) == 0 ? 5 : 1 + upTo(3));
    }
    s.Finish(position + upTo(4000)).Map();
    TryEveryTick(s, tried);
    if (HasFatalFailure()) FAIL() << "round " << round;
  }
  EXPECT_GT(tried.Regular, 100'000);
  EXPECT_GT(tried.Irregular, 1000) << "the songs also hold what is not regular";
}

// --- Times and names

TEST(PositionText, TellsTimesInBothLanguages) {
  EXPECT_EQ(TimeToStr(12345), "000:12.345");
  EXPECT_EQ(TimeToStr(0), "000:00.000");
  EXPECT_EQ(TimeToStr(59999), "000:59.999");
  EXPECT_EQ(TimeToStr(60000), "001:00.000");
  EXPECT_EQ(TimeToStr(3'600'007), "060:00.007");
  EXPECT_EQ(TimeToStr(std::numeric_limits<std::int32_t>::max()), "35791:23.647");
  EXPECT_EQ(TimeToStr(-1), "000:00.000");
  const InGerman german;
  EXPECT_EQ(TimeToStr(12345), "000:12,345");
}

TEST(PositionText, NamesKeysFromOctaveMinusTwo) {
  EXPECT_EQ(NoteName(0), "C-2");
  EXPECT_EQ(NoteName(12), "C-1");
  EXPECT_EQ(NoteName(24), "C0");
  EXPECT_EQ(NoteName(60), "C3");
  EXPECT_EQ(NoteName(61), "C#3");
  EXPECT_EQ(NoteName(70), "A#3");
  EXPECT_EQ(NoteName(71), "B3");
  EXPECT_EQ(NoteName(127), "G8");
  const InGerman german;
  EXPECT_EQ(NoteName(71), "B3") << "note names do not follow the language";
}

}  // namespace
}  // namespace Sonarello
