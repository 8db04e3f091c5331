// The event list on the whole desk: what its edits tell, and what others' changes mean for them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <thread>

#include "core/TimeMap.h"
#include "desk/Workplace.h"
#include "helpers/DeskBench.h"
#include "playback/LiveTempo.h"

namespace Sonarello {

namespace {

struct EventsOfDesk : testing::Test {
  EventsOfDesk() {
    settings.WriteString("", "MidiInstrument00", "Yamaha Genos");
    settings.WriteString("", "MidiOutput00", SilentOutput::Name);
    work.Start();
    const std::string song = folder.File("demo.mid");
    std::filesystem::copy_file(SONARELLO_SOURCE_DIR "/examples/demo.mid", song);
    const bool opened = work.desk.OpenMidiFile(song);
    work.desk.ShowSong();
    work.SongOpened(opened);
    list.UpdateDisplayedEvents();
    list.CB_TrackListChange(1);
  }
  ~EventsOfDesk() override {
    work.desk.StopButtonClick();
    work.Close();
  }

  [[nodiscard]] std::int32_t RowWith(int column, const std::string& text) const {
    for (std::int32_t row = 1; row <= list.Rows(); ++row)
      if (list.Row(row).Fields[static_cast<std::size_t>(column)] == text) return row;
    ADD_FAILURE() << "no row reads " << text;
    return 1;
  }
  TEditResult Edit(std::int32_t row, int column, const std::string& text) {
    edits.GetCellEditorType(column, row);
    return edits.CellEditDone(column, row, text);
  }
  [[nodiscard]] std::string Cell(std::int32_t row, int column) const {
    return list.Row(row).Fields[static_cast<std::size_t>(column)];
  }

