// Tempo, signature and key tables; names, lyrics and chords.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/ReaderBench.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ReaderTables, StandAt120And44WithSpareEntriesInAFileThatSaysNothing) {
  ReaderBench w;
  w.Decode(Smf(1).Track().End().Track().End().Build());
  ASSERT_EQ(w.song.SourceTempoElements, 2);
  ASSERT_EQ(w.song.SourceTempo.size(), 2u);
  EXPECT_EQ(w.song.SourceTempo[0].SongPosition, 0);
  EXPECT_EQ(w.song.SourceTempo[0].Tempo, 120);
  EXPECT_EQ(w.song.SourceTempo[0].TempoLongInt, 500'000);
  EXPECT_EQ(w.song.SourceTempo[1].SongPosition, 1000);
  EXPECT_EQ(w.song.SourceTempo[1].Tempo, 120);
  ASSERT_EQ(w.song.TimeSignElements, 2);
  EXPECT_EQ(w.song.TimeSignature[0].SongPosition, 0);
  EXPECT_EQ(w.song.TimeSignature[0].Numerator, 4);
  EXPECT_EQ(w.song.TimeSignature[0].Denominator, 4);
  EXPECT_EQ(w.song.TimeSignature[0].TicksInMClick, 0);
  EXPECT_EQ(w.song.TimeSignature[0]._32NotesInQNote, 0);
  EXPECT_EQ(w.song.TimeSignature[1].SongPosition, 1000);
}

