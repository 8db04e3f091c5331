#include "core/ProgramSetup.h"

#include <gtest/gtest.h>

#include <string>

#include "helpers/Workbench.h"

namespace Sonarello {
namespace {

/// Decodes without sysex work, as the steps under test find a song.
void DecodePlain(Workbench& bench, const Smf& file) {
  bench.options.AutoSysex = false;
  bench.Decode(file.Build());
}

/// The program changes and bank selects of a track that are in force: "M64@10 L1@12 P5@14".
std::string Programs(const TMyTrack& track) {
  std::string text;
  ForEachEvent(track, [&](PtrMidiEvent e) {
    if (!e->IsChannelEvent() || e->IsRemoved()) return;
    const bool program = e->Kind() == ProgramChange;
    if (!program && (e->Kind() != Controller || (e->Value[0] != 0 && e->Value[0] != 32))) return;
    if (!text.empty()) text += ' ';
    text += program ? "P" + std::to_string(e->Value[0])
                    : (e->Value[0] == 0 ? "M" : "L") + std::to_string(e->Value[1]);
    text += "@" + std::to_string(e->Position);
  });
  return text;
}

std::string Normalised(const Smf& file, bool repair) {
  Workbench bench;
  DecodePlain(bench, file);
  TProgramIndex index = TakeStock(bench.song);
  NormalisePrograms(bench.song, index, repair);
  EXPECT_EQ(CheckSong(bench.song), std::vector<std::string>{});
  return Programs(bench.Track(1));
}

Smf Song1() { return Smf(1, 384).Track().At(0).Tempo(500000).Track(); }

TEST(MovePrograms, StaggersProgramsByChannelBehindTheSetup) {
  Workbench bench;
  DecodePlain(bench, Song1().At(0).Prog(1, 5).At(3).Prog(3, 7).Note(1, 60, 2000, 2100));
  MovePrograms(bench.song);
  EXPECT_EQ(Programs(bench.Track(1)), "P5@302 P7@310");
  EXPECT_TRUE(CheckSong(bench.song).empty());
}

TEST(MovePrograms, RoundsTheWindowDownForOddTimeBases) {
  Workbench bench;
  DecodePlain(
      bench, Smf(1, 100).Track().At(0).Tempo(500000).Track().At(0).Prog(16, 5).Note(1, 60, 2000, 2100));
  MovePrograms(bench.song);
  EXPECT_EQ(Programs(bench.Track(1)), "P5@140");  // 100 * 300 / 384 = 78, + 15 * 4 + 2
}

TEST(MovePrograms, LeavesAProgramAtTheWindowsEndWhereItIs) {
  Workbench bench;
  DecodePlain(bench, Song1().At(299).Prog(2, 1).At(300).Prog(2, 2).Note(1, 60, 2000, 2100));
  MovePrograms(bench.song);
  EXPECT_EQ(Programs(bench.Track(1)), "P2@300 P1@306");
}

TEST(MovePrograms, GoesBehindOtherEventsOfTheTargetTick) {
  Workbench bench;
  DecodePlain(bench, Song1().At(0).Prog(1, 5).At(302).On(1, 60).At(2000).Off(1, 60));
  MovePrograms(bench.song);
  EXPECT_EQ(bench.Event(1, 1)->Kind(), NoteOn);
  EXPECT_EQ(bench.Event(1, 2)->Kind(), ProgramChange);
}

TEST(MovePrograms, LeavesAShortSongAlone) {
  Workbench bench;
  DecodePlain(bench, Song1().At(0).Prog(1, 5).Note(1, 60, 10, 989));
  ASSERT_EQ(bench.song.MaxSongPosition, 999);
  MovePrograms(bench.song);
  EXPECT_EQ(Programs(bench.Track(1)), "P5@0");
}

TEST(MovePrograms, NeverMakesASongOfAFineTimeBaseLonger) {
  Workbench bench;
  DecodePlain(
      bench, Smf(1, 30000).Track().Track().At(0).Prog(1, 5).Note(1, 60, 10, 2000).Note(10, 36, 10, 20));
  MovePrograms(bench.song);
  TProgramIndex index = TakeStock(bench.song);
  EnsureDrumProgram(bench.song, index);
  EXPECT_EQ(Programs(bench.Track(1)), "P5@2000 P0@2000");
  EXPECT_EQ(index[9].at(0).Event->Position, 2000);
}

TEST(MovePrograms, WorksFromTickThousandOn) {
  Workbench bench;
  DecodePlain(bench, Song1().At(0).Prog(1, 5).Note(1, 60, 10, 990));
  ASSERT_EQ(bench.song.MaxSongPosition, 1000);
  MovePrograms(bench.song);
  EXPECT_EQ(Programs(bench.Track(1)), "P5@302");
}

TEST(MovePrograms, SparesTheRemoteSequenceAndIgnoredTracks) {
  Workbench bench;
  DecodePlain(bench, Song1()
                         .At(2)
                         .Ctrl(16, 0, 77)
                         .At(4)
                         .Ctrl(16, 32, 1)
                         .At(6)
                         .Prog(16, 9)
                         .Note(1, 60, 2000, 2100)
                         .Track()
                         .At(0)
                         .Text(4, "srl_ignore")
                         .Prog(1, 3));
  FindRemoteSequence(bench.song);
  MovePrograms(bench.song);
  EXPECT_EQ(Programs(bench.Track(1)), "M77@2 L1@4 P9@6");
  EXPECT_EQ(Programs(bench.Track(2)), "P3@0");
}

TEST(NormalisePrograms, InsertsMissingBanksTwoTicksApart) {
  EXPECT_EQ(Normalised(Song1().At(1000).Prog(1, 5), true), "M0@996 L0@998 P5@1000");
}

TEST(NormalisePrograms, MovesTheLastBanksInFrontOfTheProgramAndDropsEarlierOnes) {
  EXPECT_EQ(
      Normalised(
          Song1().At(10).Ctrl(1, 0, 1).At(20).Ctrl(1, 32, 2).At(30).Ctrl(1, 0, 3).At(1000).Prog(1, 5),
          true),
      "M3@996 L2@998 P5@1000");
}

TEST(NormalisePrograms, LeavesBanksThatStandRight) {
  EXPECT_EQ(Normalised(Song1().At(996).Ctrl(1, 0, 1).At(998).Ctrl(1, 32, 2).At(1000).Prog(1, 5), true),
            "M1@996 L2@998 P5@1000");
}

TEST(NormalisePrograms, TreatsEverySoundChangeOfAChannel) {
  EXPECT_EQ(Normalised(Song1().At(100).Ctrl(1, 0, 8).At(100).Prog(1, 5).At(500).Prog(1, 6), true),
            "M8@96 L0@98 P5@100 M0@496 L0@498 P6@500");
}

TEST(NormalisePrograms, InsertsButDoesNotMoveUpToTickEight) {
  EXPECT_EQ(Normalised(Song1().At(1).Ctrl(1, 0, 8).At(8).Prog(1, 5), true), "M8@1 L0@6 P5@8");
  EXPECT_EQ(Normalised(Song1().At(1).Ctrl(1, 0, 8).At(9).Prog(1, 5), true), "M8@5 L0@7 P5@9");
}

TEST(NormalisePrograms, PutsMissingBanksAtTickOneForTheFirstTicks) {
  EXPECT_EQ(Normalised(Song1().At(3).Prog(1, 5), true), "M0@1 L0@1 P5@3");
  EXPECT_EQ(Normalised(Song1().At(1).Prog(1, 5), true), "M0@1 L0@1 P5@1");
  EXPECT_EQ(Normalised(Song1().At(4).Prog(1, 5), true), "M0@0 L0@2 P5@4");
}

TEST(NormalisePrograms, DropsADoubledProgramAndKeepsItsBanks) {
  EXPECT_EQ(Normalised(Song1().At(90).Ctrl(1, 0, 8).At(100).Prog(1, 5).At(104).Prog(1, 6), true),
            "M8@100 L0@102 P6@104");
  EXPECT_EQ(Normalised(Song1().At(100).Prog(1, 5).At(105).Prog(1, 6), false), "P5@100 P6@105");
  EXPECT_EQ(Normalised(Song1().At(100).Prog(1, 5).At(104).Prog(1, 6), false), "P6@104");
}

TEST(NormalisePrograms, LeavesBanksBehindTheLastProgram) {
  EXPECT_EQ(Normalised(Song1().At(1000).Prog(1, 5).At(1100).Ctrl(1, 0, 9), true),
            "M0@996 L0@998 P5@1000 M9@1100");
}

TEST(NormalisePrograms, WithoutRepairOnlyReadsBanks) {
  Workbench bench;
  DecodePlain(bench, Song1().At(10).Ctrl(1, 0, 1).At(20).Ctrl(1, 0, 3).At(1000).Prog(1, 5));
  TProgramIndex index = TakeStock(bench.song);
  NormalisePrograms(bench.song, index, false);
  EXPECT_EQ(Programs(bench.Track(1)), "M1@10 M3@20 P5@1000");
  EXPECT_EQ(bench.song.MidiData[0].CtrlArray[0].Value, 3);
  EXPECT_EQ(bench.song.MidiData[0].CtrlArray[32].Value, NoControllerValue);
  EXPECT_EQ(bench.song.MidiData[0].Patch, 5);
}

TEST(NormalisePrograms, FollowsAChannelOverSeveralTracks) {
  Workbench bench;
  DecodePlain(bench, Song1().At(10).Ctrl(1, 0, 8).At(500).Prog(2, 1).Track().At(1000).Prog(1, 5));
  TProgramIndex index = TakeStock(bench.song);
  NormalisePrograms(bench.song, index, true);
  EXPECT_EQ(Programs(bench.Track(1)), "M0@496 L0@498 P1@500 M8@996");
  EXPECT_EQ(Programs(bench.Track(2)), "L0@998 P5@1000");
  EXPECT_TRUE(CheckSong(bench.song).empty());
}

TEST(NormalisePrograms, TellsEachRepairInTheChangeLog) {
  Workbench bench;
  ChangeLog log;
  bench.options.AutoSysex = false;
  bench.Decode(Song1().At(10).Ctrl(1, 0, 1).At(20).Ctrl(1, 0, 3).At(1000).Prog(1, 5).Build());
  bench.song.Changes = &log;
  TProgramIndex index = TakeStock(bench.song);
  NormalisePrograms(bench.song, index, true);
  ASSERT_EQ(log.Changes().size(), 3u);
  EXPECT_EQ(log.Changes()[0].What, "Controller 0 = 1, channel 1");
  EXPECT_EQ(log.Changes()[0].Kind, ChangeKind::Dropped);
  EXPECT_EQ(log.Changes()[1].Kind, ChangeKind::Moved);
  EXPECT_EQ(log.Changes()[1].OldPosition, 20);
  EXPECT_EQ(log.Changes()[1].Position, 996);
  EXPECT_EQ(log.Changes()[2].Kind, ChangeKind::Inserted);
}

TEST(EnsureDrumProgram, GivesAnActiveDrumChannelTheStandardKit) {
  Workbench bench;
  DecodePlain(bench, Song1().Note(10, 36, 2000, 2100));
  TProgramIndex index = TakeStock(bench.song);
  EnsureDrumProgram(bench.song, index);
  EXPECT_EQ(Programs(bench.Track(1)), "P0@338");
  ASSERT_EQ(index[9].size(), 1u);
  EXPECT_EQ(index[9][0].Event->Command, 0xC9);
}

TEST(EnsureDrumProgram, KeepsTheSongsOwnKitAndASilentChannel) {
  for (const Smf& file :
       {Song1().At(700).Prog(10, 24).Note(10, 36, 2000, 2100), Song1().Note(1, 60, 0, 2000)}) {
    Workbench bench;
    DecodePlain(bench, file);
    const std::string before = Programs(bench.Track(1));
    TProgramIndex index = TakeStock(bench.song);
    EnsureDrumProgram(bench.song, index);
    EXPECT_EQ(Programs(bench.Track(1)), before);
  }
}

TEST(TakeStock, CallsAChannelActiveForNotesControllersAndPrograms) {
  Workbench bench;
  DecodePlain(bench, Song1()
                         .At(0)
                         .Bend(1, 0, 64)
                         .Ctrl(2, 7, 1)
                         .Prog(3, 1)
                         .On(4, 60)
                         .Off(5, 60)
                         .Event({0xD5, 3})
                         .Event({0xA6, 60, 3})
                         .At(2000)
                         .Off(4, 60));
  TakeStock(bench.song);
  std::string active;
  for (int c = 0; c < 16; ++c)
    if (bench.song.MidiData[static_cast<std::size_t>(c)].Active) active += std::to_string(c + 1) + " ";
  EXPECT_EQ(active, "2 3 4 7 ");
}

TEST(TakeStock, CountsNotesAndTheirVelocities) {
  Workbench bench;
  DecodePlain(bench, Song1().Note(1, 60, 0, 10, 20).Note(1, 60, 20, 30, 101).Note(1, 61, 40, 50, 60));
  TakeStock(bench.song);
  EXPECT_EQ(bench.song.MidiData[0].ActiveNotes, 3);
  const TNotesVelocities& velocities = bench.song.NotesVelocities[0];
  EXPECT_EQ(velocities.Minimum, 20);
  EXPECT_EQ(velocities.Maximum, 101);
  EXPECT_EQ(velocities.Mean, 60);
}

TEST(DefaultControllers, GiveAnActiveChannelElevenSilentPlaceholders) {
  Workbench bench;
  DecodePlain(bench, Song1().Note(1, 60, 0, 2000));
  TakeStock(bench.song);
  bench.functions.SetFirstValues();
  InsertDefaultControllers(bench.song);
  int placeholders = 0;
  ForEachEvent(bench.Track(1), [&](PtrMidiEvent e) {
    if (!e->IsChannelEvent() || e->Kind() != Controller) return;
    ++placeholders;
    EXPECT_EQ(e->Position, 404);
    EXPECT_EQ(e->DLength, 0);
  });
  EXPECT_EQ(placeholders, 11);
  EXPECT_EQ(bench.song.MidiData[0].CtrlArray[7].Value, 100);
  EXPECT_EQ(bench.song.MidiData[0].CtrlArray[91].Value, 40);
  EXPECT_NE(bench.song.FirstControllers[0][74], nullptr);
  EXPECT_TRUE(CheckSong(bench.song).empty());
}

TEST(DefaultControllers, LeaveAControllerOfTheSongAlone) {
  Workbench bench;
  DecodePlain(bench, Song1().At(700).Ctrl(1, 7, 33).Note(1, 60, 800, 2000));
  TakeStock(bench.song);
  bench.functions.SetFirstValues();
  InsertDefaultControllers(bench.song);
  EXPECT_EQ(bench.song.MidiData[0].CtrlArray[7].Value, 33);
  EXPECT_EQ(bench.song.MidiData[0].CtrlArray[7].Event->Position, 700);
}

TEST(DefaultControllers, GoToTheLastTrackOfTheChannelElseToTheLastOfSeveral) {
  Workbench bench;
  DecodePlain(bench, Song1()
                         .Note(1, 60, 0, 2000)
                         .Track()
                         .Note(1, 64, 0, 2000)
                         .Track()
                         .Note(2, 60, 0, 10)
                         .Note(3, 60, 20, 2000));
  TakeStock(bench.song);
  bench.functions.SetFirstValues();
  InsertDefaultControllers(bench.song);
  EXPECT_EQ(bench.Track(1).TrkEventCounter, 4);
  EXPECT_EQ(bench.Track(2).TrkEventCounter, 15);
  EXPECT_EQ(bench.Track(3).TrkEventCounter, 28);
}

TEST(DefaultControllers, StandAtTheSongsEndWhenItIsShorterThanABeat) {
  Workbench bench;
  DecodePlain(bench, Smf(1, 30000).Track().Track().Note(1, 60, 0, 100));
  TakeStock(bench.song);
  bench.functions.SetFirstValues();
  InsertDefaultControllers(bench.song);
  EXPECT_EQ(bench.song.MidiData[0].CtrlArray[7].Event->Position, 999);
  EXPECT_TRUE(CheckSong(bench.song).empty());
}

TEST(RemoteSequence, IsFoundWithinThirtyTicksAndBrokenByOtherEvents) {
  Workbench bench;
  DecodePlain(bench, Song1().At(0).Ctrl(16, 0, 77).At(10).Ctrl(16, 32, 3).At(30).Prog(16, 4).Note(
                         1, 60, 50, 2000));
  FindRemoteSequence(bench.song);
  ASSERT_NE(bench.song.PromptaRemotePatch, nullptr);
  EXPECT_EQ(bench.song.PromptaRemotePatch->Value[0], 4);

  Workbench late;
  DecodePlain(late, Song1().At(0).Ctrl(16, 0, 77).At(10).Ctrl(16, 32, 3).At(31).Prog(16, 4));
  FindRemoteSequence(late.song);
  EXPECT_EQ(late.song.PromptaRemoteCtrl00, nullptr);
  EXPECT_EQ(late.song.PromptaRemoteCtrl32, nullptr);

  Workbench broken;
  DecodePlain(broken, Song1().At(0).Ctrl(16, 0, 77).Ctrl(16, 7, 77).Ctrl(16, 32, 3).Prog(16, 4));
  FindRemoteSequence(broken.song);
  EXPECT_EQ(broken.song.PromptaRemoteCtrl00, nullptr);
}

}  // namespace
}  // namespace Sonarello
