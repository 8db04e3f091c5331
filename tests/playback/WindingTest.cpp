#include "playback/Winding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/PlayerBench.h"

namespace Sonarello {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int OneTickAMillisecond = 480'000;

struct Winding : testing::Test, PlayerBench {
  Winding() { NewTrack().Tempo(0, OneTickAMillisecond).NewTrack(); }
  Winding& Prog(std::int32_t position, int program, int channel = 1) {
    Put(NewChannelEvent(song.Pool, static_cast<std::uint8_t>(0xC0 + channel - 1),
                        static_cast<std::uint8_t>(program), 0, position));
    return *this;
  }
  PositionSlider slider{player, song, realtime, gate};
};

TEST_F(Winding, ParksWhatDiffersWhenTheSliderIsLetGo) {
  Ctrl(0, 7, 100).Ctrl(1, 10, 64).Ctrl(2, 5, 1).Ctrl(50, 7, 60).Ctrl(51, 5, 9);
  Ready();
  slider.TrackBarMouseDown();
  slider.TrackBarChange(100);
  ASSERT_TRUE(slider.TrackBarMouseUp());
  EXPECT_EQ(realtime.Realtime[0].Ctrl[7], 60);
  EXPECT_EQ(realtime.Realtime[0].Ctrl[10], NothingPending) << "it is the same";
  EXPECT_EQ(realtime.Realtime[0].Ctrl[5], NothingPending) << "portamento time is not chased";
  EXPECT_THAT(Log(), IsEmpty()) << "the devices hear of it at the next start";
  began = clock.Milliseconds();
  ASSERT_TRUE(player.PreparePlay());
  EXPECT_THAT(Log(), ElementsAre("0: B0 07 3C"));
}

TEST_F(Winding, ParksASoundWithItsBanks) {
  Ctrl(0, 0, 1).Ctrl(1, 32, 2);
  Prog(2, 3);
  Ctrl(50, 32, 11);
  Prog(60, 3);
  Ready();
  slider.TrackBarMouseDown();
  slider.TrackBarChange(100);
  ASSERT_TRUE(slider.TrackBarMouseUp());
  const TRealtime& pending = realtime.Realtime[0];
  EXPECT_EQ(pending.Ctrl[0], 1);
  EXPECT_EQ(pending.Ctrl[32], 11);
  EXPECT_EQ(pending.Patch, 3) << "the program is the same, its bank is not";
}

TEST_F(Winding, ParksNothingWhereNothingChanged) {
  Ctrl(0, 7, 100);
  Prog(1, 3);
  Ready();
  slider.TrackBarMouseDown();
  slider.TrackBarChange(100);
  slider.TrackBarChange(50);
  ASSERT_TRUE(slider.TrackBarMouseUp());
  EXPECT_EQ(realtime.Realtime[0].Patch, -1);
  EXPECT_EQ(realtime.Realtime[0].Ctrl[7], NothingPending);
}

TEST_F(Winding, ParksDrumValuesOfDrumChannels) {
  Ready();
  for (const std::size_t c : {0U, 9U}) song.MidiData[c].DrumArray[36].Level = 100;
  song.MidiData[9].DrumPart = 1;
  slider.TrackBarMouseDown();
  for (const std::size_t c : {0U, 9U}) song.MidiData[c].DrumArray[36].Level = 90;
  ASSERT_TRUE(slider.TrackBarMouseUp());
  EXPECT_EQ(realtime.Realtime[9].DrumLevel[36], 90);
  EXPECT_EQ(realtime.Realtime[0].DrumLevel[36], -1);
}

TEST_F(Winding, StopsTheSongMeanwhileAndPlaysOnThere) {
  On(100, 60).On(500, 62);
  Ready();
  Start();
  Elapse(150);
  slider.TrackBarMouseDown();
  EXPECT_EQ(player.State, TMidiPlayerState::stStopped);
  EXPECT_TRUE(player.Ledger.Empty());
  slider.TrackBarChange(490);
  ASSERT_TRUE(slider.TrackBarMouseUp());
  EXPECT_EQ(player.State, TMidiPlayerState::stPlaying);
  began = clock.Milliseconds() - 490;
  out.Sent.clear();
  Elapse(15);
  EXPECT_THAT(Log(), ElementsAre("500: 90 3E 64"));
}

}  // namespace
}  // namespace Sonarello
