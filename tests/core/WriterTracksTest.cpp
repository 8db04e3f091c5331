// A format 1 song into format 1: the song's own tracks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "WriterKit.h"

namespace Sonarello {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

Smf TwoTracks() {
  return Smf(1, 480)
      .Track()
      .At(0)
      .Tempo(500000)
      .Time(4, 2)
      .End()
      .Track()
      .At(0)
      .Text(3, "Lead")
      .Prog(1, 5)
      .Note(1, 60, 480, 960)
      .End();
}

TEST(WriterTracks, WritesHeaderHeadsEventsAndEndOfTrack) {
  WriterBench bench;
  bench.Load(TwoTracks());
  const WrittenFile file = bench.Write(1);
  EXPECT_EQ(file.Format, 1);
  EXPECT_EQ(file.Division, 480);
  ASSERT_EQ(file.Tracks.size(), 2U);
  EXPECT_THAT(file.Tracks[0], ElementsAre(HeadLine, "0 ff51 07a120", "0 ff58 04021808", "999 end"));
  EXPECT_THAT(file.Tracks[1],
              ElementsAre(HeadLine, "0 name Lead", "0 c005", "480 903c64", "960 803c40", "999 end"));
  EXPECT_TRUE(bench.messages.Shown.empty());
}

TEST(WriterTracks, LeavesTheSongUntouched) {
  WriterBench bench;
  bench.Load(TwoTracks());
  bench.RouteAway(1);
  bench.song.VelocityDelta[0] = 20;
  const std::size_t live = bench.song.Pool.Live();
  const Bytes first = bench.Encode(1);
  static_cast<void>(bench.Encode(0));
  EXPECT_EQ(bench.song.Pool.Live(), live);
  EXPECT_TRUE(CheckSong(bench.song).empty());
  EXPECT_EQ(bench.Event(1, 3)->Value[1], 100);
  EXPECT_EQ(bench.Encode(1), first);
}

TEST(WriterTracks, LeavesRemovedAndNeutralisedEventsOut) {
  WriterBench bench;
  bench.Load(TwoTracks());
  MarkRemoved(bench.Event(1, 2));
  Neutralise(bench.Event(1, 3));
  EXPECT_THAT(bench.Write(1).Tracks[1], ElementsAre(HeadLine, "0 name Lead", "960 803c40", "999 end"));
}

TEST(WriterTracks, LeavesPlaceholderControllersOut) {
  WriterBench bench;
  bench.Load(TwoTracks());
  PtrMidiEvent placeholder = NewChannelEvent(bench.song.Pool, 0xB0, 7, 100, 500);
  placeholder->DLength = 0;
  InsertByPosition(bench.Track(1), placeholder);
  EXPECT_EQ(bench.Write(1).Count("500 b00764"), 0);
  placeholder->DLength = 3;
  EXPECT_EQ(bench.Write(1).Count("500 b00764"), 1);
}

TEST(WriterTracks, LeavesTracksOutThatHoldNoMoreThanAName) {
  WriterBench bench;
  bench.Load(Smf(1, 480)
                 .Track()
                 .At(0)
                 .Tempo(500000)
                 .End()
                 .Track()
                 .At(0)
                 .Text(3, "only a name")
                 .End()
                 .Track()
                 .End()
                 .Track()
                 .Note(4, 60, 0, 10)
                 .End());
  const WrittenFile file = bench.Write(1);
  ASSERT_EQ(file.Tracks.size(), 2U);
  EXPECT_THAT(file.Tracks[1], Contains("0 933c64"));
}

TEST(WriterTracks, KeepsAnEmptyFirstTrack) {
  WriterBench bench;
  bench.Load(Smf(1, 480).Track().End().Track().Note(1, 60, 0, 10).End());
  const WrittenFile file = bench.Write(1);
  ASSERT_EQ(file.Tracks.size(), 2U);
  EXPECT_THAT(file.Tracks[0], ElementsAre(HeadLine, "999 end"));
}

TEST(WriterTracks, LosesNoNoteOfATrackWhoseChannelIsNotItsIndex) {
  WriterBench bench;
  Smf smf(1, 480);
  smf.Track().At(0).Tempo(500000).End();
  for (int t = 1; t <= 16; ++t) smf.Track().Note(16, 20 + t, t, t + 10).End();  // channel 16 only
  smf.Track().Note(3, 100, 5, 6).Note(5, 101, 7, 8).End();
  for (int t = 18; t < 40; ++t) smf.Track().At(0).Text(5, "la").End();
  bench.Load(smf);
  for (const bool extra : {false, true}) {
    bench.options.SysexsOnExtraTrack = extra;
    const WrittenFile file = bench.Write(1);
    ASSERT_EQ(file.Tracks.size(), 40U);
    for (int t = 1; t <= 16; ++t)
      EXPECT_EQ(file.Tracks[static_cast<std::size_t>(t)].size(), 4U) << "track " << t;
    EXPECT_THAT(file.Tracks[17], Contains("7 946564"));
    EXPECT_EQ(file.Count("0 lyric la"), 22);
  }
}

TEST(WriterTracks, KeepsTracksOfChannelsThatAreNotActive) {
  WriterBench bench;
  bench.Load(Smf(1, 480).Track().At(0).Tempo(500000).End().Track().At(0).Bend(2, 0, 64).End());
  ASSERT_FALSE(bench.Channel(2).Active);
  EXPECT_EQ(bench.Write(1).Count("0 e10040"), 1);
}

TEST(WriterTracks, WritesIgnoredTracksAsWell) {
  WriterBench bench;
  bench.Load(TwoTracks());
  bench.Track(1).TrkIgnore = true;
  EXPECT_EQ(bench.Write(1).Count("480 903c64"), 1);
}

TEST(WriterTracks, LeavesTrackHeadsOutWhenAskedTo) {
  WriterBench bench;
  bench.Load(TwoTracks());
  bench.options.DontSaveSMF33 = true;
  EXPECT_EQ(bench.Write(1).Count(HeadLine), 0);
}

TEST(WriterTracks, RenamesTheSongAfterItsFile) {
  WriterBench bench;
  bench.options.InsertSongName = true;
  bench.Load(Smf(1, 480)
                 .Track()
                 .At(0)
                 .Text(3, "old")
                 .Text(3, "kept removed")
                 .End()
                 .Track()
                 .Note(1, 60, 0, 9)
                 .End());
  ASSERT_NE(bench.song.SongNameEvent, nullptr);
  const WrittenFile file = bench.Write(1, "/songs/Schöner Abend.kar.mid");
  EXPECT_THAT(file.Tracks[0], ElementsAre(HeadLine, "0 name Schöner Abend.kar", "999 end"));
  EXPECT_EQ(bench.song.SongNameEvent->Meta.Text(), "old");
}

TEST(WriterTracks, KeepsTrackNamesOfASongWithoutSongNameEvent) {
  WriterBench bench;
  bench.Load(TwoTracks());
  EXPECT_EQ(bench.Write(1, "other.mid").Count("0 name Lead"), 1);
}

TEST(WriterTracks, WritesTheExtraSysexTrackThatTheSongHas) {
  WriterBench bench;
  bench.options.SysexsOnExtraTrack = true;
  bench.Load(Smf(1, 480)
                 .Track()
                 .At(0)
                 .Tempo(500000)
                 .End()
                 .Track()
                 .At(10)
                 .Sysex({0x7D, 1, 0xF7})
                 .Note(1, 60, 20, 30)
                 .End());
  const WrittenFile file = bench.Write(1);
  ASSERT_EQ(file.Tracks.size(), 3U);
  EXPECT_THAT(file.Tracks[1], Not(Contains("10 f0 7d01f7")));
  EXPECT_THAT(file.Tracks[2], Contains("10 f0 7d01f7"));
}

TEST(WriterTracks, WritesTheTrueNumberOfTracksBeyond255) {
  WriterBench bench;
  Smf smf(1, 96);
  for (int t = 0; t < 1000; ++t) smf.Track().Note(1 + t % 16, 60, t, t + 1).End();
  bench.Load(smf);
  EXPECT_EQ(bench.Write(1).Tracks.size(), 1000U);
}

TEST(WriterTracks, WritesTheGreatestNumberOfTracksAndNoMore) {
  WriterBench bench;
  bench.LoadBytes(TwoTracks().Build());
  const auto addTracks = [&](std::size_t count) {
    bench.song.MidiTrack.resize(count);
    bench.song.NumberOfSourceTracks = static_cast<std::int32_t>(count);
    for (TMyTrack& track : bench.song.MidiTrack) {
      if (track.TrkFirstEvent != nullptr) continue;
      BeginTrack(bench.song.Pool, track);
      Append(track, NewChannelEvent(bench.song.Pool, 0xC5, 1, 0, 7));
      EndTrack(bench.song.Pool, track, bench.song.MaxSongPosition);
    }
  };
  addTracks(65535);
  EXPECT_EQ(bench.Write(1).Tracks.size(), 65535U);
  EXPECT_EQ(bench.Write(0).Count("7 c501"), 65533);
  addTracks(65536);
  EXPECT_THROW(bench.Encode(1), EMidiError);
  EXPECT_EQ(bench.Write(0).Count("7 c501"), 65534);
}

TEST(WriterTracks, RefusesASongWithoutTracks) {
  WriterBench bench;
  EXPECT_THROW(bench.Encode(1), EMidiError);
  EXPECT_THROW(bench.Encode(0), EMidiError);
}

TEST(WriterTracks, CarriesSongsOfTheLongestPossibleTime) {
  WriterBench bench;
  bench.Load(TwoTracks());
  PtrMidiEvent late = NewChannelEvent(bench.song.Pool, 0xC0, 9, 0, LastPosition);
  bench.song.MaxSongPosition = LastPosition + 10;
  for (TMyTrack& track : bench.song.MidiTrack) EndTrack(bench.song.Pool, track, LastPosition + 10);
  InsertByPosition(bench.Track(1), late);
  const Bytes bytes = bench.Encode(1);
  EXPECT_EQ(WrittenFile(bytes).Count(std::to_string(LastPosition) + " c009"), 1);
  WriterBench again;
  again.LoadBytes(bytes);
  EXPECT_EQ(again.song.MaxSongPosition, LastPosition + 10);
  EXPECT_EQ(again.Encode(1), bytes);
}

TEST(WriterTracks, ComesBackTheSameAfterLoadAndSave) {
  WriterBench bench;
  bench.Load(Smf(1, 480)
                 .Track()
                 .At(0)
                 .Tempo(500000)
                 .Time(3, 2)
                 .Meta(0x59, {2, 0})
                 .At(960)
                 .Tempo(400000)
                 .End()
                 .Track()
                 .At(0)
                 .Text(3, "Lead")
                 .Prog(1, 5)
                 .Note(1, 60, 480, 960)
                 .At(1000)
                 .Sysex({1, 2, 0xF7})
                 .End()
                 .Track()
                 .At(0)
                 .Text(5, "la")
                 .At(20)
                 .On(2, 60, 0)
                 .Bend(2, 1, 2)
                 .Event({0xD1, 5})
                 .End());
  const Bytes once = bench.Encode(1);
  for (const bool running : {false, true}) {
    WriterBench again;
    again.options.SaveMidiRunningMode = running;
    again.LoadBytes(once);
    const Bytes twice = again.Encode(1);
    EXPECT_EQ(WrittenFile(twice).Tracks, WrittenFile(once).Tracks);
  }
}

}  // namespace
}  // namespace Sonarello
