#include "core/GSDelay.h"

#include "core/RolandChecksum.h"
#include "helpers/SysexSong.h"

namespace Sonarello {
namespace {

using testing::Contains;
using testing::ElementsAre;

TEST(RolandChecksum, BringsAddressAndDataToAMultipleOf128) {
  EXPECT_EQ(RolandChecksum(FromHex("40 00 7F 00")), 0x41);
  EXPECT_EQ(RolandChecksum(FromHex("40 01 34 5D")), 0x2E);
  EXPECT_EQ(RolandChecksum(FromHex("40 40 00 00")), 0x00);
  EXPECT_EQ(RolandChecksum(FromHex("")), 0x00);
}

TEST(GSDelay, KnowsTheDelayTimes) {
  const std::pair<int, double> times[] = {
      {0, 0.1}, {1, 0.1}, {20, 2},   {21, 2.2}, {35, 5},   {36, 5.5},  {45, 10},   {55, 20},   {56, 22},
      {70, 50}, {71, 55}, {80, 100}, {90, 200}, {92, 240}, {105, 500}, {114, 950}, {115, 1000}};
  for (const auto& [index, ms] : times) EXPECT_DOUBLE_EQ(GSDelayTimeMs(index), ms) << index;
  EXPECT_DOUBLE_EQ(GSDelayTimeMs(127), 1000);
  EXPECT_DOUBLE_EQ(GSDelayTimeMs(-1), 0.1);
}

TEST(GSDelay, FindsTheTimeThatComesNearestFromBelow) {
  EXPECT_EQ(GSDelayTimeIndex(49), 0);
  EXPECT_EQ(GSDelayTimeIndex(50), 70);
  EXPECT_EQ(GSDelayTimeIndex(54), 70);
  EXPECT_EQ(GSDelayTimeIndex(55), 71);
  EXPECT_EQ(GSDelayTimeIndex(250), 92);
  EXPECT_EQ(GSDelayTimeIndex(999), 114);
  EXPECT_EQ(GSDelayTimeIndex(1000), 0);
}

/// Byte of the delay time that a song of a tempo gets.
int TimeAtTempo(int tempo) {
  SysexSong bench(1);
  bench.song.SourceTempo[0].Tempo = static_cast<std::uint16_t>(tempo);
  bench.Fit();
  return bench.song.RolandDelayTimeSysexEvent->Meta[7];
}

TEST(GSDelay, DelaysByAnEighthNoteOfTheFirstTempo) {
  EXPECT_EQ(TimeAtTempo(120), 92);  // 250 ms
  EXPECT_EQ(TimeAtTempo(0), 92);
  EXPECT_EQ(TimeAtTempo(97), 95);   // 309 ms
  EXPECT_EQ(TimeAtTempo(600), 70);  // 50 ms
  EXPECT_EQ(TimeAtTempo(601), 0);   // 49 ms
  EXPECT_EQ(TimeAtTempo(31), 114);  // 967 ms
  EXPECT_EQ(TimeAtTempo(30), 0);    // 1000 ms
}

TEST(GSDelay, NeedsNoTempo) {
  SysexSong bench(1);
  bench.song.SourceTempo.clear();
  bench.Fit();
  EXPECT_EQ(bench.song.RolandDelayTimeSysexEvent->Meta[7], 92);
}

TEST(GSDelay, PutsTimeAndFeedbackInFrontOfTheMusic) {
  SysexSong bench(60);
  bench.Fit();
  EXPECT_EQ(bench.PlaceOf(bench.song.RolandDelayTimeSysexEvent), "1/80");
  EXPECT_EQ(bench.PlaceOf(bench.song.RolandDelayFeedbackSysexEvent), "1/90");
  EXPECT_EQ(bench.song.RolandDelaySysexTrack, 1);
  EXPECT_THAT(bench.Live(1), Contains("80: 41 10 42 12 40 01 52 5C 11 F7"));
  EXPECT_THAT(bench.Live(1), Contains("90: 41 10 42 12 40 01 59 50 16 F7"));
}

TEST(GSDelay, TakesWhatTheSongSetsTheLastOfEach) {
  SysexSong bench(1, 4);
  bench.Sysex(2, 100, "41 10 42 12 40 01 59 10 56 F7");
  PtrMidiEvent feedback = bench.Sysex(2, 200, "41 10 42 12 40 01 59 20 46 F7");
  PtrMidiEvent time = bench.Sysex(3, 5, "41 10 42 12 40 01 52 40 2D F7");
  bench.Fit();
  EXPECT_EQ(bench.song.RolandDelayFeedbackSysexEvent, feedback);
  EXPECT_EQ(bench.song.RolandDelayTimeSysexEvent, time);
  EXPECT_EQ(bench.PlaceOf(feedback), "2/200");
  EXPECT_EQ(bench.song.RolandDelaySysexTrack, 2);
  EXPECT_THAT(bench.Live(3), testing::Not(Contains(testing::StartsWith("80:"))));
}

TEST(GSDelay, LooksForItInTheFirstEightBeats) {
  SysexSong bench(1);
  PtrMidiEvent late = bench.Sysex(1, 3841, "41 10 42 12 40 01 52 40 2D F7");
  bench.Fit();
  EXPECT_EQ(bench.PlaceOf(bench.song.RolandDelayTimeSysexEvent), "1/80");
  EXPECT_GT(late->DLength, 0);
}

TEST(GSDelay, IsFoundAgainInASongOfACoarseTimeBase) {
  SysexSong bench(1);
  bench.song.SourceTimeBase = 5;
  bench.Fit();
  const PtrMidiEvent time = bench.song.RolandDelayTimeSysexEvent;
  const PtrMidiEvent feedback = bench.song.RolandDelayFeedbackSysexEvent;
  bench.Fit();
  EXPECT_EQ(bench.song.RolandDelayTimeSysexEvent, time);
  EXPECT_EQ(bench.song.RolandDelayFeedbackSysexEvent, feedback);
}

TEST(GSDelay, SpeaksTheDialectOfAnMP11) {
  SysexSong bench(67);
  PtrMidiEvent time = bench.Sysex(1, 5, "41 00 42 12 40 01 52 40 2D F7");
  bench.Fit();
  EXPECT_EQ(bench.song.RolandDelayTimeSysexEvent, time);
  EXPECT_EQ(ToHex(bench.song.RolandDelayFeedbackSysexEvent->Meta.Bytes()),
            "41 00 42 12 40 01 59 50 16 F7");
}

TEST(GSDelay, IsOffForOtherInstruments) {
  SysexSong bench(1);
  bench.Fit();
  ASSERT_NE(bench.song.RolandDelayTimeSysexEvent, nullptr);
  bench.Instrument(71);
  bench.Fit();
  EXPECT_EQ(bench.song.RolandDelayTimeSysexEvent, nullptr);
  EXPECT_EQ(bench.song.RolandDelayFeedbackSysexEvent, nullptr);
  EXPECT_EQ(bench.song.RolandDelaySysexTrack, -1);
}

}  // namespace
}  // namespace Sonarello
