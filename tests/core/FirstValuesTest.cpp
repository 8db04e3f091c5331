#include <gtest/gtest.h>

#include "helpers/SongBuilder.h"

namespace Sonarello {
namespace {

struct FirstValues : testing::Test {
  TestSong s;

  PtrMidiEvent Program(std::int32_t position, int program, int channel = 1) {
    PtrMidiEvent e = NewChannelEvent(s.song.Pool, static_cast<std::uint8_t>(0xC0 + channel - 1),
                                     static_cast<std::uint8_t>(program), 0, position);
    s.Put(e);
    return e;
  }
  PtrMidiEvent Ctrl(std::int32_t position, int controller, int value, int channel = 1) {
    s.Ctrl(position, controller, value, channel);
    return s.song.MidiTrack.back().TrkLastEvent;
  }
  void Run() {
    s.Finish();
    s.functions.SetFirstValues();
  }
  TMidiChannelData& Channel(int channel) {
    return s.song.MidiData[static_cast<std::size_t>(channel) - 1];
  }
  TCtrl& Value(int channel, int controller) {
    return Channel(channel).CtrlArray[static_cast<std::size_t>(controller)];
  }
};

TEST_F(FirstValues, TakeTheFirstOfEachControllerAndProgram) {
  s.NewTrack();
  PtrMidiEvent volume = Ctrl(10, 7, 90);
  Ctrl(20, 7, 50);
  PtrMidiEvent program = Program(30, 12);
  Program(40, 13);
  PtrMidiEvent other = Ctrl(50, 7, 40, 5);
  Run();
  EXPECT_EQ(Value(1, 7).Event, volume);
  EXPECT_EQ(Value(1, 7).Value, 90);
  EXPECT_EQ(s.song.FirstControllers[0][7], volume);
  EXPECT_EQ(Channel(1).Patch, 12);
  EXPECT_EQ(Channel(1).PatchEvent, program);
  EXPECT_EQ(s.song.FirstPatches[0], program);
  EXPECT_EQ(Value(5, 7).Event, other);
  EXPECT_EQ(Channel(5).Patch, -1);
}

TEST_F(FirstValues, ForgetWhatStoodThereBefore) {
  s.NewTrack();
  PtrMidiEvent old = Ctrl(10, 7, 90);
  s.song.FirstControllers[3][9] = s.song.FirstPatches[3] = old;
  Channel(4).CtrlArray[9] = {old, 3};
  Channel(4).Patch = 8;
  Channel(4).PatchEvent = old;
  Run();
  EXPECT_EQ(s.song.FirstControllers[3][9], nullptr);
  EXPECT_EQ(s.song.FirstPatches[3], nullptr);
  EXPECT_EQ(Value(4, 9).Event, nullptr);
  EXPECT_EQ(Value(4, 9).Value, NoControllerValue);
  EXPECT_EQ(Channel(4).Patch, -1);
  EXPECT_EQ(Channel(4).PatchEvent, nullptr);
}

TEST_F(FirstValues, PassOverIgnoredTracksAndTakeTracksInTheirOrder) {
  s.NewTrack();
  Ctrl(0, 7, 1);
  s.song.MidiTrack.back().TrkIgnore = true;
  s.NewTrack();
  Ctrl(500, 7, 2);
  s.NewTrack();
  Ctrl(0, 7, 3);
  Run();
  EXPECT_EQ(Value(1, 7).Value, 2);
}

TEST_F(FirstValues, LeaveTheRemoteSequenceAside) {
  s.NewTrack();
  PtrMidiEvent msb = Ctrl(50, 0, 77, 16);
  PtrMidiEvent lsb = Ctrl(60, 32, 3, 16);
  PtrMidiEvent remote = Program(70, 5, 16);
  PtrMidiEvent own = Program(600, 40, 16);
  PtrMidiEvent ownMsb = Ctrl(610, 0, 1, 16);
  Run();
  EXPECT_EQ(s.song.PromptaRemoteCtrl00, msb);
  EXPECT_EQ(s.song.PromptaRemoteCtrl32, lsb);
  EXPECT_EQ(s.song.PromptaRemotePatch, remote);
  EXPECT_EQ(Channel(16).PatchEvent, own);
  EXPECT_EQ(Value(16, 0).Event, ownMsb);
  EXPECT_EQ(Value(16, 32).Event, nullptr);
}

TEST_F(FirstValues, BreakARemoteSequenceWhoseBankLSBComesTooLate) {
  s.NewTrack();
  Ctrl(50, 0, 77, 16);
  Ctrl(80, 32, 3, 16);
  PtrMidiEvent program = Program(85, 5, 16);
  Run();
  EXPECT_EQ(s.song.PromptaRemoteCtrl00, nullptr);
  EXPECT_EQ(s.song.PromptaRemoteCtrl32, nullptr);
  EXPECT_EQ(Value(16, 0).Event, nullptr);
  EXPECT_EQ(Value(16, 32).Event, nullptr);
  EXPECT_EQ(Channel(16).PatchEvent, program);
}

TEST_F(FirstValues, FollowARemoteSequenceUpTo19And39Ticks) {
  s.NewTrack();
  Ctrl(0, 0, 77, 16);
  PtrMidiEvent lsb = Ctrl(19, 32, 3, 16);
  PtrMidiEvent remote = Program(39, 5, 16);
  Run();
  EXPECT_EQ(s.song.PromptaRemoteCtrl32, lsb);
  EXPECT_EQ(s.song.PromptaRemotePatch, remote);
}

TEST_F(FirstValues, BreakARemoteSequenceWhoseProgramComesTooLate) {
  s.NewTrack();
  Ctrl(0, 0, 77, 16);
  Ctrl(10, 32, 3, 16);
  Program(40, 5, 16);
  PtrMidiEvent next = Program(41, 6, 16);
  Run();
  EXPECT_EQ(s.song.PromptaRemoteCtrl00, nullptr);
  EXPECT_EQ(s.song.PromptaRemoteCtrl32, nullptr);
  EXPECT_EQ(s.song.PromptaRemotePatch, nullptr);
  EXPECT_EQ(Channel(16).PatchEvent, next);
}

TEST_F(FirstValues, TakeBank77ForASoundFromTick100AndOnOtherChannels) {
  s.NewTrack();
  PtrMidiEvent other = Ctrl(50, 0, 77, 15);
  PtrMidiEvent late = Ctrl(100, 0, 77, 16);
  PtrMidiEvent lsb = Ctrl(105, 32, 3, 16);
  PtrMidiEvent program = Program(110, 5, 16);
  Run();
  EXPECT_EQ(Value(15, 0).Event, other);
  EXPECT_EQ(Value(16, 0).Event, late);
  EXPECT_EQ(Value(16, 32).Event, lsb);
  EXPECT_EQ(Channel(16).PatchEvent, program);
}

TEST_F(FirstValues, StartARemoteSequenceAnewOnEachTrack) {
  s.NewTrack();
  Ctrl(0, 0, 77, 16);
  s.NewTrack();
  PtrMidiEvent lsb = Ctrl(10, 32, 3, 16);
  Run();
  EXPECT_EQ(Value(16, 32).Event, lsb);
}

}  // namespace
}  // namespace Sonarello
