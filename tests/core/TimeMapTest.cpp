// The time map: zones, times of events, the end of the song.
#include "core/TimeMap.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <random>

#include "helpers/SongBuilder.h"

namespace Sonarello {
namespace {

/// Measure, beat and ticks of a zone in one number that is easy to read: 2.3.120 is 203120.
int PlaceNumber(const TTimeZone& zone) { return zone.Measure * 100000 + zone.Beat * 1000 + zone.Ticks; }

std::vector<std::int32_t> Positions(const Song& song) {
  std::vector<std::int32_t> positions;
  for (const TTimeZone& zone : song.TimeZone) positions.push_back(zone.SongPosition);
  return positions;
}

TEST(TimeMap, IsOneZoneOf120WithoutATempo) {
  TestSong s;
  s.NewTrack().Ctrl(0, 7, 1).Ctrl(1, 7, 1).Ctrl(480, 7, 1).Ctrl(960, 7, 1).Finish().Map();
  EXPECT_EQ(Positions(s.song), (std::vector<std::int32_t>{0, 1000, 1000}));
  EXPECT_EQ(s.song.TimeZoneElements, 2);
  EXPECT_EQ(s.song.TimeZone[0].Tempo, 120);
  EXPECT_EQ(s.song.TimeZone[0].TempoComp, static_cast<float>(500000 / 1000.0 / 480));
  EXPECT_EQ(s.song.TimeZone[0].DisplayTimerPrep, 500000);
  EXPECT_EQ(s.song.TimeZone[0].TS_Numerator, 4);
  EXPECT_EQ(s.Event(0, 0)->TimePosition, 0);
  EXPECT_EQ(s.Event(0, 1)->TimePosition, 0);
  EXPECT_EQ(s.Event(0, 2)->TimePosition, 1);
  EXPECT_EQ(s.Event(0, 3)->TimePosition, 500);
  EXPECT_EQ(s.Event(0, 4)->TimePosition, 1000);
  EXPECT_EQ(s.song.CurrentTempo, 120);
}

TEST(TimeMap, RoundsToTheEvenNeighbour) {
  EXPECT_EQ(RoundToEven(0.5), 0);
  EXPECT_EQ(RoundToEven(1.5), 2);
  EXPECT_EQ(RoundToEven(2.5), 2);
  EXPECT_EQ(RoundToEven(-0.5), 0);
  EXPECT_EQ(RoundToEven(-1.5), -2);
  EXPECT_EQ(RoundToEven(2.5000001), 3);
  EXPECT_EQ(RoundToEven(1e300), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(RoundToEven(-1e300), std::numeric_limits<std::int32_t>::min());
  std::mt19937 random(1);
  std::uniform_real_distribution<double> any(-2147483647.0, 2147483647.0);
  for (int n = 0; n < 100000; ++n) {
    const double value = any(random);
    ASSERT_EQ(RoundToEven(value), std::lrint(value)) << value;
  }
}

TEST(TimeMap, KeepsMillisecondsPerTickInSinglePrecision) {
  TestSong s(96);
  s.NewTrack().Tempo(0, 451127).Ctrl(100'000'000, 7, 1).Finish().Map();
  const float comp = s.song.TimeZone[0].TempoComp;
  EXPECT_EQ(comp, static_cast<float>((451127 / 1000.0) / 96));
  EXPECT_EQ(s.Event(0, 2)->TimePosition, std::lrint(100'000'000 * double{comp}));
  EXPECT_NE(s.Event(0, 2)->TimePosition, std::lrint(100'000'000 * (451127 / 1000.0 / 96)));
}

TEST(TimeMap, MergesTempiAndSignatures) {
  TestSong s;
  s.NewTrack();
  s.Tempo(0, 500000).Sign(0, 3, 2).Tempo(1440, 250000).Tempo(2880, 1000000).Sign(2880, 2, 2);
  s.Sign(3840, 6, 3).Ctrl(6000, 7, 0).Finish().Map();
  EXPECT_EQ(Positions(s.song), (std::vector<std::int32_t>{0, 1440, 2880, 3840, 6011, 6011}));
  EXPECT_EQ(s.song.TimeZoneElements, 5);
  const auto& z = s.song.TimeZone;
  EXPECT_EQ(PlaceNumber(z[0]), 101000);
  EXPECT_EQ(PlaceNumber(z[1]), 201000);
  EXPECT_EQ(PlaceNumber(z[2]), 301000);
  EXPECT_EQ(PlaceNumber(z[3]), 401000);
  EXPECT_EQ(z[1].Time, 1500);
  EXPECT_EQ(z[2].Time, 2250);
  EXPECT_EQ(z[3].Time, 4250);
  EXPECT_EQ(z[3].TempoLongInt, 1000000);
  EXPECT_EQ(z[3].Tempo, 60);
  EXPECT_EQ(z[3].TS_Denominator, 8);
  EXPECT_EQ(z[3].DisplayTimerPrep, 500000);
  EXPECT_EQ(z[1].TS_Numerator, 3);
  // The sentinels copy the last zone.
  EXPECT_EQ(z[5].TS_Numerator, 6);
  EXPECT_EQ(z[5].TempoComp, z[3].TempoComp);
}

TEST(TimeMap, InsertsTheFirstTempoAndSignatureWhereTheyComeLate) {
  TestSong s;
  s.NewTrack().Tempo(100, 400000).Sign(200, 3, 2).Finish().Map();
  EXPECT_EQ(s.song.SourceTempoElements, 3);
  EXPECT_EQ(s.song.SourceTempo[0].SongPosition, 0);
  EXPECT_EQ(s.song.SourceTempo[0].Tempo, 120);
  EXPECT_EQ(s.song.SourceTempo[0].OldTempoLongInt, 500000);
  EXPECT_EQ(s.song.SourceTempo[0].OriginalTempoLongint, 500000);
  EXPECT_EQ(s.song.SourceTempo[1].SongPosition, 100);
  EXPECT_EQ(s.song.CurrentTempo, 120);
  EXPECT_EQ(s.song.TimeSignElements, 3);
  EXPECT_EQ(s.song.TimeSignature[0].Numerator, 4);
  EXPECT_EQ(s.song.TimeSignature[0].Denominator, 4);
  EXPECT_EQ(s.song.TimeSignature[0]._32NotesInQNote, 8);
  EXPECT_EQ(s.song.TimeSignature[0].TicksInMClick, 36);
  EXPECT_EQ(Positions(s.song), (std::vector<std::int32_t>{0, 100, 200, 1000, 1000}));
  s.Map();
  EXPECT_EQ(s.song.SourceTempoElements, 3) << "a second map inserts nothing more";
}

TEST(TimeMap, ReadsATwoTwoSignatureAsFourFour) {
  TestSong s;
  s.NewTrack().Sign(0, 2, 1).Finish(3840).Map();
  EXPECT_EQ(s.song.TimeSignature[0].Numerator, 4);
  EXPECT_EQ(s.song.TimeSignature[0].Denominator, 4);
  EXPECT_EQ(s.song.TimeZone[0].TS_Numerator, 4);
  EXPECT_EQ(SongPositionToMTC(s.song, 1440), "001.04.000");
  EXPECT_EQ(SongPositionToMTC(s.song, 1920), "002.01.000");
  EXPECT_EQ(s.Event(0, 1)->Meta[0], 2) << "the meta stays as it was read";
  EXPECT_EQ(s.Event(0, 1)->Meta[1], 1);
  s.Map();
  EXPECT_EQ(s.song.TimeSignature[0].Numerator, 4) << "only halves are rewritten";
}

TEST(TimeMap, SaturatesTheNumeratorOfAMeasureOfVeryManyHalves) {
  TestSong s;
  s.NewTrack().Sign(0, 255, 1).Finish().Map();
  EXPECT_EQ(s.song.TimeSignature[0].Numerator, 255);
  EXPECT_EQ(s.song.TimeSignature[0].Denominator, 4);
}

TEST(TimeMap, CountsTicksByTheSignatureThatBegins) {
  // 300 ticks of a 4/4 measure are one eighth and 60 ticks where 6/8 begins.
  TestSong s;
  s.NewTrack().Sign(300, 6, 3).Finish(5000).Map();
  EXPECT_EQ(PlaceNumber(s.song.TimeZone[1]), 102060);
  EXPECT_EQ(s.song.TimeZone[1].DisplayTimeOffset, std::lrint(60 * 1.0416666));
}

TEST(TimeMap, CarriesBeatsByTheSignatureThatEnds) {
  // The beat where 2/4 begins stays beat 4 of the measure that is under way.
  TestSong s;
  s.NewTrack().Sign(1440, 2, 2).Sign(1920, 4, 2).Finish(5000).Map();
  EXPECT_EQ(PlaceNumber(s.song.TimeZone[1]), 104000);
  // Beat 5 of a 2/4 measure: two carries lead to measure 3, beat 1.
  EXPECT_EQ(PlaceNumber(s.song.TimeZone[2]), 301000);
  EXPECT_EQ(SongPositionToMTC(s.song, 1440), "002.02.000") << "told by its own signature";
}

TEST(TimeMap, CountsWholeNoteBeatsByQuarters) {
  // In 1/1 a quarter behind the measure's start is told as the next measure. This is deliberate.
  TestSong s;
  s.NewTrack().Sign(0, 1, 0).Tempo(480, 500000).Tempo(1920, 500000).Finish(5000).Map();
  EXPECT_EQ(PlaceNumber(s.song.TimeZone[1]), 201000);
  EXPECT_EQ(PlaceNumber(s.song.TimeZone[2]), 501000);
}

TEST(TimeMap, TellsTheTimeSinceTheLastBeatInTheTempoBefore) {
  TestSong s;
  s.NewTrack().Tempo(0, 1000000).Tempo(600, 500000).Finish().Map();
  EXPECT_EQ(s.song.TimeZone[1].Ticks, 120);
  EXPECT_EQ(s.song.TimeZone[1].DisplayTimeOffset, 250);
}

TEST(TimeMap, LetsTheLastOfTwoTempiAtOneTickCount) {
  TestSong s;
  s.NewTrack().Tempo(0, 500000).Tempo(480, 250000).Tempo(480, 1000000).Sign(480, 3, 2).Sign(480, 2, 2);
  s.Ctrl(960, 7, 1).Finish().Map();
  EXPECT_EQ(Positions(s.song), (std::vector<std::int32_t>{0, 480, 480, 1000, 1000}));
  EXPECT_EQ(s.Event(0, 6)->TimePosition, 500 + 1000);
  EXPECT_EQ(s.song.TimeZone[ZoneAt(s.song, 480)].TS_Numerator, 2);
  EXPECT_EQ(s.song.TimeZone[ZoneAt(s.song, 480)].TempoLongInt, 1000000);
  EXPECT_EQ(s.song.TimeZone[2].Time, 500);
}

TEST(TimeMap, LetsTheLastOfTwoTempiAtTheStartCount) {
  TestSong s;
  s.NewTrack().Tempo(0, 500000).Tempo(0, 250000).Ctrl(480, 7, 1).Finish().Map();
  EXPECT_EQ(s.song.SourceTempoElements, 3);
  EXPECT_EQ(s.Event(0, 3)->TimePosition, 250);
}

TEST(TimeMap, SumsZonesExactlyAndRoundsEachOnce) {
  // Every zone lasts 1.0416 ms; rounded one by one they would lose 41 ms in a thousand.
  TestSong s;
  s.NewTrack();
  for (int n = 0; n <= 1000; ++n) s.Tempo(n, 500000);
  s.Finish(1000).Map();
  EXPECT_EQ(s.song.TimeZone[1000].Time, 1042);
  double sum = 0;
  for (std::size_t k = 1; k <= 1000; ++k) {
    sum = 0;
    for (std::size_t n = 1; n <= k; ++n) sum += 1 * double{s.song.TimeZone[n - 1].TempoComp};
    ASSERT_EQ(s.song.TimeZone[k].Time, std::lrint(sum));
  }
}

TEST(TimeMap, RoundsEventsFromTheirZoneSoThatATimeMayStepBackByOne) {
  // Zones are rounded from the song's start, events from their zone's. This is deliberate.
  TestSong s(1000);
  s.NewTrack().Tempo(0, 10600).Tempo(1000, 510).Ctrl(1999, 7, 1).Tempo(2000, 500000).Ctrl(2000, 7, 1);
  s.Finish().Map();
  EXPECT_EQ(s.song.TimeZone[1].Time, 11);
  EXPECT_EQ(s.Event(0, 3)->TimePosition, 12);
  EXPECT_EQ(s.song.TimeZone[2].Time, 11);
  EXPECT_EQ(s.Event(0, 5)->TimePosition, 11);
}

TEST(TimeMap, TellsWhereTheSongEnds) {
  TestSong s;
  s.NewTrack().Finish(4790).Map();
  EXPECT_EQ(s.song.MaxSongPosition, 4800);
  EXPECT_EQ(s.song.MaxSongPositionTime, 5000);
  EXPECT_EQ(s.song.MaxSongPositionMeasure, 3);
  EXPECT_EQ(s.song.MaxSongPositionBeat, 3);
  EXPECT_EQ(s.song.MaxSongPositionTicks, 0);
  EXPECT_EQ(s.song.MaxSongPositionMTC, "303000");
  EXPECT_EQ(s.song.MTB_Length, 3);
  EXPECT_EQ(s.song.MTC_Length, 10);
}

TEST(TimeMap, TakesTheBeatOfTheEndFromTheZoneBehindWhenItIsCarried) {
  // From beat 3 two beats lead to beat 5, which is carried; the sentinel's beat 1 less 4 is the result.
  // This is deliberate.
  TestSong s;
  s.NewTrack().Tempo(0, 500000).Tempo(960, 500000).Finish(1920 - 10).Map();
  EXPECT_EQ(s.song.MaxSongPosition, 1920);
  EXPECT_EQ(s.song.TimeZone[2].Beat, 1);
  EXPECT_EQ(s.song.MaxSongPositionMeasure, 2);
  EXPECT_EQ(s.song.MaxSongPositionBeat, -3);
  EXPECT_EQ(s.song.MaxSongPositionMTC, "2-3000");
}

TEST(TimeMap, CarriesTheTicksOfTheEndByTheZoneBehind) {
  // A signature at the very end is the zone behind: its eighths carry the 250 ticks. This is
  // deliberate.
  TestSong s;
  s.NewTrack().Finish(1200);
  s.song.TimeSignature[1].SongPosition = s.song.MaxSongPosition;
  s.song.TimeSignature[1].Denominator = 8;
  s.Map();
  EXPECT_EQ(s.song.MaxSongPosition, 1210);
  EXPECT_EQ(s.song.MaxSongPositionTicks, 10);
  EXPECT_EQ(s.song.MaxSongPositionBeat, 4);
}

TEST(TimeMap, WidensThePositionTextFromAThousandMeasures) {
  TestSong s;
  s.NewTrack().Finish(999 * 1920 - 11).Map();
  EXPECT_EQ(s.song.MaxSongPositionMeasure, 999);
  EXPECT_EQ(s.song.MTC_Length, 10);
  TestSong longer;
  longer.NewTrack().Finish(999 * 1920 - 10).Map();
  EXPECT_EQ(longer.song.MaxSongPositionMeasure, 1000);
  EXPECT_EQ(longer.song.MTC_Length, 11);
}

TEST(TimeMap, TakesTheWidthOfTicksFromTheTimeBase) {
  const std::vector<std::pair<int, int>> widths = {{1, 1},     {9, 1},    {10, 2},   {99, 2},
                                                   {100, 3},   {999, 3},  {1000, 4}, {9999, 4},
                                                   {10000, 5}, {65535, 5}};
  for (const auto& [timeBase, width] : widths) {
    TestSong s(timeBase);
    s.NewTrack().Finish().Map();
    EXPECT_EQ(s.song.MTB_Length, width) << timeBase;
  }
}

TEST(TimeMap, FollowsNewTempiInTheStandingTable) {
  TestSong s;
  s.NewTrack().Tempo(0, 500000).Tempo(480, 500000).Ctrl(960, 7, 1).Finish().Map();
  s.song.TimeZone[0].TempoLongInt = 1000000;
  s.song.TimeZone[1].TempoLongInt = 250000;
  s.functions.UpdateTimeZones();
  s.functions.SetTimePositions();
  EXPECT_EQ(s.song.TimeZone[0].TempoComp, static_cast<float>(1000.0 / 480));
  EXPECT_EQ(s.song.TimeZone[0].DisplayTimerPrep, 1000000);
  EXPECT_EQ(s.song.TimeZone[1].Time, 1000);
  EXPECT_EQ(s.Event(0, 3)->TimePosition, 1250);
  EXPECT_EQ(s.song.MaxSongPositionTime, 1000 + std::lrint(519 * 250.0 / 480));
  TestSong empty;
  empty.functions.UpdateTimeZones();
  EXPECT_TRUE(empty.song.TimeZone.empty());
}

TEST(TimeMap, UpdatedWithoutAChangeStaysTheSame) {
  TestSong s;
  s.NewTrack().Tempo(0, 451127).Sign(0, 6, 3).Tempo(777, 333333).Sign(1555, 5, 4).Finish(9000).Map();
  const std::vector<TTimeZone> before = s.song.TimeZone;
  s.functions.UpdateTimeZones();
  for (std::size_t z = 0; z < before.size(); ++z) {
    EXPECT_EQ(PlaceNumber(before[z]), PlaceNumber(s.song.TimeZone[z]));
    EXPECT_EQ(before[z].Time, s.song.TimeZone[z].Time);
    EXPECT_EQ(before[z].DisplayTimeOffset, s.song.TimeZone[z].DisplayTimeOffset);
  }
}

TEST(TimeMap, SetsTheLengthAndTheTimeOfTheFirstNote) {
  TestSong s;
  s.NewTrack().NewTrack().Ctrl(480, 7, 1).Finish(1910);
  s.song.TickPositionOfFirstNote = 960;
  s.Map();
  EXPECT_EQ(s.song.SongLength, 2000) << "End of track is the last event";
  EXPECT_EQ(s.song.TimePositionOfFirstNote, 1000);
}

TEST(TimeMap, FindsTheTimesOfAListThatStepsBack) {
  TestSong s;
  s.NewTrack().Tempo(0, 500000).Tempo(480, 1000000).Ctrl(960, 7, 1).Finish();
  s.Event(0, 3)->Position = 240;  // an editor's list under way
  s.Map();
  EXPECT_EQ(s.Event(0, 3)->TimePosition, 250);
  EXPECT_EQ(s.Event(0, 4)->TimePosition, 500 + std::lrint(519 * 1000.0 / 480));
}

TEST(TimeMap, TimesTheEffectMemoryOfTheMainInstrument) {
  TestSong s;
  constexpr int genos = 87;
  constexpr int motifXF = 69;
  s.Instrument(genos);
  s.NewTrack().Finish();
  const auto addEffect = [&s](TMyTrack& track) {
    BeginTrack(s.song.Pool, track);
    Append(track, NewChannelEvent(s.song.Pool, 0xB0, 7, 1, 100'000));
  };
  addEffect(s.song.DSPTracks.GenosDSPTrack);
  addEffect(s.song.DSPTracks.MotifXFDSPTrack);
  s.Map();
  EXPECT_EQ(s.song.DSPTracks.GenosDSPTrack.TrkLastEvent->TimePosition, 104167);
  EXPECT_EQ(s.song.DSPTracks.MotifXFDSPTrack.TrkLastEvent->TimePosition, 0) << "another instrument's";
  EXPECT_EQ(s.song.SongLength, 1041) << "effects do not lengthen the song";

  s.Instrument(motifXF);
  s.options.MotifDSPsEnabled = false;
  s.functions.SetTimePositions();
  EXPECT_EQ(s.song.DSPTracks.MotifXFDSPTrack.TrkLastEvent->TimePosition, 0);
  s.options.MotifDSPsEnabled = true;
  s.functions.SetTimePositions();
  EXPECT_EQ(s.song.DSPTracks.MotifXFDSPTrack.TrkLastEvent->TimePosition, 104167);
}

// --- Positions and zones

TEST(TimeMap, PutsAPositionBehindTheSongIntoTheZoneBeforeTheLast) {
  TestSong s;
  s.NewTrack().Tempo(0, 500000).Tempo(480, 600000).Finish().Map();
  ASSERT_EQ(s.song.TimeZone.size(), 4U);
  EXPECT_EQ(ZoneAt(s.song, -5), 0U);
  EXPECT_EQ(ZoneAt(s.song, 0), 0U);
  EXPECT_EQ(ZoneAt(s.song, 479), 0U);
  EXPECT_EQ(ZoneAt(s.song, 480), 1U);
  EXPECT_EQ(ZoneAt(s.song, 999), 1U);
  EXPECT_EQ(ZoneAt(s.song, 1000), 2U);
  EXPECT_EQ(ZoneAt(s.song, 1'000'000), 2U);
  EXPECT_EQ(ZoneAt(Song(), 100), 0U);
}

TEST(TimeMap, TellsTheTimeOfAnyPosition) {
  TestSong s;
  s.NewTrack().Tempo(0, 500000).Tempo(480, 1000000).Finish().Map();
  EXPECT_EQ(TimeOfPosition(s.song, -7), 0);
  EXPECT_EQ(TimeOfPosition(s.song, 0), 0);
  EXPECT_EQ(TimeOfPosition(s.song, 240), 250);
  EXPECT_EQ(TimeOfPosition(s.song, 480), 500);
  EXPECT_EQ(TimeOfPosition(s.song, 960), 1500);
  EXPECT_EQ(TimeOfPosition(s.song, 1440), 2500);
  EXPECT_EQ(TimeOfPosition(Song(), 960), 0) << "there is no map";
}

TEST(TimeMap, TellsTheSameTimeWhicheverWayAPositionIsReached) {
  TestSong s(24);
  s.NewTrack();
  std::mt19937 random(3);
  const auto upTo = [&random](int most) { return std::uniform_int_distribution<>(0, most)(random); };
  std::int32_t position = 0;
  for (int n = 0; n < 200; ++n, position += upTo(2) * upTo(50)) s.Tempo(position, 1 + upTo(2'000'000));
  s.Finish().Map();
  const auto& zones = s.song.TimeZone;
  ZoneCursor cursor(s.song);
  for (int n = 0; n < 20000; ++n) {
    // Mostly on by a little, at times far on or back.
    position = upTo(9) == 0 ? upTo(s.song.MaxSongPosition + 50) : position + upTo(40);
    std::size_t z = 0;
    while (z + 2 < zones.size() && position >= zones[z + 1].SongPosition) ++z;
    const std::int32_t expected =
        position == 0
            ? 0
            : zones[z].Time + static_cast<std::int32_t>(std::lrint((position - zones[z].SongPosition) *
                                                                   double{zones[z].TempoComp}));
    ASSERT_EQ(cursor.TimeOf(position), expected) << position;
    ASSERT_EQ(TimeOfPosition(s.song, position), expected) << position;
  }
}

// --- Hostile songs

TEST(TimeMap, SaturatesTimesThatLeave32Bits) {
  constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
  TestSong s(1);
  s.NewTrack().Tempo(0, 16777215).Tempo(LastPosition / 2, 16777215).Ctrl(LastPosition, 7, 1);
  s.Finish(LastPosition).Map();
  EXPECT_EQ(s.Event(0, 3)->TimePosition, most);
  EXPECT_EQ(s.song.SongLength, most);
  EXPECT_EQ(s.song.MaxSongPositionTime, most);
  EXPECT_EQ(s.song.TimeZone[1].Time, most);
  s.functions.UpdateTimeZoneData();
  EXPECT_EQ(s.song.TimeZone.back().Time, most);
}

TEST(TimeMap, CountsVeryLongSongsWithoutSteppingThroughThem) {
  for (const int timeBase : {1, 3, 65535})
    for (int exponent = 0; exponent <= 7; ++exponent) {
      TestSong s(timeBase);
      s.NewTrack()
          .Sign(0, 1, exponent)
          .Sign(LastPosition - 5, 255, exponent)
          .Finish(LastPosition)
          .Map();
      for (std::size_t z = 1; z < s.song.TimeZone.size(); ++z) {
        EXPECT_GT(s.song.TimeZone[z].Measure, 1) << timeBase << " " << exponent;
        EXPECT_GE(s.song.TimeZone[z].Beat, 1);
        EXPECT_LT(s.song.TimeZone[z].Ticks, timeBase);
      }
      EXPECT_FALSE(SongPositionToMTC(s.song, LastPosition).empty());
    }
}

TEST(TimeMap, IsSoundForTablesThatNobodyClosed) {
  TestSong s;
  s.NewTrack().Finish();
  s.song.SourceTempo.clear();
  s.song.TimeSignature.assign(3, {});
  s.Map();
  EXPECT_EQ(Positions(s.song), (std::vector<std::int32_t>{0, 1000, 1000}));
  EXPECT_EQ(s.song.TimeZone[0].TempoLongInt, 500000);
  EXPECT_EQ(s.song.TimeZone[0].TS_Numerator, 4);
}

TEST(TimeMap, AscendsForAnyTables) {
  std::mt19937 random(7);
  const auto upTo = [&random](int most) { return std::uniform_int_distribution<>(0, most)(random); };
  for (int round = 0; round < 300; ++round) {
    TestSong s(1 + upTo(round % 3 == 0 ? 5 : 1000));
    s.NewTrack().Finish(upTo(20000));
    s.song.SourceTempo.clear();
    s.song.TimeSignature.clear();
    for (int n = upTo(20); n > 0; --n) {
      const std::uint8_t bytes[] = {0, static_cast<std::uint8_t>(upTo(255)),
                                    static_cast<std::uint8_t>(upTo(255))};
      s.song.SourceTempo.push_back(TempoEntry(upTo(25000) - 10, bytes));
    }
    for (int n = upTo(20); n > 0; --n) {
      const std::uint8_t bytes[] = {static_cast<std::uint8_t>(upTo(255)),
                                    static_cast<std::uint8_t>(upTo(9)), 24, 8};
      s.song.TimeSignature.push_back(TimeSignEntry(upTo(25000) - 10, bytes));
    }
    s.Map();
    const auto& zones = s.song.TimeZone;
    ASSERT_EQ(zones[0].SongPosition, 0);
    ASSERT_EQ(zones.back().SongPosition, s.song.MaxSongPosition + 1);
    ASSERT_EQ(s.song.TimeZoneElements + 1, std::ssize(zones));
    for (std::size_t z = 1; z < zones.size(); ++z) {
      ASSERT_LE(zones[z - 1].SongPosition, zones[z].SongPosition);
      ASSERT_LE(zones[z - 1].Time, zones[z].Time);
      ASSERT_LE(zones[z - 1].Measure, zones[z].Measure);
      ASSERT_GE(zones[z].Beat, 1);
    }
    std::int32_t last = 0;
    for (std::int32_t p = 0; p <= s.song.MaxSongPosition; p += 1 + upTo(20)) {
      const std::int32_t time = TimeOfPosition(s.song, p);
      ASSERT_GE(time, last - 1) << "a zone's start may round down by one";
      last = std::max(last, time);
    }
  }
}

TEST(TimeMap, CostsNoSquareOfTheTempi) {
  using Clock = std::chrono::steady_clock;
  const auto build = [](int tempi) {
    TestSong s;
    s.NewTrack();
    for (int n = 0; n < tempi; ++n) s.Tempo(n * 5, 400000 + n);
    s.Finish();
    const auto start = Clock::now();
    s.Map();
    s.functions.UpdateTimeZoneData();
    return std::chrono::duration<double>(Clock::now() - start).count();
  };
  EXPECT_LT(build(300'000), 10.0) << "a sum from the start per zone would take minutes";
}

}  // namespace
}  // namespace Sonarello
