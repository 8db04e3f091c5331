#include "desk/MidiInMonitor.h"

#include <gtest/gtest.h>

#include "helpers/TestMidiDriver.h"

namespace Sonarello {
namespace {

struct MidiInMonitorTest : ::testing::Test {
  TestMidiDriver midi;
  TMidiInMonitor monitor{midi};
  static constexpr std::uint8_t NoteOn[] = {0x90, 60, 100};
  MidiInMonitorTest() { midi.Inputs = {"Keyboard", "Pads"}; }
};

TEST_F(MidiInMonitorTest, LightsOnceForWhatCameSinceTheLastLook) {
  monitor.Listen("Keyboard");
  ASSERT_TRUE(monitor.IsListening());
  EXPECT_FALSE(monitor.TakeActivity());
  midi.Feed("Keyboard", 1, NoteOn);
  midi.Feed("Keyboard", 2, NoteOn);
  EXPECT_TRUE(monitor.TakeActivity());
  EXPECT_FALSE(monitor.TakeActivity());
}

TEST_F(MidiInMonitorTest, ListensToTheChosenInputOnly) {
  monitor.Listen("Keyboard");
  midi.Feed("Pads", 1, NoteOn);
  EXPECT_FALSE(monitor.TakeActivity());
  monitor.Listen("Pads");
  EXPECT_EQ(midi.OpenInputs, 1);
  midi.Feed("Pads", 1, NoteOn);
  EXPECT_TRUE(monitor.TakeActivity());
}

TEST_F(MidiInMonitorTest, AnInputThatIsGoneOrDoesNotOpenIsNone) {
  monitor.Listen("Nobody");
  EXPECT_FALSE(monitor.IsListening());
  EXPECT_FALSE(monitor.TakeActivity());
  midi.FailOpen = TDriverError(NotReady, "busy");
  monitor.Listen("Keyboard");
  EXPECT_FALSE(monitor.IsListening());
  EXPECT_FALSE(monitor.Failure().empty());
  midi.FailOpen.reset();
  monitor.Listen("Keyboard");
  EXPECT_TRUE(monitor.IsListening());
  EXPECT_TRUE(monitor.Failure().empty());
  monitor.Listen("");
  EXPECT_EQ(midi.OpenInputs, 0);
}

}  // namespace
}  // namespace Sonarello