TEST(ReaderTables, TakeTheTempiOfTrack0WithOneSpareEntry) {
  ReaderBench w;
  w.Decode(Smf(1)
               .Track()
               .At(10)
               .Tempo(0)
               .At(20)
               .Tempo(468'750)
               .Meta(0x51, {1, 2})
               .At(30)
               .Tempo(1)
               .End()
               .Track()
               .At(15)
               .Tempo(250'000)
               .At(2000)
               .On(1, 60)
               .End()
               .Build());
  // The tempo of the wrong length has its entry, which stays spare.
  ASSERT_EQ(w.song.SourceTempoElements, 5);
  const auto& tempi = w.song.SourceTempo;
  EXPECT_EQ(tempi[0].SongPosition, 10);
  EXPECT_EQ(tempi[0].TempoLongInt, 500'000);  // a tempo of 0 counts as 120
  EXPECT_EQ(tempi[0].Tempo, 120);
  EXPECT_EQ(tempi[1].SongPosition, 20);
  EXPECT_EQ(tempi[1].Tempo, 128);
  EXPECT_EQ(tempi[1].OldTempoLongInt, 468'750);
  EXPECT_EQ(tempi[1].OriginalTempoLongint, 468'750);
  EXPECT_EQ(tempi[2].TempoLongInt, 1);
  EXPECT_EQ(tempi[2].Tempo, 65535);  // 60,000,000 do not fit
  for (const std::size_t spare : {3u, 4u}) {
    EXPECT_EQ(tempi[spare].SongPosition, 2011);
    EXPECT_EQ(tempi[spare].TempoLongInt, 1);
  }
  // Elsewhere a tempo is an event like others.
  EXPECT_EQ(w.List(1).front(), "15 FF51 03 D0 90");
  // The meta keeps the bytes as read.
  EXPECT_EQ(w.List(0).front(), "10 FF51 00 00 00");
}

TEST(ReaderTables, RoundBeatsToNearestAndHalvesToEven) {
  const auto beats = [](int micros) {
    ReaderBench w;
    w.Decode(Smf(1).Track().Tempo(micros).End().Track().End().Build());
    return w.song.SourceTempo[0].Tempo;
  };
  EXPECT_EQ(beats(480'000), 125);
  EXPECT_EQ(beats(600'001), 100);
  EXPECT_EQ(beats(375'000), 160);
  EXPECT_EQ(beats(16'000'000), 4);  // 3.75
  EXPECT_EQ(beats(937'500), 64);
  EXPECT_EQ(beats(13'333'333), 5);  // 4.5000001
  EXPECT_EQ(beats(8'000'000), 8);   // 7.5
  EXPECT_EQ(beats(9'600'000), 6);   // 6.25
  EXPECT_EQ(beats(1'600'000), 38);  // 37.5
  EXPECT_EQ(beats(960'000), 62);    // 62.5
}

TTimeSign FirstSignature(std::initializer_list<int> bytes) {
  ReaderBench w;
  w.Decode(Smf(1).Track().At(7).Meta(0x58, bytes).End().Track().End().Build());
  EXPECT_EQ(w.song.TimeSignElements, 2);
  EXPECT_EQ(w.List(0).size(), 1u);  // the meta stays as read
  EXPECT_EQ(w.Event(0, 1)->Meta[0], *bytes.begin());
  return w.song.TimeSignature[0];
}

TEST(ReaderTables, TakeTheTimeSignaturesOfTrack0) {
  const TTimeSign six = FirstSignature({6, 3, 36, 8});
  EXPECT_EQ(six.SongPosition, 7);
  EXPECT_EQ(six.Numerator, 6);
  EXPECT_EQ(six.Denominator, 8);
  EXPECT_EQ(six.TicksInMClick, 36);
  EXPECT_EQ(six._32NotesInQNote, 8);
  EXPECT_EQ(FirstSignature({3, 0, 24, 8}).Denominator, 1);
  EXPECT_EQ(FirstSignature({3, 7, 24, 8}).Denominator, 128);
  EXPECT_EQ(FirstSignature({3, 34, 24, 8}).Denominator, 4);  // the shift counts modulo 32
  EXPECT_EQ(FirstSignature({255, 2, 24, 8}).Numerator, 255);
}

TEST(ReaderTables, Take44WhereNoMeasureCanBeCounted) {
  for (const auto& bytes : {std::initializer_list<int>{0, 2, 24, 8}, {3, 8, 24, 8}, {5, 31, 24, 8}}) {
    const TTimeSign entry = FirstSignature(bytes);
    EXPECT_EQ(entry.Numerator, 4);
    EXPECT_EQ(entry.Denominator, 4);
    EXPECT_EQ(entry.SongPosition, 7);
  }
}

TEST(ReaderTables, LeaveTimeSignaturesOfOtherTracksInTheirLists) {
  ReaderBench w;
  w.Decode(Smf(1).Track().End().Track().Time(3, 2).End().Build());
  EXPECT_EQ(w.song.TimeSignature[0].Numerator, 4);
  EXPECT_THAT(w.List(1), ElementsAre("0 FF58 03 02 18 08"));
}

TEST(ReaderTables, KeepKeySignaturesPerTrackWithFlatsBelowZero) {
  ReaderBench w;
  w.Decode(Smf(1)
               .Track()
               .Meta(0x59, {2, 0})
               .End()
               .Track()
               .Meta(0x59, {0xFD, 1})
               .Meta(0x59, {0, 0})
               .End()
               .Build());
  ASSERT_EQ(w.song.KeySignArray.size(), 2u);
  EXPECT_EQ(w.song.KeySignArray[0].Elements, 1);
  EXPECT_EQ(w.song.KeySignArray[1].Elements, 2);
  const TKeySigns& flats = w.song.KeySignArray[1].ValArray.at(0);
  EXPECT_EQ(flats.MidiEvent, w.Event(1, 1));
  EXPECT_EQ(flats.SF, -3);
  EXPECT_EQ(flats.MI, 1);
}

TEST(ReaderTables, NameATrackByItsFirstNameAndMarkLaterOnesOfTrack0AsRemoved) {
  ReaderBench w;
  w.Decode(Smf(1)
               .Track()
               .Text(3, "One")
               .Text(3, "Two")
               .End()
               .Track()
               .Text(3, "Three")
               .Text(3, "Four")
               .End()
               .Build());
  EXPECT_EQ(w.Track(0).TrkName, "One");
  EXPECT_EQ(w.Track(1).TrkName, "Three");
  EXPECT_THAT(w.List(0), ElementsAre("0 FF03 4F 6E 65", "-0 FF03 54 77 6F"));
  EXPECT_FALSE(w.Event(1, 2)->IsRemoved());
  EXPECT_EQ(w.song.SequenceNameOrg, "");
}

TEST(ReaderTables, RememberTheSequenceNameOfAFormat0File) {
  for (const bool unmix : {false, true}) {
    ReaderBench w;
    w.options.UnmixFormat0 = unmix;
    w.Decode(Smf(0).Track().Text(3, "Song").Text(3, "Other").End().Build());
    EXPECT_EQ(w.song.SequenceNameOrg, "Song");
    EXPECT_EQ(w.Track(unmix ? 1 : 0).TrkName, "Song");
    // Names of an unmixed file go to track 1, where later ones stay.
    EXPECT_EQ(w.Event(unmix ? 1 : 0, 2)->IsRemoved(), !unmix);
  }
}

TEST(ReaderTables, CountEveryNodeOfATrack) {
  ReaderBench w;
  w.Decode(
      Smf(1).Track().Meta(0, {0, 1}).Text(3, "a").Text(3, "b").On(1, 60).End().Track().End().Build());
  EXPECT_EQ(w.Track(0).TrkEventCounter, 6);
}

// --- Word-box files

Lines WordBox(bool search, std::initializer_list<int> sysex) {
  ReaderBench w;
  w.options.WordBoxSearch = search;
  w.Decode(Smf(1)
               .Track()
               .Text(1, "a")
               .Sysex(sysex)
               .Text(1, "b")
               .Text(1, "")
               .Text(5, "c")
               .Text(5, "")
               .Text(6, "d")
               .End()
               .Track()
               .End()
               .Build());
  EXPECT_THAT(CheckSong(w.song), IsEmpty());
  Lines lines = w.List(0);
  lines.erase(lines.begin() + 1);
  return lines;
}

TEST(ReaderTables, ReadTextsOfAWordBoxFileAsLyricLines) {
  EXPECT_THAT(WordBox(true, {0, 0x20, 0x24, 0, 1}),
              ElementsAre("0 FF01 61", "0 FF05 62 0D", "0 FF05 0D", "0 FF05 63 0D", "0 FF06 64"));
}

TEST(ReaderTables, LeaveTextsAsTheyAreWithoutAWordBox) {
  const Lines asRead = {"0 FF01 61", "0 FF01 62", "0 FF05 63", "0 FF06 64"};
  EXPECT_EQ(WordBox(false, {0, 0x20, 0x24, 0, 1}), asRead);
  EXPECT_EQ(WordBox(true, {0, 0x20, 0x24, 0}), asRead);
  EXPECT_EQ(WordBox(true, {0, 0x20, 0x24, 1, 1}), asRead);
}

// --- Chords

TEST(ReaderTables, SpellTheRootsOfXFChordsInOneWay) {
  const int spellings[][2] = {{0x21, 0x37}, {0x24, 0x33}, {0x43, 0x34}, {0x47, 0x31}, {0x31, 0x31}};
  for (const auto& spelling : spellings) {
    const int root = spelling[0];
    ReaderBench w;
    w.Decode(Smf(1)
                 .Track()
                 .End()
                 .Track()
                 .At(4)
                 .Meta(0x7F, {0x43, 0x7B, 1, root, root, root, root})
                 .End()
                 .Build());
    const TypMidiEvent& chord = *w.Event(1, 1);
    EXPECT_EQ(chord.Meta[3], spelling[1]);
    EXPECT_EQ(chord.Meta[4], root);
    EXPECT_EQ(chord.Meta[5], spelling[1]);
    EXPECT_EQ(chord.Meta[6], root);
    EXPECT_TRUE(w.song.XF_Format);
    EXPECT_EQ(w.song.XF_Track, 1);
    EXPECT_EQ(w.song.XF_ChordsArrayElements, 1);
  }
}

TEST(ReaderTables, TakeNeitherShortNorForeignDataForXFChords) {
  ReaderBench w;
  w.Decode(Smf(1)
               .Track()
               .Meta(0x7F, {0x43, 0x7B, 1, 0x21, 0, 0x21})
               .Meta(0x7F, {0x43, 0x7B, 0, 0x21, 0, 0x21, 0})
               .Meta(0x7F, {0x41, 0x7B, 1, 0x21, 0, 0x21, 0})
               .End()
               .Track()
               .End()
               .Build());
  EXPECT_FALSE(w.song.XF_Format);
  EXPECT_EQ(w.Event(0, 2)->Meta[3], 0x21);
}

TEST(ReaderTables, ReadStyleChordsInSysexes) {
  ReaderBench w;
  w.Decode(Smf(1)
               .Track()
               .Sysex({0x43, 0x7E, 2, 0x24, 0, 0x47, 0, 0xF7})
               .Sysex({0x43, 0x7E, 2, 0x24, 0, 0x47, 0xF7})
               .Sysex({0x43, 0x7E, 2, 0x24, 0, 0x47, 0, 0, 0xF7})
               .End()
               .Track()
               .End()
               .Build());
  EXPECT_EQ(Line(*w.Event(0, 1)), "0 F0 43 7E 02 33 00 31 00 F7");
  EXPECT_EQ(w.Event(0, 2)->Meta[3], 0x24);
  EXPECT_EQ(w.Event(0, 3)->Meta[3], 0x24);
  EXPECT_EQ(w.song.XF_ChordsArrayElements, 1);
  EXPECT_EQ(w.song.XF_Track, 0);
}

}  // namespace
}  // namespace Sonarello
