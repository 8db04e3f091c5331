#include "playback/Rerouting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/SongBuilder.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t Latency = 37;

/// A song of the channels 1, 2 and 10 on tracks of their own, a port and a hosted instrument.
struct Desk : TestSong {
  Desk() {
    for (const int channel : {1, 2, 10}) {
      NewTrack().Ctrl(0, 0, 5, channel).Ctrl(0, 32, 6, channel).On(10, 60, channel);
      song.MidiTrack.back().TrkMidiIndex = static_cast<std::int8_t>(channel - 1);
      song.MidiData[static_cast<std::size_t>(channel - 1)].Active = true;
    }
    Finish();
    functions.SetFirstValues();
    for (TMidiChannelData& data : song.MidiData)
      for (const std::size_t bank : {0U, 32U})
        if (data.CtrlArray[bank].Event != nullptr)
          data.CtrlArray[bank].Value = data.CtrlArray[bank].Event->Value[1];
    song.MidiFileLoaded = true;
    song.ActiveMidiIndex = song.ActiveMidiChannel = 1;
    options.MultiMidi = true;
    Route("Yamaha Genos", "Port").Route("GM Soundset", "One (VSTi)");
    Watch();
  }
  Desk& Route(const std::string& instrument, const std::string& output) {
    routes_.MidiRouteLoad[count].Instrument = instrument;
    routes_.MidiRouteLoad[count++].OutputName = output;
    if (output.find("(VSTi)") == output.npos)
      ports.push_back(output);
    else
      slots[slotCount++].Name = output;
    routes_.Build(OutDevices(ports, slots), slots, Latency);
    return *this;
  }
  void Watch() {
    rerouting.Hooks.CancelBrowser = [this](int v) { Calls.push_back("cancel " + std::to_string(v)); };
    rerouting.Hooks.CreateBrowser = [this](int v) { Calls.push_back("create " + std::to_string(v)); };
    rerouting.Hooks.ShowSound = [this](int c) { Calls.push_back("sound " + std::to_string(c)); };
    rerouting.Hooks.WakePlayer = [this] { Calls.push_back("wake"); };
    rerouting.Hooks.ShowRoute = [this](std::size_t r) {
      Calls.push_back("route " + std::to_string(r));
    };
    rerouting.Hooks.Changed = [this] { Calls.push_back("changed"); };
  }
  TMidiChannelData& Drums(int channel = 10) {
    TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(channel - 1)];
    data.DrumPart = 1;
    song.ActiveMidiIndex = song.ActiveMidiChannel = channel - 1;
    return data;
  }

  std::vector<std::string> ports;
  std::array<TInstrumentSlot, 5> slots;
  std::size_t count = 0;
  std::size_t slotCount = 0;
  TRoutes routes_;
  SongGate gate;
  TRerouting rerouting{song, routes_, options, messages, gate};
  std::vector<std::string> Calls;
};

// --- The menu

TEST(RouteMenu, ListsTheRoutesAndChecksTheOneInUse) {
  Desk desk;
  desk.song.MidiOutIndex[1] = 1;
  const auto menu = desk.rerouting.Menu(false, false);
  ASSERT_TRUE(menu);
  EXPECT_EQ(menu->Head, "Route MIDI channel 2 on ...");
  ASSERT_EQ(menu->Items.size(), 2U);
  EXPECT_EQ(menu->Items[0].Text, "\"Yamaha Genos\" on MIDI output \"Port\"");
  EXPECT_FALSE(menu->Items[0].Checked);
  EXPECT_EQ(menu->Items[1].Text, "\"GM Soundset\" on MIDI output \"One (VSTi)\"");
  EXPECT_TRUE(menu->Items[1].Checked);
}

TEST(RouteMenu, SpeaksGerman) {
  const InGerman german;
  Desk desk;
  const auto menu = desk.rerouting.Menu(false, false);
  ASSERT_TRUE(menu);
  EXPECT_EQ(menu->Head, "Route Midikanal 2 auf ...");
  EXPECT_EQ(menu->Items[0].Text, "\"Yamaha Genos\" am MIDI-Ausgang \"Port\"");
}

