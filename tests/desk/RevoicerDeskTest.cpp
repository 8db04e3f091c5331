#include "desk/RevoicerDesk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desk/SoundBrowserBench.h"

namespace Sonarello {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int Genos = 87;
constexpr TAddress ConcertGrand = {104, 21, 0};
constexpr TAddress StageGrand = {104, 10, 0};

struct RevoicerBench : SoundBrowserBench {
  RevoicerBench() : SoundBrowserBench(Genos) {
    EXPECT_TRUE(OpenWith({{4, ConcertGrand}, {5, {8, 34, 42}}}));
    desk.Hooks.IsPlaying = [this] { return isPlaying; };
    desk.Hooks.SoundChanged = [this](int channel) { sounds.push_back(channel); };
    desk.Hooks.Changed = [this] { Told.push_back("changed"); };
    desk.Hooks.EventsChanged = [this] { Told.push_back("events"); };
    desk.Hooks.ListChanged = [this] { Told.push_back("list"); };
    desk.LoadRevoiceData();
  }
  void Keep(const TAddress& source, const TAddress& dest) {
    ASSERT_TRUE(revoicer.SaveToRevoicer(settings, source, "Alt", dest, "Neu"));
  }
  std::vector<int> sounds;
  TRevoicerDesk desk{song, routes, settings, messages, gate, revoicer};
};

TEST(RevoicerDesk, ShowsTheListOfTheMainInstrument) {
  RevoicerBench bench;
  EXPECT_EQ(bench.desk.Caption(), " Auto Revoicer - Yamaha Genos");
  EXPECT_EQ(bench.desk.RowCount(), 0);
  EXPECT_FALSE(bench.desk.CanRevoice());
  bench.Keep(ConcertGrand, StageGrand);
  EXPECT_EQ(bench.desk.Row(0), (TRevoicerGridRow{"1", "Alt", "104/21/0", "Neu", "104/10/0"}));
  EXPECT_TRUE(bench.desk.CanRevoice());
}

TEST(RevoicerDesk, LoadsAnewOnlyWhenTheInstrumentHasChanged) {
  RevoicerBench bench;
  bench.Keep(ConcertGrand, StageGrand);
  bench.settings.WriteString("Yamaha Genos", "AutoRev01", "A\t1\t2\t3\tB\t4\t5\t6");
  bench.desk.LoadRevoiceData();
  EXPECT_EQ(bench.desk.Row(0).SourceName, "Alt");
  bench.Use(16);
  bench.desk.LoadRevoiceData();
  EXPECT_EQ(bench.desk.Caption(), " Auto Revoicer - GM2 Soundset");
  EXPECT_EQ(bench.desk.RowCount(), 0);
  bench.Use(Genos);
  bench.desk.LoadRevoiceData();
  EXPECT_EQ(bench.desk.Row(0).SourceName, "A");
}

TEST(RevoicerDesk, ReplacesTheSoundsOfTheSongAndSaysSo) {
  RevoicerBench bench;
  bench.Keep(ConcertGrand, StageGrand);
  EXPECT_TRUE(bench.desk.Btn_RevoiceClick());
  EXPECT_EQ(bench.AddressOf(4), StageGrand);
  EXPECT_EQ(bench.desk.Result(), "1 sound replaced.");
  EXPECT_THAT(bench.desk.Protocol(), IsEmpty());
  EXPECT_THAT(bench.Told, ElementsAre("changed", "events"));
  EXPECT_THAT(bench.sounds, testing::Contains(3));
  const InGerman german;
  EXPECT_TRUE(bench.desk.Btn_RevoiceClick());
  EXPECT_EQ(bench.desk.Result(), "0 Klänge ersetzt.") << "they are replaced already";
  bench.desk.ForgetRun();
  EXPECT_EQ(bench.desk.Result(), "");
}

TEST(RevoicerDesk, ListsWhatItLeftAlone) {
  RevoicerBench bench;
  bench.options.AutoProgChange = false;
  ASSERT_TRUE(bench.OpenWith({{3, {-1, 5, 7}}, {4, ConcertGrand}, {6, {104, -1, 1}}}));
  bench.Keep(ConcertGrand, StageGrand);
  EXPECT_TRUE(bench.desk.Btn_RevoiceClick());
  EXPECT_THAT(bench.desk.Protocol(), ElementsAre("001.01.000: Kanal 3 - Ctrl00 fehlt!",
                                                 "001.01.000: Kanal 6 - Ctrl32 fehlt!"));
  EXPECT_EQ(bench.desk.Result(), "1 sound replaced, 2 without bank select left out.");
  const InGerman german;
  bench.desk.Btn_RevoiceClick();
  EXPECT_EQ(bench.desk.Result(), "0 Klänge ersetzt, 2 ohne Bankwahl übergangen.");
}

TEST(RevoicerDesk, RefusesDuringPlayback) {
  RevoicerBench bench;
  bench.Keep(ConcertGrand, StageGrand);
  bench.isPlaying = true;
  EXPECT_FALSE(bench.desk.Btn_RevoiceClick());
  EXPECT_EQ(bench.AddressOf(4), ConcertGrand);
  EXPECT_THAT(bench.messages.Shown, ElementsAre("Not allowed during playback."));
  const InGerman german;
  EXPECT_FALSE(bench.desk.Btn_RevoiceClick());
  EXPECT_EQ(bench.messages.Shown.back(), "Bitte halten Sie die Wiedergabe an.");
}

TEST(RevoicerDesk, DoesNothingWithoutSongOrRows) {
  RevoicerBench bench;
  EXPECT_FALSE(bench.desk.Btn_RevoiceClick());
  bench.Keep(ConcertGrand, StageGrand);
  bench.song.ClearMidiMemory();
  EXPECT_FALSE(bench.desk.Btn_RevoiceClick());
  EXPECT_THAT(bench.Told, IsEmpty());
}

TEST(RevoicerDesk, DeletesARowAndItsStore) {
  RevoicerBench bench;
  bench.Keep(ConcertGrand, StageGrand);
  bench.Keep({1, 2, 3}, {4, 5, 6});
  bench.desk.Btn_DeleteClick(-1);
  bench.desk.Btn_DeleteClick(2);
  EXPECT_EQ(bench.desk.RowCount(), 2);
  EXPECT_THAT(bench.Told, IsEmpty());
  bench.desk.Btn_DeleteClick(0);
  ASSERT_EQ(bench.desk.RowCount(), 1);
  EXPECT_EQ(bench.desk.Row(0).Pos, "1");
  EXPECT_EQ(bench.desk.Row(0).SourceAddress, "1/2/3");
  EXPECT_EQ(bench.settings.ReadInteger("Yamaha Genos", "AutoRevoicerElm", 0), 1);
  EXPECT_EQ(bench.settings.ReadInteger("Auto Revoicer", "RevoicerArrayElm", 0), 1);
  EXPECT_THAT(bench.Told, ElementsAre("list"));
}

TEST(RevoicerDesk, TellsThatThereIsNoMemory) {
  RevoicerBench bench;
  bench.options.AutoProgChange = false;
  Smf file(1, 480);
  file.Track().Track().At(0).Ctrl(4, 0, 104).Ctrl(4, 32, 21).Prog(4, 0).Note(4, 60, 480, 900);
  file.At(960).Prog(4, 5).Note(4, 60, 1200, 1500);
  ASSERT_TRUE(bench.Open(file));
  bench.Keep({104, 21, 0}, StageGrand);
  bench.song.Pool.FailAt(1);
  EXPECT_FALSE(bench.desk.Btn_RevoiceClick());
  EXPECT_THAT(bench.messages.Shown, ElementsAre("Error allocating memory!"));
  EXPECT_EQ(bench.AddressOf(4), (TAddress{104, 21, 0}));
}

}  // namespace

}  // namespace Sonarello
