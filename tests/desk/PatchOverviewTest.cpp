#include "desk/PatchOverview.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desk/SoundBrowserBench.h"

namespace Sonarello {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int Genos = 87;
constexpr TAddress ConcertGrand = {104, 21, 0};

struct OverviewBench : SoundBrowserBench {
  OverviewBench() : SoundBrowserBench(Genos) {
    EXPECT_TRUE(OpenWith({{4, ConcertGrand}, {10, {127, 0, 0}}, {11, {-1, -1, -1}}}));
    overview.Hooks.OpenBrowser = [this](int channel) {
      Told.push_back("open " + std::to_string(channel));
    };
    overview.Hooks.SelectChannel = [this](int channel) {
      Told.push_back("select " + std::to_string(channel));
    };
    overview.Hooks.Changed = [this] { Told.push_back("changed"); };
    overview.Hooks.EventsChanged = [this](int channel) {
      Told.push_back("events " + std::to_string(channel));
    };
    overview.Hooks.SoundChanged = [this](int channel) {
      Told.push_back("sound " + std::to_string(channel));
    };
  }
  TPatchOverview overview{song, names, routes, messages, gate};
};

TEST(PatchOverview, ShowsTheSoundOfEachChannel) {
  OverviewBench bench;
  const TPatchRow row = bench.overview.Row(3);
  EXPECT_EQ(row.Number, "4");
  EXPECT_FALSE(row.Redirected);
  EXPECT_EQ(row.Sound, "CFX ConcertGrand (S.Art!)");
  EXPECT_EQ(row.Part, "");
  EXPECT_EQ(row.Hint, "Controller   0: 104\rController 32: 21");
  EXPECT_TRUE(row.Active);
  EXPECT_FALSE(row.Drums);
  const TPatchRow drums = bench.overview.Row(9);
  EXPECT_TRUE(drums.Drums);
  EXPECT_EQ(drums.Part, "Drums 1");
  EXPECT_EQ(bench.overview.Row(10).Sound, "???");
}

TEST(PatchOverview, SaysThatAChannelHasNoNotes) {
  OverviewBench bench;
  EXPECT_EQ(bench.overview.Row(0).Sound, "noteless");
  EXPECT_FALSE(bench.overview.Row(0).Active);
  EXPECT_FALSE(bench.overview.CanOpen(0));
  const InGerman german;
  EXPECT_EQ(bench.overview.Row(0).Sound, "notenlos");
}

TEST(PatchOverview, IsEmptyWithoutSong) {
  SoundBrowserBench bench(Genos);
  const TPatchOverview overview(bench.song, bench.names, bench.routes, bench.messages, bench.gate);
  TPatchRow row;
  row.Number = "16";
  EXPECT_EQ(overview.Row(15), row);
  EXPECT_FALSE(overview.CanOpen(15));
}

TEST(PatchOverview, ShowsTheStateOfTheStrips) {
  OverviewBench bench;
  bench.song.ActiveMidiIndex = 3;
  bench.song.MidiData[3].Solo = bench.song.MidiData[3].Rec = true;
  bench.song.MidiData[9].Mute = true;
  const TPatchRow row = bench.overview.Row(3);
  EXPECT_TRUE(row.Selected && row.Solo && row.Rec);
  EXPECT_FALSE(row.Mute || row.MuteBySolo);
  EXPECT_TRUE(bench.overview.Row(9).MuteBySolo);
  bench.song.MidiData[3].Solo = false;
  EXPECT_TRUE(bench.overview.Row(9).Mute);
  EXPECT_FALSE(bench.overview.Row(9).MuteBySolo);
}

TEST(PatchOverview, TellsTheInstrumentWhereThereAreSeveral) {
  OverviewBench bench;
  bench.routes.Table.push_back(
      {.Delay = 0, .Instrument = "GM Soundset", .InstrumValue = 0, .OutputName = {}});
  bench.song.MidiOutIndex[3] = 1;
  bench.sets.Load(0, {}, bench.messages);
  EXPECT_EQ(bench.overview.Row(3).Part, "GM Soundset");
  EXPECT_EQ(bench.overview.Row(9).Part, "Drums 1 · Yamaha Genos");
  EXPECT_EQ(bench.overview.Row(0).Part, "");
}

TEST(PatchOverview, ShowsTheNumberOfARedirectedStrip) {
  OverviewBench bench;
  bench.song.MidiData[3].MidiChannel = 6;
  EXPECT_EQ(bench.overview.Row(3).Number, "7");
  EXPECT_TRUE(bench.overview.Row(3).Redirected);
}

TEST(PatchOverview, NeverMendsASoundByLooking) {
  OverviewBench bench;
  bench.names.UpdateMSB_LSB_PC(3, {5, 5, 5});
  const auto saved = bench.Saved();
  EXPECT_NE(bench.overview.Row(3).Sound, "");
  EXPECT_EQ(bench.Saved(), saved);
}

TEST(PatchOverview, OpensTheBrowserOfAChannel) {
  OverviewBench bench;
  bench.overview.L_PatchMouseUp(3);
  EXPECT_THAT(bench.Told, ElementsAre("select 3", "open 3"));
  bench.Told.clear();
  for (const int channel : {0, -1, 16}) bench.overview.L_PatchMouseUp(channel);
  EXPECT_THAT(bench.Told, IsEmpty());
}

TEST(PatchOverview, InsertsAProgramIfTheUserWantsIt) {
  OverviewBench bench;
  EXPECT_FALSE(bench.overview.PM_InsertPatchClick(3)) << "it has one";
  EXPECT_FALSE(bench.overview.PM_InsertPatchClick(0)) << "no track serves it";
  EXPECT_THAT(bench.messages.Asked, IsEmpty());
  bench.messages.Answers = {false};
  EXPECT_FALSE(bench.overview.PM_InsertPatchClick(10));
  EXPECT_EQ(bench.song.MidiData[10].PatchEvent, nullptr);
  EXPECT_TRUE(bench.overview.PM_InsertPatchClick(10));
  EXPECT_THAT(bench.messages.Asked,
              ElementsAre("Insert patch change on channel 11?", "Insert patch change on channel 11?"));
  EXPECT_EQ(bench.AddressOf(11), (TAddress{0, 0, 0}));
  EXPECT_EQ(bench.song.FirstPatches[10], bench.song.MidiData[10].PatchEvent);
  EXPECT_THAT(bench.Told, ElementsAre("changed", "events 10", "sound 10"));
  EXPECT_EQ(CheckSong(bench.song), std::vector<std::string>{});
}

TEST(PatchOverview, TellsThatThereIsNoMemoryForAProgram) {
  OverviewBench bench;
  bench.song.Pool.FailAt(1);
  EXPECT_FALSE(bench.overview.PM_InsertPatchClick(10));
  EXPECT_THAT(bench.messages.Shown, ElementsAre("Error allocating memory!"));
}

}  // namespace

}  // namespace Sonarello
