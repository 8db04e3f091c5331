// What a choice brings with it: effects, notes, banks and programs that are missing, searches.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desk/SoundBrowserBench.h"
#include "desk/SoundBrowserInsertion.h"
#include "playback/MidiErrors.h"

namespace Sonarello {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr int Genos = 87;
constexpr int GM2 = 16;
constexpr TAddress ConcertGrand = {104, 21, 0};
constexpr std::string_view StageGrandName = "CFX StageGrand (S.Art!)";

TEST(SoundBrowserChoice, BringsItsControllersWhereTheSongHasThem) {
  SoundBrowserBench bench(Genos);
  UserFolder folder;
  bench.options.DataPath = folder.Path;
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  ASSERT_TRUE(bench.browser.Open(3));
  // No list of effects ships; a list gets one as a file would bring it.
  auto& list = const_cast<TSoundList&>(bench.sets.Find(Genos)->Lists().front());
  list.Effects.resize(list.Rows.size());
  TXTPatch& effects = list.Effects[1];
  effects.Ctrl71 = 80;
  effects.Ctrl91 = 40;
  effects.Ctrl93 = 12;
  auto& controllers = bench.song.MidiData[3].CtrlArray;
  ASSERT_NE(controllers[71].Event, nullptr);
  ASSERT_TRUE(controllers[91].Event->IsRemoved()) << "a placeholder of 40";
  controllers[72].Event = nullptr;
  const auto saved = bench.Saved();
  std::vector<const TXTPatch*> told;
  bench.browser.Hooks.SendVoiceEffects = [&](int, const TVoice& voice) {
    told.push_back(voice.Effects);
  };
  int restored = 0;
  bench.browser.Hooks.RestoreVoiceEffects = [&](int) { ++restored; };
  ASSERT_TRUE(bench.browser.Select(bench.Named(StageGrandName)));
  EXPECT_EQ(controllers[71].Event->Value[1], 80);
  EXPECT_EQ(controllers[71].Event->DLength, 3) << "it is real now";
  EXPECT_TRUE(controllers[91].Event->IsRemoved()) << "a placeholder stays one while it says the same";
  EXPECT_EQ(controllers[93].Value, 12);
  EXPECT_THAT(bench.sent.Lines, Contains("0> B3 47 50"));
  EXPECT_THAT(bench.sent.Lines, Contains("0> B3 5D 0C"));
  EXPECT_THAT(bench.sent.Lines, Not(Contains("0> B3 48 40"))) << "the song has no event for 72";
  EXPECT_THAT(told, ElementsAre(&effects));
  bench.browser.Btn_CancelClick();
  EXPECT_EQ(bench.Saved(), saved);
  EXPECT_EQ(controllers[71].Event->DLength, 0);
  EXPECT_EQ(controllers[71].Value, 64);
  EXPECT_EQ(bench.sent.Lines[bench.sent.Lines.size() - 5], "0> B3 47 40") << "the device, too";
  EXPECT_EQ(restored, 1);
}

TEST(SoundBrowserChoice, BringsNoControllersWithoutTheCheckBox) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  ASSERT_TRUE(bench.browser.Open(3));
  auto& list = const_cast<TSoundList&>(bench.sets.Find(Genos)->Lists().front());
  list.Effects.resize(list.Rows.size());
  list.Effects[1].Ctrl71 = 80;
  bool told = false;
  bench.browser.Hooks.SendVoiceEffects = [&](int, const TVoice&) { told = true; };
  bench.browser.SetPatchesWithDSP(false);
  ASSERT_TRUE(bench.browser.Select(bench.Named(StageGrandName)));
  EXPECT_EQ(bench.sent.Lines.size(), 3U);
  EXPECT_FALSE(told);
  EXPECT_FALSE(bench.settings.ReadBool("Yamaha Genos", "Patches_WithDSPs", true));
  bench.browser.Btn_CancelClick();
  ASSERT_TRUE(bench.browser.Open(3));
  EXPECT_FALSE(bench.browser.PatchesWithDSP()) << "it is remembered";
}

