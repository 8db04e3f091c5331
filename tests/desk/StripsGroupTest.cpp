// Faders that move together: the group fader and the coupling.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "desk/StripsBench.h"

namespace Sonarello {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Three channels at 100, 50 and 20; channel 4 has notes and no volume.
struct StripsGroup : ::testing::Test, StripsBench {
  StripsGroup() {
    NewTrack().Tempo(0, 480'000);
    Ctrl(10, 7, 100).Ctrl(10, 7, 50, 2).Ctrl(10, 7, 20, 3);
    On(100, 60, 4).Off(900, 60, 4);
    Loaded();
  }
  [[nodiscard]] std::vector<int> Volumes() {
    return {Volume(0), Volume(1), Volume(2), Volume(3) == 255 ? -1 : Volume(3)};
  }
};

TEST(ProportionalValue, KeepsTheProportionBetweenOneAndTheTop) {
  EXPECT_EQ(ProportionalValue(50, 100, 80), 40);
  EXPECT_EQ(ProportionalValue(50, 100, 127), 64);
  EXPECT_EQ(ProportionalValue(100, 50, 100), 127);
  EXPECT_EQ(ProportionalValue(50, 100, 0), 1);
  EXPECT_EQ(ProportionalValue(50, 100, -50), 1);
  EXPECT_EQ(ProportionalValue(0, 100, 90), 1);
  for (int value = 1; value <= 127; ++value) EXPECT_EQ(ProportionalValue(value, 90, 90), value);
}

TEST(ProportionalValue, ALeaderAtZeroLeadsOnlyFadersAtZero) {
  EXPECT_EQ(ProportionalValue(0, 0, 30), 30);
  EXPECT_EQ(ProportionalValue(40, 0, 30), 40);
}

// --- Group fader

TEST_F(StripsGroup, TheGroupFaderMovesAllInProportionToTheLoudest) {
  strips.GroupFader.TB_MasterVolMouseDown();
  EXPECT_EQ(strips.GroupFader.Tag(), 0);
  strips.GroupFader.TB_MasterVolChange(-50);
  EXPECT_THAT(Volumes(), ElementsAre(50, 25, 10, 50));
  strips.GroupFader.TB_MasterVolChange(20);
  EXPECT_THAT(Volumes(), ElementsAre(120, 60, 24, 120));
  EXPECT_EQ(Values(0, 7), "120");
  EXPECT_EQ(Values(2, 7), "24");
  EXPECT_EQ(Values(3, 7), "");
}

TEST_F(StripsGroup, TheGroupFaderStaysBetweenOneAndTheTop) {
  strips.GroupFader.TB_MasterVolMouseDown();
  strips.GroupFader.TB_MasterVolChange(-127);
  EXPECT_THAT(Volumes(), ElementsAre(1, 1, 1, 1));
  strips.GroupFader.TB_MasterVolChange(127);
  EXPECT_THAT(Volumes(), ElementsAre(127, 114, 45, 127));
}

TEST_F(StripsGroup, BackAtItsRestEveryFaderStandsWhereItWas) {
  strips.GroupFader.TB_MasterVolMouseDown();
  for (const int position : {-127, 100, -3, 7, 0}) strips.GroupFader.TB_MasterVolChange(position);
  EXPECT_THAT(Volumes(), ElementsAre(100, 50, 20, 100));
}

TEST_F(StripsGroup, WhatTheReleasedGroupFaderShowsMovesNothing) {
  strips.GroupFader.TB_MasterVolMouseDown();
  strips.GroupFader.TB_MasterVolChange(-50);
  strips.GroupFader.TB_MasterVolMouseUp();
  EXPECT_FALSE(strips.GroupFader.IsHeld());
  strips.GroupFader.TB_MasterVolChange(-20);
  strips.GroupFader.TB_MasterVolChange(0);
  EXPECT_THAT(Volumes(), ElementsAre(50, 25, 10, 50));
}

TEST_F(StripsGroup, TheNextGripStartsFromWhereTheFadersStand) {
  strips.GroupFader.TB_MasterVolMouseDown();
  strips.GroupFader.TB_MasterVolChange(-50);
  strips.GroupFader.TB_MasterVolMouseUp();
  strips.GroupFader.TB_MasterVolMouseDown();
  strips.GroupFader.TB_MasterVolChange(50);
  EXPECT_THAT(Volumes(), ElementsAre(100, 50, 20, 100));
}

TEST_F(StripsGroup, EachFaderThatMovesIsSentOnce) {
  Start();
  strips.GroupFader.TB_MasterVolMouseDown();
  strips.GroupFader.TB_MasterVolChange(0);
  EXPECT_THAT(Sent(), IsEmpty());
  strips.GroupFader.TB_MasterVolChange(-1);
  EXPECT_THAT(Sent(), ElementsAre("B0 07 63", "B3 07 63"))
      << "50 and 20 do not change for one step of 100";
}

TEST_F(StripsGroup, ChannelsWithoutEventsDoNotLeadAndDoNotMove) {
  Data(0).Active = false;
  Data(3).Active = false;
  strips.GroupFader.TB_MasterVolMouseDown();
  EXPECT_EQ(strips.GroupFader.Tag(), 1);
  strips.GroupFader.TB_MasterVolChange(-25);
  EXPECT_THAT(Volumes(), ElementsAre(100, 25, 10, -1));
}

TEST_F(StripsGroup, FadersThatAreAllAtZeroRiseAlike) {
  for (int c = 0; c < 4; ++c) strips.Moves.TB_Volume00Change(c, 0);
  strips.GroupFader.TB_MasterVolMouseDown();
  strips.GroupFader.TB_MasterVolChange(30);
  EXPECT_THAT(Volumes(), ElementsAre(30, 30, 30, 30));
}

TEST_F(StripsGroup, TheGroupFaderDoesNothingWithoutASong) {
  song.MidiFileLoaded = false;
  strips.GroupFader.TB_MasterVolMouseDown();
  strips.GroupFader.TB_MasterVolChange(-50);
  EXPECT_FALSE(strips.GroupFader.IsHeld());
  EXPECT_THAT(Volumes(), ElementsAre(100, 50, 20, -1));
}

TEST_F(StripsGroup, WithNoActiveChannelTheGroupFaderMovesNothing) {
  for (TMidiChannelData& data : song.MidiData) data.Active = false;
  strips.GroupFader.TB_MasterVolMouseDown();
  EXPECT_EQ(strips.GroupFader.Tag(), -1);
  strips.GroupFader.TB_MasterVolChange(-50);
  EXPECT_THAT(Volumes(), ElementsAre(100, 50, 20, -1));
}

// --- Coupling

TEST_F(StripsGroup, ACoupledFaderTakesTheOthersAlong) {
  strips.Moves.SetMasterVolume(true);
  strips.Moves.TB_Volume00MouseDown(0);
  strips.Moves.TB_Volume00Change(0, 50);
  EXPECT_THAT(Volumes(), ElementsAre(50, 25, 10, -1)) << "channel 4 has no event for its volume";
  strips.Moves.TB_Volume00Change(0, 100);
  EXPECT_THAT(Volumes(), ElementsAre(100, 50, 20, -1));
}

TEST_F(StripsGroup, ACoupledFaderAtZeroLeavesTheOthersAtOne) {
  strips.Moves.SetMasterVolume(true);
  strips.Moves.TB_Volume00MouseDown(1);
  strips.Moves.TB_Volume00Change(1, 0);
  EXPECT_THAT(Volumes(), ElementsAre(1, 0, 1, -1));
  strips.Moves.TB_Volume00Change(1, 127);
  EXPECT_THAT(Volumes(), ElementsAre(127, 127, 51, -1));
}

TEST_F(StripsGroup, FadersThatAreTakenAlongChangeTheSongAndAreSent) {
  strips.Moves.SetMasterVolume(true);
  strips.Moves.TB_Volume00MouseDown(0);
  static_cast<void>(Told());
  Start();
  strips.Moves.TB_Volume00Change(0, 50);
  EXPECT_THAT(Sent(), ElementsAre("B0 07 32", "B1 07 19", "B2 07 0A"));
  EXPECT_THAT(Told(), ElementsAre("show 0 7 50", "changed", "event 7 50", "show 1 7 25", "changed",
                                  "event 7 25", "show 2 7 10", "changed", "event 7 10"));
}

TEST_F(StripsGroup, CoupledFadersThatWereLetGoMoveAlone) {
  strips.Moves.SetMasterVolume(true);
  strips.Moves.TB_Volume00Change(0, 90);
  EXPECT_THAT(Volumes(), ElementsAre(90, 50, 20, -1));
  strips.Moves.TB_Volume00MouseDown(0);
  strips.Moves.TB_Volume00MouseUp();
  strips.Moves.TB_Volume00Change(0, 80);
  EXPECT_THAT(Volumes(), ElementsAre(80, 50, 20, -1));
}

TEST_F(StripsGroup, WithoutTheCouplingAFaderMovesAlone) {
  EXPECT_FALSE(strips.Moves.MasterVolume());
  strips.Moves.TB_Volume00MouseDown(0);
  strips.Moves.TB_Volume00Change(0, 50);
  EXPECT_THAT(Volumes(), ElementsAre(50, 50, 20, -1));
}

TEST_F(StripsGroup, OnlyTheActiveChannelsFaderLeads) {
  strips.Moves.SetMasterVolume(true);
  strips.Moves.TB_Volume00MouseDown(0);
  strips.Moves.TB_Volume00Change(1, 25);
  EXPECT_THAT(Volumes(), ElementsAre(100, 25, 20, -1));
}

TEST_F(StripsGroup, ChannelsWithoutEventsAreNotTakenAlong) {
  Data(1).Active = false;
  strips.Moves.SetMasterVolume(true);
  strips.Moves.TB_Volume00MouseDown(0);
  strips.Moves.TB_Volume00Change(0, 50);
  EXPECT_THAT(Volumes(), ElementsAre(50, 50, 10, -1));
}

TEST_F(StripsGroup, AFaderThatWasTakenAtZeroTakesNobodyAlong) {
  strips.Moves.TB_Volume00Change(0, 0);
  strips.Moves.SetMasterVolume(true);
  strips.Moves.TB_Volume00MouseDown(0);
  strips.Moves.TB_Volume00Change(0, 50);
  EXPECT_THAT(Volumes(), ElementsAre(50, 50, 20, -1));
}

TEST_F(StripsGroup, AVolumeThatPlaysMeanwhileBecomesTheNewProportion) {
  strips.Moves.SetMasterVolume(true);
  strips.Moves.TB_Volume00MouseDown(0);
  {
    const auto held = gate.Enter();
    player.SliderSnapshot[1] = 80;
  }
  strips.Moves.TB_Volume00Change(0, 50);
  EXPECT_THAT(Volumes(), ElementsAre(50, 40, 10, -1));
}

TEST_F(StripsGroup, ANewSongLetsGoOfTheFaders) {
  strips.Moves.TB_Volume00MouseDown(0);
  strips.GroupFader.TB_MasterVolMouseDown();
  strips.SongChanged();
  EXPECT_FALSE(strips.Moves.IsSliderDepressed());
  EXPECT_FALSE(strips.GroupFader.IsHeld());
}

TEST_F(StripsGroup, AnySequenceOfGripsLeavesASoundSong) {
  std::mt19937 random(5);
  const auto below = [&](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
  for (int i = 0; i < 3000; ++i) {
    switch (below(6)) {
      case 0: strips.Moves.SetMasterVolume(below(2) == 1); break;
      case 1: strips.Moves.TB_Volume00MouseDown(below(4)); break;
      case 2: strips.Moves.TB_Volume00MouseUp(); break;
      case 3: strips.GroupFader.TB_MasterVolMouseDown(); break;
      case 4: strips.GroupFader.TB_MasterVolChange(below(255) - 127); break;
      default: strips.Moves.TB_Volume00Change(below(4), below(128));
    }
    for (int c = 0; c < 3; ++c) {
      ASSERT_LE(Volume(c), 127);
      ASSERT_EQ(Entry(c, 7).Event->Value[1], Volume(c));
    }
  }
  EXPECT_THAT(CheckSong(song), IsEmpty());
}

}  // namespace
}  // namespace Sonarello
