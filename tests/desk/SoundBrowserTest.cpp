#include "desk/SoundBrowser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "desk/SoundBrowserBench.h"

namespace Sonarello {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr int Genos = 87;
constexpr int GM2 = 16;
constexpr int SC88Pro = 1;
constexpr TAddress ConcertGrand = {104, 21, 0};
constexpr std::string_view ConcertGrandName = "CFX ConcertGrand (S.Art!)";
constexpr std::string_view StageGrandName = "CFX StageGrand (S.Art!)";

/// A Genos song whose channel 4 plays the concert grand, with its browser open.
struct OpenBench : SoundBrowserBench {
  explicit OpenBench(TAddress address = ConcertGrand, int channel = 4) : SoundBrowserBench(Genos) {
    EXPECT_TRUE(OpenWith({{channel, address}}));
    EXPECT_TRUE(browser.Open(channel - 1));
    Told.clear();
  }
};

TEST(SoundBrowser, OpensOnTheSoundOfItsChannel) {
  OpenBench bench;
  EXPECT_TRUE(bench.browser.IsOpen());
  EXPECT_TRUE(bench.browser.IsOpenFor(Genos));
  EXPECT_FALSE(bench.browser.IsOpenFor(GM2));
  EXPECT_EQ(bench.browser.MidiIndex(), 3);
  EXPECT_FALSE(bench.browser.ShowsDrums());
  EXPECT_EQ(bench.NameAt(bench.browser.Selected()), ConcertGrandName);
  EXPECT_EQ(bench.browser.OldVoice(), ConcertGrandName);
  EXPECT_EQ(bench.browser.NewVoice(), ConcertGrandName);
  EXPECT_FALSE(bench.browser.HearsNew());
  EXPECT_EQ(bench.browser.Address(), ConcertGrand);
  EXPECT_THAT(bench.sent.Lines, IsEmpty());
}

TEST(SoundBrowser, SaysItsInstrumentAndChannelInItsCaption) {
  OpenBench bench;
  EXPECT_EQ(bench.browser.Caption(), "Yamaha Genos sound set - midi-channel 4");
  EXPECT_EQ(bench.browser.Heading(), "Categories");
  const InGerman german;
  EXPECT_EQ(bench.browser.Caption(), "Yamaha Genos Soundset - Midikanal 4");
  EXPECT_EQ(bench.browser.Heading(), "Kategorien");
}

TEST(SoundBrowser, CountsTheChannelByTheNumberOfItsStrip) {
  SoundBrowserBench bench(SC88Pro);
  ASSERT_TRUE(bench.OpenWith({{2, {0, 0, 0}}}));
  bench.song.MidiData[1].MidiChannel = 6;
  bench.realtime.Realtime[1].MidiChannel = 6;
  ASSERT_TRUE(bench.browser.Open(1));
  EXPECT_EQ(bench.browser.Caption(), "Roland SC-88Pro - midi-channel 7");
  const InGerman german;
  EXPECT_EQ(bench.browser.Caption(), "Roland SC-88Pro - Midikanal 7");
  ASSERT_TRUE(bench.browser.Select({0, 1, 0}));
  EXPECT_EQ(bench.sent.Lines.back().substr(0, 5), "0> C6") << "it is heard where the strip goes out";
}

TEST(SoundBrowser, DoesNotDoubleTheWordInTheNameOfAStandard) {
  SoundBrowserBench bench(19);
  ASSERT_TRUE(bench.OpenWith({{1, {0, 0, 0}}}));
  ASSERT_TRUE(bench.browser.Open(0));
  EXPECT_EQ(bench.browser.Caption(), "Yamaha XG Soundset - midi-channel 1");
}

TEST(SoundBrowser, ShowsDrumsetsByTheRuleOfTheInstrument) {
  SoundBrowserBench genos(Genos);
  ASSERT_TRUE(genos.OpenWith({{3, {127, 0, 0}}, {10, {104, 21, 0}}}));
  ASSERT_TRUE(genos.browser.Open(2));
  EXPECT_TRUE(genos.browser.ShowsDrums()) << "the bank decides";
  EXPECT_EQ(genos.browser.Heading(), "Drumsets");
  EXPECT_EQ(genos.NameAt(genos.browser.Selected()), genos.browser.OldVoice());
  ASSERT_TRUE(genos.browser.Open(9));
  EXPECT_FALSE(genos.browser.ShowsDrums());
  SoundBrowserBench gm2(GM2);
  ASSERT_TRUE(gm2.OpenWith({{10, {120, 0, 0}}, {1, {121, 0, 0}}}));
  ASSERT_TRUE(gm2.browser.Open(9));
  EXPECT_TRUE(gm2.browser.ShowsDrums());
  ASSERT_TRUE(gm2.browser.Open(0));
  EXPECT_FALSE(gm2.browser.ShowsDrums());
}

TEST(SoundBrowser, ShowsOnlyBanksThatTheChannelCanPlay) {
  OpenBench bench;
  std::vector<std::string> shown;
  for (const int bank : bench.browser.ShownBanks())
    shown.push_back(bench.browser.Banks().Banks()[static_cast<std::size_t>(bank)].Name);
  EXPECT_THAT(shown, ElementsAre("Panel", "Legacy", "XG", "GM2", "Custom"));
}

TEST(SoundBrowser, ShowsQuestionMarksForASoundThatNoListHolds) {
  SoundBrowserBench bench(Genos);
  bench.options.AutoProgChange = false;
  ASSERT_TRUE(bench.OpenWith({{4, {3, 99, 77}}}));
  ASSERT_TRUE(bench.browser.Open(3));
  EXPECT_EQ(bench.browser.OldVoice(), "???");
  EXPECT_EQ(bench.browser.NewVoice(), "???");
  EXPECT_FALSE(bench.browser.Selected().IsSet());
}

TEST(SoundBrowser, SelectsTheFirstRowForAnUnknownSoundWithRepairAndWritesNothing) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  bench.names.UpdateMSB_LSB_PC(3, {63, 1, 1});  // a custom voice, which is never mended
  const auto before = bench.Saved();
  ASSERT_TRUE(bench.browser.Open(3));
  EXPECT_EQ(bench.browser.OldVoice(), "???");
  EXPECT_EQ(bench.browser.Selected(), (TSoundPlace{0, 0, 0}));
  bench.browser.Btn_OKClick();
  EXPECT_EQ(bench.Saved(), before);
  EXPECT_EQ(bench.AddressOf(4), (TAddress{63, 1, 1}));
}