TEST(SoundBrowserChoice, TellsTheEffectOfASoundWhereItsListDoes) {
  SoundBrowserBench motif(69);
  ASSERT_TRUE(motif.OpenWith({{1, {63, 0, 0}}}));
  ASSERT_TRUE(motif.browser.Open(0));
  EXPECT_FALSE(motif.browser.HasEffects()) << "its rows ship without inserts";
  auto& presets = const_cast<TSoundList&>(motif.sets.Find(69)->Lists().front());
  presets.Inserts.at(1).InsertA_FxIndex = 47;
  presets.Inserts.at(1).InsertA_FxName = "VCM EQ 501";
  EXPECT_TRUE(motif.browser.HasEffects());
  EXPECT_EQ(motif.browser.EffectText(0, presets.Rows[0]), "");
  EXPECT_EQ(motif.browser.EffectText(0, presets.Rows[1]), "VCM EQ 501");
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  ASSERT_TRUE(bench.browser.Open(3));
  EXPECT_FALSE(bench.browser.HasEffects());
  auto& list = const_cast<TSoundList&>(bench.sets.Find(Genos)->Lists().front());
  EXPECT_EQ(bench.browser.EffectText(0, list.Rows[0]), "");
  list.Effects.resize(list.Rows.size());
  list.Effects[1].DSPIndex = 12;
  EXPECT_TRUE(bench.browser.HasEffects());
  EXPECT_EQ(bench.browser.EffectText(0, list.Rows[0]), "Off");
  EXPECT_EQ(bench.browser.EffectText(0, list.Rows[1]), "") << "nobody knows its name";
  bench.browser.Hooks.EffectName = [](int value, int index) {
    return std::to_string(value) + "/" + std::to_string(index);
  };
  EXPECT_EQ(bench.browser.EffectText(0, list.Rows[1]), "87/12");
}

TEST(SoundBrowserChoice, LetsANoteFollowThatAlwaysEndsWhereItBegan) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  ASSERT_TRUE(bench.browser.Open(3));
  bench.browser.PlayANoteKey = 64;
  bench.browser.PlayANoteVelocity = 90;
  bench.browser.Select(bench.Named(StageGrandName));
  EXPECT_EQ(bench.sent.Lines.back(), "0> 93 40 5A");
  EXPECT_TRUE(bench.browser.IsSounding());
  bench.realtime.Realtime[3].MidiChannel = 8;
  bench.browser.Select(bench.Named("CFX AmbientGrand (S.Art!)"));
  EXPECT_EQ(bench.sent.Lines[4], "0> 83 40 40") << "it ends in front of the next sound";
  EXPECT_EQ(bench.sent.Lines.back(), "0> 98 40 5A");
  bench.browser.EndNote();
  EXPECT_EQ(bench.sent.Lines.back(), "0> 88 40 40");
  bench.browser.EndNote();
  EXPECT_EQ(bench.sent.Lines.back(), "0> 88 40 40");
  EXPECT_EQ(bench.sent.Lines.size(), 10U) << "a note ends once";
}

TEST(SoundBrowserChoice, EndsItsNoteHoweverItCloses) {
  for (const int way : {0, 1, 2}) {
    SoundBrowserBench bench(Genos);
    ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
    ASSERT_TRUE(bench.browser.Open(3));
    ASSERT_TRUE(bench.browser.PlayANote());
    EXPECT_EQ(bench.sent.Lines.back(), "0> 93 3C 64") << "C3 unless another is chosen";
    if (way == 0) bench.browser.Btn_OKClick();
    if (way == 1) bench.browser.Btn_CancelClick();
    if (way == 2) bench.browser.LetGo();
    EXPECT_THAT(bench.sent.Lines, Contains("0> 83 3C 40"));
    EXPECT_FALSE(bench.browser.PlayANote()) << "closed";
  }
}

TEST(SoundBrowserChoice, PlaysNoNoteIntoASongThatPlaysUnlessItIsSoloed) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  ASSERT_TRUE(bench.browser.Open(3));
  bench.browser.PlayANoteKey = 60;
  bench.isPlaying = true;
  bench.browser.Select(bench.Named(StageGrandName));
  EXPECT_FALSE(bench.browser.IsSounding());
  bench.browser.CB_SoloMouseDown();
  EXPECT_TRUE(bench.browser.IsSolo());
  bench.browser.Select(bench.Named(StageGrandName));
  EXPECT_TRUE(bench.browser.IsSounding());
}

