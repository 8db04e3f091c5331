// A format 0 song into format 1: split by channel.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "WriterKit.h"

namespace Sonarello {
namespace {

using testing::Contains;
using testing::ElementsAre;

/// Both ways in which a format 0 song lies in the store.
class WriterSplit : public testing::TestWithParam<bool> {
 protected:
  WriterSplit() { bench.options.UnmixFormat0 = GetParam(); }
  WriterBench bench;
};
INSTANTIATE_TEST_SUITE_P(UnmixedOrNot, WriterSplit, testing::Bool());

TEST_P(WriterSplit, GivesEachChannelItsTrack) {
  bench.Load(Smf(0, 480).Track().Note(1, 60, 0, 10).Note(16, 61, 20, 30).At(40).Ctrl(16, 7, 99).End());
  const WrittenFile file = bench.Write(1);
  EXPECT_EQ(file.Format, 1);
  ASSERT_EQ(file.Tracks.size(), 3U);
  EXPECT_THAT(file.Tracks[0], ElementsAre(HeadLine, "0 name My Song", "999 end"));
  EXPECT_THAT(file.Tracks[1], ElementsAre(HeadLine, "0 903c64", "10 803c40", "999 end"));
  EXPECT_THAT(file.Tracks[2], ElementsAre(HeadLine, "20 9f3d64", "30 8f3d40", "40 bf0763", "999 end"));
}

TEST_P(WriterSplit, SortsMetasOntoTheFirstTwoTracks) {
  bench.Load(Smf(0, 480)
                 .Track()
                 .At(0)
                 .Text(3, "dropped")
                 .Tempo(500000)
                 .Time(4, 2)
                 .Meta(0x54, {1, 2, 3, 4, 5})
                 .Meta(0x59, {0, 0})
                 .Meta(0x4B, {7})
                 .Text(1, "text")
                 .Text(2, "rights")
                 .Text(5, "la")
                 .Text(6, "verse")
                 .Text(7, "cue")
                 .Meta(0x7F, {1})
                 .Meta(0, {0, 1})
                 .Text(4, "free")
                 .End());
  const WrittenFile file = bench.Write(1);
  ASSERT_EQ(file.Tracks.size(), 2U);
  EXPECT_THAT(file.Tracks[0],
              ElementsAre(HeadLine, "0 name My Song", "0 ff51 07a120", "0 ff58 04021808",
                          "0 ff54 0102030405", "0 ff59 0000", "0 ff4b 07", "999 end"));
  EXPECT_THAT(file.Tracks[1], ElementsAre(HeadLine, "0 text text", "0 ff02 726967687473", "0 lyric la",
                                          "0 marker verse", "0 cue cue", "0 ff7f 01", "0 ff00 0001",
                                          "0 instrument free", "999 end"));
}

TEST_P(WriterSplit, SendsChannelTextsOfInstrumentNamesToTheirTracks) {
  bench.Load(Smf(0, 480)
                 .Track()
                 .At(0)
                 .Text(4, "ch.16 Bass")
                 .Text(4, "ch.17 none")
                 .Text(4, "ch.0 none")
                 .Text(4, "ch.3")
                 .Text(4, "ch.x y")
                 .Text(4, "Ch.2 upper")
                 .End());
  const WrittenFile file = bench.Write(1);
  ASSERT_EQ(file.Tracks.size(), 3U);
  EXPECT_THAT(file.Tracks[1], ElementsAre(HeadLine, "0 instrument ch.17 none", "0 instrument ch.0 none",
                                          "0 instrument ch.3", "0 instrument ch.x y",
                                          "0 instrument Ch.2 upper", "999 end"));
  EXPECT_THAT(file.Tracks[2], ElementsAre(HeadLine, "0 instrument ch.16 Bass", "999 end"));
}

TEST_P(WriterSplit, KeepsSysexsOnTrackTenEvenIfChannelTenIsSilent) {
  bench.Load(Smf(0, 480).Track().At(2).Sysex({0x7D, 0xF7}).Note(1, 60, 10, 20).End());
  const WrittenFile file = bench.Write(1);
  ASSERT_EQ(file.Tracks.size(), 3U);
  EXPECT_THAT(file.Tracks[2], ElementsAre(HeadLine, "2 f0 7df7", "999 end"));
}

TEST_P(WriterSplit, GivesSysexsATrackOfTheirOwnWhenAskedTo) {
  bench.options.SysexsOnExtraTrack = true;
  bench.Load(Smf(0, 480).Track().At(2).Sysex({0x7D, 0xF7}).Note(10, 60, 10, 20).End());
  const WrittenFile file = bench.Write(1);
  ASSERT_EQ(file.Tracks.size(), 3U);
  EXPECT_THAT(file.Tracks[2], ElementsAre(HeadLine, "0 name Sysexs", "2 f0 7df7", "999 end"));
}

TEST_P(WriterSplit, LeavesTheExtraTrackOutOfASongWithoutSysexs) {
  bench.options.SysexsOnExtraTrack = true;
  bench.Load(Smf(0, 480).Track().Note(1, 60, 10, 20).End());
  EXPECT_EQ(bench.Write(1).Count("0 name Sysexs"), 0);
}

TEST_P(WriterSplit, NamesTracksAfterTheirSounds) {
  bench.hooks.PatchName = [](const Song&, int channel) { return "Sound " + std::to_string(channel); };
  bench.Load(Smf(0, 480).Track().At(0).Prog(2, 8).On(2, 60).On(3, 60).End());
  const WrittenFile file = bench.Write(1);
  ASSERT_EQ(file.Tracks.size(), 3U);
  EXPECT_EQ(file.Tracks[1][1], "0 name Sound 1");
  EXPECT_EQ(file.Tracks[2][1], "0 923c64")
      << "a channel without program has no sound to be named after";
}

TEST_P(WriterSplit, KeepsLyricsOfASongWithASilentFirstChannel) {
  bench.Load(Smf(0, 480).Track().At(0).Text(5, "la").Note(7, 60, 0, 1).End());
  EXPECT_EQ(bench.Write(1).Count("0 lyric la"), 1);
}

TEST_P(WriterSplit, KeepsChannelEventsThatMakeNoChannelActive) {
  bench.Load(Smf(0, 480).Track().At(0).Bend(9, 1, 64).At(5).Event({0xD8, 60}).End());
  ASSERT_FALSE(bench.Channel(9).Active);
  const WrittenFile file = bench.Write(1);
  EXPECT_EQ(file.Count("0 e80140"), 1);
  EXPECT_EQ(file.Count("5 d83c"), 1);
}

TEST_P(WriterSplit, DropsRemovedEvents) {
  bench.Load(Smf(0, 480).Track().At(0).Prog(1, 1).Note(1, 60, 0, 1).At(3).Sysex({1, 0xF7}).End());
  for (TMyTrack& track : bench.song.MidiTrack)
    ForEachEvent(track, [](PtrMidiEvent e) {
      if (e->Command == Sysex || e->Kind() == ProgramChange) MarkRemoved(e);
    });
  const WrittenFile file = bench.Write(1);
  ASSERT_EQ(file.Tracks.size(), 2U);
  EXPECT_THAT(file.Tracks[1], ElementsAre(HeadLine, "0 903c64", "1 803c40", "999 end"));
}

TEST_P(WriterSplit, ComesBackAsAFormatOneSongWithTheSameMusic) {
  bench.Load(Smf(0, 480)
                 .Track()
                 .At(0)
                 .Tempo(500000)
                 .Text(5, "la")
                 .Prog(1, 5)
                 .Note(1, 60, 0, 10)
                 .Note(10, 36, 20, 30)
                 .At(40)
                 .Sysex({1, 0xF7})
                 .End());
  const WrittenFile once = bench.Write(1);
  WriterBench again;
  again.LoadBytes(bench.last);
  EXPECT_EQ(again.song.MidiFileOrgFormat, 1);
  EXPECT_EQ(again.Write(1).Tracks, once.Tracks);
}

TEST(WriterSplitStrays, SortsEventsThatStandOnAForeignTrackByPosition) {
  WriterBench bench;
  bench.Load(Smf(0, 480).Track().Note(1, 60, 0, 100).Note(2, 61, 200, 300).End());
  InsertByPosition(bench.Track(2), NewChannelEvent(bench.song.Pool, 0xB0, 7, 1, 50));  // channel 1
  InsertByPosition(bench.Track(2), NewChannelEvent(bench.song.Pool, 0xB0, 7, 2, 100));
  const WrittenFile file = bench.Write(1);
  EXPECT_THAT(file.Tracks[1],
              ElementsAre(HeadLine, "0 903c64", "50 b00701", "100 803c40", "100 b00702", "999 end"));
}

}  // namespace
}  // namespace Sonarello