TEST(RouteMenu, OffersSixteenRoutesAtMost) {
  Desk desk;
  for (int i = 0; i < 20; ++i) desk.Route("Roland SC-88", "Port " + std::to_string(i));
  EXPECT_EQ(desk.routes_.MidiRouteElements(), 22);
  EXPECT_EQ(desk.rerouting.Menu(false, false)->Items.size(), 16U);
}

TEST(RouteMenu, NeedsASongAndSeveralRoutes) {
  {
    Desk desk;
    desk.song.MidiFileLoaded = false;
    EXPECT_FALSE(desk.rerouting.Menu(false, false));
    EXPECT_FALSE(desk.rerouting.Choose(1, false));
  }
  {
    Desk desk;
    desk.options.MultiMidi = false;
    EXPECT_FALSE(desk.rerouting.Menu(false, false));
    EXPECT_FALSE(desk.rerouting.Choose(1, false));
  }
  {
    Desk desk;
    desk.routes_.MidiRouteLoad[1] = {};
    desk.slots[0] = {};
    desk.routes_.Build(OutDevices(desk.ports, desk.slots), desk.slots, Latency);
    EXPECT_FALSE(desk.rerouting.Menu(false, false));
    EXPECT_FALSE(desk.rerouting.Choose(0, false));
    EXPECT_THAT(desk.messages.Shown, IsEmpty());
    EXPECT_THAT(desk.Calls, IsEmpty());
  }
  Desk desk;
  desk.song.ActiveMidiIndex = -1;
  EXPECT_FALSE(desk.rerouting.Menu(false, false));
  EXPECT_FALSE(desk.rerouting.Choose(1, false));
}

TEST(RouteMenu, IsRefusedDuringPlayback) {
  Desk desk;
  EXPECT_FALSE(desk.rerouting.Menu(true, true));
  EXPECT_THAT(desk.messages.Shown, ElementsAre("Not allowed during playback."));
  EXPECT_FALSE(desk.rerouting.SetAllMidiOuts);
  EXPECT_FALSE(desk.rerouting.Choose(1, true));
  EXPECT_EQ(desk.song.MidiOutIndex[1], 0);
  EXPECT_THAT(desk.Calls, IsEmpty());
  const InGerman german;
  EXPECT_FALSE(desk.rerouting.Menu(true, false));
  EXPECT_EQ(desk.messages.Shown.back(), "Bitte halten Sie die Wiedergabe an.");
}

// --- Choosing

