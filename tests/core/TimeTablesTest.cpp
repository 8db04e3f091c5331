// The tables of tempi and signatures, and the map after a reload.
#include <gtest/gtest.h>

#include "helpers/SongBuilder.h"

namespace Sonarello {
namespace {

std::vector<std::int32_t> Positions(const Song& song) {
  std::vector<std::int32_t> positions;
  for (const TTimeZone& zone : song.TimeZone) positions.push_back(zone.SongPosition);
  return positions;
}

TEST(TimeTables, TakesFourFourForASignatureThatCannotBeCounted) {
  const std::uint8_t nothing[] = {0, 2, 24, 8};
  const std::uint8_t tooFine[] = {3, 8, 24, 8};
  const std::uint8_t wrapped[] = {3, 34, 24, 8};  // shifts count modulo 32
  for (const auto& bytes : {nothing, tooFine}) {
    EXPECT_EQ(TimeSignEntry(5, {bytes, 4}).Numerator, 4);
    EXPECT_EQ(TimeSignEntry(5, {bytes, 4}).Denominator, 4);
  }
  EXPECT_EQ(TimeSignEntry(5, wrapped).Numerator, 3);
  EXPECT_EQ(TimeSignEntry(5, wrapped).Denominator, 4);
  EXPECT_EQ(TimeSignEntry(5, wrapped).SongPosition, 5);
  EXPECT_EQ(TimeSignEntry(5, wrapped).TicksInMClick, 24);
}

TEST(TimeTables, CountsATempoOfZeroAs120) {
  const std::uint8_t zero[] = {0, 0, 0};
  EXPECT_EQ(TempoEntry(7, zero).TempoLongInt, 500000);
  EXPECT_EQ(TempoEntry(7, zero).Tempo, 120);
  const std::uint8_t fastest[] = {0, 0, 1};
  EXPECT_EQ(TempoEntry(7, fastest).Tempo, 65535) << "saturated";
  EXPECT_EQ(BeatsPerMinute(500001), 120);
  EXPECT_EQ(BeatsPerMinute(16777215), 4);
}

TEST(TimeTables, TakesTempiOfLaterTracksWhenItIsReloaded) {
  TestSong s;
  s.NewTrack().Tempo(0, 500000).NewTrack().Tempo(480, 1000000).Sign(480, 3, 2).Ctrl(960, 7, 1);
  s.Finish().Map();
  EXPECT_EQ(s.Event(1, 3)->TimePosition, 1000) << "not with the load";
  s.functions.UpdateTimeZoneData();
  EXPECT_EQ(s.Event(1, 3)->TimePosition, 1500);
  EXPECT_EQ(s.song.SourceTempoElements, 3);
  EXPECT_EQ(s.song.TimeSignElements, 3) << "one that was inserted, one read, one to spare";
  EXPECT_EQ(s.song.BackupTempo, (std::vector<std::uint16_t>{120, 60, 60}));
  EXPECT_EQ(s.song.CurrentTimeZone, 0);
}

TEST(TimeTables, FillsTheTablesInTrackOrderAndSortsThemForTheMap) {
  TestSong s;
  s.NewTrack().Tempo(600, 600000).NewTrack().Tempo(0, 400000).Tempo(600, 700000).NewTrack();
  s.Tempo(300, 300000).Finish();
  s.functions.ReloadTempoTimeSign();
  std::vector<std::int32_t> tempi;
  for (const TTempo& t : s.song.SourceTempo) tempi.push_back(t.TempoLongInt);
  EXPECT_EQ(tempi, (std::vector<std::int32_t>{600000, 400000, 700000, 300000, 300000}));
  s.Map();
  EXPECT_EQ(Positions(s.song), (std::vector<std::int32_t>{0, 300, 600, 600, 1000, 1000}));
  EXPECT_EQ(s.song.TimeZone[3].TempoLongInt, 700000) << "the later track's";
  EXPECT_EQ(s.song.SourceTempoElements, 5) << "nothing is inserted in front of the entry at 0";
}

TEST(TimeTables, KeepsTheOrderOfManyTempiAtOneTickWhenItSorts) {
  TestSong s;
  s.NewTrack();
  for (int n = 0; n < 100; ++n) s.Tempo(600, 600000 + n);
  s.NewTrack().Tempo(0, 400000).Finish();
  s.functions.ReloadTempoTimeSign();
  s.Map();
  for (std::size_t n = 0; n < 100; ++n)
    EXPECT_EQ(s.song.TimeZone[1 + n].TempoLongInt, 600000 + static_cast<int>(n));
}

TEST(TimeTables, ClosesTheTablesOfASongWithoutMetas) {
  TestSong s;
  s.NewTrack().Finish();
  s.song.SourceTempo.clear();
  s.song.TimeSignature.clear();
  s.functions.ReloadTempoTimeSign();
  ASSERT_EQ(s.song.SourceTempoElements, 2);
  ASSERT_EQ(s.song.TimeSignElements, 2);
  EXPECT_EQ(s.song.SourceTempo[0].SongPosition, 0);
  EXPECT_EQ(s.song.SourceTempo[0].Tempo, 120);
  EXPECT_EQ(s.song.SourceTempo[0].TempoLongInt, 500000);
  EXPECT_EQ(s.song.SourceTempo[1].SongPosition, 1000);
  EXPECT_EQ(s.song.SourceTempo[1].Tempo, 120);
  EXPECT_EQ(s.song.TimeSignature[0].Numerator, 4);
  EXPECT_EQ(s.song.TimeSignature[0].Denominator, 4);
  EXPECT_EQ(s.song.TimeSignature[0].TicksInMClick, 0);
  EXPECT_EQ(s.song.TimeSignature[1].SongPosition, 1000);
}

TEST(TimeTables, ReloadsOnlyMetasThatAreWhole) {
  TestSong s;
  const std::uint8_t two[] = {7, 161};
  s.NewTrack().Tempo(0, 300000).Put(NewMeta(s.song.Pool, MetaTempo, two, 100)).Tempo(200, 200000);
  s.Finish();
  MarkRemoved(s.Event(0, 3));
  s.functions.ReloadTempoTimeSign();
  ASSERT_EQ(s.song.SourceTempoElements, 2);
  EXPECT_EQ(s.song.SourceTempo[0].TempoLongInt, 300000);
}

TEST(TimeTables, EndsOneMillisecondBehindTheSongAfterAnUpdate) {
  TestSong s;
  s.NewTrack().Tempo(480, 600000).Finish();
  s.functions.UpdateTimeZoneData();
  const auto& z = s.song.TimeZone;
  ASSERT_EQ(z.size(), 4U);
  EXPECT_EQ(z[1].Time, 500);
  EXPECT_EQ(z[2].Time, s.song.SongLength + 1);
  EXPECT_EQ(z[3].Time, s.song.SongLength + 1);
}

}  // namespace
}  // namespace Sonarello
