#include "tools/RemoveCountIns.h"

#include <gmock/gmock.h>

#include "helpers/SongBuilder.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int Click = 37;

/// A song file with a count-in on channel 10 of `clicks` notes, `step` ticks apart, from `start`; the
/// song itself starts at `first` with a drum of another key and a note on channel 1.
struct CountInSong : Workbench {
  int numerator = 4;
  int exponent = 2;
  int clicks = 4;
  int step = 480;
  int start = 0;
  int first = 1920;

  CountInSong() { options.AutoSysex = false; }

  Smf File() const {
    Smf file;
    file.Track().At(0).Time(numerator, exponent).Tempo(500000);
    file.Track().At(0).Prog(1, 4).Ctrl(1, 7, 100).Note(1, 60, first, first + 400);
    file.Track().At(0).Ctrl(10, 7, 90);
    for (int n = 0; n < clicks; ++n) file.Note(10, Click, Offset(n), Offset(n) + 60);
    file.Note(10, 36, first, first + 60).Note(10, 38, first + 480, first + 540).End();
    return file;
  }
  /// Count-in notes before tick 5 are disregarded, as a song's first tick is.
  int Offset(int n) const { return start + n * step + (start == 0 && n == 0 ? 6 : 0); }

  bool Remove() {
    const bool removed = TRemoveCountIns(song, options).RemoveCountIn();
    EXPECT_THAT(CheckSong(song), IsEmpty());
    return removed;
  }
  int Clicks() {
    int count = 0;
    for (int t = 0; t < song.NumberOfSourceTracks; ++t)
      ForEachEvent(Track(t), [&](PtrMidiEvent e) {
        count += e->IsChannelEvent() && e->Channel() == 9 && e->Value[0] == Click && e->DLength > 0;
      });
    return count;
  }
  /// Positions of a channel's note-ons, channels from 1.
  std::vector<int> NotesOf(int channel) {
    std::vector<int> positions;
    for (int t = 0; t < song.NumberOfSourceTracks; ++t)
      ForEachEvent(Track(t), [&](PtrMidiEvent e) {
        if (e->Kind() == NoteOn && e->Channel() == channel - 1 && e->DLength > 0)
          positions.push_back(e->Position);
      });
    return positions;
  }
};

TEST(RemoveCountIn, DeletesFourClicksInFourFour) {
  CountInSong s;
  s.Decode(s.File().Build());
  ASSERT_EQ(s.song.CountInIdx, 9);
  ASSERT_EQ(s.Clicks(), 8);
  EXPECT_TRUE(s.Remove());
  EXPECT_EQ(s.Clicks(), 0);
  EXPECT_EQ(s.song.CountInIdx, -1);
  EXPECT_EQ(s.song.TickPositionOfFirstNote, 1920);
  EXPECT_THAT(s.NotesOf(1), ElementsAre(1920));
  EXPECT_THAT(s.NotesOf(10), ElementsAre(1920, 2400));
}

TEST(RemoveCountIn, WorksInEachOfTheFourSignatures) {
  struct Row {
    int Numerator, Exponent, Clicks, Step, First;
  };
  for (const Row& row : {Row{2, 2, 2, 480, 960}, Row{3, 2, 3, 480, 1440}, Row{4, 2, 4, 480, 1920},
                         Row{6, 3, 6, 240, 1440}, Row{6, 3, 2, 720, 1440}, Row{2, 1, 2, 480, 1920},
                         Row{3, 3, 3, 240, 720}}) {
    CountInSong s;
    s.numerator = row.Numerator;
    s.exponent = row.Exponent;
    s.clicks = row.Clicks;
    s.step = row.Step;
    s.first = row.First;
    s.Decode(s.File().Build());
    EXPECT_TRUE(s.Remove()) << row.Numerator << " " << row.Exponent << " " << row.Clicks;
    EXPECT_EQ(s.Clicks(), 0);
  }
}

TEST(RemoveCountIn, IsDoneByTheRoutineOfTheSignatureOnly) {
  CountInSong s;
  s.Decode(s.File().Build());
  TRemoveCountIns tool(s.song, s.options);
  EXPECT_FALSE(tool.Measure24(false));
  EXPECT_FALSE(tool.Measure34(false));
  EXPECT_FALSE(tool.Measure68(false));
  EXPECT_EQ(s.Clicks(), 8);
  EXPECT_TRUE(tool.Measure44(false));
}

TEST(RemoveCountIn, LeavesOtherSignaturesAlone) {
  CountInSong s;
  s.numerator = 5;
  s.first = 2400;
  s.Decode(s.File().Build());
  ASSERT_EQ(s.song.CountInIdx, 9);
  EXPECT_FALSE(s.Remove());
  EXPECT_EQ(s.Clicks(), 8);
}