TEST(Rerouting, GivesTheActiveChannelARoute) {
  Desk desk;
  ASSERT_TRUE(desk.rerouting.Menu(false, false));
  EXPECT_TRUE(desk.rerouting.Choose(1, false));
  EXPECT_THAT(desk.song.MidiOutIndex, ElementsAre(0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
  EXPECT_EQ(desk.Track(0).TrkDelay, 0);
  EXPECT_EQ(desk.Track(1).TrkDelay, Latency);
  EXPECT_EQ(desk.rerouting.LastRoutedChannel, 1);
  EXPECT_TRUE(desk.routes_.VSTiInUse);
  EXPECT_FALSE(desk.routes_.VSTiOnly);
  EXPECT_THAT(desk.Calls,
              ElementsAre("cancel 87", "create 0", "sound 1", "wake", "route 1", "changed"));
}

TEST(Rerouting, ToAPortWakesNobody) {
  Desk desk;
  desk.Route("Roland SC-88", "Port B");
  EXPECT_TRUE(desk.rerouting.Choose(2, false));
  EXPECT_FALSE(desk.routes_.VSTiInUse);
  EXPECT_THAT(desk.Calls, ElementsAre("cancel 87", "create 15", "sound 1", "route 2", "changed"));
}

TEST(Rerouting, OfAllChannelsPlaysNoneAhead) {
  Desk desk;
  desk.Track(0).TrkDelay = 12;
  ASSERT_TRUE(desk.rerouting.Menu(false, true));
  EXPECT_TRUE(desk.rerouting.SetAllMidiOuts);
  EXPECT_TRUE(desk.rerouting.Choose(1, false));
  EXPECT_FALSE(desk.rerouting.SetAllMidiOuts) << "for one choice only";
  EXPECT_THAT(desk.song.MidiOutIndex, testing::Each(1));
  EXPECT_TRUE(desk.routes_.VSTiOnly);
  for (int t = 0; t < 3; ++t) EXPECT_EQ(desk.Track(t).TrkDelay, 0) << t;
  EXPECT_EQ(desk.rerouting.LastRoutedChannel, 9) << "the last channel with a track";
}

TEST(Rerouting, OfAFormat0SongSetsNoDelay) {
  Desk desk;
  desk.song.MidiFileFormat = 0;
  EXPECT_TRUE(desk.rerouting.Choose(1, false));
  EXPECT_EQ(desk.Track(1).TrkDelay, 0);
  EXPECT_EQ(desk.rerouting.LastRoutedChannel, 255);
}

TEST(Rerouting, OfAChannelWithoutATrackSetsNoDelay) {
  Desk desk;
  desk.song.ActiveMidiIndex = 7;
  EXPECT_TRUE(desk.rerouting.Choose(1, false));
  EXPECT_EQ(desk.song.MidiOutIndex[7], 1);
  EXPECT_EQ(desk.rerouting.LastRoutedChannel, 255);
}

TEST(Rerouting, KnowsItsRoutes) {
  Desk desk;
  EXPECT_FALSE(desk.rerouting.Choose(2, false));
  EXPECT_THAT(desk.Calls, IsEmpty());
}

// --- Drum channels

TEST(Rerouting, GivesDrumsTheBankOfTheTarget) {
  Desk desk;
  desk.Route("Roland fantom XR", "Port B");
  TMidiChannelData& drums = desk.Drums();
  drums.CtrlArray[0].Event->DLength = 0;
  EXPECT_TRUE(desk.rerouting.Choose(2, false));
  for (const auto& [controller, value] : {std::pair{0U, 86}, std::pair{32U, 64}}) {
    const TCtrl& bank = drums.CtrlArray[controller];
    EXPECT_EQ(bank.Value, value);
    EXPECT_EQ(bank.Event->Value[1], value);
    EXPECT_EQ(bank.Event->ValueOrg[1], value);
    EXPECT_EQ(bank.Event->Value[0], controller);
    EXPECT_EQ(bank.Event->DLength, 3) << "a bank that was dropped lives again";
  }
}

TEST(Rerouting, LeavesOtherBanksAlone) {
  Desk desk;
  desk.Route("Roland fantom XR", "Port B");
  EXPECT_TRUE(desk.rerouting.Choose(2, false));
  EXPECT_EQ(desk.song.MidiData[1].CtrlArray[0].Value, 5);
  EXPECT_EQ(desk.song.MidiData[1].CtrlArray[0].Event->Value[1], 5);
}

TEST(Rerouting, OfAllChannelsChangesTheBanksOfDrumsOnly) {
  Desk desk;
  desk.Drums();
  desk.song.ActiveMidiIndex = 0;
  desk.Route("Korg Pa4X Musikant", "Port B");
  ASSERT_TRUE(desk.rerouting.Menu(false, true));
  EXPECT_TRUE(desk.rerouting.Choose(2, false));
  EXPECT_EQ(desk.song.MidiData[9].CtrlArray[0].Value, 120);
  EXPECT_EQ(desk.song.MidiData[9].CtrlArray[32].Value, 0);
  EXPECT_EQ(desk.song.MidiData[0].CtrlArray[0].Value, 5);
}

TEST(Rerouting, SetsTheBankOfDrumsThatHaveNoEvent) {
  Desk desk;
  TMidiChannelData& drums = desk.Drums(5);
  desk.Route("Korg Pa4X Musikant", "Port B");
  EXPECT_TRUE(desk.rerouting.Choose(2, false));
  EXPECT_EQ(drums.CtrlArray[0].Value, 120);
  EXPECT_EQ(drums.CtrlArray[0].Event, nullptr);
}

TEST(Rerouting, SendsNoLSBToTheProMax) {
  Desk desk;
  TMidiChannelData& drums = desk.Drums();
  desk.Route("MB Music PRO.MAX/SX", "Port B");
  EXPECT_TRUE(desk.rerouting.Choose(2, false));
  EXPECT_EQ(drums.CtrlArray[0].Event->DLength, 3);
  EXPECT_EQ(drums.CtrlArray[32].Event->DLength, 0);
  EXPECT_EQ(drums.CtrlArray[32].Value, 0);
}

TEST(Rerouting, ChoosesTheDefaultMapForDrums) {
  Desk desk;
  TMidiChannelData& drums = desk.Drums();
  desk.Route("Roland SC-88Pro", "Port B");
  desk.options.RolandSCDefaultMapIdx = 3;
  EXPECT_TRUE(desk.rerouting.Choose(2, false));
  EXPECT_EQ(drums.CtrlArray[32].Value, 0) << "the map is not in use";
  desk.options.RolandSCDefaultMap = true;
  EXPECT_TRUE(desk.rerouting.Choose(2, false));
  EXPECT_EQ(drums.CtrlArray[0].Value, 0);
  EXPECT_EQ(drums.CtrlArray[32].Value, 3);
}

TEST(DrumBank, FollowsTheInstrument) {
  for (const int value :
       {5, 6, 7, 8, 9, 18, 19, 26, 31, 33, 34, 41, 51, 54, 59, 62, 69, 70, 74, 80, 87})
    EXPECT_EQ(DrumBankOf(value, 0), (TDrumBank{127, 0})) << value;
  for (const int value :
       {14, 16, 36, 37, 42, 43, 45, 48, 52, 53, 61, 63, 64, 68, 71, 75, 82, 90, 91, 103})
    EXPECT_EQ(DrumBankOf(value, 0), (TDrumBank{120, 0})) << value;
  for (const int value : {22, 24, 38, 60, 72})
    EXPECT_EQ(DrumBankOf(value, 3), (TDrumBank{0, 4})) << value;
  EXPECT_EQ(DrumBankOf(25, 0), (TDrumBank{86, 64}));
  for (const int value : {13, 28}) EXPECT_EQ(DrumBankOf(value, 0), (TDrumBank{15, 0})) << value;
  for (const int value : {1, 2, 3, 4, 15, 17, 83}) {
    EXPECT_EQ(DrumBankOf(value, 0), (TDrumBank{0, 0})) << value;
    EXPECT_EQ(DrumBankOf(value, 2), (TDrumBank{0, 2})) << value;
  }
  EXPECT_EQ(DrumBankOf(100, 2), (TDrumBank{0, 0, false}));
  for (const int value : {0, 10, 40, 78, 97, 105, 199})
    EXPECT_EQ(DrumBankOf(value, 2), (TDrumBank{0, 0})) << value;
}

TEST(DrumEditorLine, NamesTheKit) {
  const std::vector<TMidiRouting> one = {{.Instrument = "Yamaha Genos", .OutputName = "Port"}};
  EXPECT_EQ(DrumEditorText(1, "Jazz Kit", 9, one, 0),
            "show 1. Drum Editor - \"Jazz Kit\" on midi channel 10");
  const InGerman german;
  EXPECT_EQ(DrumEditorText(2, "Jazz Kit", 9, one, 0),
            "zeige 2. Drum Editor - \"Jazz Kit\" auf Midikanal 10");
}

TEST(DrumEditorLine, NamesTheInstrumentWithSeveralRoutes) {
  const std::vector<TMidiRouting> two = {{.Instrument = "Yamaha Genos", .OutputName = "Port"},
                                         {.Instrument = "GM Soundset", .OutputName = "Port B"}};
  EXPECT_EQ(DrumEditorText(1, "Jazz Kit", 9, two, 1),
            "show 1. Drum Editor - (GM Soundset) \"Jazz Kit\" on midi channel 10");
  const InGerman german;
  EXPECT_EQ(DrumEditorText(1, "Jazz Kit", 0, two, 0),
            "zeige 1. Drum Editor - (Yamaha Genos) \"Jazz Kit\" auf Midikanal 1");
}

}  // namespace
}  // namespace Sonarello
