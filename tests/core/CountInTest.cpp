// Where a song proper begins behind its count-in.
#include "core/CountIn.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "helpers/ReaderBench.h"

namespace Sonarello {
namespace {

struct TPart {
  int Channel;
  std::vector<std::pair<int, int>> Notes;  ///< tick and key
  int Program = -1;
};

/// A song at 480 ticks per quarter with a track per part.
struct PlayedSong : ReaderBench {
  explicit PlayedSong(const std::vector<TPart>& parts, int numerator = 4, int exponent = 2) {
    Smf file(1);
    file.Track();
    if (numerator > 0) file.Time(numerator, exponent);
    file.End();
    for (const TPart& part : parts) {
      file.Track();
      if (part.Program >= 0) file.Prog(part.Channel, part.Program);
      for (const auto& [tick, key] : part.Notes) file.At(tick).On(part.Channel, key);
      file.At(20'000).Off(part.Channel, 0).End();
    }
    Decode(file.Build());
  }
  const TCountIn& Of(int channel) { return song.CountInArray[static_cast<std::size_t>(channel - 1)]; }
};

constexpr int SongEnd = 20'010;

/// Equal notes of one key at a step.
std::vector<std::pair<int, int>> Clicks(int count, int from, int step, int key = 37) {
  std::vector<std::pair<int, int>> notes;
  for (int i = 0; i < count; ++i) notes.emplace_back(from + i * step, key);
  return notes;
}

std::vector<std::pair<int, int>> With(std::vector<std::pair<int, int>> notes, int tick, int key) {
  notes.emplace_back(tick, key);
  return notes;
}

TEST(CountIn, FindsFourBeatsInFrontOfTheSong) {
  PlayedSong w({{10, With(Clicks(4, 480, 480), 2400, 36)}, {1, {{2400, 60}}}});
  EXPECT_EQ(w.song.CountInIdx, 9);
  EXPECT_EQ(w.song.TickPositionOfFirstNote, 2400);
  EXPECT_EQ(w.Of(10).Count, 4);
  EXPECT_EQ(w.Of(10).Key, 37);
  EXPECT_EQ(w.Of(10).Start, 480);
  EXPECT_EQ(w.Of(10).End, 1920);
  EXPECT_EQ(w.Of(10).FirstNotePos, 2400);
  EXPECT_EQ(w.Of(10).NoteCount, 5);
  EXPECT_EQ(w.Of(10).Track, 1);
}

TEST(CountIn, LeavesSilentChannelsEmpty) {
  PlayedSong w({{1, {{100, 60}}}});
  EXPECT_EQ(w.song.CountInIdx, -1);
  EXPECT_EQ(w.song.TickPositionOfFirstNote, 100);
  EXPECT_EQ(w.Of(2).Count, 0);
  EXPECT_EQ(w.Of(2).NoteCount, 0);
  EXPECT_EQ(w.Of(2).Track, 65'535);
  EXPECT_EQ(w.Of(2).FirstNotePos, SongEnd);
  EXPECT_EQ(w.Of(2).Start, SongEnd);
  EXPECT_EQ(w.Of(2).End, SongEnd);
}

TEST(CountIn, EndsAtTheSongsEndInASongWithoutNotes) {
  PlayedSong w(std::vector<TPart>{{1, {}}});
  EXPECT_EQ(w.song.TickPositionOfFirstNote, SongEnd);
  EXPECT_EQ(w.song.CountInIdx, -1);
}

TEST(CountIn, DisregardsNotesBeforeTick5AndNoteOns0) {
  PlayedSong w({{1, {{4, 60}, {5, 61}}}});
  EXPECT_EQ(w.Of(1).NoteCount, 1);
  EXPECT_EQ(w.song.TickPositionOfFirstNote, 5);
  ReaderBench silent;
  silent.Decode(Smf(1).Track().End().Track().At(10).On(1, 60, 0).At(20).On(1, 60, 1).End().Build());
  EXPECT_EQ(silent.song.TickPositionOfFirstNote, 20);
}

TEST(CountIn, TakesStepsOfABeatOrHalfABeatWithin14Ticks) {
  const auto counted = [](int step) {
    PlayedSong w({{10, With(Clicks(3, 480, step), 480 + 3 * step, 36)}});
    EXPECT_EQ(w.song.CountInIdx, w.Of(10).Count >= 2 ? 9 : -1);
    return w.Of(10).Count;
  };
  for (const int step : {480, 466, 494, 240, 226, 254}) EXPECT_EQ(counted(step), 3) << step;
  for (const int step : {465, 495, 225, 255, 720, 960, 10, 0}) EXPECT_EQ(counted(step), 0) << step;
}

TEST(CountIn, TakesThreeEighthsForTheBeatInASignatureOfEighths) {
  const auto counted = [](int step) {
    PlayedSong w({{10, With(Clicks(3, 480, step), 480 + 3 * step, 36)}}, 6, 3);
    return w.Of(10).Count;
  };
  for (const int step : {720, 706, 734, 240}) EXPECT_EQ(counted(step), 3) << step;
  for (const int step : {480, 705, 735}) EXPECT_EQ(counted(step), 0) << step;
}

TEST(CountIn, EndsBehindAMeasure) {
  // The fifth equal note of a 4/4 belongs to the song.
  PlayedSong four({{10, Clicks(8, 480, 480)}});
  EXPECT_EQ(four.Of(10).FirstNotePos, 480 + 4 * 480);
  EXPECT_EQ(four.Of(10).Count, 5);
  EXPECT_EQ(four.Of(10).End, 480 + 3 * 480);
  PlayedSong three({{10, Clicks(8, 480, 480)}}, 3);
  EXPECT_EQ(three.Of(10).FirstNotePos, 480 + 3 * 480);
  // Without a signature it is four beats.
  PlayedSong silent({{10, Clicks(8, 480, 480)}}, 0);
  EXPECT_EQ(silent.Of(10).FirstNotePos, 480 + 4 * 480);
}

TEST(CountIn, LeavesTheFirstNoteAtTheSongsEndWhenNothingStopsTheWalk) {
  PlayedSong w({{10, Clicks(4, 480, 480)}, {1, {{2400, 60}}}});
  EXPECT_EQ(w.Of(10).FirstNotePos, SongEnd);
  EXPECT_EQ(w.song.TickPositionOfFirstNote, 2400);
  EXPECT_EQ(w.song.CountInIdx, 9);
}

TEST(CountIn, NeedsThreeNotesWhoseFirstTwoAreEqual) {
  PlayedSong two({{10, Clicks(2, 480, 480)}});
  EXPECT_EQ(two.Of(10).Count, 0);
  EXPECT_EQ(two.Of(10).FirstNotePos, 480);
  PlayedSong unequal({{10, {{480, 37}, {960, 38}, {1440, 38}}}});
  EXPECT_EQ(unequal.Of(10).Count, 0);
  EXPECT_EQ(unequal.Of(10).FirstNotePos, 480);
  PlayedSong other({{10, {{480, 37}, {960, 37}, {1440, 38}}}});
  EXPECT_EQ(other.Of(10).Count, 2);
  EXPECT_EQ(other.Of(10).FirstNotePos, 1440);
}

TEST(CountIn, StopsAtAnIrregularStep) {
  PlayedSong first({{10, {{480, 37}, {1000, 37}, {1480, 37}}}});
  EXPECT_EQ(first.Of(10).Count, 0);
  EXPECT_EQ(first.Of(10).FirstNotePos, 480);
  PlayedSong later({{10, {{480, 37}, {960, 37}, {1440, 37}, {2440, 37}}}});
  EXPECT_EQ(later.Of(10).Count, 3);
  EXPECT_EQ(later.Of(10).End, 1440);
  EXPECT_EQ(later.Of(10).FirstNotePos, 2440);
}

TEST(CountIn, LooksAtTheFirst16NotesOfAChannel) {
  PlayedSong w({{1, Clicks(40, 480, 100)}, {10, Clicks(40, 480, 480)}}, 32);
  EXPECT_EQ(w.Of(1).NoteCount, 16);
  EXPECT_EQ(w.Of(10).NoteCount, 16);
  EXPECT_EQ(w.Of(10).Count, 16);
  EXPECT_EQ(w.Of(10).FirstNotePos, SongEnd);
}

TEST(CountIn, PassesOverAChannelOfClicksForTheFirstNote) {
  PlayedSong w({{2, Clicks(3, 480, 100), 119}, {1, {{2000, 60}}}});
  EXPECT_EQ(w.Of(2).FirstNotePos, 480);
  EXPECT_EQ(w.song.TickPositionOfFirstNote, 2000);
  PlayedSong other({{2, Clicks(3, 480, 100), 118}, {1, {{2000, 60}}}});
  EXPECT_EQ(other.song.TickPositionOfFirstNote, 480);
}

TEST(CountIn, BelievesAnotherChannelOnlyInFrontOfTheSong) {
  PlayedSong front({{2, With(Clicks(4, 480, 480), 2400, 60)}, {1, {{2400, 60}}}});
  EXPECT_EQ(front.song.CountInIdx, 1);
  for (const int tick : {470, 480}) {
    PlayedSong behind({{2, With(Clicks(4, 480, 480), 2400, 60)}, {1, {{tick, 60}}}});
    EXPECT_EQ(behind.song.CountInIdx, -1) << tick;
    PlayedSong drums({{10, With(Clicks(4, 480, 480), 2400, 60)}, {1, {{tick, 60}}}});
    EXPECT_EQ(drums.song.CountInIdx, 9) << tick;  // the drum channel is always believed
  }
  PlayedSong inside({{2, With(Clicks(4, 480, 480), 2400, 60)}, {1, {{481, 60}}}});
  EXPECT_EQ(inside.song.CountInIdx, 1);
}

TEST(CountIn, PrefersTheSmallestStartAndThenTheLowerChannel) {
  PlayedSong later(
      {{3, With(Clicks(4, 490, 480), 2600, 60)}, {5, With(Clicks(4, 480, 480), 2600, 60)}});
  EXPECT_EQ(later.song.CountInIdx, 4);
  PlayedSong earlier(
      {{3, With(Clicks(4, 480, 480), 2600, 60)}, {5, With(Clicks(4, 490, 480), 2600, 60)}});
  EXPECT_EQ(earlier.song.CountInIdx, 2);
  PlayedSong equal(
      {{3, With(Clicks(4, 480, 480), 2600, 60)}, {5, With(Clicks(4, 480, 480), 2600, 60)}});
  EXPECT_EQ(equal.song.CountInIdx, 2);
}

TEST(CountIn, HalvesAnOddTimeBaseDownwards) {
  ReaderBench w;
  Smf file(1, 101);
  file.Track().End().Track();
  for (const int tick : {100, 136, 172}) file.At(tick).On(10, 37);  // steps of 36: 50 less 14
  w.Decode(file.End().Build());
  EXPECT_EQ(w.song.CountInArray[9].Count, 3);
}

}  // namespace
}  // namespace Sonarello
