#include "desk/ControllerOverview.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desk/StripsBench.h"
#include "helpers/InGerman.h"

namespace Sonarello {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

struct OverviewBench : StripsBench {
  OverviewBench() {
    overview.Hooks.PatchName = [](int channel) { return "Sound " + std::to_string(channel + 1); };
    overview.Hooks.EventInserted = [this](int channel) { Tell("inserted " + Number(channel)); };
  }
  /// Two channels in one track, ready for the overview, and nothing told so far.
  OverviewBench& Ready() {
    NewTrack();
    TwoChannels();
    song.MidiTrack.front().TrkMidiIndex = ChannelCount;
    told.clear();
    out.Sent.clear();
    return *this;
  }
  TControllerOverview overview{strips};
};

TEST(ControllerOverview, BeginsWithTheVolume) {
  OverviewBench b;
  EXPECT_EQ(b.overview.Controller(), 7);
  EXPECT_EQ(TControllerOverview::ChoiceText(7), "Volume · CC 7");
}

TEST(ControllerOverview, OffersNoControllerThatMeansNothingByItself) {
  const std::vector<int> choices = TControllerOverview::Choices();
  for (const int kept : {1, 7, 10, 11, 64, 71, 91, 93, 94}) EXPECT_THAT(choices, Contains(kept));
  for (const int left : {0, 6, 32, 38, 96, 97, 98, 99, 100, 101, 120, 121, 122, 123, 127, 3})
    EXPECT_THAT(choices, Not(Contains(left)));
}

TEST(ControllerOverview, TakesNoControllerThatItDoesNotOffer) {
  OverviewBench b;
  for (const int number : {-1, 0, 3, 98, 128}) b.overview.SetController(number);
  EXPECT_EQ(b.overview.Controller(), 7);
  b.overview.SetController(91);
  EXPECT_EQ(b.overview.Controller(), 91);
}

TEST(ControllerOverview, ShowsTheFirstValueOfEachChannel) {
  OverviewBench b;
  b.Ready();
  const TControllerColumn first = b.overview.Column(0);
  EXPECT_EQ(first.Value, 80);
  EXPECT_TRUE(first.InSong);
  EXPECT_EQ(first.Name, "Sound 1");
  EXPECT_EQ(first.Position, "001.01.010");
  EXPECT_EQ(b.overview.Column(1).Value, 40);
  const TControllerColumn none = b.overview.Column(2);
  EXPECT_FALSE(none.InSong);
  EXPECT_FALSE(none.CanInsert);
  EXPECT_EQ(none.Name, "");
}

TEST(ControllerOverview, CountsThePanoramaFromItsMiddle) {
  OverviewBench b;
  b.Ready();
  b.overview.SetController(10);
  EXPECT_EQ(b.overview.Column(0).Value, 64);
  EXPECT_EQ(b.overview.Column(0).Shown, 0);
}

TEST(ControllerOverview, AMoveChangesTheFirstEventAndIsHeardAndShown) {
  OverviewBench b;
  b.strips.Desk.Settings.GrabMidiDriver = true;
  b.Ready();
  EXPECT_TRUE(b.overview.MidiCh00_CtrlValueChange(0, 33));
  EXPECT_EQ(b.Values(0, 7), "33 90");
  EXPECT_EQ(b.Volume(0), 33);
  EXPECT_THAT(b.Told(), ElementsAre("show 0 7 33", "changed", "event 7 33"));
  EXPECT_THAT(b.Sent(), Contains("B0 07 21"));
}

TEST(ControllerOverview, AMoveBehindALaterEventLeavesThatOneAsItIs) {
  OverviewBench b;
  b.Ready();
  const PtrMidiEvent later = b.song.FirstControllers[0][7];
  b.Entry(0, 7) = {later->NextEvent, 90};
  EXPECT_TRUE(b.overview.MidiCh00_CtrlValueChange(0, 33));
  EXPECT_EQ(b.Values(0, 7), "33 90");
  EXPECT_EQ(b.Entry(0, 7).Event, later->NextEvent);
  EXPECT_EQ(b.Entry(0, 7).Value, 33);
  EXPECT_THAT(b.Told(), ElementsAre("show 0 7 33", "changed", "event 7 33"));
}

TEST(ControllerOverview, AMoveMakesAPlaceholderReal) {
  OverviewBench b;
  b.NewTrack();
  b.TwoChannels().Placeholders();
  b.overview.SetController(91);
  EXPECT_FALSE(b.overview.Column(0).InSong);
  b.told.clear();
  EXPECT_TRUE(b.overview.MidiCh00_CtrlValueChange(0, 70));
  EXPECT_TRUE(b.overview.Column(0).InSong);
  EXPECT_THAT(b.Told(), Contains("real 91 70"));
}

TEST(ControllerOverview, AMoveWithoutAnEventInsertsOneInFrontOfTheNotes) {
  OverviewBench b;
  b.Ready();
  b.overview.SetController(1);
  EXPECT_TRUE(b.overview.Column(1).CanInsert);
  EXPECT_TRUE(b.overview.MidiCh00_CtrlValueChange(1, 5));
  const PtrMidiEvent event = b.song.FirstControllers[1][1];
  ASSERT_NE(event, nullptr);
  EXPECT_EQ(event->Position, 99);
  EXPECT_EQ(event->TimePosition, TimeOfPosition(b.song, 99));
  EXPECT_EQ(b.Values(1, 1), "5");
  EXPECT_EQ(b.Entry(1, 1).Event, event);
  EXPECT_THAT(b.Told(), ElementsAre("inserted 1", "show 1 1 5", "changed", "event 1 5"));
  EXPECT_THAT(CheckSong(b.song), IsEmpty());
}

TEST(ControllerOverview, ASecondMoveInsertsNothingMore) {
  OverviewBench b;
  b.Ready();
  b.overview.SetController(1);
  b.overview.MidiCh00_CtrlValueChange(1, 5);
  b.overview.MidiCh00_CtrlValueChange(1, 6);
  EXPECT_EQ(b.Values(1, 1), "6");
}

TEST(ControllerOverview, AChannelWithoutEventsTakesNone) {
  OverviewBench b;
  b.Ready();
  EXPECT_FALSE(b.overview.MidiCh00_CtrlValueChange(5, 40));
  EXPECT_THAT(b.Told(), IsEmpty());
}

TEST(ControllerOverview, AnIgnoredTrackTakesNoEvent) {
  OverviewBench b;
  b.Ready();
  b.song.MidiTrack.front().TrkIgnore = true;
  b.overview.SetController(1);
  EXPECT_FALSE(b.overview.MidiCh00_CtrlValueChange(0, 40));
}

TEST(ControllerOverview, RefusesWhatIsNoChannelOrNoValue) {
  OverviewBench b;
  b.Ready();
  EXPECT_FALSE(b.overview.MidiCh00_CtrlValueChange(-1, 40));
  EXPECT_FALSE(b.overview.MidiCh00_CtrlValueChange(16, 40));
  EXPECT_FALSE(b.overview.MidiCh00_CtrlValueChange(0, -1));
  EXPECT_FALSE(b.overview.MidiCh00_CtrlValueChange(0, 128));
  EXPECT_EQ(b.Values(0, 7), "80 90");
}

TEST(ControllerOverview, DoesNothingWithoutASong) {
  OverviewBench b;
  EXPECT_FALSE(b.overview.MidiCh00_CtrlValueChange(0, 40));
  EXPECT_FALSE(b.overview.Column(0).CanInsert);
  EXPECT_EQ(TControllerOverview::NoSongText(), "Please open a midi file.");
  const InGerman german;
  EXPECT_EQ(TControllerOverview::NoSongText(), "Bitte öffnen Sie ein Midifile.");
}

}  // namespace

}  // namespace Sonarello
