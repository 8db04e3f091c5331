// What moving a fader or a controller changes in the song, and what reaches the device.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desk/StripsBench.h"

namespace Sonarello {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct StripsMoves : ::testing::Test, StripsBench {
  StripsMoves() { NewTrack().Tempo(0, 480'000); }
};

TEST_F(StripsMoves, NothingMovesWithoutASong) {
  TwoChannels();
  song.MidiFileLoaded = false;
  strips.Moves.TB_Volume00Change(0, 100);
  strips.Moves.ControllerChange(0, 10, 100);
  strips.Moves.PanelChange(10, 100);
  strips.Moves.TB_Volume00MouseDown(0);
  EXPECT_EQ(Volume(0), 80);
  EXPECT_FALSE(strips.Moves.IsSliderDepressed());
  EXPECT_THAT(Told(), IsEmpty());
  EXPECT_THAT(Sent(), IsEmpty());
}

TEST_F(StripsMoves, AFaderOverwritesTheEventInForce) {
  TwoChannels();
  strips.Moves.TB_Volume00Change(0, 100);
  EXPECT_EQ(Values(0, 7), "100 90");
  EXPECT_EQ(Volume(0), 100);
  EXPECT_THAT(Told(), ElementsAre("show 0 7 100", "changed", "event 7 100"));
  EXPECT_THAT(CheckSong(song), IsEmpty());
}

TEST_F(StripsMoves, AFaderInMidSongChangesTheEventThatWasPassedLast) {
  TwoChannels();
  player.MoveToTimePosition(600);
  strips.Moves.TB_Volume00Change(0, 100);
  EXPECT_EQ(Values(0, 7), "80 100");
}

TEST_F(StripsMoves, ALaterEventOverridesTheMoveWhenItIsReached) {
  TwoChannels();
  Start();
  Elapse(50);
  strips.Moves.TB_Volume00Change(0, 100);
  EXPECT_EQ(Volume(0), 100);
  out.Sent.clear();
  Elapse(500);
  EXPECT_EQ(Volume(0), 90);
  EXPECT_THAT(Log(), ElementsAre("100: 90 3C 64", "100: 91 3E 64", "500: B0 07 5A"));
  EXPECT_EQ(Values(0, 7), "100 90");
}

TEST_F(StripsMoves, TheOriginalValueOfAnEventStays) {
  TwoChannels();
  strips.Moves.TB_Volume00Change(0, 100);
  EXPECT_EQ(Entry(0, 7).Event->ValueOrg[1], 80);
}

TEST_F(StripsMoves, AMoveOnAPlaceholderMakesItReal) {
  TwoChannels().Placeholders();
  const PtrMidiEvent chorus = Entry(0, 93).Event;
  ASSERT_NE(chorus, nullptr);
  ASSERT_EQ(chorus->DLength, 0);
  strips.Moves.ControllerChange(0, 93, 30);
  EXPECT_EQ(chorus->DLength, 3);
  EXPECT_EQ(chorus->Value[1], 30);
  EXPECT_THAT(Told(), ElementsAre("show 0 93 30", "changed", "real 93 30"));
  strips.Moves.ControllerChange(0, 93, 31);
  EXPECT_THAT(Told(), ElementsAre("show 0 93 31", "changed", "event 93 31"));
  EXPECT_THAT(CheckSong(song), IsEmpty());
}

TEST_F(StripsMoves, APlaceholderThatBecameRealIsPlayed) {
  TwoChannels().Placeholders();
  strips.Moves.ControllerChange(1, 91, 77);
  Start();
  Elapse(600);
  EXPECT_THAT(Sent(), ::testing::Contains("B1 5B 4D"));
}

TEST_F(StripsMoves, AFaderWithoutAnEventIsHeardButChangesNothingInTheSong) {
  On(100, 60).Off(900, 60);
  Loaded();
  Start();
  strips.Moves.TB_Volume00Change(0, 50);
  EXPECT_EQ(Volume(0), 50);
  EXPECT_THAT(Told(), ElementsAre("show 0 7 50"));
  EXPECT_THAT(Sent(), ElementsAre("B0 07 32"));
  EXPECT_EQ(Values(0, 7), "");
}

TEST_F(StripsMoves, AControllerWithoutAnEventStaysOnTheDesk) {
  On(100, 60).Off(900, 60);
  Loaded();
  Start();
  strips.Moves.ControllerChange(0, 91, 50);
  EXPECT_EQ(Entry(0, 91).Value, 50);
  EXPECT_THAT(Told(), ElementsAre("show 0 91 50"));
  EXPECT_THAT(Sent(), IsEmpty());
  EXPECT_EQ(Pending(0).Ctrl[91], -1);
}

TEST_F(StripsMoves, EachControllerOfThePanelMovesItsOwnEventOfTheActiveChannel) {
  On(100, 60).On(100, 62, 2);
  Off(900, 60).Off(900, 62, 2);
  Loaded();
  Placeholders();
  strips.Desk.SetMidiChannel(1);
  int value = 20;
  for (const int controller : PanelControllerNumbers) {
    out.Sent.clear();
    Start();
    strips.Moves.PanelChange(controller, ++value);
    EXPECT_EQ(Entry(1, controller).Value, value) << controller;
    EXPECT_EQ(Entry(1, controller).Event->Value[1], value) << controller;
    EXPECT_EQ(Entry(0, controller).Value, DefaultControllerValue(controller)) << controller;
    const TSent& sent = out.Sent.back();
    EXPECT_THAT(sent.Bytes, ElementsAre(0xB1, controller, value));
    player.Stop();
    player.Stop();
  }
}

TEST_F(StripsMoves, ThePanelDoesNothingWithoutAnActiveChannel) {
  TwoChannels();
  song.ActiveMidiIndex = -1;
  strips.Moves.PanelChange(10, 3);
  EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(StripsMoves, ValuesAndChannelsOutsideTheDeskAreRefused) {
  TwoChannels();
  strips.Moves.TB_Volume00Change(-1, 5);
  strips.Moves.TB_Volume00Change(16, 5);
  strips.Moves.TB_Volume00Change(0, 128);
  strips.Moves.TB_Volume00Change(0, -1);
  strips.Moves.ControllerChange(0, 128, 5);
  strips.Moves.ControllerChange(0, -1, 5);
  EXPECT_THAT(Told(), IsEmpty());
}

// --- What reaches the device

TEST_F(StripsMoves, WhilePlayingAMoveGoesOutAtOnce) {
  TwoChannels();
  Start();
  strips.Moves.TB_Volume00Change(1, 33);
  strips.Moves.ControllerChange(0, 10, 20);
  EXPECT_THAT(Sent(), ElementsAre("B1 07 21", "B0 0A 14"));
  EXPECT_EQ(Pending(1).Volume, -1);
  EXPECT_EQ(Pending(0).Ctrl[10], -1);
}

TEST_F(StripsMoves, WhileStoppedAMoveWaitsForTheStart) {
  TwoChannels();
  strips.Moves.TB_Volume00Change(1, 33);
  strips.Moves.ControllerChange(0, 10, 20);
  EXPECT_THAT(Sent(), IsEmpty());
  EXPECT_EQ(Pending(1).Volume, 33);
  EXPECT_EQ(Pending(0).Ctrl[10], 20);
  ASSERT_TRUE(player.PreparePlay());
  EXPECT_THAT(Sent(), ElementsAre("B0 0A 14", "B1 07 21"));
}

TEST_F(StripsMoves, WithTheDriverGrabbedAMoveIsHeardWhileStopped) {
  TwoChannels();
  strips.Desk.Settings.GrabMidiDriver = true;
  strips.Moves.TB_Volume00Change(1, 33);
  strips.Moves.ControllerChange(0, 10, 20);
  EXPECT_THAT(Sent(), ElementsAre("B1 07 21", "B0 0A 14"));
  EXPECT_EQ(Pending(1).Volume, -1);
}

TEST_F(StripsMoves, AMoveIsParkedIfTheGrabbedPortDoesNotOpen) {
  TwoChannels();
  strips.Desk.Settings.GrabMidiDriver = true;
  out.opens = false;
  strips.Moves.TB_Volume00Change(1, 33);
  strips.Moves.ControllerChange(0, 10, 20);
  EXPECT_THAT(Sent(), IsEmpty());
  EXPECT_EQ(Pending(1).Volume, 33);
  EXPECT_EQ(Pending(0).Ctrl[10], 20);
  EXPECT_EQ(Values(1, 7), "33");
}

TEST_F(StripsMoves, AMoveThatGoesOutTakesBackTheOneThatWaits) {
  TwoChannels();
  strips.Moves.TB_Volume00Change(0, 20);
  strips.Moves.ControllerChange(0, 10, 20);
  strips.Desk.Settings.GrabMidiDriver = true;
  strips.Moves.TB_Volume00Change(0, 70);
  strips.Moves.ControllerChange(0, 10, 70);
  out.Sent.clear();
  ASSERT_TRUE(player.PreparePlay());
  EXPECT_THAT(Sent(), IsEmpty());
}

TEST_F(StripsMoves, AFaderTakesBackTheVolumeThatWindingLeft) {
  TwoChannels();
  PositionSlider slider(player, song, realtime, gate);
  slider.TrackBarMouseDown();
  slider.TrackBarChange(600);
  ASSERT_TRUE(slider.TrackBarMouseUp());
  ASSERT_EQ(Pending(0).Ctrl[7], 90);
  strips.Moves.TB_Volume00Change(0, 15);
  ASSERT_TRUE(player.PreparePlay());
  EXPECT_THAT(Sent(), ElementsAre("B0 07 0F"));
}

TEST_F(StripsMoves, WindingTakesBackTheFaderThatWaits) {
  TwoChannels();
  strips.Moves.TB_Volume00Change(0, 15);
  PositionSlider slider(player, song, realtime, gate);
  slider.TrackBarMouseDown();
  slider.TrackBarChange(600);
  ASSERT_TRUE(slider.TrackBarMouseUp());
  ASSERT_TRUE(player.PreparePlay());
  EXPECT_THAT(Sent(), ElementsAre("B0 07 5A"));
}

TEST_F(StripsMoves, OnAHostedRouteAMoveWaitsWhileStoppedEvenWithTheDriverGrabbed) {
  TwoChannels();
  Hosted(0);
  strips.Desk.Settings.GrabMidiDriver = true;
  strips.Moves.TB_Volume00Change(0, 33);
  strips.Moves.ControllerChange(0, 10, 20);
  EXPECT_THAT(Sent(), IsEmpty());
  EXPECT_EQ(Pending(0).Volume, 33);
  EXPECT_EQ(Pending(0).Ctrl[10], 20);
}

TEST_F(StripsMoves, OnAHostedRouteAMoveGoesOutWhilePlaying) {
  TwoChannels();
  Hosted(0);
  Start();
  strips.Moves.TB_Volume00Change(0, 33);
  EXPECT_THAT(Sent(), ElementsAre("B0 07 21"));
}

TEST_F(StripsMoves, AMoveTakesTheRouteAndTheWireChannelOfItsStrip) {
  TwoChannels();
  Routes(2);
  song.MidiOutIndex[0] = 1;
  Data(0).MidiChannel = 4;
  Pending(0).MidiChannel = 4;
  Start();
  strips.Moves.TB_Volume00Change(0, 33);
  EXPECT_THAT(Sent(), ElementsAre("1> B4 07 21"));
}

TEST_F(StripsMoves, SplitDrumsTakeTheirMovesOnChannelTen) {
  TwoChannels();
  strips.Desk.Hooks.IsDrumSplit = [](int channel) { return channel == 1; };
  Start();
  strips.Moves.TB_Volume00Change(1, 33);
  strips.Moves.ControllerChange(0, 10, 20);
  EXPECT_THAT(Sent(), ElementsAre("B9 07 21", "B0 0A 14"));
}

TEST_F(StripsMoves, WithoutADrumEditorTheSplitIsThatOfTheNotes) {
  TwoChannels();
  Routes(2);
  Data(1).DrumPart = 2;
  song.DrumsSecForceToChannel10 = true;
  Start();
  strips.Moves.TB_Volume00Change(1, 33);
  EXPECT_THAT(Sent(), ElementsAre("B1 07 21")) << "route 0 plays them on their own channel";
  song.MidiOutIndex[1] = 1;
  strips.Moves.TB_Volume00Change(1, 34);
  EXPECT_THAT(Sent(), ElementsAre("1> B9 07 22"));
}

/// A port that says why it does not open.
struct BrokenPort : RecordingOutputs {
  using RecordingOutputs::RecordingOutputs;
  bool Open(int) override {
    ++tries;
    throw EMidiOutputError("no such device");
  }
  [[nodiscard]] bool IsOpen(int) const override { return mended; }
  int tries = 0;
  bool mended = false;
};

TEST_F(StripsMoves, APortThatFailsIsToldOnceForEachGrip) {
  TwoChannels();
  BrokenPort broken{clock};
  TStrips desk{{song, options, routes, broken, realtime, gate, player, functions}};
  desk.Desk.Settings.GrabMidiDriver = true;
  std::vector<std::string> failures;
  desk.Desk.Hooks.PortFailed = [&](const std::string& text) { failures.push_back(text); };
  desk.Moves.TB_Volume00MouseDown(0);
  for (int value = 50; value < 60; ++value) desk.Moves.TB_Volume00Change(0, value);
  EXPECT_THAT(failures, ElementsAre("no such device"));
  EXPECT_EQ(broken.tries, 1);
  EXPECT_EQ(Pending(0).Volume, 59);
  EXPECT_EQ(Values(0, 7), "59 90");
  desk.Moves.TB_Volume00MouseUp();
  desk.Moves.TB_Volume00MouseDown(0);
  desk.Moves.TB_Volume00Change(0, 70);
  EXPECT_EQ(broken.tries, 2);
  broken.mended = true;
  desk.Moves.TB_Volume00Change(0, 71);
  EXPECT_EQ(broken.tries, 2);
  EXPECT_THAT(Sent(), ElementsAre("B0 07 47")) << "the port was opened elsewhere meanwhile";
}

TEST_F(StripsMoves, AMessageThatAPortLosesIsNotTold) {
  TwoChannels();
  Start();
  out.fails = true;
  EXPECT_NO_THROW(strips.Moves.TB_Volume00Change(0, 33));
  EXPECT_EQ(Volume(0), 33);
}

TEST_F(StripsMoves, ControllerSevenIsTheFader) {
  On(100, 60).Off(900, 60);
  Loaded();
  strips.Moves.ControllerChange(0, 7, 44);
  EXPECT_EQ(Pending(0).Volume, 44);
  EXPECT_EQ(Pending(0).Ctrl[7], -1);
}

// --- Shown and typed values

TEST(StripsPanel, PanoramaCountsFromItsMiddle) {
  EXPECT_EQ(ShownControllerValue(10, 64), 0);
  EXPECT_EQ(ShownControllerValue(10, 0), -64);
  EXPECT_EQ(ShownControllerValue(10, 127), 63);
  for (const int controller : {7, 11, 91, 93, 71, 72, 73, 74, 94})
    EXPECT_EQ(ShownControllerValue(controller, 40), 40);
}

TEST(StripsPanel, KnowsWhereControlsStandWithoutAValue) {
  EXPECT_EQ(ShownControllerValue(10, DefaultControllerValue(10)), 0);
  EXPECT_EQ(DefaultControllerValue(11), 127);
  EXPECT_EQ(DefaultControllerValue(91), 40);
  EXPECT_EQ(DefaultControllerValue(93), 0);
  for (const int controller : {71, 72, 73, 74}) EXPECT_EQ(DefaultControllerValue(controller), 64);
  EXPECT_EQ(DefaultControllerValue(94), 0);
  EXPECT_EQ(DefaultControllerValue(7), 100);
}

TEST(StripsPanel, HoldsNineControllers) {
  EXPECT_THAT(PanelControllerNumbers, ElementsAre(10, 11, 91, 93, 71, 72, 73, 74, 94));
  EXPECT_TRUE(IsPanelController(94));
  EXPECT_FALSE(IsPanelController(7));
}

TEST(StripsPanel, ReadsNumbersThatAreTyped) {
  EXPECT_EQ(TypedNumber("12"), 12);
  EXPECT_EQ(TypedNumber("  +12 "), 12);
  EXPECT_EQ(TypedNumber("-12"), -12);
  EXPECT_EQ(TypedNumber("\u221212"), -12);
  EXPECT_EQ(TypedNumber("\u00B10"), std::nullopt);
  for (const char* text : {"", " ", "-", "+-1", "1.5", "1 2", "x", "12x", "--1"})
    EXPECT_EQ(TypedNumber(text), std::nullopt) << text;
}

TEST(StripsPanel, BringsTypedValuesIntoTheRange) {
  EXPECT_EQ(TypedControllerValue(7, "300"), 127);
  EXPECT_EQ(TypedControllerValue(7, "-3"), 0);
  EXPECT_EQ(TypedControllerValue(7, "99999999999999999999"), 127);
  EXPECT_EQ(TypedControllerValue(7, "-99999999999999999999"), 0);
  EXPECT_EQ(TypedControllerValue(10, "0"), 64);
  EXPECT_EQ(TypedControllerValue(10, "-64"), 0);
  EXPECT_EQ(TypedControllerValue(10, "+63"), 127);
  EXPECT_EQ(TypedControllerValue(10, "100"), 127);
  EXPECT_EQ(TypedControllerValue(10, "L"), std::nullopt);
}

TEST(StripsPanel, TheWheelLowersWithAPositiveDelta) {
  EXPECT_EQ(WheelValue(64, 120), 63);
  EXPECT_EQ(WheelValue(64, -120), 65);
  EXPECT_EQ(WheelValue(0, 120), 0);
  EXPECT_EQ(WheelValue(127, -120), 127);
  EXPECT_EQ(WheelValue(64, 0), 64);
}

}  // namespace
}  // namespace Sonarello