TEST(SoundBrowserChoice, PlaysANoteInSoloAlsoIfNoneIsChosen) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  ASSERT_TRUE(bench.browser.Open(3));
  bench.browser.Select(bench.Named(StageGrandName));
  EXPECT_FALSE(bench.browser.IsSounding());
  bench.browser.CB_SoloMouseDown();
  bench.browser.Select(bench.Named(StageGrandName));
  EXPECT_EQ(bench.sent.Lines.back(), "0> 93 3C 64");
}

/// Outputs whose port tells by an error that it does not open.
struct BrokenOutputs : RecordingOutputs {
  using RecordingOutputs::RecordingOutputs;
  bool Open(int) override { throw EMidiOutputError("the port is taken"); }
  [[nodiscard]] bool IsOpen(int) const override { return false; }
};

TEST(SoundBrowserChoice, TellsOnceThatAPortDoesNotOpenAndParksTheSound) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  BrokenOutputs broken(bench.clock);
  TSoundBrowser browser(
      {bench.song, bench.sets, bench.names, bench.options, bench.routes, bench.settings, bench.messages,
       bench.gate, bench.realtime, broken, bench.revoicer},
      bench.sent.Sender());
  ASSERT_TRUE(browser.Open(3));
  browser.PlayANoteKey = 60;
  browser.Select({0, 0, 1});
  EXPECT_THAT(bench.messages.Shown, IsEmpty()) << "the port is not taken hold of";
  browser.SetGrabMidiDriver(true);
  browser.Select({0, 0, 2});
  browser.Select({0, 0, 1});
  EXPECT_THAT(bench.messages.Shown, ElementsAre("the port is taken"));
  EXPECT_EQ(bench.realtime.Realtime[3].Ctrl[32], 10);
  browser.Btn_CancelClick();
  EXPECT_EQ(bench.realtime.Realtime[3].Ctrl[32], NothingPending);
  EXPECT_EQ(bench.realtime.Realtime[3].Patch, -1);
}

TEST(SoundBrowserChoice, GivesASoundItsBanksWhereTheSongHasNone) {
  SoundBrowserBench bench(Genos);
  bench.options.AutoProgChange = false;
  ASSERT_TRUE(bench.OpenWith({{4, {-1, -1, 5}}}));
  ASSERT_EQ(bench.song.MidiData[3].CtrlArray[0].Event, nullptr);
  const auto saved = bench.Saved();
  const std::string state = bench.State();
  ASSERT_TRUE(bench.browser.Open(3));
  bench.browser.Select(bench.Named(StageGrandName));
  EXPECT_EQ(bench.song.MidiData[3].CtrlArray[0].Event, nullptr) << "not before it is accepted";
  EXPECT_EQ(bench.names.CurrentName(3), StageGrandName) << "the desk knows it at once";
  bench.browser.Btn_CancelClick();
  EXPECT_EQ(bench.Saved(), saved);
  EXPECT_EQ(bench.State(), state);
  EXPECT_EQ(bench.sent.Lines.back(), "0> C3 05");
  ASSERT_TRUE(bench.browser.Open(3));
  bench.browser.Select(bench.Named(StageGrandName));
  bench.Told.clear();
  bench.browser.Btn_OKClick();
  EXPECT_THAT(bench.Told, ElementsAre("closed", "changed", "events 4", "sound 4"));
  EXPECT_EQ(bench.AddressOf(4), (TAddress{104, 10, 0}));
  const PtrMidiEvent program = bench.song.MidiData[3].PatchEvent;
  EXPECT_EQ(program->PrevEvent, bench.song.MidiData[3].CtrlArray[32].Event);
  EXPECT_EQ(program->PrevEvent->PrevEvent, bench.song.MidiData[3].CtrlArray[0].Event);
  EXPECT_EQ(program->PrevEvent->Position, program->Position);
  EXPECT_EQ(program->PrevEvent->TimePosition, program->TimePosition);
  EXPECT_EQ(bench.song.FirstControllers[3][0], bench.song.MidiData[3].CtrlArray[0].Event);
  EXPECT_EQ(CheckSong(bench.song), std::vector<std::string>{});
}

