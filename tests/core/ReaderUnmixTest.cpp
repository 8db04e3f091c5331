// Format 0 files: split by channel, or left as they are.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/ReaderBench.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Smf OneOfEach() {
  Smf file(0);
  file.Track().Meta(0, {0, 1}).Text(1, "a").Text(2, "b").Text(3, "c").Text(4, "d").Text(5, "e");
  file.Text(6, "f").Text(7, "g").Text(8, "h").Meta(0x4B, {1}).Meta(0x7F, {2}).Meta(0x30, {3});
  file.Tempo(400'000).Time(3, 2).Meta(0x59, {1, 0}).Meta(0x54, {0, 0, 0, 0, 0}).Sysex({1, 0xF7});
  for (int channel = 1; channel <= 16; ++channel) file.On(channel, channel);
  return file.End();
}

TEST(ReaderUnmix, SplitsAFormat0FileByChannelInto17Tracks) {
  ReaderBench w;
  w.Decode(OneOfEach().Build());
  EXPECT_EQ(w.song.MidiFileFormat, 1);
  EXPECT_EQ(w.song.MidiFileOrgFormat, 0);
  ASSERT_EQ(w.song.NumberOfSourceTracks, 17);
  EXPECT_THAT(w.List(0), ElementsAre("0 FF51 06 1A 80", "0 FF58 03 02 18 08", "0 FF59 01 00",
                                     "0 FF54 00 00 00 00 00"));
  EXPECT_THAT(w.List(1), ElementsAre("0 FF00 00 01", "0 FF01 61", "0 FF02 62", "0 FF03 63", "0 FF04 64",
                                     "0 FF05 65", "0 FF06 66", "0 FF07 67", "0 FF08 68", "0 FF4B 01",
                                     "0 FF7F 02", "0 FF30 03", "0 90 1 100"));
  EXPECT_THAT(w.List(10), ElementsAre("0 F0 01 F7", "0 99 10 100"));
  EXPECT_THAT(w.List(16), ElementsAre("0 9F 16 100"));
  EXPECT_EQ(w.Track(0).TrkMidiIndex, -1);
  for (int t = 1; t <= 16; ++t) EXPECT_EQ(w.Track(t).TrkMidiIndex, t - 1);
  EXPECT_EQ(w.song.SysexFoundOnTrack, 10);
  EXPECT_EQ(w.song.KeySignArray.size(), 17u);
  EXPECT_EQ(w.song.KeySignArray[0].Elements, 1);
  EXPECT_EQ(w.song.SourceTempo[0].TempoLongInt, 400'000);
  EXPECT_EQ(w.song.TimeSignature[0].Numerator, 3);
  EXPECT_THAT(CheckSong(w.song), IsEmpty());
}

TEST(ReaderUnmix, LeavesAFormat0FileInOneTrackWhenToldTo) {
  ReaderBench w;
  w.options.UnmixFormat0 = false;
  w.Decode(OneOfEach().Build());
  EXPECT_EQ(w.song.MidiFileFormat, 0);
  ASSERT_EQ(w.song.NumberOfSourceTracks, 1);
  EXPECT_EQ(w.List(0).size(), 33u);
  EXPECT_EQ(w.Track(0).TrkMidiIndex, 16);
  EXPECT_EQ(w.song.SysexFoundOnTrack, 0);
  EXPECT_THAT(CheckSong(w.song), IsEmpty());
}

TEST(ReaderUnmix, SplitsAOneTrackFileOfFormat1AsWell) {
  ReaderBench w;
  w.Decode(Smf(1).Track().On(5, 60).End().Build());
  EXPECT_EQ(w.song.NumberOfSourceTracks, 17);
  EXPECT_THAT(w.List(5), ElementsAre("0 94 60 100"));
}

TEST(ReaderUnmix, MarksTheTrackOfAChord) {
  ReaderBench w;
  w.Decode(Smf(0).Track().Meta(0x7F, {0x43, 0x7B, 1, 0x31, 0, 0x31, 0}).End().Build());
  EXPECT_EQ(w.song.XF_Track, 1);
  w.song.ClearMidiMemory();
  w.Decode(Smf(0).Track().Sysex({0x43, 0x7E, 2, 0x31, 0, 0x31, 0, 0xF7}).End().Build());
  EXPECT_EQ(w.song.XF_Track, 10);
}

TEST(ReaderUnmix, BringsSeveralChunksIntoTheOrderOfTimeKeepingTheOrderOfATick) {
  ReaderBench w;
  w.Decode(Smf(0)
               .Track()
               .At(10)
               .On(1, 1)
               .Tempo(100'000)
               .At(30)
               .On(1, 2)
               .Sysex({1})
               .Tempo(300'000)
               .Time(5, 2)
               .End()
               .Track()
               .At(10)
               .On(1, 3)
               .At(20)
               .On(1, 4)
               .Sysex({2})
               .Tempo(200'000)
               .Time(4, 2)
               .At(30)
               .On(1, 5)
               .End()
               .Build());
  EXPECT_THAT(w.List(1),
              ElementsAre("10 90 1 100", "10 90 3 100", "20 90 4 100", "30 90 2 100", "30 90 5 100"));
  EXPECT_THAT(w.List(10), ElementsAre("20 F0 02", "30 F0 01"));
  ASSERT_EQ(w.song.SourceTempoElements, 4);
  EXPECT_EQ(w.song.SourceTempo[0].TempoLongInt, 100'000);
  EXPECT_EQ(w.song.SourceTempo[1].TempoLongInt, 200'000);
  EXPECT_EQ(w.song.SourceTempo[2].TempoLongInt, 300'000);
  EXPECT_EQ(w.song.SourceTempo[3].SongPosition, 1000);
  EXPECT_EQ(w.song.TimeSignature[0].Numerator, 4);
  EXPECT_EQ(w.song.TimeSignature[1].Numerator, 5);
  ASSERT_EQ(w.functions.SourceSysexes.size(), 2u);
  EXPECT_EQ(w.functions.SourceSysexes[0].Event->Position, 20);
  EXPECT_THAT(CheckSong(w.song), IsEmpty());
}

TEST(ReaderUnmix, ReadsMoreThan17ChunksByChannel) {
  ReaderBench w;
  Smf file(0);
  for (int i = 0; i < 40; ++i) file.Track().At(40 - i).On(i % 16 + 1, i + 1).End();
  EXPECT_EQ(w.Verdict(file.Build()), "");
  EXPECT_EQ(w.song.NumberOfSourceTracks, 17);
  EXPECT_THAT(w.List(1), ElementsAre("8 90 33 100", "24 90 17 100", "40 90 1 100"));
  EXPECT_THAT(CheckSong(w.song), IsEmpty());
}

TEST(ReaderUnmix, KeepsSeveralChunksApartInAFormat0FileThatStaysAsItIs) {
  ReaderBench w;
  w.options.UnmixFormat0 = false;
  w.Decode(Smf(0).Track().At(9).On(1, 1).End().Track().Tempo(300'000).On(2, 2).End().Build());
  EXPECT_EQ(w.song.MidiFileFormat, 0);
  EXPECT_EQ(w.song.NumberOfSourceTracks, 2);
  EXPECT_THAT(w.List(0), ElementsAre("9 90 1 100"));
  EXPECT_THAT(w.List(1), ElementsAre("0 FF51 04 93 E0", "0 91 2 100"));
  // The second chunk is not track 0, so its tempo is an event only.
  EXPECT_EQ(w.song.SourceTempo[0].TempoLongInt, 500'000);
  EXPECT_EQ(w.Track(0).TrkMidiIndex, 16);
  EXPECT_THAT(CheckSong(w.song), IsEmpty());
}

}  // namespace
}  // namespace Sonarello