  MemoryRegistry settings;
  RecordedMessages messages;
  TestMidiDriver midi;
  SteadyClock clock;
  TestFolder folder;
  Workplace work{
      {settings, messages, midi, clock, {}, [] { return std::make_unique<TestInstrument>(); }},
      folder.Path.string() + "/"};
  TEventRows& list = work.eventRows;
  TEventEdits& edits = work.eventEdits;
};

TEST_F(EventsOfDesk, AnEditModifiesTheSongAndCanBeTakenBack) {
  const std::int32_t row = RowWith(KindColumn, "Note");
  const std::string before = Cell(row, Value2Column);
  EXPECT_FALSE(work.desk.IsModified());
  EXPECT_TRUE(Edit(row, Value2Column, "99").Applied);
  EXPECT_TRUE(work.desk.IsModified());
  EXPECT_TRUE(edits.CanUndo());
  edits.PM_UndoClick();
  EXPECT_EQ(Cell(row, Value2Column), before);
}

TEST_F(EventsOfDesk, AFaderDoesNotJumpBackWhenAnOlderEditIsTakenBack) {
  const std::int32_t row = RowWith(LengthColumn, "Volume");
  ASSERT_TRUE(Edit(row, PositionColumn, "1.2.100").Applied);
  ASSERT_TRUE(edits.CanUndo());
  work.desk.strips.Moves.TB_Volume00Change(0, 33);
  EXPECT_FALSE(edits.CanUndo());
  list.ForgetTexts();
  EXPECT_EQ(Cell(RowWith(LengthColumn, "Volume"), Value2Column), "33");
}

TEST_F(EventsOfDesk, AFaderOfAnotherEventLeavesTheEditToBeTakenBack) {
  ASSERT_TRUE(Edit(RowWith(KindColumn, "Note"), Value2Column, "99").Applied);
  work.desk.strips.Moves.TB_Volume00Change(0, 33);
  EXPECT_TRUE(edits.CanUndo());
}

TEST_F(EventsOfDesk, ATransposedSongKeepsItsNotes) {
  const std::int32_t row = RowWith(KindColumn, "Note");
  ASSERT_TRUE(Edit(row, Value2Column, "99").Applied);
  const int key = list.Event(row)->Value[0];
  work.desk.transpose.TransposeChange(2, false);
  EXPECT_EQ(list.Event(row)->Value[0], key + 2);
  EXPECT_FALSE(edits.CanUndo());
  EXPECT_EQ(edits.PM_UndoClick(), 0);
  EXPECT_EQ(list.Event(row)->Value[0], key + 2);
}

TEST_F(EventsOfDesk, AnotherTempoEndsWhatCouldBeTakenBack) {
  const std::int32_t row = RowWith(KindColumn, "Note");
  ASSERT_TRUE(Edit(row, PositionColumn, "20.1.0").Applied);
  work.desk.strips.Tempo.SetOffset(10);
  EXPECT_FALSE(edits.CanUndo());
}

TEST_F(EventsOfDesk, AnEditOfTheTempoItselfCanBeTakenBack) {
  list.CB_TrackListChange(0);
  const std::int32_t row = RowWith(LengthColumn, "Tempo");
  const std::int32_t length = work.desk.song.SongLength;
  ASSERT_TRUE(Edit(row, Value2Column, "50").Applied);
  EXPECT_GT(work.desk.song.SongLength, length);
  ASSERT_TRUE(edits.CanUndo());
  edits.PM_UndoClick();
  EXPECT_EQ(work.desk.song.SongLength, length);
}

TEST_F(EventsOfDesk, AnEditedTempoIsTheSongsOwnWhateverTheOffsetWas) {
  TTempoControl& tempo = work.desk.strips.Tempo;
  list.CB_TrackListChange(0);
  const std::int32_t row = RowWith(LengthColumn, "Tempo");
  ASSERT_EQ(Cell(row, Value2Column), "100");
  tempo.SetOffset(10);
  list.ForgetTexts();
  EXPECT_EQ(Cell(row, Value2Column), "110");
  ASSERT_TRUE(Edit(row, Value2Column, "50").Applied);
  EXPECT_EQ(tempo.Offset(), 0);
  tempo.Tempo_PlusClick();
  list.ForgetTexts();
  EXPECT_EQ(Cell(row, Value2Column), "51");
  tempo.Tempo_NullClick();
  list.ForgetTexts();
  EXPECT_EQ(Cell(row, Value2Column), "50");
}

TEST_F(EventsOfDesk, PositionAndLoopStayAtTheirBarsWhenATempoIsEdited) {
  TMidiPlayer& player = work.desk.Player();
  Song& song = work.desk.song;
  constexpr std::int32_t bar = 1920;
  player.SetLoop(TimeOfPosition(song, 8 * bar), TimeOfPosition(song, 12 * bar));
  work.desk.Wind(TimeOfPosition(song, 10 * bar));
  ASSERT_NEAR(TickOfTime(song, player.TimePosition), 10 * bar, 2);
  list.CB_TrackListChange(0);
  const std::int32_t row = RowWith(LengthColumn, "Tempo");
  ASSERT_TRUE(Edit(row, Value2Column, "200").Applied);
  EXPECT_NEAR(TickOfTime(song, player.TimePosition), 10 * bar, 2);
  EXPECT_NEAR(player.TimePosition, 10 * 4 * 300, 3000);
  EXPECT_NEAR(TickOfTime(song, player.LoopStart), 8 * bar, 2);
  EXPECT_NEAR(TickOfTime(song, player.LoopEnd), 12 * bar, 2);
  edits.PM_UndoClick();
  EXPECT_NEAR(TickOfTime(song, player.TimePosition), 10 * bar, 4);
}

TEST_F(EventsOfDesk, AnEditedKeySignatureIsTheDesksAtOnce) {
  list.CB_TrackListChange(0);
  const auto key = [this] { return work.desk.strips.Position.At(0).Key; };
  EXPECT_EQ(key(), "C major");
  const std::int32_t row = RowWith(LengthColumn, "Key signature");
  ASSERT_TRUE(Edit(row, Value2Column, "Eb").Applied);
  EXPECT_EQ(key(), "Eb major");
  EXPECT_TRUE(edits.CanUndo());
  edits.PM_UndoClick();
  EXPECT_EQ(key(), "C major");
  ASSERT_EQ(edits.PM_DeleteMidiEventClick({row}), 1);
  EXPECT_EQ(key(), "");
}

TEST_F(EventsOfDesk, AnEditedTrackNameStandsInTheTrackListAtOnce) {
  const std::int32_t row = RowWith(LengthColumn, "Track name");
  EXPECT_EQ(list.TrackLines()[1], "Klavier");
  ASSERT_TRUE(Edit(row, Value2Column, "Flügel").Applied);
  EXPECT_EQ(list.TrackLines()[1], "Flügel");
  edits.PM_UndoClick();
  EXPECT_EQ(list.TrackLines()[1], "Klavier");
}

TEST_F(EventsOfDesk, AnEditedEffectSysexIsInTheEffectRowAtOnce) {
  const auto reverb = [this] {
    for (const TEffectCell& cell : work.effects.Cells)
      if (cell.Block == TEffectBlock::Reverb) return cell.EffectName;
    return std::string();
  };
  const std::int32_t row = RowWith(LengthColumn, "Yamaha Reverb - Effect Type");
  EXPECT_EQ(reverb(), "Hall1");
  ASSERT_TRUE(Edit(row, Value2Column, "43 10 4C 02 01 00 04 00 F7").Applied);
  EXPECT_EQ(reverb(), "Plate3");
  edits.PM_UndoClick();
  EXPECT_EQ(reverb(), "Hall1");
}

TEST_F(EventsOfDesk, ASongThatPlaysStaysWholeWhileItsListIsEdited) {
  ASSERT_TRUE(work.desk.PlayButtonClick());
  std::mt19937 random(3);
  const auto pick = [&](int below) {
    return static_cast<int>(random() % static_cast<unsigned>(below));
  };
  int applied = 0;
  for (int n = 0; n < 300; ++n) {
    if (n % 30 == 0) list.CB_TrackListChange(pick(static_cast<int>(list.TrackLines().size())));
    const std::int32_t row = 1 + pick(list.Rows());
    const int column = pick(EventColumnCount);
    const TCellEditing cell = edits.GetCellEditorType(column, row);
    std::string text = std::to_string(1 + pick(127));
    if (column == PositionColumn) text = Cell(1 + pick(list.Rows()), PositionColumn);
    if (!cell.Items.empty()) text = cell.Items[static_cast<std::size_t>(pick(int(cell.Items.size())))];
    applied += edits.CellEditDone(column, row, text).Applied ? 1 : 0;
    if (n % 20 == 0) work.desk.Wind(pick(4000) - 2000);
    std::this_thread::yield();
  }
  EXPECT_GT(applied, 50);
  EXPECT_TRUE(work.desk.IsPlaying());
  work.desk.StopButtonClick();
  EXPECT_EQ(CheckSong(work.desk.song), std::vector<std::string>{});
}

}  // namespace

}  // namespace Sonarello
