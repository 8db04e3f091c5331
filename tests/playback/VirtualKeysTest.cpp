#include "playback/VirtualKeys.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/SentLog.h"
#include "playback/MidiErrors.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Ports that only open and close.
class Ports : public IOutputs {
 public:
  bool OpenAll() override { return false; }
  bool Open(int route) override {
    if (raises) throw EMidiOutputError("no such port");
    Asked.push_back(route);
    return open = opens;
  }
  [[nodiscard]] bool IsOpen(int) const override { return open; }
  void CloseAll() override {}
  void SendShort(int, std::uint8_t, std::uint8_t, std::uint8_t) override {}
  void SendLong(int, std::span<const std::uint8_t>) override {}

  bool open = true;
  bool opens = true;
  bool raises = false;
  std::vector<int> Asked;
};

struct Keys {
  Keys() { song.ActiveMidiIndex = song.ActiveMidiChannel = 2; }

  Song song;
  TRealtimeData realtime;
  Ports ports;
  SongGate gate;
  SentLog log;
  TVirtualKeys keys{song, realtime, ports, gate, log.Sender()};
};

TEST(VirtualKeys, PlayTheActiveChannelOnItsRoute) {
  Keys k;
  k.song.MidiOutIndex[2] = 3;
  EXPECT_TRUE(k.keys.Press(60, 90));
  EXPECT_TRUE(k.keys.IsSounding());
  k.keys.Release();
  EXPECT_FALSE(k.keys.IsSounding());
  EXPECT_THAT(k.log.Lines, ElementsAre("3> 92 3C 5A", "3> 82 3C 40"));
}

TEST(VirtualKeys, PlayOneNoteAtATime) {
  Keys k;
  k.keys.Press(60);
  k.keys.Press(64);
  k.keys.Press(64);
  k.keys.Release();
  k.keys.Release();
  EXPECT_THAT(k.log.Lines, ElementsAre("0> 92 3C 64", "0> 82 3C 40", "0> 92 40 64", "0> 82 40 40",
                                       "0> 92 40 64", "0> 82 40 40"));
}

TEST(VirtualKeys, GoOutOnTheWireChannel) {
  Keys k;
  k.realtime.Realtime[2].MidiChannel = 11;
  k.keys.Press(60);
  EXPECT_THAT(k.log.Lines, ElementsAre("0> 9B 3C 64"));
}

TEST(VirtualKeys, EndANoteWhereItBegan) {
  Keys k;
  k.keys.Press(60);
  k.song.MidiOutIndex[2] = 1;
  k.realtime.Realtime[2].MidiChannel = 5;
  k.song.ActiveMidiIndex = 8;
  k.keys.Release();
  EXPECT_THAT(k.log.Lines, ElementsAre("0> 92 3C 64", "0> 82 3C 40"));
}

TEST(VirtualKeys, EndTheirNoteWhenTheyGo) {
  Keys k;
  {
    TVirtualKeys keys{k.song, k.realtime, k.ports, k.gate, k.log.Sender()};
    keys.Press(60);
  }
  EXPECT_THAT(k.log.Lines, ElementsAre("0> 92 3C 64", "0> 82 3C 40"));
}

TEST(VirtualKeys, AreSilentWithoutAnActiveChannel) {
  Keys k;
  for (const int index : {-1, 16}) {
    k.song.ActiveMidiIndex = index;
    EXPECT_FALSE(k.keys.Press(60));
  }
  EXPECT_THAT(k.log.Lines, IsEmpty());
}

TEST(VirtualKeys, KnowTheRangeOfKeysAndVelocities) {
  Keys k;
  EXPECT_FALSE(k.keys.Press(-1));
  EXPECT_FALSE(k.keys.Press(128));
  EXPECT_FALSE(k.keys.Press(60, 0)) << "a note-on of velocity 0 would end a note";
  EXPECT_TRUE(k.keys.Press(0, 1));
  EXPECT_TRUE(k.keys.Press(127, 500));
  EXPECT_THAT(k.log.Lines, ElementsAre("0> 92 00 01", "0> 82 00 40", "0> 92 7F 7F"));
}

TEST(VirtualKeys, EndTheLastNoteEvenIfTheNextIsNone) {
  Keys k;
  k.keys.Press(60);
  EXPECT_FALSE(k.keys.Press(200));
  EXPECT_FALSE(k.keys.IsSounding());
  EXPECT_THAT(k.log.Lines, ElementsAre("0> 92 3C 64", "0> 82 3C 40"));
}

TEST(VirtualKeys, LeaveAClosedPortAloneUnlessTheyMayGrabIt) {
  Keys k;
  k.ports.open = false;
  EXPECT_FALSE(k.keys.Press(60));
  EXPECT_THAT(k.ports.Asked, IsEmpty());
  EXPECT_THAT(k.log.Lines, IsEmpty());
  k.keys.GrabMidiDriver = true;
  EXPECT_TRUE(k.keys.Press(60));
  EXPECT_THAT(k.ports.Asked, ElementsAre(0));
  EXPECT_THAT(k.log.Lines, ElementsAre("0> 92 3C 64"));
}

TEST(VirtualKeys, SendNothingToAPortThatDoesNotOpen) {
  Keys k;
  k.keys.GrabMidiDriver = true;
  k.ports.open = k.ports.opens = false;
  EXPECT_FALSE(k.keys.Press(60));
  k.ports.raises = true;
  EXPECT_THROW(k.keys.Press(60), EMidiOutputError);
  EXPECT_FALSE(k.keys.IsSounding());
  EXPECT_THAT(k.log.Lines, IsEmpty());
}

}  // namespace
}  // namespace Sonarello
