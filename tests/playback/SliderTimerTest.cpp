#include "playback/SliderTimer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/PlayerBench.h"

namespace Sonarello {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct SliderTimer : testing::Test, PlayerBench {
  SliderTimer() {
    NewTrack().Tempo(0, 480'000).NewTrack();
    Ctrl(10, 7, 90).Ctrl(11, 10, 20).Ctrl(12, 1, 5).Ctrl(13, 7, 80, 2).Ctrl(14, 10, 30, 2);
    Put(NewChannelEvent(song.Pool, 0xC0, 4, 0, 15));
    Put(NewChannelEvent(song.Pool, 0xC0, 5, 0, 16));
    Ready();
  }
  TDeskUpdate Update() { return SlidersUpdateTimerTimer(player, song, gate, 0); }
};

TEST_F(SliderTimer, MovesEveryFaderAndThePanelOfTheActiveChannel) {
  Start();
  Elapse(30);
  const TDeskUpdate update = Update();
  EXPECT_THAT(update.Sliders,
              ElementsAre(TSliderMove{0, 7, 90}, TSliderMove{0, 10, 20}, TSliderMove{1, 7, 80}));
  EXPECT_THAT(update.Sounds, ElementsAre(0));
}

TEST_F(SliderTimer, TellsEachChangeOnce) {
  Start();
  Elapse(30);
  static_cast<void>(Update());
  const TDeskUpdate again = Update();
  EXPECT_THAT(again.Sliders, IsEmpty());
  EXPECT_THAT(again.Sounds, IsEmpty());
}

TEST_F(SliderTimer, LeavesOutChannelsThatAreNotInUse) {
  Start();
  Elapse(30);
  song.MidiData[0].Active = false;
  EXPECT_THAT(Update().Sliders, ElementsAre(TSliderMove{1, 7, 80}));
}

TEST_F(SliderTimer, FollowsWinding) {
  player.MoveToTimePosition(20);
  EXPECT_THAT(Update().Sliders,
              ElementsAre(TSliderMove{0, 7, 90}, TSliderMove{0, 10, 20}, TSliderMove{1, 7, 80}));
}

}  // namespace
}  // namespace Sonarello