TEST(SoundBrowser, WritesASelectedSoundToChannelAndEvents) {
  OpenBench bench;
  ASSERT_TRUE(bench.browser.Select(bench.Named(StageGrandName)));
  EXPECT_EQ(bench.AddressOf(4), (TAddress{104, 10, 0}));
  EXPECT_EQ(bench.song.MidiData[3].CtrlArray[32].Value, 10);
  EXPECT_EQ(bench.browser.NewVoice(), StageGrandName);
  EXPECT_EQ(bench.browser.OldVoice(), ConcertGrandName);
  EXPECT_TRUE(bench.browser.HearsNew());
  EXPECT_EQ(bench.names.CurrentName(3), StageGrandName);
  EXPECT_THAT(bench.Told, ElementsAre("sound 4"));
  EXPECT_EQ(CheckSong(bench.song), std::vector<std::string>{});
}

TEST(SoundBrowser, SendsBankAndProgram) {
  OpenBench bench;
  bench.browser.Select(bench.Named(StageGrandName));
  EXPECT_THAT(bench.sent.Lines, ElementsAre("0> B3 00 68", "0> B3 20 0A", "0> C3 00"));
}

TEST(SoundBrowser, ParksASoundForAPortThatIsClosed) {
  OpenBench bench;
  bench.out.opens = false;
  bench.browser.Select(bench.Named(StageGrandName));
  EXPECT_THAT(bench.sent.Lines, IsEmpty());
  EXPECT_EQ(bench.realtime.Realtime[3].Ctrl[0], 104);
  EXPECT_EQ(bench.realtime.Realtime[3].Ctrl[32], 10);
  EXPECT_EQ(bench.realtime.Realtime[3].Patch, 0);
}

