// Route markers and resets in front of a song's events.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "WriterKit.h"
#include "core/SysexPolicy.h"
#include "core/WriterMarkers.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;

Smf ThreeChannels(int format) {
  Smf smf(format, 480);
  if (format == 0) return smf.Track().At(0).On(1, 60).On(2, 61).On(10, 36).End();
  return smf.Track()
      .At(0)
      .Tempo(500000)
      .End()
      .Track()
      .At(0)
      .Text(3, "One")
      .On(1, 60)
      .End()
      .Track()
      .At(0)
      .On(2, 61)
      .End()
      .Track()
      .At(0)
      .On(10, 36)
      .End();
}

/// A song of format 0 and one of format 1: their channel tracks 1, 2 and 10 are the file's 1, 2, 3.
class WriterRoutes : public testing::TestWithParam<int> {
 protected:
  void SetUp() override { bench.Load(ThreeChannels(GetParam())); }
  WriterBench bench;
};
INSTANTIATE_TEST_SUITE_P(SourceFormats, WriterRoutes, testing::Values(0, 1));

TEST_P(WriterRoutes, WritesNoMarkersForASingleRoute) {
  bench.options.MultiMidi = true;
  bench.song.MidiOutIndex[1] = 5;  // a route that is gone
  EXPECT_EQ(bench.Write(1).Tracks[2][1], "0 913d64");
}

TEST_P(WriterRoutes, WritesNoMarkersWhenAllChannelsPlayThroughTheFirstRoute) {
  bench.RouteAway(2);
  bench.song.MidiOutIndex.fill(0);
  EXPECT_EQ(bench.Write(1).Tracks[2][1], "0 913d64");
}

TEST_P(WriterRoutes, WritesNoMarkersWithoutMultiMode) {
  bench.RouteAway(2);
  bench.options.MultiMidi = false;
  EXPECT_EQ(bench.Write(1).Tracks[2][1], "0 913d64");
}

TEST_P(WriterRoutes, MarksEveryChannelTrackOnceOneIsRoutedAway) {
  bench.RouteAway(2);
  bench.routes.Table[0].OutputName = "Out 0";
  bench.Channel(10).DrumPart = 1;
  const WrittenFile file = bench.Write(1);
  ASSERT_EQ(file.Tracks.size(), 4U);
  EXPECT_EQ(file.Tracks[1][1], "0 instrument SRL_ch.1 GM Soundset///Out 0");
  EXPECT_THAT(file.Tracks[2],
              ElementsAre(HeadLine, "0 instrument SRL_ch.2 Route 1///Out 1", "0 913d64", "999 end"));
  EXPECT_EQ(file.Tracks[3][1], "0 instrument SRL_ch.10 GM Soundset///Out 0_Drums");
}

TEST_P(WriterRoutes, NamesAHostedInstrumentByItsUnsignedID) {
  bench.RouteAway(2);
  bench.routes.Table[1].VSTi = true;
  bench.routes.Table[1].VSTiUniqueID = -2;
  EXPECT_EQ(bench.Write(1).Tracks[2][1], "0 instrument SRLvsti_ch.2 4294967294///Out 1");
}

TEST_P(WriterRoutes, MarksTheDrumsThatAreForcedToChannelTenOnEveryTrack) {
  bench.RouteAway(2);
  bench.song.DrumsSecForceToChannel10 = true;
  EXPECT_EQ(bench.Write(1).Count("0 instrument SRL_dr.2 10"), 3);
  bench.song.DrumsThirdForceToChannel10 = true;
  const WrittenFile file = bench.Write(1);
  EXPECT_EQ(file.Count("0 instrument SRL_dr.2 10"), 3);
  EXPECT_EQ(file.Count("0 instrument SRL_dr.3 10"), 3);
  EXPECT_EQ(bench.Write(0).Count("0 instrument SRL_dr.2 10"), 1);
}

TEST_P(WriterRoutes, WritesTheResetOfARouteOnce) {
  bench.options.AutoSysex = true;
  bench.RouteAway(2, 87);
  bench.song.MidiOutIndex[9] = 1;
  bench.song.MidiOutIndex[4] = 1;  // a channel without events
  const WrittenFile file = bench.Write(1);
  EXPECT_EQ(file.Count("0 f0 43104c00007e00f7"), 1);
  EXPECT_EQ(file.Tracks[2][2], "0 f0 43104c00007e00f7");
  EXPECT_EQ(bench.Write(0).Count("0 f0 43104c00007e00f7"), 1);
}

TEST_P(WriterRoutes, WritesTheResetOnAChannelThatIsInTheFile) {
  bench.options.AutoSysex = true;
  bench.RouteAway(5, 87);  // the first channel of the route has no events
  bench.song.MidiOutIndex[9] = 1;
  EXPECT_EQ(bench.Write(1).Tracks[3][2], "0 f0 43104c00007e00f7");
}

TEST_P(WriterRoutes, WritesNoResetsWithoutAutoSysex) {
  bench.RouteAway(2, 87);
  EXPECT_EQ(bench.Write(1).Count("0 f0 43104c00007e00f7"), 0);
}

TEST_P(WriterRoutes, WritesNoResetForAnInstrumentThatWantsNone) {
  bench.options.AutoSysex = true;
  bench.RouteAway(2, 13);
  EXPECT_THAT(bench.Write(1).Tracks[2],
              ElementsAre(HeadLine, "0 instrument SRL_ch.2 Route 1///Out 1", "0 913d64", "999 end"));
}