TEST(RemoveCountIn, LeavesClicksOfOtherChannelsAlone) {
  CountInSong s;
  Smf file;
  file.Track().At(0).Time(4, 2);
  file.Track().At(0).Prog(3, 4);
  for (int n = 0; n < 4; ++n) file.Note(3, 76, 1920 + n * 480, 1980 + n * 480);
  file.Note(3, 60, 3840, 4000);
  s.Decode(file.Build());
  EXPECT_FALSE(s.Remove());
  EXPECT_EQ(s.NotesOf(3).size(), 5U);
}

TEST(RemoveCountIn, LeavesAWholeSongOfClicksAlone) {
  CountInSong s;
  Smf file;
  file.Track().At(0).Time(4, 2);
  file.Track();
  for (int n = 0; n < 4; ++n) file.Note(10, Click, 480 + n * 480, 500 + n * 480);
  s.Decode(file.Build());
  EXPECT_FALSE(s.Remove());
  EXPECT_EQ(s.Clicks(), 8);
}

TEST(RemoveCountIn, LeavesEighthsInFourFourAlone) {
  CountInSong s;
  s.step = 240;
  s.Decode(s.File().Build());
  ASSERT_EQ(s.song.CountInIdx, 9);
  EXPECT_FALSE(s.Remove());
  EXPECT_EQ(s.Clicks(), 8);
}

TEST(RemoveCountIn, TakesNotesAFewTicksBesideTheBeat) {
  CountInSong s;
  s.start = 1920 - 8;
  s.first = 3840 - 5;
  s.Decode(s.File().Build());
  EXPECT_TRUE(s.Remove());
  EXPECT_EQ(s.Clicks(), 0);
}

TEST(RemoveCountIn, LeavesNotesBetweenTheBeatsAlone) {
  CountInSong s;
  s.start = 1920 + 100;
  s.first = 3840 + 100;
  s.Decode(s.File().Build());
  EXPECT_FALSE(s.Remove());
}

TEST(RemoveCountIn, DeletesTheNoteOffsOfItsNotesWhereNotesOverlap) {
  CountInSong s;
  Smf file;
  file.Track().At(0).Time(4, 2);
  file.Track();
  // Each click rings into the next one; the song goes on with the same key.
  file.At(1920).On(10, Click).At(2400).On(10, Click).At(2500).Off(10, Click);
  file.At(2880).On(10, Click).At(2900).Off(10, Click).At(3360).On(10, Click).At(3400).Off(10, Click);
  file.At(3850).Off(10, Click).Note(10, 36, 3860, 3900).Note(10, Click, 4000, 4100);
  s.Decode(file.Build());
  ASSERT_TRUE(s.Remove());
  std::vector<int> left;
  ForEachEvent(s.Track(1), [&](PtrMidiEvent e) {
    if (e->IsChannelEvent() && e->Value[0] == Click) left.push_back(e->Position);
  });
  EXPECT_THAT(left, ElementsAre(4000, 4100));
}

TEST(RemoveCountIn, FindsItsNotesOnSeveralTracks) {
  CountInSong s;
  Smf file;
  file.Track().At(0).Time(4, 2);
  file.Track().Note(10, Click, 1920, 1980).Note(10, Click, 2400, 2460);
  file.Track().Note(10, Click, 2880, 2940).Note(10, Click, 3360, 3400).Note(10, 36, 3840, 3900);
  s.Decode(file.Build());
  ASSERT_EQ(s.song.CountInIdx, 9);
  EXPECT_TRUE(s.Remove());
  EXPECT_EQ(s.Clicks(), 0);
}

TEST(RemoveCountIn, TellsEachNoteInTheChangeLog) {
  CountInSong s;
  ChangeLog log;
  s.Decode(s.File().Build());
  s.song.Changes = &log;
  {
    const InGerman german;
    ASSERT_TRUE(s.Remove());
  }
  ASSERT_EQ(log.Changes().size(), 8U);
  EXPECT_EQ(log.Changes()[0].Kind, ChangeKind::Dropped);
  EXPECT_EQ(log.Changes()[0].Track, 2);
  EXPECT_EQ(log.Changes()[0].Why, "Der Vorzähler wird entfernt");
}

struct RadicalSong : CountInSong {
  RadicalSong() { options.RemoveCountInRadical = true; }
};

TEST(RemoveCountInRadical, TakesTheMeasureOutAndMovesTheSongToTheFront) {
  RadicalSong s;
  s.start = 1920;
  s.first = 3840;
  s.Decode(s.File().Build());
  const std::int32_t end = s.song.MaxSongPosition;
  ASSERT_TRUE(s.Remove());
  EXPECT_EQ(s.song.MaxSongPosition, end - 1920);
  EXPECT_EQ(s.song.TickPositionOfFirstNote, 1920);
  EXPECT_THAT(s.NotesOf(1), ElementsAre(1920));
  EXPECT_THAT(s.NotesOf(10), ElementsAre(1920, 2400));
  EXPECT_EQ(s.song.FirstPatches[0]->Position, 0);
}

