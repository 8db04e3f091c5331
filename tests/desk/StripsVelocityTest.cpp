// Velocity offset and velocity range.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "desk/StripsBench.h"

namespace Sonarello {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Channel 1 has velocities from 40 to 100, those of channel 2 are all 70; channel 3 has no notes.
struct StripsVelocity : ::testing::Test, StripsBench {
  StripsVelocity() {
    NewTrack().Tempo(0, 480'000);
    On(10, 60, 1, 40)
        .On(20, 61, 1, 70)
        .On(30, 62, 1, 100)
        .On(40, 63, 2, 70)
        .On(50, 63, 1, 0)
        .Ctrl(60, 7, 100, 3);
    Off(900, 60).Off(900, 61).Off(900, 62).Off(900, 63, 2);
    Loaded();
  }
  [[nodiscard]] int Offset(int channel) {
    return song.VelocityDelta[static_cast<std::size_t>(channel)];
  }
  [[nodiscard]] TNotesVelocities& Record(int channel) {
    return song.NotesVelocities[static_cast<std::size_t>(channel)];
  }
};

// --- Offset

TEST_F(StripsVelocity, APressMovesByOneAndRepeatsAfterSevenHundredMilliseconds) {
  EXPECT_EQ(strips.Velocities.VelocityDown(0, 1), 700);
  EXPECT_EQ(Offset(0), 1);
  EXPECT_EQ(song.ActiveMidiIndex, 0);
  EXPECT_THAT(Told(), ElementsAre("select -1 0", "strip 0"));
  EXPECT_EQ(strips.Velocities.VelocityTimerTimer(), 150);
  EXPECT_EQ(strips.Velocities.VelocityTimerTimer(), 150);
  EXPECT_EQ(Offset(0), 3);
}

TEST_F(StripsVelocity, TheLeftSideLowers) {
  EXPECT_EQ(strips.Velocities.VelocityDown(1, -1), 700);
  EXPECT_EQ(strips.Velocities.VelocityTimerTimer(), 150);
  EXPECT_EQ(Offset(1), -2);
  EXPECT_EQ(Offset(0), 0);
}

TEST_F(StripsVelocity, LettingGoEndsTheRepeat) {
  static_cast<void>(strips.Velocities.VelocityDown(0, 1));
  strips.Velocities.VelocityUp();
  EXPECT_EQ(strips.Velocities.VelocityTimerTimer(), 0);
  EXPECT_EQ(Offset(0), 1);
}

TEST_F(StripsVelocity, TheOffsetStopsAtBothEnds) {
  static_cast<void>(strips.Velocities.VelocityDown(0, 1));
  int steps = 0;
  while (strips.Velocities.VelocityTimerTimer() != 0) ++steps;
  EXPECT_EQ(Offset(0), 127);
  EXPECT_EQ(steps, 126);
  EXPECT_EQ(strips.Velocities.VelocityDown(0, 1), 0);
  strips.Velocities.VelocityUp();
  EXPECT_EQ(strips.Velocities.VelocityDown(0, -1), 700);
  while (strips.Velocities.VelocityTimerTimer() != 0) {
  }
  EXPECT_EQ(Offset(0), -127);
}

TEST_F(StripsVelocity, AnOffsetIsNoChangeOfTheSong) {
  static_cast<void>(strips.Velocities.VelocityDown(0, 1));
  EXPECT_THAT(Told(), ::testing::Not(::testing::Contains("changed")));
  EXPECT_EQ(Event(0, 2)->Value[1], 40);
}

TEST_F(StripsVelocity, AChannelWithoutEventsHasNoOffset) {
  EXPECT_EQ(strips.Velocities.VelocityDown(9, 1), 0);
  strips.Velocities.Step(9, 1);
  strips.Velocities.SetOffset(9, 5);
  EXPECT_EQ(Offset(9), 0);
  EXPECT_EQ(strips.Velocities.VelocityTimerTimer(), 0);
  EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(StripsVelocity, AKeyMovesByOneStep) {
  strips.Velocities.Step(0, -1);
  strips.Velocities.Step(0, -1);
  EXPECT_EQ(Offset(0), -2);
  EXPECT_EQ(strips.Velocities.VelocityTimerTimer(), 0);
}

TEST_F(StripsVelocity, ATypedOffsetIsBroughtIntoTheRange) {
  strips.Velocities.SetOffset(0, 12);
  EXPECT_EQ(Offset(0), 12);
  strips.Velocities.SetOffset(0, -500);
  EXPECT_EQ(Offset(0), -127);
  strips.Velocities.SetOffset(0, 500);
  EXPECT_EQ(Offset(0), 127);
}

TEST_F(StripsVelocity, TheOffsetIsHeardFromTheNextNoteOn) {
  Start();
  Elapse(15);
  static_cast<void>(Sent());
  strips.Velocities.SetOffset(0, -20);
  Elapse(10);
  EXPECT_THAT(Sent(), ElementsAre("90 3D 32"));
  strips.Velocities.SetOffset(0, -127);
  Elapse(10);
  EXPECT_THAT(Sent(), ElementsAre("90 3E 01"));
}

TEST_F(StripsVelocity, ANewSongLetsGoOfTheButton) {
  static_cast<void>(strips.Velocities.VelocityDown(0, 1));
  strips.SongChanged();
  EXPECT_EQ(strips.Velocities.VelocityTimerTimer(), 0);
}

// --- Range

TEST_F(StripsVelocity, TheEditorOpensWithTheRangeOfTheNotes) {
  const auto range = strips.Velocities.OpenVelocityEditor(0);
  ASSERT_TRUE(range);
  EXPECT_EQ(range->Minimum, 40);
  EXPECT_EQ(range->Maximum, 100);
  EXPECT_EQ(range->NewMinimum, 40);
  EXPECT_EQ(range->NewMaximum, 100);
  EXPECT_FALSE(range->Mapped);
  EXPECT_EQ(strips.Velocities.EditedChannel(), 0);
  EXPECT_EQ(song.ActiveMidiIndex, 0);
  EXPECT_EQ(Record(0).Mean, 70);
}

TEST_F(StripsVelocity, TheEditorDoesNotOpenWithoutNotes) {
  EXPECT_FALSE(strips.Velocities.OpenVelocityEditor(2));
  EXPECT_FALSE(strips.Velocities.OpenVelocityEditor(9));
  EXPECT_EQ(strips.Velocities.EditedChannel(), -1);
  strips.Velocities.VelocityRangeSliderMinPosChange(5);
  strips.Velocities.VelocityRangeSliderMaxPosChange(5);
  strips.Velocities.ResetVelocityRange();
  EXPECT_THAT(Told(), ElementsAre("select -1 2"));
}

TEST_F(StripsVelocity, RemovedAndIgnoredNotesDoNotCount) {
  MarkRemoved(Event(0, 2));
  const auto range = strips.Velocities.OpenVelocityEditor(0);
  ASSERT_TRUE(range);
  EXPECT_EQ(range->Minimum, 70);
  Track(0).TrkIgnore = true;
  EXPECT_FALSE(strips.Velocities.OpenVelocityEditor(0));
}

TEST_F(StripsVelocity, TheSlidersMapTheNotesRangeToAnother) {
  static_cast<void>(strips.Velocities.OpenVelocityEditor(0));
  static_cast<void>(Told());
  strips.Velocities.VelocityRangeSliderMinPosChange(60);
  strips.Velocities.VelocityRangeSliderMaxPosChange(120);
  EXPECT_THAT(Told(), ElementsAre("changed", "strip 0", "changed", "strip 0"));
  EXPECT_TRUE(Record(0).Mapped);
  Start();
  Elapse(35);
  EXPECT_THAT(Sent(), ElementsAre("90 3C 3C", "90 3D 5A", "90 3E 78"));
}

TEST_F(StripsVelocity, WhileARangeIsMappedTheOffsetDoesNotCount) {
  static_cast<void>(strips.Velocities.OpenVelocityEditor(0));
  strips.Velocities.VelocityRangeSliderMaxPosChange(80);
  strips.Velocities.SetOffset(0, 30);
  Start();
  Elapse(35);
  EXPECT_THAT(Sent(), ElementsAre("90 3C 28", "90 3D 3C", "90 3E 50"));
}

TEST_F(StripsVelocity, NotesThatAreAllAlikeAreDrawnAnewForEachNote) {
  std::set<int> heard;
  static_cast<void>(strips.Velocities.OpenVelocityEditor(1));
  strips.Velocities.VelocityRangeSliderMinPosChange(20);
  strips.Velocities.VelocityRangeSliderMaxPosChange(30);
  for (int i = 0; i < 200; ++i) {
    player.MoveToTimePosition(35);
    out.Sent.clear();
    Start();
    Elapse(10);
    ASSERT_EQ(out.Sent.size(), 1U);
    heard.insert(out.Sent[0].Bytes[2]);
    player.Stop();
    player.Stop();
  }
  EXPECT_THAT(heard, ElementsAre(20, 21, 22, 23, 24, 25, 26, 27, 28, 29));
}

TEST_F(StripsVelocity, ASliderTakesTheOtherAlong) {
  static_cast<void>(strips.Velocities.OpenVelocityEditor(0));
  strips.Velocities.VelocityRangeSliderMinPosChange(110);
  EXPECT_EQ(strips.Velocities.Range().NewMinimum, 110);
  EXPECT_EQ(strips.Velocities.Range().NewMaximum, 110);
  strips.Velocities.VelocityRangeSliderMaxPosChange(30);
  EXPECT_EQ(strips.Velocities.Range().NewMinimum, 30);
  EXPECT_EQ(strips.Velocities.Range().NewMaximum, 30);
}

TEST_F(StripsVelocity, TheTargetRangeStaysAVelocity) {
  static_cast<void>(strips.Velocities.OpenVelocityEditor(0));
  strips.Velocities.VelocityRangeSliderMinPosChange(0);
  strips.Velocities.VelocityRangeSliderMaxPosChange(500);
  EXPECT_EQ(strips.Velocities.Range().NewMinimum, 1);
  EXPECT_EQ(strips.Velocities.Range().NewMaximum, 127);
}

TEST_F(StripsVelocity, ValuesCanBeTypedBesideTheSliders) {
  static_cast<void>(strips.Velocities.OpenVelocityEditor(0));
  strips.Velocities.E_VelocityExit(false, " 20 ");
  strips.Velocities.E_VelocityExit(true, "999");
  strips.Velocities.E_VelocityExit(true, "loud");
  EXPECT_EQ(strips.Velocities.Range().NewMinimum, 20);
  EXPECT_EQ(strips.Velocities.Range().NewMaximum, 127);
}

TEST_F(StripsVelocity, BackAtTheNotesOwnRangeNothingIsMapped) {
  static_cast<void>(strips.Velocities.OpenVelocityEditor(0));
  strips.Velocities.VelocityRangeSliderMaxPosChange(50);
  strips.Velocities.VelocityRangeSliderMaxPosChange(100);
  EXPECT_FALSE(Record(0).Mapped);
  strips.Velocities.VelocityRangeSliderMinPosChange(50);
  EXPECT_TRUE(Record(0).Mapped);
  strips.Velocities.ResetVelocityRange();
  EXPECT_FALSE(Record(0).Mapped);
  EXPECT_EQ(strips.Velocities.Range().NewMinimum, 40);
  static_cast<void>(Told());
  strips.Velocities.ResetVelocityRange();
  EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(StripsVelocity, TheRangeIsThereWhenTheEditorOpensAgain) {
  static_cast<void>(strips.Velocities.OpenVelocityEditor(0));
  strips.Velocities.VelocityRangeSliderMinPosChange(90);
  strips.Velocities.Btn_CloseVelocityEditorClick();
  EXPECT_EQ(strips.Velocities.EditedChannel(), -1);
  strips.Velocities.VelocityRangeSliderMinPosChange(3);
  const auto range = strips.Velocities.OpenVelocityEditor(0);
  ASSERT_TRUE(range);
  EXPECT_TRUE(range->Mapped);
  EXPECT_EQ(range->NewMinimum, 90);
  EXPECT_TRUE(strips.View(0).VelocityMapped);
}

TEST_F(StripsVelocity, ANewSongClosesTheEditor) {
  static_cast<void>(strips.Velocities.OpenVelocityEditor(0));
  strips.SongChanged();
  EXPECT_EQ(strips.Velocities.EditedChannel(), -1);
}

}  // namespace
}  // namespace Sonarello