TEST_P(WriterRoutes, LetsTheResetsOfAnEarlierSaveStandInsteadOfPilingUp) {
  bench.options.AutoSysex = true;
  bench.RouteAway(2, 87);
  for (const int format : {0, 1}) {
    WriterBench again;
    again.routes = bench.routes;
    again.options.MultiMidi = true;
    again.LoadBytes(bench.Encode(format));
    again.options.AutoSysex = true;
    EXPECT_EQ(again.Write(format).Count("0 f0 43104c00007e00f7"), 1);
  }
}

TEST_P(WriterRoutes, RecoversRoutesAndDrumsFromASavedFile) {
  bench.RouteAway(2);
  bench.Channel(10).DrumPart = 1;
  bench.song.DrumsSecForceToChannel10 = true;
  for (const int format : {0, 1}) {
    WriterBench again;
    again.routes = bench.routes;
    again.options.MultiMidi = true;
    again.LoadBytes(bench.Encode(format));
    EXPECT_EQ(again.song.MidiOutIndex, bench.song.MidiOutIndex);
    EXPECT_EQ(again.Channel(10).DrumPart, 1);
    EXPECT_TRUE(again.song.DrumsSecForceToChannel10);
    const WrittenFile twice = again.Write(format);
    EXPECT_EQ(twice.Count("0 instrument SRL_ch.2 Route 1///Out 1"), 1) << "markers do not pile up";
  }
}

TEST_P(WriterRoutes, RecoversTheRouteOfARedirectedChannel) {
  bench.RouteAway(2);
  bench.Channel(2).MidiChannel = 6;
  bench.Channel(7).MidiChannel = 1;
  WriterBench again;
  again.routes = bench.routes;
  again.LoadBytes(bench.Encode(1));
  EXPECT_EQ(again.song.MidiOutIndex[6], 1);
  EXPECT_EQ(again.song.MidiOutIndex[1], 0);
}

TEST(WriterRoutesTracks, MarksChannelsOfATrackWithSeveralChannelsThere) {
  WriterBench bench;
  bench.Load(Smf(1, 480).Track().End().Track().At(0).On(3, 60).On(4, 60).End());
  bench.RouteAway(4);
  const WrittenFile file = bench.Write(1);
  EXPECT_THAT(file.Tracks[1],
              ElementsAre(HeadLine, "0 instrument SRL_ch.3 GM Soundset///",
                          "0 instrument SRL_ch.4 Route 1///Out 1", "0 923c64", "0 933c64", "999 end"));
}

TEST(WriterRoutesSplit, PutsSysexsOnTheFirstActiveChannelOfTheFirstRoute) {
  WriterBench bench;
  bench.Load(Smf(0, 480).Track().At(0).Sysex({1, 0xF7}).On(2, 61).On(3, 60).End());
  bench.RouteAway(2);
  EXPECT_EQ(bench.Write(1).Tracks[2][2], "0 f0 01f7");
  bench.song.MidiOutIndex.fill(1);
  EXPECT_EQ(bench.Write(1).Tracks[1][2], "0 f0 01f7")
      << "track 1 when no channel plays through route 0";
}

std::string Hex(std::span<const std::uint8_t> bytes) {
  std::string text;
  char two[3];
  for (const std::uint8_t byte : bytes) {
    std::snprintf(two, sizeof two, "%02x", byte);
    text += two;
  }
  return text;
}

TEST(WriterResets, TellTheFamilies) {
  const std::pair<int, const char*> rows[] = {{1, "4110421240007f0041f7"},
                                              {22, "4110421240007f0041f7"},
                                              {71, "4110421240007f0041f7"},
                                              {5, "43104c00007e00f7"},
                                              {97, "43104c00007e00f7"},
                                              {10, "267b0e0001f7"},
                                              {104, "267b0e0001f7"},
                                              {16, "7e7f0903f7"},
                                              {82, "7e7f0903f7"},
                                              {67, "4100421240007f0041f7"},
                                              {13, ""},
                                              {28, ""},
                                              {35, ""},
                                              {45, ""},
                                              {0, "7e7f0901f7"},
                                              {26, "7e7f0901f7"},
                                              {100, "7e7f0901f7"},
                                              {105, "7e7f0901f7"}};
  for (const auto& [value, reset] : rows) EXPECT_EQ(Hex(RouteResetOf(value)), reset) << value;
}

TEST(WriterResets, AreThoseThatTheAnalysisInserts) {
  const std::pair<SysexRoutine, const char*> resets[] = {
      {SysexRoutine::InsertGM2Sysex, "7e7f0903f7"},
      {SysexRoutine::InsertGSSysex, "4110421240007f0041f7"},
      {SysexRoutine::InsertXGSysex, "43104c00007e00f7"},
      {SysexRoutine::InsertKetronSysex, "267b0e0001f7"},
      {SysexRoutine::InsertKetronSD1000Sysex, "267b0e0001f7"},
      {SysexRoutine::InsertMP11Sysex, "4100421240007f0041f7"}};
  int compared = 0;
  for (int value = 0; value < 106; ++value)
    for (const PolicyStep& step : SysexPolicyOf(value))
      for (const auto& [routine, reset] : resets)
        if (step.Routine == routine && step.When == PolicyCondition::Always) {
          EXPECT_EQ(Hex(RouteResetOf(value)), reset) << value;
          ++compared;
        }
  EXPECT_GT(compared, 60);
}

}  // namespace
}  // namespace Sonarello