TEST(SoundBrowser, ForgetsAParkedSoundWhenAnotherOneGoesOut) {
  OpenBench bench;
  bench.out.opens = false;
  bench.browser.Select(bench.Named(StageGrandName));
  bench.out.opens = true;
  bench.browser.Select(bench.Named("CFX AmbientGrand (S.Art!)"));
  EXPECT_EQ(bench.realtime.Realtime[3].Ctrl[32], NothingPending) << "the next start would play it";
  EXPECT_EQ(bench.realtime.Realtime[3].Patch, -1);
}

TEST(SoundBrowser, SendsNoBanksToTheWavetableOfTheSystem) {
  OpenBench bench;
  bench.routes.Table[0].MSWavetable = true;
  bench.browser.Select(bench.Named(StageGrandName));
  EXPECT_THAT(bench.sent.Lines, ElementsAre("0> C3 00"));
}

TEST(SoundBrowser, CancelLeavesTheSongExactlyAsItWas) {
  OpenBench bench;
  const auto saved = bench.Saved();
  const std::string state = bench.State();
  bench.browser.Select(bench.Named(StageGrandName));
  EXPECT_NE(bench.Saved(), saved);
  bench.browser.Btn_CancelClick();
  EXPECT_EQ(bench.Saved(), saved);
  EXPECT_EQ(bench.State(), state);
  EXPECT_FALSE(bench.browser.IsOpen());
  EXPECT_THAT(bench.Told, Not(Contains("changed")));
  EXPECT_EQ(bench.sent.Lines.back(), "0> C3 00");
  EXPECT_EQ(bench.sent.Lines[bench.sent.Lines.size() - 2], "0> B3 20 15") << "the old sound is back";
}

TEST(SoundBrowser, CancelSendsNothingIfNothingWasHeard) {
  OpenBench bench;
  bench.browser.Btn_CancelClick();
  EXPECT_THAT(bench.sent.Lines, IsEmpty());
  EXPECT_THAT(bench.Told, ElementsAre("closed"));
}

TEST(SoundBrowser, CancelGivesBackBankSelectsThatHadBeenDropped) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  TCtrl& lsb = bench.song.MidiData[3].CtrlArray[32];
  MarkRemoved(lsb.Event);
  const auto saved = bench.Saved();
  const std::string state = bench.State();
  ASSERT_TRUE(bench.browser.Open(3));
  bench.browser.Select(bench.Named(StageGrandName));
  EXPECT_EQ(lsb.Event->DLength, 3);
  bench.browser.Btn_CancelClick();
  EXPECT_EQ(lsb.Event->DLength, 0);
  EXPECT_EQ(bench.Saved(), saved);
  EXPECT_EQ(bench.State(), state);
}

TEST(SoundBrowser, OKBringsDroppedBankSelectsBackToLife) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  TCtrl& lsb = bench.song.MidiData[3].CtrlArray[32];
  MarkRemoved(lsb.Event);
  ASSERT_TRUE(bench.browser.Open(3));
  bench.browser.Btn_OKClick();
  EXPECT_EQ(lsb.Event->DLength, 3);
}

TEST(SoundBrowser, OKKeepsTheSoundAndWantsABackup) {
  OpenBench bench;
  bench.browser.Select(bench.Named(StageGrandName));
  bench.Told.clear();
  bench.browser.Btn_OKClick();
  EXPECT_EQ(bench.AddressOf(4), (TAddress{104, 10, 0}));
  EXPECT_FALSE(bench.browser.IsOpen());
  EXPECT_THAT(bench.Told, ElementsAre("closed", "changed", "sound 4"));
}