TEST(SoundBrowserChoice, KeepsTheSongWithoutBanksIfNothingElseIsChosen) {
  SoundBrowserBench bench(Genos);
  bench.options.AutoProgChange = false;
  ASSERT_TRUE(bench.OpenWith({{4, {-1, -1, 5}}}));
  const auto saved = bench.Saved();
  ASSERT_TRUE(bench.browser.Open(3));
  bench.browser.Btn_OKClick();
  EXPECT_EQ(bench.Saved(), saved);
}

TEST(SoundBrowserChoice, TellsThatThereIsNoMemoryForABank) {
  SoundBrowserBench bench(Genos);
  bench.options.AutoProgChange = false;
  ASSERT_TRUE(bench.OpenWith({{4, {-1, -1, 5}}}));
  ASSERT_TRUE(bench.browser.Open(3));
  bench.browser.Select(bench.Named(StageGrandName));
  bench.song.Pool.FailAt(1);
  bench.browser.Btn_OKClick();
  EXPECT_THAT(bench.messages.Shown, ElementsAre("Error allocating memory!"));
  EXPECT_FALSE(bench.browser.IsOpen());
  EXPECT_EQ(CheckSong(bench.song), std::vector<std::string>{});
}

TEST(SoundBrowserChoice, AsksBeforeAChannelGetsAProgramAndTakesItOutOnCancel) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, {-1, -1, -1}}}));
  const auto saved = bench.Saved();
  const std::string state = bench.State();
  bench.messages.Answers = {false};
  EXPECT_FALSE(bench.browser.Open(3));
  EXPECT_THAT(bench.messages.Asked, ElementsAre("Insert patch change on channel 4?"));
  EXPECT_EQ(bench.State(), state);
  ASSERT_TRUE(bench.browser.Open(3));
  EXPECT_EQ(bench.AddressOf(4), (TAddress{0, 0, 0}));
  const PtrMidiEvent program = bench.song.MidiData[3].PatchEvent;
  ASSERT_NE(program, nullptr);
  EXPECT_LT(program->Position, 1920) << "in front of the first note";
  EXPECT_GE(program->Position, 480 * 300 / 384) << "behind the setup";
  EXPECT_EQ(CheckSong(bench.song), std::vector<std::string>{});
  bench.browser.Select(bench.Named(StageGrandName));
  bench.browser.Btn_CancelClick();
  EXPECT_EQ(bench.Saved(), saved);
  EXPECT_EQ(bench.State(), state);
  EXPECT_THAT(bench.Told, Contains("events 4"));
  const InGerman german;
  ASSERT_TRUE(bench.browser.Open(3));
  EXPECT_EQ(bench.messages.Asked.back(), "Soll Programmwechsel auf Kanal 4 eingefügt werden?");
  bench.browser.Select(bench.Named(StageGrandName));
  bench.browser.Btn_OKClick();
  EXPECT_EQ(bench.AddressOf(4), (TAddress{104, 10, 0}));
  EXPECT_NE(bench.Saved(), saved);
}

TEST(SoundBrowserChoice, CancelKeepsBanksThatStoodWithoutAProgram) {
  SoundBrowserBench bench(Genos);
  bench.options.AutoProgChange = false;
  ASSERT_TRUE(bench.OpenWith({{4, {104, 21, -1}}}));
  const auto saved = bench.Saved();
  const std::string state = bench.State();
  ASSERT_NE(bench.song.MidiData[3].CtrlArray[0].Event, nullptr);
  ASSERT_TRUE(bench.browser.Open(3));
  bench.browser.Select(bench.Named(StageGrandName));
  bench.browser.Btn_CancelClick();
  EXPECT_EQ(bench.State(), state);
  EXPECT_EQ(bench.Saved(), saved);
}

TEST(SoundBrowserChoice, TakesBackAProgramForWhichMemoryRanOut) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, {-1, -1, -1}}}));
  const std::string state = bench.State();
  bench.song.Pool.FailAt(2);
  EXPECT_FALSE(bench.browser.Open(3));
  EXPECT_THAT(bench.messages.Shown, ElementsAre("Error allocating memory!"));
  EXPECT_EQ(bench.State(), state);
}

