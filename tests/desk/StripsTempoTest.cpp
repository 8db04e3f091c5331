// The tempo of the song, up and down as a whole.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "desk/StripsBench.h"
#include "playback/LiveTempo.h"

namespace Sonarello {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// 120 bpm, from tick 960 on 60; notes at 480 and 1440.
struct StripsTempo : ::testing::Test, StripsBench {
  void Make(std::int32_t firstTempoAt = 0) {
    NewTrack().Tempo(firstTempoAt, 500'000).On(480, 60).Off(500, 60).Tempo(960, 1'000'000);
    On(1440, 60).Off(1500, 60);
    Loaded();
  }
  /// The bpm of the tempo metas.
  [[nodiscard]] std::vector<int> Metas() {
    std::vector<int> tempi;
    ForEachEvent(song.MidiTrack.front(), [&](PtrMidiEvent e) {
      if (!e->IsMeta(MetaTempo)) return;
      const auto bytes = e->Meta.Bytes();
      tempi.push_back(BeatsPerMinute(bytes[0] << 16 | bytes[1] << 8 | bytes[2]));
    });
    return tempi;
  }
  [[nodiscard]] std::vector<std::int32_t> NoteTimes() {
    std::vector<std::int32_t> times;
    ForEachEvent(song.MidiTrack.front(), [&](PtrMidiEvent e) {
      if (e->Kind() == NoteOn) times.push_back(e->TimePosition);
    });
    return times;
  }
};

TEST_F(StripsTempo, WhileStoppedAClickChangesTheSongAtOnce) {
  Make();
  ASSERT_THAT(NoteTimes(), ElementsAre(500, 2000));
  strips.Tempo.Tempo_PlusClick();
  EXPECT_EQ(strips.Tempo.Offset(), 1);
  EXPECT_THAT(Metas(), ElementsAre(121, 61));
  EXPECT_THAT(Told(), ElementsAre("tempo", "changed"));
  EXPECT_FALSE(player.TempoChanged);
  strips.Tempo.SetOffset(60);
  EXPECT_THAT(Metas(), ElementsAre(180, 120));
  EXPECT_THAT(NoteTimes(), ElementsAre(333, 1167));
  EXPECT_EQ(song.SongLength, song.MidiTrack.front().TrkLastEvent->TimePosition);
  EXPECT_THAT(CheckSong(song), IsEmpty());
}

TEST_F(StripsTempo, TheNullClickBringsTheSongsTempiBack) {
  Make();
  strips.Tempo.Tempo_MinusClick();
  strips.Tempo.Tempo_MinusClick();
  EXPECT_THAT(Metas(), ElementsAre(118, 58));
  strips.Tempo.Tempo_NullClick();
  EXPECT_EQ(strips.Tempo.Offset(), 0);
  EXPECT_THAT(Metas(), ElementsAre(120, 60));
  EXPECT_THAT(NoteTimes(), ElementsAre(500, 2000));
  static_cast<void>(Told());
  strips.Tempo.Tempo_NullClick();
  EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(StripsTempo, WhileStoppedAFirstTempoBehindTheStartTakesTheSecondEntry) {
  Make(240);
  ASSERT_EQ(song.SourceTempo[0].SongPosition, 0);
  ASSERT_EQ(song.SourceTempo[0].Tempo, 120);
  song.BackupTempo[0] = 100;
  strips.Tempo.SetOffset(10);
  EXPECT_THAT(Metas(), ElementsAre(130, 70)) << "entry 0 is the start that no meta tells";
}

TEST_F(StripsTempo, WhilePlayingTheMetasTakeTheEntriesFromTheFirstOn) {
  Make(240);
  song.BackupTempo[0] = 100;
  Start();
  strips.Tempo.SetOffset(10);
  Elapse(1);
  EXPECT_THAT(Metas(), ElementsAre(110, 130)) << "deliberately";
}

TEST_F(StripsTempo, WhilePlayingAClickIsLeftToThePlayer) {
  Make();
  Start();
  Elapse(700);
  const std::int32_t tick = TickOfTime(song, player.TimePosition);
  strips.Tempo.SetOffset(-20);
  EXPECT_TRUE(player.TempoChanged);
  EXPECT_EQ(player.TempoOffset, -20);
  EXPECT_THAT(Metas(), ElementsAre(120, 60));
  EXPECT_THAT(Told(), ElementsAre("changed"));
  player.PlayMidiData();
  EXPECT_FALSE(player.TempoChanged);
  EXPECT_THAT(Metas(), ElementsAre(100, 40));
  EXPECT_NEAR(TickOfTime(song, player.TimePosition), tick, 1);
}

TEST_F(StripsTempo, AnOffsetThatThePlayerDidNotTakeIsAppliedBehindTheStop) {
  Make();
  Start();
  Elapse(10);
  strips.Tempo.SetOffset(20);
  strips.Tempo.PlayerStopped();
  EXPECT_THAT(Metas(), ElementsAre(120, 60)) << "it plays";
  player.Stop();
  ASSERT_TRUE(strips.Tempo.IsPending());
  strips.Tempo.PlayerStopped();
  EXPECT_FALSE(strips.Tempo.IsPending());
  EXPECT_THAT(Metas(), ElementsAre(140, 80));
  static_cast<void>(Told());
  strips.Tempo.PlayerStopped();
  EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(StripsTempo, ThePositionStaysAtItsMusicalPlace) {
  Make();
  player.MoveToTimePosition(1500);
  strips.Tempo.SetOffset(60);
  EXPECT_EQ(player.TimePosition, 917);
  EXPECT_EQ(song.CurrentTempo, 120);
  EXPECT_EQ(song.CurrentTimeZone, 1);
  strips.Tempo.Tempo_NullClick();
  EXPECT_EQ(player.TimePosition, 1500);
  EXPECT_EQ(song.CurrentTempo, 60);
}

TEST_F(StripsTempo, TheLoopStaysAtItsMusicalPlace) {
  Make();
  player.SetLoop(500, 1500);
  strips.Tempo.SetOffset(60);
  EXPECT_EQ(player.LoopStart, 333);
  EXPECT_EQ(player.LoopEnd, 917);
}

TEST_F(StripsTempo, TheLoopStaysAtItsPlaceWhileItPlays) {
  Make();
  player.SetLoop(500, 1500);
  Start();
  strips.Tempo.SetOffset(60);
  Elapse(1);
  EXPECT_EQ(player.LoopStart, 333);
  EXPECT_EQ(player.LoopEnd, 917);
}

TEST_F(StripsTempo, TheNullClickBringsFractionsOfBeatsBack) {
  NewTrack().Tempo(0, 502'000).On(960, 60).Off(1000, 60);
  Loaded();
  strips.Tempo.Tempo_PlusClick();
  strips.Tempo.Tempo_MinusClick();
  EXPECT_EQ(NoteTimes()[0], 1004);
  EXPECT_EQ(song.SourceTempo[0].TempoLongInt, 502'000);
}

TEST_F(StripsTempo, PlaysOnFromWhereItStoodAtTheNewTempo) {
  Make();
  player.MoveToTimePosition(1900);
  strips.Tempo.SetOffset(60);
  Start();
  Elapse(60);
  EXPECT_THAT(Log(), ElementsAre("1167: 90 3C 64"));
}

TEST_F(StripsTempo, NoTempoFallsBelowTwentyFive) {
  Make();
  strips.Tempo.SetOffset(-50);
  EXPECT_THAT(Metas(), ElementsAre(70, 25));
}

TEST_F(StripsTempo, TheOffsetEndsWhereItWouldChangeNothingMore) {
  Make();
  EXPECT_EQ(strips.Tempo.LowestOffset(), -95);
  EXPECT_EQ(strips.Tempo.HighestOffset(), 879);
  strips.Tempo.SetOffset(-1000);
  EXPECT_EQ(strips.Tempo.Offset(), -95);
  EXPECT_THAT(Metas(), ElementsAre(25, 25));
  static_cast<void>(Told());
  strips.Tempo.Tempo_MinusClick();
  EXPECT_THAT(Told(), IsEmpty());
  strips.Tempo.SetOffset(5000);
  EXPECT_THAT(Metas(), ElementsAre(999, 939));
  strips.Tempo.Tempo_PlusClick();
  EXPECT_EQ(strips.Tempo.Offset(), 879);
}

TEST_F(StripsTempo, ASongBeyondTheLimitsCanOnlyComeNearer) {
  NewTrack().Tempo(0, 40'000).On(10, 60).Off(20, 60);
  Loaded();
  EXPECT_EQ(strips.Tempo.HighestOffset(), 0);
  strips.Tempo.Tempo_PlusClick();
  EXPECT_EQ(strips.Tempo.Offset(), 0);
  strips.Tempo.Tempo_MinusClick();
  EXPECT_EQ(strips.Tempo.Offset(), -1);
}

TEST_F(StripsTempo, NothingHappensWithoutASong) {
  Make();
  song.MidiFileLoaded = false;
  strips.Tempo.Tempo_PlusClick();
  strips.Tempo.TempoChange();
  EXPECT_EQ(strips.Tempo.Offset(), 0);
  EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(StripsTempo, ANewSongStartsAtItsOwnTempo) {
  Make();
  strips.Tempo.SetOffset(7);
  strips.SongChanged();
  EXPECT_EQ(strips.Tempo.Offset(), 0);
  EXPECT_EQ(player.TempoOffset, 0);
}

TEST_F(StripsTempo, ManyClicksLoseNoTickOfThePosition) {
  Make();
  std::mt19937 random(3);
  player.MoveToTimePosition(1234);
  const std::int32_t tick = TickOfTime(song, player.TimePosition);
  for (int i = 0; i < 200; ++i) {
    strips.Tempo.SetOffset(static_cast<std::int32_t>(random() % 60) - 30);
    ASSERT_NEAR(TickOfTime(song, player.TimePosition), tick, 2) << i;
  }
  EXPECT_THAT(CheckSong(song), IsEmpty());
}

}  // namespace
}  // namespace Sonarello