TEST(SoundBrowser, OKWithoutAChoiceWantsNoBackup) {
  OpenBench bench;
  const auto saved = bench.Saved();
  bench.browser.Btn_OKClick();
  EXPECT_EQ(bench.Saved(), saved);
  EXPECT_THAT(bench.Told, Not(Contains("changed")));
}

TEST(SoundBrowser, OKAfterTheOldVoiceWantsNoBackup) {
  OpenBench bench;
  const auto saved = bench.Saved();
  bench.browser.Select(bench.Named(StageGrandName));
  bench.browser.Btn_OldVoiceClick();
  bench.browser.Btn_OKClick();
  EXPECT_EQ(bench.Saved(), saved);
  EXPECT_THAT(bench.Told, Not(Contains("changed")));
}

TEST(SoundBrowser, GoesBetweenOldAndNewVoice) {
  OpenBench bench;
  const TSoundPlace stage = bench.Named(StageGrandName);
  const TSoundPlace concert = bench.browser.Selected();
  bench.browser.Btn_NewVoiceClick();
  EXPECT_FALSE(bench.browser.HearsNew()) << "there is none yet";
  bench.browser.Select(stage);
  bench.browser.Btn_OldVoiceClick();
  EXPECT_EQ(bench.AddressOf(4), ConcertGrand);
  EXPECT_EQ(bench.browser.Selected(), concert);
  EXPECT_EQ(bench.browser.NewVoice(), StageGrandName) << "it stays to go back to";
  EXPECT_FALSE(bench.browser.HearsNew());
  EXPECT_EQ(bench.sent.Lines[4], "0> B3 20 15");
  bench.browser.Btn_NewVoiceClick();
  EXPECT_EQ(bench.AddressOf(4), (TAddress{104, 10, 0}));
  EXPECT_EQ(bench.browser.Selected(), stage);
  EXPECT_TRUE(bench.browser.HearsNew());
}

TEST(SoundBrowser, OpeningForAnotherChannelCancelsTheFirst) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}, {5, ConcertGrand}}));
  const auto saved = bench.Saved();
  ASSERT_TRUE(bench.browser.Open(3));
  bench.browser.Select(bench.Named(StageGrandName));
  ASSERT_TRUE(bench.browser.Open(4));
  EXPECT_EQ(bench.browser.MidiIndex(), 4);
  EXPECT_EQ(bench.Saved(), saved);
}

TEST(SoundBrowser, StaysClosedWithoutSongOrChannel) {
  SoundBrowserBench bench(Genos);
  EXPECT_FALSE(bench.browser.Open(3));
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  EXPECT_FALSE(bench.browser.Open(-1));
  EXPECT_FALSE(bench.browser.Open(16));
  EXPECT_FALSE(bench.browser.Open(7)) << "no track serves it";
  EXPECT_FALSE(bench.browser.Select({0, 0, 0}));
  EXPECT_THAT(bench.messages.Asked, IsEmpty());
  bench.browser.Btn_OKClick();
  bench.browser.Btn_CancelClick();
  bench.browser.Btn_OldVoiceClick();
  EXPECT_THAT(bench.Told, IsEmpty());
}

TEST(SoundBrowser, LoadsTheTablesOfAnInstrumentThatComesIntoUse) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  bench.sets.Unload(Genos);
  ASSERT_TRUE(bench.browser.Open(3));
  EXPECT_EQ(bench.browser.OldVoice(), ConcertGrandName);
}

TEST(SoundBrowser, CancelsWhenItsChannelPlaysAnotherInstrument) {
  OpenBench bench;
  const auto saved = bench.Saved();
  bench.browser.Select(bench.Named(StageGrandName));
  bench.routes.Table[0].InstrumValue = GM2;
  EXPECT_FALSE(bench.browser.Select({0, 0, 0}));
  EXPECT_FALSE(bench.browser.IsOpen());
  bench.routes.Table[0].InstrumValue = Genos;
  EXPECT_EQ(bench.Saved(), saved);
}