TEST(SoundBrowserChoice, PutsAProgramInFrontOfAnEarlyNoteAndIntoTheSong) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.Open(Smf(1, 480).Track().Track().Note(16, 60, 20, 300).Note(16, 60, 3000, 3300)));
  ASSERT_TRUE(bench.browser.Open(15));
  const PtrMidiEvent program = bench.song.MidiData[15].PatchEvent;
  ASSERT_NE(program, nullptr);
  EXPECT_EQ(program->Position, 19);
  SoundBrowserBench atZero(Genos);
  ASSERT_TRUE(atZero.Open(Smf(1, 480).Track().Track().Note(1, 60, 0, 300).Note(1, 60, 3000, 3300)));
  ASSERT_TRUE(atZero.browser.Open(0));
  EXPECT_EQ(atZero.AddressOf(1), (TAddress{0, 0, 0})) << "nothing stands in front of tick 0";
}

TEST(SoundBrowserChoice, MakesAChannelOneOfDrumsWhereTheBankDecides) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}, {10, {127, 0, 0}}}));
  ASSERT_EQ(bench.song.MidiData[9].DrumPart, 1);
  ASSERT_TRUE(bench.browser.Open(3));
  const auto hits = bench.browser.Search("brush");
  const auto kit = std::ranges::find_if(hits, [&](const TSoundPlace& place) {
    return bench.browser.Banks().Banks()[static_cast<std::size_t>(place.Bank)].IsDrums;
  });
  ASSERT_NE(kit, hits.end()) << "a search finds kits, too";
  ASSERT_TRUE(bench.browser.Select(*kit));
  EXPECT_TRUE(bench.browser.ShowsDrums());
  EXPECT_EQ(bench.browser.Heading(), "Drumsets");
  EXPECT_EQ(bench.song.MidiData[3].DrumPart, 0) << "not before it is accepted";
  bench.browser.Btn_OldVoiceClick();
  EXPECT_FALSE(bench.browser.ShowsDrums());
  bench.browser.Btn_NewVoiceClick();
  bench.browser.Btn_OKClick();
  EXPECT_EQ(bench.song.MidiData[3].DrumPart, 2);
  EXPECT_THAT(bench.Told, Contains("drums 4"));
  ASSERT_TRUE(bench.browser.Open(3));
  ASSERT_TRUE(bench.browser.Select(bench.Named(StageGrandName)));
  bench.browser.Btn_OKClick();
  EXPECT_EQ(bench.song.MidiData[3].DrumPart, 0);
}

TEST(SoundBrowserChoice, FindsNoKitsForAChannelThatCannotPlayThem) {
  SoundBrowserBench bench(79);
  ASSERT_TRUE(bench.OpenWith({{4, {0, 0, 0}}, {10, {0, 0, 0}}}));
  for (const int channel : {3, 9}) {
    ASSERT_TRUE(bench.browser.Open(channel));
    const auto hits = bench.browser.Search("a");
    ASSERT_FALSE(hits.empty());
    for (const TSoundPlace& place : hits)
      EXPECT_EQ(bench.browser.Banks().Banks()[static_cast<std::size_t>(place.Bank)].IsDrums,
                channel == 9);
  }
}

TEST(SoundBrowserChoice, WritesToTheEventsInForceAndGivesAllOfThemBack) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  // A second sound further on, as the player brings it into force.
  TMyTrack& track = bench.Track(1);
  const auto put = [&](int status, int number, int value) {
    PtrMidiEvent e =
        NewChannelEvent(bench.song.Pool, static_cast<std::uint8_t>(status | 3),
                        static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(value), 2880);
    InsertByPosition(track, e);
    return e;
  };
  const PtrMidiEvent msb = put(Controller, 0, 8);
  const PtrMidiEvent lsb = put(Controller, 32, 34);
  const PtrMidiEvent program = put(ProgramChange, 42, 0);
  const auto saved = bench.Saved();
  ASSERT_TRUE(bench.browser.Open(3));
  bench.isPlaying = true;
  bench.browser.Select(bench.Named(StageGrandName));
  TMidiChannelData& data = bench.song.MidiData[3];
  data.CtrlArray[0] = {msb, 8};
  data.CtrlArray[32] = {lsb, 34};
  data.PatchEvent = program;
  data.Patch = 42;
  bench.browser.Select(bench.Named("CFX AmbientGrand (S.Art!)"));
  EXPECT_EQ(lsb->Value[1], 9);
  bench.browser.Btn_CancelClick();
  EXPECT_EQ(bench.Saved(), saved);
  EXPECT_EQ(data.Patch, 42);
  EXPECT_EQ(data.CtrlArray[32].Value, 34);
}