TEST(RemoveCountInRadical, KeepsTheSetupOfTheFirstMeasureInOrderAtTheStart) {
  RadicalSong s;
  Smf file;
  file.Track().At(0).Time(4, 2).Tempo(500000).At(700).Tempo(400000);
  file.Track().At(10).Ctrl(1, 0, 3).At(20).Ctrl(1, 32, 4).At(30).Prog(1, 5).Note(1, 60, 1920, 2000);
  file.Track();
  for (int n = 1; n < 4; ++n) file.Note(10, Click, n * 480, n * 480 + 60);
  file.Note(10, 36, 1920, 1980);
  s.Decode(file.Build());
  ASSERT_TRUE(s.Remove());
  EXPECT_THAT(s.NotesOf(1), ElementsAre(0));
  std::vector<int> commands;
  for (PtrMidiEvent e = s.Event(1, 1); !e->IsEndOfTrack(); e = e->NextEvent) {
    commands.push_back(e->Command);
    EXPECT_EQ(e->Position, e->Kind() == NoteOff ? 80 : 0);
  }
  EXPECT_THAT(commands, ElementsAre(0xB0, 0xB0, 0xC0, 0x90, 0x80));
  s.functions.ReloadTempoTimeSign();
  s.functions.SetTimeZones();
  // The tempo in force behind the count-in is the song's first.
  EXPECT_EQ(TimeOfPosition(s.song, 480), 400);
}

TEST(RemoveCountInRadical, KeepsASongOf999TicksAtLeast) {
  RadicalSong s;
  Smf file;
  file.Track().At(0).Time(4, 2);
  file.Track();
  for (int n = 1; n < 4; ++n) file.Note(10, Click, n * 480, n * 480 + 60);
  file.Note(10, 36, 1920, 1980);
  s.Decode(file.Build());
  ASSERT_TRUE(s.Remove());
  EXPECT_EQ(s.song.MaxSongPosition, 999);
}

TEST(RemoveCountInRadical, LeavesTheMeasureOfAPickUpAlone) {
  RadicalSong s;
  s.clicks = 3;
  s.start = 1920;
  s.first = 1920 + 1440;
  s.Decode(s.File().Build());
  const std::int32_t end = s.song.MaxSongPosition;
  ASSERT_TRUE(s.Remove());
  EXPECT_EQ(s.Clicks(), 0);
  EXPECT_EQ(s.song.MaxSongPosition, end);
  EXPECT_THAT(s.NotesOf(1), ElementsAre(3360));
}

TEST(RemoveCountInRadical, LeavesMeasuresAloneInWhichTheSignatureChanges) {
  RadicalSong s;
  Smf file;
  file.Track().At(0).Time(4, 2).At(3000).Time(3, 2);
  file.Track();
  for (int n = 0; n < 4; ++n) file.Note(10, Click, 1920 + n * 480, 1980 + n * 480);
  file.Note(10, 36, 5000, 5100);
  s.Decode(file.Build());
  const std::int32_t end = s.song.MaxSongPosition;
  ASSERT_TRUE(s.Remove());
  EXPECT_EQ(s.song.MaxSongPosition, end);
}

TEST(RemoveCountInRadical, CountsMeasuresFromALaterSignature) {
  RadicalSong s;
  Smf file;
  file.Track().At(0).Time(4, 2).At(480).Time(3, 2);
  file.Track();
  for (int n = 0; n < 3; ++n) file.Note(10, Click, 480 + n * 480, 520 + n * 480);
  file.Note(10, 36, 480 + 1440, 2000);
  s.Decode(file.Build());
  ASSERT_TRUE(s.Remove());
  EXPECT_THAT(s.NotesOf(10), ElementsAre(480));
}

TEST(RemoveCountInRadical, DropsNotesThatStandInTheMeasures) {
  RadicalSong s;
  Smf file;
  file.Track().At(0).Time(4, 2);
  // A percussive click on channel 2 counts along; a pad on channel 3 rings into the song.
  file.Track().At(0).Prog(2, 119).Note(2, 60, 1920, 2000).Note(2, 60, 2400, 2500);
  file.Track().At(0).Prog(3, 119).Note(3, 48, 3000, 5000);
  file.Track();
  for (int n = 0; n < 4; ++n) file.Note(10, Click, 1920 + n * 480, 1980 + n * 480);
  file.Note(10, 36, 3840, 3900);
  s.Decode(file.Build());
  ASSERT_EQ(s.song.CountInIdx, 9);
  ASSERT_TRUE(s.Remove());
  EXPECT_THAT(s.NotesOf(2), IsEmpty());
  EXPECT_THAT(s.NotesOf(3), ElementsAre(1920));
  EXPECT_THAT(s.NotesOf(10), ElementsAre(1920));
}

TEST(RemoveCountInRadical, LeavesTheMeasuresToAQuickTaker) {
  RadicalSong s;
  s.options.QuickTakerPresent = true;
  s.start = 1920;
  s.first = 3840;
  s.Decode(s.File().Build());
  ASSERT_TRUE(s.Remove());
  EXPECT_EQ(s.Clicks(), 0);
  EXPECT_THAT(s.NotesOf(1), ElementsAre(3840));
}

}  // namespace
}  // namespace Sonarello
