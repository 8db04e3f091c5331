#include "playback/MidiPlayer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/PlayerBench.h"

namespace Sonarello {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using Lines = std::vector<std::string>;

constexpr int OneTickAMillisecond = 480'000;  // microseconds per quarter of 480 ticks

/// A bench whose song has a conductor's track at one tick a millisecond and one more track.
struct MidiPlayer : testing::Test, PlayerBench {
  MidiPlayer() { NewTrack().Tempo(0, OneTickAMillisecond).NewTrack(); }
  MidiPlayer& Prog(std::int32_t position, int program, int channel = 1) {
    Put(NewChannelEvent(song.Pool, static_cast<std::uint8_t>(0xC0 + channel - 1),
                        static_cast<std::uint8_t>(program), 0, position));
    return *this;
  }
  MidiPlayer& Syx(std::int32_t position, const std::vector<std::uint8_t>& bytes) {
    Put(NewSysex(song.Pool, bytes, position));
    return *this;
  }
};

// --- Time

TEST_F(MidiPlayer, SendsEachEventWhenItIsDue) {
  On(100, 60).Off(200, 60);
  Ready();
  Start();
  Elapse(300);
  EXPECT_THAT(Log(), ElementsAre("100: 90 3C 64", "200: 80 3C 40"));
}

TEST_F(MidiPlayer, SendsAnEventThatIsDueExactlyNow) {
  On(1, 60);
  Ready();
  Start();
  Elapse(1);
  EXPECT_THAT(Log(), ElementsAre("1: 90 3C 64"));
}

TEST_F(MidiPlayer, SendsEventsOfOneTimeInTheOrderOfTheTracks) {
  On(50, 60);
  NewTrack().On(50, 62, 2);
  Ready();
  Start();
  Elapse(60);
  EXPECT_THAT(Log(), ElementsAre("50: 90 3C 64", "50: 91 3E 64"));
}

TEST_F(MidiPlayer, MakesUpForAPassThatCameLate) {
  On(10, 60).Off(20, 60).On(30, 62);
  Ready();
  Start();
  clock.Advance(40);
  player.PlayMidiData();
  EXPECT_THAT(Log(), ElementsAre("40: 90 3C 64", "40: 80 3C 40", "40: 90 3E 64"));
}

TEST_F(MidiPlayer, PlaysADelayedTrackThatMuchEarlier) {
  On(100, 60);
  Ready();
  song.MidiTrack[1].TrkDelay = 30;
  Start();
  Elapse(120);
  EXPECT_THAT(Log(), ElementsAre("70: 90 3C 64"));
}

TEST_F(MidiPlayer, PlaysASongWithoutEventsForItsTailAndStops) {
  Ready();
  Start();
  Elapse(song.SongLength + 3300);
  EXPECT_EQ(player.State, TMidiPlayerState::stPlaying);
  Elapse(1);
  EXPECT_EQ(player.State, TMidiPlayerState::stStopped);
}

TEST_F(MidiPlayer, LeavesOutWhatIsRemovedAndIgnored) {
  On(10, 60).On(20, 61);
  NewTrack().On(10, 70, 2);
  Ready();
  MarkRemoved(Event(1, 1));
  song.MidiTrack[2].TrkIgnore = true;
  Start();
  Elapse(30);
  EXPECT_THAT(Log(), ElementsAre("20: 90 3D 64"));
}

TEST_F(MidiPlayer, StaysAtTheStartWhileARecordingWaitsForItsFirstNote) {
  On(10, 60);
  Ready();
  player.RecordingActive = true;
  Start();
  Elapse(50);
  EXPECT_EQ(player.TimePosition, 0);
  EXPECT_THAT(Log(), IsEmpty());
  player.RecordingActive = false;
  Elapse(10);
  EXPECT_EQ(out.Sent.size(), 1U);
}

// --- Notes

TEST_F(MidiPlayer, KeepsMutedChannelsSilent) {
  On(10, 60).Off(20, 60);
  Ready();
  song.MidiData[0].Mute = true;
  Start();
  Elapse(30);
  EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(MidiPlayer, SendsNotesOnTheWireChannel) {
  On(10, 60);
  Ready();
  realtime.Realtime[0].MidiChannel = 4;
  Start();
  Elapse(20);
  EXPECT_THAT(Log(), ElementsAre("10: 94 3C 64"));
}

TEST_F(MidiPlayer, AddsTheVelocityOffsetAndKeepsItInRange) {
  On(10, 60, 1, 100).On(11, 61, 1, 5);
  Ready();
  song.VelocityDelta[0] = 50;
  Start();
  Elapse(10);
  song.VelocityDelta[0] = -127;
  Elapse(5);
  EXPECT_THAT(Log(), ElementsAre("10: 90 3C 7F", "11: 90 3D 01"));
}

TEST_F(MidiPlayer, MapsVelocitiesIntoTheRangeOfTheVelocityEditor) {
  On(10, 60, 1, 100);
  Ready();
  song.NotesVelocities[0] = {
      .Minimum = 100, .Maximum = 120, .Mean = 110, .Mapped = true, .NewMinimum = 40, .NewMaximum = 60};
  song.VelocityDelta[0] = 50;
  Start();
  Elapse(20);
  EXPECT_THAT(Log(), ElementsAre("10: 90 3C 28"));
}

TEST_F(MidiPlayer, MapsNoVelocitiesOfDrums) {
  On(10, 36, 10, 100);
  Ready();
  song.MidiData[9].DrumPart = 1;
  song.NotesVelocities[9] = {
      .Minimum = 100, .Maximum = 120, .Mean = 110, .Mapped = true, .NewMinimum = 40, .NewMaximum = 60};
  Start();
  Elapse(20);
  EXPECT_THAT(Log(), ElementsAre("10: 99 24 64"));
}

TEST_F(MidiPlayer, NeverTurnsANoteOnIntoANoteOff) {
  On(10, 60, 1, 1);
  Ready();
  song.VelocityDelta[0] = -1;
  Start();
  Elapse(20);
  EXPECT_THAT(Log(), ElementsAre("10: 90 3C 01"));
}

TEST_F(MidiPlayer, PlaysDrumNotesAsTheEditorsSay) {
  On(10, 36, 10).On(11, 38, 10).On(12, 40, 10).On(13, 120, 10);
  Ready();
  auto& data = song.MidiData[9];
  data.DrumPart = 1;
  data.DrumArray[36].Transpose = 2;
  data.DrumArray[36].DeltaVelocity = -20;
  data.DrumArray[38].Mute = true;
  data.DrumArray[120].Transpose = 20;
  Start();
  Elapse(20);
  EXPECT_THAT(Log(), ElementsAre("10: 99 26 50", "12: 99 28 64", "13: 99 78 64"));
  EXPECT_EQ(data.DrumArray[36].XValue, 10) << "its light";
  EXPECT_EQ(data.DrumArray[38].XValue, 0);
}

TEST_F(MidiPlayer, PlaysASecondDrumPartOfAFurtherRouteAsChannel10) {
  On(10, 36, 11).Ctrl(11, 7, 90, 11);
  Prog(12, 5, 11);
  Ready();
  Routes(2);
  song.MidiData[10].DrumPart = 2;
  song.MidiOutIndex[10] = 1;
  song.DrumsSecForceToChannel10 = true;
  Start();
  Elapse(20);
  EXPECT_THAT(Log(), ElementsAre("10: 1> 99 24 64", "11: 1> B9 07 5A", "12: 1> C9 05"));
  player.Stop();
  player.Stop();
  song.MidiOutIndex[10] = 0;
  Start();
  Elapse(20);
  EXPECT_THAT(Log(), Contains("10: 9A 24 64")) << "on route 0 channel 10 is the song's own";
}

TEST_F(MidiPlayer, CountsSoundingNotesForTheMeters) {
  On(10, 60, 1, 80).On(11, 64, 1, 100).Off(20, 60).Off(21, 64);
  Ready();
  Start();
  Elapse(15);
  EXPECT_EQ(realtime.RMSValue[0].Count, 2);
  EXPECT_EQ(realtime.RMSValue[0].Peak, 100);
  Elapse(15);
  EXPECT_EQ(realtime.RMSValue[0].Count, 0);
  player.Stop();
  player.Stop();
  player.DisplayActive = false;
  Start();
  Elapse(15);
  EXPECT_EQ(realtime.RMSValue[0].Count, 0) << "nobody looks";
}

TEST_F(MidiPlayer, KeepsTheNotesOfAPassForTheDisplays) {
  On(10, 60).Off(10, 60).On(10, 36, 10, 90);
  Ready();
  song.MidiData[9].DrumPart = 1;
  Start();
  Elapse(10);
  ASSERT_EQ(player.TracksNotesArrElm, 2);
  EXPECT_EQ(player.TracksNotesArray[0].Key, 60);
  ASSERT_EQ(player.DrumsNotesArrElm, 1);
  EXPECT_EQ(player.DrumsNotesArray[0].Channel, 9);
  EXPECT_EQ(player.DrumsNotesArray[0].Velocity, 90);
  Elapse(1);
  EXPECT_EQ(player.TracksNotesArrElm, 0) << "of that pass only";
}

TEST_F(MidiPlayer, TellsTheDrumEditorWhoseKitHasChanged) {
  Prog(0, 1, 11);
  Prog(10, 2, 11);
  Ready();
  song.MidiData[10].DrumPart = 2;
  Start();
  Elapse(15);
  EXPECT_TRUE(player.UpdateDrumsSecForm);
  EXPECT_FALSE(player.UpdateDrumsMainForm);
  EXPECT_FALSE(player.UpdateDrumsThirdForm);
}

// --- Other events

TEST_F(MidiPlayer, SendsSysexToTheRouteOfTheFirstChannel) {
  Syx(10, {0x7E, 0x7F, 9, 1, 0xF7});
  Ready();
  Start();
  Elapse(20);
  EXPECT_THAT(Log(), ElementsAre("10: F0 7E 7F 09 01 F7"));
}

TEST_F(MidiPlayer, SendsNeitherSysexNorBanksToTheWavetable) {
  Syx(10, {0x7E, 0x7F, 9, 1, 0xF7}).Ctrl(11, 0, 5).Ctrl(12, 32, 5).Ctrl(13, 7, 90);
  Ready();
  routes.Table[0].MSWavetable = true;
  Start();
  Elapse(20);
  EXPECT_THAT(Log(), ElementsAre("13: B0 07 5A"));
}

TEST_F(MidiPlayer, HoldsBackSysexThatAWireCouldNotCarry) {
  const std::vector<std::uint8_t> block(1000, 0x11);
  Syx(10, block).Syx(10, block);
  On(11, 60);
  Ready();
  Start();
  Elapse(9);
  out.Sent.clear();
  Elapse(1000);
  ASSERT_EQ(out.Sent.size(), 3U);
  EXPECT_EQ(out.Sent[0].Bytes.size(), 1001U);
  EXPECT_THAT(Log()[1], StartsWith("11: 90")) << "a note waits for no sysex";
  constexpr int wait = 313;  // ms for the 978 bytes that the first burst left uncovered
  EXPECT_EQ(out.Sent[2].Time - began, 10 + wait);
}

TEST_F(MidiPlayer, SurvivesAPortThatGoesAwayWhileItPlays) {
  On(10, 60);
  Syx(11, {1, 0xF7}).On(20, 62);
  Ready();
  Start();
  out.fails = true;
  Elapse(15);
  out.fails = false;
  Elapse(10);
  EXPECT_THAT(Log(), ElementsAre("20: 90 3E 64"));
}

TEST_F(MidiPlayer, SendsTheBytesOfAnEscapeAsTheyAre) {
  PtrMidiEvent escape = NewSysex(song.Pool, std::vector<std::uint8_t>{0xF3, 0x05}, 10);
  escape->Command = SysexEscape;
  Put(escape);
  Ready();
  Start();
  Elapse(20);
  EXPECT_THAT(Log(), ElementsAre("10: F3 05"));
}

// --- Tracking

TEST_F(MidiPlayer, FollowsControllersIntoTheModel) {
  Ctrl(0, 7, 100).Ctrl(50, 7, 60).Ctrl(60, 1, 5);
  Ready();
  Start();
  EXPECT_EQ(song.MidiData[0].CtrlArray[7].Value, 100);
  Elapse(55);
  EXPECT_EQ(song.MidiData[0].CtrlArray[7].Value, 60);
  EXPECT_EQ(player.LastCtrl[0][7], 60);
  EXPECT_TRUE(player.UpdateSliders);
  player.UpdateSliders = false;
  Elapse(10);
  EXPECT_EQ(song.MidiData[0].CtrlArray[1].Value, 5);
  EXPECT_FALSE(player.UpdateSliders) << "modulation has no slider";
}

TEST_F(MidiPlayer, KeepsTheSnapshotOfTheGroupFader) {
  Ctrl(50, 7, 60).Ctrl(51, 10, 61);
  Ready();
  player.SliderSnapshot[0] = 99;
  Start();
  Elapse(60);
  EXPECT_EQ(player.SliderSnapshot[0], 99) << "the group fader is off";
  player.Stop();
  player.Stop();
  player.MasterVolume = true;
  Start();
  Elapse(60);
  EXPECT_EQ(player.SliderSnapshot[0], 60);
}

TEST_F(MidiPlayer, TellsNothingOfASoundThatTheChannelHasAlready) {
  Prog(5, 3);
  Ready();
  Start();
  player.UpdatePatches = false;
  Elapse(20);
  EXPECT_FALSE(player.UpdatePatches);
  EXPECT_EQ(player.LastPatch[0], -1);
}

TEST_F(MidiPlayer, ParksBanksUntilTheirProgramComes) {
  Ctrl(0, 0, 1).Ctrl(1, 32, 2);
  Prog(2, 3);
  Ctrl(50, 0, 10).Ctrl(51, 32, 11);
  Prog(60, 12);
  Ready();
  Start();
  Elapse(55);
  EXPECT_EQ(song.MidiData[0].CtrlArray[0].Value, 1) << "still the first sound's";
  Elapse(10);
  EXPECT_EQ(song.MidiData[0].CtrlArray[0].Value, 10);
  EXPECT_EQ(song.MidiData[0].CtrlArray[32].Value, 11);
  EXPECT_EQ(song.MidiData[0].Patch, 12);
  EXPECT_EQ(player.LastPatch[0], 12);
  EXPECT_TRUE(player.UpdatePatches);
}

TEST_F(MidiPlayer, NeverTracksTheRemoteSequence) {
  Ctrl(5, 0, 77, 16).Ctrl(10, 32, 1, 16);
  Prog(15, 2, 16);
  Ready();
  song.PromptaRemoteCtrl00 = Event(1, 1);
  song.PromptaRemoteCtrl32 = Event(1, 2);
  song.PromptaRemotePatch = Event(1, 3);
  song.MidiData[15].Patch = 99;
  Start();
  Elapse(20);
  EXPECT_EQ(song.MidiData[15].Patch, 99);
  EXPECT_EQ(player.LastPatch[15], -1);
}

// --- Start

TEST_F(MidiPlayer, FlushesWhatIsPendingInItsOrder) {
  Ready();
  TRealtime& pending = realtime.Realtime[0];
  pending.Volume = 99;
  pending.Ctrl[10] = 20;
  pending.Ctrl[0] = 1;
  pending.Ctrl[32] = 2;
  pending.Patch = 3;
  pending.AllSoundOff = 1;
  began = clock.Milliseconds();
  ASSERT_TRUE(player.PreparePlay());
  EXPECT_THAT(Log(), ElementsAre("0: B0 78 00", "1: B0 00 01", "2: B0 20 02", "3: C0 03", "4: B0 0A 14",
                                 "5: B0 07 63"));
  EXPECT_EQ(player.SentOnStart, 6);
  out.Sent.clear();
  ASSERT_TRUE(player.PreparePlay());
  EXPECT_THAT(Log(), IsEmpty()) << "each goes out once";
}

TEST_F(MidiPlayer, FlushesDrumValuesAsThreeControllers) {
  Ready();
  song.MidiData[9].DrumPart = 1;
  song.MidiData[9].DrumArray[36].Transpose = 1;
  realtime.Realtime[9].DrumLevel[36] = 100;
  realtime.Realtime[9].DrumReverb[36] = 50;
  realtime.Realtime[0].DrumLevel[36] = 100;
  began = clock.Milliseconds();
  ASSERT_TRUE(player.PreparePlay());
  EXPECT_THAT(Log(), ElementsAre("0: B9 63 1A", "0: B9 62 25", "0: B9 06 64", "3: B9 63 1D",
                                 "3: B9 62 25", "3: B9 06 32"))
      << "only of drum channels";
}

TEST_F(MidiPlayer, DoesNotStartWithoutItsPorts) {
  Ready();
  out.opens = false;
  EXPECT_FALSE(player.Play());
  EXPECT_EQ(player.State, TMidiPlayerState::stStopped);
}

TEST_F(MidiPlayer, ResetsFurtherRoutesAtTheStartOfTheSong) {
  On(10, 60, 2);
  Ready();
  Routes(3);
  routes.Table[1].InstrumValue = 87;
  routes.Table[2].InstrumValue = 13;
  EXPECT_TRUE(player.PreparePlay());
  EXPECT_THAT(Log(), IsEmpty()) << "no channel uses them";
  song.MidiOutIndex[1] = 1;
  began = clock.Milliseconds();
  EXPECT_TRUE(player.PreparePlay());
  EXPECT_THAT(Log(), ElementsAre("0: 1> F0 43 10 4C 00 00 7E 00 F7")) << "a GEM Genesys takes none";
  EXPECT_EQ(clock.Milliseconds() - began, 300);
  out.Sent.clear();
  routes.Table[1].MSWavetable = true;
  EXPECT_TRUE(player.PreparePlay());
  EXPECT_THAT(Log(), IsEmpty()) << "the wavetable takes none";
  routes.Table[1].MSWavetable = false;
  player.MoveToTimePosition(500);
  EXPECT_TRUE(player.PreparePlay());
  EXPECT_THAT(Log(), IsEmpty()) << "in the middle of the song sounds are set already";
}

TEST_F(MidiPlayer, SendsTheParkedSysexOnce) {
  Ready();
  realtime.RealtimeSysex = {0x41, 0xF7};
  bool inserts = false;
  realtime.RealtimeInsertFx = true;
  player.Hooks.SendInsertSysexs = [&] { inserts = true; };
  began = clock.Milliseconds();
  ASSERT_TRUE(player.PreparePlay());
  EXPECT_THAT(Log(), ElementsAre("0: F0 41 F7"));
  EXPECT_TRUE(inserts);
  out.Sent.clear();
  ASSERT_TRUE(player.PreparePlay());
  EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(MidiPlayer, SwitchesLocalControlWhileItRecordsThrough) {
  Ready();
  player.RecMidiThru = player.RecSendLocalOff = true;
  ASSERT_TRUE(player.Play());
  EXPECT_THAT(out.Sent.front().Bytes, ElementsAre(0xB0, 122, 0));
  EXPECT_EQ(out.Sent.size(), 16U);
  player.Stop();
  EXPECT_THAT(out.Sent.back().Bytes, ElementsAre(0xBF, 122, 127));
}

// --- Stop

TEST_F(MidiPlayer, EndsEveryNoteWhenItStops) {
  On(10, 60).On(11, 64, 2);
  Ready();
  Start();
  Elapse(20);
  out.Sent.clear();
  EXPECT_FALSE(player.Ledger.Empty());
  player.Stop();
  const Lines log = Log();
  ASSERT_EQ(log.size(), 2U + 32U);
  EXPECT_EQ(log[0], "20: 80 3C 40");
  EXPECT_EQ(log[1], "20: 81 40 40");
  EXPECT_EQ(log[2], "20: B0 78 00");
  EXPECT_EQ(log[3], "20: B0 7B 00");
  EXPECT_EQ(log[33], "20: BF 7B 00");
  EXPECT_TRUE(player.Ledger.Empty());
  EXPECT_EQ(player.Tag, Parked);
  EXPECT_EQ(realtime.RMSValue[0].Count, 0);
}

TEST_F(MidiPlayer, PausesAtTheFirstStopAndRewindsAtTheSecond) {
  Ctrl(0, 7, 100).Ctrl(50, 7, 60);
  Prog(0, 5);
  Prog(40, 9);
  Ready();
  bool read = false;
  player.Hooks.ReadFirstValues = [&] { read = true; };
  Start();
  Elapse(60);
  player.Stop();
  EXPECT_EQ(player.TimePosition, 60);
  EXPECT_EQ(song.MidiData[0].Patch, 9);
  EXPECT_FALSE(read);
  player.Stop();
  EXPECT_EQ(player.TimePosition, 0);
  EXPECT_EQ(song.MidiData[0].CtrlArray[7].Value, 100);
  EXPECT_EQ(song.MidiData[0].Patch, 5);
  EXPECT_TRUE(read);
  Start();
  Elapse(10);
  EXPECT_FALSE(out.Sent.empty()) << "from the start again";
}

TEST_F(MidiPlayer, GoesOnWhereItPaused) {
  On(100, 60).On(200, 62);
  Ready();
  Start();
  Elapse(150);
  player.Stop();
  clock.Advance(10'000);
  Start();
  Elapse(60);
  EXPECT_THAT(Log(), ElementsAre("200: 90 3E 64"));
}

// --- Loop

TEST_F(MidiPlayer, JumpsBackTenMillisecondsBeforeTheLoopEnds) {
  On(100, 60).On(250, 62).On(350, 64);
  Ready();
  player.SetLoop(200, 300);
  Start();
  Elapse(291);
  EXPECT_EQ(player.TimePosition, 200);
  out.Sent.clear();
  Elapse(60);
  EXPECT_THAT(Log(), ElementsAre("341: 90 3E 64")) << "91 ms of the loop were played";
  player.EndLoop();
  Elapse(200);
  EXPECT_THAT(Log(), Contains(testing::EndsWith("90 40 64")));
}

TEST_F(MidiPlayer, NeverLoopsBackwards) {
  On(100, 60).On(900, 62);
  Ready();
  player.SetLoop(300, 100);
  EXPECT_EQ(player.LoopStart, 300);
  EXPECT_EQ(player.LoopEnd, 300);
  player.SetLoop(-5, 999'999);
  EXPECT_EQ(player.LoopStart, 0);
}

TEST_F(MidiPlayer, LeavesNoNoteHangingWhenItLoops) {
  On(250, 62).Off(600, 62);
  Ready();
  bool rewound = false;
  player.Hooks.LoopRewound = [&] { rewound = true; };
  player.SetLoop(200, 300);
  Start();
  Elapse(290);
  EXPECT_THAT(Log(), Not(Contains(testing::HasSubstr("80 3E"))));
  Elapse(1);
  EXPECT_THAT(Log(), Contains("291: 80 3E 40"));
  EXPECT_THAT(Log(), Contains("291: B0 78 00"));
  EXPECT_TRUE(rewound);
}

// --- Position

TEST_F(MidiPlayer, ChasesTheModelWithoutSendingAnything) {
  Ctrl(0, 7, 100).Ctrl(50, 7, 60).Ctrl(500, 7, 20);
  Prog(40, 9);
  Ready();
  player.MoveToTimePosition(100);
  EXPECT_EQ(player.TimePosition, 100);
  EXPECT_EQ(song.MidiData[0].CtrlArray[7].Value, 60);
  EXPECT_EQ(song.MidiData[0].Patch, 9);
  EXPECT_TRUE(player.UpdateSliders);
  EXPECT_TRUE(player.UpdatePatches);
  EXPECT_THAT(Log(), IsEmpty());
  player.MoveToTimePosition(10);
  EXPECT_EQ(song.MidiData[0].CtrlArray[7].Value, 100) << "backwards from the head";
}

TEST_F(MidiPlayer, ChasesNothingOnIgnoredTracks) {
  Ctrl(50, 7, 60);
  Ready();
  song.MidiTrack[1].TrkIgnore = true;
  song.MidiData[0].CtrlArray[7].Value = 99;
  player.MoveToTimePosition(100);
  EXPECT_EQ(song.MidiData[0].CtrlArray[7].Value, 99);
}

TEST_F(MidiPlayer, BringsTheFirstSoundBackWithItsBanks) {
  Ctrl(0, 0, 1).Ctrl(1, 32, 2);
  Prog(2, 3);
  Ctrl(50, 0, 10).Ctrl(51, 32, 11);
  Prog(60, 12);
  Ready();
  player.MoveToTimePosition(100);
  EXPECT_EQ(song.MidiData[0].CtrlArray[0].Value, 10);
  player.MoveToTimePosition(30);
  EXPECT_EQ(song.MidiData[0].Patch, 3);
  EXPECT_EQ(song.MidiData[0].CtrlArray[0].Value, 1);
  EXPECT_EQ(song.MidiData[0].CtrlArray[32].Value, 2);
}

TEST_F(MidiPlayer, StaysWhereItIsForAPositionOutsideTheSong) {
  On(10, 60);
  Ready();
  player.MoveToTimePosition(song.SongLength + 1);
  EXPECT_EQ(player.TimePosition, 0);
  player.MoveToTimePosition(-5);
  EXPECT_EQ(player.TimePosition, 0);
  player.MoveToTimePosition(song.SongLength);
  EXPECT_EQ(player.TimePosition, song.SongLength);
}

TEST_F(MidiPlayer, StartsAtTheEventThatItWasWoundTo) {
  On(100, 60).On(200, 62);
  Ready();
  player.MoveToTimePosition(200);
  Start();
  Elapse(5);
  EXPECT_THAT(Log(), ElementsAre("201: 90 3E 64"));
}

// --- Tempo

TEST_F(MidiPlayer, GoesOnAtTheSameMusicalPlaceWhenTheTempoChanges) {
  On(400, 60).On(800, 62);
  Ready();
  ASSERT_EQ(song.BackupTempo[0], 125);
  Start();
  Elapse(500);
  player.TempoOffset = 125;
  player.TempoChanged = true;
  out.Sent.clear();
  Elapse(1);
  EXPECT_NEAR(player.TimePosition, 250, 1) << "half the time at twice the tempo";
  EXPECT_EQ(song.SourceTempo[0].Tempo, 250);
  Elapse(155);
  EXPECT_EQ(out.Sent.size(), 1U);
  EXPECT_EQ(Event(0, 1)->Meta[1], 240'000 >> 8 & 255) << "the song itself has the new tempo";
}

TEST_F(MidiPlayer, AnEditedTempoBringsNothingInAHeapAndSkipsNothing) {
  for (int n = 1; n < 20; ++n) On(n * 100, 40 + n);
  Ready();
  Start();
  Elapse(550);
  out.Sent.clear();
  {
    const auto held = gate.Enter();
    player.KeepPlace([&] {
      const auto bytes = Event(0, 1)->Meta.Mutable();  // 250 bpm: two ticks to the millisecond
      bytes[0] = 240'000 >> 16, bytes[1] = 240'000 >> 8 & 255, bytes[2] = 240'000 & 255;
      functions.UpdateTimeZoneData();
    });
  }
  EXPECT_NEAR(player.TimePosition, 275, 1);
  Elapse(20);
  EXPECT_TRUE(out.Sent.empty()) << "the next note is due 25 ms later";
  Elapse(8);
  ASSERT_EQ(out.Sent.size(), 1U);
  EXPECT_EQ(out.Sent[0].Bytes[1], 46);
  Elapse(200);
  EXPECT_EQ(out.Sent.size(), 5U);
}

TEST_F(MidiPlayer, KeepsTheTempoAtTwentyFiveAtLeast) {
  Ready();
  Start();
  player.TempoOffset = -500;
  player.TempoChanged = true;
  Elapse(1);
  EXPECT_EQ(song.SourceTempo[0].Tempo, 25);
  player.TempoOffset = 0;
  player.TempoChanged = true;
  Elapse(1);
  EXPECT_EQ(song.SourceTempo[0].Tempo, 125);
}

// --- Hosted sound

TEST_F(MidiPlayer, SendsToTheRouteOfEachChannel) {
  On(10, 60).On(10, 61, 2);
  Ready();
  Routes(2);
  Hosted(1);
  song.MidiOutIndex[1] = 1;
  Start();
  Elapse(20);
  EXPECT_THAT(Log(), ElementsAre("10: 90 3C 64", "10: 1> 91 3D 64"));
}

TEST_F(MidiPlayer, SilencesAChannelThatIsMuted) {
  On(10, 60).On(10, 61, 2);
  Ready();
  Start();
  Elapse(20);
  out.Sent.clear();
  player.SilenceChannel(0);
  EXPECT_THAT(Log(), ElementsAre("20: 80 3C 40", "20: B0 78 00", "20: B0 7B 00"));
  EXPECT_FALSE(player.Ledger.Empty()) << "the other channel sounds on";
}

}  // namespace
}  // namespace Sonarello
