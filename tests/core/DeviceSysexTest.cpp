#include "core/DeviceSysex.h"

#include "helpers/SysexSong.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string At(int tick, const std::string& hex) { return std::to_string(tick) + ": " + hex; }

TEST(DeviceSysex, KeepsAResetOfTheSongWhereItIs) {
  SysexSong bench(0);
  bench.Sysex(2, 0, GMReset);
  bench.Fit();
  EXPECT_THAT(bench.Live(2), ElementsAre(At(0, GMReset)));
  EXPECT_THAT(bench.Live(1), IsEmpty());
  EXPECT_EQ(bench.song.SysexTrack, 2);
}

TEST(DeviceSysex, LooksForAResetInTheFirstEightBeats) {
  SysexSong bench(0);
  bench.Sysex(1, 3840, GMReset);
  bench.Fit();
  EXPECT_THAT(bench.Live(1), ElementsAre(At(3840, GMReset)));
}

TEST(DeviceSysex, InsertsAResetInFrontOfALateOne) {
  SysexSong bench(0);
  bench.Sysex(1, 3841, GMReset);
  bench.Fit();
  EXPECT_THAT(bench.Live(1), ElementsAre(At(2, GMReset), At(3841, GMReset)));
}

TEST(DeviceSysex, TakesNoOtherMessageForAReset) {
  for (const char* other : {GM2Reset, "7E 00 09 01 F7", "7E 7F 09 01 F7 F7", "7E 7F 09 01"}) {
    SysexSong bench(0);
    bench.Sysex(1, 0, other);
    bench.Fit();
    EXPECT_THAT(bench.Live(1), testing::Contains(At(2, GMReset))) << other;
  }
}

TEST(DeviceSysex, PutsTheResetInFrontOfEventsFromTick2OnAndBehindThoseInFront) {
  SysexSong bench(0);
  PtrMidiEvent early = bench.Note(1, 0);
  PtrMidiEvent same = bench.Note(1, 2);
  PtrMidiEvent late = bench.Note(1, 3);
  bench.Fit();
  PtrMidiEvent reset = late->PrevEvent;
  EXPECT_EQ(ToHex(reset->Meta.Bytes()), GMReset);
  EXPECT_EQ(reset->Position, 2);
  EXPECT_EQ(reset->DType, LongEvent);
  EXPECT_EQ(reset->MType, -1);
  EXPECT_EQ(reset->PrevEvent, same);
  EXPECT_EQ(same->PrevEvent, early);
}

TEST(DeviceSysex, CountsTheNodeOfAnInsertedReset) {
  SysexSong bench(0);
  bench.Note(1, 0);
  bench.Fit();
  EXPECT_EQ(bench.Track(1).TrkEventCounter, 4);
}

TEST(DeviceSysex, PutsTheResetsOfASplitSongOnTrack10) {
  SysexSong bench(0, 17);
  bench.song.MidiFileOrgFormat = 0;
  bench.Note(1, 100);
  bench.Fit();
  EXPECT_EQ(bench.song.SysexTrack, 10);
  EXPECT_THAT(bench.Live(10), ElementsAre(At(2, GMReset)));
}

TEST(DeviceSysex, PutsTheResetOfAnUnsplitSongOnItsTrack) {
  SysexSong one(0, 1);
  one.Fit();
  EXPECT_THAT(one.Live(0), ElementsAre(At(2, GMReset)));

  // A format 0 file with two chunks has no track 10.
  SysexSong two(0, 2);
  two.song.MidiFileFormat = two.song.MidiFileOrgFormat = 0;
  two.Fit();
  EXPECT_THAT(two.Live(0), ElementsAre(At(2, GMReset)));
}

TEST(DeviceSysex, PutsTheResetWhereTheFileHasItsSysexes) {
  SysexSong bench(0, 4);
  bench.Sysex(3, 5000, "7D 00 F7");
  bench.Fit();
  EXPECT_EQ(bench.song.SysexTrack, 3);
  EXPECT_THAT(bench.Live(3), ElementsAre(At(2, GMReset), At(5000, "7D 00 F7")));
}

TEST(DeviceSysex, CountsAnyFormatButZeroAsOne) {
  SysexSong bench(0);
  bench.song.MidiFileFormat = bench.song.MidiFileOrgFormat = 2;
  bench.Fit();
  EXPECT_EQ(bench.song.SysexTrack, 1);
}

