#include "instruments/SoundNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/MidiFileWriter.h"
#include "helpers/SongBuilder.h"
#include "helpers/SoundBench.h"

namespace Sonarello {

namespace {

constexpr int Genos = 87;
constexpr int GM2 = 16;

/// A song of format 1 with a few notes on a channel behind its setup; long enough for a setup window.
Smf SongOn(int channel) {
  return Smf(1, 480).Track().Track().Note(channel, 60, 1920, 2400).Note(channel, 62, 2400, 2880);
}

/// The same with bank selects and a program at its head.
Smf SongWith(int channel, TAddress address) {
  Smf song(1, 480);
  song.Track().Track().At(0);
  if (address.CC00 >= 0) song.Ctrl(channel, 0, address.CC00);
  if (address.CC32 >= 0) song.Ctrl(channel, 32, address.CC32);
  song.Prog(channel, address.Patch);
  return song.Note(channel, 60, 1920, 2400);
}

TEST(SoundNames, NamesAChannelWithoutProgramByQuestionMarks) {
  SoundBench bench(Genos);
  ASSERT_TRUE(bench.Open(SongOn(1)));
  EXPECT_EQ(bench.names.PatchName(0), "???");
  bench.song.MidiData[0].CtrlArray[0].Value = 104;
  EXPECT_EQ(bench.names.PatchName(0), "???") << "whatever the bank values are";
}

TEST(SoundNames, HasNoNameForAnInstrumentThatIsNotInUse) {
  SoundBench bench(Genos);
  ASSERT_TRUE(bench.Open(SongWith(1, {104, 21, 0})));
  EXPECT_EQ(bench.names.CurrentName(0), "CFX ConcertGrand (S.Art!)");
  bench.sets.Unload(Genos);
  EXPECT_EQ(bench.names.CurrentName(0), "???");
  EXPECT_EQ(bench.names.PatchName(0), "???");
}

TEST(SoundNames, SilentlyMendsAMissingVariationOnLoad) {
  SoundBench bench(GM2);
  ASSERT_TRUE(bench.Open(SongWith(1, {121, 9, 0})));
  EXPECT_EQ(bench.AddressOf(1), (TAddress{121, 0, 0}));
  EXPECT_EQ(bench.song.MidiData[0].CtrlArray[32].Value, 0);
  EXPECT_EQ(bench.names.CurrentName(0), "Acoustic Grand Piano");
  EXPECT_TRUE(bench.messages.Shown.empty());
  EXPECT_EQ(CheckSong(bench.song), std::vector<std::string>{});
}

TEST(SoundNames, LeavesTheSongUntouchedWithoutRepair) {
  SoundBench bench(GM2);
  bench.options.AutoProgChange = false;
  ASSERT_TRUE(bench.Open(SongWith(1, {121, 9, 0})));
  EXPECT_EQ(bench.AddressOf(1), (TAddress{121, 9, 0}));
  EXPECT_EQ(bench.names.PatchName(0), "Unknown sound");
  const InGerman german;
  EXPECT_EQ(bench.names.PatchName(0), "Unbek. Sound");
}

TEST(SoundNames, BringsADroppedBankSelectBackToLifeWhenItMends) {
  SoundBench bench(GM2);
  ASSERT_TRUE(bench.Open(SongWith(1, {121, 0, 0})));
  TCtrl& lsb = bench.song.MidiData[0].CtrlArray[32];
  MarkRemoved(lsb.Event);
  lsb.Value = 9;
  EXPECT_EQ(bench.names.PatchName(0), "Acoustic Grand Piano");
  EXPECT_EQ(lsb.Event->DLength, 3);
  EXPECT_EQ(lsb.Event->Value[1], 0);
}

TEST(SoundNames, TellsInTheChangesWhatItMended) {
  SoundBench bench(GM2);
  ChangeLog changes;
  bench.song.Changes = &changes;
  ASSERT_TRUE(bench.Open(SongWith(1, {121, 9, 0})));
  const auto rewritten = std::ranges::count(changes.Changes(), ChangeKind::Rewritten, &TChange::Kind);
  EXPECT_EQ(rewritten, 1);
}

TEST(SoundNames, GivesASoundWithoutBankTheInstrumentsStandardBank) {
  SoundBench bench(GM2);
  ASSERT_TRUE(bench.Open(SongWith(1, {-1, -1, 5})));
  EXPECT_EQ(bench.AddressOf(1), (TAddress{121, 0, 5}));
}

TEST(SoundNames, PlaysChannel10OfAStandardSongAsDrumsOnAnInstrumentThatGoesByTheBank) {
  for (const TAddress& asked : {TAddress{-1, -1, 40}, {0, 0, 40}, {0, 3, 40}}) {
    SoundBench bench(Genos);
    ASSERT_TRUE(bench.Open(SongWith(10, asked)));
    EXPECT_EQ(bench.AddressOf(10), (TAddress{127, 0, 40}));
    EXPECT_EQ(bench.song.MidiData[9].DrumPart, 1);
  }
}

TEST(SoundNames, LeavesAMelodicChannel10OfAnXGSong) {
  SoundBench bench(Genos);
  Smf song(1, 480);
  song.Track().Track().At(0).Sysex({0x43, 0x10, 0x4C, 0, 0, 0x7E, 0, 0xF7});
  song.Ctrl(10, 0, 0).Ctrl(10, 32, 0).Prog(10, 40).Note(10, 60, 1920, 2400);
  ASSERT_TRUE(bench.Open(song));
  EXPECT_EQ(bench.AddressOf(10), (TAddress{0, 0, 40}));
  EXPECT_EQ(bench.song.MidiData[9].DrumPart, 0);
}

TEST(SoundNames, TranslatesDrumBanksOfOtherInstruments) {
  SoundBench gm2(GM2);
  ASSERT_TRUE(gm2.Open(SongWith(11, {127, 0, 40})));
  EXPECT_EQ(gm2.AddressOf(11), (TAddress{120, 0, 40}));
  EXPECT_EQ(gm2.names.CurrentName(10), "Brush");
  EXPECT_EQ(gm2.song.MidiData[10].DrumPart, 1);

  SoundBench genos(Genos);
  ASSERT_TRUE(genos.Open(SongWith(11, {120, 0, 40})));
  EXPECT_EQ(genos.AddressOf(11), (TAddress{120, 0, 40})) << "the Genos has that bank itself";

  SoundBench gs(1);
  ASSERT_TRUE(gs.Open(SongWith(11, {127, 0, 40})));
  EXPECT_EQ(gs.AddressOf(11).CC00, 127) << "a GS bank of sounds";
}

TEST(SoundNames, NumbersTheDrumParts) {
  SoundBench bench(Genos);
  Smf song(1, 480);
  song.Track();
  for (const int channel : {2, 3, 5, 10}) {
    song.Track().At(0).Ctrl(channel, 0, 127).Ctrl(channel, 32, 0).Prog(channel, 0);
    song.Note(channel, 40, 1920, 2400);
  }
  ASSERT_TRUE(bench.Open(song));
  EXPECT_EQ(bench.song.MidiData[9].DrumPart, 1) << "channel 10 comes first";
  EXPECT_EQ(bench.song.MidiData[1].DrumPart, 2);
  EXPECT_EQ(bench.song.MidiData[2].DrumPart, 3);
  EXPECT_EQ(bench.song.MidiData[4].DrumPart, 3) << "there are three drum editors";
  EXPECT_EQ(bench.song.MidiData[0].DrumPart, 0);
}

TEST(SoundNames, TakesPart10OfAGSInstrumentForDrumsUnlessTheSongSaysOtherwise) {
  SoundBench bench(1);
  ASSERT_TRUE(bench.Open(SongWith(10, {0, 0, 25})));
  EXPECT_EQ(bench.names.CurrentName(9), "TR-808");
  Smf melodic(1, 480);
  melodic.Track().Track().At(0).Sysex({0x41, 0x10, 0x42, 0x12, 0x40, 0x10, 0x15, 0x00, 0x1B, 0xF7});
  melodic.Prog(10, 25).Note(10, 60, 1920, 2400);
  ASSERT_TRUE(bench.Open(melodic));
  EXPECT_EQ(bench.song.MidiData[9].DrumPart, 0);
  EXPECT_NE(bench.names.CurrentName(9), "TR-808");
}

TEST(SoundNames, WritesTheChosenGSMapIntoEverySoundChange) {
  SoundBench bench(4);
  bench.options.RolandSCDefaultMap = true;
  bench.options.RolandSCDefaultMapIdx = 1;
  Smf song(1, 480);
  song.Track().Track().At(0).Ctrl(1, 0, 0).Ctrl(1, 32, 0).Prog(1, 5).Note(1, 60, 1920, 2400);
  song.At(3840).Ctrl(1, 0, 0).Ctrl(1, 32, 0).Prog(1, 6).Note(1, 60, 3900, 4000);
  song.At(4800).Prog(1, 7).Note(1, 60, 4900, 5000);
  ASSERT_TRUE(bench.Open(song));
  int maps = 0;
  for (const TMyTrack& track : bench.song.MidiTrack)
    ForEachEvent(track, [&](PtrMidiEvent e) {
      if (e->IsChannelEvent() && !e->IsRemoved() && e->Kind() == Controller && e->Value[0] == 32) {
        ++maps;
        EXPECT_EQ(e->Value[1], 1) << e->Position;
      }
    });
  EXPECT_EQ(maps, 3);
  bench.options.RolandSCDefaultMapIdx = 9;
  ASSERT_TRUE(bench.Open(song));
  EXPECT_EQ(bench.AddressOf(1).CC32, 0) << "the instrument has no ninth map";
}

TEST(SoundNames, NamesTheOrganFlutesBySysexOfTheChannel) {
  SoundBench bench(Genos);
  ASSERT_TRUE(bench.Open(SongWith(3, {0, 126, 16})));
  EXPECT_EQ(bench.names.CurrentName(2), "OrganFlutes (OrganFlutes)");
  constexpr std::uint8_t fullOrgan[] = {0x43, 0x73, 1, 0x11, 0, 0x50, 0x10, 8, 8, 7, 7, 7, 6, 8,   7,
                                        8,    0,    0, 0,    0, 0,    0,    1, 9, 0, 0, 0, 0, 0xF7};
  PtrMidiEvent sysex = NewSysex(bench.song.Pool, fullOrgan, 100);
  InsertByPosition(bench.Track(1), sysex);
  bench.song.GenosOrganFluteSysexs[2] = sysex;
  EXPECT_EQ(bench.names.CurrentName(2), "FullOrgan (OrganFlutes)");
}

TEST(SoundNames, GivesTracksTheNamesOfTheirSoundsWhenAFormat0SongIsSaved) {
  SoundBench bench(Genos);
  Smf song(0, 480);
  song.Track().At(0).Ctrl(1, 0, 104).Ctrl(1, 32, 21).Prog(1, 0).Note(1, 60, 1920, 2400);
  ASSERT_TRUE(bench.Open(song));
  const std::string path = testing::TempDir() + "sonarello_named.mid";
  ASSERT_TRUE(MidiFileWriter(bench.song, bench.options, bench.routes, bench.messages, bench.hooks)
                  .Save(path, 1));
  std::ifstream file(path, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(file)), {});
  EXPECT_THAT(bytes, testing::HasSubstr("CFX ConcertGrand (S.Art!)"));
  std::filesystem::remove(path);
}

// --- What a strip shows

TEST(SoundNames, ShowsAChannelByItsOutputNumber) {
  SoundBench bench(Genos);
  ASSERT_TRUE(bench.Open(SongWith(3, {104, 21, 0})));
  EXPECT_EQ(bench.names.DisplayPatchName(2).Prefix, "Ch 03 - ");
  EXPECT_EQ(bench.names.DisplayPatchName(2).Name, "CFX ConcertGrand (S.Art!)");
  bench.song.MidiData[2].MidiChannel = 11;
  EXPECT_EQ(bench.names.DisplayPatchName(2).Prefix, "Ch 12 - ");
  EXPECT_EQ(bench.names.DisplayPatchName(4).Name, "") << "a channel that is not in use";
}

TEST(SoundNames, DoublesTheFirstAmpersandForALabel) {
  SoundBench bench(31);
  ASSERT_TRUE(bench.Open(SongWith(3, {127, 0, 85})));
  EXPECT_THAT(bench.names.CurrentName(2), testing::HasSubstr("Brush&Perc"));
  EXPECT_THAT(bench.names.DisplayPatchName(2).Name, testing::HasSubstr("Brush&&Perc"));
}

TEST(SoundNames, TellsTheBanksInTheHint) {
  SoundBench bench(Genos);
  bench.options.AutoProgChange = false;
  ASSERT_TRUE(bench.Open(SongWith(1, {104, 21, 0})));
  auto& ctrl = bench.song.MidiData[0].CtrlArray;
  EXPECT_EQ(bench.names.DisplayPatchName(0).Hint, "Controller   0: 104\rController 32: 21");
  MarkRemoved(ctrl[32].Event);
  EXPECT_EQ(bench.names.DisplayPatchName(0).Hint, "Controller   0: 104\rController 32: -");
  ctrl[0].Value = NoControllerValue;
  EXPECT_EQ(bench.names.DisplayPatchName(0).Hint, "Controller   0: -\rController 32: -");
  ctrl[32].Event->DLength = 3;
  EXPECT_EQ(bench.names.DisplayPatchName(0).Hint, "Controller   0: -\rController 32: 21");
}

// --- Inserting a sound

TEST(SoundNames, InsertsProgramAndBanksInFrontOfIt) {
  SoundBench bench(Genos);
  ASSERT_TRUE(bench.Open(SongOn(3)));
  const std::int32_t before = bench.Track(1).TrkEventCounter;
  ASSERT_TRUE(bench.names.InsertPatch(2, 100));
  const TMidiChannelData& data = bench.song.MidiData[2];
  ASSERT_NE(data.PatchEvent, nullptr);
  EXPECT_EQ(data.PatchEvent->Position, 108);
  EXPECT_EQ(data.PatchEvent->Command, 0xC2);
  EXPECT_EQ(data.PatchEvent->DLength, 2);
  EXPECT_EQ(data.CtrlArray[32].Event->Position, 106);
  EXPECT_EQ(data.CtrlArray[0].Event->Position, 104);
  EXPECT_EQ(data.CtrlArray[0].Event->DLength, 3);
  EXPECT_EQ(bench.AddressOf(3), (TAddress{0, 0, 0}));
  EXPECT_EQ(bench.song.FirstPatches[2], data.PatchEvent);
  EXPECT_EQ(bench.song.FirstControllers[2][0], data.CtrlArray[0].Event);
  EXPECT_EQ(bench.Track(1).TrkEventCounter, before + 3);
  EXPECT_EQ(data.PatchEvent->TimePosition, TimeOfPosition(bench.song, 108));
  EXPECT_EQ(CheckSong(bench.song), std::vector<std::string>{});
  EXPECT_EQ(bench.names.PatchName(2), "GrandPiano (XG)");
}

TEST(SoundNames, LeavesOutWhatWouldStandInFrontOfTheTrack) {
  SoundBench bench(Genos);
  ASSERT_TRUE(bench.Open(SongOn(1)));
  ASSERT_TRUE(bench.names.InsertPatch(0, 0));
  EXPECT_EQ(bench.song.MidiData[0].PatchEvent->Position, 0);
  EXPECT_EQ(bench.song.MidiData[0].CtrlArray[0].Event, nullptr);
  EXPECT_EQ(bench.song.MidiData[0].CtrlArray[32].Event, nullptr);
  EXPECT_EQ(CheckSong(bench.song), std::vector<std::string>{});
}

TEST(SoundNames, InsertsNothingOnAChannelWithoutTrack) {
  SoundBench bench(Genos);
  ASSERT_TRUE(bench.Open(SongOn(1)));
  EXPECT_FALSE(bench.names.InsertPatch(6, 100));
  Song empty;
  TSoundNames names(empty, bench.sets, bench.options, bench.routes);
  EXPECT_FALSE(names.InsertPatch(0, 100));
}

TEST(SoundNames, TellsThatThereIsNoMemoryForAnInsertedSound) {
  SoundBench bench(Genos);
  ASSERT_TRUE(bench.Open(SongOn(1)));
  bench.song.Pool.FailAt(1);
  EXPECT_THROW(static_cast<void>(bench.names.InsertPatch(0, 100)), EMidiError);
}

TEST(SoundNames, WritesAChosenSoundToValuesAndEvents) {
  SoundBench bench(Genos);
  ASSERT_TRUE(bench.Open(SongWith(1, {104, 21, 0})));
  MarkRemoved(bench.song.MidiData[0].CtrlArray[0].Event);
  bench.names.UpdateMSB_LSB_PC(0, {0, 0, 48});
  EXPECT_EQ(bench.AddressOf(1), (TAddress{0, 0, 48}));
  EXPECT_EQ(bench.song.MidiData[0].CtrlArray[0].Event->DLength, 3);
  EXPECT_EQ(bench.song.MidiData[0].Patch, 48);
  bench.names.UpdateMSB_LSB_PC(0, {-1, -1, 49});
  EXPECT_EQ(bench.AddressOf(1), (TAddress{0, 0, 49}));
}

// --- What a fitted song still lacks

TEST(SoundNames, ListsAnAdaptedDrumBankAsMended) {
  SoundBench bench(GM2);
  ASSERT_TRUE(bench.Open(SongWith(11, {127, 3, 40})));
  const std::vector<TSoundFinding> findings = bench.names.Findings();
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_TRUE(findings[0].Mended);
  EXPECT_EQ(findings[0].Asked, (TAddress{127, 3, 40}));
  EXPECT_EQ(findings[0].Given, (TAddress{120, 0, 40}));
  EXPECT_EQ(findings[0].Name, "Brush");
}

TEST(SoundNames, ListsWhatWasMendedAndWhatStaysUnknown) {
  SoundBench bench(GM2);
  Smf song(1, 480);
  song.Track().Track().At(0).Ctrl(1, 0, 121).Ctrl(1, 32, 9).Prog(1, 0).Note(1, 60, 1920, 2400);
  song.At(3840).Ctrl(1, 0, 8).Ctrl(1, 32, 7).Prog(1, 6).Note(1, 60, 3900, 4000);
  ASSERT_TRUE(bench.Open(song));
  const std::vector<TSoundFinding> findings = bench.names.Findings();
  ASSERT_EQ(findings.size(), 2U);
  EXPECT_TRUE(findings[0].Mended);
  EXPECT_EQ(findings[0].Asked, (TAddress{121, 9, 0}));
  EXPECT_EQ(findings[0].Given, (TAddress{121, 0, 0}));
  EXPECT_EQ(findings[0].Name, "Acoustic Grand Piano");
  EXPECT_FALSE(findings[1].Mended);
  EXPECT_EQ(findings[1].Position, 3840);
  EXPECT_EQ(findings[1].Asked, (TAddress{8, 7, 6}));
  ASSERT_TRUE(bench.Open(SongWith(1, {121, 0, 0})));
  EXPECT_TRUE(bench.names.Findings().empty()) << "each song for itself";
}

}  // namespace
}  // namespace Sonarello