TEST(SoundBrowserChoice, OKLeavesASoundAloneThatPlaybackBroughtAfterTheChoice) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  PtrMidiEvent later = NewChannelEvent(bench.song.Pool, ProgramChange | 3, 42, 0, 2880);
  InsertByPosition(bench.Track(1), later);
  ASSERT_TRUE(bench.browser.Open(3));
  bench.browser.Select(bench.Named("CFX BalladMix1 (S.Art!)"));
  const PtrMidiEvent first = bench.song.MidiData[3].PatchEvent;
  bench.song.MidiData[3].PatchEvent = later;
  bench.song.MidiData[3].Patch = 42;
  bench.Told.clear();
  bench.browser.Btn_OKClick();
  EXPECT_EQ(later->Value[0], 42);
  EXPECT_EQ(first->Value[0], 5);
  EXPECT_THAT(bench.Told, Contains("changed"));
}

TEST(SoundBrowserChoice, MovesThePlayerToTheFirstNoteOfTheChannel) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  ASSERT_TRUE(bench.browser.Open(3));
  EXPECT_FALSE(bench.browser.Btn_GoToFirstNote()) << "nobody to move";
  std::int32_t time = -1;
  bench.browser.Hooks.MoveToTimePosition = [&](std::int32_t ms) { time = ms; };
  EXPECT_TRUE(bench.browser.Btn_GoToFirstNote());
  EXPECT_EQ(time, 2000) << "tick 1920 at 120 bpm";
  EXPECT_EQ(FirstNoteOf(bench.song, 3), 1920);
  EXPECT_EQ(FirstNoteOf(bench.song, 5), std::nullopt);
}

TEST(SoundBrowserChoice, KeepsAReplacementForTheRevoicer) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}, {10, {127, 0, 0}}}));
  ASSERT_TRUE(bench.browser.Open(3));
  EXPECT_FALSE(bench.browser.Btn_SaveToRevoicerClick()) << "nothing else was chosen";
  bench.browser.Select(bench.Named(StageGrandName));
  EXPECT_TRUE(bench.browser.CanSaveToRevoicer());
  EXPECT_TRUE(bench.browser.Btn_SaveToRevoicerClick());
  EXPECT_EQ(bench.settings.ReadString("Yamaha Genos", "AutoRev01", ""),
            "CFX ConcertGrand (S.Art!)\t104\t21\t0\tCFX StageGrand (S.Art!)\t104\t10\t0");
  bench.browser.Select(bench.Named("CFX AmbientGrand (S.Art!)"));
  EXPECT_TRUE(bench.browser.Btn_SaveToRevoicerClick());
  ASSERT_EQ(bench.revoicer.RevoicerArrayElm(), 1) << "the same source";
  EXPECT_EQ(bench.revoicer.RevoicerArray[0].DestVoiceCC32, 9);
  bench.browser.Btn_OldVoiceClick();
  EXPECT_FALSE(bench.browser.CanSaveToRevoicer());
  ASSERT_TRUE(bench.browser.Open(9));
  bench.browser.Select({bench.browser.ShownBanks()[0], 0, 3});
  EXPECT_FALSE(bench.browser.CanSaveToRevoicer()) << "drums are never replaced";
}

TEST(SoundBrowserChoice, KeepsNoReplacementForAnotherThanTheMainInstrument) {
  SoundBrowserBench bench(GM2);
  bench.routes.Table.push_back(
      {.Delay = 0, .Instrument = "Yamaha Genos", .InstrumValue = Genos, .OutputName = {}});
  ASSERT_TRUE(bench.OpenWith({{4, {121, 0, 0}}}));
  bench.song.MidiOutIndex[3] = 1;
  ASSERT_TRUE(bench.browser.Open(3));
  bench.browser.Select({0, 0, 1});
  EXPECT_EQ(bench.sent.Lines.back().substr(0, 2), "1>") << "by the route of the channel";
  EXPECT_FALSE(bench.browser.Btn_SaveToRevoicerClick());
}

}  // namespace

}  // namespace Sonarello