TEST(DeviceSysex, FollowsTheDrumTrackWithSpecialD) {
  for (const int value : {0, 1}) {
    SysexSong bench(value, 4);
    bench.options.SpecialD = true;
    bench.Track(3).TrkMidiIndex = 9;
    bench.Sysex(2, 5000, "7D 00 F7");
    bench.Fit();
    EXPECT_EQ(bench.song.SysexTrack, 3) << value;
  }
  // Only GM and GS ask for it.
  SysexSong bench(87, 4);
  bench.options.SpecialD = true;
  bench.Track(3).TrkMidiIndex = 9;
  bench.Fit();
  EXPECT_EQ(bench.song.SysexTrack, 1);
}

TEST(DeviceSysex, StaysOnTrack1WithSpecialDAndNoDrumTrack) {
  SysexSong bench(0, 4);
  bench.options.SpecialD = true;
  bench.Sysex(2, 5000, "7D 00 F7");
  bench.Fit();
  EXPECT_EQ(bench.song.SysexTrack, 1);
}

TEST(DeviceSysex, SetsUpARolandForSpecialD) {
  SysexSong bench(1);
  bench.options.SpecialD = true;
  bench.Sysex(1, 10, GSReset);
  bench.Fit();
  EXPECT_EQ(bench.song.RolandGSResetPosition, 62);
  EXPECT_THAT(
      bench.Live(1),
      ElementsAre(At(2, GMReset), At(62, GSReset), At(80, "41 10 42 12 40 01 52 5C 11 F7"),
                  At(90, "41 10 42 12 40 01 59 50 16 F7"), At(100, "41 10 42 12 40 01 34 5D 2E F7")));
  EXPECT_EQ(bench.song.RolandDrumSysexArray[0]->Position, 112);
}

TEST(DeviceSysex, KnowsWhereTheGSResetStands) {
  SysexSong bench(12);
  bench.Fit();
  EXPECT_EQ(bench.song.RolandGSResetPosition, 2);

  SysexSong own(12);
  own.Sysex(2, 240, GSReset);
  own.Fit();
  EXPECT_EQ(own.song.RolandGSResetPosition, 240);
  EXPECT_EQ(own.PlaceOf(own.song.RolandDrumSysexArray[15]), "2/320");
}

TEST(DeviceSysex, MovesAnEndOfTrackToTheSongsEnd) {
  SysexSong bench(0);
  EndTrack(bench.song.Pool, bench.Track(2), 700);
  for (int t : {0, 1}) EndTrack(bench.song.Pool, bench.Track(t), bench.song.MaxSongPosition);
  bench.functions.CheckSysexs();
  EXPECT_EQ(bench.Track(2).TrkLastEvent->Position, bench.song.MaxSongPosition);
}

TEST(DeviceSysex, PutsNothingBehindTheSongsEnd) {
  SysexSong bench(12);
  bench.song.MaxSongPosition = 999;
  bench.Sysex(1, 989, GSReset);
  bench.Fit();
  EXPECT_EQ(bench.song.RolandDrumSysexArray[15]->Position, 999);
}

TEST(DeviceSysex, TakesTheSysexesOffTheTempoTrack) {
  SysexSong bench(27);
  PtrMidiEvent a = bench.Sysex(0, 0, "7D 01 F7");
  PtrMidiEvent b = bench.Sysex(0, 5, "7D 02 F7");
  PtrMidiEvent c = bench.Sysex(0, 5, "7D 03 F7");
  PtrMidiEvent note = bench.Note(1, 5);
  PtrMidiEvent d = bench.Sysex(1, 5, "7D 04 F7");
  bench.Fit();
  EXPECT_THAT(bench.Live(0), IsEmpty());
  EXPECT_EQ(bench.Track(0).TrkEventCounter, 2);
  EXPECT_EQ(bench.Track(1).TrkEventCounter, 7);
  // Behind what track 1 has at the same tick, in their own order.
  EXPECT_EQ(a->NextEvent, note);
  EXPECT_EQ(note->NextEvent, d);
  EXPECT_EQ(d->NextEvent, b);
  EXPECT_EQ(b->NextEvent, c);
  EXPECT_THAT(bench.Told(ChangeKind::Moved),
              ElementsAre("1/0 sysex does not belong on the tempo track",
                          "1/5 sysex does not belong on the tempo track",
                          "1/5 sysex does not belong on the tempo track"));
}

