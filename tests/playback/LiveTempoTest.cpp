#include "playback/LiveTempo.h"

#include <gtest/gtest.h>

#include "core/TimeMap.h"
#include "helpers/SongBuilder.h"

namespace Sonarello {

namespace {

struct LiveTempo : testing::Test, TestSong {
  LiveTempo() : TestSong(480) {}
  void Ready() {
    Finish();
    Map();
    BackupTempi(song);
  }
  [[nodiscard]] static int MicrosOf(const TypMidiEvent& e) {
    return e.Meta[0] << 16 | e.Meta[1] << 8 | e.Meta[2];
  }
};

TEST_F(LiveTempo, MovesEveryTempoByTheOffset) {
  NewTrack().Tempo(0, 500'000).Tempo(4800, 600'000);
  Ready();
  ApplyTempoOffset(song, functions, 20);
  EXPECT_EQ(song.SourceTempo[0].Tempo, 140);
  EXPECT_EQ(song.SourceTempo[1].Tempo, 120);
  EXPECT_EQ(song.SourceTempo[1].TempoLongInt, 500'000);
  EXPECT_EQ(MicrosOf(*Event(0, 1)), 428'571);
  EXPECT_EQ(MicrosOf(*Event(0, 2)), 500'000);
  EXPECT_EQ(CheckSong(song), std::vector<std::string>{});
}

TEST_F(LiveTempo, ComesBackExactlyWithoutOffset) {
  NewTrack().Tempo(0, 500'000).On(960, 60).Off(1440, 60);
  Ready();
  const std::int32_t length = song.SongLength;
  ApplyTempoOffset(song, functions, 33);
  EXPECT_NE(song.SongLength, length);
  ApplyTempoOffset(song, functions, 0);
  EXPECT_EQ(song.SongLength, length);
  EXPECT_EQ(MicrosOf(*Event(0, 1)), 500'000);
  EXPECT_EQ(Event(0, 2)->TimePosition, 1000);
}

TEST_F(LiveTempo, NeverGoesBelowTwentyFive) {
  NewTrack().Tempo(0, 500'000);
  Ready();
  ApplyTempoOffset(song, functions, -1000);
  EXPECT_EQ(song.SourceTempo[0].Tempo, 25);
}

TEST_F(LiveTempo, CountsTheMetasFromOneWhenStoppedAndTheStartIsImplied) {
  NewTrack().Tempo(960, 600'000);
  Ready();
  ASSERT_EQ(song.SourceTempo[0].Tempo, 120);
  ASSERT_EQ(song.SourceTempo[1].Tempo, 100);
  ApplyTempoOffset(song, functions, 20, TempoNumbering::Stopped);
  EXPECT_EQ(MicrosOf(*Event(0, 1)), 500'000) << "its own tempo";
  ApplyTempoOffset(song, functions, 20, TempoNumbering::Live);
  EXPECT_EQ(MicrosOf(*Event(0, 1)), 428'571) << "while playing the count starts at the implied one";
}

TEST_F(LiveTempo, FindsTheTickOfATime) {
  NewTrack().Tempo(0, 500'000).Tempo(960, 250'000).On(4800, 60);
  Ready();
  EXPECT_EQ(TickOfTime(song, 0), 0);
  EXPECT_EQ(TickOfTime(song, -5), 0);
  EXPECT_EQ(TickOfTime(song, 500), 480);
  EXPECT_EQ(TickOfTime(song, 1000), 960);
  EXPECT_EQ(TickOfTime(song, 1250), 1440);
  EXPECT_EQ(TickOfTime(song, 1'000'000), song.MaxSongPosition);
  for (std::int32_t tick = 0; tick < 4000; tick += 37)
    EXPECT_NEAR(TickOfTime(song, TimeOfPosition(song, tick)), tick, 1);
}

}  // namespace
}  // namespace Sonarello
