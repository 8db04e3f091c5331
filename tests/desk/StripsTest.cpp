// Selecting, transposing, arming and rewinding the strips, and how they are shown.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "desk/StripsBench.h"

namespace Sonarello {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Strips : ::testing::Test, StripsBench {
  Strips() { NewTrack().Tempo(0, 480'000); }
};

// --- The active channel

TEST_F(Strips, SelectingAStripMakesItTheActiveOne) {
  TwoChannels();
  strips.Desk.SetMidiChannel(1);
  EXPECT_EQ(song.ActiveMidiIndex, 1);
  EXPECT_EQ(song.ActiveMidiChannel, 1);
  strips.Desk.SetMidiChannel(0);
  strips.Desk.SetMidiChannel(0);
  EXPECT_THAT(Told(), ElementsAre("select -1 1", "select 1 0"));
}

TEST_F(Strips, TheActiveChannelIsTheOneOnTheWire) {
  TwoChannels();
  Data(1).MidiChannel = 6;
  strips.Desk.SetMidiChannel(1);
  EXPECT_EQ(song.ActiveMidiIndex, 1);
  EXPECT_EQ(song.ActiveMidiChannel, 6);
  EXPECT_EQ(strips.Desk.ActiveText().Heading, "Active midi channel: 7");
}

TEST_F(Strips, AStripThatIsNoneIsNotSelected) {
  TwoChannels();
  strips.Desk.SetMidiChannel(16);
  strips.Desk.SetMidiChannel(-1);
  EXPECT_EQ(song.ActiveMidiIndex, -1);
  song.MidiFileLoaded = false;
  strips.Desk.SetMidiChannel(0);
  EXPECT_EQ(song.ActiveMidiIndex, -1);
  EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(Strips, ANewSongSelectsItsLowestChannelWithEvents) {
  On(0, 60, 5).Off(100, 60, 5);
  Loaded();
  strips.Desk.SelectLowestActive();
  EXPECT_EQ(song.ActiveMidiIndex, 4);
}

TEST_F(Strips, ASongWithoutEventsSelectsChannelOne) {
  Loaded();
  strips.Desk.SelectLowestActive();
  EXPECT_EQ(song.ActiveMidiIndex, 0);
}

TEST_F(Strips, TheHeadingNamesTheActiveChannelInBothLanguages) {
  TwoChannels();
  EXPECT_EQ(strips.Desk.ActiveText().Heading, "");
  strips.Desk.SetMidiChannel(1);
  EXPECT_EQ(strips.Desk.ActiveText().Heading, "Active midi channel: 2");
  const InGerman german;
  EXPECT_EQ(strips.Desk.ActiveText().Heading, "Aktiver Midikanal: 2");
}

TEST_F(Strips, WithSeveralRoutesTheHeadingNamesInstrumentAndOutput) {
  TwoChannels();
  strips.Desk.SetMidiChannel(1);
  EXPECT_EQ(strips.Desk.ActiveText().Instrument, "GM Soundset");
  EXPECT_EQ(strips.Desk.ActiveText().Route, "");
  Routes(2);
  routes.Table[1].Instrument = "Yamaha Genos";
  routes.Table[1].OutputName = "UM-ONE";
  song.MidiOutIndex[1] = 1;
  EXPECT_EQ(strips.Desk.ActiveText().Route, "\"Yamaha Genos\" on MIDI output \"UM-ONE\"");
  EXPECT_EQ(strips.Desk.ActiveText().OutputName, "UM-ONE");
  const InGerman german;
  EXPECT_EQ(strips.Desk.ActiveText().Route, "\"Yamaha Genos\" am MIDI-Ausgang \"UM-ONE\"");
}

TEST_F(Strips, ARouteThatIsGoneIsShownAsTheFirst) {
  TwoChannels();
  strips.Desk.SetMidiChannel(1);
  song.MidiOutIndex[1] = 9;
  EXPECT_EQ(strips.Desk.ActiveText().Instrument, "GM Soundset");
  Start();
  strips.Moves.TB_Volume00Change(1, 3);
  EXPECT_EQ(Volume(1), 3);
}

// --- The panel

TEST_F(Strips, ThePanelShowsTheActiveChannelAndDefaultsForTheRest) {
  On(0, 60).Ctrl(10, 10, 20).Ctrl(10, 91, 77).Ctrl(20, 10, 30, 2).Off(100, 60);
  Loaded();
  strips.Desk.SetMidiChannel(0);
  const TPanelView panel = strips.Panel();
  EXPECT_THAT(panel[0], (TPanelControl{10, 20, -44, true}));
  EXPECT_THAT(panel[1], (TPanelControl{11, 127, 127, false}));
  EXPECT_THAT(panel[2], (TPanelControl{91, 77, 77, true}));
  EXPECT_THAT(panel[3], (TPanelControl{93, 0, 0, false}));
  for (std::size_t i = 4; i < 8; ++i) EXPECT_EQ(panel[i].Shown, 64);
  EXPECT_THAT(panel[8], (TPanelControl{94, 0, 0, false}));
  strips.Desk.SetMidiChannel(1);
  EXPECT_EQ(strips.Panel()[0].Shown, -34);
}

TEST_F(Strips, WithoutAnActiveChannelThePanelShowsDefaults) {
  const TPanelView panel = strips.Panel();
  EXPECT_EQ(panel[0].Shown, 0);
  EXPECT_EQ(panel[2].Value, 40);
}

TEST_F(Strips, AMovedControllerWithoutAnEventIsShownAsMoved) {
  TwoChannels();
  strips.Desk.SetMidiChannel(0);
  strips.Moves.PanelChange(94, 12);
  EXPECT_THAT(strips.Panel()[8], (TPanelControl{94, 12, 12, false}));
}

// --- A strip as it is shown

TEST_F(Strips, AStripShowsItsState) {
  TwoChannels();
  strips.Desk.SetMidiChannel(1);
  TStripView view = strips.View(1);
  EXPECT_TRUE(view.Active);
  EXPECT_TRUE(view.Selected);
  EXPECT_EQ(view.Label, (TChannelLabel{2, false}));
  EXPECT_EQ(view.Volume, 40);
  EXPECT_TRUE(view.VolumeInSong);
  Data(1).MidiChannel = 3;
  Data(1).DrumPart = 1;
  song.VelocityDelta[1] = -8;
  song.ManualTransposeArray[1] = 1;
  strips.MuteSolo.Btn_Solo00MouseDown(1, false);
  strips.SetRec(1, true);
  view = strips.View(1);
  EXPECT_EQ(view.Label, (TChannelLabel{4, true}));
  EXPECT_TRUE(view.Drums && view.Solo && view.Rec);
  EXPECT_EQ(view.VelocityOffset, -8);
  EXPECT_EQ(view.Octave, 1);
  EXPECT_FALSE(view.Mute);
  EXPECT_TRUE(strips.View(0).Mute);
  EXPECT_TRUE(strips.View(0).MutedBySolo);
}

TEST_F(Strips, AStripWithoutEventsStandsAtTheDefaultVolume) {
  TwoChannels();
  const TStripView view = strips.View(8);
  EXPECT_FALSE(view.Active);
  EXPECT_EQ(view.Volume, 100);
  EXPECT_FALSE(view.VolumeInSong);
  EXPECT_EQ(strips.View(16), TStripView{});
}

TEST_F(Strips, WithoutASongNoStripIsActiveOrSelected) {
  TwoChannels();
  strips.Desk.SetMidiChannel(1);
  song.MidiFileLoaded = false;
  EXPECT_FALSE(strips.View(1).Active);
  EXPECT_FALSE(strips.View(1).Selected);
}

// --- Transpose arrows

TEST_F(Strips, AnArrowMovesAChannelByOneOctaveAtMost) {
  TwoChannels();
  strips.TransposePlus00MouseDown(1);
  EXPECT_EQ(song.ManualTransposeArray[1], 1);
  EXPECT_THAT(Told(), ElementsAre("select -1 1", "changed", "strip 1", "transpose"));
  strips.TransposePlus00MouseDown(1);
  EXPECT_EQ(song.ManualTransposeArray[1], 1);
  EXPECT_THAT(Told(), IsEmpty());
  strips.TransposeMinus00MouseDown(1);
  strips.TransposeMinus00MouseDown(1);
  strips.TransposeMinus00MouseDown(1);
  EXPECT_EQ(song.ManualTransposeArray[1], -1);
  EXPECT_EQ(song.ManualTransposeArray[0], 0);
}

TEST_F(Strips, AnArrowNeedsAChannelWithEvents) {
  TwoChannels();
  strips.TransposePlus00MouseDown(8);
  strips.MoveOctave(-1, 1);
  song.MidiFileLoaded = false;
  strips.TransposePlus00MouseDown(0);
  EXPECT_THAT(song.ManualTransposeArray, ::testing::Each(0));
  EXPECT_THAT(Told(), IsEmpty());
}

// --- Recording

TEST_F(Strips, OneChannelAtMostIsArmed) {
  TwoChannels();
  EXPECT_EQ(strips.RecMidiIndex(), -1);
  strips.SetRec(0, true);
  strips.SetRec(5, true);
  EXPECT_EQ(strips.RecMidiIndex(), 5);
  EXPECT_FALSE(Data(0).Rec);
  EXPECT_THAT(Told(), ElementsAre("strip 0", "strip 0", "strip 5"));
  strips.SetRec(0, false);
  EXPECT_EQ(strips.RecMidiIndex(), 5) << "another one was meant";
  strips.SetRec(5, false);
  EXPECT_EQ(strips.RecMidiIndex(), -1);
  strips.SetRec(16, true);
  song.MidiFileLoaded = false;
  strips.SetRec(0, true);
  EXPECT_EQ(strips.RecMidiIndex(), -1);
}

// --- Rewind

TEST_F(Strips, ASecondStopBringsTheFirstValuesBack) {
  TwoChannels();
  strips.Desk.SetMidiChannel(0);
  Start();
  Elapse(600);
  ASSERT_EQ(Volume(0), 90);
  player.Stop();
  EXPECT_EQ(Volume(0), 90) << "a first stop is a pause";
  player.Stop();
  static_cast<void>(Told());
  strips.ReadFirstValues();
  EXPECT_EQ(Volume(0), 80);
  EXPECT_EQ(Entry(0, 7).Event, song.FirstControllers[0][7]);
  const auto shown = Told();
  EXPECT_THAT(shown, Contains("strip 0"));
  EXPECT_THAT(shown, Contains("strip 15"));
  EXPECT_THAT(shown, Contains("show 0 10 64"));
  EXPECT_THAT(shown, Contains("show 0 11 127"));
}

TEST_F(Strips, RewindingKeepsWhatWasMovedInTheSong) {
  TwoChannels();
  strips.Moves.TB_Volume00Change(0, 33);
  strips.ReadFirstValues();
  EXPECT_EQ(Volume(0), 33);
}

TEST_F(Strips, RewindingForgetsAValueThatTheSongDoesNotHold) {
  TwoChannels();
  strips.Moves.ControllerChange(0, 94, 33);
  strips.ReadFirstValues();
  EXPECT_EQ(Entry(0, 94).Value, NoControllerValue);
  EXPECT_EQ(strips.Moves.ValueOf(0, 94), 0);
}

TEST_F(Strips, RewindingBringsTheFirstSoundBack) {
  Put(NewChannelEvent(song.Pool, 0xC0, 5, 0, 10)).On(20, 60);
  Put(NewChannelEvent(song.Pool, 0xC0, 9, 0, 500)).Off(900, 60);
  Loaded();
  player.MoveToTimePosition(800);
  ASSERT_EQ(Data(0).Patch, 9);
  strips.ReadFirstValues();
  EXPECT_EQ(Data(0).Patch, 5);
  EXPECT_EQ(Data(0).PatchEvent, song.FirstPatches[0]);
  EXPECT_EQ(Data(1).Patch, -1);
  EXPECT_EQ(Data(1).PatchEvent, nullptr);
}

TEST_F(Strips, RewindingWithoutASongShowsNothing) {
  strips.ReadFirstValues();
  EXPECT_THAT(Told(), IsEmpty());
}

// --- Both threads

TEST_F(Strips, AllCanBeMovedWhileThePlayersThreadPlays) {
  for (int i = 0; i < 400; ++i)
    On(10 + i, 60 + i % 12, 1 + i % 3, 1 + i % 127).Ctrl(10 + i, 7, i % 128);
  Off(900, 60);
  Loaded();
  Placeholders();
  player.SetLoop(0, 400);
  Start();
  std::atomic<bool> ends = false;
  std::thread playing([&] {
    while (!ends) {
      {
        // The outputs read the clock on either thread.
        const auto held = gate.Enter();
        clock.Advance(1);
      }
      player.PlayMidiData();
    }
  });
  for (int i = 0; i < 2000; ++i) {
    const int channel = i % 3;
    strips.Moves.SetMasterVolume(i % 64 < 32);
    strips.Moves.TB_Volume00MouseDown(channel);
    strips.Moves.TB_Volume00Change(channel, i % 128);
    strips.Moves.TB_Volume00MouseUp();
    strips.Moves.PanelChange(PanelControllerNumbers[i % 9], i % 128);
    strips.GroupFader.TB_MasterVolMouseDown();
    strips.GroupFader.TB_MasterVolChange(i % 40 - 20);
    strips.GroupFader.TB_MasterVolMouseUp();
    strips.MuteSolo.Btn_Mute00MouseDown(channel, i % 7 == 0);
    strips.MuteSolo.Btn_Solo00MouseDown(channel, i % 11 == 0);
    strips.Velocities.Step(channel, i % 2 == 0 ? 1 : -1);
    if (i % 50 == 0 && strips.Velocities.OpenVelocityEditor(channel))
      strips.Velocities.VelocityRangeSliderMinPosChange(1 + i % 100);
    if (i % 50 == 25) strips.Tempo.SetOffset(i % 20 - 10);
    static_cast<void>(strips.Position.At(player.TimePosition));
    strips.Position.Follow(player.TimePosition);
    static_cast<void>(strips.View(channel));
    static_cast<void>(strips.Panel());
  }
  ends = true;
  playing.join();
  player.Stop();
  EXPECT_TRUE(player.Ledger.Empty());
  EXPECT_THAT(CheckSong(song), IsEmpty());
}

}  // namespace
}  // namespace Sonarello