TEST(DeviceSysex, MovesWhatItInsertedOnTheTempoTrackAsWell) {
  SysexSong bench(1);
  bench.Sysex(0, 2, "7D 01 F7");
  bench.Sysex(1, 2, GSReset);
  bench.Sysex(0, 3000, "7D 02 F7");
  bench.Fit();
  EXPECT_EQ(bench.song.SysexTrack, 1);

  SysexSong inserted(1);
  inserted.Sysex(0, 2, "7D 01 F7");
  inserted.Fit();
  EXPECT_EQ(inserted.song.SysexTrack, 1);
  EXPECT_EQ(inserted.song.RolandDelaySysexTrack, 1);
  EXPECT_THAT(inserted.Live(0), IsEmpty());
  EXPECT_THAT(inserted.Live(1), ElementsAre("2: 7D 01 F7", At(2, GSReset), testing::_, testing::_));
  EXPECT_EQ(inserted.PlaceOf(inserted.song.RolandDrumSysexArray[3]), "1/58");
  // The user sees where the reset is, not on which way it got there.
  EXPECT_THAT(inserted.Told(ChangeKind::Inserted),
              ElementsAre("1/2 the instrument's reset", "1/80 the instrument's delay setting",
                          "1/90 the instrument's delay setting"));
  EXPECT_THAT(inserted.Told(ChangeKind::Moved),
              ElementsAre("1/2 sysex does not belong on the tempo track"));
}

TEST(DeviceSysex, LeavesTheOnlyTrackItsSysexes) {
  SysexSong bench(27, 1);
  bench.Sysex(0, 0, "7D 01 F7");
  bench.Fit();
  EXPECT_THAT(bench.Live(0), ElementsAre("0: 7D 01 F7"));
}

TEST(MotifInserts, AreOnForTheFirstEightPartsByDefault) {
  SysexSong bench(69);
  bench.Fit();
  EXPECT_EQ(bench.song.MotifInsertsArray.to_string(), "0000000011111111");
  EXPECT_EQ(bench.PlaceOf(bench.song.MotifSysex), "1/95");
}

TEST(MotifInserts, AreReadFromTheSongsSwitchesAndMoveToTheirPlace) {
  SysexSong bench(26, 4);
  bench.Sysex(1, 10, "43 10 7F 12 36 00 4D 00 00 01 7F F7");  // another Motif
  PtrMidiEvent own = bench.Sysex(3, 900, "43 10 7F 00 36 00 60 00 02 41 05 F7");
  bench.Fit();
  EXPECT_EQ(bench.song.MotifSysex, own);
  EXPECT_EQ(bench.PlaceOf(own), "3/95");
  EXPECT_EQ(bench.song.SysexTrack, 3);
  // Parts 1 and 3, 8 and 14, 16.
  EXPECT_EQ(bench.song.MotifInsertsArray.to_string(), "1010000010000101");
  EXPECT_THAT(bench.Told(ChangeKind::Moved), ElementsAre("3/95 the instrument's insert effects"));
}

TEST(MotifInserts, AreNotToldAsMovedWhenTheyStandInTheirPlace) {
  SysexSong bench(51);
  bench.Sysex(1, 95, "43 10 7F 03 36 00 4D 00 00 00 00 F7");
  bench.Fit();
  EXPECT_TRUE(bench.song.MotifInsertsArray.none());
  EXPECT_THAT(bench.log.Changes(), IsEmpty());
}

TEST(MotifInserts, NeedAWholeMessage) {
  SysexSong bench(51);
  PtrMidiEvent shortOne = bench.Sysex(1, 10, "43 10 7F 03 36 00 4D F7");
  bench.Fit();
  EXPECT_NE(bench.song.MotifSysex, shortOne);
  EXPECT_EQ(bench.song.MotifSysex->Position, 95);
}

TEST(MotifInserts, GoWithAGMResetWhenTheEffectMemoryIsOff) {
  SysexSong bench(26);
  bench.options.MotifDSPsEnabled = false;
  bench.Fit();
  EXPECT_THAT(bench.Live(1), ElementsAre(At(2, GMReset), "95: 43 10 7F 00 36 00 60 00 00 01 7F F7"));
}

}  // namespace
}  // namespace Sonarello