TEST(SoundBrowser, LetsGoOfASongThatIsReplaced) {
  OpenBench bench;
  bench.browser.Select(bench.Named(StageGrandName));
  bench.browser.PlayANote();
  bench.browser.LetGo();
  EXPECT_FALSE(bench.browser.IsOpen());
  EXPECT_FALSE(bench.browser.IsSounding());
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  const auto saved = bench.Saved();
  bench.browser.Btn_CancelClick();
  bench.browser.Btn_OldVoiceClick();
  EXPECT_EQ(bench.Saved(), saved);
}

TEST(SoundBrowser, CancelLeavesEventsAloneThatOthersTookOut) {
  OpenBench bench;
  bench.browser.Select(bench.Named(StageGrandName));
  TMyTrack& track = bench.Track(1);
  PtrMidiEvent lsb = bench.song.MidiData[3].CtrlArray[32].Event;
  Remove(bench.song, track, lsb);
  // The pool hands the same node out again, for something else.
  PtrMidiEvent other = NewChannelEvent(bench.song.Pool, Controller | 3, 7, 99, 500);
  InsertByPosition(track, other);
  bench.browser.Btn_CancelClick();
  EXPECT_EQ(other->Value[1], 99);
  EXPECT_EQ(bench.song.MidiData[3].PatchEvent->Value[0], 0);
  EXPECT_EQ(CheckSong(bench.song), std::vector<std::string>{});
}

TEST(SoundBrowser, AnyClicksBeforeCancelLeaveTheSongByteForByteAsItWas) {
  std::mt19937 random(20240229);
  const auto below = [&random](std::size_t count) {
    return static_cast<int>(std::uniform_int_distribution<std::size_t>(0, count - 1)(random));
  };
  for (const int instrument : {Genos, GM2, SC88Pro, 0, 69, 71, 79, 19}) {
    SoundBrowserBench bench(instrument);
    bench.options.AutoProgChange = instrument != 0;
    ASSERT_TRUE(
        bench.OpenWith({{1, {0, 0, 5}}, {4, ConcertGrand}, {10, {127, 0, 0}}, {12, {-1, -1, 7}}}));
    for (int round = 0; round < 8; ++round) {
      const int channel = std::array{0, 3, 9, 11}[static_cast<std::size_t>(below(4))];
      bench.out.opens = below(3) != 0;
      const auto saved = bench.Saved();
      const std::string state = bench.State();
      ASSERT_TRUE(bench.browser.Open(channel));
      for (int click = 0; click < 12; ++click) {
        const auto shown = bench.browser.ShownBanks();
        const int bank = shown[static_cast<std::size_t>(below(shown.size()))];
        const auto& categories =
            bench.browser.Banks().Banks()[static_cast<std::size_t>(bank)].Categories;
        if (categories.empty()) continue;
        const int category = below(categories.size());
        const auto& sounds = categories[static_cast<std::size_t>(category)].Sounds;
        switch (below(6)) {
          case 0: bench.browser.Btn_OldVoiceClick(); break;
          case 1: bench.browser.Btn_NewVoiceClick(); break;
          case 2: bench.browser.SetPatchesWithDSP(!bench.browser.PatchesWithDSP()); break;
          default:
            if (!sounds.empty()) bench.browser.Select({bank, category, below(sounds.size())});
        }
        ASSERT_EQ(CheckSong(bench.song), std::vector<std::string>{});
      }
      // What is parked is compared where nothing was heard, for then no device needs to be told.
      const bool isHeard = !bench.sent.Lines.empty();
      bench.browser.Btn_CancelClick();
      ASSERT_EQ(bench.Saved(), saved) << "instrument " << instrument << " channel " << channel + 1;
      if (!isHeard) {
        ASSERT_EQ(bench.State(), state);
      }
      bench.sent.Lines.clear();
      bench.realtime.InitializeRealtimeData();
    }
  }
}

}  // namespace

}  // namespace Sonarello
